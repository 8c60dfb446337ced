// Addresses as the program and its users write them.
#pragma once

#include <QUrl>

namespace velloria::browser {

/// The address of a full path, with "#" and a mark behind the name of a page if need be ("tmp.htm#2004/05/06"), or of
/// a text that is an address already. Invalid for anything else.
QUrl pageUrl(const QString& address);

/// What somebody typed into the address box: the above, or a host without its scheme.
QUrl typedUrl(const QString& text);

/// Whether the browser has a use for addresses of this scheme.
bool isShownScheme(const QString& scheme);

} // namespace velloria::browser
