// l3mc6_vlan_elb. What each operation does, one row for each step:
//
// operation          step              fails with   then
// create object      create            any          KPI 162; 1
//                    -                 -            281; 0
// release object     the scan handle's -            flag cleared; 282
//                    another           -            released
// cache object       create cached     any          283; log; 1
//                    reset             any          284; log; 1
//                    -                 -            slot filled; 0
// read               create 3          any          KPI 162; log; 1
//                    read              15005        released; 60
//                                      other        log; error 0; released; 1
//                    -                 -            record filled; released; 0
// write              null              -            log; 1
//                    create 0          any          KPI 162; log; 1
//                    set all           any          log; released; the code
//                    write             13044        released; error 1; 0
//                                      other        released; log; error 2; the code
//                    -                 -            released; 0
// remove             null              -            log; 1
//                    create 4          any          KPI 162; log; 1
//                    remove            13044        released; 0
//                                      other        log; released; the code
//                    -                 -            released; 0
// create iterator    create 5          any          KPI 162; KPI 163; null
//                    root iterator     any          released; KPI 163; null
//                    property          any          released; KPI 163; null
//                    allocation        -            released; KPI 163; null
//                    -                 -            handle
// iterator into a    null resource     -            KPI 163; log; 1
//   resource         create 5          any          KPI 162; KPI 163; log; 1
//                    root iterator     any          released; KPI 163; log; 1
//                    property          any          released; KPI 163; log; 1
//                    -                 -            resource filled; 0
// cache iterator     create cached     any          285; log; 1
//                    reset             any          286; log; 1
//                    -                 -            slot filled; 0
// fast scan          in use            -            as create iterator
//                    create cached 5   any          283; log; error 8; log; null
//                    reset             any          284; log; error 8; log; null
//                    cache iterator    any          285; log; log; error 8; null
//                    reset iterator    any          286; log; log; error 8; null
//                    property          any          log; null
//                    allocation        -            log; error 8; null
//                    -                 -            flag set; handle
// get entry          next              110012       60
//                                      other        log; error 9; 1
//                    read              15005        60
//                                      other        log; error 0; 1
//                    -                 -            record filled; 0
// release iterator   null              -            nothing
//                    -                 -            object released; block freed
//
// "released" counts 282, a successful create counts 281. Errors are recorded under table 17.
#include "mcast6_db/l3mc6_vlan_elb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "mcast6_db/context.h"
#include "tests/l3/l3_egress_sample.h"
#include "tests/l3/scan_family.h"
#include "tests/support/bytes.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l3mc6_vlan_elb {

