// l3mc6_elb on the shipped platform: members that other software wrote, and the states of the scan handle.
#include "mcast6_db/l3mc6_elb.h"

#include <gmock/gmock.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "mcast6_platform/tables.h"
#include "tests/system/l3_egress.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ElbSystemTest : public SystemTest {
protected:
    static uint32_t store(const L3Mc6ElbEntry& entry) {
        uint8_t row[148] = {};
        EXPECT_EQ(0u, MCAST6_DB_SetL3Elb(&entry, row));
        const RowWriter rows{db_create_l3mc6_elb_obj, db_set_l3mc6_elb_all_fields, db_release_l3mc6_elb_object};
        return rows.write(row, sizeof row);
    }

    // Members 10, 11 and 12 of the groups 1 and 2; 12 with another elbFlagD, 11 with another elbFlagA.
    static void storeMembers() {
        for (const uint32_t group : {1u, 2u}) {
            for (const uint32_t outIfIndex : {10u, 11u, 12u}) {
                auto entry = memberOf<L3Mc6ElbEntry>(group, outIfIndex);
                entry.elbFlagD = outIfIndex == 12 ? 2 : 1;
                entry.elbFlagA = outIfIndex == 11 ? 7 : 5;
                ASSERT_EQ(0u, store(entry));
            }
        }
    }

    static Mcast6DbRes* scan(uint32_t group) {
        return MCAST6_DB_CreateL3ElbMcidIteratorFast(1, 2, {{0xFF1E0000, 0, 0, group}}, {});
    }

    static std::multiset<std::string> walk(Mcast6DbRes* iterator) { return walked(iterator, MCAST6_DB_GetL3ElbEntry); }
};

