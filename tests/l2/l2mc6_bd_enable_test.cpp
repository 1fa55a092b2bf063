// l2mc6_bd_enable. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          453; the code
//                    -             -            452; 0
// release object     -             -            released; 454
// read               null          -            log; 1
//                    create 3      any          453; log; the code
//                    read          15005        released; 60
//                                  other        released; log; error 0; the code
//                    -             -            record filled; released; 0
// write              null          -            log; 456; 1
//                    create 0      any          453; log; 456; the code
//                    set all       any          released; log; 456; the code
//                    write         13044        released; error 1; 455; 0
//                                  other        released; log; error 2; 456; the code
//                    -             -            released; 455; 0
// update             null          -            log; 1
//                    create 1      any          453; log; the code
//                    7 setters     any          log; the update is made all the same; released; log; OR of all codes
//                    update        any          released; log; the code
//                    -             -            released; 0
// smooth version     null          -            log; 1
//                    create 1      any          453; log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; 458; 1
//                    create 4      any          453; log; 458; the code
//                    remove        13044        released; error 1; 457; 0
//                                  other        released; error 4; log; 458; the code
//                    -             -            released; 457; 0
// create iterator    create 5      any          453; 459; log; null
//                    root iterator any          released; 459; log; null
//                    property      any          released; 459; log; null
//                    allocation    -            released; 459; log; null
//                    -             -            handle
// get entry          null          -            log; 1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// "released" counts 454, a successful create counts 452. Errors are recorded under table 26.
#include "mcast6_db/l2mc6_bd_enable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "mcast6_db/context.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_bd_enable {

