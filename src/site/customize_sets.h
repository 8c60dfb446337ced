// The customize sets of a user and the text pieces that they share: files of the folder "Customize", by their names
// without ending. A set is the look of the site, one "<name>.ini"; a piece is a text that sets name, "<name>.htm".
#pragma once

#include "core/session.h"

#include <QStringList>

namespace velloria::site {

/// All sets, by name without regard to case.
QStringList allCustomizeSets(const core::Session& session);
/// Those that can be chosen: settings of feeds that lie there as "RSS.ini" are none.
QStringList customizeSets(const core::Session& session);
/// All text pieces, in the same order.
QStringList textPieces(const core::Session& session);

/// Full path, its parts spelt as they are on the disk.
QString customizeSetFile(const core::Session& session, const QString& name);
QString textPieceFile(const core::Session& session, const QString& name);

/// That of a set that is there and can be one: text of a moderate size. Throws platform::Failure for any other.
QString existingSetFile(const core::Session& session, const QString& name);

/// Whether a set or a piece may be called so: not an empty name, a name on any disk, all of it in code page 932, and
/// short enough to come back whole from the settings.
bool isCustomizeName(const core::Session& session, const QString& name);

/// The name of the set that is selected.
QString selectedCustomizeSet(const core::Session& session);
/// Selects the set, in the settings first and then in the session. Throws platform::Failure with both as they were,
/// also for what existingSetFile refuses.
void selectCustomizeSet(core::Session& session, const QString& name);

} // namespace velloria::site
