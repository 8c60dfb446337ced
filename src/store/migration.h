// Brings an old diary database to the present version.
#pragma once

#include "core/session.h"

#include <functional>

namespace velloria::store {

enum class UpdateStage {
    Begins, ///< nothing has been touched yet
    Done,
};

/// Hears of each stage as it is reached.
using UpdateProgress = std::function<void(UpdateStage)>;

/// What a start does with the diary of the session. One of this program's version or a later one stays as it is, and
/// nothing is told. An older one goes to the backup; then it is converted if its version is one that was ever given
/// out, else it stays as it is; last the settings record the present version. Throws platform::Failure, with the diary
/// as it was and no new version on record.
void updateOldDiary(const core::Session& session, const UpdateProgress& progress);

/// Puts a fresh diary from the template "default.mdb" in place when there is no "diary.mdb" at all. The conversion of
/// an older file is not part of this version: it is refused with platform::Failure, and the file stays as it was.
void UpdateDatabase(const core::Session& session, qint16 oldVersion);

} // namespace velloria::store
