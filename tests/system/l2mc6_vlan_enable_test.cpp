// l2mc6_vlan_enable on the shipped platform.
#include "mcast6_db/l2mc6_vlan_enable.h"

#include <gmock/gmock.h>

#include <cstring>
#include <set>

#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VlanEnableSystemTest : public SystemTest {};

L2VlanEnableEntry entryOf(uint32_t vlanId) {
    L2VlanEnableEntry record{};
    record.keyId1 = 1;
    record.keyId2 = 2;
    record.vlanId = vlanId;
    return record;
}

L2VlanEnableEntry filled(uint32_t vlanId) {
    L2VlanEnableEntry record = entryOf(vlanId);
    record.spare1 = 0x77;
    record.vlanAttr = 3;
    record.cfgWord1 = 0x11;
    record.cfgWord2 = 0x12;
    record.cfgWord3 = 0x13;
    record.cfgWord4 = 0x14;
    record.cfgWord5 = 0x15;
    record.serviceStatus[1] = 0x44;
    record.errCode[0] = 0x55;
    record.l2mcEnable = 1;
    std::memset(record.attrC, 0x66, sizeof record.attrC);
    return record;
}

TEST_F(VlanEnableSystemTest, readsBackWhatWasWrittenAndLeavesSpare1) {
    const L2VlanEnableEntry record = filled(10);
    L2VlanEnableEntry read = entryOf(10);
    read.spare1 = 0x88;
    EXPECT_EQ(60u, MCAST6_DB_ReadL2VlanEnableCfg(&read));
    ASSERT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
    ASSERT_EQ(0u, MCAST6_DB_ReadL2VlanEnableCfg(&read));
    EXPECT_EQ(1u, read.keyId1);
    EXPECT_EQ(2u, read.keyId2);
    EXPECT_EQ(0x88u, read.spare1);
    EXPECT_EQ(10u, read.vlanId);
    EXPECT_EQ(3u, read.vlanAttr);
    EXPECT_EQ(0x11u, read.cfgWord1);
    EXPECT_EQ(0x12u, read.cfgWord2);
    EXPECT_EQ(0x13u, read.cfgWord3);
    EXPECT_EQ(0x14u, read.cfgWord4);
    EXPECT_EQ(0x15u, read.cfgWord5);
    EXPECT_THAT(read.serviceStatus, ElementsAre(0, 0x44));
    EXPECT_THAT(read.errCode, ElementsAre(0x55, 0));
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    EXPECT_EQ(1u, read.l2mcEnable);
    EXPECT_EQ(0, std::memcmp(record.attrC, read.attrC, sizeof read.attrC));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(VlanEnableSystemTest, aVlanIsStoredAndFoundByItsLow16Bits) {
    const L2VlanEnableEntry record = filled(0x30005);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
    L2VlanEnableEntry read = entryOf(5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2VlanEnableCfg(&read));
    EXPECT_EQ(5u, read.vlanId);
    read = entryOf(0x80005);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2VlanEnableCfg(&read));
    EXPECT_EQ(5u, read.vlanId);
    const L2VlanEnableEntry removed = entryOf(0x10005);
    EXPECT_EQ(0u, MCAST6_DB_DelL2VlanEnableCfg(&removed));
    EXPECT_EQ(60u, MCAST6_DB_ReadL2VlanEnableCfg(&read));
}

TEST_F(VlanEnableSystemTest, aSecondWriteReplacesTheRecordInSilence) {
    L2VlanEnableEntry record = filled(10);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
    setTime(1'010);
    record.l2mcEnable = 0;
    EXPECT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
    EXPECT_EQ(2u, mcast6_platform_kpi(65));
    EXPECT_EQ(0u, mcast6_platform_kpi(66));
    L2VlanEnableEntry read = entryOf(10);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2VlanEnableCfg(&read));
    EXPECT_EQ(0u, read.l2mcEnable);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(VlanEnableSystemTest, deletingAnAbsentRecordIsAFailure) {
    const L2VlanEnableEntry record = filled(10);
    EXPECT_EQ(1u, MCAST6_DB_DelL2VlanEnableCfg(&record));
    EXPECT_EQ(0u, mcast6_platform_kpi(67));
    EXPECT_EQ(1u, mcast6_platform_kpi(68));
    EXPECT_THAT(logLines(), ElementsAre("[MCAST6 DB] delete l2 vlan enable fail,  Remove object failed. ret:13044"));
    EXPECT_EQ(0u, errors());
    ASSERT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
    EXPECT_EQ(0u, MCAST6_DB_DelL2VlanEnableCfg(&record));
    EXPECT_EQ(1u, mcast6_platform_kpi(67));
}

TEST_F(VlanEnableSystemTest, anIteratorGivesEveryRecordOnceWithSpare1As0) {
    std::set<uint32_t> written;
    for (uint32_t vlanId = 1; vlanId <= 100; ++vlanId) {
        const L2VlanEnableEntry record = filled(vlanId);
        ASSERT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
        written.insert(vlanId);
    }
    Mcast6DbRes* iterator = MCAST6_DB_CreateMldVlanCfgIter();
    ASSERT_NE(nullptr, iterator);
    std::set<uint32_t> walked;
    L2VlanEnableEntry record{};
    record.spare1 = 0x88;
    while (walked.size() <= written.size() && MCAST6_DB_GetMldVlanEntry(iterator, &record) == 0) {
        EXPECT_TRUE(walked.insert(record.vlanId).second);
        EXPECT_EQ(0u, record.spare1);
        record.spare1 = 0x88;
    }
    EXPECT_EQ(written, walked);
    EXPECT_EQ(60u, MCAST6_DB_GetMldVlanEntry(iterator, &record));
    MCAST6_DB_ReleaseMldVlanIter(iterator);
    EXPECT_EQ(mcast6_platform_counter(43), mcast6_platform_counter(44));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
