// l3mc6_sub_elb. What each operation does, one row for each step:
//
// operation          step              fails with   then
// create object      create            any          KPI 135; the code
//                    -                 -            246; 0
// release object     the scan handle's -            flag cleared; 247
//                    another           -            released
// cache object       create cached     any          248; log; the code
//                    reset             any          249; log; the code
//                    -                 -            slot filled; 0
// read               null              -            log; 1
//                    create 3          any          KPI 135; log; the code
//                    read              any          released; the code
//                    -                 -            record filled; released; 0
// fast read          null              -            log; 1
//                    create cached     any          248; log; log; 1
//                    reset             any          249; log; log; 1
//                    read              any          the code
//                    -                 -            record filled; 0
// create iterator    create 5          any          KPI 135; KPI 136; null
//                    root iterator     any          released; KPI 136; null
//                    property          any          released; KPI 136; null
//                    allocation        -            released; KPI 136; null
//                    -                 -            handle
// get entry          null              -            1
//                    next              110012       60
//                                      other        log; error 9; the code
//                    read              15005        60
//                                      other        log; error 0; the code
//                    -                 -            record filled; 0
// release iterator   null              -            nothing
//                    -                 -            object released; block freed
//
// "released" counts 247, a successful create counts 246. Errors are recorded under table 16.
#include "mcast6_db/l3mc6_sub_elb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>

#include "mcast6_db/context.h"
#include "tests/l3/l3_egress_sample.h"
#include "tests/l3/scan_family.h"
#include "tests/support/bytes.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l3mc6_sub_elb {

