// The value of a "DATE:" line.
#pragma once

#include "common/dates.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloria::plugins::larkport {

/// Reads "08/08/2007 03:00:00 PM" and what other programs write for it: one digit for two, 24 hours, no seconds, no
/// time, a year of two digits (70 to 99 are of the last century), "2024-03-08 10:11:12", with "T" and a zone as well,
/// and "2024/03/08". The clock is that of the writer; a time in "Z" becomes the local one. Nothing for a date that is
/// none.
std::optional<DateTime> readDateLine(std::string_view value);

/// "08/08/2007 03:00:00 PM", the form that every reader takes.
std::string dateLine(const DateTime& time);

} // namespace velloria::plugins::larkport
