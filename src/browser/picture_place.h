// Where the pictures of local pages lie.
#pragma once

#include <QUrl>

namespace velloria::browser {

/// Found entries look for their pictures among those of the logs, "DiaryLog/DiaryParts" of the data folder; until its
/// month is a log, a picture lies in "DiaryParts". The address there of a picture that is missing in the one and not
/// in the other; invalid for every other address.
QUrl picturePlace(const QUrl& wanted, const QString& dataPath);

} // namespace velloria::browser
