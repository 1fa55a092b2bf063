// Watching: a test adds lines of its own between those of the recorder.
#include <gtest/gtest.h>

#include "mcast6_platform/host.h"
#include "tests/platform/recorder.h"

namespace {

using namespace mcast6::recording;

TEST(RecorderWatch, aWatcherIsAskedBeforeEachLineAndUntilReset) {
    Recorder& platform = Recorder::instance();
    platform.reset();
    int asked = 0;
    platform.watch([&asked](Trace& trace) {
        if (++asked == 2) trace.push_back("seen before the second line");
    });
    MCAST6_DfxCounterInc(1);
    MCAST6_DfxCounterInc(2);
    EXPECT_EQ(platform.trace(), (Trace{"dfx 1", "seen before the second line", "dfx 2"}));
    platform.reset();
    MCAST6_DfxCounterInc(3);
    EXPECT_EQ(2, asked);
    EXPECT_EQ(platform.trace(), (Trace{"dfx 3"}));
    platform.reset();
}

}  // namespace
