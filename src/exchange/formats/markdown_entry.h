// An entry as a Markdown file with a head that sites are made of, and back.
//
// The body is the entry's HTML. Where the file shows less than the entry has (a line end of another kind, a text that a
// site would take for a command), the head holds that field a second time under a key of ours. The second one counts as
// long as the file still shows what was made of it: who changes the file elsewhere gets what they see.
#pragma once

#include "exchange/formats/front_matter.h"
#include "store/entry.h"

namespace velloria::exchange {

/// The whole file, UTF-8, with LF between lines.
QByteArray markdownFile(const store::Entry& entry);

/// Whether the program wrote the file.
bool isOwnMarkdown(const FrontMatter& matter);

/// The entry of such a file. A day that is not to be read is null.
store::Entry ownEntry(const FrontMatter& matter);

} // namespace velloria::exchange
