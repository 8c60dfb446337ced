#include "browser/picture_place.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::browser {

QUrl picturePlace(const QUrl& wanted, const QString& dataPath) {
    if (!wanted.isLocalFile())
        return {};
    const QString file = QDir::cleanPath(wanted.toLocalFile());
    const QString logs = QDir::cleanPath(dataPath + u"DiaryLog/DiaryParts"_s) + u'/';
    if (!file.startsWith(logs) || QFileInfo::exists(file))
        return {};
    const QString instead = QDir::cleanPath(dataPath + u"DiaryParts"_s) + u'/' + file.sliced(logs.size());
    return QFileInfo(instead).isFile() ? QUrl::fromLocalFile(instead) : QUrl();
}

} // namespace velloria::browser
