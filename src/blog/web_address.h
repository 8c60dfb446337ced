// Addresses that a template, a page or the user gives.
#pragma once

#include <QUrl>

namespace velloria::blog {

/// The address to go to; one without a scheme is of the web. Throws platform::Failure for any other scheme than http
/// and https: a template is a stranger's text, and it leads to no script and to no file.
QUrl webAddress(const QString& address);

/// The address as a protocol may tell it: without user, password, query and mark, which may hold secrets. Of one that
/// is not of the web its scheme.
QString addressForProtocol(const QUrl& address);

} // namespace velloria::blog
