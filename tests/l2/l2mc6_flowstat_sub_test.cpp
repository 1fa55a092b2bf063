// l2mc6_flowstat_sub. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          log; 1
//                    -             -            14; 0
// release object     -             -            released
// read               null          -            log; 1
//                    create 3      any          log; log with 1; 1
//                    read          15005        released; 60
//                                  other        released; log; the code
//                    -             -            record filled; released; 0
// write              null          -            log; 1
//                    create 0      any          log; log; 1
//                    set all       any          released; log; the code
//                    write         110024       released; 110024
//                                  other        log; released; the code (13044 too)
//                    -             -            released; 0
// remove             null          -            log; 1
//                    create 4      any          log; log; 1
//                    remove        13044        released; 0
//                                  other        released; log; 1
//                    -             -            released; 0
// update             null          -            log; 1
//                    create 1      any          log; log; 1
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// get entry          null          -            log; 1
//                    next          110012       60
//                                  other        log; error 9 of table 4; 1
//                    read          15005        60
//                                  other        log; 1
//                    -             -            record filled; 0
// create iterator,   create 5      any          log; log; null
//   by key, all      root iterator any          log; error 7; released; null
//                    property      any          log; released; null
//                    allocation    -            log; error 8; released; null
//                    -             -            handle
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// "released" counts 15, a successful create counts 14. Errors are recorded under table 10 unless said otherwise.
#include "mcast6_db/l2mc6_flowstat_sub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_db/context.h"
#include "tests/l2/flow_stat_sub_sample.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_flowstat_sub {

