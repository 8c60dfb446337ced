// The files of another program's diary, which may be anything: too large, unreadable, no text at all.
#pragma once

#include "exchange/formats/foreign_diary.h"

#include <QByteArray>
#include <QStringList>

namespace velloria::exchange {

/// The largest file that is read, and the most that all files of a folder hold together.
inline constexpr qint64 kLargestSource = 256LL * 1024 * 1024;

/// The whole file. Throws platform::Failure for one that can't be read or is too large.
QByteArray readSource(const QString& file);

/// Its text, by trial of the encodings, with LF between lines; an unusual encoding is counted. Throws platform::Failure
/// for what is no text as well.
QString readSourceText(const QString& file, Losses& losses);

/// One file of a folder: what readSourceText gives. One that can't be read or is no text is counted under its name
/// instead, and gives nothing: the others are none the worse for it.
std::optional<QString> readOneText(const QString& file, Losses& losses);

/// The files in a folder and those below it, by path, so that a day's files stand in the order of their names. Symbolic
/// links, folders that can't be read, and what lies deeper than any diary are counted; what a dot hides is no part of a
/// diary. Throws platform::Failure for a folder that can't be read, and for one with too many files.
QStringList filesBelow(const QString& folder, Losses& losses);

/// Throws platform::Failure for a folder that can't be read.
void requireReadable(const QString& folder);

/// Throws platform::Failure when these files of a folder are together larger than what is read.
void requireSize(const QString& folder, const QStringList& files);

} // namespace velloria::exchange
