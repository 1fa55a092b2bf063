// The sweep as a test: INSTANTIATE_TEST_SUITE_P(<table>, EveryExit, testing::ValuesIn(<operations>), nameOfOperation)
// makes one test of each operation.
#pragma once

#include <gtest/gtest.h>

#include <iosfwd>
#include <string>

#include "tests/support/operation_sweep.h"

namespace mcast6::tests {

class EveryExit : public testing::TestWithParam<Operation> {};

std::string nameOfOperation(const testing::TestParamInfo<Operation>& item);
void PrintTo(const Operation& operation, std::ostream* out);

}  // namespace mcast6::tests
