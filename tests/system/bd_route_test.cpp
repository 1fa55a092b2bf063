// The stored routes of a bridge domain, in each of their three tables.
#include <gmock/gmock.h>

#include <cstring>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_tag_rt.h"
#include "mcast6_db/l2mc6_bd_untag_rt.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

struct Tagged {
    using Record = L2McBdRtEntry;
    static constexpr uint32_t number = 24;
    static constexpr uint32_t rtKind = 2;
    static constexpr uint32_t written = 407, writeFailed = 408, removed = 409, removeFailed = 410;
    static constexpr uint32_t failuresOf13044 = 0;  // in the counters of failures
    static constexpr auto read = MCAST6_DB_ReadL2McBdTagRt;
    static constexpr auto write = MCAST6_DB_WriteL2McBdTagRt;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2McBdTagRtSmoothVersion;
    static constexpr auto update = MCAST6_DB_UpdateL2McBdTagRt;
    static constexpr auto remove = MCAST6_DB_DeleteL2McBdTagRt;
    static constexpr auto getEntry = MCAST6_DB_GetL2McBdTagRtEntry;
    static constexpr auto all = MCAST6_DB_CreateL2McBdTagRtIter;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2McBdTagRtIterator;
    static void fillRest(Record& route) {
        route.tagVid1 = 0x7172;
        route.tagVid2 = 0x7374;
    }
    static void fillKeyRest(Record& route) { fillRest(route); }
};

struct Untagged {
    using Record = L2McBdRtEntry;
    static constexpr uint32_t number = 25;
    static constexpr uint32_t rtKind = 1;
    static constexpr uint32_t written = 415, writeFailed = 416, removed = 417, removeFailed = 418;
    static constexpr uint32_t failuresOf13044 = 0;
    static constexpr auto read = MCAST6_DB_ReadL2McBdUntagRt;
    static constexpr auto write = MCAST6_DB_WriteL2McBdUntagRt;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2McBdUntagRtSmoothVersion;
    static constexpr auto update = MCAST6_DB_UpdateL2McBdUntagRt;
    static constexpr auto remove = MCAST6_DB_DeleteL2McBdUntagRt;
    static constexpr auto getEntry = MCAST6_DB_GetL2McBdUntagRtEntry;
    static constexpr auto all = MCAST6_DB_CreateL2McBdUntagRtIter;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2McBdUntagRtIterator;
    static void fillRest(Record&) {}
    static void fillKeyRest(Record&) {}
};

struct Vxlan {
    using Record = L2McBdRtVxlanEntry;
    static constexpr uint32_t number = 32;
    static constexpr uint32_t rtKind = 3;
    static constexpr uint32_t written = 522, writeFailed = 521, removed = 524, removeFailed = 523;
    static constexpr uint32_t failuresOf13044 = 1;
    static constexpr auto read = MCAST6_DB_ReadL2Mc6BdRtVxlanElb;
    static constexpr auto write = MCAST6_DB_WriteL2Mc6BdRtVxlanElb;
    static constexpr auto updateSmoothVersion = MCAST6_DB_UpdateL2Mc6BdRtVxlanElbSmoothVersion;
    static constexpr auto update = MCAST6_DB_UpdateL2Mc6BdRtVxlanElb;
    static constexpr auto remove = MCAST6_DB_DeleteL2Mc6BdRtVxlanElb;
    static constexpr auto getEntry = MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry;
    static constexpr auto all = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIter;
    static constexpr auto releaseIterator = MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator;
    static void fillRest(Record& route) {
        fillKeyRest(route);
        route.appSrcPid = 0x75767778;
    }
    static void fillKeyRest(Record& route) { route.rtKeyWord3 = 0x71727374; }
};

template <class Table>
class BdRouteSystemTest : public SystemTest {
protected:
    using Record = typename Table::Record;

