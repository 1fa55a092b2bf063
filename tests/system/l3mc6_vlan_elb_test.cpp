// l3mc6_vlan_elb on the shipped platform: records, iterators, and the states of the scan handle.
#include "mcast6_db/l3mc6_vlan_elb.h"

#include <gmock/gmock.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/l3_egress.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class VlanElbSystemTest : public SystemTest {
protected:
    // Interfaces 10 and 11 with the VLANs 100 and 200 of the groups 1 and 2.
    static void writeMembers() {
        for (const uint32_t group : {1u, 2u}) {
            for (const uint32_t outIfIndex : {10u, 11u}) {
                for (const uint32_t vlan : {100u, 200u}) {
                    auto record = memberOf<L3Mc6ElbEntryExt>(group, outIfIndex);
                    record.instId = vlan;
                    ASSERT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
                }
            }
        }
    }

    static Mcast6DbRes* iterate(uint32_t group, uint32_t fast) {
        L3Mc6MfibEntry entry{};
        entry.vrId = 1;
        entry.vrfId = 2;
        entry.groupAddr = {{0xFF1E0000, 0, 0, group}};
        return MCAST6_DB_CreateVlanElbMfibIterator(&entry, fast);
    }

    static std::multiset<std::string> walk(Mcast6DbRes* iterator) {
        return walked(iterator, MCAST6_DB_GetVlanElbEntry);
    }

    static std::multiset<std::string> walkAndRelease(Mcast6DbRes* iterator) {
        const auto names = walk(iterator);
        MCAST6_DB_ReleaseVlanElbIterator(iterator);
        return names;
    }
};

TEST_F(VlanElbSystemTest, readsBackWhatWasWritten) {
    auto record = memberOf<L3Mc6ElbEntryExt>(1, 10);
    record.instId = 0x00020064;
    record.elbAttrD = 0xFFFE;
    record.elbAttrF = 6;
    record.elbFlagD = 2;
    record.elbFlagE = 5;
    record.vlanFlagA = 1;
    record.vlanFlagB = 2;
    record.vlanFlagC = 3;
    record.elbExtCtx[15] = 15;
    record.elbExtA = 16;
    record.elbExtB = 17;
    record.timeStampCreate = 700;
    record.zeroWord = 8;  // neither stored nor touched
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    auto read = memberOf<L3Mc6ElbEntryExt>(1, 10);
    read.instId = 100;
    read.zeroWord = 9;
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanElb(&read));
    L3Mc6ElbEntryExt expected = record;
    expected.entryType = 15;
    expected.addrType = 2;
    expected.instId = 100;
    expected.zeroWord = 9;
    expected.timeStampSmooth = 1'000;
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(2u, mcast6_platform_counter(281));
    EXPECT_EQ(2u, mcast6_platform_counter(282));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(VlanElbSystemTest, anElbFlagDOf3ComesBackAs1AndOf2As2) {
    auto record = memberOf<L3Mc6ElbEntryExt>(1, 10);
    record.elbFlagD = 3;
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(1u, record.elbFlagD);
    record.elbFlagD = 2;
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(2u, record.elbFlagD);
}

