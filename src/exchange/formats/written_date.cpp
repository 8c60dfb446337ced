#include "exchange/formats/written_date.h"

#include "exchange/formats/foreign_diary.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

std::optional<WrittenDate> writtenDate(const QString& text) {
    static const QRegularExpression form(uR"(^\s*(\d{4})([-/.])(\d{1,2})\2(\d{1,2}))"
                                         uR"((?:(?:[Tt]|\s+)(\d{1,2}):(\d{2})(?::(\d{2})(?:[.,]\d+)?)?)"
                                         uR"(\s*(?:[A-Za-z]{1,5}|[+-]\d{1,2}:?(?:\d{2})?)?)?\s*$)"_s);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const std::optional<QString> day =
        calendarDay(match.captured(1).toInt(), match.captured(3).toInt(), match.captured(4).toInt());
    if (!day)
        return std::nullopt;
    if (!match.hasCaptured(5))
        return WrittenDate{*day, {}};
    const QTime time(match.captured(5).toInt(), match.captured(6).toInt(), match.captured(7).toInt());
    if (!time.isValid())
        return std::nullopt;
    return WrittenDate{*day, time.toString(u"HH:mm:ss"_s)};
}

std::optional<WrittenDate> momentIn(const QString& moment, const QString& zone) {
    const QDateTime parsed = QDateTime::fromString(moment, Qt::ISODate);
    if (!parsed.isValid())
        return std::nullopt;
    const QTimeZone known(zone.toUtf8());
    const QDateTime local = known.isValid() ? parsed.toTimeZone(known) : parsed.toLocalTime();
    const std::optional<QString> day = calendarDay(local.date().year(), local.date().month(), local.date().day());
    if (!day)
        return std::nullopt;
    return WrittenDate{*day, local.time().toString(u"HH:mm:ss"_s)};
}

} // namespace velloria::exchange
