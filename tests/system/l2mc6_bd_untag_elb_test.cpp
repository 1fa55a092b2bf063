// l2mc6_bd_untag_elb on the shipped platform: what differs from the other tables of egress members.
#include "mcast6_db/l2mc6_bd_untag_elb.h"

#include <gmock/gmock.h>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/bd_egress_stories.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

struct Untagged {
    static constexpr auto getEntry = MCAST6_DB_GetL2McBdUntagElbEntry;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2BdUntagElbIter;
};

class BdUntagElbSystemTest : public SystemTest {};

TEST_F(BdUntagElbSystemTest, membersThatDifferInTagsAreOneRecord) {
    L2Elb6Entry member = memberOf(kGroup, 1);
    member.tagVid1 = 1;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdUntagElb(&member));
    member.tagVid1 = 2;
    member.tagVid2 = 3;
    EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdUntagElb(&member));
    EXPECT_EQ(1u, g_mcast6DbErrStat[22][1]);
    EXPECT_EQ(2u, mcast6_platform_counter(346));
    EXPECT_EQ(0u, mcast6_platform_counter(347));
    EXPECT_THAT(interfacesOf<Untagged>(MCAST6_DB_CreateL2BdUntagElbIter()), ElementsAre(1u));
}

TEST_F(BdUntagElbSystemTest, itsOwnFieldsReadBackAndTagsAndOpaqueBytesStay) {
    L2Elb6Entry member = memberOf(kGroup, 1);
    member.fwdIfExtType = 0x2122;
    member.fwdIfKind = 0x2324;
    member.elbByte1 = 0x31;
    member.egressAttr = 0x41424344;
    member.elbWord1 = 0x51525354;
    member.elbData1[0] = 0x61;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdUntagElb(&member));
    L2Elb6Entry read = memberOf(kGroup, 1);
    read.tagVid1 = 0x0102;
    read.elbWord1 = 0x03040506;
    read.elbData1[0] = 0x07;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdUntagElb(&read));
    EXPECT_EQ(0x2122u, read.fwdIfExtType);
    EXPECT_EQ(0x2324u, read.fwdIfKind);
    EXPECT_EQ(0x2324u, read.fwdIfType);
    EXPECT_EQ(0x31u, read.elbByte1);
    EXPECT_EQ(0x41424344u, read.egressAttr);
    EXPECT_EQ(0x0102u, read.tagVid1);
    EXPECT_EQ(0x03040506u, read.elbWord1);
    EXPECT_EQ(0x07u, read.elbData1[0]);
}

TEST_F(BdUntagElbSystemTest, anIteratorBySourceProcessGivesTheMembersThatItWroteInAVrf) {
    for (const uint32_t ifIndex : {1u, 2u, 3u, 4u}) {
        L2Elb6Entry member = memberOf(kGroup, ifIndex);
        member.vrfId = ifIndex == 4 ? 6 : 5;
        member.appSrcPid = ifIndex == 3 ? 78 : 77;
        ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdUntagElb(&member));
    }
    L2Elb6Entry writer{};
    writer.vrId = 1;
    writer.vrfId = 5;
    writer.appSrcPid = 77;
    EXPECT_THAT(interfacesOf<Untagged>(MCAST6_DB_CreateL2McBdUntagElbIterBySrcPid(&writer)),
                UnorderedElementsAre(1u, 2u));
}

}  // namespace

}  // namespace mcast6::tests
