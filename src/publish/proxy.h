// The proxy that the system has set up. Asked for each connection: it may change while the program runs.
#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace velloria::publish {

/// The proxy for an address, scheme and port with it; "" for none. Nothing when the environment's variables decide,
/// which the transfer library obeys by itself. An upload by FTP passes only proxies of the SOCKS kind.
std::optional<QByteArray> proxyFor(const QUrl& url);

} // namespace velloria::publish
