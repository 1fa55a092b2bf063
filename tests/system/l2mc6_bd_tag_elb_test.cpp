// l2mc6_bd_tag_elb on the shipped platform: what differs from the other tables of egress members.
#include "mcast6_db/l2mc6_bd_tag_elb.h"

#include <gmock/gmock.h>

#include <cstring>

#include "tests/system/bd_egress_stories.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::UnorderedElementsAre;

struct Tagged {
    static constexpr auto getEntry = MCAST6_DB_GetL2McBdTagElbEntry;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2BdTagElbIter;
};

class BdTagElbSystemTest : public SystemTest {};

TEST_F(BdTagElbSystemTest, membersThatDifferInOneTagAreTwoRecords) {
    L2Elb6Entry member = memberOf(kGroup, 1);
    for (const auto& [tagVid1, tagVid2] : {std::pair{1, 0}, {2, 0}, {1, 1}}) {
        member.tagVid1 = static_cast<uint16_t>(tagVid1);
        member.tagVid2 = static_cast<uint16_t>(tagVid2);
        member.mcId = 10u * member.tagVid1 + member.tagVid2;
        ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdTagElb(&member));
    }
    EXPECT_EQ(0u, errors());
    EXPECT_EQ(3u, interfacesOf<Tagged>(MCAST6_DB_CreateL2BdTagElbIter()).size());
    L2Elb6Entry read = memberOf(kGroup, 1);
    read.tagVid1 = 2;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdTagElb(&read));
    EXPECT_EQ(20u, read.mcId);
}

TEST_F(BdTagElbSystemTest, itsOwnFieldsReadBack) {
    L2Elb6Entry member = memberOf(kGroup, 1);
    member.tagVid1 = 0x1112;
    member.tagVid2 = 0x1314;
    member.fwdIfExtType = 0x2122;
    member.fwdIfKind = 0x2324;
    member.elbByte1 = 0x31;
    member.egressAttr = 0x41424344;
    member.elbWord1 = 0x51525354;
    member.elbWord2 = 0x61626364;
    std::memset(member.elbData1, 0x71, sizeof member.elbData1);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdTagElb(&member));
    L2Elb6Entry read = memberOf(kGroup, 1);
    read.tagVid1 = 0x1112;
    read.tagVid2 = 0x1314;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdTagElb(&read));
    EXPECT_EQ(0x2122u, read.fwdIfExtType);
    EXPECT_EQ(0x2324u, read.fwdIfKind);
    EXPECT_EQ(0x2324u, read.fwdIfType);
    EXPECT_EQ(0x31u, read.elbByte1);
    EXPECT_EQ(0x41424344u, read.egressAttr);
    EXPECT_EQ(0x51525354u, read.elbWord1);
    EXPECT_EQ(0x61626364u, read.elbWord2);
    EXPECT_EQ(0, std::memcmp(member.elbData1, read.elbData1, sizeof read.elbData1));
}

TEST_F(BdTagElbSystemTest, anIteratorBySourceProcessGivesTheMembersThatItWroteInAVrf) {
    for (const uint32_t ifIndex : {1u, 2u, 3u, 4u}) {
        L2Elb6Entry member = memberOf(kGroup, ifIndex);
        member.vrfId = ifIndex == 4 ? 6 : 5;
        member.appSrcPid = ifIndex == 3 ? 78 : 77;
        ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdTagElb(&member));
    }
    L2Elb6Entry writer{};
    writer.vrId = 1;
    writer.vrfId = 5;
    writer.appSrcPid = 77;
    EXPECT_THAT(interfacesOf<Tagged>(MCAST6_DB_CreateL2McBdTagElbIterBySrcPid(&writer)), UnorderedElementsAre(1u, 2u));
}

}  // namespace

}  // namespace mcast6::tests
