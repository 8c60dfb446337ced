#include "support/disk_watch.h"

#include <QMutex>

#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace velloria::tests {
namespace {

struct Watched {
    QMutex mutex;
    bool isOn = false;
    QStringList synced;
    QString refused;
    std::function<void()> called;
    int lockRefusals = 0;
};

Watched& watched() {
    static Watched state;
    return state;
}

QString nameOf(int descriptor) {
    char target[4096];
    const ssize_t size = ::readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), target, std::size(target));
    const QString path = QString::fromUtf8(target, qMax<ssize_t>(size, 0));
    return path.mid(path.lastIndexOf(u'/') + 1);
}

int sync(int descriptor, long call) {
    Watched& state = watched();
    QMutexLocker locker(&state.mutex);
    if (state.isOn) {
        const QString name = nameOf(descriptor);
        if (!state.refused.isNull() && name.endsWith(state.refused)) {
            errno = EIO;
            return -1;
        }
        state.synced += name;
        const auto called = state.called;
        locker.unlock();
        if (called)
            called();
    }
    return int(::syscall(call, descriptor));
}

int lock(int descriptor, int operation) {
    const int result = int(::syscall(SYS_flock, descriptor, operation));
    if (result != 0 && errno == EWOULDBLOCK) {
        const QMutexLocker locker(&watched().mutex);
        ++watched().lockRefusals;
        errno = EWOULDBLOCK;
    }
    return result;
}

} // namespace

DiskWatch::DiskWatch() {
    const QMutexLocker locker(&watched().mutex);
    watched().lockRefusals = 0;
    watched().synced.clear();
    watched().refused = QString();
    watched().called = nullptr;
    watched().isOn = true;
}

DiskWatch::~DiskWatch() {
    const QMutexLocker locker(&watched().mutex);
    watched().isOn = false;
}

QStringList DiskWatch::synced() const {
    const QMutexLocker locker(&watched().mutex);
    return watched().synced;
}

int DiskWatch::lockRefusals() const {
    const QMutexLocker locker(&watched().mutex);
    return watched().lockRefusals;
}

void DiskWatch::refuse(const QString& ending) {
    const QMutexLocker locker(&watched().mutex);
    watched().refused = ending;
}

void DiskWatch::onSync(std::function<void()> called) {
    const QMutexLocker locker(&watched().mutex);
    watched().called = std::move(called);
}

} // namespace velloria::tests

// In front of the system's own, for this program and the libraries that it uses.

extern "C" __attribute__((visibility("default"))) int fsync(int descriptor) {
    return velloria::tests::sync(descriptor, SYS_fsync);
}

extern "C" __attribute__((visibility("default"))) int fdatasync(int descriptor) {
    return velloria::tests::sync(descriptor, SYS_fdatasync);
}

extern "C" __attribute__((visibility("default"))) int flock(int descriptor, int operation) {
    return velloria::tests::lock(descriptor, operation);
}
