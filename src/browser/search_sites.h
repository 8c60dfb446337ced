// The search sites of the browser's search box.
#pragma once

#include "core/settings.h"

#include <QString>
#include <QStringList>

namespace velloria::browser {

/// The names as they are chosen from, in order.
QStringList searchSiteNames();

/// The address, percent-encoded but for the words of sites that take them as they are, of a search for `words` on the
/// site at `index`. Hosts come from "endpoints.ini" beside the program. "" for an index without a site, or a site
/// without a host.
QString searchAddress(const core::Settings& settings, int index, const QString& words);

} // namespace velloria::browser
