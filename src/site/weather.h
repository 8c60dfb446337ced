// The weather words of an entry and their pictures. A word without a picture is no failure.
#pragma once

#include "core/session.h"
#include "registers/site_files.h"

#include <QStringList>

namespace velloria::site {

/// The icon of a weather word; "" for a word that has none.
QString weatherIcon(const QString& weather);

/// The five weather pictures, as they lie in "DiaryParts".
const QStringList& weatherPictures();

/// Copies the weather pictures that the site's "DiaryParts" lacks and registers each once as a file of all months, so
/// that upload and logs take them along. Without a site folder they are registered alone. One
/// that may not go is left to what `siteFiles` tells. Throws platform::Failure.
void placeWeatherPictures(const core::Session& session, registers::SiteFiles& siteFiles);

} // namespace velloria::site
