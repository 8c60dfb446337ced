// What both registers share: the file on the disk that somebody wants to register, the name that it is to have on the
// site, and what is said when a file stays that was to go.
#pragma once

#include "platform/failure.h"

#include <QStringList>

namespace velloria::registers {

/// A path in its two parts.
struct RegisterSource {
    QString path;
    QString folder; ///< without its last separator
    QString name;
};

/// The path up to a first NUL. Throws platform::Failure when no file is there: a folder or a pipe can't be copied, and
/// the latter would never end.
RegisterSource registerSource(const QString& path);

/// Throws platform::Failure when a registered file can't be called that: it is no bare name, or pages and server would
/// know it by another one because the code page lacks a character.
void requireRegisterName(const QString& name);

/// Whether both texts name one folder: without regard to case on Windows, exactly elsewhere, where two folders may
/// differ by that alone.
bool isSameFolder(const QString& left, const QString& right);

/// What is thrown when files stay on the disk though their row has gone.
platform::Failure removalFailure(const QStringList& files, const QString& reason);

} // namespace velloria::registers
