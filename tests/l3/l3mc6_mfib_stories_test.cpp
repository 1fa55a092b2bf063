// l3mc6_mfib: conversions byte for byte, and claims that involve more than one exit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "mcast6_db/context.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "tests/l3/l3mc6_mfib_sample.h"
#include "tests/support/operation_sweep.h"
#include "tests/support/table_claims.h"

namespace mcast6::tests::l3mc6_mfib {

namespace {

using recording::Bytes;
using recording::hex;
using recording::unhex;
using testing::IsEmpty;

class MfibTest : public SampleTest<L3Mc6MfibEntry, fillSample> {};

// -- conversions; each exists under two names

using Set = void (*)(const L3Mc6MfibEntry*, void*);
using Get = uint32_t (*)(const void*, L3Mc6MfibEntry*);

constexpr Set kSets[] = {MCAST6_DB_SetL3MainMfib, MCAST6_DB_SetL3Mfib};
constexpr Get kGets[] = {MCAST6_DB_GetL3MainMfib, MCAST6_DB_GetL3Mfib};

TEST_F(MfibTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    for (const Set set : kSets) {
        Bytes row(210, 0x5A);
        MCAST6_DB_SetL3MfibSourcePid(0);
        set(&record, row.data() + 1);
        std::string expected = "5a" + kWrittenRow + "5a";
        expected.replace(2 * 61, 2, "5a");  // the reserved byte 60
        EXPECT_EQ(expected, hex(row));
        EXPECT_EQ(0xB8B9BABBu, MCAST6_DB_GetL3MfibSourcePid());
    }
}

TEST_F(MfibTest, setReadsTheClockOnceForBothStamps) {
    platform.setTime(0x0102030405060708, 1);
    for (const Set set : kSets) {
        const uint64_t readings = platform.clockReadings();
        Bytes row(208);
        set(&record, row.data());
        EXPECT_EQ(readings + 1, platform.clockReadings());
        EXPECT_EQ(hex(std::span(row).subspan(188, 8)), hex(std::span(row).subspan(196, 8)));
        EXPECT_EQ("07060504030201", hex(std::span(row).subspan(189, 7)));
    }
}

TEST_F(MfibTest, setLeavesTheRecordAlone) {
    const std::string before = bytesOf(record);
    Bytes row(208);
    MCAST6_DB_SetL3Mfib(&record, row.data());
    EXPECT_EQ(before, bytesOf(record));
}

TEST_F(MfibTest, getWritesEveryFieldAddrType2AndNothingElse) {
    L3Mc6MfibEntry expected;
    fillSample(expected);
    readStored(expected);
    const Bytes row = unhex("00" + kStoredRow);
    for (const Get get : kGets) {
        fillSample(record);
        EXPECT_EQ(0u, get(row.data() + 1, &record));
        EXPECT_EQ(bytesOf(expected), bytesOf(record));
        EXPECT_EQ(2u, record.addrType);
    }
    EXPECT_THAT(platform.trace(), IsEmpty());
    EXPECT_EQ(0u, platform.clockReadings());
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibSourcePid());
}

TEST_F(MfibTest, getAnswersTheResultOfTheLastAddressConversion) {
    const Bytes row = unhex(kStoredRow);
    for (const Get get : kGets) {
        platform.traceCopies(true);
        EXPECT_EQ(0u, get(row.data(), &record));
        const Trace copies = platform.takeTrace();
        std::vector<size_t> addresses;
        for (size_t i = 0; i < copies.size(); ++i) {
            if (copies[i] == "memcpy_s 16 16") addresses.push_back(i);
        }
        ASSERT_EQ(2u, addresses.size());

        for (size_t i = 0; i <= addresses[0]; ++i) platform.answer("memcpy_s", i == addresses[0] ? 34 : 0);
        EXPECT_EQ(0u, get(row.data(), &record));
        EXPECT_EQ(0u, platform.pendingAnswers());
        for (size_t i = 0; i <= addresses[1]; ++i) platform.answer("memcpy_s", i == addresses[1] ? 34 : 0);
        EXPECT_EQ(34u, get(row.data(), &record));
        EXPECT_EQ(0u, platform.pendingAnswers());
        platform.takeTrace();
    }
}

TEST_F(MfibTest, getAfterSetGivesWhatWasSetAndLeavesTheGapsAlone) {
    Bytes row(208);
    MCAST6_DB_SetL3Mfib(&record, row.data());
    L3Mc6MfibEntry expected;
    fillSample(expected);
    expected.addrType = 2;
    expected.attr9 = 0x4647;
    expected.timeStampCreate = 1'700'000'000;
    expected.timeStampSmooth = 1'700'000'000;
    const std::string kept = bytesOf(expected);
    MCAST6_DB_GetL3Mfib(row.data(), &record);
    EXPECT_EQ(kept, bytesOf(record));

    // Other content of the gaps is unchanged too.
    for (const uint8_t filler : {uint8_t{0x00}, uint8_t{0x3C}}) {
        std::memset(&record, filler, sizeof record);
        MCAST6_DB_GetL3Mfib(row.data(), &record);
        EXPECT_EQ(filler, record.host1);
        EXPECT_EQ(filler * 0x01010101u, record.host2);
        EXPECT_EQ(filler * 0x01010101u, record.host3);
        EXPECT_EQ(filler * 0x01010101u, record.host4);
        EXPECT_EQ(filler * 0x01010101u, record.host5);
        for (const uint8_t byte : record.hostTail) EXPECT_EQ(filler, byte);
        EXPECT_EQ(0xC0C1C2C3u, record.smoothVersion);
    }
}

TEST_F(MfibTest, theKeyIsVrVrfGroupAndSourceByteForByte) {
    uint32_t word[2] = {0xA5A5A5A5, 0xA5A5A5A5};
    Bytes key(42, 0x5A);
    MCAST6_DB_SetL3MfibKey(&word[0], key.data() + 1, &record);
    EXPECT_EQ(0x00010028u, word[0]);
    EXPECT_EQ(0xA5A5A5A5u, word[1]);
    EXPECT_EQ("5a" + kVrVrf + kGroup + kSource + "5a", hex(key));
    EXPECT_THAT(platform.trace(), IsEmpty());
}

TEST_F(MfibTest, theSourcePidIsKeptForTheHost) {
    MCAST6_DB_SetL3MfibSourcePid(0x81828384);
    EXPECT_EQ(0x81828384u, MCAST6_DB_GetL3MfibSourcePid());
    EXPECT_EQ(0x81828384u, g_l3Mfib6Pid);
    g_l3Mfib6Pid = 5;
    EXPECT_EQ(5u, MCAST6_DB_GetL3MfibSourcePid());
    EXPECT_THAT(platform.trace(), IsEmpty());
}

// -- edges

TEST_F(MfibTest, readingAnAbsentKeyIsSilentAndAnswers15005) {
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3Mfib(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l3mc6_mfib 3 0 -> obj1",
                                    "dfx 151",
                                    "read obj1 " + kKey + " 208 -> 15005",
                                    "release l3mc6_mfib obj1",
                                    "dfx 152",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[15][0]);
}

TEST_F(MfibTest, anIteratorStepAnswers60WhereAKeyedReadAnswers15005) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIter();
    ASSERT_NE(nullptr, iterator);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, MCAST6_DB_GetL3MfibEntry(iterator, &record));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(0u, g_mcast6DbErrStat[15][0]);
    MCAST6_DB_ReleaseL3MfibIter(iterator);
}

