// Which files of the data folder are pages that this program made. Nothing here asks or tells anybody; a list or page
// that is not there is no failure.
#pragma once

#include "core/session.h"

#include <QSet>

namespace velloria::site {

/// The names below the data folder that the lists of the upload hold: pages of a site that lies there.
QSet<QString> listedNames(const core::Session& session);

/// Whether the file says of itself that this program made it, which pages and RSS 2.0 and Atom feeds do.
bool namesItsGenerator(const QString& file);

/// Removes the pages of days ("2004_05_06.htm") that previews left in the data folder before the site came there: they
/// hold private entries, and whoever copies the folder would publish them. Pages of the site and what somebody else
/// made stay. Throws platform::Failure when one can't be removed; the others are gone then all the same.
void removeOldDayPages(const core::Session& session);

} // namespace velloria::site
