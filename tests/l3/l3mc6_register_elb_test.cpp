// l3mc6_register_elb. What each operation does, one row for each step:
//
// operation          step            fails with   then
// create object      create          any          KPI 141; the code
//                    -               -            252; 0
// release object     -               -            released
// write              create 0        any          KPI 141; log; KPI 138; 1
//                    set all         any          log; released; KPI 138; the code
//                    write           13044        released; KPI 137; 0
//                                    other        released; log; KPI 138; the code
//                    -               -            released; KPI 137; 0
// read               create 3        any          KPI 141; log; 1
//                    read            15005        released; 60
//                                    other        released; the code
//                    -               -            record filled; released; 0
// delete             create 4        any          KPI 141; log; KPI 140; the code
//                    remove          15005        released; KPI 139; 0
//                                    other        released; log; KPI 140; the code (13044 too)
//                    -               -            released; KPI 139; 0
// create iterator    create 5        any          KPI 141; KPI 142; null
//                    root iterator   any          released; KPI 142; null
//                    property        any          released; KPI 142; null
//                    allocation      -            released; KPI 142; null
//                    -               -            handle
// get entry          null            -            log; 1
//                    next            110012       60
//                                    other        log; 1
//                    read            15005        60
//                                    other        log; 1
//                    -               -            record filled; 0
// get entry as       as get entry, and the egress record is filled
//   egress record
// release iterator   null            -            nothing
//                    -               -            released; block freed
//
// "released" counts 253, a successful create counts 252. No error statistics.
#include "mcast6_db/l3mc6_register_elb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>

#include "mcast6_db/context.h"
#include "tests/l3/l3_egress_sample.h"
#include "tests/support/bytes.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l3mc6_register_elb {

