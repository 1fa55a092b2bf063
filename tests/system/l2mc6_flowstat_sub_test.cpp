// l2mc6_flowstat_sub on the shipped platform.
#include "mcast6_db/l2mc6_flowstat_sub.h"

#include <gmock/gmock.h>

#include <set>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FlowstatSubSystemTest : public SystemTest {};

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
    record.srcPid = 100;
    record.cfgWord2 = 0x22;
    record.cfgWord3 = 0x23;
    record.smoothVersion = 7;
    return record;
}

TEST_F(FlowstatSubSystemTest, readsBackWhatWasWritten) {
    const FlowStatSubEntry record = filled(5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2FlowStatSub(&record));
    FlowStatSubEntry read = entryOf(5);
    read.getFlag = 9;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2FlowStatSub(&read));
    EXPECT_EQ(2u, read.addrType);
    EXPECT_EQ(1u, read.keyId1);
    EXPECT_EQ(100u, read.srcPid);
    EXPECT_EQ(0u, read.getFlag);
    EXPECT_EQ(2u, read.keyId2);
    EXPECT_THAT(read.flowAddr1.word, ElementsAre(0x20010DB8, 0, 0, 5));
    EXPECT_THAT(read.flowAddr2.word, ElementsAre(0xFF1E0000, 0, 0, 5));
    EXPECT_EQ(0x22u, read.cfgWord2);
    EXPECT_EQ(0x23u, read.cfgWord3);
    EXPECT_EQ(7u, read.smoothVersion);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(FlowstatSubSystemTest, aCreationTimeThatIsGivenIsStored) {
    FlowStatSubEntry record = filled(5);
    record.timeStampCreate = 17;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2FlowStatSub(&record));
    FlowStatSubEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2FlowStatSub(&read));
    EXPECT_EQ(17u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
}

TEST_F(FlowstatSubSystemTest, anAbsentRecordIsNoError) {
    FlowStatSubEntry read = entryOf(5);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2FlowStatSub(&read));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(FlowstatSubSystemTest, aSecondWriteIsRefusedWith13044AndChangesNothing) {
    FlowStatSubEntry record = filled(5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2FlowStatSub(&record));
    record.cfgWord2 = 0x99;
    EXPECT_EQ(13044u, MCAST6_DB_WriteL2FlowStatSub(&record));
    EXPECT_THAT(logLines(), ElementsAre("[MCAST6 DB] write object fail, ret:13044."));
    EXPECT_EQ(0u, errors());
    FlowStatSubEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2FlowStatSub(&read));
    EXPECT_EQ(0x22u, read.cfgWord2);
}

TEST_F(FlowstatSubSystemTest, anUpdateChangesTheVersionAndTheSmoothTimeOnly) {
    const FlowStatSubEntry record = filled(5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2FlowStatSub(&record));
    setTime(1'010);
    FlowStatSubEntry change = entryOf(5);
    change.smoothVersion = 8;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2FlowStatSub(&change));
    FlowStatSubEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2FlowStatSub(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(100u, read.srcPid);
    EXPECT_EQ(0x22u, read.cfgWord2);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
}

TEST_F(FlowstatSubSystemTest, changesOfAnAbsentRecordAreTakenForDoneInSilence) {
    const FlowStatSubEntry record = filled(5);
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2FlowStatSub(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveL2FlowStatSub(&record));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
    FlowStatSubEntry read = entryOf(5);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2FlowStatSub(&read));
}

TEST_F(FlowstatSubSystemTest, recordsAreWalkedOnceAndRemoved) {
    std::set<uint32_t> written;
    for (uint32_t number = 0; number < 60; ++number) {
        const FlowStatSubEntry record = filled(number);
        ASSERT_EQ(0u, MCAST6_DB_WriteL2FlowStatSub(&record));
        written.insert(number);
    }
    const FlowStatSubEntry removed = entryOf(4);
    EXPECT_EQ(0u, MCAST6_DB_RemoveL2FlowStatSub(&removed));
    written.erase(4);
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2FlowStatSubAllIter();
    ASSERT_NE(nullptr, iterator);
    std::set<uint32_t> walked;
    FlowStatSubEntry record{};
    while (walked.size() <= written.size() && MCAST6_DB_GetL2FlowStatSubEntry(iterator, &record) == 0) {
        EXPECT_TRUE(walked.insert(record.flowAddr1.word[3]).second);
        EXPECT_EQ(2u, record.addrType);
        EXPECT_EQ(0u, record.getFlag);
    }
    EXPECT_EQ(written, walked);
    EXPECT_EQ(60u, MCAST6_DB_GetL2FlowStatSubEntry(iterator, &record));
    MCAST6_DB_ReleaseL2FlowStatSubIter(iterator);
    EXPECT_EQ(mcast6_platform_counter(14), mcast6_platform_counter(15));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

// The table has no index: the primary key word names its one record.
TEST_F(FlowstatSubSystemTest, anIteratorByThePrimaryKeyGivesTheOneRecord) {
    for (const uint32_t number : {5u, 6u}) {
        const FlowStatSubEntry record = filled(number);
        ASSERT_EQ(0u, MCAST6_DB_WriteL2FlowStatSub(&record));
    }
    const FlowStatSubEntry wanted = entryOf(6);
    Mcast6DbKeyDesc descriptor{};
    uint8_t key[40];
    ASSERT_EQ(0u, MCAST6_DB_SetL2FlowStatSubKey(&descriptor, key, &wanted));
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2FlowStatSubIter(&descriptor, key);
    ASSERT_NE(nullptr, iterator);
    FlowStatSubEntry found{};
    ASSERT_EQ(0u, MCAST6_DB_GetL2FlowStatSubEntry(iterator, &found));
    EXPECT_EQ(6u, found.flowAddr1.word[3]);
    EXPECT_EQ(60u, MCAST6_DB_GetL2FlowStatSubEntry(iterator, &found));
    MCAST6_DB_ReleaseL2FlowStatSubIter(iterator);
}

TEST_F(FlowstatSubSystemTest, anIteratorByAKeyThatTheTableDoesNotHaveIsRefusedAndRecorded) {
    const Mcast6DbKeyDesc descriptor{0x01090028, {}};
    const uint8_t key[40] = {};
    EXPECT_EQ(nullptr, MCAST6_DB_CreateL2FlowStatSubIter(&descriptor, key));
    EXPECT_EQ(1u, g_mcast6DbErrStat[10][7]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(1u, logLines().size());
    EXPECT_EQ(mcast6_platform_counter(14), mcast6_platform_counter(15));
}

}  // namespace

}  // namespace mcast6::tests
