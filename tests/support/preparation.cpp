#include "support/preparation.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace velloria::tests {
namespace {

class SkipTeller : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo& test) override {
        if (!test.result()->Skipped())
            return;
        std::string reason;
        for (int i = 0; i < test.result()->total_part_count(); ++i) {
            if (test.result()->GetTestPartResult(i).skipped())
                reason = test.result()->GetTestPartResult(i).summary();
        }
        reason.erase(reason.find_last_not_of('\n') + 1);
        if (qgetenv("CI") == "true")
            ADD_FAILURE() << "A skipped test is a failure here: " << reason;
        else
            std::printf("SKIPPED %s.%s: %s\n", test.test_suite_name(), test.name(), reason.c_str());
    }
};

bool isOver = false;

/// exit() somewhere inside a test.
void failWhenNotOver() {
    if (isOver)
        return;
    std::fputs("The program ended in the middle of its tests.\n", stderr);
    ::_exit(1);
}

} // namespace

Preparation::Preparation() {
    std::atexit(failWhenNotOver);
    qputenv("HOME", QFile::encodeName(m_home.path()));
    for (const char* folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        qunsetenv(folder);
    testing::UnitTest::GetInstance()->listeners().Append(new SkipTeller);
}

Preparation::~Preparation() {
    isOver = true;
}

} // namespace velloria::tests