TEST_F(MfibTest, aLargeAttr9IsStoredByItsLow16Bits) {
    for (const auto& [given, stored, read] : {std::tuple{0x00010000u, "0000", 0u},
                                              {0x0001FFFFu, "ffff", 0xFFFFu},
                                              {0xFFFF0001u, "0100", 1u},
                                              {65535u, "ffff", 65535u}}) {
        record.attr9 = given;
        Bytes row(208);
        MCAST6_DB_SetL3Mfib(&record, row.data());
        EXPECT_EQ(stored, hex(std::span(row).subspan(62, 2)));
        MCAST6_DB_GetL3Mfib(row.data(), &record);
        EXPECT_EQ(read, record.attr9);
    }
}

TEST_F(MfibTest, theSourcePidIsTheRecordsEvenWhenTheWriteFails) {
    record.appSrcPid = 100;
    EXPECT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(100u, MCAST6_DB_GetL3MfibSourcePid());
    record.appSrcPid = 200;
    platform.answer("db_write_obj", 9);
    EXPECT_EQ(9u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(200u, MCAST6_DB_GetL3MfibSourcePid());
    record.appSrcPid = 300;
    platform.answer("db_set_l3mc6_mfib_all_fields", 9);
    EXPECT_EQ(9u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(300u, MCAST6_DB_GetL3MfibSourcePid());
    record.appSrcPid = 400;
    platform.answer("db_create_l3mc6_mfib_obj", 9);
    EXPECT_EQ(9u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(300u, MCAST6_DB_GetL3MfibSourcePid());
}

TEST_F(MfibTest, aFailedWriteCountsAsAttemptedToo) {
    platform.answer("db_write_obj", 9);
    EXPECT_EQ(9u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(1u, platform.kpi(94));
    EXPECT_EQ(1u, platform.kpi(93));
}

TEST_F(MfibTest, getNextReleasesTheObjectAtTheEndAndLeavesTheHandleToItsOwner) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIter();
    ASSERT_NE(nullptr, iterator);
    platform.answer("db_root_iterator_next", 110012);
    EXPECT_EQ(60u, MCAST6_DB_GetNextL3Mfib(iterator, &record));
    EXPECT_EQ(0u, iterator->object);
    EXPECT_EQ(0u, platform.liveObjects());
    platform.takeTrace();
    MCAST6_DB_ReleaseL3MfibIter(iterator);
    EXPECT_EQ(platform.trace(), (Trace{"dfx 152", "free block1"}));
    EXPECT_THAT(platform.misuses(), IsEmpty());
}

// A failed read does not convert the row of an earlier read again: the buffer is cleared first.
TEST_F(MfibTest, getNextFillsTheRecordFromAClearedRowWhenTheReadFails) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIter();
    ASSERT_NE(nullptr, iterator);
    platform.fillNextRead(unhex(kStoredRow));
    EXPECT_EQ(0u, MCAST6_DB_GetNextL3Mfib(iterator, &record));
    EXPECT_EQ(0xF6000032u, record.smoothVersion);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_GetNextL3Mfib(iterator, &record));
    L3Mc6MfibEntry expected;
    fillSample(expected);
    readNothing(expected);
    EXPECT_EQ(bytesOf(expected), bytesOf(record));
    EXPECT_EQ("log 9 0x0F2E1017 \"[L3MC CFG]get L3Mfib item fail, ret = 15005\"", platform.trace().back());
    EXPECT_NE(0u, iterator->object);
    MCAST6_DB_ReleaseL3MfibIter(iterator);
}

TEST_F(MfibTest, theReadCacheIsMadeOnceAndResetBeforeEachRead) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(0u, MCAST6_DB_ReadL3MfibFast(&record));
    EXPECT_EQ(0u, MCAST6_DB_ReadL3MfibFastTemp(&record));
    EXPECT_EQ(1u, platform.callsOf("db_create_l3mc6_mfib_cache_object"));
    EXPECT_EQ(4u, platform.callsOf("db_reset_l3mc6_mfib_cache_object"));
    EXPECT_EQ(1u, platform.liveObjects());
    EXPECT_EQ(0u, platform.dfx(151));
    EXPECT_EQ(0u, platform.dfx(152));
    EXPECT_EQ(0u, g_l3Mfib6DbStatObjCache);
}

// After a failed reset the cached object is reset again; one that was just created is created again.
TEST_F(MfibTest, aFailedResetKeepsTheOldObjectOnly) {
    platform.answer("db_reset_l3mc6_mfib_cache_object", 9);
    EXPECT_EQ(9u, MCAST6_DB_ReadL3MfibFast(&record));
    EXPECT_EQ(0u, g_l3Mfib6DbReadObjCache);
    EXPECT_EQ(0u, MCAST6_DB_ReadL3MfibFast(&record));
    const Mcast6DbHandle kept = g_l3Mfib6DbReadObjCache;
    EXPECT_NE(0u, kept);
    EXPECT_EQ(2u, platform.callsOf("db_create_l3mc6_mfib_cache_object"));
    platform.answer("db_reset_l3mc6_mfib_cache_object", 9);
    EXPECT_EQ(9u, MCAST6_DB_ReadL3MfibFast(&record));
    EXPECT_EQ(kept, g_l3Mfib6DbReadObjCache);
    EXPECT_EQ(0u, MCAST6_DB_ReadL3MfibFast(&record));
    EXPECT_EQ(2u, platform.callsOf("db_create_l3mc6_mfib_cache_object"));
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_mfib
