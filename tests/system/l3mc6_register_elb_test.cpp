// l3mc6_register_elb on the shipped platform: records, iterators, and conversion of egress records to register records
// and back.
#include "mcast6_db/l3mc6_register_elb.h"

#include <gmock/gmock.h>

#include <cstring>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"
#include "tests/system/l3_egress.h"

namespace mcast6::tests {

namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

L3Mc6RegOifEntry recordOf(uint32_t group, uint32_t outIfIndex) {
    L3Mc6RegOifEntry record{};
    record.vrId = 1;
    record.vrfId = 2;
    record.groupAddr = {{0xFF1E0000, 0, 0, group}};
    record.sourceAddr = {{0x20010DB8, 0, 0, 9}};
    record.outIfIndex = outIfIndex;
    return record;
}

class RegisterElbSystemTest : public SystemTest {
protected:
    static std::vector<uint32_t> groupsOf(Mcast6DbRes* iterator) {
        std::vector<uint32_t> groups;
        L3Mc6RegOifEntry record{};
        while (groups.size() < 100 && MCAST6_DB_GetL3mcRegOifEntry(iterator, &record) == 0) {
            groups.push_back(record.groupAddr.word[3]);
        }
        MCAST6_DB_ReleaseL3mcRegOifIterator(iterator);
        return groups;
    }
};

TEST_F(RegisterElbSystemTest, readsBackWhatWasWritten) {
    L3Mc6RegOifEntry record = recordOf(3, 4);
    record.regAttrA = 1;
    record.regAttrB = 0xFFFFFFFE;
    record.instId = 0x12345678;
    record.instType = 2;
    record.regAttrC = 3;
    record.regAttrD = 4;
    record.regHalfB[0] = 5;
    record.regHalfA[1] = 6;
    record.regCtxA[27] = 7;
    record.regCtxB[11] = 8;
    record.regWord = 9;
    record.timeStampCreate = 700;
    ASSERT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));

    L3Mc6RegOifEntry read = recordOf(3, 99);
    std::memset(read.host1, 0x3C, sizeof read.host1);
    read.host2 = 0x3C;
    ASSERT_EQ(0u, MCAST6_DB_ReadRegistOif(&read));
    L3Mc6RegOifEntry expected = record;
    expected.timeStampSmooth = 1'000;
    std::memset(expected.host1, 0x3C, sizeof expected.host1);
    expected.host2 = 0x3C;
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(1u, mcast6_platform_kpi(137));
    EXPECT_EQ(0u, mcast6_platform_kpi(138));
    EXPECT_EQ(2u, mcast6_platform_counter(252));
    EXPECT_EQ(2u, mcast6_platform_counter(253));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(RegisterElbSystemTest, aRecordWithoutCreationTimeGetsTheTimeOfTheWriteInBothStamps) {
    L3Mc6RegOifEntry record = recordOf(3, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));
    ASSERT_EQ(0u, MCAST6_DB_ReadRegistOif(&record));
    EXPECT_EQ(1'000u, record.timeStampCreate);
    EXPECT_EQ(1'000u, record.timeStampSmooth);
    setTime(1'010);
    ASSERT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));  // replaces it, silently
    ASSERT_EQ(0u, MCAST6_DB_ReadRegistOif(&record));
    EXPECT_EQ(1'000u, record.timeStampCreate);
    EXPECT_EQ(1'010u, record.timeStampSmooth);
    EXPECT_EQ(2u, mcast6_platform_kpi(137));
    EXPECT_EQ(0u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(RegisterElbSystemTest, aMissingRecordReadsAs60AndDeletesAs0) {
    L3Mc6RegOifEntry record = recordOf(3, 4);
    EXPECT_EQ(60u, MCAST6_DB_ReadRegistOif(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteRegistOif(&record));
    EXPECT_EQ(1u, mcast6_platform_kpi(139));
    EXPECT_EQ(0u, mcast6_platform_kpi(140));
    ASSERT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteRegistOif(&record));
    EXPECT_EQ(60u, MCAST6_DB_ReadRegistOif(&record));
    EXPECT_EQ(2u, mcast6_platform_kpi(139));
    EXPECT_EQ(0u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(RegisterElbSystemTest, iteratorsFindTheirRecordsOnly) {
    for (uint32_t group = 1; group <= 8; ++group) {
        L3Mc6RegOifEntry record = recordOf(group, 10 + group % 2);
        record.instId = 100 + group % 4;
        record.instType = group > 4 ? 1 : 0;
        record.regAttrC = static_cast<uint8_t>(group);
        ASSERT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));
    }
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifAllIterator()), UnorderedElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifIfIndexIterator(11)), UnorderedElementsAre(1, 3, 5, 7));
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifIfIndexIterator(12)), IsEmpty());
    L3Mc6RegOifEntry instance{};
    instance.instId = 102;
    instance.instType = 0;
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifVlanIterator(&instance)), UnorderedElementsAre(2));
    instance.instType = 1;
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifVlanIterator(&instance)), UnorderedElementsAre(6));

    auto entry = memberOf<L3Mc6ElbEntry>(5, 0);
    entry.sourceAddr = {{0x20010DB8, 0, 0, 9}};
    entry.elbFlagA = 0x01000005;
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifVSGIterator(&entry)), UnorderedElementsAre(5));
    entry.elbFlagA = 6;
    EXPECT_THAT(groupsOf(MCAST6_DB_CreateL3mcRegOifVSGIterator(&entry)), IsEmpty());
    EXPECT_EQ(mcast6_platform_counter(252), mcast6_platform_counter(253));
}

TEST_F(RegisterElbSystemTest, anEgressRecordComesBackWithItsInstance) {
    struct {
        uint32_t instType;
        uint32_t storedType;
        uint32_t storedId;
    } const cases[] = {{0, 0, 100}, {1, 1, 100}, {2, 2, 0}, {5, 2, 0}};
    for (const auto& item : cases) {
        auto entry = memberOf<L3Mc6ElbEntry>(3, 4);
        entry.elbAttrA = 11;
        entry.elbAttrB = 0xAB00000000000012;
        entry.instType = item.instType;
        entry.instId = 100;
        entry.elbCtxA[27] = 13;
        entry.elbCtxB[0] = 14;
        entry.elbWord = 15;
        entry.elbHalfA = 0x1617;
        entry.elbHalfB = 0x1819;
        entry.elbFlagA = 0x101;
        entry.elbFlagB = 0x202;
        entry.timeStampCreate = 700;
        L3Mc6RegOifEntry record{};
        MCAST6_DB_TransElbEntryToRegElbEntry(&entry, &record);
        ASSERT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));

        Mcast6DbRes* iterator = MCAST6_DB_CreateL3mcRegOifAllIterator();
        ASSERT_NE(nullptr, iterator);
        L3Mc6ElbEntry read{};
        ASSERT_EQ(0u, MCAST6_DB_GetL3mcRegOifEntryExt(iterator, &read));
        L3Mc6ElbEntry expected = entry;
        expected.elbAttrB = 0x12;  // its high half is lost
        expected.instType = item.storedType;
        expected.instId = item.storedId;
        expected.elbFlagA = 1;
        expected.elbFlagB = 2;
        expected.timeStampSmooth = 1'000;
        EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read)) << item.instType;
        EXPECT_EQ(60u, MCAST6_DB_GetL3mcRegOifEntryExt(iterator, &read));
        MCAST6_DB_ReleaseL3mcRegOifIterator(iterator);
    }
}

}  // namespace

}  // namespace mcast6::tests
