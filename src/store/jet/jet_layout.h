// What came into the diary with which version.
#pragma once

#include "store/jet/jet_catalog.h"

namespace velloria::store::jet {

/// Throws JetError when the file has a table or a column that came, or has lost one that went, with a later version
/// than it says: with a wrong number what came later would be left behind in silence.
void requireLayout(const JetFile& file, const JetCatalog& catalog, qint64 version);

} // namespace velloria::store::jet
