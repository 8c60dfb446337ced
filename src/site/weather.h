// The weather words of an entry and their pictures.
#pragma once

#include <QString>
#include <QStringList>

namespace velloria::site {

/// The icon of a weather word; "" for a word that has none.
QString weatherIcon(const QString& weather);

/// The five weather pictures, as they lie in "DiaryParts".
const QStringList& weatherPictures();

} // namespace velloria::site
