// Text in a page or an XML file.
#pragma once

#include <string>
#include <string_view>

namespace velloria::plugins {

/// With references for & < > and ", so that it is text in an element and in a quoted attribute.
std::string escaped(std::string_view text);

} // namespace velloria::plugins
