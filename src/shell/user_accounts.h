// The commands on the user accounts: of the user manager's buttons, and of the command line tool.
#pragma once

#include "core/run.h"
#include "platform/outcome.h"
#include "shell/users.h"

#include <optional>

namespace velloria::shell {

/// Each asks and tells through the desk. Refused is a cancelled prompt as well as a box that said why; what is refused
/// changes nothing. An empty id is nobody, who is told to choose. What the machine refuses is thrown as
/// platform::Failure, with the user file as it was.
class UserAccounts {
public:
    explicit UserAccounts(const core::Run& run);

    /// Makes a user with a folder, and with the first one the user file. The name is asked for unless it is `told`.
    /// When the password is cancelled (Refused) the user stays, without password and `Path`; when its two lines differ
    /// the user goes again, and so does a file that was made for nobody else. A user whom the machine does not let go
    /// stays without a password too, which the Failure says.
    platform::Outcome makeUser(const std::optional<QString>& told = {});

    /// Of the logged-in user, who is not asked for the old one.
    platform::Outcome changePassword();

    /// Takes `ID` and `Pass` away; `Path` and the folder stay.
    platform::Outcome deleteUser(const QString& id);

    /// Sets `Path` to a folder that is asked for unless it is `told`. Moves nothing.
    platform::Outcome changePath(const QString& id, const std::optional<QString>& told = {});

    /// Settings and diary of the single user come into the user's folder, over the user's own, which stay as backups.
    platform::Outcome takeSingleUserData(const QString& id);

private:
    bool isFree(const QString& id) const;
    bool isUsableName(const QString& id) const;
    bool canWorkIn(const QString& folder) const;
    bool isAnothersFolder(const QString& id) const;
    QStringList othersAround(const QString& folder, const QString& id) const;
    bool isFolderFor(const QString& id, const QString& folder) const;
    bool hasPassword(const QString& id, const QString& whatStops) const;
    void furnish(const QString& id, const QString& password) const;
    void takeIdBack(const QString& id, bool isFirst) const;
    bool removeFileOfNobodyBut(const QString& id) const;
    platform::Outcome refuse(const QString& text) const;

    core::Session& m_session;
    platform::Desk& m_desk;
    Users m_users;
};

} // namespace velloria::shell
