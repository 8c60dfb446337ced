// How often the diary is opened.
#pragma once

namespace velloria::tests {

/// How many connections to a database this process has opened since the first call.
int openedConnections();

} // namespace velloria::tests
