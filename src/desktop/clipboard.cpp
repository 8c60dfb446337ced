#include "desktop/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

bool isText(const QMimeData& data) {
    if (!data.hasFormat(u"text/plain"_s))
        return false;
    const QList<QUrl> urls = data.urls();
    return urls.isEmpty() || !std::all_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

std::optional<QString> clipboardText() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data && isText(*data) ? std::optional(data->text()) : std::nullopt;
}

} // namespace velloria::desktop
