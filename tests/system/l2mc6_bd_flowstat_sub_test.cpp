// l2mc6_bd_flowstat_sub on the shipped platform.
#include "mcast6_db/l2mc6_bd_flowstat_sub.h"

#include <gmock/gmock.h>

#include <set>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BdFlowstatSubSystemTest : public SystemTest {};

FlowStatSubEntry entryOf(uint32_t number) {
    FlowStatSubEntry record{};
    record.keyId1 = 1;
    record.keyId2 = 2;
    record.flowAddr1 = {{0x20010DB8, 0, 0, number}};
    record.flowAddr2 = {{0xFF1E0000, 0, 0, number}};
    return record;
}

FlowStatSubEntry filled(uint32_t number) {
    FlowStatSubEntry record = entryOf(number);
    record.addrType = 9;
    record.getFlag = 9;
    record.srcPid = 100 + number % 3;
    record.cfgWord2 = 0x22;
    record.cfgWord3 = number % 2;
    record.smoothVersion = 7;
    return record;
}

// The numbers of all records that an iterator returns. Releases the iterator.
std::multiset<uint32_t> walk(Mcast6DbRes* iterator) {
    std::multiset<uint32_t> numbers;
    FlowStatSubEntry record{};
    while (numbers.size() < 1'000 && MCAST6_DB_GetL2McBdFlowstatSubEntry(iterator, &record) == 0) {
        EXPECT_EQ(2u, record.addrType);
        EXPECT_EQ(1u, record.getFlag);
        numbers.insert(record.flowAddr1.word[3]);
    }
    EXPECT_EQ(60u, MCAST6_DB_GetL2McBdFlowstatSubEntry(iterator, &record));
    MCAST6_DB_ReleaseL2McBdFlowstatSubIterator(iterator);
    return numbers;
}

TEST_F(BdFlowstatSubSystemTest, readsBackWhatWasWrittenWithTheTimeOfTheWrite) {
    FlowStatSubEntry record = filled(5);
    record.timeStampCreate = 17;
    record.timeStampSmooth = 18;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdFlowstatSub(&record));
    FlowStatSubEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdFlowstatSub(&read));
    EXPECT_EQ(2u, read.addrType);
    EXPECT_EQ(1u, read.keyId1);
    EXPECT_EQ(102u, read.srcPid);
    EXPECT_EQ(1u, read.getFlag);
    EXPECT_EQ(2u, read.keyId2);
    EXPECT_THAT(read.flowAddr1.word, ElementsAre(0x20010DB8, 0, 0, 5));
    EXPECT_THAT(read.flowAddr2.word, ElementsAre(0xFF1E0000, 0, 0, 5));
    EXPECT_EQ(0x22u, read.cfgWord2);
    EXPECT_EQ(1u, read.cfgWord3);
    EXPECT_EQ(7u, read.smoothVersion);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(BdFlowstatSubSystemTest, readingAnAbsentKeyAnswers15005AndRecordsNothing) {
    FlowStatSubEntry read = entryOf(5);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL2McBdFlowstatSub(&read));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(BdFlowstatSubSystemTest, aSecondWriteReplacesTheRecordAndRecordsIt) {
    FlowStatSubEntry record = filled(5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdFlowstatSub(&record));
    setTime(1'010);
    record.cfgWord2 = 0x99;
    EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdFlowstatSub(&record));
    EXPECT_EQ(2u, mcast6_platform_counter(394));
    EXPECT_EQ(0u, mcast6_platform_counter(395));
    EXPECT_EQ(1u, g_mcast6DbErrStat[23][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
    FlowStatSubEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdFlowstatSub(&read));
    EXPECT_EQ(0x99u, read.cfgWord2);
    EXPECT_EQ(1'010u, read.timeStampCreate);
}

TEST_F(BdFlowstatSubSystemTest, aSmoothUpdateChangesTheVersionAndTheSmoothTimeOnly) {
    const FlowStatSubEntry record = filled(5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdFlowstatSub(&record));
    setTime(1'010);
    FlowStatSubEntry change = entryOf(5);
    change.smoothVersion = 8;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2McBdFlowstatSubSmoothVersion(&change));
    FlowStatSubEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2McBdFlowstatSub(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(102u, read.srcPid);
    EXPECT_EQ(0x22u, read.cfgWord2);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
    EXPECT_EQ(0u, errors());
}

TEST_F(BdFlowstatSubSystemTest, changesOfAnAbsentRecordAreTakenForDoneAndRecorded) {
    const FlowStatSubEntry record = filled(5);
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2McBdFlowstatSubSmoothVersion(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteL2McBdFlowstatSub(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[23][1]);
    EXPECT_EQ(1u, mcast6_platform_counter(396));
    EXPECT_THAT(logLines(), IsEmpty());
    FlowStatSubEntry read = entryOf(5);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL2McBdFlowstatSub(&read));
}

TEST_F(BdFlowstatSubSystemTest, recordsAreWalkedBySourceProcessAndAllTogether) {
    std::multiset<uint32_t> all;
    std::multiset<uint32_t> ofProcess;
    for (uint32_t number = 0; number < 60; ++number) {
        const FlowStatSubEntry record = filled(number);
        ASSERT_EQ(0u, MCAST6_DB_WriteL2McBdFlowstatSub(&record));
        if (number == 4) continue;
        all.insert(number);
        if (number % 3 == 1 && number % 2 == 0) ofProcess.insert(number);
    }
    const FlowStatSubEntry removed = entryOf(4);
    ASSERT_EQ(0u, MCAST6_DB_DeleteL2McBdFlowstatSub(&removed));

    Mcast6DbRes* iterator = MCAST6_DB_CreateL2McBdFlowstatSubIter();
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ(all, walk(iterator));

    FlowStatSubEntry probe{};
    probe.keyId1 = 1;
    probe.srcPid = 101;
    probe.cfgWord3 = 0;
    iterator = MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(&probe);
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ(9u, ofProcess.size());
    EXPECT_EQ(ofProcess, walk(iterator));

    probe.keyId1 = 3;
    iterator = MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(&probe);
    ASSERT_NE(nullptr, iterator);
    EXPECT_THAT(walk(iterator), IsEmpty());
    EXPECT_EQ(mcast6_platform_counter(390), mcast6_platform_counter(392));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
