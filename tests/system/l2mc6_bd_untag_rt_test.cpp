// l2mc6_bd_untag_rt on the shipped platform: what differs from the other tables of routes.
#include "mcast6_db/l2mc6_bd_untag_rt.h"

#include <gmock/gmock.h>

#include "mcast6_db/context.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

class BdUntagRtSystemTest : public SystemTest {};

TEST_F(BdUntagRtSystemTest, routesThatDifferInTagsAreOneRecordWhichHasNone) {
    L2McBdRtEntry route{};
    route.tagVid1 = 1;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdUntagRt(&route));
    route.tagVid1 = 2;
    route.tagVid2 = 3;
    route.rtAttr = 23;
    EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdUntagRt(&route));
    EXPECT_EQ(1u, g_mcast6DbErrStat[25][1]);
    L2McBdRtEntry read{};
    read.tagVid1 = 0x0102;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdUntagRt(&read));
    EXPECT_EQ(23u, read.rtAttr);
    EXPECT_EQ(0x0102u, read.tagVid1);
}

}  // namespace

}  // namespace mcast6::tests
