// What every test program does ahead of its tests.
#pragma once

#include <QTemporaryDir>

namespace velloria::tests {

/// Takes the place of the home folder of whoever runs the tests, as long as it lives, and tells each test that is
/// skipped, on a line "SKIPPED Suite.Test: reason". With CI=true a skipped test is a failure: nobody reads its list.
/// To be made behind gtest and ahead of the application.
class Preparation {
public:
    Preparation();

private:
    QTemporaryDir m_home;
};

} // namespace velloria::tests
