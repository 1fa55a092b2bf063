// l2mc6_bd_enable: conversions byte for byte, and the claims that no single way out shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "mcast6_db/context.h"
#include "mcast6_db/l2mc6_bd_enable.h"
#include "tests/l2/l2mc6_bd_enable_sample.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::l2mc6_bd_enable {

namespace {

using recording::Bytes;
using recording::hex;
using recording::Recorder;
using recording::unhex;
using testing::IsEmpty;

class BdEnableTest : public testing::Test {
protected:
    void SetUp() override {
        startOver();
        fillSample(record);
    }
    void TearDown() override { platform.reset(); }

    Recorder& platform = Recorder::instance();
    L2McBdEnableEntry record;
};

// -- conversions

TEST_F(BdEnableTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    Bytes row(70, 0x5A);
    MCAST6_DB_SetL2McBdEnable(&record, row.data() + 1);
    EXPECT_EQ("5a" + kWrittenRow + "5a", hex(row));
}

TEST_F(BdEnableTest, setReadsTheClockOnceForBothStamps) {
    platform.setTime(0x0102030405060708, 1);
    Bytes row(68);
    MCAST6_DB_SetL2McBdEnable(&record, row.data());
    EXPECT_EQ(1u, platform.clockReadings());
    EXPECT_EQ(digits("0807060504030201 0807060504030201"), hex(std::span(row).subspan(36, 16)));
}

TEST_F(BdEnableTest, setCopiesByteFieldsWithTheirSizes) {
    platform.traceCopies(true);
    Bytes row(68);
    MCAST6_DB_SetL2McBdEnable(&record, row.data());
    Trace copies = platform.takeTrace();
    std::sort(copies.begin(), copies.end());
    EXPECT_EQ(copies, (Trace{"memcpy_s 12 12", "memcpy_s 2 2", "memcpy_s 2 2"}));
}

TEST_F(BdEnableTest, setLeavesTheRecordAlone) {
    const std::string before = bytesOf(record);
    Bytes row(68);
    MCAST6_DB_SetL2McBdEnable(&record, row.data());
    EXPECT_EQ(before, bytesOf(record));
}

TEST_F(BdEnableTest, getWritesEveryFieldItsConstantsAndNothingElse) {
    L2McBdEnableEntry expected;
    fillSample(expected);
    readStored(expected);
    const Bytes row = unhex(kStoredRow);
    MCAST6_DB_GetL2McBdEnable(row.data(), &record);
    EXPECT_EQ(bytesOf(expected), bytesOf(record));
    EXPECT_EQ(2u, record.addrType);
    EXPECT_EQ(1u, record.getFlag);
    EXPECT_EQ(0xE1E2E3E4u, record.spare1);
    EXPECT_THAT(platform.trace(), IsEmpty());
    EXPECT_EQ(0u, platform.clockReadings());
}

TEST_F(BdEnableTest, getAfterSetGivesWhatWasSet) {
    Bytes row(68);
    MCAST6_DB_SetL2McBdEnable(&record, row.data());
    L2McBdEnableEntry expected;
    fillSample(expected);
    expected.addrType = 2;
    expected.getFlag = 1;
    expected.spare1 = 0x77777777;
    expected.timeStampCreate = 1'700'000'000;
    expected.timeStampSmooth = 1'700'000'000;
    L2McBdEnableEntry read;
    fillSample(read);
    read.spare1 = 0x77777777;
    read.attrA = 0;
    MCAST6_DB_GetL2McBdEnable(row.data(), &read);
    EXPECT_EQ(bytesOf(expected), bytesOf(read));
}

TEST_F(BdEnableTest, aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime) {
    platform.setTime(0x0102030405060708, 1);
    Bytes row(68, 0x5A);
    MCAST6_DB_SetStructMldBdTimeStamp(0, row.data());
    EXPECT_EQ(1u, platform.clockReadings());
    Bytes expected(68, 0x5A);
    const Bytes first = unhex("0807060504030201");
    std::copy(first.begin(), first.end(), expected.begin() + 44);
    EXPECT_EQ(hex(expected), hex(row));

    MCAST6_DB_SetStructMldBdTimeStamp(0x80000000, row.data());
    EXPECT_EQ(2u, platform.clockReadings());
    const Bytes second = unhex("0907060504030201");
    std::copy(second.begin(), second.end(), expected.begin() + 36);
    std::copy(second.begin(), second.end(), expected.begin() + 44);
    EXPECT_EQ(hex(expected), hex(row));
}

// -- the time stamps of an object

TEST_F(BdEnableTest, anObjectGetsBothStampsWhenAsked) {
    Mcast6DbHandle object = 0;
    ASSERT_EQ(0u, MCAST6_DB_CreateL2McBdEnableObject(1, 0, &object));
    platform.takeTrace();
    EXPECT_EQ(0u, MCAST6_DB_SetMldBdTimeStamp(object, 0x100));
    Trace setters = platform.takeTrace();
    std::sort(setters.begin(), setters.end());  // their order is free
    EXPECT_EQ(setters, (Trace{"set l2mc6_bd_enable.timeStampCreate obj1 1700000000",
                              "set l2mc6_bd_enable.timeStampSmooth obj1 1700000000"}));
    EXPECT_EQ(1u, platform.clockReadings());
}

TEST_F(BdEnableTest, bothStampsAreSetWhateverTheFirstAnswersAndTheirCodesAreOred) {
    Mcast6DbHandle object = 0;
    ASSERT_EQ(0u, MCAST6_DB_CreateL2McBdEnableObject(1, 0, &object));
    for (const auto& [create, smooth] : {std::pair{8u, 0u}, std::pair{0u, 5u}, std::pair{8u, 5u}}) {
        platform.takeTrace();
        platform.answer("db_set_l2mc6_bd_enable_timeStampCreate", create);
        platform.answer("db_set_l2mc6_bd_enable_timeStampSmooth", smooth);
        EXPECT_EQ(create | smooth, MCAST6_DB_SetMldBdTimeStamp(object, 1));
        EXPECT_EQ(2u, platform.trace().size());
        EXPECT_EQ(0u, platform.pendingAnswers());
    }
}

// -- edges

TEST_F(BdEnableTest, readingAnAbsentKeyIsSilentAndAnswers60) {
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2McBdEnable(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_bd_enable 3 0 -> obj1",
                                    "dfx 452",
                                    "read obj1 " + kKey + " 68 -> 15005",
                                    "release l2mc6_bd_enable obj1",
                                    "dfx 454",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[26][0]);
}

TEST_F(BdEnableTest, aSecondWriteThatTheEngineAnswersWith13044CountsAsWritten) {
    EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    platform.answer("db_write_obj", 13044);
    EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
    EXPECT_EQ(2u, platform.dfx(455));
    EXPECT_EQ(0u, platform.dfx(456));
    EXPECT_EQ(1u, g_mcast6DbErrStat[26][1]);
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

TEST_F(BdEnableTest, anUpdateWhoseSetterFailsStillUpdatesAndReturnsTheOrOfAllCodes) {
    platform.answer("db_set_l2mc6_bd_enable_mldVersion", 0x100);
    platform.answer("db_set_l2mc6_bd_enable_pathFlags", 0x10);
    platform.answer("db_update_obj", 13044);  // 0x32F4
    EXPECT_EQ(0x33F4u, MCAST6_DB_UpdateL2BdEnableCfg(&record));
    EXPECT_EQ(platform.trace(),
              (Trace{
                  "create l2mc6_bd_enable 1 0 -> obj1",
                  "dfx 452",
                  "set l2mc6_bd_enable.mldVersion obj1 623257384 -> 256",
                  "set l2mc6_bd_enable.l2mcEnable obj1 1903326068",
                  "set l2mc6_bd_enable.serviceStatus obj1 4142",
                  "set l2mc6_bd_enable.errCode obj1 4344",
                  "set l2mc6_bd_enable.smoothVersion obj1 825373492",
                  "set l2mc6_bd_enable.pathFlags obj1 892745528 -> 16",
                  "set l2mc6_bd_enable.timeStampSmooth obj1 1700000000",
                  "log 9 0x0F2E1012 \"[MCAST6 DB]update l2 bd enable data, set field failed, ret:272.\"",
                  "update obj1 " + kKey + " -> 13044",
                  "release l2mc6_bd_enable obj1",
                  "dfx 454",
                  "log 9 0x0F2E1012 \"[MCAST6 DB]update l2 bd enable, update object failed, ret:13300.\"",
              }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[26][1]);
    EXPECT_EQ(0u, g_mcast6DbErrStat[26][6]);
}

TEST_F(BdEnableTest, anIteratorIsReadToItsEndAndAnswers60AgainAndAgain) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2McBdEnableIter();
    ASSERT_NE(nullptr, iterator);
    platform.fillNextRead(unhex(kStoredRow));
    EXPECT_EQ(0u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    EXPECT_EQ(0x0Bu, record.keyId1);
    platform.answerAlways("db_root_iterator_next", 110012);
    EXPECT_EQ(60u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    EXPECT_EQ(60u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    MCAST6_DB_ReleaseL2McBdEnableIterator(iterator);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveIterators());
    EXPECT_EQ(0u, platform.liveBlocks());
}

TEST_F(BdEnableTest, aFailedStepAnswers1AndNotTheEnginesCode) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2McBdEnableIter();
    ASSERT_NE(nullptr, iterator);
    platform.answer("db_root_iterator_next", 4711);
    EXPECT_EQ(1u, MCAST6_DB_GetL2McBdEnableEntry(iterator, &record));
    EXPECT_EQ("log 9 0x0F2E1012 \"[MCAST6 DB]get l2 bd enable entry, db root iterator next failed, ret:4711.\"",
              platform.trace().back());
    MCAST6_DB_ReleaseL2McBdEnableIterator(iterator);
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_bd_enable
