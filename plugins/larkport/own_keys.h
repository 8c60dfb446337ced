// Keys of the head that this program alone reads and writes: what the format has no place for. Every other reader skips
// them.
#pragma once

namespace velloria::plugins::larkport {

/// The form in which the texts are made safe (safe_text.h); without it nothing of them is taken for a mark.
inline constexpr char kTextKey[] = "VELLORIA TEXT";
inline constexpr char kTextForm[] = "1";

/// The names of values that are missing in the diary, parted by commas.
inline constexpr char kMissingKey[] = "VELLORIA MISSING";

/// Behind this prefix a value that the format has no place for or can't hold exactly: "WEATHER" unless there is none,
/// "TIME" of the last save unless "DATE" tells it, and the key or piece whose exact text it is. A long one takes
/// several lines. Exact texts count as long as what the foreign readers see is still what was made of them.
inline constexpr char kExactPrefix[] = "VELLORIA ";

} // namespace velloria::plugins::larkport
