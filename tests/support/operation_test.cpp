#include "tests/support/operation_test.h"

#include <ostream>

namespace mcast6::tests {

// A program may have none.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryExit);

TEST_P(EveryExit, isAsDescribed) {
    for (const std::string& mismatch : mismatches(GetParam())) ADD_FAILURE() << mismatch;
}

std::string nameOfOperation(const testing::TestParamInfo<Operation>& item) { return item.param.name; }

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

}  // namespace mcast6::tests
