// Claims: tested properties of a table, written once for all tables of a family. INSTANTIATE_TEST_SUITE_P(<table>,
// EveryClaim, testing::ValuesIn(<claims>), nameOfClaim) makes one test of each.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <iosfwd>
#include <string>

namespace mcast6::tests {

struct Claim {
    std::string name;
    std::function<void()> check;  // uses EXPECT_...; the recorder and the library were reset before
};

class EveryClaim : public testing::TestWithParam<Claim> {
protected:
    void SetUp() override;
    void TearDown() override;
};

std::string nameOfClaim(const testing::TestParamInfo<Claim>& item);
void PrintTo(const Claim& claim, std::ostream* out);

}  // namespace mcast6::tests
