// l3mc6_elb. What each operation does, one row for each step:
//
// operation          step              fails with   then
// create object      create            any          KPI 128; the code
//                    -                 -            239; 0
// release object     the scan handle's -            flag cleared, nothing else
//                    another           -            released
// cache object       create cached     any          241; the code
//                    reset             any          241; the code
//                    -                 -            slot filled; 0
// read               null              -            1
//                    create 3          any          KPI 128; the code
//                    read              any          released; the code
//                    -                 -            record filled; released; 0
// fast read          null              -            1
//                    cache object      any          241; 1
//                    read              any          the code
//                    -                 -            record filled; 0
// count of outgoing  create 9          any          KPI 128; the code
//   interfaces       count             any          released; the code
//                    -                 -            count written; released; 0
// create iterator    create 5          any          KPI 128; null
//                    root iterator     any          released; null
//                    property          any          released; null
//                    allocation        -            released; null
//                    -                 -            handle
// iterator into a    null resource     -            KPI 129; 1
//   resource         create 5          any          KPI 128; KPI 129; 1
//                    root iterator     any          released; KPI 129; 1
//                    property          any          released; KPI 129; 1
//                    -                 -            resource filled; 0
// cache iterator     create cached     any          the code
//                    reset             any          the code
//                    -                 -            slot filled; 0
// fast scan          in use            -            as create iterator
//                    cache object 5    any          241; error 0; null
//                    cache iterator    any          error 7; null
//                    property          any          error 7; null
//                    allocation        -            error 8; null
//                    -                 -            flag set; handle
// get entry          null              -            1
//                    next              110012       60
//                                      other        log; error 9; the code
//                    read              15005        60
//                                      other        log; error 0; the code
//                    -                 -            record filled; 0
// release iterator   null              -            nothing
//                    -                 -            object released; block freed
//
// "released" counts 240, a successful create counts 239. Errors are recorded under table 16.
#include "mcast6_db/l3mc6_elb.h"

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

