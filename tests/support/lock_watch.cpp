#include "support/lock_watch.h"

#include <atomic>
#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace velloria::tests {
namespace {

std::atomic<int> refusals = 0;

} // namespace

int lockRefusals() {
    return refusals;
}

} // namespace velloria::tests

// In front of the system's own, for this program and the libraries that it uses.
extern "C" __attribute__((visibility("default"))) int flock(int descriptor, int operation) {
    const int result = int(::syscall(SYS_flock, descriptor, operation));
    if (result != 0 && errno == EWOULDBLOCK)
        ++velloria::tests::refusals;
    return result;
}
