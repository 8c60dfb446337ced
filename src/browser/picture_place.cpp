#include "browser/picture_place.h"

#include "core/files.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::browser {

QUrl picturePlace(const QUrl& wanted, const QString& dataPath) {
    if (!wanted.isLocalFile())
        return {};
    const QString file = QDir::cleanPath(wanted.toLocalFile());
    const QString logs = QDir::cleanPath(core::files::kLogParts.below(dataPath)) + u'/';
    if (!file.startsWith(logs) || QFileInfo::exists(file))
        return {};
    const QString instead = QDir::cleanPath(core::files::kParts.below(dataPath)) + u'/' + file.sliced(logs.size());
    return QFileInfo(instead).isFile() ? QUrl::fromLocalFile(instead) : QUrl();
}

} // namespace velloria::browser
