// Who waits for a lock.
#pragma once

namespace velloria::tests {

/// How often this process has not got the lock of a file or folder that it asked for.
int lockRefusals();

} // namespace velloria::tests