    static Record keyOf(uint32_t n) {
        Record route{};
        route.vrId = 1;
        route.rtKeyWord1 = 0x11121314;
        route.rtKeyWord2 = 0x21222324;
        route.rtKeyValue = n;
        Table::fillKeyRest(route);
        return route;
    }
    static Record filled(uint32_t n) {
        Record route = keyOf(n);
        Table::fillRest(route);
        route.vrfId = 2;
        route.rtAttr = 0x31323334;
        route.smoothVersion = 7;
        route.serviceStatus = 0x41424344;
        route.errCode = 0x51525354;
        return route;
    }
    static Record stored(uint32_t n) {
        Record route = keyOf(n);
        EXPECT_EQ(0u, Table::read(&route));
        return route;
    }
};

using Tables = testing::Types<Tagged, Untagged, Vxlan>;
TYPED_TEST_SUITE(BdRouteSystemTest, Tables);

TYPED_TEST(BdRouteSystemTest, readsBackWhatWasWritten) {
    const auto written = this->filled(5);
    ASSERT_EQ(0u, TypeParam::write(&written));
    auto expected = written;
    expected.addrKind = 1;
    expected.rtKind = TypeParam::rtKind;
    expected.timeStampCreate = 1'000;
    expected.timeStampSmooth = 1'000;
    const auto read = this->stored(5);
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::written));
    EXPECT_EQ(0u, mcast6_platform_counter(TypeParam::writeFailed));
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdRouteSystemTest, anAbsentRouteAnswers60AndIsNoError) {
    auto route = this->filled(5);
    EXPECT_EQ(60u, TypeParam::read(&route));
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdRouteSystemTest, aWriteKeepsTheCallersCreationTimeAndReplacesAMissingOne) {
    auto route = this->filled(5);
    route.timeStampCreate = 0x0102030405060708;
    route.timeStampSmooth = 2;
    ASSERT_EQ(0u, TypeParam::write(&route));
    EXPECT_EQ(0x0102030405060708u, this->stored(5).timeStampCreate);
    EXPECT_EQ(1'000u, this->stored(5).timeStampSmooth);
    setTime(1'010);
    route.timeStampCreate = 0;
    ASSERT_EQ(0u, TypeParam::write(&route));
    EXPECT_EQ(1'010u, this->stored(5).timeStampCreate);
    EXPECT_EQ(1'010u, this->stored(5).timeStampSmooth);
}

TYPED_TEST(BdRouteSystemTest, aSecondWriteReplacesTheRouteAndRecordsIt) {
    auto route = this->filled(5);
    ASSERT_EQ(0u, TypeParam::write(&route));
    route.rtAttr = 9;
    EXPECT_EQ(0u, TypeParam::write(&route));
    EXPECT_EQ(9u, this->stored(5).rtAttr);
    EXPECT_EQ(2u, mcast6_platform_counter(TypeParam::written));
    EXPECT_EQ(TypeParam::failuresOf13044, mcast6_platform_counter(TypeParam::writeFailed));
    EXPECT_EQ(1u, g_mcast6DbErrStat[TypeParam::number][1]);
    EXPECT_EQ(1u, this->errors());
    EXPECT_THAT(this->logLines(), IsEmpty());
}

TYPED_TEST(BdRouteSystemTest, aSmoothUpdateLeavesServiceStatusAndErrCode) {
    const auto route = this->filled(5);
    ASSERT_EQ(0u, TypeParam::write(&route));
    auto expected = this->stored(5);
    setTime(1'010);
    auto change = this->keyOf(5);
    change.smoothVersion = 8;
    change.serviceStatus = 9;
    change.errCode = 10;
    change.rtAttr = 11;
    EXPECT_EQ(0u, TypeParam::updateSmoothVersion(&change, nullptr));
    expected.smoothVersion = 8;
    expected.timeStampSmooth = 1'010;
    const auto read = this->stored(5);
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdRouteSystemTest, anUpdateOverwritesServiceStatusAndErrCodeAndNoMore) {
    const auto route = this->filled(5);
    ASSERT_EQ(0u, TypeParam::write(&route));
    auto expected = this->stored(5);
    setTime(1'010);
    auto change = this->keyOf(5);
    change.smoothVersion = 8;
    change.serviceStatus = 9;
    change.errCode = 10;
    change.rtAttr = 11;
    EXPECT_EQ(0u, TypeParam::update(&change, nullptr));
    expected.smoothVersion = 8;
    expected.serviceStatus = 9;
    expected.errCode = 10;
    expected.timeStampSmooth = 1'010;
    const auto read = this->stored(5);
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(0u, this->errors());
}

TYPED_TEST(BdRouteSystemTest, changesOfAnAbsentRouteReturn0AndStoreNothing) {
    auto route = this->filled(5);
    EXPECT_EQ(0u, TypeParam::update(&route, nullptr));
    EXPECT_EQ(1u, g_mcast6DbErrStat[TypeParam::number][1]);
    EXPECT_EQ(0u, TypeParam::updateSmoothVersion(&route, nullptr));
    EXPECT_EQ(2u, g_mcast6DbErrStat[TypeParam::number][1]);
    EXPECT_EQ(0u, TypeParam::remove(&route));
    EXPECT_EQ(3u, g_mcast6DbErrStat[TypeParam::number][1]);
    EXPECT_EQ(3u, this->errors());
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::removed));
    EXPECT_EQ(TypeParam::failuresOf13044, mcast6_platform_counter(TypeParam::removeFailed));
    EXPECT_EQ(60u, TypeParam::read(&route));
    EXPECT_THAT(this->logLines(), IsEmpty());
}

TYPED_TEST(BdRouteSystemTest, aRemovedRouteIsGoneAndItsNeighbourIsNot) {
    const auto route = this->filled(5);
    const auto neighbour = this->filled(6);
    ASSERT_EQ(0u, TypeParam::write(&route));
    ASSERT_EQ(0u, TypeParam::write(&neighbour));
    EXPECT_EQ(0u, TypeParam::remove(&route));
    EXPECT_EQ(1u, mcast6_platform_counter(TypeParam::removed));
    EXPECT_EQ(0u, mcast6_platform_counter(TypeParam::removeFailed));
    auto read = this->keyOf(5);
    EXPECT_EQ(60u, TypeParam::read(&read));
    EXPECT_EQ(6u, this->stored(6).rtKeyValue);
    EXPECT_EQ(0u, this->errors());
}

// The value is stored whole.
TYPED_TEST(BdRouteSystemTest, routesWhoseKeyValuesAgreeInTheirLowHalvesAreOneRecord) {
    const auto route = this->filled(0x00010005);
    const auto other = this->filled(0x00020005);
    ASSERT_EQ(0u, TypeParam::write(&route));
    EXPECT_EQ(0u, TypeParam::write(&other));
    EXPECT_EQ(1u, g_mcast6DbErrStat[TypeParam::number][1]);
    EXPECT_EQ(0x00020005u, this->stored(5).rtKeyValue);
}

TYPED_TEST(BdRouteSystemTest, anIteratorGivesEveryRouteOnceAnd60Afterwards) {
    std::vector<uint32_t> written;
    for (uint32_t n = 0; n < 100; ++n) {
        const auto route = this->filled(n);
        ASSERT_EQ(0u, TypeParam::write(&route));
        written.push_back(n);
    }
    Mcast6DbRes* const iterator = TypeParam::all();
    ASSERT_NE(nullptr, iterator);
    std::vector<uint32_t> walked;
    auto route = this->keyOf(0);
    while (walked.size() < 1'000 && TypeParam::getEntry(iterator, &route) == 0) walked.push_back(route.rtKeyValue);
    EXPECT_THAT(walked, UnorderedElementsAreArray(written));
    EXPECT_EQ(60u, TypeParam::getEntry(iterator, &route));
    EXPECT_EQ(60u, TypeParam::getEntry(iterator, &route));
    TypeParam::releaseIterator(iterator);
    TypeParam::releaseIterator(nullptr);
    EXPECT_THAT(this->logLines(), IsEmpty());
    EXPECT_EQ(0u, this->errors());
}

}  // namespace

}  // namespace mcast6::tests
