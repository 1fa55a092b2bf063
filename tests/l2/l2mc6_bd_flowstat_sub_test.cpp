// l2mc6_bd_flowstat_sub. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          391; the code
//                    -             -            390; 0
// release object     -             -            released
// read               null          -            log; 1
//                    create 3      any          391; log; the code
//                    read          15005        released; 15005
//                                  other        log; error 0; released; the code
//                    -             -            record filled; released; 0
// write              null          -            log; 395; 1
//                    create 0      any          391; log; 395; the code
//                    set all       any          released; log; 395; the code
//                    write         13044        released; error 1; 394; 0
//                                  110024       released; 393; error 2; 395; 110024
//                                  other        released; log; error 2; 395; the code
//                    -             -            released; 394; 0
// smooth version     null          -            log; 1
//                    create 1      any          391; log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; 397; 1
//                    create 4      any          391; log; 397; the code
//                    remove        13044        released; error 1; 396; 0
//                                  other        released; error 4; log; 397; the code
//                    -             -            released; 396; 0
// get entry          null          -            log; 1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// create iterator    create 5      any          391; 398; null
//   common           root iterator any          released; 398; null
//                    property      any          released; 398; null
//                    allocation    -            released; 398; null
//                    -             -            handle
//   by srcPid, all   any           any          as common, then log
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// "released" counts 392, a successful create counts 390. Errors are recorded under table 23.
#include "mcast6_db/l2mc6_bd_flowstat_sub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_db/context.h"
#include "tests/l2/flow_stat_sub_sample.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_bd_flowstat_sub {