namespace {

using recording::Bytes;
using recording::unhex;
using testing::IsEmpty;

// -- the sample: a record with different bytes in each field, and its rows

// Padding included, so that all bytes of a record can be compared.
void fillSample(L2McBdEnableEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.keyId1 = 0x01020304;
    record.addrType = 0x11121314;
    record.getFlag = 0xF1F2F3F4;
    record.keyId2 = 0x05060708;
    record.spare1 = 0xE1E2E3E4;
    record.attrA = 0x21222324;
    record.mldVersion = 0x25262728;
    record.attrB = 0x292A2B2C;
    record.smoothVersion = 0x31323334;
    record.pathFlags = 0x35363738;
    const uint8_t serviceStatus[2] = {0x41, 0x42};
    const uint8_t errCode[2] = {0x43, 0x44};
    const uint8_t attrC[12] = {0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8A, 0x8B, 0x8C};
    std::memcpy(record.serviceStatus, serviceStatus, sizeof serviceStatus);
    std::memcpy(record.errCode, errCode, sizeof errCode);
    record.timeStampCreate = 0x5152535455565758;
    record.timeStampSmooth = 0x6162636465666768;
    record.l2mcEnable = 0x71727374;
    std::memcpy(record.attrC, attrC, sizeof attrC);
}

const std::string kKey = "key=0001000c:" + digits("04030201 08070605 14131211");

// The row that a write of the sample stores at 1'700'000'000, the recorder's time.
const std::string kWrittenRow = digits(
    "04030201 08070605 14131211"           // keyId1, keyId2, addrType
    "24232221 38373635 28272625 2c2b2a29"  // attrA, pathFlags, mldVersion, attrB
    "34333231 4142 4344"                   // smoothVersion, serviceStatus, errCode
    "00f1536500000000 00f1536500000000"    // timeStampCreate, timeStampSmooth
    "74737271 8182838485868788898a8b8c");  // l2mcEnable, attrC

// A row that the engine returns; it differs from the sample in every field.
const std::string kStoredRow = digits(
    "0b000000 0c000000 0d000000"           // keyId1, keyId2, addrType
    "91000092 93000094 95000096 97000098"  // attrA, pathFlags, mldVersion, attrB
    "99000000 9a9b 9c9d"                   // smoothVersion, serviceStatus, errCode
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf"    // timeStampCreate, timeStampSmooth
    "b0b1b2b3 c0c1c2c3c4c5c6c7c8c9cacb");  // l2mcEnable, attrC

// Changes a record as reading kStoredRow does: spare1 and the padding are unchanged.
void readStored(L2McBdEnableEntry& record) {
    record.keyId1 = 0x0B;
    record.addrType = 2;
    record.getFlag = 1;
    record.keyId2 = 0x0C;
    record.attrA = 0x92000091;
    record.mldVersion = 0x96000095;
    record.attrB = 0x98000097;
    record.smoothVersion = 0x99;
    record.pathFlags = 0x94000093;
    const uint8_t serviceStatus[2] = {0x9A, 0x9B};
    const uint8_t errCode[2] = {0x9C, 0x9D};
    const uint8_t attrC[12] = {0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7, 0xC8, 0xC9, 0xCA, 0xCB};
    std::memcpy(record.serviceStatus, serviceStatus, sizeof serviceStatus);
    std::memcpy(record.errCode, errCode, sizeof errCode);
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
    record.l2mcEnable = 0xB3B2B1B0;
    std::memcpy(record.attrC, attrC, sizeof attrC);
}

// -- every exit

const LogId config{0x0F2E1012};
const Effect released = allOf({line("release l2mc6_bd_enable obj1"), dfx(454)});

TableFamily<L2McBdEnableEntry> table({.name = "l2mc6_bd_enable",
                                      .rowSize = 68,
                                      .createStamp = 36,
                                      .key = kKey,
                                      .writtenRow = kWrittenRow,
                                      .storedRow = kStoredRow,
                                      .created = {dfx(452)},
                                      .createFailed = {dfx(453)},
                                      .released = released,
                                      .createObject = MCAST6_DB_CreateL2McBdEnableObject,
                                      .createIterator = MCAST6_DB_CreateL2McBdEnableIter},
                                     fillSample, readStored);

Operation read() {
    return table.read(
        "ReadL2McBdEnable", MCAST6_DB_ReadL2McBdEnable,
        {.null = {config("[MCAST6 DB]read l2 bd enable, para is null."), returns(1)},
         .createFailed = {config("[MCAST6 DB]read l2 bd enable, create object failed, ret:%u.", code), returns(code)},
         .failed = {released, config("[MCAST6 DB]read l2 bd enable, read object failed, ret:%u.", code), record(26, 0),
                    returns(code)},
         .answered = {{15005, {released, returns(60)}}},
         .done = {released, returns(0)}});
}

Operation write() {
    return table.write(
        "WriteL2McBdEnable", MCAST6_DB_WriteL2McBdEnable,
        {.null = {config("[MCAST6 DB]write l2 bd enable, para is null."), dfx(456), returns(1)},
         .createFailed = {config("[MCAST6 DB]write l2 bd enable, create object failed, ret:%u.", code), dfx(456),
                          returns(code)},
         .setFailed = {released, config("[MCAST6 DB]write l2 bd enable, set all fields failed, ret:%u.", code),
                       dfx(456), returns(code)},
         .failed = {released, config("[MCAST6 DB]write l2 bd enable, write object failed, ret:%u.", code),
                    record(26, 2), dfx(456), returns(code)},
         .answered = {{13044, {released, record(26, 1), dfx(455), returns(0)}}},
         .done = {released, dfx(455), returns(0)}});
}

// The setters for the sample.
std::vector<Call> updateSetters() {
    return {table.sets("mldVersion", 0x25262728),     table.sets("l2mcEnable", 0x71727374),
            table.setsBytes("serviceStatus", "4142"), table.setsBytes("errCode", "4344"),
            table.sets("smoothVersion", 0x31323334),  table.sets("pathFlags", 0x35363738),
            table.stamps("timeStampSmooth")};
}

// A failed setter does not stop the update.
Operation update() {
    const Effect updateFailed = config("[MCAST6 DB]update l2 bd enable, update object failed, ret:%u.", code);
    return table.update(
        "UpdateL2BdEnableCfg", MCAST6_DB_UpdateL2BdEnableCfg, updateSetters(),
        {.null = {config("[MCAST6 DB]update l2 bd enable, para is null."), returns(1)},
         .createFailed = {config("[MCAST6 DB]update l2 bd enable, create object failed. ret:%u.", code), returns(code)},
         .setFailed = {config("[MCAST6 DB]update l2 bd enable data, set field failed, ret:%u.", code),
                       line("update obj1 " + kKey), released, updateFailed, returns(code)},
         .failed = {released, updateFailed, returns(code)},
         .done = {released, returns(0)}});
}

Operation setUpdateFields() {
    return table.setFields(
        "SetBdEnableUpdateData", [] { return MCAST6_DB_SetBdEnableUpdateData(table.object, &table.record); },
        updateSetters(),
        {config("[MCAST6 DB]update l2 bd enable data, set field failed, ret:%u.", code), returns(code)});
}

Operation updateSmoothVersion() {
    const Effect createFailed =
        config("[MCAST6 DB]update l2 bd enable smoothing version, create object failed, ret:%u.", code);
    const Effect setFailed =
        config("[MCAST6 DB]update l2 bd enable smoothing version, set field failed, ret:%u.", code);
    const Effect updateFailed =
        config("[MCAST6 DB]update l2 bd enable smoothing version, update object failed, ret:%u.", code);
    return table.update(
        "UpdateL2McBdEnableSmoothVersion", MCAST6_DB_UpdateL2McBdEnableSmoothVersion,
        {table.sets("smoothVersion", 0x31323334), table.stamps("timeStampSmooth")},
        {.null = {config("[MCAST6 DB]update l2 bd enable smoothing version, para is null."), returns(1)},
         .createFailed = {createFailed, returns(code)},
         .setFailed = {setFailed, released, returns(code)},
         .failed = {released, updateFailed, record(26, 6), returns(code)},
         .answered = {{13044, {released, record(26, 1), returns(0)}}},
         .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove(
        "DeleteL2McBdEnable", MCAST6_DB_DeleteL2McBdEnable,
        {.null = {config("[MCAST6 DB]del l2 bd enable, para is null."), dfx(458), returns(1)},
         .createFailed = {config("[MCAST6 DB]del l2 bd enable, create object failed, ret:%u.", code), dfx(458),
                          returns(code)},
         .failed = {released, record(26, 4), config("[MCAST6 DB]del l2 bd enable, remove object failed, ret:%u.", code),
                    dfx(458), returns(code)},
         .answered = {{13044, {released, record(26, 1), dfx(457), returns(0)}}},
         .done = {released, dfx(457), returns(0)}});
}

Operation createIterator() {
    const Effect failed = config("[MCAST6 DB]create l2 bd enable iter failed.");
    return table.createIterator("CreateL2McBdEnableIter", MCAST6_DB_CreateL2McBdEnableIter, "none",
                                builtByTheFrame(released, {dfx(459), failed, returnsNull()}));
}

Operation getEntry() {
    const Effect nextFailed = config("[MCAST6 DB]get l2 bd enable entry, db root iterator next failed, ret:%d.", code);
    return table.getEntry("GetL2McBdEnableEntry", MCAST6_DB_GetL2McBdEnableEntry,
                          {.null = {config("[MCAST6 DB]get l2 bd enable entry, para is null."), returns(1)},
                           .nextFailed = {nextFailed, record(26, 9), returns(1)},
                           .readFailed = {config("[MCAST6 DB]get l2 bd enable entry, read obj failed, ret:%d.", code),
                                          record(26, 0), returns(1)}});
}

const Operation operations[] = {
    table.createObject("CreateL2McBdEnableObject", MCAST6_DB_CreateL2McBdEnableObject),
    table.releaseObject("ReleaseL2McBdEnableObject", MCAST6_DB_ReleaseL2McBdEnableObject),
    read(),
    write(),
    update(),
    setUpdateFields(),
    table.setFields("SetMldBdTimeStampOfUpdate", [] { return MCAST6_DB_SetMldBdTimeStamp(table.object, 0); },
                    {table.stamps("timeStampSmooth")}),
    updateSmoothVersion(),
    remove(),
    createIterator(),
    getEntry(),
    table.releaseIterator("ReleaseL2McBdEnableIterator", MCAST6_DB_ReleaseL2McBdEnableIterator),
};

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_enable, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class BdEnableTest : public SampleTest<L2McBdEnableEntry, fillSample> {};

TEST_F(BdEnableTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, kWrittenRow, MCAST6_DB_SetL2McBdEnable);
}

TEST_F(BdEnableTest, setReadsTheClockOnceForBothStamps) {
    expectStamps(table, MCAST6_DB_SetL2McBdEnable, record, kFirstTime + kFirstTime);
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
    expectRecord(table, MCAST6_DB_GetL2McBdEnable);
    MCAST6_DB_GetL2McBdEnable(unhex(kStoredRow).data(), &record);
    EXPECT_EQ(2u, record.addrType);
    EXPECT_EQ(1u, record.getFlag);
    EXPECT_EQ(0xE1E2E3E4u, record.spare1);
}

TEST_F(BdEnableTest, getAfterSetGivesWhatWasSet) {
    Bytes row(68);
    MCAST6_DB_SetL2McBdEnable(&record, row.data());
    L2McBdEnableEntry expected = table.sample();
    expected.addrType = 2;
    expected.getFlag = 1;
    expected.spare1 = 0x77777777;
    expected.timeStampCreate = 1'700'000'000;
    expected.timeStampSmooth = 1'700'000'000;
    L2McBdEnableEntry read = table.sample();
    read.spare1 = 0x77777777;
    read.attrA = 0;
    MCAST6_DB_GetL2McBdEnable(row.data(), &read);
    EXPECT_EQ(bytesOf(expected), bytesOf(read));
}

TEST_F(BdEnableTest, aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime) {
    expectStamping(table, MCAST6_DB_SetStructMldBdTimeStamp);
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
    EXPECT_THAT(table.stampMismatches(MCAST6_DB_SetMldBdTimeStamp), IsEmpty());
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
