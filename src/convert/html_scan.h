// The HTML scan of the HTML to text converter. A tag is what tag_scan.h says; line ends and entities stay as they are.
#pragma once

#include "convert/html_settings.h"

#include <QString>

namespace velloria::convert {

/// HTML mode: every tag stays but for what the settings drop or turn into text.
QString scanToHtml(QStringView html, const HtmlSettings& settings);

} // namespace velloria::convert
