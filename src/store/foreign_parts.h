// What other programs put into a diary beside its own tables.
#pragma once

#include "store/sqlite/connection.h"

namespace velloria::store {

/// Throws platform::Failure, which names it, for a table with rows or a column with values that a fresh diary does not
/// have: copied into one it would be lost. Triggers, views and indexes hold nothing that somebody wrote.
void refuseForeignParts(const sqlite::Connection& connection, const QString& file);

} // namespace velloria::store
