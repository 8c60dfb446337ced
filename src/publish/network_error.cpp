#include "publish/network_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {

QString showNetworkError(const Internet& internet, platform::Desk& desk) {
    const QString text = InternetErrorText(internet);
    const QString reason = failureReason(internet);
    desk.status(text);
    if (reason != text)
        desk.notice(u"エラー："_s + reason);
    return reason;
}

} // namespace velloria::publish
