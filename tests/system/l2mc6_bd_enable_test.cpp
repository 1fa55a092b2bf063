// l2mc6_bd_enable on the shipped platform.
#include "mcast6_db/l2mc6_bd_enable.h"

#include <gmock/gmock.h>

#include <cstring>
#include <set>
#include <tuple>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BdEnableSystemTest : public SystemTest {};

L2McBdEnableEntry entryOf(uint32_t keyId1, uint32_t keyId2) {
    L2McBdEnableEntry record{};
    record.keyId1 = keyId1;
    record.keyId2 = keyId2;
    record.addrType = 2;
    return record;
}

L2McBdEnableEntry filled(uint32_t keyId1, uint32_t keyId2) {
    L2McBdEnableEntry record = entryOf(keyId1, keyId2);
    record.attrA = 0x11;
    record.mldVersion = 2;
    record.attrB = 0x22;
    record.smoothVersion = 7;
    record.pathFlags = 0x33;
    record.serviceStatus[1] = 0x44;
    record.errCode[0] = 0x55;
    record.l2mcEnable = 1;
    std::memset(record.attrC, 0x66, sizeof record.attrC);
    return record;
}

TEST_F(BdEnableSystemTest, readsBackWhatWasWritten) {
    L2McBdEnableEntry record = filled(1, 2);
    record.addrType = 9;
    record.getFlag = 9;
    record.timeStampCreate = 1;
    record.timeStampSmooth = 2;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    L2McBdEnableEntry read = entryOf(1, 2);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2McBdEnable(&read));
    read.addrType = 9;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdEnable(&read));
    EXPECT_EQ(1u, read.keyId1);
    EXPECT_EQ(2u, read.keyId2);
    EXPECT_EQ(2u, read.addrType);
    EXPECT_EQ(1u, read.getFlag);
    EXPECT_EQ(0x11u, read.attrA);
    EXPECT_EQ(2u, read.mldVersion);
    EXPECT_EQ(0x22u, read.attrB);
    EXPECT_EQ(7u, read.smoothVersion);
    EXPECT_EQ(0x33u, read.pathFlags);
    EXPECT_THAT(read.serviceStatus, ElementsAre(0, 0x44));
    EXPECT_THAT(read.errCode, ElementsAre(0x55, 0));
    EXPECT_EQ(1u, read.l2mcEnable);
    EXPECT_EQ(0, std::memcmp(record.attrC, read.attrC, sizeof read.attrC));
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(BdEnableSystemTest, anAbsentRecordIsNoError) {
    L2McBdEnableEntry record = entryOf(1, 2);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2McBdEnable(&record));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(BdEnableSystemTest, aSecondWriteReplacesTheRecordAndRecordsIt) {
    L2McBdEnableEntry record = filled(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    setTime(1'010);
    record.l2mcEnable = 0;
    EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    EXPECT_EQ(2u, mcast6_platform_counter(455));
    EXPECT_EQ(0u, mcast6_platform_counter(456));
    EXPECT_EQ(1u, g_mcast6DbErrStat[26][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
    L2McBdEnableEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdEnable(&read));
    EXPECT_EQ(0u, read.l2mcEnable);
    EXPECT_EQ(1'010u, read.timeStampCreate);
}

TEST_F(BdEnableSystemTest, anUpdateKeepsTheCreationTimeAndWhatItDoesNotSet) {
    const L2McBdEnableEntry record = filled(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    setTime(1'010);
    L2McBdEnableEntry change = entryOf(1, 2);
    change.attrA = 0x99;
    change.attrB = 0x99;
    change.mldVersion = 1;
    change.l2mcEnable = 5;
    change.serviceStatus[0] = 0x0A;
    change.errCode[1] = 0x0B;
    change.smoothVersion = 8;
    change.pathFlags = 0x0C;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2BdEnableCfg(&change));
    L2McBdEnableEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdEnable(&read));
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
    EXPECT_EQ(1u, read.mldVersion);
    EXPECT_EQ(5u, read.l2mcEnable);
    EXPECT_THAT(read.serviceStatus, ElementsAre(0x0A, 0));
    EXPECT_THAT(read.errCode, ElementsAre(0, 0x0B));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(0x0Cu, read.pathFlags);
    EXPECT_EQ(0x11u, read.attrA);
    EXPECT_EQ(0x22u, read.attrB);
    EXPECT_EQ(0x66, read.attrC[11]);
}

TEST_F(BdEnableSystemTest, aSmoothUpdateChangesTheVersionAndTheSmoothTimeOnly) {
    const L2McBdEnableEntry record = filled(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    setTime(1'010);
    L2McBdEnableEntry change = entryOf(1, 2);
    change.smoothVersion = 8;
    change.l2mcEnable = 5;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2McBdEnableSmoothVersion(&change));
    L2McBdEnableEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdEnable(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(1u, read.l2mcEnable);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
    EXPECT_EQ(0u, errors());
}

// A plain update returns 13044; a smooth update and a removal treat it as success.
TEST_F(BdEnableSystemTest, changesOfAnAbsentRecordStoreNothing) {
    const L2McBdEnableEntry record = filled(1, 2);
    EXPECT_EQ(13044u, MCAST6_DB_UpdateL2BdEnableCfg(&record));
    EXPECT_THAT(logLines(), ElementsAre("[MCAST6 DB]update l2 bd enable, update object failed, ret:13044."));
    EXPECT_EQ(0u, errors());
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2McBdEnableSmoothVersion(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[26][1]);
    EXPECT_EQ(0u, MCAST6_DB_DeleteL2McBdEnable(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[26][1]);
    EXPECT_EQ(1u, mcast6_platform_counter(457));
    EXPECT_EQ(1u, logLines().size());
    L2McBdEnableEntry read = entryOf(1, 2);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2McBdEnable(&read));
}

TEST_F(BdEnableSystemTest, aRemovedRecordIsGoneAndItsNeighbourIsNot) {
    const L2McBdEnableEntry record = filled(1, 2);
    const L2McBdEnableEntry neighbour = filled(1, 3);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&neighbour));
    EXPECT_EQ(0u, MCAST6_DB_DeleteL2McBdEnable(&record));
    EXPECT_EQ(1u, mcast6_platform_counter(457));
    L2McBdEnableEntry read = entryOf(1, 2);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2McBdEnable(&read));
    read = entryOf(1, 3);
    EXPECT_EQ(0u, MCAST6_DB_ReadL2McBdEnable(&read));
    EXPECT_EQ(0u, errors());
}

TEST_F(BdEnableSystemTest, anIteratorGivesEveryRecordOnceAnd60Afterwards) {
    std::set<std::tuple<uint32_t, uint32_t>> written;
    for (uint32_t i = 0; i < 100; ++i) {
        const L2McBdEnableEntry record = filled(i % 7, i);
        ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
        written.emplace(i % 7, i);
    }
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2McBdEnableIter();
    ASSERT_NE(nullptr, iterator);
    std::set<std::tuple<uint32_t, uint32_t>> walked;
    L2McBdEnableEntry record{};
    while (walked.size() <= written.size() && MCAST6_DB_GetL2McBdEnableEntry(iterator, &record) == 0) {
        EXPECT_TRUE(walked.emplace(record.keyId1, record.keyId2).second);
        EXPECT_EQ(2u, record.addrType);
        EXPECT_EQ(1u, record.getFlag);
    }
    EXPECT_EQ(written, walked);
    EXPECT_EQ(60u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    EXPECT_EQ(60u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    MCAST6_DB_ReleaseL2McBdEnableIterator(iterator);
    EXPECT_EQ(101u, mcast6_platform_counter(452));
    EXPECT_EQ(101u, mcast6_platform_counter(454));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(BdEnableSystemTest, anIteratorOverAnEmptyTableIsAtItsEnd) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2McBdEnableIter();
    ASSERT_NE(nullptr, iterator);
    L2McBdEnableEntry record{};
    EXPECT_EQ(60u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    MCAST6_DB_ReleaseL2McBdEnableIterator(iterator);
}

// Every operation releases its object. An iterator that is open at closing is stale afterwards, and says so.
TEST_F(BdEnableSystemTest, aStaleIteratorAnswers1AndRecordsTheFailedStep) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2McBdEnableIter();
    ASSERT_NE(nullptr, iterator);
    mcast6_platform_close();
    L2McBdEnableEntry record{};
    EXPECT_EQ(1u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[26][9]);
    EXPECT_EQ(1u, logLines().size());
    MCAST6_DB_ReleaseL2McBdEnableIterator(iterator);
}

}  // namespace

}  // namespace mcast6::tests
