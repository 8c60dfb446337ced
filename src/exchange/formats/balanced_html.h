// HTML whose elements all end, and end in order.
#pragma once

#include <QString>

namespace velloria::exchange {

/// `html` with the end tags that a browser thinks of itself, and without those that end nothing: it reads the same.
/// Some programs print every tag that they can't pair as text.
QString balancedHtml(const QString& html);

} // namespace velloria::exchange
