// The text scan of the HTML to text converter. A tag is what tag_scan.h says; line ends and entities stay as they are.
#pragma once

#include "convert/html_settings.h"

#include <QString>

namespace velloria::convert {

/// Text mode: every tag goes but for what the settings turn into text.
QString scanToText(QStringView html, const HtmlSettings& settings);

} // namespace velloria::convert
