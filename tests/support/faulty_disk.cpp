#include "support/faulty_disk.h"

#include "support/disk_watch.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velloria::tests {
namespace {

enum class Call { Reads, Changes, Removes };

struct Disk {
    std::atomic<bool> isWatched = false;
    std::string folder;
    Fault fault = Fault::IoError;
    int at = 0;       ///< 0: never
    qint64 size = -1; ///< of all its files at most; -1: without end
    int count = 0;
    bool hasFailed = false;
    std::string turns;
};

Disk disk;

bool isOnDisk(std::string_view path) {
    return path.size() > disk.folder.size() && path.substr(0, disk.folder.size()) == disk.folder;
}

std::string pathOf(int descriptor) {
    char target[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const long size = ::syscall(SYS_readlinkat, AT_FDCWD, link.c_str(), target, sizeof target);
    return {target, std::size_t(std::max(size, 0L))};
}

/// Whether this fault can meet such a call at all.
bool isMet(Call call) {
    switch (disk.fault) {
    case Fault::FullDisk:
        return call == Call::Changes;
    case Fault::KilledProgram:
        return call != Call::Reads;
    case Fault::IoError:
    case Fault::BrokenDisk:
        break;
    }
    return true;
}

/// Counts the call. True when it fails now; the reason is in errno.
bool fails(Call call) {
    if (!isMet(call))
        return false;
    ++disk.count;
    const bool isOnce = disk.fault == Fault::IoError || disk.fault == Fault::KilledProgram;
    if (disk.at == 0 || (isOnce ? disk.count != disk.at : disk.count < disk.at))
        return false;
    disk.hasFailed = true;
    errno = disk.fault == Fault::FullDisk ? ENOSPC : EIO;
    return true;
}

bool isKilled() {
    return disk.fault == Fault::KilledProgram;
}

[[noreturn]] void die() {
    ::_exit(FaultyDisk::kKilled);
}

/// A call that has no halves.
bool refuses(Call call, const char* path) {
    if (!disk.isWatched || !path || !isOnDisk(path) || !fails(call))
        return false;
    if (isKilled())
        die();
    return true;
}

bool refuses(Call call, int descriptor) {
    return disk.isWatched && refuses(call, pathOf(descriptor).c_str());
}

qint64 bytesInFolder() {
    qint64 bytes = 0;
    std::error_code error;
    for (const auto& file : std::filesystem::recursive_directory_iterator(disk.folder, error)) {
        if (file.is_regular_file(error) && !file.is_symlink(error))
            bytes += qint64(file.file_size(error));
    }
    return bytes;
}

/// How much of a write at `place` there is room for.
std::size_t sizeWithRoom(int descriptor, off_t place, std::size_t size) {
    struct stat status {};
    ::fstat(descriptor, &status);
    const bool isAppended = (::fcntl(descriptor, F_GETFL) & O_APPEND) != 0;
    const qint64 held = isAppended ? 0 : qMax<qint64>(status.st_size - place, 0);
    return std::min(size, std::size_t(held + qMax<qint64>(disk.size - bytesInFolder(), 0)));
}

/// A write at `place`: a program that is killed has written the first half, a disk that is full what there was room
/// for, which is the first byte where the call alone is counted.
template <typename Write>
ssize_t writeOn(int descriptor, off_t place, std::size_t size, Write write) {
    if (!disk.isWatched || !isOnDisk(pathOf(descriptor)))
        return write(size);
    if (disk.size >= 0 && size > 0) {
        const std::size_t part = sizeWithRoom(descriptor, place, size);
        disk.hasFailed = disk.hasFailed || part < size;
        if (part > 0)
            return write(part);
        errno = ENOSPC;
        return -1;
    }
    if (!fails(Call::Changes))
        return write(size);
    const int reason = errno;
    if (isKilled()) {
        write(size / 2);
        die();
    }
    if (disk.fault == Fault::FullDisk && disk.count == disk.at && size > 1)
        return write(1);
    errno = reason;
    return -1;
}

/// The room of the disk, told by the place where it is mounted.
template <typename Status>
int tellRoom(const char* path, int result, Status* status) {
    if (result == 0 && disk.isWatched && disk.size >= 0 && (isOnDisk(path) || disk.folder.starts_with(path)))
        status->f_bavail = decltype(status->f_bavail)(qMax<qint64>(disk.size - bytesInFolder(), 0)) / status->f_frsize;
    return result;
}

Call callOf(int flags) {
    return (flags & (O_CREAT | O_TRUNC)) != 0 ? Call::Changes : Call::Reads;
}

int openOn(const char* path, int flags, mode_t mode) {
    struct stat status {};
    const bool isThere = ::syscall(SYS_newfstatat, AT_FDCWD, path, &status, 0) == 0;
    // A folder is opened for its lock alone.
    if (!(isThere && S_ISDIR(status.st_mode)) &&
        refuses(isThere && !(flags & O_TRUNC) ? Call::Reads : callOf(flags), path))
        return -1;
    return int(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

/// The call as it is without this one in front: the sanitizers look at the bytes that it is given.
template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

mode_t modeOf(int flags, va_list& arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

bool refusesToSync(int descriptor) {
    if (!disk.isWatched || !isOnDisk(pathOf(descriptor) + '/'))
        return false;
    struct stat status {};
    ::fstat(descriptor, &status);
    disk.turns += S_ISDIR(status.st_mode) ? 'd' : 'f';
    return refuses(Call::Changes, descriptor);
}

} // namespace

FaultyDisk::FaultyDisk(const QString& folder) {
    disk.folder = QFile::encodeName(folder).toStdString();
    disk.at = 0;
    disk.size = -1;
    disk.count = 0;
    disk.hasFailed = false;
    disk.turns.clear();
    refusesSync = refusesToSync;
    disk.isWatched = true;
}

FaultyDisk::~FaultyDisk() {
    disk.isWatched = false;
}

void FaultyDisk::failAt(Fault fault, int n) {
    disk.fault = fault;
    disk.at = n;
}

void FaultyDisk::leaveRoom(qint64 bytes) {
    disk.size = bytesInFolder() + bytes;
}

bool FaultyDisk::hasFailed() const {
    return disk.hasFailed;
}

std::string FaultyDisk::turns() const {
    return disk.turns;
}

} // namespace velloria::tests

// In front of the system's own, for this program and the libraries that it uses.

using namespace velloria::tests;

#define VELLORIA_IN_FRONT extern "C" __attribute__((visibility("default")))

VELLORIA_IN_FRONT int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openOn(path, flags, mode);
}

VELLORIA_IN_FRONT int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openOn(path, flags, mode);
}

VELLORIA_IN_FRONT ssize_t read(int descriptor, void* bytes, size_t size) {
    static const auto system = next<ssize_t(int, void*, size_t)>("read");
    return refuses(Call::Reads, descriptor) ? -1 : system(descriptor, bytes, size);
}

VELLORIA_IN_FRONT ssize_t pread(int descriptor, void* bytes, size_t size, off_t place) {
    static const auto system = next<ssize_t(int, void*, size_t, off_t)>("pread");
    return refuses(Call::Reads, descriptor) ? -1 : system(descriptor, bytes, size, place);
}

VELLORIA_IN_FRONT ssize_t pread64(int descriptor, void* bytes, size_t size, off64_t place) {
    return pread(descriptor, bytes, size, place);
}

VELLORIA_IN_FRONT ssize_t write(int descriptor, const void* bytes, size_t size) {
    static const auto system = next<ssize_t(int, const void*, size_t)>("write");
    const off_t place = disk.isWatched ? ::lseek(descriptor, 0, SEEK_CUR) : 0;
    return writeOn(descriptor, place, size, [&](size_t part) { return system(descriptor, bytes, part); });
}

VELLORIA_IN_FRONT ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t place) {
    static const auto system = next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return writeOn(descriptor, place, size, [&](size_t part) { return system(descriptor, bytes, part, place); });
}

