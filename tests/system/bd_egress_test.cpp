// The stored egress members of a bridge domain, in each of their four tables.
#include <gmock/gmock.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "mcast6_db/l2mc6_bd_tag_elb.h"
#include "mcast6_db/l2mc6_bd_untag_elb.h"
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"
#include "mcast6_platform/platform.h"
#include "tests/system/bd_egress_stories.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

struct Tagged {
    static constexpr uint32_t number = 21;
    static constexpr uint32_t fixedWords[] = {2, 7};
    // The errors and counters of a write of a present record, and of changes of absent ones.
    static constexpr uint32_t presentWriteKind = 1, presentWriteCounter = 339;
    static constexpr uint32_t absentUpdateKind = 1, absentRemovalCounter = 340;
    static constexpr uint32_t written = 338, removed = 340;
    static constexpr auto read = MCAST6_DB_ReadL2McBdTagElb;
    static constexpr auto write = MCAST6_DB_WriteL2McBdTagElb;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2McBdTagElbSmoothVersion;
    static constexpr auto remove = MCAST6_DB_DeleteL2McBdTagElb;
    static constexpr auto getEntry = MCAST6_DB_GetL2McBdTagElbEntry;
    static constexpr auto all = MCAST6_DB_CreateL2BdTagElbIter;
    static constexpr auto ofEntry = MCAST6_DB_CreateL2McBdTagElbMcidIter;
    static constexpr auto bySource = MCAST6_DB_CreateL2McBdTagElbSourceIter;
    static constexpr auto byInterface = MCAST6_DB_CreateL2McBdTagElbIterByIfindex;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2BdTagElbIter;
};

struct Untagged {
    static constexpr uint32_t number = 22;
    static constexpr uint32_t fixedWords[] = {1, 8};
    static constexpr uint32_t presentWriteKind = 1, presentWriteCounter = 346;
    static constexpr uint32_t absentUpdateKind = 1, absentRemovalCounter = 348;
    static constexpr uint32_t written = 346, removed = 348;
    static constexpr auto read = MCAST6_DB_ReadL2McBdUntagElb;
    static constexpr auto write = MCAST6_DB_WriteL2McBdUntagElb;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2McBdUntagElbSmoothVersion;
    static constexpr auto remove = MCAST6_DB_DeleteL2McBdUntagElb;
    static constexpr auto getEntry = MCAST6_DB_GetL2McBdUntagElbEntry;
    static constexpr auto all = MCAST6_DB_CreateL2BdUntagElbIter;
    static constexpr auto ofEntry = MCAST6_DB_CreateL2McBdUntagElbMcidIterator;
    static constexpr auto bySource = MCAST6_DB_CreateL2McBdUntagElbSourceIterator;
    static constexpr auto byInterface = MCAST6_DB_CreateL2McBdUntagElbIterByIfindex;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2BdUntagElbIter;
};

struct Vxlan {
    static constexpr uint32_t number = 30;
    static constexpr uint32_t fixedWords[] = {3, 9};
    static constexpr uint32_t presentWriteKind = 2, presentWriteCounter = 507;
    static constexpr uint32_t absentUpdateKind = 6, absentRemovalCounter = 509;
    static constexpr uint32_t written = 506, removed = 508;
    static constexpr auto read = MCAST6_DB_ReadL2Mc6BdVxlanElb;
    static constexpr auto write = MCAST6_DB_WriteL2Mc6BdVxlanElb;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion;
    static constexpr auto remove = MCAST6_DB_DeleteL2Mc6BdVxlanElb;
    static constexpr auto getEntry = MCAST6_DB_GetL2Mc6BdVxlanElbEntry;
    static constexpr auto all = MCAST6_DB_CreateL2Mc6BdVxlanElbIter;
    static constexpr auto ofEntry = MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator;
    static constexpr auto bySource = MCAST6_DB_CreateL2Mc6BdVxlanElbsourceIterator;
    static constexpr auto byInterface = MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator;
};

struct VxlanSub {
    static constexpr uint32_t number = 31;
    static constexpr uint32_t fixedWords[] = {8, 10};
    static constexpr uint32_t presentWriteKind = 2, presentWriteCounter = 514;
    static constexpr uint32_t absentUpdateKind = 6, absentRemovalCounter = 516;
    static constexpr uint32_t written = 513, removed = 515;
    static constexpr auto read = MCAST6_DB_ReadL2Mc6BdVxlanSubElb;
    static constexpr auto write = MCAST6_DB_WriteL2Mc6BdVxlanSubElb;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion;
    static constexpr auto remove = MCAST6_DB_DeleteL2Mc6BdVxlanSubElb;
    static constexpr auto getEntry = MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry;
    static constexpr auto all = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter;
    static constexpr auto ofEntry = MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator;
    static constexpr auto bySource = MCAST6_DB_CreateL2Mc6BdVxlanSubElbsourceIterator;
    static constexpr auto byInterface = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByIfindex;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator;
};

