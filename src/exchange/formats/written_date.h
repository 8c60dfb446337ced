// Dates as the files of other programs have them.
#pragma once

#include <QString>

#include <optional>

namespace velloria::exchange {

struct WrittenDate {
    QString day;  ///< "yyyy/mm/dd"
    QString time; ///< "hh:nn:ss", null when there is none

    /// "yyyy/mm/dd hh:nn:ss", null without a time.
    QString publishTime() const { return time.isNull() ? QString() : day + u' ' + time; }
};

/// Year, month and day, with a time of day behind it or not, and a zone behind that: "2024-03-09", "2024-3-9 14:05",
/// "2024-03-09T14:05:00.5+09:00". What the clock on the wall showed where it was written counts: a zone moves nothing.
/// Nothing for any other text and for a date that does not exist.
std::optional<WrittenDate> writtenDate(const QString& text);

/// A moment as the clock on the wall of `zone` showed it; an unknown zone is that of this computer. `moment` is as
/// JSON has it, with its own zone: "2024-03-09T05:05:00Z". Nothing for any other text.
std::optional<WrittenDate> momentIn(const QString& moment, const QString& zone);

} // namespace velloria::exchange
