#include "convert/password_text.h"

#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

namespace velloria::convert {
namespace {

constexpr qsizetype kLongestValue = 255; ///< bytes of a settings value that are read back
constexpr char32_t kFirstPastUnits = 0x10000;

/// The character's code when it has one that leads back to it. Of several codes of a character only one does, and the
/// characters that are written by another one's code have none.
unsigned ownCode(char16_t character) {
    const unsigned code = platform::codeOf(character);
    return code != 0 && platform::characterOf(code) == character ? code : 0;
}

/// Each character's neighbours within its run. A run's characters form a ring, so both are bijections.
class Rings {
public:
    Rings() {
        std::iota(m_next.begin(), m_next.end(), char16_t(0));
        m_previous = m_next;
        fillCodePage();
        fillOthers();
    }

    char32_t next(char32_t c) const {
        if (c >= kFirstPastUnits)
            return c == QChar::LastValidCodePoint ? kFirstPastUnits : c + 1;
        return m_next[c];
    }

    char32_t previous(char32_t c) const {
        if (c >= kFirstPastUnits)
            return c == kFirstPastUnits ? char32_t(QChar::LastValidCodePoint) : c - 1;
        return m_previous[c];
    }

private:
    void fillCodePage() {
        std::vector<char16_t> run;
        for (unsigned code = 1; code <= 0xFFFF; ++code) {
            const bool isCharacter = platform::isCode(code) && ownCode(platform::characterOf(code)) == code;
            if (isCharacter)
                run.push_back(platform::characterOf(code));
            else
                close(run);
        }
        close(run);
    }

    void fillOthers() {
        std::vector<char16_t> run;
        for (unsigned unit = 0x80; unit <= 0xFFFF; ++unit) {
            const auto c = char16_t(unit);
            if (ownCode(c) == 0 && !QChar::isSurrogate(c))
                run.push_back(c);
            else
                close(run);
        }
        close(run);
    }

    void close(std::vector<char16_t>& run) {
        for (std::size_t i = 0; i < run.size(); ++i) {
            const char16_t following = run[(i + 1) % run.size()];
            m_next[run[i]] = following;
            m_previous[following] = run[i];
        }
        run.clear();
    }

    std::array<char16_t, kFirstPastUnits> m_next;
    std::array<char16_t, kFirstPastUnits> m_previous;
};

const Rings& rings() {
    static const Rings instance;
    return instance;
}

template <typename Step>
QString steppedAndReversed(const QString& text, Step step) {
    QString result;
    result.reserve(text.size());
    for (qsizetype end = text.size(); end > 0;) {
        const QChar last = text[--end];
        if (last.isLowSurrogate() && end > 0 && text[end - 1].isHighSurrogate())
            result += QChar::fromUcs4(step(QChar::surrogateToUcs4(text[--end], last)));
        else
            result += QChar(char16_t(step(last.unicode())));
    }
    return result;
}

} // namespace

QString EncryptPassword(const QString& text) {
    return steppedAndReversed(text, [](char32_t c) { return rings().next(c); });
}

QString DecryptPassword(const QString& text) {
    return steppedAndReversed(text, [](char32_t c) { return rings().previous(c); });
}

QString passwordFromSetting(const QString& value) {
    // What a password box takes scrambles to characters of the code page alone. Another one in the value was a
    // reference by its look and becomes that text again.
    return DecryptPassword(platform::fromCodePage(platform::toCodePage(value)));
}

bool isPasswordText(QStringView text) {
    return std::ranges::all_of(text,
                               [](QChar c) { return c.category() != QChar::Other_Control && ownCode(c.unicode()); }) &&
           platform::toCodePage(text).size() <= kLongestValue;
}

} // namespace velloria::convert
