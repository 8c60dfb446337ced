#include "support/connection_count.h"

#include <sqlite3.h>

#include <atomic>

namespace velloria::tests {
namespace {

std::atomic<int> opened = 0;

/// Called by the engine for each new connection.
int count(sqlite3*, char**, const void*) {
    ++opened;
    return SQLITE_OK;
}

} // namespace

int openedConnections() {
    // Asked for again it counts no connection twice.
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(count));
    return opened;
}

} // namespace velloria::tests