// A member whose key differs from that of others in all tables, with values in the fields that all tables store.
L2Elb6Entry filled(uint8_t n) {
    L2Elb6Entry member = memberOf(kGroup, 0x11000000u + n, n);
    member.vrfId = 2;
    member.mcId = 0x21222324;
    member.mcidVersion = 0x3132333435363738;
    member.mfibVersion = 0x41424344;
    member.isSelfBoard = 1;
    member.pathFlags = 0x51525354;
    member.appSrcPid = 0x61626364;
    member.appVersion = 0x71727374;
    member.smoothVersion = 7;
    std::memset(member.svcCtxHighPrio, 0x81, sizeof member.svcCtxHighPrio);
    std::memset(member.svcCtxNormalPrio, 0x82, sizeof member.svcCtxNormalPrio);
    std::memset(member.serviceStatus, 0x83, sizeof member.serviceStatus);
    std::memset(member.errCode, 0x84, sizeof member.errCode);
    return member;
}

template <class Table>
class BdEgressSystemTest : public SystemTest {
protected:
    static L2Elb6Entry stored(uint8_t n) {
        L2Elb6Entry member = memberOf(kGroup, 0x11000000u + n, n);
        EXPECT_EQ(0u, Table::read(&member));
        return member;
    }
};

using Tables = testing::Types<Tagged, Untagged, Vxlan, VxlanSub>;
TYPED_TEST_SUITE(BdEgressSystemTest, Tables);

TYPED_TEST(BdEgressSystemTest, readsBackWhatWasWritten) {
    L2Elb6Entry written = filled(1);
    written.timeStampCreate = 1;
    written.timeStampSmooth = 2;
    ASSERT_EQ(0u, TypeParam::write(&written));
    L2Elb6Entry expected = filled(1);
    expected.addrType = 2;
    expected.domainType = 1;
    expected.fixedWord1 = TypeParam::fixedWords[0];
    expected.fixedWord2 = TypeParam::fixedWords[1];
    expected.timeStampCreate = 1'000;
    expected.timeStampSmooth = 1'000;
    const L2Elb6Entry read = this->stored(1);
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::written));
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdEgressSystemTest, anAbsentMemberAnswers15005AndIsNoError) {
    L2Elb6Entry member = filled(1);
    const L2Elb6Entry before = member;
    EXPECT_EQ(15005u, TypeParam::read(&member));
    EXPECT_EQ(0, std::memcmp(&before, &member, sizeof member));
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdEgressSystemTest, aSecondWriteReplacesTheMemberWithBothTimesNew) {
    L2Elb6Entry member = filled(1);
    ASSERT_EQ(0u, TypeParam::write(&member));
    mcast6_platform_reset_counters();
    setTime(1'010);
    member.mcId = 9;
    EXPECT_EQ(0u, TypeParam::write(&member));
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::presentWriteCounter));
    EXPECT_EQ(TypeParam::written == TypeParam::presentWriteCounter ? 1u : 0u,
              mcast6_platform_counter(TypeParam::written));
    EXPECT_EQ(1u, g_mcast6DbErrStat[TypeParam::number][TypeParam::presentWriteKind]);
    EXPECT_EQ(1u, this->errors());
    EXPECT_THAT(this->logLines(), IsEmpty());
    const L2Elb6Entry read = this->stored(1);
    EXPECT_EQ(9u, read.mcId);
    EXPECT_EQ(1'010u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
}