VELLORIA_IN_FRONT ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off64_t place) {
    return pwrite(descriptor, bytes, size, place);
}

VELLORIA_IN_FRONT int ftruncate(int descriptor, off_t size) noexcept {
    return refuses(Call::Changes, descriptor) ? -1 : int(::syscall(SYS_ftruncate, descriptor, size));
}

VELLORIA_IN_FRONT int ftruncate64(int descriptor, off64_t size) noexcept {
    return ftruncate(descriptor, size);
}

VELLORIA_IN_FRONT int rename(const char* from, const char* to) noexcept {
    if (disk.isWatched && isOnDisk(to))
        disk.turns += 'r';
    return refuses(Call::Changes, to) ? -1 : int(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0U));
}

VELLORIA_IN_FRONT int mkdir(const char* path, mode_t mode) noexcept {
    return refuses(Call::Changes, path) ? -1 : int(::syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

VELLORIA_IN_FRONT int unlink(const char* path) noexcept {
    return refuses(Call::Removes, path) ? -1 : int(::syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

VELLORIA_IN_FRONT int statvfs(const char* path, struct statvfs* status) noexcept {
    static const auto system = next<int(const char*, struct statvfs*)>("statvfs");
    return tellRoom(path, system(path, status), status);
}

VELLORIA_IN_FRONT int statvfs64(const char* path, struct statvfs64* status) noexcept {
    static const auto system = next<int(const char*, struct statvfs64*)>("statvfs64");
    return tellRoom(path, system(path, status), status);
}
