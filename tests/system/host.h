// A host for tests: a store, a log that can be read, and a clock that does not advance.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mcast6::tests {

// The time that the library reads.
void setTime(int64_t seconds);

// Starts each test with an empty store, counters and statistics at 0, and nothing cached.
class SystemTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // What the library logged since the start of the test.
    static const std::vector<std::string>& logLines();
    // The sum of all error statistics.
    static uint64_t errors();
};

}  // namespace mcast6::tests
