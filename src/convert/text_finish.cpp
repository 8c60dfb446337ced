#include "convert/text_finish.h"

#include "convert/tag_scan.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace velloria::convert {
namespace {

bool isLineEnd(char16_t c) {
    return c == u'\r' || c == u'\n';
}

/// What is left of a run of `count` breaks when three become one as long as there are three: each step takes away two
/// at a time, so all odd runs end as one and all even ones as two.
qsizetype collapsed(qsizetype count) {
    return 2 - count % 2;
}

/// All steps in one pass: a break is never part of an entity, and no run of breaks vanishes, so neither makes work for
/// the other. What does not change moves in bulk, within the text's own buffer as long as there is room: only lone CR
/// and LF make a text longer.
class Finisher {
public:
    Finisher(QString text, LineEnds lineEnds)
        : m_text(std::move(text))
        , m_lineEnds(lineEnds)
        , m_begin(reinterpret_cast<char16_t*>(m_text.data()))
        , m_out(m_begin)
        , m_moved(m_begin)
        , m_at(m_begin)
        , m_end(m_begin + m_text.size()) {}

    QString run() && {
        while (m_at != m_end) {
            const char16_t c = *m_at;
            if (c > u'&') // nearly all of a text
                ++m_at;
            else if (c == u'&')
                entity();
            else if (isLineEnd(c) && m_lineEnds != LineEnds::AsTheyAre)
                lineBreaks();
            else
                ++m_at;
        }
        moveUpTo(m_end);
        QString& result = m_longer.isNull() ? m_text : m_longer;
        result.truncate(m_out - m_begin);
        return std::move(result);
    }

private:
    /// "&amp;" goes first and may leave the start of "&lt;" or "&gt;".
    void entity() {
        const QStringView text(m_at, m_end);
        qsizetype length = text.startsWith("&amp;"_L1) ? 5 : 1;
        char16_t character = u'&';
        const QStringView behind = text.sliced(length);
        if (behind.startsWith("lt;"_L1) || behind.startsWith("gt;"_L1)) {
            character = behind.front() == u'l' ? u'<' : u'>';
            length += 3;
        }
        if (length > 1) {
            moveUpTo(m_at);
            *m_out++ = character;
            m_moved = m_at + length;
        }
        m_at += length;
    }

    void lineBreaks() {
        const char16_t* const start = m_at;
        qsizetype count = 0;
        for (; m_at != m_end && isLineEnd(*m_at); ++count)
            m_at += QStringView(m_at, m_end).startsWith(kLineBreak) ? 2 : 1;
        const qsizetype wanted = m_lineEnds == LineEnds::Collapsed ? collapsed(count) : count;
        const bool isNormal = m_at - start == count * kLineBreak.size();
        if (isNormal && wanted == count)
            return;
        moveUpTo(start);
        if (m_longer.isNull() && m_at - m_out < wanted * kLineBreak.size())
            moveToLongerBuffer((wanted + (m_end - m_at)) * kLineBreak.size());
        for (qsizetype i = 0; i < wanted; ++i)
            m_out = std::copy(kLineBreak.utf16(), kLineBreak.utf16() + kLineBreak.size(), m_out);
        m_moved = m_at;
    }

    void moveUpTo(const char16_t* to) {
        std::memmove(m_out, m_moved, std::size_t(to - m_moved) * sizeof *m_out);
        m_out += to - m_moved;
    }

    /// Happens once: from here on input and output are two.
    void moveToLongerBuffer(qsizetype room) {
        m_longer.resize(m_out - m_begin + room);
        auto* const longer = reinterpret_cast<char16_t*>(m_longer.data());
        m_out = std::copy(m_begin, m_out, longer);
        m_begin = longer;
    }

    QString m_text;
    QString m_longer;
    LineEnds m_lineEnds;
    char16_t* m_begin;       ///< of the output
    char16_t* m_out;         ///< its end so far
    const char16_t* m_moved; ///< input up to here is in the output
    const char16_t* m_at;    ///< input up to here has been looked at
    const char16_t* m_end;   ///< of the input
};

} // namespace

QString finishedText(QString text, LineEnds lineEnds) {
    return Finisher(std::move(text), lineEnds).run();
}

} // namespace velloria::convert
