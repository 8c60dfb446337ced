// Dates and their texts, as people type them and as pages and feeds print them. Nothing here depends on the machine's
// clock, zone or language: a QDateTime stands for what a clock on the wall shows, and one made here is in Qt::UTC.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace velloria::core {

/// The day and time that a text means, nothing when it means none.
///
/// A day is three numbers (year, month, day; when that is no day, the order of the numbers is tried otherwise) or two
/// (a day of `yearNow`, else the first of a month) between "/", "-", "," or blanks, or a Japanese date with or without
/// an era; a time is two or three numbers between ":" or ".". A year from 0 to 29 means 2000 to 2029, one from 30 to 99
/// means 1930 to 1999. A time alone is one of 1899/12/30. Width makes no difference, and a tab is a blank.
std::optional<QDateTime> parseDate(QStringView text, int yearNow);

/// The day of a text that names year, month and day in this order, whatever the year now: "2004/5/6", "2004-05-06",
/// "2004.5.6", "2004年5月6日", "平成16年5月6日", digits of any width, with or without a midnight behind it. Nothing for
/// a year of two digits and what else has more than one reading.
std::optional<QDate> fullDay(QStringView text);

/// `moment` in a form such as "yyyy/mm/dd hh:nn:ss" or "dddd, d mmm yyyy": "yyyy", "mm" and "dd" with zeros in front,
/// "d" without, "hh" (of 24), "nn" and "ss" for the time, "mmm", "ddd" and "dddd" for English names. Capitals make no
/// difference, other letters have no place in a form.
QString formatDate(const QDateTime& moment, QStringView form);

/// A text that is a date, or the number of one (days since 1899/12/30), in `form`; any other text as it stands.
QString formatTextAsDate(const QString& text, QStringView form, int yearNow);

} // namespace velloria::core
