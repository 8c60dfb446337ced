// The user accounts of "velluser.ini", which lies beside the program and switches on multi-user mode.
#pragma once

#include "core/ini_reader.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace velloria::shell {

struct User {
    QString id;
    QString folder; ///< with its separator
};

class Users {
public:
    /// `myPath` is the program's folder.
    explicit Users(const QString& myPath);

    /// Whether there is a user file at all, even an empty one. Throws platform::Failure for a link that leads nowhere.
    bool exist() const;
    /// The sections that hold their own name as `ID`, in the file's order, however many there are. The letters of the
    /// `ID` count: a section is found whatever its case, so that a user may have got that of a deleted "Taro" as
    /// "taro". This and what rests on it throws platform::Failure for a file that is no text.
    std::vector<User> all() const;
    QStringList ids() const;
    /// Whether any section names a user.
    bool hasAny() const;
    /// Whether a section with an `ID` bears this name without regard to case: the same section or folder could be
    /// meant.
    bool isTaken(const QString& id) const;

    /// Makes a user of nothing but the `ID`, and the file if need be. False when the name is taken, if only by another
    /// program a moment ago. Throws platform::Failure when the machine refuses.
    bool add(const QString& id) const;

    /// Whether key `ID` of section `id` equals `id` and the unscrambled `Pass` equals `password`. Both keys read as ""
    /// when they are missing, so an empty id with an empty password passes. The section of the last login is nobody's.
    bool UserCheck(const QString& id, const QString& password) const;

    /// Whether key `ID` of section `id` equals `id`.
    bool UserExists(const QString& id) const;

    /// Folder of the user, with its separator: key `Path`, or defaultFolder().
    QString folder(const QString& id) const;
    /// The folder that a user gets: the program's folder plus id, with its separator.
    QString defaultFolder(const QString& id) const;
    /// Full path of the user file, be it there or not.
    const QString& file() const { return m_file; }

    /// The id that was typed last, "" for the first one.
    QString previousLogin() const;
    /// Remembers the id that was typed last.
    void rememberLogin(const QString& id) const;

private:
    QStringList sections() const;
    QString folderOf(const core::IniReader& file, const QString& id) const;
    QString valueOf(const core::Setting& setting, const QString& id) const;

    QString m_myPath;
    QString m_file;
};

} // namespace velloria::shell
