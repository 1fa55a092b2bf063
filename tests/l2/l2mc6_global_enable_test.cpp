// l2mc6_global_enable. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          log; 1
//                    -             -            37; 0
// release object     -             -            released
// write              null          -            KPI 50; 1
//                    create 0      any          log; KPI 50; 1
//                    set all       any          released; KPI 50; 1
//                    write         any          log; released; KPI 50; 1 (13044 too)
//                    -             -            released; KPI 49; 0
// update             null          -            KPI 50; 1
//                    create 1      any          log; KPI 50; 1
//                    4 setters     any          log; released; KPI 50; 1
//                    update        13044        released; KPI 49; 0
//                                  other        released; log; KPI 50; 1
//                    -             -            released; KPI 49; 0
// smooth version     null          -            KPI 50; log; 1
//                    create 1      any          log; log; KPI 50; 1
//                    2 setters     any          released; KPI 50; log; 1
//                    update        13044        released; KPI 49; 0
//                                  other        released; log; KPI 50; 1
//                    -             -            released; KPI 49; 0
// read               null          -            1
//                    create 3      any          log; 1
//                    read          15005        released; 60
//                                  other        released; log; 1
//                    -             -            record filled; released; 0
// remove             null          -            KPI 52; 1
//                    create 4      any          log; KPI 52; 1
//                    remove        13044        released; KPI 51; 0
//                                  other        released; KPI 52; log; 1
//                    -             -            released; KPI 51; 0
// create iterator    create 5      any          log; null
//                    root iterator any          released; null
//                    property      any          released; log; null
//                    allocation    -            released; error 8; log; null
//                    -             -            handle
// get entry          null          -            1
//                    next          110012       60
//                                  other        log; 1
//                    read          15005        60
//                                  other        log; 1
//                    -             -            record filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
// count              create 9      any          log; 1
//                    count         any          released; the code
//                    -             -            released; count filled; 0
//
// "released" counts 38, a successful create counts 37. The error is recorded under table 3.
#include "mcast6_db/l2mc6_global_enable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_global_enable {

