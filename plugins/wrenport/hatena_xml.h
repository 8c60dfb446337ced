// The XML of a diary of Hatena, as it stands in the file.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins::wrenport {

/// What somebody else wrote below a day.
struct Comment {
    std::string name;
    std::string text;
    std::string seconds; ///< since 1970, digits
};

/// What the notation of an entry does not tell: of a diary that this plug-in wrote.
struct KeptEntry {
    std::string check; ///< of the notation that it belongs to
    bool isPrivate = false;
    std::map<std::string, std::string> fields; ///< by name, escaped as kept_entry.h says
    std::set<std::string> missing;             ///< names of the fields that have no value at all
};

struct HatenaDay {
    std::string date; ///< as it stands there: "2024-03-08"
    std::string title;
    std::string body; ///< the notation as it was typed, LF between the lines
    std::vector<Comment> comments;
    std::vector<KeptEntry> kept;
};

/// How a file was read.
struct XmlReading {
    bool isCut = false;  ///< it ends before its end; the last day handed over may be cut as well
    std::string cutDay;  ///< the date of the day that is cut, "" when all are whole
    int64_t removed = 0; ///< characters that XML forbids
    int64_t leftOut = 0; ///< elements of no known name, with all that is in them
    int64_t stray = 0;   ///< stretches of text between the known elements
};

/// Hands over the days in the order of the file. Throws Error for what is no XML, or of another kind; declarations of
/// entities are refused before any of them is used.
XmlReading readHatenaXml(std::string_view utf8, const std::function<void(HatenaDay&&)>& take);

} // namespace velloria::plugins::wrenport
