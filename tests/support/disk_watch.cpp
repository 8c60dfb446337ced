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
    if (refusesSync && refusesSync(descriptor))
        return -1;
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

} // namespace

bool (*refusesSync)(int descriptor) = nullptr;

DiskWatch::DiskWatch() {
    const QMutexLocker locker(&watched().mutex);
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
