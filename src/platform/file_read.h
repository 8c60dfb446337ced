// Files read whole. What a name leads to must be a regular file: nothing else can be read without waiting.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velloria::platform {

/// More than any file holds.
inline constexpr qint64 kWholeFile = -1;

/// The whole file, or its first `mostBytes`. Throws Failure when it can't be read.
QByteArray readFile(const QString& file, qint64 mostBytes = kWholeFile);

/// The same; nothing when there is no such file. What is there and can't be read is a Failure: taken for nothing, it
/// would be replaced by nothing.
std::optional<QByteArray> readFileIfThere(const QString& file, qint64 mostBytes = kWholeFile);

/// The last `mostBytes` of the file, or all of a shorter one; nothing when there is no such file. Throws Failure.
std::optional<QByteArray> readEndIfThere(const QString& file, qint64 mostBytes);

/// Whether both files have the same bytes, from `begin` on; neither is held in memory. Throws Failure when one can't be
/// read.
bool haveSameBytes(const QString& left, const QString& right, qint64 begin = 0);

/// What somebody names to be read now, a pipe or the terminal too: waits for its end. Throws Failure.
QByteArray readAnything(const QString& file);

/// Throws Failure with both ends for a symbolic link that leads nowhere: what it should lead to lies on a disk that is
/// not there, and must not be taken for a file that was never made.
void refuseLostLink(const QString& file);

} // namespace velloria::platform
