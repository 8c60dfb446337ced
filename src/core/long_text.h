// Replacements in texts of many megabytes: the toolkit's own move the rest of the text each time it grows.
#pragma once

#include <QString>

namespace velloria::core {

/// `text` with every `before`, found from the front, as `after`. `before` is not empty.
QString replaced(const QString& text, const QString& before, const QString& after);

/// `text` with CR LF for each of its line ends, which are CR LF, CR or LF.
QString withCrLf(const QString& text);

} // namespace velloria::core
