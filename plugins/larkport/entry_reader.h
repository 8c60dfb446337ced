// One entry of a file as one of the diary.
#pragma once

#include "common/diary_file.h"
#include "larkport/file_parts.h"

#include <optional>
#include <string>

namespace velloria::plugins::larkport {

/// Whether this program has written it, in the form that it undoes.
bool isOwn(const EntryParts& parts);

/// Nothing when its date is missing or none of the calendar. Comments are left out.
std::optional<Entry> entryOf(const EntryParts& parts);

/// The piece "COMMENT" or "PING" as HTML for the end of a postscript, lines parted by LF. Addresses of mail and machine
/// are left out: they are nobody else's business, and the postscript goes to the site.
std::string commentText(const Piece& piece);

} // namespace velloria::plugins::larkport
