#include "larkport/file_parts.h"

#include <algorithm>
#include <map>

namespace velloria::plugins::larkport {
namespace {

constexpr std::string_view kPieceEnd = "-----";
constexpr std::string_view kEntryEnd = "--------";
constexpr std::string_view kStartBody = "START BODY";
constexpr int kLongestHead = 100; // lines that are looked through for a key

constexpr std::string_view kHeadKeys[] = {
    "AUTHOR", "AUTHOR EMAIL",   "TITLE",       "BASENAME",      "STATUS",           "ALLOW COMMENTS",
    "DATE",   "CONVERT BREAKS", "ALLOW PINGS", "UNIQUE URL",    "PRIMARY CATEGORY", "CATEGORY",
    "TAGS",   "NO ENTRY",       "IMAGE",       "VELLORIA TEXT", kStartBody};
constexpr std::string_view kPieces[] = {"BODY", "EXTENDED BODY", "EXCERPT", "KEYWORDS", "COMMENT", "PING"};
constexpr std::string_view kTexts[] = {"BODY", "EXTENDED BODY", "EXCERPT", "KEYWORDS"};
constexpr std::string_view kCustomField = "CF50_";

bool isOneOf(std::string_view name, auto& names) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string_view withoutBlanksBehind(std::string_view line) {
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\n") == std::string_view::npos;
}

/// The name of a piece that the line begins; "" when it begins none.
std::string_view pieceName(std::string_view line) {
    line = trimmed(line);
    if (!line.ends_with(':'))
        return {};
    line.remove_suffix(1);
    const bool isCustom = line.starts_with(kCustomField) && line.find_first_of(" :") == std::string_view::npos;
    return isCustom || isOneOf(line, kPieces) ? line : std::string_view();
}

Key keyOf(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return {"", std::string(trimmed(line))};
    return {std::string(trimmed(line.substr(0, colon))), std::string(trimmed(line.substr(colon + 1)))};
}

/// Whether the line can be one of a head: a word in capitals and a colon.
bool looksLikeKey(std::string_view line) {
    const std::size_t colon = line.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_ ");
    return colon != std::string_view::npos && colon > 0 && line[colon] == ':';
}

/// The last line of a file that ends in the middle of a key.
bool isCutKey(std::string_view line) {
    return std::any_of(std::begin(kHeadKeys), std::end(kHeadKeys),
                       [&](std::string_view key) { return key.starts_with(line); });
}

/// The last piece of a file that ends in the middle of a line of hyphens or of a name.
bool isCutName(std::string_view text) {
    return kEntryEnd.starts_with(text) || std::any_of(std::begin(kPieces), std::end(kPieces),
                                                      [&](std::string_view name) { return name.starts_with(text); });
}

/// A piece without a name belongs to the text before it; what has no text before it is the body.
void addToLast(EntryParts& entry, const std::vector<std::string>& unnamed) {
    std::size_t count = unnamed.size();
    while (count > 0 && isBlank(unnamed[count - 1]))
        --count;
    for (std::size_t at = 0; at < count; ++at) {
        if (entry.pieces.empty())
            entry.pieces.push_back({"BODY", unnamed[at]});
        else
            entry.pieces.back().text.append("\n-----\n").append(unnamed[at]);
    }
}

/// Adds pieces to those of an entry; a text that comes in several pieces of one name is all of them.
class Pieces {
public:
    explicit Pieces(std::vector<Piece>& pieces)
        : m_pieces(pieces) {
        for (std::size_t at = 0; at < pieces.size(); ++at)
            m_texts.emplace(pieces[at].name, at);
    }
    void add(std::string_view name, std::string text) {
        const auto [known, isNew] = m_texts.emplace(name, m_pieces.size());
        if (isNew || !isOneOf(name, kTexts))
            m_pieces.push_back({std::string(name), std::move(text)});
        else
            m_pieces[known->second].text.append("\n").append(text);
    }

private:
    std::vector<Piece>& m_pieces;
    std::map<std::string, std::size_t> m_texts;
};

} // namespace

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks(" \t\0\x0B", 4);
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? "" : text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

const std::string* EntryParts::value(std::string_view name) const {
    const auto key = std::find_if(head.begin(), head.end(), [&](const Key& each) { return each.name == name; });
    return key == head.end() ? nullptr : &key->value;
}

const std::string* EntryParts::text(std::string_view name) const {
    const auto piece = std::find_if(pieces.begin(), pieces.end(), [&](const Piece& each) { return each.name == name; });
    return piece == pieces.end() ? nullptr : &piece->text;
}

std::optional<EntryParts> FileParts::next() {
    while (m_at < m_text.size()) {
        EntryParts entry;
        readHead(entry);
        readPieces(entry);
        if (m_at < m_text.size()) { // at the line that ends it
            m_at = lineAt(m_at).next;
            entry.isClosed = true;
        }
        if (!entry.isEmpty())
            return entry;
    }
    return std::nullopt;
}

FileParts::Line FileParts::lineAt(std::size_t at) const {
    const std::size_t end = std::min(m_text.find_first_of("\r\n", at), m_text.size());
    const bool isPair = m_text.substr(end, 2) == "\r\n";
    return {m_text.substr(at, end - at), std::min(end + 1 + isPair, m_text.size())};
}

bool FileParts::atEntryEnd(const Line& line) const {
    return withoutBlanksBehind(line.text) == kEntryEnd && mayBeginEntry(line.next);
}

/// Whether an entry, or nothing, begins here.
bool FileParts::mayBeginEntry(std::size_t at) const {
    bool isFirst = true;
    for (int count = 0; at < m_text.size() && count < kLongestHead;) {
        const Line line = lineAt(at);
        at = line.next;
        if (isBlank(line.text))
            continue;
        const std::string_view hyphens = withoutBlanksBehind(line.text);
        if (hyphens == kPieceEnd || hyphens == kEntryEnd)
            return isFirst && hyphens == kEntryEnd; // an entry of nothing
        if (!looksLikeKey(line.text))
            return isFirst && at >= m_text.size() && isCutKey(line.text);
        if (isOneOf(trimmed(line.text.substr(0, line.text.find(':'))), kHeadKeys))
            return true;
        isFirst = false;
        ++count;
    }
    return at >= m_text.size() && isFirst;
}

void FileParts::readHead(EntryParts& entry) {
    while (m_at < m_text.size()) {
        const Line line = lineAt(m_at);
        if (atEntryEnd(line))
            return;
        if (!pieceName(line.text).empty()) // somebody left the separator out
            return;
        m_at = line.next;
        if (withoutBlanksBehind(line.text) == kPieceEnd)
            return;
        if (isBlank(line.text))
            continue;
        if (line.text.data() + line.text.size() == m_text.data() + m_text.size() && line.text.starts_with("DATE"))
            return; // the end of the file may have cut it to another date
        entry.head.push_back(keyOf(line.text));
        if (entry.head.back().name == kStartBody) {
            std::string text;
            readRawPiece(text);
            const std::string& beginning = entry.head.back().value;
            entry.pieces.push_back({"BODY", beginning.empty() ? std::move(text) : beginning + "\n" + text});
            return;
        }
    }
}

void FileParts::readPieces(EntryParts& entry) {
    std::vector<std::string> unnamed;
    Pieces pieces(entry.pieces);
    while (m_at < m_text.size() && !atEntryEnd(lineAt(m_at))) {
        Line first = lineAt(m_at);
        while (isBlank(first.text) && first.next < m_text.size())
            first = lineAt(first.next);
        const std::string_view name = pieceName(first.text);
        std::string text;
        if (name.empty()) {
            readRawPiece(unnamed.emplace_back());
            continue;
        }
        addToLast(entry, unnamed);
        unnamed.clear();
        m_at = first.next;
        readRawPiece(text);
        pieces.add(name, std::move(text));
    }
    if (m_at >= m_text.size() && !unnamed.empty() && isCutName(unnamed.back()))
        unnamed.pop_back();
    addToLast(entry, unnamed);
}

/// The lines up to the next separator, which is passed, or up to the end of the entry.
bool FileParts::readRawPiece(std::string& text) {
    bool isFirst = true;
    while (m_at < m_text.size()) {
        const Line line = lineAt(m_at);
        if (atEntryEnd(line))
            return false;
        m_at = line.next;
        if (withoutBlanksBehind(line.text) == kPieceEnd)
            return true;
        if (!isFirst)
            text += '\n';
        const bool isText = line.text == "-----\t" || line.text == "--------\t";
        text += isText ? line.text.substr(0, line.text.size() - 1) : line.text;
        isFirst = false;
    }
    return false;
}

} // namespace velloria::plugins::larkport
