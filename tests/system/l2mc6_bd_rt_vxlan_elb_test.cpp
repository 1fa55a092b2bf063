// l2mc6_bd_rt_vxlan_elb on the shipped platform: what differs from the other tables of routes.
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"

#include <gmock/gmock.h>

#include <vector>

#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::UnorderedElementsAre;

class BdRtVxlanElbSystemTest : public SystemTest {};

TEST_F(BdRtVxlanElbSystemTest, anIteratorBySourceProcessGivesTheRoutesThatItWroteInAVrf) {
    for (const uint32_t n : {1u, 2u, 3u, 4u}) {
        L2McBdRtVxlanEntry route{};
        route.vrId = 1;
        route.vrfId = n == 4 ? 6 : 5;
        route.rtKeyValue = n;
        route.appSrcPid = n == 3 ? 78 : 77;
        ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdRtVxlanElb(&route));
    }
    L2McBdRtVxlanEntry writer{};
    writer.vrId = 1;
    writer.vrfId = 5;
    writer.appSrcPid = 77;
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid(&writer);
    ASSERT_NE(nullptr, iterator);
    std::vector<uint32_t> routes;
    L2McBdRtVxlanEntry route{};
    while (routes.size() < 10 && MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry(iterator, &route) == 0) {
        routes.push_back(route.rtKeyValue);
    }
    MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator(iterator);
    EXPECT_THAT(routes, UnorderedElementsAre(1u, 2u));
}

}  // namespace

}  // namespace mcast6::tests