namespace {

using l3_egress::fillSample;
using l3_egress::kEntry;
using recording::Bytes;

// -- the rows of the sample

const std::string kKey = "key=0001002e:" + kEntry + digits("46454443 4241");

// Written at 1'700'000'000, the recorder's time; "__" is a byte that no conversion writes.
const std::string kSetRow =
    "04030201 08070605"                            // vrId, vrfId
    "1112131415161718191a1b1c1d1e1f20"             // groupAddr
    "2122232425262728292a2b2c2d2e2f30"             // sourceAddr
    "46454443 4241 4847"                           // outIfIndex, instId, elbAttrD
    "34333231 3c3b3a3938373635 403f3e3d 89888786"  // elbAttrA, elbAttrB, elbAttrC, elbAttrG
    "00 9e 9f"                                     // elbFlagD, which is not 2, elbFlagA, elbFlagB
    "c6 c4 c5 c7 __"                               // vlanFlagC, vlanFlagA, vlanFlagB, elbFlagE, -
    "8b8a 8584"                                    // elbHalfB, elbHalfA
    "505152535455565758595a5b5c5d5e5f"             // elbCtxA
    "606162636465666768696a6b"                     //
    "707172737475767778797a7b"                     // elbCtxB
    "7f7e7d7c cbcac9c8 cfcecdcc"                   // elbAttrF, elbExtA, elbExtB
    "b4b5b6b7b8b9babbbcbdbebfc0c1c2c3"             // elbExtCtx
    "83828180"                                     // elbWord
    "939291908f8e8d8c 00f1536500000000";           // timeStampCreate, which is kept, timeStampSmooth

const std::string kStoredRow = digits(
    "d1000001 d2000002"                            // vrId, vrfId
    "ff1e0000000000000000000000001234"             // groupAddr
    "20010db8000000000000000000005678"             // sourceAddr
    "e3000003 06e6 e909"                           // outIfIndex, instId, elbAttrD
    "ec00000c 1011121314151617 ed00000d eb00000b"  // elbAttrA, elbAttrB, elbAttrC, elbAttrG
    "e4 e5 e8"                                     // elbFlagD, elbFlagA, elbFlagB
    "b3 b1 b2 b4 ff"                               // vlanFlagC, vlanFlagA, vlanFlagB, elbFlagE, -
    "eeae efaf"                                    // elbHalfB, elbHalfA
    "202122232425262728292a2b2c2d2e2f"             // elbCtxA
    "303132333435363738393a3b"                     //
    "404142434445464748494a4b"                     // elbCtxB
    "f000000e c1000001 c2000002"                   // elbAttrF, elbExtA, elbExtB
    "505152535455565758595a5b5c5d5e5f"             // elbExtCtx
    "f100000f"                                     // elbWord
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");          // timeStampCreate, timeStampSmooth

void readStored(L3Mc6ElbEntryExt& record) {
    l3_egress::readShared(record);
    record.entryType = 15;
    for (uint8_t i = 0; i < 16; ++i) record.elbExtCtx[i] = static_cast<uint8_t>(0x50 + i);
    record.elbAttrF = 0x0E0000F0;
    record.vlanFlagA = 0xB1;
    record.vlanFlagB = 0xB2;
    record.vlanFlagC = 0xB3;
    record.elbFlagD = 2;
    record.elbFlagE = 0xB4;
    record.elbExtA = 0x010000C1;
    record.elbExtB = 0x020000C2;
}

// The forwarding entry that the sample belongs to.
L3Mc6MfibEntry forwardingEntry() {
    L3Mc6MfibEntry entry;
    std::memset(&entry, 0xA5, sizeof entry);
    entry.vrId = 0x01020304;
    entry.vrfId = 0x05060708;
    entry.groupAddr = {{0x11121314, 0x15161718, 0x191A1B1C, 0x1D1E1F20}};
    entry.sourceAddr = {{0x21222324, 0x25262728, 0x292A2B2C, 0x2D2E2F30}};
    return entry;
}

// -- every exit

const LogId layer3{0x0F2E1016};
const Effect released = allOf({line("release l3mc6_vlan_elb obj1"), dfx(282)});

TableFamily<L3Mc6ElbEntryExt> table({.name = "l3mc6_vlan_elb",
                                     .rowSize = 168,
                                     .createStamp = 152,
                                     .key = kKey,
                                     .writtenRow = withGaps(kSetRow, "00"),
                                     .storedRow = kStoredRow,
                                     .created = {dfx(281)},
                                     .createFailed = {kpi(162)},
                                     .createAnswers = 1,
                                     .released = released,
                                     .createObject = MCAST6_DB_CreateVlanElbObject,
                                     .createIterator = MCAST6_DB_CreateVlanElbAllIterator},
                                    fillSample, readStored);

// The message of the object cache for a failure, for an object of this type.
CacheExits cacheExits(uint32_t objType, uint32_t connType) {
    return {.createFailed = {dfx(283), layer3("Failed to create vlanelb6 cache object, objType:%d, connType:%d, ret:%d",
                                              objType, connType, code)},
            .resetFailed = {dfx(284), layer3("Failed to reset vlanelb6 cache object, objType:%d, connType:%d, ret:%d",
                                             objType, connType, code)}};
}

CacheExits objectExits() {
    const CacheExits exits = cacheExits(3, 2);
    return {.createFailed = with(exits.createFailed, {returns(1)}),
            .resetFailed = with(exits.resetFailed, {returns(1)})};
}

const Effects cachedIteratorNotMade = {dfx(285),
                                       layer3("Failed to create l3mc6 vlanelb cache root iter, ret:%d.", code)};
const Effects cachedIteratorNotReset = {dfx(286), layer3("Failed to reset l3mc6 vlanelb itercache, ret:%d.", code)};
const CacheExits iteratorExits = {.createFailed = with(cachedIteratorNotMade, {returns(1)}),
                                  .resetFailed = with(cachedIteratorNotReset, {returns(1)})};

ScanExits scanExits() {
    const CacheExits object = cacheExits(5, 0);
    const Effects objectFailed = {record(17, 8), layer3("Failed to create l3mc6 vlan elb db object."), returnsNull()};
    const Effects iteratorFailed = {layer3("Failed to create l3mc6 vlan elb iter."), record(17, 8), returnsNull()};
    return {.objectFailed = with(object.createFailed, objectFailed),
            .objectResetFailed = with(object.resetFailed, objectFailed),
            .iteratorFailed = with(cachedIteratorNotMade, iteratorFailed),
            .iteratorResetFailed = with(cachedIteratorNotReset, iteratorFailed),
            .propertyFailed = {layer3("set l3mc6 vlan elb root iterator property fail."), returnsNull()},
            .allocationFailed = {layer3("Failed to malloc ipv6 vlan elb db res."), record(17, 8), returnsNull()}};
}

Mcast6DbRes* scanEntry() {
    const L3Mc6MfibEntry entry = forwardingEntry();
    return MCAST6_DB_CreateVlanElbMfibIterator(&entry, 0x80000000);
}

Mcast6DbRes* scanInterface() {
    const Mcast6DbKeyDesc descriptor{0x02090004, {0, 0, 0}};
    const uint32_t ifIndex = 0x51525354;
    return MCAST6_DB_CreateVlanElbIteratorFast(&descriptor, &ifIndex);
}

FastScans<L3Mc6ElbEntryExt> scans(table, {.handle = &g_l3VlanElb6ScanDbHandle,
                                          .scan = scanEntry,
                                          .release = MCAST6_DB_ReleaseVlanElbIterator,
                                          .keyWord = "01090028",
                                          .key = kEntry,
                                          .exits = scanExits(),
                                          .releasedCounter = 282,
                                          .returned = {dfx(282)},
                                          .ordinaryFailed = {kpi(163), returnsNull()}});
FastScans<L3Mc6ElbEntryExt> interfaceScans(table, {.handle = &g_l3VlanElb6ScanDbHandle,
                                                   .scan = scanInterface,
                                                   .release = MCAST6_DB_ReleaseVlanElbIterator,
                                                   .keyWord = "02090004",
                                                   .key = "54535251",
                                                   .exits = scanExits(),
                                                   .releasedCounter = 282,
                                                   .returned = {dfx(282)},
                                                   .ordinaryFailed = {kpi(163), returnsNull()}});

Operation read() {
    return table.read("ReadVlanElb", MCAST6_DB_ReadVlanElb,
                      {.createFailed = {layer3("Failed to create l3mc6 vlan elb db object. ret:%u.", 1u), returns(1)},
                       .failed = {layer3("Failed to read l3mc6 vlan elb db object. ret:%u.", code), record(17, 0),
                                  released, returns(1)},
                       .answered = {{15005, {released, returns(60)}}},
                       .done = {released, returns(0)}});
}

Operation write() {
    return table.write(
        "WriteVlanElb", MCAST6_DB_WriteVlanElb,
        {.null = {layer3("Failed to write l3mc6 vlan elb db, entry is null."), returns(1)},
         .createFailed = {layer3("Failed to create l3mc6 write vlan elb db iter. ret:%u.", 1u), returns(1)},
         .setFailed = {layer3("Failed to set l3mc6 vlan elb field. ret:%u.", code), released, returns(code)},
         .failed = {released, layer3("Failed to write l3mc6 vlan elb db. ret:%u.", code), record(17, 2), returns(code)},
         .answered = {{13044, {released, record(17, 1), returns(0)}}},
         .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove(
        "RemoveVlanElb", MCAST6_DB_RemoveVlanElb,
        {.null = {layer3("Failed to remove l3mc6 vlan elb db, entry is null."), returns(1)},
         .createFailed = {layer3("Failed to create l3mc6 remove vlan elb db iter. ret:%u.", 1u), returns(1)},
         .failed = {layer3("Failed to remove l3mc6 vlan elb db. ret:%u.", code), released, returns(code)},
         .answered = {{13044, {released, returns(0)}}},
         .done = {released, returns(0)}});
}

template <class Function>
Operation createIterator(std::string name, Function run, const std::string& key) {
    return table.createIterator(std::move(name), run, key, builtByTheFrame(released, {kpi(163), returnsNull()}));
}

Operation createIteratorInResource() {
    const Effects failed = {kpi(163), layer3("create l3mc6 vlan elb scan iter failed."), returns(1)};
    Operation operation = table.createIteratorIn(
        "CreateVlanElbScanIterator",
        [](Mcast6DbRes* resource) { return MCAST6_DB_CreateVlanElbScanIterator(&table.record, resource); },
        "key=0309002a:" + kEntry + "4241", builtByTheFrame(released, failed));
    operation.nulls = {
        {"resource", [] { return MCAST6_DB_CreateVlanElbScanIterator(&table.record, nullptr); }, failed}};
    return operation;
}

Operation getEntry() {
    return table.getEntry(
        "GetVlanElbEntry", MCAST6_DB_GetVlanElbEntry,
        {.nextFailed = {layer3("Failed to iterator next l3mc6 vlan elb. ret=%d.", code), record(17, 9), returns(1)},
         .readFailed = {layer3("Failed to read l3mc vlan elb with buf. ret:%d.", code), record(17, 0), returns(1)}});
}

const Operation operations[] = {
    table.createObject("CreateVlanElbObject", MCAST6_DB_CreateVlanElbObject),
    table.releaseObject("ReleaseVlanElbStatObject", MCAST6_DB_ReleaseVlanElbStatObject),
    cacheObject(table, "CreateVlanElbObjCache", MCAST6_DB_CreateVlanElbObjCache, objectExits()),
    cacheObjectAgain(table, "CreateVlanElbObjCacheAgain", MCAST6_DB_CreateVlanElbObjCache, objectExits()),
    read(),
    write(),
    remove(),
    createIterator(
        "CreateVlanElbIterator",
        [] {
            const Mcast6DbKeyDesc descriptor{0x02090004, {0, 0, 0}};
            const uint32_t ifIndex = 0x51525354;
            return MCAST6_DB_CreateVlanElbIterator(&descriptor, &ifIndex);
        },
        "key=02090004:54535251"),
    createIterator("CreateVlanElbAllIterator", MCAST6_DB_CreateVlanElbAllIterator, "none"),
    createIterator(
        "CreateVlanElbOutIfIterator", [] { return MCAST6_DB_CreateVlanElbOutIfIterator(0x61626364); },
        "key=02090004:64636261"),
    createIterator(
        "CreateVlanElbMfibIteratorOrdinary",
        [] {
            const L3Mc6MfibEntry entry = forwardingEntry();
            return MCAST6_DB_CreateVlanElbMfibIterator(&entry, 0);
        },
        "key=01090028:" + kEntry),
    createIteratorInResource(),
    cacheIterator(table, "CreateVlanElbIterCache", MCAST6_DB_CreateVlanElbIterCache, "02090004", "54535251",
                  iteratorExits),
    cacheIteratorAgain(table, "CreateVlanElbIterCacheAgain", MCAST6_DB_CreateVlanElbIterCache, "02090004", "54535251",
                       iteratorExits),
    scans.first("CreateVlanElbMfibIteratorFastFirst"),
    scans.second("CreateVlanElbMfibIteratorFastWhileOneIsOut"),
    scans.third("CreateVlanElbMfibIteratorFastAgain"),
    scans.releaseFirst("ReleaseVlanElbIteratorOfAFastScan"),
    scans.releaseSecond("ReleaseVlanElbIteratorWhileAFastScanIsOut"),
    interfaceScans.first("CreateVlanElbIteratorFastFirst"),
    interfaceScans.second("CreateVlanElbIteratorFastWhileOneIsOut"),
    interfaceScans.third("CreateVlanElbIteratorFastAgain"),
    getEntry(),
    table.releaseIterator("ReleaseVlanElbIterator", MCAST6_DB_ReleaseVlanElbIterator),
};

INSTANTIATE_TEST_SUITE_P(l3mc6_vlan_elb, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class VlanElbTest : public SampleTest<L3Mc6ElbEntryExt, fillSample> {};

TEST_F(VlanElbTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, withGaps(kSetRow, "5a"), MCAST6_DB_SetVlanElbObj);
}

TEST_F(VlanElbTest, setReadsTheClockOnceForBothStampsWhenNoCreationTimeIsGiven) {
    record.timeStampCreate = 0;
    expectStamps(table, MCAST6_DB_SetVlanElbObj, record, kFirstTime + kFirstTime);
}

TEST_F(VlanElbTest, setKeepsACreationTimeThatIsGivenAndNoSmoothTime) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, MCAST6_DB_SetVlanElbObj, record, "0000000000000080" + kFirstTime);
}

TEST_F(VlanElbTest, getWritesEveryFieldItsConstantsAndNothingElse) { expectRecord(table, MCAST6_DB_SetVlanElbEntry); }

TEST_F(VlanElbTest, elbFlagDIsStoredAs1WhenItIs2AndComesBackAs2OrElse1) {
    Bytes row(168);
    for (uint32_t value = 0; value < 256; ++value) {
        record.elbFlagD = static_cast<uint8_t>(value);
        MCAST6_DB_SetVlanElbObj(&record, row.data());
        EXPECT_EQ(value == 2 ? 1 : 0, row[68]) << value;
        MCAST6_DB_SetVlanElbEntry(row.data(), &record);
        EXPECT_EQ(value == 2 ? 2 : 1, record.elbFlagD) << value;
        row[68] = static_cast<uint8_t>(value);
        MCAST6_DB_SetVlanElbEntry(row.data(), &record);
        EXPECT_EQ(value == 0 ? 1 : 2, record.elbFlagD) << value;
    }
}

TEST_F(VlanElbTest, theKeyIsVrVrfGroupSourceInterfaceAndVlan) {
    expectKey(table, [](uint32_t* keyWord, void* key, const L3Mc6ElbEntryExt* given) {
        MCAST6_DB_SetVlanElbKey(given, keyWord, key);
    });
}

// -- the scan handle

TEST_F(VlanElbTest, oneObjectAndOneRootIteratorServeAllFastScans) {
    scans.expectOnePairServesEveryScan();
    EXPECT_EQ(0u, platform.dfx(281));
    EXPECT_EQ(100u, platform.dfx(282));  // an object that is returned to the scan handle counts too
}

TEST_F(VlanElbTest, aSecondScanIsOrdinaryAndAThirdReusesThePair) {
    scans.expectTheSecondOfTwoScansToBeOrdinaryAndTheThirdToReuseThePair();
    EXPECT_EQ(2u, platform.dfx(281));
    EXPECT_EQ(4u, platform.dfx(282));
}

TEST_F(VlanElbTest, aScanWithoutMemoryLeavesTheFlagClear) { scans.expectAScanWithoutMemoryToLeaveThePairForTheNext(); }

TEST_F(VlanElbTest, aFailedScanIsTriedAgainFromTheStepThatFailed) {
    scans.expectAFailedScanToBeRepeatable();
    EXPECT_EQ(4u, g_mcast6DbErrStat[17][8]);  // a failed property is not recorded
    EXPECT_EQ(1u, platform.dfx(283));
    EXPECT_EQ(1u, platform.dfx(284));
    EXPECT_EQ(1u, platform.dfx(285));
    EXPECT_EQ(1u, platform.dfx(286));
}

TEST_F(VlanElbTest, aLaterScanHasAKeyOfItsOwnAndTheIndexOfTheFirst) {
    L3Mc6MfibEntry entry = forwardingEntry();
    entry.vrId = 0x51525354;
    entry.sourceAddr = {};
    scans.expectALaterScanToHaveItsOwnKey(
        [&entry] { return MCAST6_DB_CreateVlanElbMfibIterator(&entry, 1); },
        "54535251 08070605 1112131415161718191a1b1c1d1e1f20 00000000000000000000000000000000");
}

TEST_F(VlanElbTest, noObjectIsTheEmptyScanHandles) {
    expectNoObjectToBeTheEmptyHandles(g_l3VlanElb6ScanDbHandle, MCAST6_DB_ReleaseVlanElbStatObject, {"dfx 282"});
}

TEST_F(VlanElbTest, noObjectIsReleasedWhenTheScanHandleHasOne) {
    scans.expectNoObjectToBeReleasedWhileAScanIsOut(MCAST6_DB_ReleaseVlanElbStatObject);
}

TEST_F(VlanElbTest, noOperationTouchesTheReadCache) {
    g_vlanElb6DbReadObjCache = 0x5A5A5A5A5A5A5A5A;
    EXPECT_EQ(0u, MCAST6_DB_ReadVlanElb(&record));
    EXPECT_EQ(0u, MCAST6_DB_WriteVlanElb(&record));
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanElb(&record));
    Mcast6DbRes* scan = scanEntry();
    ASSERT_NE(nullptr, scan);
    EXPECT_EQ(0u, MCAST6_DB_GetVlanElbEntry(scan, &record));
    MCAST6_DB_ReleaseVlanElbIterator(scan);
    EXPECT_EQ(0x5A5A5A5A5A5A5A5Au, g_vlanElb6DbReadObjCache);
}

// -- edges

TEST_F(VlanElbTest, anyFailureToMakeAnObjectIs1) {
    for (const uint32_t answer : {2u, 9u, 13044u, 15005u, 110012u, 110024u}) {
        Mcast6DbHandle object = 0;
        platform.answer("db_create_l3mc6_vlan_elb_obj", answer);
        EXPECT_EQ(1u, MCAST6_DB_CreateVlanElbObject(0, 0, &object));
    }
    EXPECT_EQ(6u, platform.kpi(162));
}

TEST_F(VlanElbTest, aRemovalThatTheEngineAnswersWith13044RecordsNothing) {
    platform.answer("db_remove_obj", 13044);
    EXPECT_EQ(0u, MCAST6_DB_RemoveVlanElb(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l3mc6_vlan_elb 4 0 -> obj1",
                                    "dfx 281",
                                    "remove obj1 " + kKey + " -> 13044",
                                    "release l3mc6_vlan_elb obj1",
                                    "dfx 282",
                                }));
    EXPECT_EQ(0u, g_mcast6DbErrStat[17][1]);
}

TEST_F(VlanElbTest, aMissingRecordIs60ByKeyAndByIterator) {
    expectAbsentRead(table, MCAST6_DB_ReadVlanElb, 60);
    expectVanishedRecord(table, MCAST6_DB_GetVlanElbEntry, MCAST6_DB_ReleaseVlanElbIterator);
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_vlan_elb
