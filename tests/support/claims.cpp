#include "tests/support/claims.h"

#include <ostream>

#include "tests/platform/recorder.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests {

void EveryClaim::SetUp() { startOver(); }

void EveryClaim::TearDown() { recording::Recorder::instance().reset(); }

// A program may have none.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EveryClaim);

TEST_P(EveryClaim, holds) { GetParam().check(); }

std::string nameOfClaim(const testing::TestParamInfo<Claim>& item) { return item.param.name; }

void PrintTo(const Claim& claim, std::ostream* out) { *out << claim.name; }

}  // namespace mcast6::tests