namespace mcast6::tests::l3mc6_elb {

namespace {

using l3_egress::fillSample;
using l3_egress::kEntry;
using recording::Bytes;
using recording::hex;
using recording::Recorder;
using recording::unhex;
using testing::IsEmpty;

// -- the rows of the sample

const std::string kKey = "key=0001002d:" + kEntry + l3_egress::kOutIfIndex + "9d";
const std::string kMembersKey = "key=06090029:" + kEntry + "9e";  // the low byte of elbFlagA

// Written at 1'700'000'000, the recorder's time; "__" is a byte that no conversion writes.
const std::string kSetRow =
    "04030201 08070605"                   // vrId, vrfId
    "1112131415161718191a1b1c1d1e1f20"    // groupAddr
    "2122232425262728292a2b2c2d2e2f30"    // sourceAddr
    "46454443 9d 9e 4241 9c 9f __ __"     // outIfIndex, elbFlagD, elbFlagA, instId, elbFlagC, elbFlagB, -
    "48470000 4c4b4a49 89888786"          // elbAttrD, elbAttrE, elbAttrG
    "34333231 3c3b3a3938373635 403f3e3d"  // elbAttrA, elbAttrB, elbAttrC
    "8b8a 8584"                           // elbHalfB, elbHalfA
    "505152535455565758595a5b5c5d5e5f"    // elbCtxA
    "606162636465666768696a6b"            //
    "707172737475767778797a7b"            // elbCtxB
    "7f7e7d7c 83828180"                   // elbAttrF, elbWord
    "939291908f8e8d8c 00f1536500000000";  // timeStampCreate, which is kept, timeStampSmooth

const std::string kStoredRow = digits(
    "d1000001 d2000002"                    // vrId, vrfId
    "ff1e0000000000000000000000001234"     // groupAddr
    "20010db8000000000000000000005678"     // sourceAddr
    "e3000003 e4 e5 06e6 e7 e8 ffff"       // outIfIndex, elbFlagD, elbFlagA, instId, elbFlagC, elbFlagB, -
    "e90900ff ea00000a eb00000b"           // elbAttrD, elbAttrE, elbAttrG
    "ec00000c 1011121314151617 ed00000d"   // elbAttrA, elbAttrB, elbAttrC
    "eeae efaf"                            // elbHalfB, elbHalfA
    "202122232425262728292a2b2c2d2e2f"     // elbCtxA
    "303132333435363738393a3b"             //
    "404142434445464748494a4b"             // elbCtxB
    "f000000e f100000f"                    // elbAttrF, elbWord
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");  // timeStampCreate, timeStampSmooth

void readStored(L3Mc6ElbEntry& entry) {
    l3_egress::readShared(entry);
    entry.entryType = 13;
    entry.elbAttrE = 0x0A0000EA;
    entry.zeroWord = 0;
    entry.elbAttrF = 0x0E0000F0;
    entry.elbFlagC = 0xE7;
    entry.elbFlagD = 0xE4;
    entry.zeroByte = 0;
}

// -- every exit

const LogId layer3{0x0F2E1016};
const Effect released = allOf({line("release l3mc6_elb obj1"), dfx(240)});

TableFamily<L3Mc6ElbEntry> table({.name = "l3mc6_elb",
                                  .rowSize = 148,
                                  .createStamp = 132,
                                  .key = kKey,
                                  .writtenRow = withGaps(kSetRow, "00"),
                                  .storedRow = kStoredRow,
                                  .created = {dfx(239)},
                                  .createFailed = {kpi(128)},
                                  .released = released,
                                  .createObject = MCAST6_DB_CreateL3ElbObject,
                                  .createIterator = MCAST6_DB_CreateL3ElbAllIterator},
                                 fillSample, readStored);

const ScanExits scanExits = {.objectFailed = {dfx(241), record(16, 0), returnsNull()},
                             .objectResetFailed = {dfx(241), record(16, 0), returnsNull()},
                             .iteratorFailed = {record(16, 7), returnsNull()},
                             .iteratorResetFailed = {record(16, 7), returnsNull()},
                             .propertyFailed = {record(16, 7), returnsNull()},
                             .allocationFailed = {record(16, 8), returnsNull()}};

Mcast6DbRes* scanMembers() {
    return MCAST6_DB_CreateL3ElbMcidIteratorFast(0x01020304, 0x05060708,
                                                 {{0x11121314, 0x15161718, 0x191A1B1C, 0x1D1E1F20}},
                                                 {{0x21222324, 0x25262728, 0x292A2B2C, 0x2D2E2F30}});
}

Mcast6DbRes* scanInterface() {
    const Mcast6DbKeyDesc descriptor{0x02090004, {0, 0, 0}};
    const uint32_t ifIndex = 0x51525354;
    return MCAST6_DB_CreateL3ElbIteratorFast(&descriptor, &ifIndex);
}

FastScans<L3Mc6ElbEntry> scans(table, {.handle = &g_l3Elb6ScanDbHandle,
                                       .scan = scanMembers,
                                       .release = MCAST6_DB_ReleaseL3ElbIterator,
                                       .keyWord = "01090029",
                                       .key = kEntry + "01",
                                       .exits = scanExits,
                                       .releasedCounter = 240,
                                       .returned = {},
                                       .ordinaryFailed = {returnsNull()}});
FastScans<L3Mc6ElbEntry> interfaceScans(table, {.handle = &g_l3Elb6ScanDbHandle,
                                                .scan = scanInterface,
                                                .release = MCAST6_DB_ReleaseL3ElbIterator,
                                                .keyWord = "02090004",
                                                .key = "54535251",
                                                .exits = scanExits,
                                                .releasedCounter = 240,
                                                .returned = {},
                                                .ordinaryFailed = {returnsNull()}});

const CacheExits objectExits = {.createFailed = {dfx(241), returns(code)}, .resetFailed = {dfx(241), returns(code)}};
const CacheExits iteratorExits = {.createFailed = {returns(code)}, .resetFailed = {returns(code)}};
const FastReadExits fastReadExits = {.null = {returns(1)},
                                     .createFailed = {dfx(241), returns(1)},
                                     .resetFailed = {dfx(241), returns(1)},
                                     .failed = {returns(code)}};

Operation read() {
    return table.read("ReadL3Elb", MCAST6_DB_ReadL3Elb,
                      {.null = {returns(1)},
                       .createFailed = {returns(code)},
                       .failed = {released, returns(code)},
                       .done = {released, returns(0)}});
}

Operation countOutgoing() {
    return table.countByKey(
        "GetOutIfNum", [](uint32_t* count) { return MCAST6_DB_GetOutIfNum(&table.record, count); }, kMembersKey,
        {.createFailed = {returns(code)}, .failed = {released, returns(code)}, .done = {released, returns(0)}});
}

template <class Function>
Operation createIterator(std::string name, Function run, const std::string& key) {
    return table.createIterator(std::move(name), run, key, builtByTheFrame(released, {returnsNull()}));
}

Operation createIteratorInResource() {
    const Effects failed = {kpi(129), returns(1)};
    Operation operation = table.createIteratorIn(
        "CreateL3ElbMfibIterator",
        [](Mcast6DbRes* resource) { return MCAST6_DB_CreateL3ElbMfibIterator(&table.record, resource); }, kMembersKey,
        builtByTheFrame(released, failed));
    operation.nulls = {{"resource", [] { return MCAST6_DB_CreateL3ElbMfibIterator(&table.record, nullptr); }, failed}};
    return operation;
}

Operation getEntry() {
    return table.getEntry(
        "GetL3ElbEntry", MCAST6_DB_GetL3ElbEntry,
        {.null = {returns(1)},
         .nextFailed = {layer3("get l3elb6 entry error. ret:%u.", code), record(16, 9), returns(code)},
         .readFailed = {layer3("get l3elb6 entry error, ret:%u.", code), record(16, 0), returns(code)}});
}

const Operation operations[] = {
    table.createObject("CreateL3ElbObject", MCAST6_DB_CreateL3ElbObject),
    table.releaseObject("ReleaseL3ElbObject", MCAST6_DB_ReleaseL3ElbObject),
    cacheObject(table, "CreateL3ElbObjCache", MCAST6_DB_CreateL3ElbObjCache, objectExits),
    cacheObjectAgain(table, "CreateL3ElbObjCacheAgain", MCAST6_DB_CreateL3ElbObjCache, objectExits),
    read(),
    readFast(table, "ReadL3ElbFast", MCAST6_DB_ReadL3ElbFast, g_l3Elb6DbReadObjCache, fastReadExits),
    readFastAgain(table, "ReadL3ElbFastAgain", MCAST6_DB_ReadL3ElbFast, g_l3Elb6DbReadObjCache, fastReadExits),
    countOutgoing(),
    createIterator(
        "CreateL3ElbIterator",
        [] {
            const Mcast6DbKeyDesc descriptor{0x02090004, {0, 0, 0}};
            const uint32_t ifIndex = 0x51525354;
            return MCAST6_DB_CreateL3ElbIterator(&descriptor, &ifIndex);
        },
        "key=02090004:54535251"),
    createIterator("CreateL3ElbAllIterator", MCAST6_DB_CreateL3ElbAllIterator, "none"),
    createIterator(
        "CreateL3ElbIfindexIterator", [] { return MCAST6_DB_CreateL3ElbIfindexIterator(0x61626364); },
        "key=02090004:64636261"),
    createIterator(
        "CreateL3ElbMfibIteratorExt", [] { return MCAST6_DB_CreateL3ElbMfibIteratorExt(&table.record); }, kMembersKey),
    createIteratorInResource(),
    cacheIterator(table, "CreateL3ElbIterCache", MCAST6_DB_CreateL3ElbIterCache, "02090004", "54535251", iteratorExits),
    cacheIteratorAgain(table, "CreateL3ElbIterCacheAgain", MCAST6_DB_CreateL3ElbIterCache, "02090004", "54535251",
                       iteratorExits),
    scans.first("CreateL3ElbMcidIteratorFastFirst"),
    scans.second("CreateL3ElbMcidIteratorFastWhileOneIsOut"),
    scans.third("CreateL3ElbMcidIteratorFastAgain"),
    scans.releaseFirst("ReleaseL3ElbIteratorOfAFastScan"),
    scans.releaseSecond("ReleaseL3ElbIteratorWhileAFastScanIsOut"),
    interfaceScans.first("CreateL3ElbIteratorFastFirst"),
    interfaceScans.second("CreateL3ElbIteratorFastWhileOneIsOut"),
    interfaceScans.third("CreateL3ElbIteratorFastAgain"),
    getEntry(),
    table.releaseIterator("ReleaseL3ElbIterator", MCAST6_DB_ReleaseL3ElbIterator),
};

INSTANTIATE_TEST_SUITE_P(l3mc6_elb, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class ElbTest : public SampleTest<L3Mc6ElbEntry, fillSample> {};

TEST_F(ElbTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, withGaps(kSetRow, "5a"), MCAST6_DB_SetL3Elb);
}

TEST_F(ElbTest, setReadsTheClockOnceForBothStampsWhenNoCreationTimeIsGiven) {
    record.timeStampCreate = 0;
    expectStamps(table, MCAST6_DB_SetL3Elb, record, kFirstTime + kFirstTime);
}

TEST_F(ElbTest, setKeepsACreationTimeThatIsGivenAndNoSmoothTime) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, MCAST6_DB_SetL3Elb, record, "0000000000000080" + kFirstTime);
}

TEST_F(ElbTest, getWritesEveryFieldItsConstantsAndNothingElse) { expectRecord(table, MCAST6_DB_GetL3Elb); }

// Makes each copy of a conversion fail in turn; only the code of the last address's copy is returned.
template <class Convert>
void expectTheSourceAddressToBeAnswered(Recorder& platform, Convert convert) {
    platform.traceCopies(true);
    platform.takeTrace();
    EXPECT_EQ(0u, convert());
    const Trace copies = platform.takeTrace();
    size_t last = copies.size();
    for (size_t i = 0; i < copies.size(); ++i) {
        if (copies[i] == "memcpy_s 16 16") last = i;
    }
    ASSERT_LT(last, copies.size());
    for (size_t failing = 0; failing < copies.size(); ++failing) {
        for (size_t i = 0; i <= failing; ++i) platform.answer("memcpy_s", i == failing ? 34 : 0);
        EXPECT_EQ(failing == last ? 34u : 0u, convert()) << failing;
        EXPECT_EQ(0u, platform.pendingAnswers());
    }
}

TEST_F(ElbTest, conversionsAnswerTheResultOfTheSourceAddressesConversion) {
    Bytes row = unhex(kStoredRow);
    expectTheSourceAddressToBeAnswered(platform, [&] { return MCAST6_DB_SetL3Elb(&record, row.data()); });
    expectTheSourceAddressToBeAnswered(platform, [&] { return MCAST6_DB_GetL3Elb(row.data(), &record); });
}

TEST_F(ElbTest, theKeyIsVrVrfGroupSourceInterfaceAndElbFlagD) { expectKey(table, MCAST6_DB_SetL3ElbKey); }

TEST_F(ElbTest, theKeyOfTheMembersIsVrVrfGroupSourceAndTheLowByteOfElbFlagA) {
    uint32_t keyWord[2] = {0x5A5A5A5A, 0xE1E2E3E4};
    Bytes key(43, 0x5A);
    MCAST6_DB_SetL3ElbCmdKey(&record, keyWord, key.data() + 1);
    EXPECT_EQ(kMembersKey, keyText(keyWord[0], inner(key)));
    EXPECT_EQ(0xE1E2E3E4u, keyWord[1]);
    EXPECT_THAT(platform.trace(), IsEmpty());
}

// -- the scan handle

TEST_F(ElbTest, oneObjectAndOneRootIteratorServeAllFastScans) {
    scans.expectOnePairServesEveryScan();
    EXPECT_EQ(0u, platform.dfx(239));
    EXPECT_EQ(0u, platform.dfx(240));
}

TEST_F(ElbTest, aSecondScanIsOrdinaryAndAThirdReusesThePair) {
    scans.expectTheSecondOfTwoScansToBeOrdinaryAndTheThirdToReuseThePair();
    EXPECT_EQ(2u, platform.dfx(239));  // the two ordinary ones
    EXPECT_EQ(2u, platform.dfx(240));
}

TEST_F(ElbTest, aScanWithoutMemoryLeavesTheFlagClear) { scans.expectAScanWithoutMemoryToLeaveThePairForTheNext(); }

TEST_F(ElbTest, aFailedScanIsTriedAgainFromTheStepThatFailed) {
    scans.expectAFailedScanToBeRepeatable();
    EXPECT_EQ(2u, g_mcast6DbErrStat[16][0]);
    EXPECT_EQ(3u, g_mcast6DbErrStat[16][7]);
    EXPECT_EQ(0u, g_mcast6DbErrStat[16][8]);
}

TEST_F(ElbTest, aLaterScanHasAKeyOfItsOwnAndTheIndexOfTheFirst) {
    scans.expectALaterScanToHaveItsOwnKey(
        [] {
            return MCAST6_DB_CreateL3ElbMcidIteratorFast(1, 2, {{3, 4, 5, 6}}, {{7, 8, 9, 10}});
        },
        "01000000 02000000 00000003000000040000000500000006 0000000700000008000000090000000a 01");
}

TEST_F(ElbTest, noObjectIsTheEmptyScanHandles) {
    expectNoObjectToBeTheEmptyHandles(g_l3Elb6ScanDbHandle, MCAST6_DB_ReleaseL3ElbObject, {});
}

TEST_F(ElbTest, noObjectIsReleasedWhenTheScanHandleHasOne) {
    scans.expectNoObjectToBeReleasedWhileAScanIsOut(MCAST6_DB_ReleaseL3ElbObject);
}

TEST_F(ElbTest, theScansObjectMayBeGivenBackWithoutItsIterator) {
    Mcast6DbRes* scan = scanMembers();
    ASSERT_NE(nullptr, scan);
    platform.takeTrace();
    MCAST6_DB_ReleaseL3ElbObject(scan->object);
    EXPECT_EQ("0 obj1 iter1", scans.handleText());
    EXPECT_THAT(platform.trace(), IsEmpty());
    EXPECT_EQ(1u, platform.liveObjects());
    MCAST6_DB_ReleaseL3ElbIterator(scan);
}

TEST_F(ElbTest, theCachedObjectsOfReadsAndScansAreTwo) {
    EXPECT_EQ(0u, MCAST6_DB_ReadL3ElbFast(&record));
    Mcast6DbRes* scan = scanMembers();
    ASSERT_NE(nullptr, scan);
    EXPECT_EQ("obj1", nameOf(g_l3Elb6DbReadObjCache));
    EXPECT_EQ("1 obj2 iter1", scans.handleText());
    MCAST6_DB_ReleaseL3ElbIterator(scan);
}

// -- edges

TEST_F(ElbTest, aMissingEntryIs15005ByKeyAnd60ByIterator) {
    expectAbsentRead(table, MCAST6_DB_ReadL3Elb, 15005);
    expectVanishedRecord(table, MCAST6_DB_GetL3ElbEntry, MCAST6_DB_ReleaseL3ElbIterator);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3ElbFast(&record));
    expectSilence();
}

TEST_F(ElbTest, aLargeInstIdComesBackAsItsLow16BitsOfAVlan) {
    for (const auto& [given, stored, back] : {std::tuple{0x00010000u, "0000", 0u},
                                              {0x0001FFFFu, "ffff", 0xFFFFu},
                                              {0xFFFF0001u, "0100", 1u},
                                              {65535u, "ffff", 65535u}}) {
        fillSample(record);
        record.instId = given;
        record.instType = 1;
        Bytes row(148);
        MCAST6_DB_SetL3Elb(&record, row.data());
        EXPECT_EQ(stored, hex(std::span(row).subspan(46, 2)));
        MCAST6_DB_GetL3Elb(row.data(), &record);
        EXPECT_EQ(back, record.instId);
        EXPECT_EQ(0u, record.instType);
        EXPECT_EQ(13u, record.entryType);
        EXPECT_EQ(2u, record.addrType);
    }
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_elb
