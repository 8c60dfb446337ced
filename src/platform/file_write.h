// Files that another run must find whole: written to a temporary name beside the target and renamed over it.
#pragma once

#include "platform/file_read.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace velloria::platform {

/// Whether the bytes must have reached the disk before the rename.
enum class Durability {
    Derived, ///< pages: they can be made again
    Durable, ///< settings and databases: data first, then the rename, then the folder
};

/// Replaces `file` by `bytes`. Mode and symbolic link of an existing file are kept; a new file gets `newFileMode`
/// (POSIX permission bits, reduced by the umask). A file that is set read-only is refused, a device too, and a link
/// that leads nowhere. On failure the old file stays and Failure is thrown.
void replaceFile(const QString& file, QByteArrayView bytes, Durability durability, unsigned newFileMode = 0666);

/// The permission bits of a file; `whenMissing` where there is none.
unsigned modeOf(const QString& file, unsigned whenMissing);

/// Takes from an existing file the permissions that `mode` lacks. A file of somebody else stays as it is.
void limitMode(const QString& file, unsigned mode);

/// Gives an existing file to its owner for writing. Whoever may not do that finds it as it was.
void makeWritable(const QString& file);

/// Takes the next piece of a file that is being written.
using WriteBytes = std::function<void(QByteArrayView)>;

/// The same for bytes that come piece by piece: `produce` gets where they go. What it throws leaves the old file.
void replaceFile(const QString& file, const std::function<void(const WriteBytes&)>& produce, Durability durability,
                 unsigned newFileMode = 0666);

/// Copies by a temporary name and rename, with the source's modification time; the copy is writable by its owner. A
/// file copied onto itself (same file on disk) is left alone. `whenWhole` is called when the copy is whole and about to
/// take its place. Throws Failure when the machine refuses.
void copyFile(const QString& from, const QString& to, unsigned newFileMode = 0666,
              Durability durability = Durability::Derived, const std::function<void()>& whenWhole = {});

/// The same, but a symbolic link in the place of `to` is itself replaced and its target stays. For a folder that holds
/// copies: who follows a link there writes to a file that is none of it.
void placeFile(const QString& from, const QString& to);

/// Gives a whole file the name `to` within its folder; what bears that name goes. Bytes and name have reached the disk
/// when this returns. Throws Failure, and both are as they were.
void moveFile(const QString& from, const QString& to);

/// Removes what killed runs have left half written beside the file. The functions of this header do so themselves.
void removeLeftovers(const QString& file);

/// Brings a file that somebody else wrote to the disk. Throws Failure.
void syncFile(const QString& file);

/// Throws Failure, as every replacement does, for a file that is set read-only, a device, and a link that leads
/// nowhere.
void requireReplaceable(const QString& file);

/// Gives a whole file, which has reached the disk, the name `to`. Mode and symbolic link of an existing file are kept;
/// behind a link to another disk it becomes a copy. `whenWhole` is called when it is about to take its place. On
/// failure, which is thrown, the old file stays.
void moveOver(const QString& from, const QString& to, const std::function<void()>& whenWhole = {});

/// Whether there is nothing to place: `to` is this file already, and no link to it.
bool isInPlace(const QString& from, const QString& to);

/// Adds to the end of a file, which is made when it is missing. The bytes, and the name of a new file, have reached the
/// disk when this returns. On failure the file is as it was and Failure is thrown.
void appendToFile(const QString& file, QByteArrayView bytes, unsigned newFileMode = 0666);

/// Whether both names lead to one file on disk.
bool isSameFile(const QString& left, const QString& right);

/// Makes the folder and what is missing above it. Throws Failure.
void makeFolder(const QString& folder, unsigned mode = 0777);

/// Removes the file if it is there. Throws Failure when it stays.
void removeFile(const QString& file);

/// Holds an advisory lock on a folder for its life, so that two programs change one of its files in turn.
class FolderLock {
public:
    /// Waits five seconds for the other program, as long as nobody gives the wait up. Throws Failure, which names the
    /// folder, when it then still is in use.
    explicit FolderLock(const QString& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    int m_descriptor = -1;
};

} // namespace velloria::platform
