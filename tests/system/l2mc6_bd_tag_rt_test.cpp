// l2mc6_bd_tag_rt on the shipped platform: what differs from the other tables of routes.
#include "mcast6_db/l2mc6_bd_tag_rt.h"

#include <gmock/gmock.h>

#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

class BdTagRtSystemTest : public SystemTest {};

TEST_F(BdTagRtSystemTest, routesThatDifferInOneTagAreTwoRecords) {
    for (const auto& [tagVid1, tagVid2] : {std::pair{1, 0}, {2, 0}, {1, 1}}) {
        L2McBdRtEntry route{};
        route.tagVid1 = static_cast<uint16_t>(tagVid1);
        route.tagVid2 = static_cast<uint16_t>(tagVid2);
        route.rtAttr = 10u * route.tagVid1 + route.tagVid2;
        ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdTagRt(&route));
    }
    EXPECT_EQ(0u, errors());
    L2McBdRtEntry read{};
    read.tagVid1 = 2;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdTagRt(&read));
    EXPECT_EQ(20u, read.rtAttr);
    read.tagVid1 = 1;
    read.tagVid2 = 1;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdTagRt(&read));
    EXPECT_EQ(11u, read.rtAttr);
    read.tagVid2 = 2;
    EXPECT_EQ(60u, MCAST6_DB_ReadL2McBdTagRt(&read));
}

}  // namespace

}  // namespace mcast6::tests
