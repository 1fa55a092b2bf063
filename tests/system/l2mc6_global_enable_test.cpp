// l2mc6_global_enable on the shipped platform.
#include "mcast6_db/l2mc6_global_enable.h"

#include <gmock/gmock.h>

#include <set>
#include <tuple>

#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GlobalEnableSystemTest : public SystemTest {};

MldGlobalEntry entryOf(uint32_t keyId1, uint32_t keyId2) {
    MldGlobalEntry record{};
    record.keyId1 = keyId1;
    record.keyId2 = keyId2;
    return record;
}

MldGlobalEntry filled(uint32_t keyId1, uint32_t keyId2) {
    MldGlobalEntry record = entryOf(keyId1, keyId2);
    record.cfgWord1 = 0x11;
    record.smoothVersion = 7;
    record.serviceStatus[1] = 0x44;
    record.errCode[0] = 0x55;
    return record;
}

TEST_F(GlobalEnableSystemTest, readsBackWhatWasWritten) {
    MldGlobalEntry record = filled(1, 2);
    MldGlobalEntry read = entryOf(1, 2);
    EXPECT_EQ(60u, MCAST6_DB_ReadMldGlobal(&read));
    ASSERT_EQ(0u, MCAST6_DB_WriteMldGlobal(&record));
    ASSERT_EQ(0u, MCAST6_DB_ReadMldGlobal(&read));
    EXPECT_EQ(1u, read.keyId1);
    EXPECT_EQ(2u, read.keyId2);
    EXPECT_EQ(0x11u, read.cfgWord1);
    EXPECT_EQ(7u, read.smoothVersion);
    EXPECT_THAT(read.serviceStatus, ElementsAre(0, 0x44));
    EXPECT_THAT(read.errCode, ElementsAre(0x55, 0));
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    EXPECT_EQ(1u, mcast6_platform_kpi(49));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(GlobalEnableSystemTest, aCreationTimeThatIsGivenIsStored) {
    MldGlobalEntry record = filled(1, 2);
    record.timeStampCreate = 17;
    record.timeStampSmooth = 18;
    ASSERT_EQ(0u, MCAST6_DB_WriteMldGlobal(&record));
    MldGlobalEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadMldGlobal(&read));
    EXPECT_EQ(17u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
}

TEST_F(GlobalEnableSystemTest, aSecondWriteIsRefusedAndChangesNothing) {
    MldGlobalEntry record = filled(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteMldGlobal(&record));
    record.cfgWord1 = 0x99;
    EXPECT_EQ(1u, MCAST6_DB_WriteMldGlobal(&record));
    EXPECT_EQ(1u, mcast6_platform_kpi(50));
    EXPECT_THAT(logLines(), ElementsAre("[MCAST6 DB] write object fail, ret:13044."));
    EXPECT_EQ(0u, errors());
    MldGlobalEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadMldGlobal(&read));
    EXPECT_EQ(0x11u, read.cfgWord1);
}

TEST_F(GlobalEnableSystemTest, anUpdateKeepsTheCreationTimeAndWhatItDoesNotSet) {
    const MldGlobalEntry record = filled(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteMldGlobal(&record));
    setTime(1'010);
    MldGlobalEntry change = entryOf(1, 2);
    change.cfgWord1 = 0x99;
    change.smoothVersion = 8;
    change.serviceStatus[0] = 0x0A;
    change.errCode[1] = 0x0B;
    EXPECT_EQ(0u, MCAST6_DB_UpdateMldGlobal(&change));
    MldGlobalEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadMldGlobal(&read));
    EXPECT_EQ(0x11u, read.cfgWord1);
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_THAT(read.serviceStatus, ElementsAre(0x0A, 0));
    EXPECT_THAT(read.errCode, ElementsAre(0, 0x0B));
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
}

TEST_F(GlobalEnableSystemTest, aSmoothUpdateChangesTheVersionAndTheSmoothTimeOnly) {
    const MldGlobalEntry record = filled(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_WriteMldGlobal(&record));
    setTime(1'010);
    MldGlobalEntry change = entryOf(1, 2);
    change.smoothVersion = 8;
    EXPECT_EQ(0u, MCAST6_DB_UpdateMldGlobalSmoothVersion(&change));
    MldGlobalEntry read = entryOf(1, 2);
    ASSERT_EQ(0u, MCAST6_DB_ReadMldGlobal(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(0x11u, read.cfgWord1);
    EXPECT_THAT(read.serviceStatus, ElementsAre(0, 0x44));
    EXPECT_THAT(read.errCode, ElementsAre(0x55, 0));
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
}

TEST_F(GlobalEnableSystemTest, changesOfAnAbsentRecordAreTakenForDoneAndStoreNothing) {
    const MldGlobalEntry record = filled(1, 2);
    EXPECT_EQ(0u, MCAST6_DB_UpdateMldGlobal(&record));
    EXPECT_EQ(0u, MCAST6_DB_UpdateMldGlobalSmoothVersion(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveMldGlobal(&record));
    EXPECT_EQ(2u, mcast6_platform_kpi(49));
    EXPECT_EQ(1u, mcast6_platform_kpi(51));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
    MldGlobalEntry read = entryOf(1, 2);
    EXPECT_EQ(60u, MCAST6_DB_ReadMldGlobal(&read));
}

TEST_F(GlobalEnableSystemTest, recordsAreWalkedCountedAndRemoved) {
    uint32_t count = 99;
    EXPECT_EQ(0u, MCAST6_DB_GetMldGlbCfgCount(&count));
    EXPECT_EQ(0u, count);
    std::set<std::tuple<uint32_t, uint32_t>> written;
    for (uint32_t i = 0; i < 100; ++i) {
        const MldGlobalEntry record = filled(i % 7, i);
        ASSERT_EQ(0u, MCAST6_DB_WriteMldGlobal(&record));
        written.emplace(i % 7, i);
    }
    EXPECT_EQ(0u, MCAST6_DB_GetMldGlbCfgCount(&count));
    EXPECT_EQ(100u, count);
    const MldGlobalEntry removed = entryOf(0, 0);
    EXPECT_EQ(0u, MCAST6_DB_RemoveMldGlobal(&removed));
    written.erase({0, 0});
    EXPECT_EQ(0u, MCAST6_DB_GetMldGlbCfgCount(&count));
    EXPECT_EQ(99u, count);

    Mcast6DbRes* iterator = MCAST6_DB_CreateMldGlbCfgIter();
    ASSERT_NE(nullptr, iterator);
    std::set<std::tuple<uint32_t, uint32_t>> walked;
    MldGlobalEntry record{};
    while (walked.size() <= written.size() && MCAST6_DB_GetMldGlbEntry(iterator, &record) == 0) {
        EXPECT_TRUE(walked.emplace(record.keyId1, record.keyId2).second);
    }
    EXPECT_EQ(written, walked);
    EXPECT_EQ(60u, MCAST6_DB_GetMldGlbEntry(iterator, &record));
    MCAST6_DB_ReleaseMldGlbCfgIter(iterator);
    EXPECT_EQ(mcast6_platform_counter(37), mcast6_platform_counter(38));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
