// What stands before every import of another program's diary: a look at what it would bring.
#pragma once

#include "core/run.h"
#include "platform/import_plan.h"

namespace velloria::exchange {

/// Asks whether the entries of a plan may be added, and tells how many they are, of which days, and how many of these
/// have entries already; those stay in front of the new ones. Gives the import mark for all of them, the name of a
/// group that is not there yet: the date and the program, and a number behind it for a further import on the same date.
/// Nothing when the answer is No. Throws platform::Failure.
std::optional<QString> beginImport(const core::Run& run, const platform::ImportPlan& plan);

} // namespace velloria::exchange
