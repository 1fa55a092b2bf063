#include <gtest/gtest.h>

#include <string>

#include "mcast6_platform/host.h"
#include "mcast6_platform/platform.h"

namespace {

class DebugTest : public testing::Test {
protected:
    void SetUp() override { testing::internal::CaptureStderr(); }
    void TearDown() override { mcast6_platform_debug(0); }
    static std::string printed() { return testing::internal::GetCapturedStderr(); }
};

TEST_F(DebugTest, nothingIsPrintedAtTheStart) {
    MCAST6_DBG_Print(1, 2, 0, "zero");
    MCAST6_DBG_Print(1, 2, 1, "one");
    EXPECT_EQ("", printed());
}

TEST_F(DebugTest, linesUpToTheLevelArePrinted) {
    mcast6_platform_debug(4);
    MCAST6_DBG_Print(1, 2, 4, "object %u of %s", 7u, "l2mc6_elb");
    MCAST6_DBG_Print(1, 2, 5, "too fine");
    MCAST6_DBG_Print(1, 2, 0, "ends with a newline\n");
    EXPECT_EQ("[mcast6 L4] object 7 of l2mc6_elb\n[mcast6 L0] ends with a newline\n", printed());
}

TEST_F(DebugTest, aLineMayBeLong) {
    mcast6_platform_debug(1);
    const std::string text(5000, 'x');
    MCAST6_DBG_Print(0, 0, 1, "%s", text.c_str());
    EXPECT_EQ("[mcast6 L1] " + text + "\n", printed());
}

TEST_F(DebugTest, itCanBeTurnedOffAgain) {
    mcast6_platform_debug(9);
    mcast6_platform_debug(0);
    MCAST6_DBG_Print(1, 2, 1, "one");
    EXPECT_EQ("", printed());
}

}  // namespace
