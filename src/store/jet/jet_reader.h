// The two questions that the program answers.
#pragma once

#include "store/jet/jet_output.h"

#include <QStringList>

namespace velloria::store::jet {

/// The number in the table DBInfo, 0 without that table. Throws JetError.
void tellVersion(const QString& file, JetOutput& output);

/// Begin, every row of the table with the wanted columns, End. Throws JetError, with how many rows were told, when one
/// can't be read.
void tellTable(const QString& file, const QString& name, const QStringList& columns, JetOutput& output);

} // namespace velloria::store::jet
