// l2mc6_vlan_port. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          log; 1
//                    -             -            21; 0
// release object     -             -            released
// read               null          -            log; 1
//                    create 3      any          log; log; 1
//                    read          15005        released; 60
//                                  other        released; log; 1
//                    -             -            record filled; released; 0
// write              null          -            log; 1
//                    create 0      any          log; log; 1
//                    set all       any          released; 1
//                    write         any          released; log; 1 (13044 too)
//                    -             -            released; 0
// remove             null          -            log; 1
//                    create 4      any          log; log; 1
//                    remove        13044        released; 0
//                                  other        released; log; 1
//                    -             -            released; 0
// update             null          -            log; 1
//                    create 1      any          log; log; 1
//                    4 setters     any          log; released; 1
//                    update        13044        released; 0
//                                  other        released; log; error 6; 1
//                    -             -            released; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; log; 1
//                    1 setter      any          log; released; 1
//                    update        13044        released; error 1; 0
//                                  other        released; the setter's log; error 6; 1
//                    -             -            released; 0
// create iterator    create 5      any          log; log; null
//                    root iterator any          log; error 7; released; null
//                    property      any          released; log; null
//                    allocation    -            released; log; error 8; null
//                    -             -            handle
// get entry          null          -            log; 1
//                    next          110012       60
//                                  other        log; error 9 of table 4; 1
//                    read          15005        60
//                                  other        log; 1
//                    -             -            record filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// "released" counts 22, a successful create counts 21. Errors are recorded under table 9 unless said otherwise.
#include "mcast6_db/l2mc6_vlan_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_vlan_port {

