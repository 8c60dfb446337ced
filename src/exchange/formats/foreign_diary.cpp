#include "exchange/formats/foreign_diary.h"

#include "core/day_key.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

constexpr qsizetype kMostNames = 5;
constexpr qsizetype kLongestName = 60;
constexpr int kFirstYear = 100; // a year of one or two digits is a slip of the pen

} // namespace

std::optional<QString> calendarDay(int year, int month, int day) {
    const QDate date(year, month, day);
    if (year < kFirstYear || year > 9999 || !date.isValid())
        return std::nullopt;
    return core::dayKey(date);
}

// Two codes that are no characters: no text has them.
constexpr QChar kPicture(u'\uFDD0');
constexpr QChar kPictureEnd(u'\uFDD1');

QString picturePlaceholder(const ForeignEntry& entry) {
    return kPicture + QString::number(entry.pictures.size()) + kPictureEnd;
}

QString withoutPlaceholders(const QString& text, const QStringList& addresses) {
    QString changed;
    qsizetype copied = 0;
    for (qsizetype at = text.indexOf(kPicture); at >= 0; at = text.indexOf(kPicture, at + 1)) {
        qsizetype end = at + 1;
        while (end < text.size() && text[end].isDigit())
            ++end;
        bool isNumber = false;
        const int number = QStringView(text).sliced(at + 1, end - at - 1).toInt(&isNumber);
        if (!isNumber || number >= addresses.size() || end == text.size() || text[end] != kPictureEnd)
            continue;
        changed += QStringView(text).sliced(copied, at - copied);
        changed += addresses[number];
        copied = end + 1;
    }
    return copied == 0 ? text : changed.append(QStringView(text).sliced(copied));
}

void Losses::countNamed(const QString& what, const QString& name) {
    Count& count = m_counts[what];
    ++count.times;
    if (count.names.size() <= kMostNames && !name.isEmpty())
        count.names += name.size() > kLongestName ? name.left(kLongestName) + u"…"_s : name;
}

void Losses::countHalves(qsizetype halves) {
    if (halves > 0)
        count(u"半分だけの文字 (�にします)"_s, halves);
}

void Losses::countEncoding(const QString& encoding) {
    if (encoding != u"UTF-8"_s)
        ++m_encodings[encoding];
}

QString Losses::text() const {
    QStringList lines;
    QStringList counted;
    for (auto loss = m_counts.cbegin(); loss != m_counts.cend(); ++loss) {
        QString told = u"%1 %2件"_s.arg(loss.key()).arg(loss->times);
        if (!loss->names.isEmpty()) {
            const bool isCut = loss->names.size() > kMostNames;
            told += u" (%1%2)"_s.arg(loss->names.first(std::min(loss->names.size(), kMostNames)).join(u"、"_s),
                                     isCut ? u"、…"_s : QString());
        }
        counted += told;
    }
    if (!counted.isEmpty())
        lines += u"持ち込めないもの: "_s + counted.join(u"、"_s);
    QStringList encodings;
    for (auto encoding = m_encodings.cbegin(); encoding != m_encodings.cend(); ++encoding)
        encodings += u"%1 %2件"_s.arg(encoding.key()).arg(encoding.value());
    if (!encodings.isEmpty())
        lines += u"文字コード: "_s + encodings.join(u"、"_s);
    return lines.join(u"\r\n"_s);
}

} // namespace velloria::exchange
