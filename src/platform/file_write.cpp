#include "platform/file_write.h"

#include "platform/descriptor.h"
#include "platform/failure.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QRandomGenerator>
#include <QSet>

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

const QString kCantSave = u"ファイルを保存できません。"_s;

[[noreturn]] void refuse(const QString& what, const QString& file, int errorNumber, const QString& advice = {}) {
    throw Failure(what, file, systemReason(errorNumber), advice);
}

/// `fail` gets the number of the error and throws.
void writeAll(int descriptor, QByteArrayView bytes, const std::function<void(int)>& fail) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), std::size_t(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail(errno);
        bytes = bytes.sliced(written);
    }
}

void syncFolder(const QByteArray& folder) {
    const Descriptor descriptor(::open(folder.isEmpty() ? "." : folder.constData(), O_RDONLY | O_CLOEXEC));
    if (descriptor.value() >= 0)
        ::fsync(descriptor.value());
}

/// The names of files that are not whole yet. Their writer holds a lock on them, so that one without a lock was left
/// by a run that was killed.
constexpr QByteArrayView kTemporaryPrefix = ".velltmp-";

void removeLeftoversOf(const QByteArray& folder) {
    DIR* const listing = ::opendir(folder.isEmpty() ? "." : folder.constData());
    if (!listing)
        return;
    while (const dirent* const entry = ::readdir(listing)) {
        if (!QByteArrayView(entry->d_name).startsWith(kTemporaryPrefix))
            continue;
        const int at = ::dirfd(listing);
        const Descriptor file(::openat(at, entry->d_name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.value() >= 0 && ::flock(file.value(), LOCK_EX | LOCK_NB) == 0)
            ::unlinkat(at, entry->d_name, 0);
    }
    ::closedir(listing);
}

/// Once for each folder this program writes to: a listing for each file would make a large site slow.
void removeLeftoversOnce(const QByteArray& folder) {
    static QMutex mutex;
    static QSet<QByteArray> done;
    const QMutexLocker locker(&mutex);
    if (done.contains(folder))
        return;
    done.insert(folder);
    removeLeftoversOf(folder);
}

enum class Link { Kept, Replaced };

bool isLink(const QByteArray& name) {
    struct stat status;
    return ::lstat(name.constData(), &status) == 0 && S_ISLNK(status.st_mode);
}

/// Whether both names are one, though it be that of a link.
bool isSameLink(const QString& left, const QString& right) {
    struct stat a;
    struct stat b;
    return ::lstat(QFile::encodeName(left).constData(), &a) == 0 &&
           ::lstat(QFile::encodeName(right).constData(), &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

[[noreturn]] void refuseSaving(const QString& file, int errorNumber) {
    const QString advice = errorNumber == ENOSPC || errorNumber == EDQUOT
                               ? u"空き容量を増やしてから、もう一度実行してください。元のファイルはそのままです。"_s
                               : u"保存先を確認してください。元のファイルはそのままです。"_s;
    refuse(kCantSave, file, errorNumber, advice);
}

/// The file behind a symbolic link, so that the link stays.
QByteArray resolved(const QString& file) {
    const QFileInfo info(file);
    if (info.isSymLink()) {
        const QString end = info.canonicalFilePath();
        return QFile::encodeName(end.isEmpty() ? info.symLinkTarget() : end);
    }
    return QFile::encodeName(file);
}

QByteArray folderOf(const QByteArray& file) {
    return file.left(file.lastIndexOf('/') + 1);
}

/// The status of the file at `target` that is to be replaced; nothing when there is none.
std::optional<struct stat> replaceable(const QString& file, const QByteArray& target) {
    struct stat old;
    if (isLink(target) || ::stat(target.constData(), &old) != 0)
        return std::nullopt;
    requireRegular(file, kCantSave, old); // a rename would put a file in the place of a device
    // A rename would also replace a file that is set read-only; even the superuser means it so.
    if ((old.st_mode & S_IWUSR) == 0 || ::access(target.constData(), W_OK) != 0)
        refuseSaving(file, EACCES);
    return old;
}

/// A file beside the target that takes the target's place at the end, and vanishes if that end is not reached.
class Replacement {
public:
    Replacement(const QString& file, unsigned newFileMode, Link link = Link::Kept)
        : m_shownName(file)
        , m_target(link == Link::Kept ? resolved(file) : QFile::encodeName(file)) {
        if (link == Link::Kept)
            refuseLostLink(file);
        const std::optional<struct stat> old = replaceable(file, m_target);
        removeLeftoversOnce(folder());
        openTemporary(old ? 0600 : newFileMode);
        if (old)
            ::fchmod(m_file.value(), old->st_mode & 07777);
    }
    ~Replacement() {
        if (!m_isDone)
            ::unlink(m_temporary.constData());
    }

    void write(QByteArrayView bytes) {
        writeAll(m_file.value(), bytes, [this](int errorNumber) { fail(errorNumber); });
    }

    void setTimes(const struct stat& source) {
        const timespec times[2] = {source.st_atim, source.st_mtim};
        ::futimens(m_file.value(), times);
    }

    void commit(Durability durability, const std::function<void()>& whenWhole = {}) {
        if (durability == Durability::Durable && ::fsync(m_file.value()) != 0)
            fail(errno);
        if (whenWhole)
            whenWhole();
        // Some disks tell a failed write at the close alone. The lock goes with the last close, and only after the
        // rename: another program would take the file for a leftover.
        const int copy = ::fcntl(m_file.value(), F_DUPFD_CLOEXEC, 0);
        if (copy < 0 || ::close(copy) != 0)
            fail(errno);
        if (::rename(m_temporary.constData(), m_target.constData()) != 0)
            fail(errno);
        m_file.reset(-1);
        m_isDone = true;
        if (durability == Durability::Durable)
            syncFolder(folder());
    }

private:
    QByteArray folder() const { return folderOf(m_target); }

    /// The mode passes the umask here, which can't be asked for without changing it for all threads. The name has
    /// nothing of the target's, which may be as long as a name can be, and never comes back: a program that looks for
    /// leftovers may still have the old file of that name open.
    void openTemporary(unsigned mode) {
        for (;;) {
            m_temporary = folder() + kTemporaryPrefix.toByteArray() +
                          QByteArray::number(QRandomGenerator::system()->generate64(), 36);
            m_file.reset(::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode_t(mode)));
            if (m_file.value() < 0 && errno != EEXIST)
                fail(errno);
            if (m_file.value() >= 0 && isMine())
                return;
        }
    }

    /// False when another program took the new file for a leftover before its lock. On a disk without locks nobody
    /// gets one.
    bool isMine() const {
        if (::flock(m_file.value(), LOCK_EX | LOCK_NB) != 0)
            return errno != EWOULDBLOCK;
        struct stat status;
        return ::fstat(m_file.value(), &status) == 0 && status.st_nlink > 0;
    }

    [[noreturn]] void fail(int errorNumber) { refuseSaving(m_shownName, errorNumber); }

    QString m_shownName;
    QByteArray m_target;
    QByteArray m_temporary;
    Descriptor m_file;
    bool m_isDone = false;
};

void copyInto(const QString& from, const QString& to, unsigned newFileMode, Link link, Durability durability,
              const std::function<void()>& whenWhole) {
    const QString cantCopy = u"ファイルをコピーできません。"_s;
    struct stat status;
    const Descriptor source = openRegularFile(from, cantCopy, status);
    Replacement replacement(to, newFileMode | 0200, link);
    QByteArray block(1 << 18, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = ::read(source.value(), block.data(), std::size_t(block.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            refuse(cantCopy, from, errno);
        if (count == 0)
            break;
        replacement.write(QByteArrayView(block).first(count));
    }
    replacement.setTimes(status);
    replacement.commit(durability, whenWhole);
}

} // namespace

void replaceFile(const QString& file, QByteArrayView bytes, Durability durability, unsigned newFileMode) {
    Replacement replacement(file, newFileMode);
    replacement.write(bytes);
    replacement.commit(durability);
}

void replaceFile(const QString& file, const std::function<void(const WriteBytes&)>& produce, Durability durability,
                 unsigned newFileMode) {
    Replacement replacement(file, newFileMode);
    produce([&](QByteArrayView bytes) { replacement.write(bytes); });
    replacement.commit(durability);
}

unsigned modeOf(const QString& file, unsigned whenMissing) {
    struct stat status;
    return ::stat(QFile::encodeName(file).constData(), &status) == 0 ? status.st_mode & 0777 : whenMissing;
}

void limitMode(const QString& file, unsigned mode) {
    struct stat status;
    const QByteArray name = QFile::encodeName(file);
    if (::stat(name.constData(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & 07777 & ~mode) != 0)
        ::chmod(name.constData(), status.st_mode & mode);
}

void makeWritable(const QString& file) {
    struct stat status;
    const QByteArray name = QFile::encodeName(file);
    if (::stat(name.constData(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & S_IWUSR) == 0)
        ::chmod(name.constData(), (status.st_mode & 07777) | S_IWUSR);
}

void copyFile(const QString& from, const QString& to, unsigned newFileMode, Durability durability,
              const std::function<void()>& whenWhole) {
    if (!isSameFile(from, to))
        copyInto(from, to, newFileMode, Link::Kept, durability, whenWhole);
}

void placeFile(const QString& from, const QString& to) {
    if (!isInPlace(from, to))
        copyInto(from, to, 0666, Link::Replaced, Durability::Derived, {});
}

void moveFile(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    {
        const Descriptor file(::open(source.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.value() < 0 || ::fsync(file.value()) != 0)
            refuse(kCantSave, to, errno);
    }
    if (::rename(source.constData(), target.constData()) != 0)
        refuse(kCantSave, to, errno);
    syncFolder(folderOf(target));
}

void removeLeftovers(const QString& file) {
    removeLeftoversOf(folderOf(QFile::encodeName(file)));
}

void syncFile(const QString& file) {
    struct stat status;
    const Descriptor descriptor = openRegularFile(file, kCantSave, status);
    if (::fsync(descriptor.value()) != 0)
        refuseSaving(file, errno);
}

void requireReplaceable(const QString& file) {
    refuseLostLink(file);
    replaceable(file, resolved(file));
}

void moveOver(const QString& from, const QString& to, const std::function<void()>& whenWhole) {
    refuseLostLink(to);
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = resolved(to);
    if (const std::optional<struct stat> old = replaceable(to, target))
        ::chmod(source.constData(), old->st_mode & 07777);
    if (whenWhole)
        whenWhole();
    if (::rename(source.constData(), target.constData()) == 0) {
        syncFolder(folderOf(target));
        return;
    }
    if (errno != EXDEV)
        refuseSaving(to, errno);
    copyFile(from, to, 0600, Durability::Durable);
    removeFile(from);
}

bool isInPlace(const QString& from, const QString& to) {
    return isSameFile(from, to) && (!isLink(QFile::encodeName(to)) || isSameLink(from, to));
}

void appendToFile(const QString& file, QByteArrayView bytes, unsigned newFileMode) {
    const QByteArray name = QFile::encodeName(file);
    refuseLostLink(file);
    constexpr int kFlags = O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK; // a pipe without a reader is refused
    Descriptor target(::open(name.constData(), kFlags));
    const bool isNew = target.value() < 0 && errno == ENOENT;
    if (isNew)
        target.reset(::open(name.constData(), kFlags | O_CREAT | O_EXCL, mode_t(newFileMode)));
    struct stat before;
    if (target.value() < 0 || ::fstat(target.value(), &before) != 0)
        refuse(u"ファイルに書き込めません。"_s, file, errno);
    const auto takeBack = [&](int errorNumber) {
        if (isNew)
            ::unlink(name.constData());
        else [[maybe_unused]]
            const int cut = ::ftruncate(target.value(), before.st_size);
        refuse(u"ファイルに書き込めません。"_s, file, errorNumber);
    };
    if (!S_ISREG(before.st_mode))
        refuse(u"ファイルに書き込めません。"_s, file, EINVAL);
    writeAll(target.value(), bytes, takeBack);
    if (::fdatasync(target.value()) != 0)
        takeBack(errno);
    if (isNew)
        syncFolder(folderOf(name));
}

bool isSameFile(const QString& left, const QString& right) {
    struct stat a;
    struct stat b;
    return ::stat(QFile::encodeName(left).constData(), &a) == 0 &&
           ::stat(QFile::encodeName(right).constData(), &b) == 0 && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void makeFolder(const QString& folder, unsigned mode) {
    const QByteArray name = QFile::encodeName(folder);
    if (::mkdir(name.constData(), mode_t(mode)) == 0)
        return;
    if (errno == ENOENT) {
        for (qsizetype at = name.indexOf('/', 1); at >= 0; at = name.indexOf('/', at + 1))
            ::mkdir(name.left(at).constData(), mode_t(mode));
        if (::mkdir(name.constData(), mode_t(mode)) == 0)
            return;
    }
    const int reason = errno;
    refuseLostLink(folder);
    if (!QFileInfo(folder).isDir())
        refuse(u"フォルダを作成できません。"_s, folder, reason == EEXIST ? ENOTDIR : reason,
               u"保存先を確認してください。"_s);
}

void removeFile(const QString& file) {
    if (::unlink(QFile::encodeName(file).constData()) != 0 && errno != ENOENT && errno != ENOTDIR)
        refuse(u"ファイルを削除できません。"_s, file, errno);
}

} // namespace velloria::platform
