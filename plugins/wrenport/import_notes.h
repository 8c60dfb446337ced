// What the person is told of an import before it.
#pragma once

#include "common/encoding.h"
#include "common/losses.h"
#include "wrenport/hatena_xml.h"

#include <set>
#include <string>
#include <string_view>

namespace velloria::plugins::wrenport {

/// Some of the things that were found, for a person to know what is meant.
class Examples {
public:
    void add(std::string_view text);
    std::string text() const; ///< "海、山など"

private:
    std::set<std::string> m_named;
    bool m_hasMore = false;
};

struct ImportNotes {
    Losses losses;
    Examples categories; ///< of those that are lost
    Examples dates;      ///< that are in no calendar
    Examples titles;     ///< of days

    /// Lines with LF between them.
    std::string text(const XmlReading& reading, const DecodedText& decoding) const;
};

} // namespace velloria::plugins::wrenport
