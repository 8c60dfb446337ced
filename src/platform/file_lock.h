// A file that is there for nothing but its lock.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velloria::platform {

/// Tried once, held from its making to its end, and let go by the system when the program dies. The file is made and,
/// by who held it, removed again; one that a dead program has left is taken over. On a disk without locks everybody
/// holds it.
class FileLock {
public:
    /// Throws Failure when the file can't be made.
    explicit FileLock(const QString& file);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool isHeld() const { return m_isHeld; }

private:
    QByteArray m_name;
    int m_descriptor = -1;
    bool m_isHeld = false;
};

/// The same, waited for: the work of two programs on one thing, one after the other.
class FileTurn {
public:
    /// Waits while `what`, "～は他のプログラムが使用中です。", is true. Throws Failure when the file can't be made, and
    /// when somebody gives the wait up or it has lasted minutes.
    FileTurn(const QString& file, const QString& what);

private:
    std::optional<FileLock> m_lock;
};

} // namespace velloria::platform
