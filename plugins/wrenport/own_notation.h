// An entry of ours as the notation of the service. Readers of the service show it as it is; what they would change or
// have no place for stands beside it, so that the plug-in itself gets every byte back.
#pragma once

#include "common/diary_file.h"
#include "wrenport/hatena_xml.h"

#include <string>
#include <string_view>

namespace velloria::plugins::wrenport {

struct OwnNotation {
    std::string text; ///< a heading and the lines below it, each with LF at its end
    KeptEntry kept;   ///< the fields that the text does not give back exactly
};

OwnNotation notationOf(const Entry& entry);

/// The entry that such a text stands for, `day` "yyyy/mm/dd", when it is the one that `kept` belongs to.
Entry entryOf(std::string_view text, const KeptEntry& kept, const std::string& day);

/// What tells whether a text, without LF at its end, is still the one that was written.
std::string checkOf(std::string_view text);

/// Any bytes as printable text of XML: backslash and two digits for what it can't hold.
std::string keptText(std::string_view bytes);
std::string fromKeptText(std::string_view text);

} // namespace velloria::plugins::wrenport
