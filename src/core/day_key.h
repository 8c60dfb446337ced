// Day keys "yyyy/mm/dd" and month keys "yyyy/mm": zero-padded, so that text order is date order.
#pragma once

#include <QDate>
#include <QString>

namespace velloria::core {

/// "yyyy/mm/dd"
QString dayKey(const QDate& date);

/// Whether the text is a day key of a day that exists.
bool isDayKey(QStringView text);

/// Whether the text is a month key, "yyyy/mm" with a month from 01 to 12.
bool isMonthKey(QStringView text);

/// The first seven characters of a day key.
QString monthOf(const QString& day);

/// A day key with "_" for "/", as in the name of a day's page.
QString dayFileName(const QString& day);

} // namespace velloria::core