TEST_F(VlanElbSystemTest, aSecondWriteReplacesTheRecordAndKeepsItsCreationTime) {
    auto record = memberOf<L3Mc6ElbEntryExt>(1, 10);
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(1'000u, record.timeStampCreate);
    setTime(1'010);
    record.elbAttrA = 5;
    EXPECT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[17][1]);
    EXPECT_EQ(1u, errors());
    ASSERT_EQ(0u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(5u, record.elbAttrA);
    EXPECT_EQ(1'000u, record.timeStampCreate);
    EXPECT_EQ(1'010u, record.timeStampSmooth);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(VlanElbSystemTest, aMissingRecordReadsAs60AndIsRemovedWithoutARecord) {
    auto record = memberOf<L3Mc6ElbEntryExt>(1, 10);
    EXPECT_EQ(60u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanElb(&record));
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanElb(&record));
    EXPECT_EQ(60u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(0u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(VlanElbSystemTest, iteratorsFindTheirMembersOnly) {
    writeMembers();
    EXPECT_EQ(8u, walkAndRelease(MCAST6_DB_CreateVlanElbAllIterator()).size());
    EXPECT_THAT(walkAndRelease(MCAST6_DB_CreateVlanElbOutIfIterator(11)), ElementsAre("1:11", "1:11", "2:11", "2:11"));
    EXPECT_THAT(walkAndRelease(iterate(2, 0)), ElementsAre("2:10", "2:10", "2:11", "2:11"));
    EXPECT_EQ(0u, g_l3VlanElb6ScanDbHandle.object);
    auto record = memberOf<L3Mc6ElbEntryExt>(2, 0);
    record.instId = 200;
    Mcast6DbRes resource{};
    ASSERT_EQ(0u, MCAST6_DB_CreateVlanElbScanIterator(&record, &resource));
    EXPECT_THAT(walk(&resource), ElementsAre("2:10", "2:11"));
    MCAST6_DB_ReleaseVlanElbStatObject(resource.object);
    EXPECT_EQ(mcast6_platform_counter(281), mcast6_platform_counter(282));
}

TEST_F(VlanElbSystemTest, aSecondScanWhileOneIsOutIsOrdinaryAndAThirdReusesThePair) {
    writeMembers();
    mcast6_platform_reset_counters();
    Mcast6DbRes* first = iterate(1, 1);
    ASSERT_NE(nullptr, first);
    Mcast6DbRes* second = iterate(2, 1);
    ASSERT_NE(nullptr, second);
    EXPECT_EQ(g_l3VlanElb6ScanDbHandle.object, first->object);
    EXPECT_NE(first->object, second->object);
    EXPECT_THAT(walk(second), ElementsAre("2:10", "2:10", "2:11", "2:11"));
    EXPECT_THAT(walk(first), ElementsAre("1:10", "1:10", "1:11", "1:11"));
    MCAST6_DB_ReleaseVlanElbIterator(first);
    Mcast6DbRes* third = iterate(2, 1);
    ASSERT_NE(nullptr, third);
    EXPECT_EQ(g_l3VlanElb6ScanDbHandle.object, third->object);
    EXPECT_EQ(g_l3VlanElb6ScanDbHandle.rootIter, third->rootIter);
    EXPECT_THAT(walk(third), ElementsAre("2:10", "2:10", "2:11", "2:11"));
    MCAST6_DB_ReleaseVlanElbIterator(second);
    MCAST6_DB_ReleaseVlanElbIterator(third);
    EXPECT_EQ(1u, mcast6_platform_counter(281));  // of the second one
    EXPECT_EQ(3u, mcast6_platform_counter(282));
    EXPECT_EQ(0u, errors());
}

TEST_F(VlanElbSystemTest, fastScansCostNoObjectAndRecordsMayGoWhileTheyWalk) {
    writeMembers();
    MCAST6_DB_ReleaseVlanElbIterator(iterate(1, 1));
    mcast6_platform_reset_counters();
    for (uint32_t i = 0; i < 1'000; ++i) EXPECT_EQ(4u, walkAndRelease(iterate(1 + i % 2, 1)).size());
    EXPECT_EQ(0u, mcast6_platform_counter(281));
    EXPECT_EQ(1'000u, mcast6_platform_counter(282));

    Mcast6DbRes* scan = iterate(1, 1);
    ASSERT_NE(nullptr, scan);
    uint32_t removed = 0;
    L3Mc6ElbEntryExt record{};
    while (removed < 100 && MCAST6_DB_GetVlanElbEntry(scan, &record) == 0) {
        ASSERT_EQ(0u, MCAST6_DB_RemoveVlanElb(&record));
        ++removed;
    }
    EXPECT_EQ(4u, removed);
    MCAST6_DB_ReleaseVlanElbIterator(scan);
    EXPECT_THAT(walkAndRelease(iterate(1, 1)), IsEmpty());
    EXPECT_EQ(4u, walkAndRelease(iterate(2, 1)).size());
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
