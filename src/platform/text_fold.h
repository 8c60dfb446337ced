// How the diary compares texts: without regard to case, width and kana type.
//
// The fold: half-width kana with its marks to full width, katakana to hiragana, full-width ASCII, signs and the
// ideographic blank to their narrow forms, lower case, and characters that the code page writes as another one to that
// one (U+2016 to U+2225, U+2212 to U+FF0D and so to "-", U+301C to U+FF5E and so to "~"), because a name reads back
// from a list file as the other. The dashes U+2014 and U+2015 stay two, as they always were. Two texts are equal when
// their folds are. All else differs.
#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>

#include <array>

namespace velloria::platform {

/// The folded text. Never longer than `text`.
QString fold(QStringView text);

/// Whether the folds are equal.
bool equalText(QStringView left, QStringView right);

// What follows is the fold character by character, for like_pattern.cpp.

/// What each code unit folds to on its own, made once. Surrogates stay.
class FoldTable {
public:
    static const FoldTable& instance();

    char16_t operator[](char16_t unit) const { return m_fold[unit]; }

    /// The one character that half-width kana and a sound mark fold to together; 0 when the two don't belong together.
    static char16_t composed(char16_t kana, char16_t mark);

    /// Whether `unit` is half-width kana that may take the mark behind it along.
    static bool takesMark(char32_t unit) { return unit >= 0xFF66 && unit <= 0xFF9C; }

private:
    FoldTable();
    std::array<char16_t, 0x10000> m_fold;
};

/// UTF-16 by characters. A lone surrogate is a character of its own.
class Utf16Characters {
public:
    explicit Utf16Characters(QStringView text)
        : m_at(text.utf16())
        , m_end(text.utf16() + text.size()) {}
    bool atEnd() const { return m_at == m_end; }
    QStringView rest() const { return QStringView(m_at, m_end); }

    char32_t next() {
        const char16_t unit = *m_at++;
        if (QChar::isHighSurrogate(unit) && m_at != m_end && QChar::isLowSurrogate(*m_at))
            return QChar::surrogateToUcs4(unit, *m_at++);
        return unit;
    }

private:
    const char16_t* m_at;
    const char16_t* m_end;
};

/// UTF-8 by characters, read as fromUtf8 reads it: each byte that starts no character is U+FFFD.
class Utf8Characters {
public:
    explicit Utf8Characters(QByteArrayView utf8)
        : m_at(reinterpret_cast<const unsigned char*>(utf8.data()))
        , m_end(m_at + utf8.size()) {}
    bool atEnd() const { return m_at == m_end; }

    char32_t next() {
        const unsigned char first = *m_at++;
        if (first < 0x80)
            return first;
        if (first >= 0xC2 && first < 0xE0)
            return following<1>(first & 0x1FU, 0x80);
        if (first >= 0xE0 && first < 0xF0)
            return following<2>(first & 0x0FU, 0x800);
        if (first >= 0xF0 && first < 0xF5)
            return following<3>(first & 0x07U, 0x10000);
        return QChar::ReplacementCharacter;
    }

private:
    template <int count>
    char32_t following(char32_t character, char32_t least) {
        if (m_end - m_at < count)
            return QChar::ReplacementCharacter;
        for (int i = 0; i < count; ++i) {
            if ((m_at[i] & 0xC0) != 0x80)
                return QChar::ReplacementCharacter;
            character = character << 6 | (m_at[i] & 0x3FU);
        }
        if (character < least || character > QChar::LastValidCodePoint || QChar::isSurrogate(character))
            return QChar::ReplacementCharacter;
        m_at += count;
        return character;
    }

    const unsigned char* m_at;
    const unsigned char* m_end;
};

/// Reads the fold of a text by characters, without storing it. A copy reads on from the same place.
template <typename Characters>
class FoldReader {
public:
    explicit FoldReader(Characters text)
        : m_text(text)
        , m_table(&FoldTable::instance()) {}
    bool atEnd() const { return m_text.atEnd(); }
    QStringView rest() const { return m_text.rest(); } ///< of UTF-16 alone

    /// Not at the end.
    char32_t next() {
        const char32_t character = m_text.next();
        if (FoldTable::takesMark(character) && !m_text.atEnd()) {
            Characters behind = m_text;
            const char32_t mark = behind.next();
            if (const char16_t both = FoldTable::composed(char16_t(character), char16_t(mark))) {
                m_text = behind;
                return both;
            }
        }
        return character < 0x10000 ? (*m_table)[char16_t(character)] : character;
    }

private:
    Characters m_text;
    const FoldTable* m_table;
};

} // namespace velloria::platform
