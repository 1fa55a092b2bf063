// l3mc6_sub_elb on the shipped platform: members that other software wrote.
#include "mcast6_db/l3mc6_sub_elb.h"

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

class SubElbSystemTest : public SystemTest {
protected:
    static uint32_t store(const L3Mc6ElbEntryExt& record) {
        uint8_t row[172] = {};
        MCAST6_DB_SetL3SubElb(&record, row);
        const RowWriter rows{db_create_l3mc6_sub_elb_obj, db_set_l3mc6_sub_elb_all_fields,
                             db_release_l3mc6_sub_elb_object};
        return rows.write(row, sizeof row);
    }

    static std::multiset<std::string> walkAndRelease(Mcast6DbRes* iterator) {
        const auto names = walked(iterator, MCAST6_DB_GetL3SubElbEntry);
        MCAST6_DB_ReleaseL3SubElbIterator(iterator);
        return names;
    }
};

TEST_F(SubElbSystemTest, readsWhatOthersWroteByBothReads) {
    auto record = memberOf<L3Mc6ElbEntryExt>(1, 10);
    record.subIfIndex = 20;
    record.instId = 0x00021234;
    record.elbFlagD = 3;
    record.elbExtCtx[15] = 15;
    record.elbExtA = 16;
    record.elbExtB = 17;
    record.elbAttrF = 18;  // not stored
    ASSERT_EQ(0u, store(record));
    for (uint32_t (*const read)(L3Mc6ElbEntryExt*) : {MCAST6_DB_ReadL3SubElb, MCAST6_DB_ReadL3SubElbFast}) {
        auto found = memberOf<L3Mc6ElbEntryExt>(1, 99);
        found.subIfIndex = 20;
        found.instId = 0x1234;
        found.elbFlagD = 3;
        ASSERT_EQ(0u, read(&found));
        L3Mc6ElbEntryExt expected = record;
        expected.entryType = 14;
        expected.addrType = 2;
        expected.instId = 0x1234;
        expected.elbAttrF = 0;
        expected.timeStampCreate = 1'000;
        expected.timeStampSmooth = 1'000;
        EXPECT_EQ(0, std::memcmp(&expected, &found, sizeof found));
        found.instId = 0x1235;  // part of the key
        EXPECT_EQ(15005u, read(&found));
    }
    EXPECT_EQ(2u, mcast6_platform_counter(246));
    EXPECT_EQ(2u, mcast6_platform_counter(247));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(SubElbSystemTest, aRecordThatIsWrittenTwiceIsStampedAsNewEachTime) {
    auto record = memberOf<L3Mc6ElbEntryExt>(1, 10);
    record.timeStampCreate = 700;
    ASSERT_EQ(0u, store(record));
    ASSERT_EQ(0u, MCAST6_DB_ReadL3SubElb(&record));
    EXPECT_EQ(1'000u, record.timeStampCreate);
    setTime(1'010);
    EXPECT_EQ(13044u, store(record));
    ASSERT_EQ(0u, MCAST6_DB_ReadL3SubElb(&record));
    EXPECT_EQ(1'010u, record.timeStampCreate);
    EXPECT_EQ(1'010u, record.timeStampSmooth);
}

TEST_F(SubElbSystemTest, iteratorsFindTheirMembersOnly) {
    for (const uint32_t group : {1u, 2u}) {
        for (const uint32_t outIfIndex : {10u, 11u}) {
            for (const uint32_t vlan : {100u, 200u}) {
                auto record = memberOf<L3Mc6ElbEntryExt>(group, outIfIndex);
                record.subIfIndex = 20 + outIfIndex;
                record.instId = vlan + group;
                record.elbFlagD = outIfIndex == 11 ? 2 : 1;
                ASSERT_EQ(0u, store(record));
            }
        }
    }
    EXPECT_EQ(8u, walkAndRelease(MCAST6_DB_CreateL3SubElbAllIterator()).size());
    EXPECT_THAT(walkAndRelease(MCAST6_DB_CreateL3mcVlanScanIterater(101)), ElementsAre("1:10", "1:11"));
    EXPECT_THAT(walkAndRelease(MCAST6_DB_CreateL3mcVlanScanIterater(100)), IsEmpty());
    auto members = memberOf<L3Mc6ElbEntryExt>(2, 11);
    members.elbFlagD = 2;
    EXPECT_THAT(walkAndRelease(MCAST6_DB_CreateL3mcVlanAllMemIterator(&members)), ElementsAre("2:11", "2:11"));
    members.elbFlagD = 1;
    EXPECT_THAT(walkAndRelease(MCAST6_DB_CreateL3mcVlanAllMemIterator(&members)), IsEmpty());
    EXPECT_EQ(mcast6_platform_counter(246), mcast6_platform_counter(247));
    EXPECT_THAT(logLines(), IsEmpty());
}

}  // namespace

}  // namespace mcast6::tests
