#include "publish/proxy.h"

#include <QNetworkProxyFactory>

using namespace Qt::StringLiterals;

namespace velloria::publish {

namespace {

/// The proxy variable of the scheme, or that of all schemes. HTTP's is obeyed in small letters only: in a script that a
/// web server runs, the other one comes from the visitor.
std::optional<QByteArray> fromEnvironment(const QByteArray& scheme) {
    QList<QByteArray> names{scheme + "_proxy"};
    if (scheme != "http")
        names << names.first().toUpper();
    names << "all_proxy"
          << "ALL_PROXY";
    for (const QByteArray& name : names) {
        if (qEnvironmentVariableIsSet(name.constData()))
            return qgetenv(name.constData());
    }
    return std::nullopt;
}

QByteArray fromSystem(const QUrl& url) {
    for (const QNetworkProxy& proxy : QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url))) {
        QUrl found;
        if (proxy.type() == QNetworkProxy::Socks5Proxy)
            found.setScheme(u"socks5h"_s);
        else if (proxy.type() == QNetworkProxy::HttpProxy || proxy.type() == QNetworkProxy::HttpCachingProxy)
            found.setScheme(u"http"_s);
        else if (proxy.type() == QNetworkProxy::NoProxy)
            return {};
        else
            continue;
        found.setHost(proxy.hostName());
        found.setPort(proxy.port());
        found.setUserName(proxy.user());
        found.setPassword(proxy.password());
        return found.toEncoded();
    }
    return {};
}

} // namespace

std::optional<QByteArray> proxyFor(const QUrl& url) {
    const QByteArray scheme = url.scheme().toLatin1();
    const std::optional<QByteArray> set = fromEnvironment(scheme);
    if (scheme != "ftp")
        return set ? std::nullopt : std::optional(fromSystem(url));
    const QByteArray proxy = set ? *set : fromSystem(url);
    return proxy.toLower().startsWith("socks") ? proxy : QByteArray();
}

} // namespace velloria::publish