namespace {

using l3_egress::fillSample;
using l3_egress::kEntry;
using recording::Bytes;
using recording::hex;

// -- the rows of the sample

const std::string kKey = "key=0001002f:" + kEntry + digits("b3b2b1b0 4241 9d");
const std::string kMembersKey = "key=0109002d:" + kEntry + digits("46454443 9d");

// Written at 1'700'000'000, the recorder's time; "__" is a byte that no conversion writes.
const std::string kSetRow =
    "04030201 08070605"                     // vrId, vrfId
    "1112131415161718191a1b1c1d1e1f20"      // groupAddr
    "2122232425262728292a2b2c2d2e2f30"      // sourceAddr
    "b3b2b1b0 4241 9d 9e 9f __ __ __"       // subIfIndex, instId, elbFlagD, elbFlagA, elbFlagB, -
    "46454443 48470000 34333231"            // outIfIndex, elbAttrD, elbAttrA
    "3c3b3a3938373635 403f3e3d 89888786"    // elbAttrB, elbAttrC, elbAttrG
    "8b8a 8584"                             // elbHalfB, elbHalfA
    "505152535455565758595a5b5c5d5e5f"      // elbCtxA
    "606162636465666768696a6b"              //
    "707172737475767778797a7b __ __ __ __"  // elbCtxB, -
    "cbcac9c8 cfcecdcc"                     // elbExtA, elbExtB
    "b4b5b6b7b8b9babbbcbdbebfc0c1c2c3"      // elbExtCtx
    "83828180"                              // elbWord
    "00f1536500000000 00f1536500000000";    // timeStampCreate, timeStampSmooth

const std::string kStoredRow = digits(
    "d1000001 d2000002"                    // vrId, vrfId
    "ff1e0000000000000000000000001234"     // groupAddr
    "20010db8000000000000000000005678"     // sourceAddr
    "e1000001 06e6 e4 e5 e8 ffffff"        // subIfIndex, instId, elbFlagD, elbFlagA, elbFlagB, -
    "e3000003 e90900ff ec00000c"           // outIfIndex, elbAttrD, elbAttrA
    "1011121314151617 ed00000d eb00000b"   // elbAttrB, elbAttrC, elbAttrG
    "eeae efaf"                            // elbHalfB, elbHalfA
    "202122232425262728292a2b2c2d2e2f"     // elbCtxA
    "303132333435363738393a3b"             //
    "404142434445464748494a4b ffffffff"    // elbCtxB, -
    "c1000001 c2000002"                    // elbExtA, elbExtB
    "505152535455565758595a5b5c5d5e5f"     // elbExtCtx
    "f100000f"                             // elbWord
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");  // timeStampCreate, timeStampSmooth

void readStored(L3Mc6ElbEntryExt& record) {
    l3_egress::readShared(record);
    record.entryType = 14;
    record.subIfIndex = 0x010000E1;
    record.zeroWord = 0;
    for (uint8_t i = 0; i < 16; ++i) record.elbExtCtx[i] = static_cast<uint8_t>(0x50 + i);
    record.elbFlagD = 0xE4;
    record.elbExtA = 0x010000C1;
    record.elbExtB = 0x020000C2;
}

// -- every exit

const LogId layer3{0x0F2E1016};
const Effect released = allOf({line("release l3mc6_sub_elb obj1"), dfx(247)});

TableFamily<L3Mc6ElbEntryExt> table({.name = "l3mc6_sub_elb",
                                     .rowSize = 172,
                                     .createStamp = 156,
                                     .key = kKey,
                                     .writtenRow = withGaps(kSetRow, "00"),
                                     .storedRow = kStoredRow,
                                     .created = {dfx(246)},
                                     .createFailed = {kpi(135)},
                                     .released = released,
                                     .createObject = MCAST6_DB_CreateL3SubElbObject,
                                     .createIterator = MCAST6_DB_CreateL3SubElbAllIterator},
                                    fillSample, readStored);

// The message of the object cache for a failure, for an object of this type.
CacheExits cacheExits(uint32_t objType, uint32_t connType) {
    return {
        .createFailed = {dfx(248), layer3("Failed to create l3subelb6 cache object, objType:%u, connType:%u, ret:%u",
                                          objType, connType, code)},
        .resetFailed = {dfx(249), layer3("Failed to reset l3subelb6 cache object, objType:%u, connType:%u, ret:%u",
                                         objType, connType, code)}};
}

CacheExits objectExits() {
    const CacheExits exits = cacheExits(3, 2);
    return {.createFailed = with(exits.createFailed, {returns(code)}),
            .resetFailed = with(exits.resetFailed, {returns(code)})};
}

FastReadExits fastReadExits() {
    const CacheExits exits = cacheExits(3, 0);
    const Effects failed = {layer3("read l3mc6 elb sub failed, create db object failed. ret:%u.", code), returns(1)};
    return {.null = {layer3("read l3mc6 sub enable failed, para is null."), returns(1)},
            .createFailed = with(exits.createFailed, failed),
            .resetFailed = with(exits.resetFailed, failed),
            .failed = {returns(code)}};
}

Operation read() {
    return table.read(
        "ReadL3SubElb", MCAST6_DB_ReadL3SubElb,
        {.null = {layer3("read l3mc6 sub enable failed, para is null."), returns(1)},
         .createFailed = {layer3("read l3mc6 elb sub failed, create db object failed. ret:%u.", code), returns(code)},
         .failed = {released, returns(code)},
         .done = {released, returns(0)}});
}

template <class Function>
Operation createIterator(std::string name, Function run, const std::string& key) {
    return table.createIterator(std::move(name), run, key, builtByTheFrame(released, {kpi(136), returnsNull()}));
}

Operation getEntry() {
    return table.getEntry(
        "GetL3SubElbEntry", MCAST6_DB_GetL3SubElbEntry,
        {.null = {returns(1)},
         .nextFailed = {layer3("get l3mc6 sub elb entry error. ret:%u.", code), record(16, 9), returns(code)},
         .readFailed = {layer3("get l3mc6 sub elb entry error, ret:%u.", code), record(16, 0), returns(code)}});
}

const Operation operations[] = {
    table.createObject("CreateL3SubElbObject", MCAST6_DB_CreateL3SubElbObject),
    table.releaseObject("ReleaseL3SubElbObject", MCAST6_DB_ReleaseL3SubElbObject),
    cacheObject(table, "CreateL3SubElbObjCache", MCAST6_DB_CreateL3SubElbObjCache, objectExits()),
    cacheObjectAgain(table, "CreateL3SubElbObjCacheAgain", MCAST6_DB_CreateL3SubElbObjCache, objectExits()),
    read(),
    readFast(table, "ReadL3SubElbFast", MCAST6_DB_ReadL3SubElbFast, g_l3SubElb6DbReadObjCache, fastReadExits()),
    readFastAgain(table, "ReadL3SubElbFastAgain", MCAST6_DB_ReadL3SubElbFast, g_l3SubElb6DbReadObjCache,
                  fastReadExits()),
    createIterator(
        "CreateL3SubElbIterator",
        [] {
            const Mcast6DbKeyDesc descriptor{0x02090002, {0, 0, 0}};
            const uint16_t vlanId = 0x5152;
            return MCAST6_DB_CreateL3SubElbIterator(&descriptor, &vlanId);
        },
        "key=02090002:5251"),
    createIterator("CreateL3SubElbAllIterator", MCAST6_DB_CreateL3SubElbAllIterator, "none"),
    createIterator(
        "CreateL3mcVlanScanIterater", [] { return MCAST6_DB_CreateL3mcVlanScanIterater(0x6162); }, "key=02090002:6261"),
    createIterator(
        "CreateL3mcVlanAllMemIterator", [] { return MCAST6_DB_CreateL3mcVlanAllMemIterator(&table.record); },
        kMembersKey),
    getEntry(),
    table.releaseIterator("ReleaseL3SubElbIterator", MCAST6_DB_ReleaseL3SubElbIterator),
};

INSTANTIATE_TEST_SUITE_P(l3mc6_sub_elb, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class SubElbTest : public SampleTest<L3Mc6ElbEntryExt, fillSample> {};

TEST_F(SubElbTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, withGaps(kSetRow, "5a"), MCAST6_DB_SetL3SubElb);
}

TEST_F(SubElbTest, setStampsARecordAsNewEachTime) {
    startClock();
    Bytes row(172, 0x5A);
    MCAST6_DB_SetL3SubElb(&record, row.data());
    EXPECT_EQ(1u, platform.clockReadings());
    EXPECT_EQ(kFirstTime + kFirstTime, hex(std::span(row).subspan(156)));
    MCAST6_DB_GetL3SubElb(row.data(), &record);
    EXPECT_EQ(0x0102030405060708u, record.timeStampCreate);
    MCAST6_DB_SetL3SubElb(&record, row.data());
    EXPECT_EQ(2u, platform.clockReadings());
    EXPECT_EQ(kSecondTime + kSecondTime, hex(std::span(row).subspan(156)));
}

TEST_F(SubElbTest, getWritesEveryFieldItsConstantsAndNothingElse) { expectRecord(table, MCAST6_DB_GetL3SubElb); }

TEST_F(SubElbTest, theKeyIsVrVrfGroupSourceSubInterfaceVlanAndElbFlagD) { expectKey(table, MCAST6_DB_SetL3SubElbKey); }

// -- the scan handle, which no operation here fills

TEST_F(SubElbTest, noObjectIsTheEmptyScanHandles) {
    expectNoObjectToBeTheEmptyHandles(g_l3SubElb6ScanDbHandle, MCAST6_DB_ReleaseL3SubElbObject, {"dfx 247"});
}

TEST_F(SubElbTest, theScanHandlesObjectIsGivenBackAndCounted) {
    Mcast6DbHandle object = 0;
    ASSERT_EQ(0u, MCAST6_DB_CreateL3SubElbObject(5, 0, &object));
    g_l3SubElb6ScanDbHandle = {1, object, 0};
    platform.takeTrace();
    MCAST6_DB_ReleaseL3SubElbObject(object);
    EXPECT_EQ(0u, g_l3SubElb6ScanDbHandle.inUse);
    EXPECT_EQ(object, g_l3SubElb6ScanDbHandle.object);
    EXPECT_EQ(platform.trace(), (Trace{"dfx 247"}));
    EXPECT_EQ(1u, platform.liveObjects());
}

TEST_F(SubElbTest, anotherObjectIsReleasedAndTheFlagStays) {
    Mcast6DbHandle cached = 0;
    Mcast6DbHandle object = 0;
    ASSERT_EQ(0u, MCAST6_DB_CreateL3SubElbObject(5, 0, &cached));
    ASSERT_EQ(0u, MCAST6_DB_CreateL3SubElbObject(5, 0, &object));
    g_l3SubElb6ScanDbHandle = {1, cached, 0};
    platform.takeTrace();
    MCAST6_DB_ReleaseL3SubElbObject(object);
    EXPECT_EQ(1u, g_l3SubElb6ScanDbHandle.inUse);
    EXPECT_EQ(platform.trace(), (Trace{"release l3mc6_sub_elb obj2", "dfx 247"}));
    EXPECT_EQ(1u, platform.liveObjects());
}

TEST_F(SubElbTest, noOperationTouchesTheScanHandleOrTheLimitFlag) {
    g_subElb6DbIsLimit = 0x5A5A5A5A;
    EXPECT_EQ(0u, MCAST6_DB_ReadL3SubElb(&record));
    EXPECT_EQ(0u, MCAST6_DB_ReadL3SubElbFast(&record));
    for (Mcast6DbRes* iterator : {MCAST6_DB_CreateL3SubElbAllIterator(), MCAST6_DB_CreateL3mcVlanScanIterater(1),
                                  MCAST6_DB_CreateL3mcVlanAllMemIterator(&record)}) {
        ASSERT_NE(nullptr, iterator);
        EXPECT_EQ(0u, MCAST6_DB_GetL3SubElbEntry(iterator, &record));
        MCAST6_DB_ReleaseL3SubElbIterator(iterator);
    }
    EXPECT_EQ(0x5A5A5A5Au, g_subElb6DbIsLimit);
    EXPECT_EQ(0u, g_l3SubElb6ScanDbHandle.inUse);
    EXPECT_EQ(0u, g_l3SubElb6ScanDbHandle.object);
    EXPECT_EQ(0u, g_l3SubElb6ScanDbHandle.rootIter);
}

// -- edges

TEST_F(SubElbTest, aMissingRecordIs15005ByKeyAnd60ByIterator) {
    expectAbsentRead(table, MCAST6_DB_ReadL3SubElb, 15005);
    expectVanishedRecord(table, MCAST6_DB_GetL3SubElbEntry, MCAST6_DB_ReleaseL3SubElbIterator);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3SubElbFast(&record));
    expectSilence();
}

TEST_F(SubElbTest, theReadCacheIsMadeOnceAndResetBeforeEachRead) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(0u, MCAST6_DB_ReadL3SubElbFast(&record));
    EXPECT_EQ(1u, platform.callsOf("db_create_l3mc6_sub_elb_cache_object"));
    EXPECT_EQ(3u, platform.callsOf("db_reset_l3mc6_sub_elb_cache_object"));
    EXPECT_EQ(1u, platform.liveObjects());
    EXPECT_EQ(0u, platform.dfx(246));
    EXPECT_EQ(0u, platform.dfx(247));
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_sub_elb
