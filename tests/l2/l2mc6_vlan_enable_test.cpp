// l2mc6_vlan_enable. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          log; 1
//                    -             -            43; 0
// release object     -             -            released
// read               null          -            log; 1
//                    create 3      any          log; log; 1
//                    read          15005        released; 60
//                                  other        released; log; 1
//                    -             -            record filled except spare1; released; 0
// write              null          -            log; KPI 66; 1
//                    create 0      any          log; KPI 66; 1
//                    set all       any          released; KPI 66; 1
//                    write         13044        released; KPI 65; 0
//                                  other        released; log; KPI 66; 1
//                    -             -            released; KPI 65; 0
// delete             null          -            log; KPI 68; 1
//                    create 4      any          log; log; KPI 68; 1
//                    remove        any          released; KPI 68; log; 1 (13044 too)
//                    -             -            released; KPI 67; 0
// create iterator    create 5      any          log; null
//                    root iterator any          released; null
//                    property      any          released; log; null
//                    allocation    -            released; null
//                    -             -            handle
// get entry          null          -            1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; 1
//                    -             -            record filled, spare1 with 0; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// "released" counts 44, a successful create counts 43. The error is recorded under table 14.
#include "mcast6_db/l2mc6_vlan_enable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_vlan_enable {

namespace {

using testing::IsEmpty;

// -- the sample: a record with different bytes in each field, and its rows

void fillSample(L2VlanEnableEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.keyId1 = 0x01020304;
    record.keyId2 = 0x05060708;
    record.spare1 = 0xE1E2E3E4;
    record.vlanId = 0xF1F21112;  // 16 bits are stored
    record.vlanAttr = 0x1314;
    record.cfgWord1 = 0x21222324;
    record.cfgWord2 = 0x25262728;
    record.cfgWord3 = 0x292A2B2C;
    record.cfgWord4 = 0x2D2E2F30;
    record.cfgWord5 = 0x31323334;
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

const std::string kKey = "key=0001000a:" + digits("04030201 08070605 1211");

// Written at 1'700'000'000, the recorder's time.
const std::string kWrittenRow = digits(
    "04030201 08070605 1211 1413"                   // keyId1, keyId2, vlanId, vlanAttr
    "24232221 28272625 2c2b2a29 302f2e2d 34333231"  // cfgWord1 to cfgWord5
    "4142 4344"                                     // serviceStatus, errCode
    "5857565554535251 00f1536500000000"             // timeStampCreate, which is kept, timeStampSmooth
    "74737271 8182838485868788898a8b8c");           // l2mcEnable, attrC

const std::string kStoredRow = digits(
    "d1000092 d2000094 d3d4 d5d6"                   // keyId1, keyId2, vlanId, vlanAttr
    "91000092 93000094 95000096 97000098 99000090"  // cfgWord1 to cfgWord5
    "9a9b 9c9d"                                     // serviceStatus, errCode
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf"             // timeStampCreate, timeStampSmooth
    "b0b1b2b3 c0c1c2c3c4c5c6c7c8c9cacb");           // l2mcEnable, attrC

// Changes a record as a read does; a step of an iterator also sets spare1.
void readStored(L2VlanEnableEntry& record) {
    record.keyId1 = 0x920000D1;
    record.keyId2 = 0x940000D2;
    record.vlanId = 0xD4D3;
    record.vlanAttr = 0xD6D5;
    record.cfgWord1 = 0x92000091;
    record.cfgWord2 = 0x94000093;
    record.cfgWord3 = 0x96000095;
    record.cfgWord4 = 0x98000097;
    record.cfgWord5 = 0x90000099;
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

std::string walkedBack() {
    L2VlanEnableEntry record;
    fillSample(record);
    readStored(record);
    record.spare1 = 0;
    return bytesOf(record);
}

// -- every exit

const LogId config{0x0F2E1012};
const Effect released = allOf({line("release l2mc6_vlan_enable obj1"), dfx(44)});

TableFamily<L2VlanEnableEntry> table({.name = "l2mc6_vlan_enable",
                                      .rowSize = 68,
                                      .createStamp = 36,
                                      .key = kKey,
                                      .writtenRow = kWrittenRow,
                                      .storedRow = kStoredRow,
                                      .created = {dfx(43)},
                                      .createFailed = {config("[MCAST6 DB] l2vlan enable create object failed. ret:%u",
                                                              code)},
                                      .createAnswers = 1,
                                      .released = released,
                                      .createObject = MCAST6_DB_CreateL2VlanEnableObject,
                                      .createIterator = MCAST6_DB_CreateMldVlanCfgIter},
                                     fillSample, readStored);

Operation read() {
    const Effect readFailed = config("[MCAST6 DB] MCAST6_DB_Readl2mcEnableCfg read obj db failed. ret:%u", code);
    return table.read("ReadL2VlanEnableCfg", MCAST6_DB_ReadL2VlanEnableCfg,
                      {.null = {config("[MCAST6 DB] read vlan enable cfg failed, para is NULL"), returns(1)},
                       .createFailed = {config("[MCAST6 DB] read vlan enable cfg failed."), returns(1)},
                       .failed = {released, readFailed, returns(1)},
                       .answered = {{15005, {released, returns(60)}}},
                       .done = {released, returns(0)}});
}

Operation write() {
    return table.write(
        "WriteL2VlanEnableCfg", MCAST6_DB_WriteL2VlanEnableCfg,
        {.null = {config("[MCAST6 DB] write l2 vlan enable failed, para is NULL"), kpi(66), returns(1)},
         .createFailed = {kpi(66), returns(1)},
         .setFailed = {released, kpi(66), returns(1)},
         .failed = {released, config("[MCAST6 DB] write l2 vlan enable failed, ret:%u", code), kpi(66), returns(1)},
         .answered = {{13044, {released, kpi(65), returns(0)}}},
         .done = {released, kpi(65), returns(0)}});
}

Operation remove() {
    const Effect removeFailed =
        config("[MCAST6 DB] delete l2 vlan enable fail,  Remove object failed. ret:%u", code);  // two blanks
    return table.remove(
        "DelL2VlanEnableCfg", MCAST6_DB_DelL2VlanEnableCfg,
        {.null = {config("[MCAST6 DB] delete l2 vlan enable cfg failed, para is NULL"), kpi(68), returns(1)},
         .createFailed = {config("[MCAST6 DB] delete l2 vlan enable cfg failed."), kpi(68), returns(1)},
         .failed = {released, kpi(68), removeFailed, returns(1)},
         .done = {released, kpi(67), returns(0)}});
}

Operation createIterator() {
    return table.createIterator(
        "CreateMldVlanCfgIter", MCAST6_DB_CreateMldVlanCfgIter, "none",
        {.createFailed = {returnsNull()},
         .rootIterFailed = {released, returnsNull()},
         .propertyFailed = {released, config("[MCAST6 DB] set mldVlan root iterator property fail, ret:%d.", code),
                            returnsNull()},
         .allocationFailed = {released, returnsNull()}});
}

Operation getEntry() {
    Operation operation = table.getEntry(
        "GetMldVlanEntry", MCAST6_DB_GetMldVlanEntry,
        {.null = {returns(1)},
         .nextFailed = {config("[MCAST6 DB] get mld vlan iterator error. ret:%d", code), record(14, 9), returns(1)},
         .readFailed = {config("[MCAST6 DB] get mld vlan entry fail, ret:%d.", code), returns(1)}});
    operation.done = {leaves("record", walkedBack()), returns(0)};
    return operation;
}

const Operation operations[] = {
    table.createObject("CreateL2VlanEnableObject", MCAST6_DB_CreateL2VlanEnableObject),
    table.releaseObject("ReleaseL2VlanEnableObject", MCAST6_DB_ReleaseL2VlanEnableObject),
    read(),
    write(),
    remove(),
    createIterator(),
    getEntry(),
    table.releaseIterator("ReleaseMldVlanIter", MCAST6_DB_ReleaseMldVlanIter),
};

INSTANTIATE_TEST_SUITE_P(l2mc6_vlan_enable, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class VlanEnableTest : public SampleTest<L2VlanEnableEntry, fillSample> {};

TEST_F(VlanEnableTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, kWrittenRow, MCAST6_DB_SetL2VlanEnableCfg);
}

TEST_F(VlanEnableTest, aCreationTimeOf0IsReplacedByTheTimeOfTheWrite) {
    record.timeStampCreate = 0;
    expectStamps(table, MCAST6_DB_SetL2VlanEnableCfg, record, kFirstTime + kFirstTime);
}

TEST_F(VlanEnableTest, aCreationTimeThatIsNot0IsKept) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, MCAST6_DB_SetL2VlanEnableCfg, record, "0000000000000080" + kFirstTime);
}

TEST_F(VlanEnableTest, theConversionOfReadsLeavesSpare1AndThatOfStepsClearsIt) {
    EXPECT_EQ(table.readBack(), table.recordOf(MCAST6_DB_GetVlanEnableCfg));
    EXPECT_EQ(walkedBack(), table.recordOf(MCAST6_GetMldVlanData));
    EXPECT_NE(walkedBack(), table.readBack());
    EXPECT_THAT(platform.trace(), IsEmpty());
    EXPECT_EQ(0u, platform.clockReadings());
}

TEST_F(VlanEnableTest, theKeyTakesTheLow16BitsOfTheVlan) { expectKey(table, MCAST6_DB_SetMldVlanKey); }

// -- edges

TEST_F(VlanEnableTest, deletingAnAbsentRecordIsAFailureAndCountsAsOne) {
    platform.answer("db_remove_obj", 13044);
    EXPECT_EQ(1u, MCAST6_DB_DelL2VlanEnableCfg(&record));
    EXPECT_EQ(platform.trace(),
              (Trace{
                  "create l2mc6_vlan_enable 4 0 -> obj1",
                  "dfx 43",
                  "remove obj1 " + kKey + " -> 13044",
                  "release l2mc6_vlan_enable obj1",
                  "dfx 44",
                  "kpi 68",
                  "log 9 0x0F2E1012 \"[MCAST6 DB] delete l2 vlan enable fail,  Remove object failed. ret:13044\"",
              }));
}

TEST_F(VlanEnableTest, aWriteAccepts13044InSilence) {
    platform.answer("db_write_obj", 13044);
    EXPECT_EQ(0u, MCAST6_DB_WriteL2VlanEnableCfg(&record));
    EXPECT_EQ(1u, platform.kpi(65));
    EXPECT_EQ(0u, platform.kpi(66));
    EXPECT_EQ(0u, g_mcast6DbErrStat[14][1]);
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_vlan_enable
