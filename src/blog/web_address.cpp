#include "blog/web_address.h"

#include "platform/failure.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {

QUrl webAddress(const QString& address) {
    QUrl url(address.trimmed());
    // "host:8080/post" reads as the scheme "host".
    if (url.scheme().isEmpty() || (!address.contains(u"//"_s) && url.path().section(u'/', 0, 0).toUShort() != 0))
        url = QUrl(u"http://"_s + address.trimmed());
    const QString scheme = url.scheme();
    if (!url.isValid() || url.host().isEmpty() || (scheme != u"http"_s && scheme != u"https"_s))
        throw platform::Failure(u"ブログのページを開けません。"_s, {}, u"http と https 以外のアドレスは開きません。"_s,
                                u"テンプレートとブログの設定のURLを確かめてください。"_s);
    return url;
}

QString addressForProtocol(const QUrl& address) {
    return address.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

} // namespace velloria::blog
