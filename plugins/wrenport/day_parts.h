// A day as it was typed is one text; its headings make entries of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::wrenport {

/// "*1709866800*[旅][海]海まで"
struct Heading {
    std::optional<int64_t> seconds; ///< since 1970
    std::string_view name;          ///< of an anchor; "" without one
    std::vector<std::string_view> categories;
    std::string_view title;
};

/// What a line says as a heading; nothing when it is none.
std::optional<Heading> headingOf(std::string_view line);

/// A heading with the lines below it, or the lines above the first heading.
struct DayPart {
    std::optional<Heading> heading;
    std::vector<std::string_view> lines; ///< without the heading
    std::string_view text;               ///< all of it, the heading included, without the LF at its end
};

/// The parts in their order; the first one has no heading when any line stands above the first heading. A line within
/// preformatted text is no heading. The parts live as long as `body`.
std::vector<DayPart> partsOf(std::string_view body);

/// Whether a line begins preformatted text in which no notation works: ">||" or ">|perl|".
bool opensSuperPre(std::string_view line);

inline constexpr std::string_view kOpensPre = ">|";
inline constexpr std::string_view kClosesPre = "|<"; ///< at the end of a line
inline constexpr std::string_view kClosesSuperPre = "||<";

} // namespace velloria::plugins::wrenport
