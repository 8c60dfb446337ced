#include "browser/page_address.h"

#include "core/path_names.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

/// A scheme of one letter is a drive.
bool startsWithScheme(const QString& text) {
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]+:"_s);
    return text.contains(scheme);
}

/// Where the "#" before a mark stands, -1 without a mark. A "#" may stand in names of folders and files as well.
qsizetype markOf(const QString& path) {
    if (QFileInfo::exists(path))
        return -1;
    const qsizetype page = qMax(path.lastIndexOf(u".htm#"_s, -1, Qt::CaseInsensitive),
                                path.lastIndexOf(u".html#"_s, -1, Qt::CaseInsensitive));
    return page < 0 ? -1 : path.indexOf(u'#', page);
}

QUrl fileUrl(const QString& path) {
    const qsizetype mark = markOf(path);
    QUrl url = QUrl::fromLocalFile(path.left(mark));
    if (mark >= 0)
        url.setFragment(path.sliced(mark + 1));
    return url;
}

} // namespace

QUrl pageUrl(const QString& address) {
    if (core::isAbsoluteFolder(address))
        return fileUrl(address);
    return startsWithScheme(address) ? QUrl::fromEncoded(address.toUtf8()) : QUrl();
}

QUrl typedUrl(const QString& text) {
    const QString typed = text.trimmed();
    if (typed.isEmpty())
        return {};
    const QUrl url = pageUrl(typed);
    // "localhost:8080" looks like a scheme, too.
    return url.isValid() && isShownScheme(url.scheme()) ? url : QUrl::fromUserInput(typed);
}

bool isShownScheme(const QString& scheme) {
    static const QStringList shown{u"http"_s, u"https"_s, u"file"_s, u"about"_s, u"data"_s, u"blob"_s};
    return shown.contains(scheme);
}

} // namespace velloria::browser