namespace {

using testing::IsEmpty;

// -- the sample: a record with different bytes in each field, and its rows

void fillSample(VlanPortEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.keyId1 = 0x01020304;
    record.portAttr = 0x05060708;
    record.spare1 = 0xE1E2E3E4;
    record.vlanId = 0xF1F21112;  // 16 bits are stored
    record.spare2 = 0xE5E6E7E8;
    record.keyId3 = 0x1314;
    record.keyId4 = 0x21222324;
    const uint8_t spare3[16] = {0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7,
                                0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xCD, 0xCE, 0xCF};
    std::memcpy(record.spare3, spare3, sizeof spare3);
    record.cfgWord1 = 0x25262728;
    record.smoothVersion = 0x31323334;
    record.serviceStatus = 0x35363738;
    record.errCode = 0x41424344;
    record.timeStampCreate = 0x5152535455565758;
    record.timeStampSmooth = 0x6162636465666768;
}

const std::string kKey = "key=0001000c:" + digits("04030201 1211 1413 24232221");

// Written at 1'700'000'000, the recorder's time.
const std::string kWrittenRow = digits(
    "04030201 1211 1413 24232221"          // keyId1, vlanId, keyId3, keyId4
    "08070605 28272625 34333231"           // portAttr, cfgWord1, smoothVersion
    "38373635 44434241"                    // serviceStatus, errCode
    "5857565554535251 00f1536500000000");  // timeStampCreate, which is kept, timeStampSmooth

const std::string kStoredRow = digits(
    "91000092 9394 9596 97000098"          // keyId1, vlanId, keyId3, keyId4
    "99000000 9a00009b 9c00009d"           // portAttr, cfgWord1, smoothVersion
    "9e00009f b0b1b2b3"                    // serviceStatus, errCode
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");  // timeStampCreate, timeStampSmooth

void readStored(VlanPortEntry& record) {
    record.keyId1 = 0x92000091;
    record.portAttr = 0x99;
    record.spare1 = 0;
    record.vlanId = 0x9493;
    record.spare2 = 0;
    record.keyId3 = 0x9695;
    record.keyId4 = 0x98000097;
    record.cfgWord1 = 0x9B00009A;
    record.smoothVersion = 0x9D00009C;
    record.serviceStatus = 0x9F00009E;
    record.errCode = 0xB3B2B1B0;
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
}

// -- every exit

const LogId ports{0x0F2E100F};
const Effect released = allOf({line("release l2mc6_vlan_port obj1"), dfx(22)});

TableFamily<VlanPortEntry> table({.name = "l2mc6_vlan_port",
                                  .rowSize = 48,
                                  .createStamp = 32,
                                  .key = kKey,
                                  .writtenRow = kWrittenRow,
                                  .storedRow = kStoredRow,
                                  .created = {dfx(21)},
                                  .createFailed = {ports("[MCAST6 DB] vlan port create object fail, ret:%u", code)},
                                  .createAnswers = 1,
                                  .released = released,
                                  .createObject = MCAST6_DB_CreateVlanPortObject,
                                  .createIterator = MCAST6_DB_CreateVlanPortIter},
                                 fillSample, readStored);

Operation read() {
    return table.read("ReadVlanPort", MCAST6_DB_ReadVlanPort,
                      {.null = {ports("[MCAST6 DB] read vlan port fail, portEntry is null"), returns(1)},
                       .createFailed = {ports("[MCAST6 DB] read vlan port fail, create object fail."), returns(1)},
                       .failed = {released, ports("[MCAST6 DB] read vlan port object fail, ret:%u.", code), returns(1)},
                       .answered = {{15005, {released, returns(60)}}},
                       .done = {released, returns(0)}});
}

Operation write() {
    return table.write("WriteVlanPort", MCAST6_DB_WriteVlanPort,
                       {.null = {ports("[MCAST6 DB] write vlan port fail, portEntry is null"), returns(1)},
                        .createFailed = {ports("[MCAST6 DB] write vlan port fail, create object fail."), returns(1)},
                        .setFailed = {released, returns(1)},
                        .failed = {released, ports("[MCAST6 DB] write object fail, ret:%u.", code), returns(1)},
                        .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove("RemoveVlanPort", MCAST6_DB_RemoveVlanPort,
                        {.null = {ports("[MCAST6 DB] remove vlan port fail, portEntry is null"), returns(1)},
                         .createFailed = {ports("[MCAST6 DB] remove vlan port fail, create object fail."), returns(1)},
                         .failed = {released, ports("[MCAST6 DB] remove object fail, ret:%u.", code), returns(1)},
                         .answered = {{13044, {released, returns(0)}}},
                         .done = {released, returns(0)}});
}

Operation update() {
    return table.update(
        "UpdateVlanPort", MCAST6_DB_UpdateVlanPort,
        {table.sets("smoothVersion", 0x31323334), table.sets("serviceStatus", 0x35363738),
         table.sets("errCode", 0x41424344), table.stamps("timeStampSmooth")},
        {.null = {ports("[MCAST6 DB] update vlan port fail, portEntry is null"), returns(1)},
         .createFailed = {ports("[MCAST6 DB] update vlan port fail, create object fail."), returns(1)},
         .setFailed = {ports("[MCAST6 DB] update vlan port fail, set update item fail, ret:%u.", code), released,
                       returns(1)},
         .failed = {released, ports("[MCAST6 DB] update object fail, ret:%u.", code), record(9, 6), returns(1)},
         .answered = {{13044, {released, returns(0)}}},
         .done = {released, returns(0)}});
}

Operation updateSmoothVersion() {
    return table.update(
        "UpdateVlanPortSmoothVersion", MCAST6_DB_UpdateVlanPortSmoothVersion, {table.sets("smoothVersion", 0x31323334)},
        {.null = {ports("[MCAST6 DB] update db vlan port object failed, param is null."), returns(1)},
         .createFailed = {ports("[MCAST6 DB] update vlan port failed, create db object failed."), returns(1)},
         .setFailed = {ports("[MCAST6 DB] update vlan port failed, create db object failed. ret:%u.", code), released,
                       returns(1)},
         .failed = {released, ports("[MCAST6 DB] update vlan port failed, create db object failed. ret:%u.", code),
                    record(9, 6), returns(1)},
         .answered = {{13044, {released, record(9, 1), returns(0)}}},
         .done = {released, returns(0)}});
}

Operation createIterator() {
    const Effect propertyFailed = ports(
        "[MCAST6 DB] create l2mc vlan port iter failed, set l2mc vlan port root iterator property fail, ret:%d.", code);
    return table.createIterator(
        "CreateVlanPortIter", MCAST6_DB_CreateVlanPortIter, "none",
        {.createFailed = {ports("[MCAST6 DB] create l2mc6 vlan port iter failed, create obj failed."), returnsNull()},
         .rootIterFailed = {ports("[MCAST6 DB] create l2mc vlan port iter failed, create root iter failed. ret:%d",
                                  code),
                            record(9, 7), released, returnsNull()},
         .propertyFailed = {released, propertyFailed, returnsNull()},
         .allocationFailed = {released, ports("[MCAST6 DB] create l2mc vlan port iter failed, malloc failed."),
                              record(9, 8), returnsNull()}});
}

Operation getEntry() {
    return table.getEntry(
        "GetVlanPortEntry", MCAST6_DB_GetVlanPortEntry,
        {.null = {ports("[MCAST6 DB] get vlan port fail, portEntry is null"), returns(1)},
         .nextFailed = {ports("[MCAST6 DB] get vlan port fail, get next object entry error. ret:%d", code),
                        record(4, 9), returns(1)},
         .readFailed = {ports("[MCAST6 DB] get vlan port fail, db_read_obj_with_buf fail, ret:%d.", code),
                        returns(1)}});
}

const Operation operations[] = {
    table.createObject("CreateVlanPortObject", MCAST6_DB_CreateVlanPortObject),
    table.releaseObject("ReleaseVlanPortObject", MCAST6_DB_ReleaseVlanPortObject),
    read(),
    write(),
    remove(),
    update(),
    updateSmoothVersion(),
    table.setFields("SetVlanPortTimeStamp", [] { return MCAST6_DB_SetVlanPortTimeStamp(table.object, 0); },
                    {table.stamps("timeStampSmooth")}),
    createIterator(),
    getEntry(),
    table.releaseIterator("ReleaseVlanPortIter", MCAST6_DB_ReleaseVlanPortIter),
};

INSTANTIATE_TEST_SUITE_P(l2mc6_vlan_port, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class VlanPortTest : public SampleTest<VlanPortEntry, fillSample> {};

TEST_F(VlanPortTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, kWrittenRow, MCAST6_DB_SetVlanPortItem);
}

TEST_F(VlanPortTest, setReadsTheClockOnceForBothStampsWhenNoCreationTimeIsGiven) {
    record.timeStampCreate = 0;
    expectStamps(table, MCAST6_DB_SetVlanPortItem, record, kFirstTime + kFirstTime);
}

TEST_F(VlanPortTest, setKeepsACreationTimeThatIsGiven) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, MCAST6_DB_SetVlanPortItem, record, "0000000000000080" + kFirstTime);
}

TEST_F(VlanPortTest, getWritesEveryFieldItsConstantsAndNothingElse) { expectRecord(table, MCAST6_DB_GetVlanPortItem); }

TEST_F(VlanPortTest, theKeyTakesTheLow16BitsOfTheVlan) { expectKey(table, MCAST6_DB_SetVlanPortKey); }

TEST_F(VlanPortTest, anObjectGetsBothStampsWhenAsked) {
    EXPECT_THAT(table.stampMismatches(MCAST6_DB_SetVlanPortTimeStamp), IsEmpty());
}

// -- edges

TEST_F(VlanPortTest, aReadGivesTheSparesAs0AndTheVlanIn16Bits) {
    platform.fillNextRead(recording::unhex(kStoredRow));
    EXPECT_EQ(0u, MCAST6_DB_ReadVlanPort(&record));
    EXPECT_EQ(0u, record.spare1);
    EXPECT_EQ(0u, record.spare2);
    EXPECT_EQ(0x9493u, record.vlanId);
    EXPECT_EQ("c0c1c2c3c4c5c6c7c8c9cacbcccdcecf", bytesOf(record.spare3));
}

TEST_F(VlanPortTest, aSecondWriteThatTheEngineAnswersWith13044IsRefusedAndLogged) {
    platform.answer("db_write_obj", 13044);
    EXPECT_EQ(1u, MCAST6_DB_WriteVlanPort(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_vlan_port 0 0 -> obj1",
                                    "dfx 21",
                                    "set_all l2mc6_vlan_port obj1 " + kWrittenRow,
                                    "write obj1 -> 13044",
                                    "release l2mc6_vlan_port obj1",
                                    "dfx 22",
                                    "log 9 0x0F2E100F \"[MCAST6 DB] write object fail, ret:13044.\"",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[9][1]);
}

TEST_F(VlanPortTest, aFailedStepIsRecordedInRow4AndNotInRow9) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateVlanPortIter();
    ASSERT_NE(nullptr, iterator);
    platform.answer("db_root_iterator_next", 4711);
    EXPECT_EQ(1u, MCAST6_DB_GetVlanPortEntry(iterator, &record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[4][9]);
    EXPECT_EQ(0u, g_mcast6DbErrStat[9][9]);
    MCAST6_DB_ReleaseVlanPortIter(iterator);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveIterators());
    EXPECT_EQ(0u, platform.liveBlocks());
}

TEST_F(VlanPortTest, onlyTheSmoothVersionUpdateRecords13044) {
    platform.answerAlways("db_update_obj", 13044);
    platform.answerAlways("db_remove_obj", 13044);
    EXPECT_EQ(0u, MCAST6_DB_UpdateVlanPort(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanPort(&record));
    EXPECT_EQ(0u, g_mcast6DbErrStat[9][1]);
    EXPECT_EQ(0u, MCAST6_DB_UpdateVlanPortSmoothVersion(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[9][1]);
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_vlan_port
