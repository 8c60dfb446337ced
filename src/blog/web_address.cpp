#include "blog/web_address.h"

#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

bool isOfTheWeb(const QUrl& url) {
    return url.scheme() == u"http"_s || url.scheme() == u"https"_s;
}

} // namespace

QUrl webAddress(const QString& address) {
    QUrl url(address.trimmed());
    // "host:8080/post" reads as the scheme "host".
    if (url.scheme().isEmpty() || (!address.contains(u"//"_s) && url.path().section(u'/', 0, 0).toUShort() != 0))
        url = QUrl(u"http://"_s + address.trimmed());
    if (!url.isValid() || url.host().isEmpty() || !isOfTheWeb(url))
        throw platform::Failure(u"ブログのページを開けません。"_s, {}, u"http と https 以外のアドレスは開きません。"_s,
                                u"テンプレートとブログの設定のURLを確かめてください。"_s);
    return url;
}

QString addressForProtocol(const QUrl& address) {
    if (!isOfTheWeb(address)) // of a script or of data it is the text itself
        return address.scheme() + u':';
    return address.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

} // namespace velloria::blog