namespace {

using flow_stat_sub::fillSample;
using flow_stat_sub::kKey;
using flow_stat_sub::kStoredRow;
using testing::IsEmpty;

// Written at 1'700'000'000, the recorder's time; the caller's creation time is kept.
const std::string kWrittenRow = flow_stat_sub::kWrittenFields + digits("5857565554535251 00f1536500000000");

void readStored(FlowStatSubEntry& record) { flow_stat_sub::readStored(record, 0); }

// -- every exit

const LogId flows{0x0F2E1014};
const Effect released = allOf({line("release l2mc6_flowstat_sub obj1"), dfx(15)});

TableFamily<FlowStatSubEntry> table({.name = "l2mc6_flowstat_sub",
                                     .rowSize = 72,
                                     .createStamp = 56,
                                     .key = kKey,
                                     .writtenRow = kWrittenRow,
                                     .storedRow = kStoredRow,
                                     .created = {dfx(14)},
                                     .createFailed = {flows("[MCAST6 DB] flow stat create object fail, ret:%u", code)},
                                     .createAnswers = 1,
                                     .released = released,
                                     .createObject = MCAST6_DB_CreateFlowStatObject,
                                     .createIterator = MCAST6_DB_CreateL2FlowStatSubAllIter},
                                    fillSample, readStored);

Operation read() {
    return table.read(
        "ReadL2FlowStatSub", MCAST6_DB_ReadL2FlowStatSub,
        {.null = {flows("[MCAST6 DB] read flowstat fail, flowEntry is null"), returns(1)},
         .createFailed = {flows("[MCAST6 DB] read flowstat fail, create object fail, ret:%u", 1u), returns(1)},
         .failed = {released, flows("[MCAST6 DB] read object fail, ret:%u.", code), returns(code)},
         .answered = {{15005, {released, returns(60)}}},
         .done = {released, returns(0)}});
}

Operation write() {
    return table.write(
        "WriteL2FlowStatSub", MCAST6_DB_WriteL2FlowStatSub,
        {.null = {flows("[MCAST6 DB] write flowstat fail, flowEntry is null"), returns(1)},
         .createFailed = {flows("[MCAST6 DB] write flowstat fail, create object fail."), returns(1)},
         .setFailed = {released, flows("[MCAST6 DB] set_fall_fields failed, ret:%u", code), returns(code)},
         .failed = {flows("[MCAST6 DB] write object fail, ret:%u.", code), released, returns(code)},
         .answered = {{110024, {released, returns(110024)}}},
         .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove(
        "RemoveL2FlowStatSub", MCAST6_DB_RemoveL2FlowStatSub,
        {.null = {flows("[MCAST6 DB] remove flowstat fail, flowEntry is null"), returns(1)},
         .createFailed = {flows("[MCAST6 DB] remove flowstat object fail, create object fail."), returns(1)},
         .failed = {released, flows("[MCAST6 DB] remove object fail, ret:%u.", code), returns(1)},
         .answered = {{13044, {released, returns(0)}}},
         .done = {released, returns(0)}});
}

Operation update() {
    return table.update(
        "UpdateL2FlowStatSub", MCAST6_DB_UpdateL2FlowStatSub,
        {table.sets("smoothVersion", 0x31323334), table.stamps("timeStampSmooth")},
        {.null = {flows("[MCAST6 DB] update flowstat fail, flowEntry is null"), returns(1)},
         .createFailed = {flows("[MCAST6 DB] update flowstat object fail, create object fail."), returns(1)},
         .setFailed = {flows("[MCAST6 DB] set update item fail, ret:%u.", code), released, returns(code)},
         .failed = {released, flows("[MCAST6 DB] update object fail, ret:%u.", code), record(10, 6), returns(code)},
         .answered = {{13044, {released, returns(0)}}},
         .done = {released, returns(0)}});
}

Operation getEntry() {
    return table.getEntry(
        "GetL2FlowStatSubEntry", MCAST6_DB_GetL2FlowStatSubEntry,
        {.null = {flows("[MCAST6 DB] get flowstat fail, flowEntry is null"), returns(1)},
         .nextFailed = {flows("[MCAST6 DB] get flowstat fail, get next entry error. ret:%d", code), record(4, 9),
                        returns(1)},
         .readFailed = {flows("[MCAST6 DB] get flowstat fail, db_read_obj_with_buf fail, ret:%d.", code), returns(1)}});
}

IterExits iterExits() {
    const Effect rootIterFailed =
        flows("[MCAST6 DB] create l2mc flow stat iter failed, create root iter failed. ret:%d", code);
    return {.createFailed = {flows("[MCAST6 DB] create l2mc flow stat iter failed, create obj failed."), returnsNull()},
            .rootIterFailed = {rootIterFailed, record(10, 7), released, returnsNull()},
            .propertyFailed = {flows("[MCAST6 DB] set l2mc flow stat root iterator property fail, ret:%d.", code),
                               released, returnsNull()},
            .allocationFailed = {flows("[MCAST6 DB] create l2mc flow stat iter failed, malloc failed."), record(10, 8),
                                 released, returnsNull()}};
}

Operation createIterator() {
    return table.createIterator(
        "CreateL2FlowStatSubIter",
        [] {
            const Mcast6DbKeyDesc descriptor{0x00010028, {0, 0, 0}};
            uint8_t key[40] = {};
            for (uint8_t i = 0; i < 40; ++i) key[i] = i;
            return MCAST6_DB_CreateL2FlowStatSubIter(&descriptor, key);
        },
        "key=00010028:" + digits("00010203 04050607 08090a0b 0c0d0e0f 10111213 14151617 18191a1b 1c1d1e1f"
                                 "20212223 24252627"),
        iterExits());
}

const Operation operations[] = {
    table.setFields("SetL2FlowStatSubTimeStamp", [] { return MCAST6_DB_SetL2FlowStatSubTimeStamp(table.object, 0); },
                    {table.stamps("timeStampSmooth")}),
    table.createObject("CreateFlowStatObject", MCAST6_DB_CreateFlowStatObject),
    table.releaseObject("ReleaseFlowStatObject", MCAST6_DB_ReleaseFlowStatObject),
    read(),
    write(),
    remove(),
    update(),
    getEntry(),
    createIterator(),
    table.createIterator("CreateL2FlowStatSubAllIter", MCAST6_DB_CreateL2FlowStatSubAllIter, "none", iterExits()),
    table.releaseIterator("ReleaseL2FlowStatSubIter", MCAST6_DB_ReleaseL2FlowStatSubIter),
};

INSTANTIATE_TEST_SUITE_P(l2mc6_flowstat_sub, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class FlowstatSubTest : public SampleTest<FlowStatSubEntry, fillSample> {};

// The arguments in the order of the other tables.
void setFromRecord(const FlowStatSubEntry* from, void* row) { MCAST6_DB_SetL2FlowStatSubItem(row, from); }

TEST_F(FlowstatSubTest, setTakesTheRowFirstWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, kWrittenRow, setFromRecord);
}

TEST_F(FlowstatSubTest, aCreationTimeOf0IsReplacedByTheTimeOfTheWrite) {
    record.timeStampCreate = 0;
    expectStamps(table, setFromRecord, record, kFirstTime + kFirstTime);
}

TEST_F(FlowstatSubTest, aCreationTimeThatIsNot0IsKept) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, setFromRecord, record, "0000000000000080" + kFirstTime);
}

TEST_F(FlowstatSubTest, getWritesEveryFieldItsConstantsAndNothingElse) {
    expectRecord(table, MCAST6_DB_GetL2FlowStatSubItem);
}

TEST_F(FlowstatSubTest, theKeyHoldsTheAddressesInNetworkOrder) { expectKey(table, MCAST6_DB_SetL2FlowStatSubKey); }

TEST_F(FlowstatSubTest, theKeySetterAnswersWhatTheLastCopyOfAnAddressAnswers) {
    flow_stat_sub::expectTheLastCopyToBeAnswered(MCAST6_DB_SetL2FlowStatSubKey);
}

TEST_F(FlowstatSubTest, anObjectGetsBothStampsWhenAsked) {
    EXPECT_THAT(table.stampMismatches(MCAST6_DB_SetL2FlowStatSubTimeStamp), IsEmpty());
}

// -- edges

TEST_F(FlowstatSubTest, readingAnAbsentKeyIsSilentAndAnswers60) {
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, MCAST6_DB_ReadL2FlowStatSub(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_flowstat_sub 3 0 -> obj1",
                                    "dfx 14",
                                    "read obj1 " + kKey + " 72 -> 15005",
                                    "release l2mc6_flowstat_sub obj1",
                                    "dfx 15",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[10][0]);
}

TEST_F(FlowstatSubTest, aWriteAnsweredWith13044AnswersItAndLogsIt) {
    platform.answer("db_write_obj", 13044);
    EXPECT_EQ(13044u, MCAST6_DB_WriteL2FlowStatSub(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_flowstat_sub 0 0 -> obj1",
                                    "dfx 14",
                                    "set_all l2mc6_flowstat_sub obj1 " + kWrittenRow,
                                    "write obj1 -> 13044",
                                    "log 9 0x0F2E1014 \"[MCAST6 DB] write object fail, ret:13044.\"",
                                    "release l2mc6_flowstat_sub obj1",
                                    "dfx 15",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[10][1]);
}

TEST_F(FlowstatSubTest, aWriteToAFullTableAnswersItsCodeInSilence) {
    platform.answer("db_write_obj", 110024);
    EXPECT_EQ(110024u, MCAST6_DB_WriteL2FlowStatSub(&record));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

TEST_F(FlowstatSubTest, aReadGivesAddrType2AndGetFlag0) {
    flow_stat_sub::expectReadConstants(MCAST6_DB_ReadL2FlowStatSub, 2, 0);
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_flowstat_sub
