// The Like of the diary, without regard to case, width and kana type.
#pragma once

#include <QByteArray>
#include <QString>

#include <string>
#include <utility>
#include <vector>

namespace velloria::platform {

/// A Like pattern, folded once as text_fold.h says. It covers the whole text:
///   %       any run, the empty one too
///   _       any one character; a surrogate pair is one, and so is half-width kana with its mark
///   [a-c]   one of these characters or of a range in the code order of folds; a range from high to low holds none, and
///           "-" first or last stands for itself, "[" anywhere in the list too
///   [!a-c]  one character outside the list
///   []      nothing at all, so that "[]]" is "]"
///   [!]     "!"
/// "]" outside a list and the full-width forms of these signs stand for themselves. There is no escape character, but
/// "[%]" is a percent sign.
class LikePattern {
public:
    /// Throws Failure when a "[" is never closed, as the old engine did.
    explicit LikePattern(QStringView pattern);

    bool matches(QStringView text) const;

    /// The same as matches(fromUtf8(utf8)) without the copy: the form in which the database hands out its
    /// text. A plain word between two "%" is found at the speed of a byte search.
    bool matchesUtf8(QByteArrayView utf8) const;

private:
    struct List {
        std::vector<std::pair<char32_t, char32_t>> ranges;
        bool isNegated = false;
    };
    /// The outer bytes of a character that may stand for the one that is searched for: the rarer of them, and the
    /// other.
    struct Start {
        char sought;
        char other;
        qsizetype soughtAt; ///< from the character's beginning
        qsizetype otherAt;
    };
    qsizetype addList(QStringView pattern);
    void chooseWord();
    std::size_t chooseAnchor() const;
    void findStarts();
    void addStart(char32_t character);
    bool holdsWord(QByteArrayView utf8) const;
    bool wordStartsAt(QByteArrayView utf8) const;
    template <typename Reader>
    bool matchesFold(Reader reader, qsizetype longest) const;
    bool isOneOf(char32_t step, char32_t character) const;

    std::vector<char32_t> m_steps; ///< folded characters and, above the last of Unicode, wildcards and numbers of lists
    std::vector<List> m_lists;
    std::u32string m_word;       ///< the longest run of characters in the pattern
    bool m_isWord = false;       ///< the pattern is this word between two "%"
    std::size_t m_anchor = 0;    ///< the character of the word that is searched for
    std::vector<Start> m_starts; ///< how UTF-8 is searched for the word; empty when bytes don't tell
};

} // namespace velloria::platform
