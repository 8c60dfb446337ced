#include "desktop/clipboard.h"

#include "core/path_names.h"
#include "platform/utf8.h"

#include <QClipboard>
#include <QDir>
#include <QDropEvent>
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

QStringList droppedFiles(const QDropEvent& event) {
    QStringList files;
    if (event.source())
        return files;
    for (const QUrl& url : event.mimeData()->urls()) {
        if (url.isLocalFile())
            files += QDir::toNativeSeparators(url.toLocalFile());
    }
    return files;
}

std::optional<QString> droppedImage(const QDropEvent& event) {
    static const QStringList kEndings{u"gif"_s, u"jpg"_s, u"jpeg"_s, u"png"_s, u"bmp"_s};
    const QStringList files = droppedFiles(event);
    if (files.isEmpty() || !kEndings.contains(core::GetFileExt(files.front()).toLower()))
        return std::nullopt;
    return files.front();
}

QString textOf(const QMimeData& data) {
    const QByteArray utf8 = data.data(u"text/plain;charset=utf-8"_s);
    // Qt takes U+FEFF in front for a file's signature.
    return utf8.startsWith("\xEF\xBB\xBF") ? platform::fromUtf8(utf8) : data.text();
}

std::optional<QString> clipboardText() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data || data->formats().isEmpty())
        return u""_s;
    return isText(*data) ? std::optional(textOf(*data)) : std::nullopt;
}

} // namespace velloria::desktop
