// Words for what windows do a little later.
#pragma once

#include "support/patience.h"

#include <QTest>

namespace velloria::tests {

/// Handles events until the condition holds; false when the patience ends first.
template <class Condition>
bool waitFor(Condition condition) {
    return QTest::qWaitFor(condition, kPatienceMs);
}

/// Waits until the window is on the screen.
inline bool becomesVisible(QWidget& window) {
    return QTest::qWaitForWindowExposed(&window, kPatienceMs);
}

} // namespace velloria::tests
