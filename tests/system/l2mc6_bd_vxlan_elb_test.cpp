// l2mc6_bd_vxlan_elb on the shipped platform: what differs from the other tables of egress members.
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"

#include <gmock/gmock.h>

#include <cstring>

#include "tests/system/bd_egress_stories.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct Vxlan {
    static constexpr auto getEntry = MCAST6_DB_GetL2Mc6BdVxlanElbEntry;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator;
};

class BdVxlanElbSystemTest : public SystemTest {
protected:
    // The members 11 and 12 of one entry and 21 of another, through the tunnels 1, 2 and 1; 31 in another bridge
    // domain.
    static void writeMembers() {
        L2Elb6Entry elsewhere = memberOf(kGroup, 31, 1);
        elsewhere.bdId = 101;
        for (const L2Elb6Entry& member :
             {memberOf(kGroup, 11, 1), memberOf(kGroup, 12, 2), memberOf(kOtherGroup, 21, 1), elsewhere}) {
            ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanElb(&member));
        }
    }
};

TEST_F(BdVxlanElbSystemTest, itsOwnFieldsReadBack) {
    L2Elb6Entry member = memberOf(kGroup, 1, 0xFE);
    member.vxlanWord0 = 0x11121314;
    member.vxlanWord2 = 0x21222324;
    member.vxlanFlag = 0x31;
    const uint32_t words[4] = {0x41424344, 0x45464748, 0x494A4B4C, 0x4D4E4F50};
    std::memcpy(member.vxlanWords3to6, words, sizeof words);
    member.vxlanByte2 = 0xFD;
    member.fwdIfType = 0x6162;
    std::memset(member.elbData1, 0x71, sizeof member.elbData1);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanElb(&member));
    L2Elb6Entry read = memberOf(kGroup, 0, 0xFE);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2Mc6BdVxlanElb(&read));
    EXPECT_EQ(1u, read.outIfIndex);
    EXPECT_EQ(0xFEu, read.vxlanByte);
    EXPECT_EQ(0x11121314u, read.vxlanWord0);
    EXPECT_EQ(0x21222324u, read.vxlanWord2);
    EXPECT_EQ(0x31u, read.vxlanFlag);
    EXPECT_THAT(read.vxlanWords3to6, ElementsAre(0x41424344, 0x45464748, 0x494A4B4C, 0x4D4E4F50));
    EXPECT_EQ(0xFDu, read.vxlanByte2);
    EXPECT_EQ(0x6162u, read.fwdIfType);
    EXPECT_EQ(0x6162u, read.fwdIfKind);
    EXPECT_EQ(0, std::memcmp(member.elbData1, read.elbData1, sizeof read.elbData1));
}

// The interface is not in the key.
TEST_F(BdVxlanElbSystemTest, anEntryHasOneMemberForEachTunnel) {
    const L2Elb6Entry member = memberOf(kGroup, 1);
    const L2Elb6Entry moved = memberOf(kGroup, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanElb(&member));
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Mc6BdVxlanElb(&moved));
    EXPECT_THAT(interfacesOf<Vxlan>(MCAST6_DB_CreateL2Mc6BdVxlanElbIter()), ElementsAre(2u));
    EXPECT_THAT(interfacesOf<Vxlan>(MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex(1)), IsEmpty());
}

TEST_F(BdVxlanElbSystemTest, iteratorsByTunnelAndBridgeDomainGiveWhatTheyName) {
    writeMembers();
    EXPECT_THAT(interfacesOf<Vxlan>(MCAST6_DB_CreateL2mcv6ElbIterByVxlanTnl(1, 99, 1, 0x1001)),
                UnorderedElementsAre(11u, 21u, 31u));
    EXPECT_THAT(interfacesOf<Vxlan>(MCAST6_DB_CreateL2mcv6ElbIterByVxlanTnl(1, 0, 2, 0x1002)), ElementsAre(12u));
    EXPECT_THAT(interfacesOf<Vxlan>(MCAST_DB_CreateL2McBdVxlanElbIteratorByBd(1, 100)),
                UnorderedElementsAre(11u, 12u, 21u));
    EXPECT_THAT(interfacesOf<Vxlan>(MCAST6_DB_CreateL2Mc6VxlanElbIterByTnlVsg(1, 100, 1, 0x1001)),
                UnorderedElementsAre(11u, 21u));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(BdVxlanElbSystemTest, countsAreThoseOfTheIterators) {
    writeMembers();
    uint32_t count = 99;
    const L2McBdVxlanVsgKey tunnel{{1, 100, 1, 0x1001}};
    EXPECT_EQ(0u, MCAST6_DB_GetL2Mc6BdVxlanElbCountByTnlVsg(&tunnel, &count));
    EXPECT_EQ(2u, count);
    const Mcast6DbKeyDesc byBridgeDomain{0x05090008, {}};
    const uint32_t bridgeDomain[2] = {1, 100};
    EXPECT_EQ(0u, MCAST6_DB_GetL2Mc6BdVxlanElbCountByKey(&byBridgeDomain, bridgeDomain, &count));
    EXPECT_EQ(3u, count);
    EXPECT_EQ(0u, errors());
}

TEST_F(BdVxlanElbSystemTest, aCountByAKeyThatTheTableLacksAnswers1AndLeavesTheCount) {
    uint32_t count = 99;
    const Mcast6DbKeyDesc unknown{0x0F090008, {}};
    const uint32_t key[2] = {1, 100};
    EXPECT_EQ(1u, MCAST6_DB_GetL2Mc6BdVxlanElbCountByKey(&unknown, key, &count));
    EXPECT_EQ(99u, count);
    EXPECT_EQ(1u, logLines().size());
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
