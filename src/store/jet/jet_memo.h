// Long texts, which a Jet file keeps beside the rows.
#pragma once

#include "store/jet/jet_file.h"

#include <QByteArray>

namespace velloria::store::jet {

/// The text's bytes, wherever they lie: `field` is what the row holds of it. The page that was read last stays. Throws
/// JetError.
QByteArray memoBytes(const JetFile& file, QByteArrayView field);

} // namespace velloria::store::jet