namespace {

using recording::Bytes;
using recording::hex;
using recording::unhex;
using testing::IsEmpty;

// -- the sample: a record with different bytes in each field, and its rows

void fillSample(L3Mc6RegOifEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.vrId = 0x01020304;
    record.vrfId = 0x05060708;
    record.groupAddr = {{0x11121314, 0x15161718, 0x191A1B1C, 0x1D1E1F20}};
    record.sourceAddr = {{0x21222324, 0x25262728, 0x292A2B2C, 0x2D2E2F30}};
    record.outIfIndex = 0x31323334;
    const uint8_t host1[4] = {0xE0, 0xE1, 0xE2, 0xE3};
    std::memcpy(record.host1, host1, sizeof host1);
    record.regAttrA = 0x35363738;
    record.regAttrB = 0xF93A3B3C;  // the high bit is no sign
    record.instId = 0x3D3E3F40;
    record.instType = 0x41;
    record.regAttrC = 0x42;
    record.regAttrD = 0x43;
    record.host2 = 0xE4;
    const uint8_t regHalfB[2] = {0x44, 0x45};
    const uint8_t regHalfA[2] = {0x46, 0x47};
    std::memcpy(record.regHalfB, regHalfB, sizeof regHalfB);
    std::memcpy(record.regHalfA, regHalfA, sizeof regHalfA);
    for (uint8_t i = 0; i < 28; ++i) record.regCtxA[i] = static_cast<uint8_t>(0x50 + i);
    for (uint8_t i = 0; i < 12; ++i) record.regCtxB[i] = static_cast<uint8_t>(0x70 + i);
    record.regWord = 0x7C7D7E7F;
    record.timeStampCreate = 0x8182838485868788;
    record.timeStampSmooth = 0x898A8B8C8D8E8F90;
}

const std::string kKey = "key=00010028:" + digits(
                                               "04030201 08070605"                   // vrId, vrfId
                                               "1112131415161718191a1b1c1d1e1f20"    // groupAddr
                                               "2122232425262728292a2b2c2d2e2f30");  // sourceAddr

// Written at 1'700'000'000, the recorder's time; "__" is a byte that no conversion writes.
const std::string kSetRow =
    "04030201 08070605"                            // vrId, vrfId
    "1112131415161718191a1b1c1d1e1f20"             // groupAddr
    "2122232425262728292a2b2c2d2e2f30"             // sourceAddr
    "34333231 38373635 3c3b3af900000000 403f3e3d"  // outIfIndex, regAttrA, regAttrB, instId
    "41 42 43 __ 4445 4647"                        // instType, regAttrC, regAttrD, -, regHalfB, regHalfA
    "505152535455565758595a5b5c5d5e5f"             // regCtxA
    "606162636465666768696a6b"                     //
    "707172737475767778797a7b 7f7e7d7c"            // regCtxB, regWord
    "8887868584838281 00f1536500000000";           // timeStampCreate, which is kept, timeStampSmooth

const std::string kStoredRow = digits(
    "d1000001 d2000002"                            // vrId, vrfId
    "ff1e0000000000000000000000001234"             // groupAddr
    "20010db8000000000000000000005678"             // sourceAddr
    "d3000003 d4000004 d5000085f1f2f3f4 d6000006"  // outIfIndex, regAttrA, regAttrB, instId
    "d7 d8 d9 ff b1b2 b3b4"                        // instType, regAttrC, regAttrD, -, regHalfB, regHalfA
    "202122232425262728292a2b2c2d2e2f"             // regCtxA
    "303132333435363738393a3b"                     //
    "404142434445464748494a4b da00000a"            // regCtxB, regWord
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");          // timeStampCreate, timeStampSmooth

void readStored(L3Mc6RegOifEntry& record) {
    record.vrId = 0x010000D1;
    record.vrfId = 0x020000D2;
    record.groupAddr = {{0xFF1E0000, 0, 0, 0x1234}};
    record.sourceAddr = {{0x20010DB8, 0, 0, 0x5678}};
    record.outIfIndex = 0x030000D3;
    record.regAttrA = 0x040000D4;
    record.regAttrB = 0x850000D5;
    record.instId = 0x060000D6;
    record.instType = 0xD7;
    record.regAttrC = 0xD8;
    record.regAttrD = 0xD9;
    record.regHalfB[0] = 0xB1;
    record.regHalfB[1] = 0xB2;
    record.regHalfA[0] = 0xB3;
    record.regHalfA[1] = 0xB4;
    for (uint8_t i = 0; i < 28; ++i) record.regCtxA[i] = static_cast<uint8_t>(0x20 + i);
    for (uint8_t i = 0; i < 12; ++i) record.regCtxB[i] = static_cast<uint8_t>(0x40 + i);
    record.regWord = 0x0A0000DA;
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
}

// Changes an egress record as reading the stored row into it does.
void readStoredAsEgress(L3Mc6ElbEntry& entry) {
    entry.vrId = 0x010000D1;
    entry.vrfId = 0x020000D2;
    entry.groupAddr = {{0xFF1E0000, 0, 0, 0x1234}};
    entry.sourceAddr = {{0x20010DB8, 0, 0, 0x5678}};
    entry.elbAttrA = 0x040000D4;
    entry.elbAttrB = 0x00000000850000D5;
    entry.instType = 0x000000D7;
    entry.instId = 0x060000D6;
    entry.outIfIndex = 0x030000D3;
    for (uint8_t i = 0; i < 28; ++i) entry.elbCtxA[i] = static_cast<uint8_t>(0x20 + i);
    for (uint8_t i = 0; i < 12; ++i) entry.elbCtxB[i] = static_cast<uint8_t>(0x40 + i);
    entry.elbWord = 0x0A0000DA;
    entry.elbHalfA = 0xB4B3;
    entry.elbHalfB = 0xB2B1;
    entry.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    entry.timeStampSmooth = 0xAFAEADACABAAA9A8;
    entry.elbFlagA = 0x000000D8;
    entry.elbFlagB = 0x000000D9;
}

// -- every exit

const LogId layer3{0x0F2E1016};
const Effect released = allOf({line("release l3mc6_register_elb obj1"), dfx(253)});

TableFamily<L3Mc6RegOifEntry> table({.name = "l3mc6_register_elb",
                                     .rowSize = 128,
                                     .createStamp = 112,
                                     .key = kKey,
                                     .writtenRow = withGaps(kSetRow, "00"),
                                     .storedRow = kStoredRow,
                                     .created = {dfx(252)},
                                     .createFailed = {kpi(141)},
                                     .released = released,
                                     .createObject = MCAST6_DB_CreateL3McRegistOifObject,
                                     .createIterator = MCAST6_DB_CreateL3mcRegOifAllIterator},
                                    fillSample, readStored);
L3Mc6ElbEntry egress;

Operation write() {
    return table.write(
        "WriteRegistOif", MCAST6_DB_WriteRegistOif,
        {.createFailed = {layer3("[MCAST6 DB] create regist write obj fail. ret:%u", code), kpi(138), returns(1)},
         .setFailed = {layer3("[MCAST6 DB] set regist write obj fail. ret:%u", code), released, kpi(138),
                       returns(code)},
         .failed = {released, layer3("[MCAST6 DB]write l3mc6 regist elb failed. ret:%u.", code), kpi(138),
                    returns(code)},
         .answered = {{13044, {released, kpi(137), returns(0)}}},
         .done = {released, kpi(137), returns(0)}});
}

Operation read() {
    return table.read("ReadRegistOif", MCAST6_DB_ReadRegistOif,
                      {.createFailed = {layer3("[MCAST6 DB] create regist read obj fail. ret:%u", code), returns(1)},
                       .failed = {released, returns(code)},
                       .answered = {{15005, {released, returns(60)}}},
                       .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove(
        "DeleteRegistOif", MCAST6_DB_DeleteRegistOif,
        {.createFailed = {layer3("[MCAST6 DB] create regist remove obj fail. ret:%u", code), kpi(140), returns(code)},
         .failed = {released, layer3("[MCAST6 DB] delete regist obj fail. ret:%u", code), kpi(140), returns(code)},
         .answered = {{15005, {released, kpi(139), returns(0)}}},
         .done = {released, kpi(139), returns(0)}});
}

template <class Function>
Operation createIterator(std::string name, Function run, const std::string& key) {
    return table.createIterator(std::move(name), run, key, builtByTheFrame(released, {kpi(142), returnsNull()}));
}

const EntryExits entryExits = {
    .null = {layer3("[l3mc6 reg] get reg oif obj fail."), returns(1)},
    .nextFailed = {layer3("[l3mc6 reg] get reg oif entry fail, ret:%u.", code), returns(1)},
    .readFailed = {layer3("[l3mc6 reg] read reg oif object fail, ret:%u.", code), returns(1)}};

Operation getEntryAsEgress() {
    Scene scene = table.withIterator();
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        l3_egress::fillSample(egress);
    };
    scene.watched.push_back(watchBytes("egress", egress));
    L3Mc6ElbEntry expected;
    l3_egress::fillSample(expected);
    readStoredAsEgress(expected);
    return {
        .name = "GetL3mcRegOifEntryExt",
        .scene = scene,
        .run = [] { return MCAST6_DB_GetL3mcRegOifEntryExt(table.iterator, &egress); },
        .nulls = {{"iterator", [] { return MCAST6_DB_GetL3mcRegOifEntryExt(nullptr, &egress); }, entryExits.null},
                  {"egress", [] { return MCAST6_DB_GetL3mcRegOifEntryExt(table.iterator, nullptr); }, entryExits.null}},
        .steps = stepAndRead(table.facts, entryExits),
        .done = {leaves("egress", bytesOf(expected)), returns(0)}};
}

const Operation operations[] = {
    table.createObject("CreateL3McRegistOifObject", MCAST6_DB_CreateL3McRegistOifObject),
    table.releaseObject("ReleaseL3McRegistOifObject", MCAST6_DB_ReleaseL3McRegistOifObject),
    write(),
    read(),
    remove(),
    createIterator(
        "CreateL3mcRegOifIterator",
        [] {
            const Mcast6DbKeyDesc descriptor{0x02090004, {0, 0, 0}};
            const uint32_t ifIndex = 0x51525354;
            return MCAST6_DB_CreateL3mcRegOifIterator(&descriptor, &ifIndex);
        },
        "key=02090004:54535251"),
    createIterator("CreateL3mcRegOifAllIterator", MCAST6_DB_CreateL3mcRegOifAllIterator, "none"),
    createIterator(
        "CreateL3mcRegOifIfIndexIterator", [] { return MCAST6_DB_CreateL3mcRegOifIfIndexIterator(0x61626364); },
        "key=02090004:64636261"),
    createIterator(
        "CreateL3mcRegOifVlanIterator", [] { return MCAST6_DB_CreateL3mcRegOifVlanIterator(&table.record); },
        "key=03090005:" + digits("403f3e3d 41")),
    createIterator(
        "CreateL3mcRegOifVSGIterator",
        [] {
            l3_egress::fillSample(egress);
            return MCAST6_DB_CreateL3mcRegOifVSGIterator(&egress);
        },
        "key=04090029:" + l3_egress::kEntry + "9e"),
    table.getEntry("GetL3mcRegOifEntry", MCAST6_DB_GetL3mcRegOifEntry, entryExits),
    getEntryAsEgress(),
    table.releaseIterator("ReleaseL3mcRegOifIterator", MCAST6_DB_ReleaseL3mcRegOifIterator),
};

INSTANTIATE_TEST_SUITE_P(l3mc6_register_elb, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class RegisterElbTest : public SampleTest<L3Mc6RegOifEntry, fillSample> {
protected:
    RegisterElbTest() { l3_egress::fillSample(entry); }

    // The sizes of all copies except those of addresses, sorted.
    Trace copies() {
        Trace lines = platform.takeTrace();
        std::erase(lines, "memcpy_s 16 16");
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    L3Mc6ElbEntry entry;
};

const Trace kCopiesOfBlocks{"memcpy_s 12 12", "memcpy_s 2 2", "memcpy_s 2 2", "memcpy_s 28 28"};

TEST_F(RegisterElbTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, withGaps(kSetRow, "5a"), MCAST6_DB_SetRegistItem);
}

TEST_F(RegisterElbTest, setReadsTheClockOnceForBothStampsWhenNoCreationTimeIsGiven) {
    record.timeStampCreate = 0;
    expectStamps(table, MCAST6_DB_SetRegistItem, record, kFirstTime + kFirstTime);
}

TEST_F(RegisterElbTest, setKeepsACreationTimeThatIsGiven) {
    record.timeStampCreate = 1ULL << 63;
    expectStamps(table, MCAST6_DB_SetRegistItem, record, "0000000000000080" + kFirstTime);
}

TEST_F(RegisterElbTest, getWritesEveryFieldAndNothingElse) { expectRecord(table, MCAST6_DB_GetRegistData); }

TEST_F(RegisterElbTest, conversionsCopyTheirBlocksWithMemcpyS) {
    platform.traceCopies(true);
    Bytes row(128);
    MCAST6_DB_SetRegistItem(&record, row.data());
    EXPECT_EQ(kCopiesOfBlocks, copies());
    MCAST6_DB_GetRegistData(row.data(), &record);
    EXPECT_EQ(kCopiesOfBlocks, copies());
}

TEST_F(RegisterElbTest, theKeyIsVrVrfGroupAndSourceByteForByte) {
    expectKey(table, [](uint32_t* keyWord, void* key, const L3Mc6RegOifEntry* given) {
        MCAST6_DB_SetRegistKey(key, keyWord, given);
    });
}

TEST_F(RegisterElbTest, regAttrBComesBackThroughIts64BitField) {
    for (const uint32_t value : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        record.regAttrB = value;
        Bytes row(128, 0x5A);
        MCAST6_DB_SetRegistItem(&record, row.data());
        EXPECT_EQ("00000000", hex(std::span(row).subspan(52, 4)));
        record.regAttrB = ~value;
        MCAST6_DB_GetRegistData(row.data(), &record);
        EXPECT_EQ(value, record.regAttrB);
    }
}

// -- egress records

// Changes the register sample as converting the egress sample into it does.
L3Mc6RegOifEntry registerOfEgress() {
    L3Mc6RegOifEntry expected;
    fillSample(expected);
    expected.vrId = 0x01020304;
    expected.vrfId = 0x05060708;
    expected.groupAddr = {{0x11121314, 0x15161718, 0x191A1B1C, 0x1D1E1F20}};
    expected.sourceAddr = {{0x21222324, 0x25262728, 0x292A2B2C, 0x2D2E2F30}};
    expected.outIfIndex = 0x43444546;
    expected.regAttrA = 0x31323334;
    expected.regAttrB = 0x393A3B3C;  // the low half
    expected.instId = 0;
    expected.instType = 2;
    expected.regAttrC = 0x9E;
    expected.regAttrD = 0x9F;
    expected.regHalfA[0] = 0x85;
    expected.regHalfA[1] = 0x84;
    expected.regHalfB[0] = 0x8B;
    expected.regHalfB[1] = 0x8A;
    expected.regWord = 0x80818283;
    expected.timeStampCreate = 0x8C8D8E8F90919293;
    expected.timeStampSmooth = 0x9495969798999A9B;
    return expected;
}

TEST_F(RegisterElbTest, anEgressRecordBecomesARegisterRecordAndTheGapsStay) {
    for (uint8_t& byte : record.regCtxA) byte = 0;
    for (uint8_t& byte : record.regCtxB) byte = 0;
    record.groupAddr = {};
    record.sourceAddr = {};
    record.vrId = 0;
    record.vrfId = 0;
    platform.traceCopies(true);
    MCAST6_DB_TransElbEntryToRegElbEntry(&entry, &record);
    EXPECT_EQ(bytesOf(registerOfEgress()), bytesOf(record));
    EXPECT_EQ(kCopiesOfBlocks, copies());
    EXPECT_EQ(0u, platform.clockReadings());

    L3Mc6ElbEntry unchanged;
    l3_egress::fillSample(unchanged);
    EXPECT_EQ(bytesOf(unchanged), bytesOf(entry));
}

TEST_F(RegisterElbTest, theInstanceFollowsTheKindOfTheEgressRecord) {
    struct {
        uint32_t given;
        uint8_t instType;
        uint32_t instId;
    } const cases[] = {{0, 0, 0xF1F24142}, {1, 1, 0xF1F24142}, {2, 2, 0},     {3, 2, 0},
                       {5, 2, 0},          {0x00000100, 2, 0}, {0x101, 2, 0}, {0x80000000, 2, 0},
                       {0x80000001, 2, 0}, {0xFFFFFFFF, 2, 0}};
    for (const auto& item : cases) {
        entry.instType = item.given;
        fillSample(record);
        L3Mc6RegOifEntry expected = record;
        expected.instType = item.instType;
        expected.instId = item.instId;
        MCAST6_DB_TransVlanAndBdInfoToInst(&entry, &record);
        EXPECT_EQ(bytesOf(expected), bytesOf(record)) << item.given;

        fillSample(record);
        expected = registerOfEgress();
        expected.instType = item.instType;
        expected.instId = item.instId;
        for (uint8_t i = 0; i < 28; ++i) expected.regCtxA[i] = static_cast<uint8_t>(0x50 + i);
        MCAST6_DB_TransElbEntryToRegElbEntry(&entry, &record);
        EXPECT_EQ(bytesOf(expected), bytesOf(record)) << item.given;
    }
    EXPECT_THAT(platform.trace(), IsEmpty());
}

TEST_F(RegisterElbTest, anUnknownKindDropsTheIdOfTheEgressRecord) {
    entry.instType = 5;
    entry.instId = 100;
    MCAST6_DB_TransElbEntryToRegElbEntry(&entry, &record);
    EXPECT_EQ(2u, record.instType);
    EXPECT_EQ(0u, record.instId);
}

// Every kind of a register record is passed on unchanged.
TEST_F(RegisterElbTest, anIteratorDeliversTheKindOfInstanceAsItIs) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3mcRegOifAllIterator();
    ASSERT_NE(nullptr, iterator);
    for (const uint8_t kind : std::initializer_list<uint8_t>{0, 1, 2, 3, 5, 255}) {
        Bytes row = unhex(kStoredRow);
        row[60] = kind;
        platform.fillNextRead(row);
        L3Mc6ElbEntry expected;
        l3_egress::fillSample(expected);
        readStoredAsEgress(expected);
        expected.instType = kind;
        l3_egress::fillSample(entry);
        EXPECT_EQ(0u, MCAST6_DB_GetL3mcRegOifEntryExt(iterator, &entry));
        EXPECT_EQ(bytesOf(expected), bytesOf(entry)) << int{kind};
    }
    MCAST6_DB_ReleaseL3mcRegOifIterator(iterator);
}

TEST_F(RegisterElbTest, anEgressRecordIsUntouchedWhenNoEntryIsDelivered) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3mcRegOifAllIterator();
    ASSERT_NE(nullptr, iterator);
    const std::string before = bytesOf(entry);
    platform.answer("db_root_iterator_next", 110012);
    EXPECT_EQ(60u, MCAST6_DB_GetL3mcRegOifEntryExt(iterator, &entry));
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, MCAST6_DB_GetL3mcRegOifEntryExt(iterator, &entry));
    platform.answer("db_read_obj_with_buf", 9);
    EXPECT_EQ(1u, MCAST6_DB_GetL3mcRegOifEntryExt(iterator, &entry));
    EXPECT_EQ(before, bytesOf(entry));
    MCAST6_DB_ReleaseL3mcRegOifIterator(iterator);
}

TEST_F(RegisterElbTest, theVsgIteratorTakesTheLowByteOfElbFlagA) {
    entry.elbFlagA = 0x01020384;
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3mcRegOifVSGIterator(&entry);
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ("root_iter obj1 key=04090029:" + l3_egress::kEntry + "84 -> iter1", platform.trace()[2]);
    MCAST6_DB_ReleaseL3mcRegOifIterator(iterator);
}

// -- edges

TEST_F(RegisterElbTest, deletingAMissingRecordIsSuccess) {
    platform.answer("db_remove_obj", 15005);
    EXPECT_EQ(0u, MCAST6_DB_DeleteRegistOif(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l3mc6_register_elb 4 0 -> obj1",
                                    "dfx 252",
                                    "remove obj1 " + kKey + " -> 15005",
                                    "release l3mc6_register_elb obj1",
                                    "dfx 253",
                                    "kpi 139",
                                }));
}

TEST_F(RegisterElbTest, aRemovalThatTheEngineAnswersWith13044IsAFailure) {
    platform.answer("db_remove_obj", 13044);
    EXPECT_EQ(13044u, MCAST6_DB_DeleteRegistOif(&record));
    EXPECT_EQ(1u, platform.kpi(140));
    EXPECT_EQ(0u, platform.kpi(139));
}

TEST_F(RegisterElbTest, aMissingRecordReadsAs60) {
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, MCAST6_DB_ReadRegistOif(&record));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

TEST_F(RegisterElbTest, aWriteOfARecordWithoutCreationTimeStoresTheCurrentTimeTwice) {
    record.timeStampCreate = 0;
    std::string row = withGaps(kSetRow, "00");
    row.replace(2 * 112, 16, "00f1536500000000");
    EXPECT_EQ(0u, MCAST6_DB_WriteRegistOif(&record));
    EXPECT_EQ("set_all l3mc6_register_elb obj1 " + row, platform.trace()[2]);
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_register_elb