namespace {

using flow_stat_sub::fillSample;
using flow_stat_sub::kKey;
using flow_stat_sub::kStoredRow;
using testing::IsEmpty;

// Written at 1'700'000'000, the recorder's time; the caller's time stamps are ignored.
const std::string kWrittenRow = flow_stat_sub::kWrittenFields + digits("00f1536500000000 00f1536500000000");

void readStored(FlowStatSubEntry& record) { flow_stat_sub::readStored(record, 1); }

// keyId1, srcPid, cfgWord3
const std::string kSrcPidKey = "key=0209000c:" + digits("04030201 14131211 28272625");

// -- every exit

const LogId flows{0x0F2E1014};
const Effect released = allOf({line("release l2mc6_bd_flowstat_sub obj1"), dfx(392)});

TableFamily<FlowStatSubEntry> table({.name = "l2mc6_bd_flowstat_sub",
                                     .rowSize = 72,
                                     .createStamp = 56,
                                     .key = kKey,
                                     .writtenRow = kWrittenRow,
                                     .storedRow = kStoredRow,
                                     .created = {dfx(390)},
                                     .createFailed = {dfx(391)},
                                     .createAnswers = code,
                                     .released = released,
                                     .createObject = MCAST6_DB_CreateL2McBdFlowstatSubObject,
                                     .createIterator = MCAST6_DB_CreateL2McBdFlowstatSubIter},
                                    fillSample, readStored);

Operation read() {
    return table.read(
        "ReadL2McBdFlowstatSub", MCAST6_DB_ReadL2McBdFlowstatSub,
        {.null = {flows("[MCAST6 DB]read l2 bd flow stat failed, para is null."), returns(1)},
         .createFailed = {flows("[MCAST6 DB]read l2 bd flow stat, create object failed, ret:%u.", code), returns(code)},
         .failed = {flows("[MCAST6 DB]read l2 bd flow stat, read object failed, ret:%u", code), record(23, 0), released,
                    returns(code)},
         .answered = {{15005, {released, returns(15005)}}},
         .done = {released, returns(0)}});
}

Operation write() {
    return table.write(
        "WriteL2McBdFlowstatSub", MCAST6_DB_WriteL2McBdFlowstatSub,
        {.null = {flows("[MCAST6 DB]write l2 bd flow stat, para is null."), dfx(395), returns(1)},
         .createFailed = {flows("[MCAST6 DB]write l2 bd flow stat, create object failed, ret:%u.", code), dfx(395),
                          returns(code)},
         .setFailed = {released, flows("[MCAST6 DB]write l2 bd flow stat, set all field failed, ret:%u.", code),
                       dfx(395), returns(code)},
         .failed = {released, flows("[MCAST6 DB]write l2 bd flow stat, write object failed, ret:%u.", code),
                    record(23, 2), dfx(395), returns(code)},
         .answered = {{13044, {released, record(23, 1), dfx(394), returns(0)}},
                      {110024, {released, dfx(393), record(23, 2), dfx(395), returns(110024)}}},
         .done = {released, dfx(394), returns(0)}});
}

Operation updateSmoothVersion() {
    const Effect setFailed = flows("[MCAST6 DB]l2 bd flow stat upd version, set smooth version failed, ret:%u.", code);
    const Effect updateFailed = flows("[MCAST6 DB]l2 bd flow stat upd version, update object failed, ret:%u.", code);
    return table.update(
        "UpdateL2McBdFlowstatSubSmoothVersion", MCAST6_DB_UpdateL2McBdFlowstatSubSmoothVersion,
        {table.sets("smoothVersion", 0x31323334), table.stamps("timeStampSmooth")},
        {.null = {flows("[MCAST6 DB]l2 bd flow stat upd version, para is null."), returns(1)},
         .createFailed = {flows("[MCAST6 DB]l2 bd flow stat upd version, create object failed, ret:%u.", code),
                          returns(code)},
         .setFailed = {setFailed, released, returns(code)},
         .failed = {released, updateFailed, record(23, 6), returns(code)},
         .answered = {{13044, {released, record(23, 1), returns(0)}}},
         .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove("DeleteL2McBdFlowstatSub", MCAST6_DB_DeleteL2McBdFlowstatSub,
                        {.null = {flows("[MCAST6 DB]l2 bd flow stat del, para is null."), dfx(397), returns(1)},
                         .createFailed = {flows("[MCAST6 DB]l2 bd flow stat del, create object failed, ret:%u.", code),
                                          dfx(397), returns(code)},
                         .failed = {released, record(23, 4),
                                    flows("[MCAST6 DB]l2 bd flow stat del, remove object failed, ret:%u.", code),
                                    dfx(397), returns(code)},
                         .answered = {{13044, {released, record(23, 1), dfx(396), returns(0)}}},
                         .done = {released, dfx(396), returns(0)}});
}

Operation getEntry() {
    const Effect nextFailed =
        flows("[MCAST6 DB]l2 bd flow stat get entry, db root iterator next failed, ret:%d.", code);
    return table.getEntry("GetL2McBdFlowstatSubEntry", MCAST6_DB_GetL2McBdFlowstatSubEntry,
                          {.null = {flows("[MCAST6 DB]l2 bd flow stat get entry, para is null."), returns(1)},
                           .nextFailed = {nextFailed, record(23, 9), returns(1)},
                           .readFailed = {flows("[MCAST6 DB]l2 bd flow stat get entry, read obj failed, ret:%d.", code),
                                          record(23, 0), returns(1)}});
}

Operation createIteratorCommon() {
    return table.createIterator(
        "CreateL2McBdFlowstatSubIterCommon",
        [] {
            const Mcast6DbKeyDesc descriptor{0x0209000C, {0, 0, 0}};
            const uint32_t key[3] = {0x0A, 0x0B, 0x0C};
            return MCAST6_DB_CreateL2McBdFlowstatSubIterCommon(&descriptor, key);
        },
        "key=0209000c:0a0000000b0000000c000000", builtByTheFrame(released, {dfx(398), returnsNull()}));
}

Operation createIteratorBySrcPid() {
    const Effect failed = flows("[MCAST6 DB]l2 bd flow stat create iter by srcPid failed.");
    return table.createIterator(
        "CreateL2McBdFlowstatSubIterBySrcPid",
        [] { return MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(&table.record); }, kSrcPidKey,
        builtByTheFrame(released, {dfx(398), failed, returnsNull()}));
}

Operation createIterator() {
    const Effect failed = flows("[MCAST6 DB]l2 bd flow stat create all iter failed.");
    return table.createIterator("CreateL2McBdFlowstatSubIter", MCAST6_DB_CreateL2McBdFlowstatSubIter, "none",
                                builtByTheFrame(released, {dfx(398), failed, returnsNull()}));
}

const Operation operations[] = {
    table.createObject("CreateL2McBdFlowstatSubObject", MCAST6_DB_CreateL2McBdFlowstatSubObject),
    table.releaseObject("ReleaseL2McBdFlowstatSubObject", MCAST6_DB_ReleaseL2McBdFlowstatSubObject),
    read(),
    write(),
    updateSmoothVersion(),
    remove(),
    getEntry(),
    createIteratorCommon(),
    createIteratorBySrcPid(),
    createIterator(),
    table.releaseIterator("ReleaseL2McBdFlowstatSubIterator", MCAST6_DB_ReleaseL2McBdFlowstatSubIterator),
};

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_flowstat_sub, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class BdFlowstatSubTest : public SampleTest<FlowStatSubEntry, fillSample> {};

TEST_F(BdFlowstatSubTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, kWrittenRow, MCAST6_DB_SetL2McBdFlowstatSub);
}

TEST_F(BdFlowstatSubTest, setReadsTheClockOnceForBothStampsWhateverTheCallerGives) {
    expectStamps(table, MCAST6_DB_SetL2McBdFlowstatSub, record, kFirstTime + kFirstTime);
}

TEST_F(BdFlowstatSubTest, aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime) {
    expectStamping(table, MCAST6_DB_SetStructL2McBdFlowstatSubTimeStamp);
}

TEST_F(BdFlowstatSubTest, getWritesEveryFieldItsConstantsAndNothingElse) {
    expectRecord(table, MCAST6_DB_GetL2McBdFlowstatSub);
}

TEST_F(BdFlowstatSubTest, theKeyHoldsTheAddressesInNetworkOrder) {
    expectKey(table, MCAST6_DB_SetL2McBdFlowstatSubKey);
}

TEST_F(BdFlowstatSubTest, theKeySetterAnswersWhatTheLastCopyOfAnAddressAnswers) {
    flow_stat_sub::expectTheLastCopyToBeAnswered(MCAST6_DB_SetL2McBdFlowstatSubKey);
}

// -- edges

TEST_F(BdFlowstatSubTest, readingAnAbsentKeyAnswers15005AndRecordsNothing) {
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL2McBdFlowstatSub(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_bd_flowstat_sub 3 0 -> obj1",
                                    "dfx 390",
                                    "read obj1 " + kKey + " 72 -> 15005",
                                    "release l2mc6_bd_flowstat_sub obj1",
                                    "dfx 392",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[23][0]);
}

TEST_F(BdFlowstatSubTest, aWriteToAFullTableIsCountedTwiceAndNotLogged) {
    platform.answer("db_write_obj", 110024);
    EXPECT_EQ(110024u, MCAST6_DB_WriteL2McBdFlowstatSub(&record));
    EXPECT_EQ(1u, platform.dfx(393));
    EXPECT_EQ(1u, platform.dfx(395));
    EXPECT_EQ(0u, platform.dfx(394));
    EXPECT_EQ(1u, g_mcast6DbErrStat[23][2]);
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

TEST_F(BdFlowstatSubTest, aReadGivesAddrType2AndGetFlag1) {
    flow_stat_sub::expectReadConstants(MCAST6_DB_ReadL2McBdFlowstatSub, 2, 1);
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_bd_flowstat_sub