TEST_F(ElbSystemTest, readsWhatOthersWroteByBothReads) {
    auto entry = memberOf<L3Mc6ElbEntry>(1, 10);
    entry.elbFlagD = 1;
    entry.instId = 0x00021234;
    entry.instType = 1;
    entry.elbAttrB = 0x8000000000000001;
    entry.elbAttrD = 0xFFFE;
    entry.elbAttrG = 77;
    entry.elbCtxA[27] = 27;
    entry.timeStampCreate = 700;
    ASSERT_EQ(0u, store(entry));
    for (uint32_t (*const read)(L3Mc6ElbEntry*) : {MCAST6_DB_ReadL3Elb, MCAST6_DB_ReadL3ElbFast}) {
        auto found = memberOf<L3Mc6ElbEntry>(1, 10);
        found.elbFlagD = 1;
        ASSERT_EQ(0u, read(&found));
        L3Mc6ElbEntry expected = entry;
        expected.entryType = 13;
        expected.addrType = 2;
        expected.instType = 0;
        expected.instId = 0x1234;
        expected.timeStampSmooth = 1'000;
        EXPECT_EQ(0, std::memcmp(&expected, &found, sizeof found));
        found.elbFlagD = 2;  // part of the key
        EXPECT_EQ(15005u, read(&found));
    }
    EXPECT_EQ(2u, mcast6_platform_counter(239));
    EXPECT_EQ(2u, mcast6_platform_counter(240));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(ElbSystemTest, iteratorsAndCountsFindTheirMembersOnly) {
    storeMembers();
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3ElbAllIterator();
    EXPECT_THAT(walk(iterator), ElementsAre("1:10", "1:11", "1:12", "2:10", "2:11", "2:12"));
    MCAST6_DB_ReleaseL3ElbIterator(iterator);
    iterator = MCAST6_DB_CreateL3ElbIfindexIterator(11);
    EXPECT_THAT(walk(iterator), ElementsAre("1:11", "2:11"));
    MCAST6_DB_ReleaseL3ElbIterator(iterator);

    auto entry = memberOf<L3Mc6ElbEntry>(2, 0);
    entry.elbFlagA = 0xFF05;
    iterator = MCAST6_DB_CreateL3ElbMfibIteratorExt(&entry);
    EXPECT_THAT(walk(iterator), ElementsAre("2:10", "2:12"));
    MCAST6_DB_ReleaseL3ElbIterator(iterator);
    Mcast6DbRes resource{};
    ASSERT_EQ(0u, MCAST6_DB_CreateL3ElbMfibIterator(&entry, &resource));
    EXPECT_THAT(walk(&resource), ElementsAre("2:10", "2:12"));
    MCAST6_DB_ReleaseL3ElbObject(resource.object);

    uint32_t count = 9;
    EXPECT_EQ(0u, MCAST6_DB_GetOutIfNum(&entry, &count));
    EXPECT_EQ(2u, count);
    entry.elbFlagA = 6;
    EXPECT_EQ(0u, MCAST6_DB_GetOutIfNum(&entry, &count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(mcast6_platform_counter(239), mcast6_platform_counter(240));
}

TEST_F(ElbSystemTest, aFastScanFindsTheMembersOfItsEntryWhoseElbFlagDIs1) {
    storeMembers();
    Mcast6DbRes* first = scan(1);
    ASSERT_NE(nullptr, first);
    Mcast6DbRes* second = scan(2);
    ASSERT_NE(nullptr, second);
    EXPECT_NE(first->object, second->object);
    EXPECT_THAT(walk(second), ElementsAre("2:10", "2:11"));
    EXPECT_THAT(walk(first), ElementsAre("1:10", "1:11"));
    MCAST6_DB_ReleaseL3ElbIterator(first);
    Mcast6DbRes* third = scan(2);
    ASSERT_NE(nullptr, third);
    EXPECT_EQ(g_l3Elb6ScanDbHandle.object, third->object);
    EXPECT_EQ(g_l3Elb6ScanDbHandle.rootIter, third->rootIter);
    EXPECT_THAT(walk(third), ElementsAre("2:10", "2:11"));
    MCAST6_DB_ReleaseL3ElbIterator(second);
    MCAST6_DB_ReleaseL3ElbIterator(third);
    EXPECT_EQ(0u, g_l3Elb6ScanDbHandle.inUse);
    EXPECT_EQ(1u, mcast6_platform_counter(239));  // of the second one
    EXPECT_EQ(1u, mcast6_platform_counter(240));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(ElbSystemTest, fastScansCostNoObjectAndSeeEveryChange) {
    storeMembers();
    MCAST6_DB_ReleaseL3ElbIterator(scan(1));
    const Mcast6DbScanHandle pair = g_l3Elb6ScanDbHandle;
    const uint64_t memory = mcast6_platform_memory();
    for (uint32_t i = 0; i < 1'000; ++i) {
        Mcast6DbRes* iterator = scan(1 + i % 2);
        ASSERT_NE(nullptr, iterator);
        EXPECT_EQ(2u, walk(iterator).size());
        MCAST6_DB_ReleaseL3ElbIterator(iterator);
    }
    EXPECT_EQ(pair.object, g_l3Elb6ScanDbHandle.object);
    EXPECT_EQ(pair.rootIter, g_l3Elb6ScanDbHandle.rootIter);
    EXPECT_EQ(0u, mcast6_platform_counter(239));
    EXPECT_EQ(0u, mcast6_platform_counter(240));
    EXPECT_EQ(memory, mcast6_platform_memory());

    auto added = memberOf<L3Mc6ElbEntry>(1, 13);
    added.elbFlagD = 1;
    ASSERT_EQ(0u, store(added));
    Mcast6DbRes* iterator = scan(1);
    ASSERT_NE(nullptr, iterator);
    EXPECT_THAT(walk(iterator), ElementsAre("1:10", "1:11", "1:13"));
    MCAST6_DB_ReleaseL3ElbIterator(iterator);
}

// A scan that was released halfway does not block the next one.
TEST_F(ElbSystemTest, aScanMayEndBeforeItsEntryDoes) {
    storeMembers();
    Mcast6DbRes* iterator = scan(1);
    ASSERT_NE(nullptr, iterator);
    L3Mc6ElbEntry entry{};
    EXPECT_EQ(0u, MCAST6_DB_GetL3ElbEntry(iterator, &entry));
    MCAST6_DB_ReleaseL3ElbIterator(iterator);
    iterator = scan(1);
    ASSERT_NE(nullptr, iterator);
    EXPECT_THAT(walk(iterator), ElementsAre("1:10", "1:11"));
    MCAST6_DB_ReleaseL3ElbIterator(iterator);
}

TEST_F(ElbSystemTest, aMissingEntryIs15005ByKeyAnd60ByScan) {
    auto entry = memberOf<L3Mc6ElbEntry>(1, 10);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3Elb(&entry));
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3ElbFast(&entry));
    Mcast6DbRes* iterator = scan(1);
    ASSERT_NE(nullptr, iterator);
    EXPECT_THAT(walk(iterator), IsEmpty());
    MCAST6_DB_ReleaseL3ElbIterator(iterator);
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