namespace {

using testing::IsEmpty;

// -- the sample: a record with different bytes in each field, and its rows

void fillSample(MldGlobalEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.keyId1 = 0x01020304;
    record.keyId2 = 0x05060708;
    record.cfgWord1 = 0x11121314;
    record.smoothVersion = 0x31323334;
    const uint8_t serviceStatus[2] = {0x41, 0x42};
    const uint8_t errCode[2] = {0x43, 0x44};
    std::memcpy(record.serviceStatus, serviceStatus, sizeof serviceStatus);
    std::memcpy(record.errCode, errCode, sizeof errCode);
    record.timeStampCreate = 0x5152535455565758;
    record.timeStampSmooth = 0x6162636465666768;
}

const std::string kKey = "key=00010008:" + digits("04030201 08070605");

// Written at 1'700'000'000, the recorder's time.
const std::string kWrittenRow = digits(
    "04030201 08070605"                    // keyId1, keyId2
    "14131211 34333231 4142 4344"          // cfgWord1, smoothVersion, serviceStatus, errCode
    "5857565554535251 00f1536500000000");  // timeStampCreate, which is kept, timeStampSmooth

const std::string kStoredRow = digits(
    "91000092 93000094"                    // keyId1, keyId2
    "95000096 97000098 9a9b 9c9d"          // cfgWord1, smoothVersion, serviceStatus, errCode
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");  // timeStampCreate, timeStampSmooth

void readStored(MldGlobalEntry& record) {
    record.keyId1 = 0x92000091;
    record.keyId2 = 0x94000093;
    record.cfgWord1 = 0x96000095;
    record.smoothVersion = 0x98000097;
    const uint8_t serviceStatus[2] = {0x9A, 0x9B};
    const uint8_t errCode[2] = {0x9C, 0x9D};
    std::memcpy(record.serviceStatus, serviceStatus, sizeof serviceStatus);
    std::memcpy(record.errCode, errCode, sizeof errCode);
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
}

// -- every exit

const LogId config{0x0F2E1012};
const Effect released = allOf({line("release l2mc6_global_enable obj1"), dfx(38)});

TableFamily<MldGlobalEntry> table({.name = "l2mc6_global_enable",
                                   .rowSize = 36,
                                   .createStamp = 20,
                                   .key = kKey,
                                   .writtenRow = kWrittenRow,
                                   .storedRow = kStoredRow,
                                   .created = {dfx(37)},
                                   .createFailed = {config("[MCAST6 DB] mld global enable create object fail, ret:%u.",
                                                           code)},
                                   .createAnswers = 1,
                                   .released = released,
                                   .createObject = MCAST6_DB_CreateMldGlobalObject,
                                   .createIterator = MCAST6_DB_CreateMldGlbCfgIter},
                                  fillSample, readStored);

Operation write() {
    return table.write(
        "WriteMldGlobal", MCAST6_DB_WriteMldGlobal,
        {.null = {kpi(50), returns(1)},
         .createFailed = {kpi(50), returns(1)},
         .setFailed = {released, kpi(50), returns(1)},
         .failed = {config("[MCAST6 DB] write object fail, ret:%u.", code), released, kpi(50), returns(1)},
         .done = {released, kpi(49), returns(0)}});
}

Operation update() {
    return table.update(
        "UpdateMldGlobal", MCAST6_DB_UpdateMldGlobal,
        {table.setsBytes("serviceStatus", "4142"), table.sets("smoothVersion", 0x31323334),
         table.setsBytes("errCode", "4344"), table.stamps("timeStampSmooth")},
        {.null = {kpi(50), returns(1)},
         .createFailed = {kpi(50), returns(1)},
         .setFailed = {config("[MCAST6 DB] set update item fail, ret:%u.", code), released, kpi(50), returns(1)},
         .failed = {released, config("[MCAST6 DB] update object fail, ret:%u.", code), kpi(50), returns(1)},
         .answered = {{13044, {released, kpi(49), returns(0)}}},
         .done = {released, kpi(49), returns(0)}});
}

Operation updateSmoothVersion() {
    const Effect setFailed = config("[MCAST6 DB] mld glb enable smoothversion set update item fail, ret:%u.", code);
    return table.update(
        "UpdateMldGlobalSmoothVersion", MCAST6_DB_UpdateMldGlobalSmoothVersion,
        {table.sets("smoothVersion", 0x31323334), table.stamps("timeStampSmooth")},
        {.null = {kpi(50), config("[MCAST6 DB] mld glb enable smoothversion data is null."), returns(1)},
         .createFailed = {config("[MCAST6 DB] mld glb enable smoothversion create object fail."), kpi(50), returns(1)},
         .setFailed = {released, kpi(50), setFailed, returns(1)},
         .failed = {released, config("[MCAST6 DB] update mld glb enable smooth version fail, ret:%u.", code), kpi(50),
                    returns(1)},
         .answered = {{13044, {released, kpi(49), returns(0)}}},
         .done = {released, kpi(49), returns(0)}});
}

Operation read() {
    return table.read("ReadMldGlobal", MCAST6_DB_ReadMldGlobal,
                      {.null = {returns(1)},
                       .createFailed = {returns(1)},
                       .failed = {released, config("[MCAST6 DB] read object fail, ret:%u.", code), returns(1)},
                       .answered = {{15005, {released, returns(60)}}},
                       .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove(
        "RemoveMldGlobal", MCAST6_DB_RemoveMldGlobal,
        {.null = {kpi(52), returns(1)},
         .createFailed = {kpi(52), returns(1)},
         .failed = {released, kpi(52), config("[MCAST6 DB] remove object fail, ret:%u.", code), returns(1)},
         .answered = {{13044, {released, kpi(51), returns(0)}}},
         .done = {released, kpi(51), returns(0)}});
}

Operation createIterator() {
    return table.createIterator(
        "CreateMldGlbCfgIter", MCAST6_DB_CreateMldGlbCfgIter, "none",
        {.createFailed = {returnsNull()},
         .rootIterFailed = {released, returnsNull()},
         .propertyFailed = {released, config("[MCAST6 DB] set mldGlb cfg root iterator property fail, ret:%d.", code),
                            returnsNull()},
         .allocationFailed = {released, record(3, 8),
                              config("[MCAST6 DB] create MldGlb cfg iterator error. malloc mem failed."),
                              returnsNull()}});
}

Operation getEntry() {
    return table.getEntry(
        "GetMldGlbEntry", MCAST6_DB_GetMldGlbEntry,
        {.null = {returns(1)},
         .nextFailed = {config("[MCAST6 DB] get mld global cfg iterator error. ret:%d", code), returns(1)},
         .readFailed = {config("[MCAST6 DB] get mld global cfg db entry fail, ret:%d.", code), returns(1)}});
}

Operation count() {
    return table.countAll(
        "GetMldGlbCfgCount", MCAST6_DB_GetMldGlbCfgCount,
        {.createFailed = {returns(1)}, .failed = {released, returns(code)}, .done = {released, returns(0)}});
}

const Operation operations[] = {
    table.setFields("SetMldGlbTimeStamp", [] { return MCAST6_DB_SetMldGlbTimeStamp(table.object, 0); },
                    {table.stamps("timeStampSmooth")}),
    table.createObject("CreateMldGlobalObject", MCAST6_DB_CreateMldGlobalObject),
    table.releaseObject("ReleaseMldGlobalObject", MCAST6_DB_ReleaseMldGlobalObject),
    write(),
    update(),
    updateSmoothVersion(),
    read(),
    remove(),
    createIterator(),
    getEntry(),
    table.releaseIterator("ReleaseMldGlbCfgIter", MCAST6_DB_ReleaseMldGlbCfgIter),
    count(),
};

INSTANTIATE_TEST_SUITE_P(l2mc6_global_enable, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class GlobalEnableTest : public SampleTest<MldGlobalEntry, fillSample> {};

TEST_F(GlobalEnableTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, kWrittenRow, MCAST6_DB_SetMldGlbItem);
}

TEST_F(GlobalEnableTest, aCreationTimeOf0IsReplacedByTheTimeOfTheWrite) {
    record.timeStampCreate = 0;
    expectStamps(table, MCAST6_DB_SetMldGlbItem, record, kFirstTime + kFirstTime);
}

TEST_F(GlobalEnableTest, aCreationTimeThatIsNot0IsKept) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, MCAST6_DB_SetMldGlbItem, record, "0000000000000080" + kFirstTime);
}

TEST_F(GlobalEnableTest, getWritesEveryFieldAndNothingElse) { expectRecord(table, MCAST6_DB_GetMldGlbItem); }

TEST_F(GlobalEnableTest, theKeyIsTheTwoWords) { expectKey(table, MCAST6_DB_SetMldGlbKey); }

TEST_F(GlobalEnableTest, anObjectGetsBothStampsWhenAsked) {
    EXPECT_THAT(table.stampMismatches(MCAST6_DB_SetMldGlbTimeStamp), IsEmpty());
}

// -- edges

TEST_F(GlobalEnableTest, aFailingSetterSkipsTheUpdate) {
    platform.answer("db_set_l2mc6_global_enable_serviceStatus", 0x100);
    platform.answer("db_set_l2mc6_global_enable_errCode", 0x10);
    EXPECT_EQ(1u, MCAST6_DB_UpdateMldGlobal(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_global_enable 1 0 -> obj1",
                                    "dfx 37",
                                    "set l2mc6_global_enable.serviceStatus obj1 4142 -> 256",
                                    "set l2mc6_global_enable.smoothVersion obj1 825373492",
                                    "set l2mc6_global_enable.errCode obj1 4344 -> 16",
                                    "set l2mc6_global_enable.timeStampSmooth obj1 1700000000",
                                    "log 9 0x0F2E1012 \"[MCAST6 DB] set update item fail, ret:272.\"",
                                    "release l2mc6_global_enable obj1",
                                    "dfx 38",
                                    "kpi 50",
                                }));
}

TEST_F(GlobalEnableTest, aWriteRefuses13044ThatUpdateAndRemovalAccept) {
    platform.answerAlways("db_write_obj", 13044);
    platform.answerAlways("db_update_obj", 13044);
    platform.answerAlways("db_remove_obj", 13044);
    EXPECT_EQ(0u, MCAST6_DB_UpdateMldGlobal(&record));
    EXPECT_EQ(0u, MCAST6_DB_UpdateMldGlobalSmoothVersion(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveMldGlobal(&record));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(1u, MCAST6_DB_WriteMldGlobal(&record));
    EXPECT_EQ("[MCAST6 DB] write object fail, ret:%u.", platform.logFormats().back());
    EXPECT_EQ(2u, platform.kpi(49));
    EXPECT_EQ(1u, platform.kpi(50));
    EXPECT_EQ(1u, platform.kpi(51));
    EXPECT_EQ(0u, g_mcast6DbErrStat[3][1]);
}

TEST_F(GlobalEnableTest, aFailedCountLeavesThePlaceOfTheCountAlone) {
    uint32_t count = 0xDEADBEEF;
    platform.fillNextCount(7);
    platform.answer("db_get_table_record_count", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_GetMldGlbCfgCount(&count));
    EXPECT_EQ(0xDEADBEEFu, count);
    EXPECT_EQ(0u, MCAST6_DB_GetMldGlbCfgCount(&count));
    EXPECT_EQ(7u, count);
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_global_enable
