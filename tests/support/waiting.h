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

/// Does it, and waits until the condition holds. Does it again while nothing comes of it: what a person does is lost in
/// the moment in which no window has the keyboard, or a page is not drawn yet.
template <class Action, class Condition>
bool doUntil(Action action, Condition condition) {
    constexpr int kSurelyLostMs = 10'000;
    for (int ms = 0; ms < kPatienceMs; ms += kSurelyLostMs) {
        action();
        if (QTest::qWaitFor(condition, kSurelyLostMs))
            return true;
    }
    return false;
}

/// Tries with a short time, so that it is soon over, and on a machine that is too busy for that with longer ones.
template <class Attempt>
bool worksInSomeTime(Attempt attempt) {
    constexpr int kShortMs = 1'000;
    int ms = kShortMs;
    while (!attempt(ms)) {
        if (ms >= kPatienceMs)
            return false;
        ms *= 4;
    }
    return true;
}

/// Waits until the window is on the screen.
inline bool becomesVisible(QWidget& window) {
    return QTest::qWaitForWindowExposed(&window, kPatienceMs);
}

} // namespace velloria::tests
