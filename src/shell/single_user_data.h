// The data of the single user, and its way to one of several users.
#pragma once

#include "core/session.h"

namespace velloria::shell {

/// Full paths, each "" when there is no such file.
struct SingleUserData {
    QString settings; ///< "diary.ini"
    QString diary;    ///< "diary.mdb"

    bool isEmpty() const { return settings.isEmpty() && diary.isEmpty(); }
    /// Whether one of them lies in `folder` itself, be it by a link.
    bool liesIn(const QString& folder) const;
};

/// Looks for each file in "UserData" first, then beside the program, where old versions had it. Throws
/// platform::Failure for a link that leads nowhere.
SingleUserData findSingleUserData(const core::Session& session);

/// Copies what is there of the data to the user's `folder`, which ends in its separator and is made if need be. The
/// settings that come there lead to that folder: the data folder and the files of site and blog, but not that of the
/// feeds. What the user has under these names stays as "diary_BackUp", an older one of that name as "diary_BackUp2" and
/// so on. What a start could not read is refused before anything moves. When the machine refuses, everything is put
/// back and platform::Failure is thrown, which names what could not be put back.
void moveSingleUserData(const SingleUserData& data, const QString& folder);

} // namespace velloria::shell
