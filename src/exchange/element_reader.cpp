#include "exchange/element_reader.h"

#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

QString closingOf(const QString& tag) {
    return u"＜／"_s + tag.sliced(1);
}

} // namespace

int countEntries(const QString& text) {
    const QString opening = QString::fromUtf16(kDayTag);
    const QString closing = closingOf(opening);
    int count = 0;
    qsizetype place = text.indexOf(opening);
    while (place >= 0) {
        ++count;
        const qsizetype end = text.indexOf(closing, place);
        place = end < 0 ? -1 : text.indexOf(opening, end + closing.size());
    }
    return count;
}

ElementReader::ElementReader(const QString& text)
    : m_text(text) {}

/// From 1 in the rest; 0 for a tag that is not there.
qsizetype ElementReader::placeOf(const QString& tag) {
    auto found = m_found.find(tag);
    if (found == m_found.end() || (*found >= 0 && *found < m_begin))
        found = m_found.insert(tag, m_text.indexOf(tag, m_begin));
    return *found < 0 ? 0 : *found - m_begin + 1;
}

QString ElementReader::element(const QString& tag) {
    const QString closing = closingOf(tag);
    const qsizetype first = placeOf(tag) + tag.size();
    const qsizetype length = placeOf(closing) - first;
    if (length < 0)
        throw platform::Failure(u"クリップボードの%1番目の日記を読み取れません。"_s.arg(m_number), {},
                                u"「%1」と「%2」が揃っていません"_s.arg(tag, closing),
                                u"この日記は登録していません。直してから、もう一度読み込んでください。"_s);
    // "" is what an empty element holds; a null text would be stored as a missing value.
    const QString text = m_text.mid(m_begin + first - 1, length);
    return text.isNull() ? u""_s : text;
}

void ElementReader::moveOn() {
    constexpr qsizetype kShortestRest = 10;
    ++m_number;
    const QString closing = closingOf(QString::fromUtf16(kContentsTag));
    const qsizetype place = placeOf(closing);
    if (place == 0 || m_text.size() - m_begin - place <= kShortestRest) {
        m_begin = m_text.size();
        return;
    }
    m_begin += place - 1 + closing.size();
    // The next character is the beginning of a line end, unless the next entry begins at once.
    if (m_begin < m_text.size() && m_text[m_begin] != u'＜')
        ++m_begin;
}

} // namespace velloria::exchange
