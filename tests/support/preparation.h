// What every test program does before its tests.
#pragma once

#include <QTemporaryDir>

namespace velloria::tests {

/// Takes the place of the home folder of whoever runs the tests, as long as it lives, and tells each test that is
/// skipped, on a line "SKIPPED Suite.Test: reason". With CI=true a skipped test is a failure: nobody reads its list.
/// To be made after gtest and before the application. A program that ends before it lets this go has failed,
/// whatever its exit code: there are tests that have not run.
class Preparation {
public:
    Preparation();
    ~Preparation();

private:
    QTemporaryDir m_home;
};

} // namespace velloria::tests
