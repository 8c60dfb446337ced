#include "platform/instance_lock.h"

#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::InstanceLock;

TEST(InstanceLock, IsHeldByOneProgramAtATime) {
    const InstanceLock first(u"/a/program"_s);
    EXPECT_TRUE(first.isHeld());
    EXPECT_FALSE(InstanceLock(u"/a/program"_s).isHeld());
    EXPECT_TRUE(InstanceLock(u"/another/program"_s).isHeld());
    EXPECT_TRUE(holdsInChild([] { return !InstanceLock(u"/a/program"_s).isHeld(); }));
}

TEST(InstanceLock, IsFreeBehindTheDeathOfItsHolder) {
    EXPECT_TRUE(holdsInChild([] {
        const auto* never = new InstanceLock(u"/dying/program"_s); // not let go by hand
        return never->isHeld();
    }));
    EXPECT_TRUE(InstanceLock(u"/dying/program"_s).isHeld());
}

TEST(InstanceLock, IsAnothersInAnotherLogin) {
    const InstanceLock here(u"/a/program"_s);
    qputenv("XDG_SESSION_ID", "another");
    EXPECT_TRUE(InstanceLock(u"/a/program"_s).isHeld());
    qunsetenv("XDG_SESSION_ID");
}

} // namespace
} // namespace velloria::tests
