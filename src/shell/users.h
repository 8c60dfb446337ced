// The user accounts of "velluser.ini", which lies beside the program and switches on multi-user mode.
#pragma once

#include "core/setting.h"

#include <QString>

namespace velloria::shell {

class Users {
public:
    /// `myPath` is the program's folder.
    explicit Users(const QString& myPath);

    /// Whether there is a user file at all, even an empty one. Throws platform::Failure for a link that leads nowhere.
    bool exist() const;
    /// Whether any section names a user.
    bool hasAny() const;

    /// Whether key `ID` of section `id` equals `id` and the unscrambled `Pass` equals `password`. Both keys read as ""
    /// when they are missing, so an empty id with an empty password passes.
    bool UserCheck(const QString& id, const QString& password) const;

    /// Whether key `ID` of section `id` equals `id`.
    bool UserExists(const QString& id) const;

    /// Folder of the user, with its separator: key `Path`, or the program's folder plus id.
    QString folder(const QString& id) const;

    /// The id that was typed last, "" for the first one.
    QString previousLogin() const;
    /// Remembers the id that was typed last.
    void rememberLogin(const QString& id) const;

private:
    QString valueOf(const core::Setting& setting, const QString& id) const;

    QString m_myPath;
    QString m_file;
};

} // namespace velloria::shell