TYPED_TEST(BdEgressSystemTest, aSmoothUpdateChangesTheVersionAndTheSmoothTimeOnly) {
    const L2Elb6Entry member = filled(1);
    ASSERT_EQ(0u, TypeParam::write(&member));
    const L2Elb6Entry before = this->stored(1);
    setTime(1'010);
    L2Elb6Entry change = memberOf(kGroup, 0x11000001, 1);
    change.smoothVersion = 8;
    change.mcId = 9;
    EXPECT_EQ(0u, TypeParam::updateSmoothVersion(&change));
    L2Elb6Entry expected = before;
    expected.smoothVersion = 8;
    expected.timeStampSmooth = 1'010;
    const L2Elb6Entry read = this->stored(1);
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdEgressSystemTest, changesOfAnAbsentMemberReturn0AndStoreNothing) {
    L2Elb6Entry member = filled(1);
    EXPECT_EQ(0u, TypeParam::updateSmoothVersion(&member));
    EXPECT_EQ(1u, g_mcast6DbErrStat[TypeParam::number][TypeParam::absentUpdateKind]);
    EXPECT_EQ(1u, this->errors());
    EXPECT_EQ(15005u, TypeParam::read(&member));
    EXPECT_EQ(0u, TypeParam::remove(&member));
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::absentRemovalCounter));
    EXPECT_EQ(TypeParam::removed == TypeParam::absentRemovalCounter ? 1u : 0u,
              mcast6_platform_counter(TypeParam::removed));
    EXPECT_EQ(TypeParam::absentUpdateKind == 1 ? 2u : 1u, g_mcast6DbErrStat[TypeParam::number][1]);
    EXPECT_EQ(2u, this->errors());
    EXPECT_THAT(this->logLines(), IsEmpty());
}

TYPED_TEST(BdEgressSystemTest, aRemovedMemberIsGoneAndItsNeighbourIsNot) {
    const L2Elb6Entry member = filled(1);
    const L2Elb6Entry neighbour = filled(2);
    ASSERT_EQ(0u, TypeParam::write(&member));
    ASSERT_EQ(0u, TypeParam::write(&neighbour));
    EXPECT_EQ(0u, TypeParam::remove(&member));
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::removed));
    L2Elb6Entry read = filled(1);
    EXPECT_EQ(15005u, TypeParam::read(&read));
    EXPECT_EQ(0x11000002u, this->stored(2).outIfIndex);
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdEgressSystemTest, anIteratorGivesEveryMemberOnceAndAnEndedOne60AgainAndAgain) {
    std::vector<uint32_t> written;
    for (uint8_t n = 1; n <= 100; ++n) {
        const L2Elb6Entry member = filled(n);
        ASSERT_EQ(0u, TypeParam::write(&member));
        written.push_back(member.outIfIndex);
    }
    EXPECT_THAT(interfacesOf<TypeParam>(TypeParam::all()), UnorderedElementsAreArray(written));
    const L2McBdElbKey none = entryOf(kOtherGroup);
    Mcast6DbRes* const iterator = TypeParam::ofEntry(&none);
    ASSERT_NE(nullptr, iterator);
    L2Elb6Entry member{};
    EXPECT_EQ(60u, TypeParam::getEntry(iterator, &member));
    EXPECT_EQ(60u, TypeParam::getEntry(iterator, &member));
    TypeParam::releaseIterator(iterator);
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdEgressSystemTest, bothIteratorsOfAnEntryGiveItsMembersAndNoOthers) {
    for (const uint32_t ifIndex : {1u, 2u, 3u}) {
        const L2Elb6Entry member = memberOf(kGroup, ifIndex, static_cast<uint8_t>(ifIndex));
        ASSERT_EQ(0u, TypeParam::write(&member));
    }
    const L2Elb6Entry other = memberOf(kOtherGroup, 4);
    ASSERT_EQ(0u, TypeParam::write(&other));
    const L2McBdElbKey entry = entryOf(kGroup);
    const std::vector<uint32_t> members = interfacesOf<TypeParam>(TypeParam::ofEntry(&entry));
    EXPECT_THAT(members, UnorderedElementsAreArray({1u, 2u, 3u}));
    EXPECT_EQ(members, interfacesOf<TypeParam>(TypeParam::bySource(&entry)));
    const L2McBdElbKey otherEntry = entryOf(kOtherGroup);
    EXPECT_THAT(interfacesOf<TypeParam>(TypeParam::ofEntry(&otherEntry)), ElementsAre(4u));
}

TYPED_TEST(BdEgressSystemTest, anIteratorByInterfaceGivesTheMembersOfAllEntriesOnIt) {
    for (const Mcast6Ipv6Addr& group : {kGroup, kOtherGroup}) {
        for (const uint8_t n : {uint8_t{1}, uint8_t{2}}) {
            const L2Elb6Entry member = memberOf(group, n, n);
            ASSERT_EQ(0u, TypeParam::write(&member));
        }
    }
    EXPECT_THAT(interfacesOf<TypeParam>(TypeParam::byInterface(2)), ElementsAre(2u, 2u));
    EXPECT_THAT(interfacesOf<TypeParam>(TypeParam::byInterface(3)), IsEmpty());
}

TYPED_TEST(BdEgressSystemTest, releasingNoIteratorDoesNothing) {
    TypeParam::releaseIterator(nullptr);
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

}  // namespace

}  // namespace mcast6::tests
