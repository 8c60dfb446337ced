// The notation of tDiary's Wiki style as HTML.
#pragma once

#include <QString>

namespace velloria::exchange {

/// A text with LF between lines; its headings begin at <h3>. Calls of plug-ins, "{{...}}", stay as text.
QString htmlOfWiki(const QString& wiki);

} // namespace velloria::exchange
