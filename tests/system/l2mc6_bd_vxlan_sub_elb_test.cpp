// l2mc6_bd_vxlan_sub_elb on the shipped platform: what differs from the other tables of egress members.
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"

#include <gmock/gmock.h>

#include <cstring>

#include "tests/system/bd_egress_stories.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

struct VxlanSub {
    static constexpr auto getEntry = MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator;
};

class BdVxlanSubElbSystemTest : public SystemTest {};

TEST_F(BdVxlanSubElbSystemTest, itsOwnFieldsReadBackAndOneStays) {
    L2Elb6Entry member = memberOf(kGroup, 1, 0xFE);
    member.vxlanWord0 = 0x11121314;
    member.vxlanWord2 = 0x21222324;
    member.vxlanFlag = 0x31;
    const uint32_t words[4] = {0x41424344, 0x45464748, 0x494A4B4C, 0x4D4E4F50};
    std::memcpy(member.vxlanWords3to6, words, sizeof words);
    member.vxlanByte2 = 0xFD;
    member.fwdIfType = 0x6162;
    std::memset(member.elbData1, 0x71, sizeof member.elbData1);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanSubElb(&member));
    L2Elb6Entry read = memberOf(kGroup, 1, 0xFE);
    read.vxlanByte2 = 0x51;  // not stored
    ASSERT_EQ(0u, MCAST6_DB_ReadL2Mc6BdVxlanSubElb(&read));
    EXPECT_EQ(0xFEu, read.vxlanByte);
    EXPECT_EQ(0x11121314u, read.vxlanWord0);
    EXPECT_EQ(0x21222324u, read.vxlanWord2);
    EXPECT_EQ(0x31u, read.vxlanFlag);
    EXPECT_THAT(read.vxlanWords3to6, ElementsAre(0x41424344, 0x45464748, 0x494A4B4C, 0x4D4E4F50));
    EXPECT_EQ(0x51u, read.vxlanByte2);
    EXPECT_EQ(0x6162u, read.fwdIfType);
    EXPECT_EQ(0x6162u, read.fwdIfKind);
    EXPECT_EQ(0, std::memcmp(member.elbData1, read.elbData1, sizeof read.elbData1));
}

TEST_F(BdVxlanSubElbSystemTest, anIteratorByVsgGivesTheInterfacesOfATunnel) {
    for (const L2Elb6Entry& member :
         {memberOf(kGroup, 1, 1), memberOf(kGroup, 2, 1), memberOf(kGroup, 3, 2), memberOf(kOtherGroup, 4, 1)}) {
        ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanSubElb(&member));
    }
    EXPECT_EQ(0u, errors());
    const L2Elb6Entry tunnel = memberOf(kGroup, 99, 1);
    EXPECT_THAT(interfacesOf<VxlanSub>(MCAST6_DB_CreateL2Mc6VxlanSubElbCreateVSGIterator(&tunnel)),
                UnorderedElementsAre(1u, 2u));
}

TEST_F(BdVxlanSubElbSystemTest, anIteratorByBridgeDomainGivesItsMembers) {
    L2Elb6Entry elsewhere = memberOf(kGroup, 3);
    elsewhere.bdId = 101;
    for (const L2Elb6Entry& member : {memberOf(kGroup, 1), memberOf(kOtherGroup, 2), elsewhere}) {
        ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanSubElb(&member));
    }
    EXPECT_THAT(interfacesOf<VxlanSub>(MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByBd(1, 100)),
                UnorderedElementsAre(1u, 2u));
}

}  // namespace

}  // namespace mcast6::tests
