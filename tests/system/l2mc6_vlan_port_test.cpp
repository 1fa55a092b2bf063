// l2mc6_vlan_port on the shipped platform.
#include "mcast6_db/l2mc6_vlan_port.h"

#include <gmock/gmock.h>

#include <cstring>
#include <set>
#include <tuple>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class VlanPortSystemTest : public SystemTest {};

VlanPortEntry entryOf(uint32_t vlanId, uint32_t keyId4) {
    VlanPortEntry record{};
    record.keyId1 = 1;
    record.vlanId = vlanId;
    record.keyId3 = 3;
    record.keyId4 = keyId4;
    return record;
}

VlanPortEntry filled(uint32_t vlanId, uint32_t keyId4) {
    VlanPortEntry record = entryOf(vlanId, keyId4);
    record.portAttr = 0x11;
    record.spare1 = 0x77;
    record.spare2 = 0x77;
    std::memset(record.spare3, 0x77, sizeof record.spare3);
    record.cfgWord1 = 0x12;
    record.smoothVersion = 7;
    record.serviceStatus = 0x44;
    record.errCode = 0x55;
    return record;
}

TEST_F(VlanPortSystemTest, readsBackWhatWasWrittenWithTheSparesAs0) {
    const VlanPortEntry record = filled(0x3000A, 4);
    VlanPortEntry read = entryOf(10, 4);
    EXPECT_EQ(60u, MCAST6_DB_ReadVlanPort(&read));
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanPort(&record));
    read.vlanId = 0x8000A;
    read.spare1 = 0x88;
    read.spare2 = 0x88;
    std::memset(read.spare3, 0x88, sizeof read.spare3);
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanPort(&read));
    EXPECT_EQ(1u, read.keyId1);
    EXPECT_EQ(0x11u, read.portAttr);
    EXPECT_EQ(0u, read.spare1);
    EXPECT_EQ(10u, read.vlanId);
    EXPECT_EQ(0u, read.spare2);
    EXPECT_EQ(3u, read.keyId3);
    EXPECT_EQ(4u, read.keyId4);
    EXPECT_THAT(read.spare3, Each(0x88));
    EXPECT_EQ(0x12u, read.cfgWord1);
    EXPECT_EQ(7u, read.smoothVersion);
    EXPECT_EQ(0x44u, read.serviceStatus);
    EXPECT_EQ(0x55u, read.errCode);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(VlanPortSystemTest, aSecondWriteIsRefusedAndChangesNothing) {
    VlanPortEntry record = filled(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanPort(&record));
    record.portAttr = 0x99;
    EXPECT_EQ(1u, MCAST6_DB_WriteVlanPort(&record));
    EXPECT_THAT(logLines(), ElementsAre("[MCAST6 DB] write object fail, ret:13044."));
    EXPECT_EQ(0u, errors());
    VlanPortEntry read = entryOf(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanPort(&read));
    EXPECT_EQ(0x11u, read.portAttr);
}

TEST_F(VlanPortSystemTest, aCreationTimeThatIsGivenIsStored) {
    VlanPortEntry record = filled(10, 4);
    record.timeStampCreate = 17;
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanPort(&record));
    VlanPortEntry read = entryOf(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanPort(&read));
    EXPECT_EQ(17u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
}

TEST_F(VlanPortSystemTest, anUpdateSetsStatusErrorVersionAndSmoothTimeOnly) {
    const VlanPortEntry record = filled(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanPort(&record));
    setTime(1'010);
    VlanPortEntry change = entryOf(10, 4);
    change.portAttr = 0x99;
    change.cfgWord1 = 0x99;
    change.smoothVersion = 8;
    change.serviceStatus = 0x0A;
    change.errCode = 0x0B;
    EXPECT_EQ(0u, MCAST6_DB_UpdateVlanPort(&change));
    VlanPortEntry read = entryOf(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanPort(&read));
    EXPECT_EQ(0x11u, read.portAttr);
    EXPECT_EQ(0x12u, read.cfgWord1);
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(0x0Au, read.serviceStatus);
    EXPECT_EQ(0x0Bu, read.errCode);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
}

TEST_F(VlanPortSystemTest, aSmoothUpdateChangesTheVersionAndNoTimeAtAll) {
    const VlanPortEntry record = filled(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanPort(&record));
    setTime(1'010);
    VlanPortEntry change = entryOf(10, 4);
    change.smoothVersion = 8;
    EXPECT_EQ(0u, MCAST6_DB_UpdateVlanPortSmoothVersion(&change));
    VlanPortEntry read = entryOf(10, 4);
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanPort(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(0x44u, read.serviceStatus);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
}

// All treat it as success; only the smooth update records it.
TEST_F(VlanPortSystemTest, changesOfAnAbsentRecordStoreNothing) {
    const VlanPortEntry record = filled(10, 4);
    EXPECT_EQ(0u, MCAST6_DB_UpdateVlanPort(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanPort(&record));
    EXPECT_EQ(0u, errors());
    EXPECT_EQ(0u, MCAST6_DB_UpdateVlanPortSmoothVersion(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[9][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
    VlanPortEntry read = entryOf(10, 4);
    EXPECT_EQ(60u, MCAST6_DB_ReadVlanPort(&read));
}

TEST_F(VlanPortSystemTest, recordsAreWalkedOnceAndRemoved) {
    std::set<std::tuple<uint32_t, uint32_t>> written;
    for (uint32_t i = 0; i < 100; ++i) {
        const VlanPortEntry record = filled(i % 7, i);
        ASSERT_EQ(0u, MCAST6_DB_WriteVlanPort(&record));
        written.emplace(i % 7, i);
    }
    const VlanPortEntry removed = entryOf(1, 1);
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanPort(&removed));
    written.erase({1, 1});
    Mcast6DbRes* iterator = MCAST6_DB_CreateVlanPortIter();
    ASSERT_NE(nullptr, iterator);
    std::set<std::tuple<uint32_t, uint32_t>> walked;
    VlanPortEntry record{};
    while (walked.size() <= written.size() && MCAST6_DB_GetVlanPortEntry(iterator, &record) == 0) {
        EXPECT_TRUE(walked.emplace(record.vlanId, record.keyId4).second);
    }
    EXPECT_EQ(written, walked);
    EXPECT_EQ(60u, MCAST6_DB_GetVlanPortEntry(iterator, &record));
    MCAST6_DB_ReleaseVlanPortIter(iterator);
    EXPECT_EQ(mcast6_platform_counter(21), mcast6_platform_counter(22));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

// A step of an iterator whose root iterator is released.
TEST_F(VlanPortSystemTest, aFailedStepIsRecordedInRow4) {
    Mcast6DbRes stale{};
    VlanPortEntry record{};
    EXPECT_EQ(1u, MCAST6_DB_GetVlanPortEntry(&stale, &record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[4][9]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(1u, logLines().size());
}

}  // namespace

}  // namespace mcast6::tests
