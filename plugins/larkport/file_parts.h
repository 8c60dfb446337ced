// The pieces of a file in the text format of Movable Type.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::larkport {

struct Piece {
    std::string name; ///< "BODY"
    std::string text; ///< the lines between name and separator, parted by LF
};

struct Key {
    std::string name;  ///< "TITLE"; "" for a line that is no key
    std::string value; ///< without blanks at its ends
};

struct EntryParts {
    std::vector<Key> head; ///< in their order
    std::vector<Piece> pieces;
    bool isClosed = false; ///< by its line of eight hyphens

    /// The value of the first such key; null when there is none.
    const std::string* value(std::string_view name) const;
    const std::string* text(std::string_view name) const;
    bool isEmpty() const { return head.empty() && pieces.empty(); }
};

/// The entries of a file one after the other. A line of hyphens behind which nothing stands that may follow one belongs
/// to the text before it, and so does one with a TAB behind it, which is how some writers say the same; the TAB goes.
///
///     FileParts parts(text);
///     while (std::optional<EntryParts> entry = parts.next())
///         take(*entry);
class FileParts {
public:
    /// `text` has line ends of any kind and outlives this.
    explicit FileParts(std::string_view text)
        : m_text(text) {}

    std::optional<EntryParts> next();

private:
    struct Line {
        std::string_view text;
        std::size_t next = 0; ///< where the one behind it begins
    };

    Line lineAt(std::size_t at) const;
    bool mayBeginEntry(std::size_t at) const;
    void readHead(EntryParts& entry);
    void readPieces(EntryParts& entry);
    bool readRawPiece(std::string& text);
    bool atEntryEnd(const Line& line) const;

    std::string_view m_text;
    std::size_t m_at = 0;
};

/// Without the blanks at both ends.
std::string_view trimmed(std::string_view text);

} // namespace velloria::plugins::larkport
