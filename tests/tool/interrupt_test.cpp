// SIGINT in a session that a person types.
#include "cli/output/interrupt.h"

#include <gtest/gtest.h>

#include <csignal>

#include "cli/failure.h"
#include "cli/output/output.h"

namespace mcast6::ctl::test {
namespace {

TEST(Interrupt, fails_the_next_output_once) {
    const InterruptGuard guard(true);
    TextTable table({"A"});
    table.row({"1"});
    std::raise(SIGINT);
    EXPECT_THROW(table.row({"2"}), Failure);
    EXPECT_NO_THROW(table.row({"3"}));
    EXPECT_EQ(table.rows(), 2U);
    std::raise(SIGINT);
    EXPECT_THROW(print(""), Failure);
    EXPECT_FALSE(takeInterrupt());
}

TEST(Interrupt, ends_the_process_when_it_comes_twice_or_no_session_is_there) {
    const auto twice = [] {
        const InterruptGuard guard(true);
        std::raise(SIGINT);
        std::raise(SIGINT);
    };
    EXPECT_EXIT(twice(), testing::KilledBySignal(SIGINT), "");
    const auto outside = [] {
        { const InterruptGuard guard(true); }
        const InterruptGuard none(false);
        std::raise(SIGINT);
    };
    EXPECT_EXIT(outside(), testing::KilledBySignal(SIGINT), "");
}

}  // namespace
}  // namespace mcast6::ctl::test
