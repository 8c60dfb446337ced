// What of a diary's findings has one right answer, put right.
#pragma once

#include "core/run.h"

#include <QStringList>

namespace velloria::store {

struct Repair {
    QStringList mended;    ///< what was changed, a line each for people
    QStringList remaining; ///< what the check finds afterwards
};

/// Days in another form get their key, and the numbers of a day are 1 to n again, in the order of the old numbers and
/// rows; entries of one day under several forms become one day. Registered files stay with their entries; one that may
/// be of more than one stays with a private one. All in one transaction, behind a backup; when there is nothing to mend
/// nothing is written, and no backup made. A damaged file, an old diary and one of a later version are refused. Throws
/// platform::Failure with the diary as it was, and sqlite::Busy when another program holds it.
Repair repairDatabase(const core::Run& run);

} // namespace velloria::store
