// l2mc6_elb. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          log; 1
//                    -             -            counts 7; 0
// release object     -             -            released; counts 8
// read               null          -            log; 1
//                    create 3      any          log; 1
//                    read          15005        released; 15005
//                                  other        released; log; error 0; the code
//                    -             -            record filled; released; 0
// write              null          -            log; KPI 28; 1
//                    create 0      any          log; KPI 28; 1
//                    set all       any          released; log; KPI 28; 1
//                    write         13044        released; error 1; KPI 27; 0
//                                  other        released; KPI 28; log; error 2; 1
//                    -             -            released; KPI 27; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; 1
//                    2 setters     any          log; released; 1
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; 0
//                    -             -            released; 0
// delete             null          -            log; KPI 30; 1
//                    create 4      any          log; KPI 30; 1
//                    remove        13044        released; error 1; KPI 29; 0
//                                  other        released; KPI 30; error 4; log; 1
//                    -             -            released; KPI 29; 0
// get contexts       4 getters     any          OR of all codes
// get addresses      2 getters     any          OR of both codes
// get item           null          -            nothing
//                    22 getters    any          log with the OR of the codes
// get next           null record   -            the step; 0
//                    next          110012       60
//                                  other        log; 1
//                    22 getters    any          as get item; 0
// get entry          null          -            1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// create iterator    create 5      any          log; null
//   over all         root iterator any          log; error 7; released; null
//                    property      any          released; log; null
//                    allocation    -            released; log; error 8; null
//   with a key, over all again, by interface, by key record
//                    create 5      any          error 8; log; null
//                    root iterator any          released; error 8; log; null
//                    property      any          released; log; null
//                    allocation    -            released; error 8; log; null
//   by source        create 5      any          error 0; null
//                    root iterator any          released; null
//                    property      any          released; log; null
//                    allocation    -            log; error 8; released; null
// release iterator   null          -            nothing
//                    -             -            released; block freed
// count by source    create 9      any          error 0; 1
//                    count         15005        released; 0
//                                  other        log; error 0; released; 0
//                    -             -            released; the count
//
// A failed create is logged with its code, in addition to the effects above. Errors are recorded under table 7.
#include "mcast6_db/l2mc6_elb.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "mcast6_db/context.h"
#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "mcast6_platform/engine.h"
#include "tests/l2/l2mc6_elb_sample.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2mc6_elb {

namespace {

using recording::Bytes;
using recording::hex;
using recording::Recorder;
using recording::unhex;
using testing::IsEmpty;

const LogId egress{0x0F2E100F};
const Effect released = allOf({line("release l2mc6_elb obj1"), dfx(8)});

TableFamily<L2Elb6Entry> table({.name = "l2mc6_elb",
                                .rowSize = 168,
                                .createStamp = 152,
                                .key = kKey,
                                .writtenRow = kWrittenRow,
                                .storedRow = kStoredRow,
                                .created = {dfx(7)},
                                .createFailed = {egress("[MCAST6 DB] l2 elb6 create db object failed. ret:%u.", code)},
                                .createAnswers = 1,
                                .released = released,
                                .createObject = MCAST6_DB_CreateL2Elb6Object,
                                .createIterator = MCAST6_DB_CreateL2Elb6Iter},
                               fillSample, readStored);

// -- one record

Operation read() {
    return table.read("ReadL2Elb6", MCAST6_DB_ReadL2Elb6,
                      {.null = {egress("[MCAST6 DB] read elb6 failed, para is null."), returns(1)},
                       .createFailed = {egress("[MCAST6 DB] read elb6 failed"), returns(1)},
                       .failed = {released, egress("[MCAST6 DB] read elb6 object db failed, ret:%u.", code),
                                  record(7, 0), returns(code)},
                       .answered = {{15005, {released, returns(15005)}}},
                       .done = {released, returns(0)}});
}

Operation write() {
    return table.write(
        "WriteL2Elb6", MCAST6_DB_WriteL2Elb6,
        {.null = {egress("[MCAST6 DB] write db elb object failed, param is null."), kpi(28), returns(1)},
         .createFailed = {egress("[MCAST6 DB] write elb6Entry failed"), kpi(28), returns(1)},
         .setFailed = {released, egress("[MCAST6 DB] write l2elb6, set_all_fields failed, ret:%u.", code), kpi(28),
                       returns(1)},
         .failed = {released, kpi(28), egress("[MCAST6 DB] write L2Elb6 db failed. ret:%u.", code), record(7, 2),
                    returns(1)},
         .answered = {{13044, {released, record(7, 1), kpi(27), returns(0)}}},
         .done = {released, kpi(27), returns(0)}});
}

Operation update() {
    const Effect failed = egress("[MCAST6 DB] update elb6 failed, create db object failed. ret:%u.", code);
    return table.update("UpdateL2Elb6SmoothVersion", MCAST6_DB_UpdateL2Elb6SmoothVersion,
                        {table.sets("smoothVersion", 0x5D5E5F60), table.stamps("timeStampSmooth")},
                        {.null = {egress("[MCAST6 DB] update db elb6 object failed, param is null."), returns(1)},
                         .createFailed = {egress("[MCAST6 DB] update elb6 failed"), returns(1)},
                         .setFailed = {failed, released, returns(1)},
                         .failed = {released, failed, record(7, 6), returns(0)},
                         .answered = {{13044, {released, record(7, 1), returns(0)}}},
                         .done = {released, returns(0)}});
}

Operation remove() {
    return table.remove(
        "DeleteL2Elb6", MCAST6_DB_DeleteL2Elb6,
        {.null = {egress("[MCAST6 DB] delete db elb6 object failed, param is null."), kpi(30), returns(1)},
         .createFailed = {egress("[MCAST6 DB] delete elb6 failed"), kpi(30), returns(1)},
         .failed = {released, kpi(30), record(7, 4), egress("[MCAST6 DB] delete elb6 failed. ret:%u.", code),
                    returns(1)},
         .answered = {{13044, {released, record(7, 1), kpi(29), returns(0)}}},
         .done = {released, kpi(29), returns(0)}});
}

// -- reads by field

std::vector<Call> getters(std::initializer_list<const char*> fields) {
    std::vector<Call> calls;
    for (const char* field : fields) calls.push_back(call(getterLine("l2mc6_elb", field)));
    return calls;
}

// The sample after the successful getters. The VLAN is read into a word of zeros.
Effect leavesRead(bool isItem) {
    return [isItem](Expectation& expectation) {
        L2Elb6Entry read = table.sample();
        if (isItem) {
            readConstants(read);
            read.vlanId = 0;
        }
        readWhatWasGot(read, kItemReads, "l2mc6_elb", expectation.expected.trace);
        expectation.expected.memory["record"] = bytesOf(read);
    };
}

Step itemStep(const Effect& result) {
    Step step{.calls = {},
              .failed = {egress("[MCAST6 DB] get mcast6 elb6 fail, ret:%u.", code), leavesRead(true), result}};
    for (const auto& read : kItemReads) step.calls.push_back(call(getterLine("l2mc6_elb", read.field)));
    return step;
}

Scene beforeARecord() {
    Scene scene = table.withIterator();
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        Recorder::instance().fillNextStep(unhex(kStoredRow));
    };
    return scene;
}

Scene onARecord() {
    Scene scene = beforeARecord();
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        if (db_root_iterator_next(table.iterator->rootIter) != 0) throw std::logic_error("no record to read");
    };
    return scene;
}

Operation getContexts() {
    return {
        .name = "GetL2Elb6CtxItem",
        .scene = onARecord(),
        .run = [] { return MCAST6_DB_GetL2Elb6CtxItem(table.iterator->object, &table.record); },
        .steps = {{.calls = getters({"serviceStatus", "svcCtxHighPrio", "svcCtxNormalPrio", "errCode"}),
                   .failed = {leavesRead(false), returns(code)}}},
        .done = {leavesRead(false), returns(0)},
    };
}

Operation getAddresses() {
    return {
        .name = "GetL2Elb6AddrItem",
        .scene = onARecord(),
        .run = [] { return MCAST6_DB_GetL2Elb6AddrItem(table.iterator->object, &table.record); },
        .steps = {{.calls = getters({"groupAddr", "sourceAddr"}), .failed = {leavesRead(false), returns(code)}}},
        .done = {leavesRead(false), returns(0)},
    };
}

Operation getItem() {
    return {
        .name = "GetL2Elb6Item",
        .scene = onARecord(),
        .run = [] { MCAST6_DB_GetL2Elb6Item(table.iterator->object, &table.record); },
        .nulls = {{"record", [] { MCAST6_DB_GetL2Elb6Item(table.iterator->object, nullptr); }, {returnsNothing()}}},
        .steps = {itemStep(returnsNothing())},
        .done = {leavesRead(true), returnsNothing()},
    };
}

Operation getNext() {
    return {
        .name = "GetNextL2Elb6",
        .scene = beforeARecord(),
        .run = [] { return MCAST6_DB_GetNextL2Elb6(table.iterator, &table.record); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_GetNextL2Elb6(table.iterator, nullptr); },
                   {line("next iter1"), returns(0)}}},
        .steps = {{.calls = {call("next iter1")},
                   .failed = {egress("[MCAST6 DB] get next elb6 entry fail. ret:%u", code), returns(1)},
                   .answered = {{110012, {returns(60)}}}},
                  itemStep(returns(0))},
        .done = {leavesRead(true), returns(0)},
    };
}

// -- iterators

Operation getEntry() {
    return table.getEntry(
        "GetL2Elb6Entry", MCAST6_DB_GetL2Elb6Entry,
        {.null = {returns(1)},
         .nextFailed = {egress("[MCAST6 DB] get elb6 entry error. ret:%d", code), record(7, 9), returns(1)},
         .readFailed = {egress("[MCAST6 DB] get elb6 entry fail, ret:%d.", code), record(7, 0), returns(1)}});
}

Operation createIter() {
    return table.createIterator(
        "CreateL2Elb6Iter", MCAST6_DB_CreateL2Elb6Iter, "none",
        {.createFailed = {egress("[MCAST6 DB] create elb6 iter failed"), returnsNull()},
         .rootIterFailed = {egress("[MCAST6 DB] create elb6 iter failed, create root iter failed. ret:%d", code),
                            record(7, 7), released, returnsNull()},
         .propertyFailed = {released, egress("[MCAST6 DB] set l2mc elb6 root iterator property fail, ret:%d.", code),
                            returnsNull()},
         .allocationFailed = {released, egress("[MCAST6 DB] create elb6 iter failed, malloc failed."), record(7, 8),
                              returnsNull()}});
}

template <class Function>
Operation generic(const char* name, Function function, const std::string& key) {
    return table.createIterator(
        name, function, key,
        {.createFailed = {record(7, 8), egress("[MCAST6 DB] create l2mc elb obj error"), returnsNull()},
         .rootIterFailed = {released, record(7, 8),
                            egress("[MCAST6 DB] create l2mc root iterator error, ret:%d.", code), returnsNull()},
         .propertyFailed = {released, egress("[MCAST6 DB] set l2mc root iterator property fail, ret:%d.", code),
                            returnsNull()},
         .allocationFailed = {released, record(7, 8), egress("[MCAST6 DB] malloc mem failed."), returnsNull()}});
}

Mcast6DbRes* withAKey() {
    const Mcast6DbKeyDesc descriptor{0x03090004, {}};
    const uint32_t ifIndex = 0x71727374;
    return MCAST6_DB_CreateL2Elb6Iterator(&descriptor, &ifIndex);
}

constexpr Mcast6Ipv6Addr kGroupAddr = {{0x10111213, 0x14151617, 0x18191A1B, 0x1C1D1E1F}};
constexpr Mcast6Ipv6Addr kSourceAddr = {{0x20212223, 0x24252627, 0x28292A2B, 0x2C2D2E2F}};
const std::string kByEntry = "key=02090026:747372717675" + kSource + kGroup;

Mcast6DbRes* byKeyRecord() {
    const L2Elb6McidKey key{.keyWord0 = 0x71727374,
                            .spare1 = 0xE1E2E3E4,
                            .keyWord1 = 0xE5E67576,  // the low 16 bits
                            .spare2 = 0xE7E8E9EA,
                            .keyAddr0 = kGroupAddr,
                            .keyAddr1 = kSourceAddr};
    return MCAST6_DB_CreateL2Elb6IterByMcid(&key);
}

Operation createIterBySource() {
    return table.createIterator(
        "CreateL2Elb6IterBySrcAddr",
        [] { return MCAST6_DB_CreateL2Elb6IterBySrcAddr(0x71727374, 0x7576, &kSourceAddr, &kGroupAddr); }, kByEntry,
        {.createFailed = {record(7, 0), returnsNull()},
         .rootIterFailed = {released, returnsNull()},
         .propertyFailed = {released,
                            egress("[MCAST6 DB] set l2mc elb6 root iterator by source addr property fail, ret:%d.",
                                   code),
                            returnsNull()},
         .allocationFailed = {egress("[MCAST6 DB] CreateL2Elb6IterBySourceAddr malloc db res failed."), record(7, 8),
                              released, returnsNull()}});
}

Operation countBySource() {
    return {
        .name = "L2Elb6CountBySource",
        .scene = table.plain(),
        .run = [] { return MCAST6_DB_L2Elb6CountBySource(0x71727374, 0x7576, &kSourceAddr, &kGroupAddr); },
        .steps = {creation(table.facts, 9, {record(7, 0), returns(1)}),
                  {.calls = {call("count_by_key obj1 " + kByEntry)},
                   .failed = {egress("[MCAST6 DB] elb6 object db count failed, ret:%d.", code), record(7, 0), released,
                              returns(0)},
                   .answered = {{15005, {released, returns(0)}}}}},
        .done = {released, returns(kCounted)},
    };
}

std::vector<Operation> operations() {
    return {
        table.createObject("CreateL2Elb6Object", MCAST6_DB_CreateL2Elb6Object),
        table.releaseObject("ReleaseL2Elb6Object", MCAST6_DB_ReleaseL2Elb6Object),
        read(),
        write(),
        update(),
        remove(),
        getContexts(),
        getAddresses(),
        getItem(),
        getNext(),
        getEntry(),
        createIter(),
        generic("CreateL2Elb6Iterator", withAKey, "key=03090004:74737271"),
        generic("CreateL2Elb6AllIterator", MCAST6_DB_CreateL2Elb6AllIterator, "none"),
        generic(
            "CreateL2Elb6IterByIfindex", [] { return MCAST6_DB_CreateL2Elb6IterByIfindex(0x71727374); },
            "key=03090004:74737271"),
        generic("CreateL2Elb6IterByMcid", byKeyRecord, kByEntry),
        createIterBySource(),
        table.releaseIterator("ReleaseL2Elb6Iterator", MCAST6_DB_ReleaseL2Elb6Iterator),
        countBySource(),
    };
}

INSTANTIATE_TEST_SUITE_P(l2mc6_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);

// -- whole operations

class L2ElbTest : public SampleTest<L2Elb6Entry, fillSample> {
protected:
    // An iterator positioned on the stored row.
    Mcast6DbRes* onStoredRow() {
        Mcast6DbRes* iterator = MCAST6_DB_CreateL2Elb6Iter();
        platform.fillNextStep(unhex(kStoredRow));
        EXPECT_EQ(0u, db_root_iterator_next(iterator->rootIter));
        platform.takeTrace();
        return iterator;
    }
};

TEST_F(L2ElbTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    std::string expected = kWrittenRow;
    expected.replace(2 * kSpareBytesAt, 4, "5a5a");
    expectRow(table, expected, MCAST6_DB_SetL2Elb6);
}

TEST_F(L2ElbTest, setReadsTheClockOnceForBothStamps) {
    expectStamps(table, MCAST6_DB_SetL2Elb6, record, kFirstTime + kFirstTime);
}

TEST_F(L2ElbTest, setAnswersTheResultOfTheCopyOfElbData1) {
    Bytes row(168);
    platform.traceCopies(true);
    MCAST6_DB_SetL2Elb6(&record, row.data());
    const Trace copies = platform.takeTrace();
    EXPECT_THAT(copies,
                testing::UnorderedElementsAre("memcpy_s 16 16", "memcpy_s 16 16", "memcpy_s 16 16", "memcpy_s 28 28",
                                              "memcpy_s 12 12", "memcpy_s 2 2", "memcpy_s 2 2"));
    // Both addresses and elbData1 are 16 bytes; a failed copy leaves zeros in the row.
    size_t answered = 0;
    for (size_t failing = 0; failing < copies.size(); ++failing) {
        for (size_t i = 0; i <= failing; ++i) platform.answer("memcpy_s", i == failing ? 34 : 0);
        std::fill(row.begin(), row.end(), uint8_t{0x5A});
        const uint32_t result = MCAST6_DB_SetL2Elb6(&record, row.data());
        const bool isCopied = hex(std::span(row).subspan(92, 16)) == "707172737475767778797a7b7c7d7e7f";
        EXPECT_EQ(isCopied ? 0u : 34u, result) << failing;
        answered += result == 34;
        EXPECT_EQ(0u, platform.pendingAnswers());
    }
    EXPECT_EQ(1u, answered);
}

TEST_F(L2ElbTest, aReadGivesItsObjectBackBeforeItConvertsTheRow) {
    platform.traceCopies(true);
    platform.fillNextRead(unhex(kStoredRow));
    ASSERT_EQ(0u, MCAST6_DB_ReadL2Elb6(&record));
    const Trace trace = platform.takeTrace();
    const auto release = std::find(trace.begin(), trace.end(), "release l2mc6_elb obj1");
    ASSERT_NE(trace.end(), release);
    EXPECT_EQ(2, std::count(trace.begin(), release, "memcpy_s 16 16"));  // both addresses of the key
    EXPECT_EQ(0, std::count(trace.begin(), release, "memcpy_s 28 28"));
    EXPECT_EQ(1, std::count(release, trace.end(), "memcpy_s 28 28"));
}

TEST_F(L2ElbTest, getWritesEveryFieldItsConstantsAndNothingElse) {
    expectRecord(table, MCAST6_DB_GetL2Elb6);
    for (const uint8_t filler : {uint8_t{0x00}, uint8_t{0x3C}}) {
        std::memset(&record, filler, sizeof record);
        MCAST6_DB_GetL2Elb6(unhex(kStoredRow).data(), &record);
        EXPECT_EQ(0u, record.fixedWord1);
        EXPECT_EQ(5u, record.fixedWord2);
        EXPECT_EQ(0u, record.domainType);
        EXPECT_EQ(2u, record.addrType);
        EXPECT_EQ(0xC6C5u, record.vlanId);
        EXPECT_EQ(filler * 0x0101u, record.fwdIfKind);
        EXPECT_EQ(filler * 0x01010101u, record.appVersion);
        for (const uint8_t byte : record.host5) EXPECT_EQ(filler, byte);
    }
}

TEST_F(L2ElbTest, getAfterSetGivesWhatWasSet) {
    Bytes row(168);
    MCAST6_DB_SetL2Elb6(&record, row.data());
    L2Elb6Entry expected = table.sample();
    readConstants(expected);
    expected.vlanId = 0x3132;
    expected.timeStampCreate = 1'700'000'000;
    expected.timeStampSmooth = 1'700'000'000;
    MCAST6_DB_GetL2Elb6(row.data(), &record);
    EXPECT_EQ(bytesOf(expected), bytesOf(record));
}

TEST_F(L2ElbTest, theKeyIsVrVlansGroupSourceAndInterfaceByteForByte) {
    uint32_t word[2] = {0xA5A5A5A5, 0xA5A5A5A5};
    Bytes key(46, 0x5A);
    MCAST6_DB_SetL2Elb6Key(&word[0], key.data() + 1, &record);
    EXPECT_EQ(0x0001002Cu, word[0]);
    EXPECT_EQ(0xA5A5A5A5u, word[1]);
    EXPECT_EQ("5a" + kKeyBytes + "5a", hex(key));
    EXPECT_THAT(platform.trace(), IsEmpty());
}

TEST_F(L2ElbTest, aLargeVlanIsStoredAndReadBackByItsLow16Bits) {
    for (const auto& [given, stored, read] : {std::tuple{0x00010000u, "0000", 0u},
                                              {0x0001FFFFu, "ffff", 0xFFFFu},
                                              {0xFFFF0001u, "0100", 1u},
                                              {65535u, "ffff", 65535u}}) {
        record.vlanId = given;
        Bytes row(168);
        MCAST6_DB_SetL2Elb6(&record, row.data());
        EXPECT_EQ(stored, hex(std::span(row).subspan(4, 2)));
        uint32_t word = 0;
        Bytes key(44);
        MCAST6_DB_SetL2Elb6Key(&word, key.data(), &record);
        EXPECT_EQ(stored, hex(std::span(key).subspan(4, 2)));
        MCAST6_DB_GetL2Elb6(row.data(), &record);
        EXPECT_EQ(read, record.vlanId);
    }
}

TEST_F(L2ElbTest, readingAnAbsentKeyIsSilentAndAnswers15005) {
    const std::string before = bytesOf(record);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL2Elb6(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_elb 3 0 -> obj1",
                                    "dfx 7",
                                    "read obj1 " + kKey + " 168 -> 15005",
                                    "release l2mc6_elb obj1",
                                    "dfx 8",
                                }));
    EXPECT_EQ(before, bytesOf(record));
}

TEST_F(L2ElbTest, aFailedUpdateIsToldAndRecordedAndAnswers0) {
    platform.answer("db_update_obj", 4711);
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2Elb6SmoothVersion(&record));
    EXPECT_EQ("log 9 0x0F2E100F \"[MCAST6 DB] update elb6 failed, create db object failed. ret:4711.\"",
              platform.takeTrace().at(7));
    EXPECT_EQ(1u, g_mcast6DbErrStat[7][6]);
    // A failed setter logs the same message, records nothing, and returns 1.
    platform.answer("db_set_l2mc6_elb_smoothVersion", 4711);
    EXPECT_EQ(1u, MCAST6_DB_UpdateL2Elb6SmoothVersion(&record));
    EXPECT_EQ("log 9 0x0F2E100F \"[MCAST6 DB] update elb6 failed, create db object failed. ret:4711.\"",
              platform.trace().at(4));
    EXPECT_EQ(1u, g_mcast6DbErrStat[7][6]);
}

TEST_F(L2ElbTest, aWriteDoesNotTellTheSourcePidOfTheForwardingTables) {
    MCAST6_DB_SetVlanMfib6SourcePid(5);
    EXPECT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));
    EXPECT_EQ(5u, MCAST6_DB_GetVlanMfib6SourcePid());
    MCAST6_DB_SetVlanMfib6SourcePid(0);
}

TEST_F(L2ElbTest, bytesAreCopiedAsLongAsTheEngineSays) {
    Mcast6DbRes* iterator = onStoredRow();
    platform.announceLength("db_get_l2mc6_elb_svcCtxHighPrio", 27);
    platform.announceLength("db_get_l2mc6_elb_errCode", 1);
    MCAST6_DB_GetL2Elb6Item(iterator->object, &record);
    EXPECT_EQ(digits("1122334455667788 99aabbccddeeff00 0ffeeddccbbaa998 877665 9b"), bytesOf(record.svcCtxHighPrio));
    EXPECT_EQ("efa2", bytesOf(record.errCode));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    MCAST6_DB_ReleaseL2Elb6Iterator(iterator);
}

TEST_F(L2ElbTest, aCopyThatDoesNotFitCountsAsAFailedGetter) {
    ASSERT_EQ(34, ERANGE);
    Mcast6DbRes* iterator = onStoredRow();
    for (const auto& [field, width] :
         {std::pair{"serviceStatus", 2u}, {"svcCtxHighPrio", 28u}, {"svcCtxNormalPrio", 12u}, {"errCode", 2u}}) {
        const std::string getter = std::string("db_get_l2mc6_elb_") + field;
        platform.announceLength(getter, width + 1);
        platform.takeTrace();
        EXPECT_EQ(34u, MCAST6_DB_GetL2Elb6CtxItem(iterator->object, &record)) << field;
        EXPECT_EQ(4u, platform.takeTrace().size());
        MCAST6_DB_GetL2Elb6Item(iterator->object, &record);
        EXPECT_EQ("log 9 0x0F2E100F \"[MCAST6 DB] get mcast6 elb6 fail, ret:34.\"", platform.trace().back());
        platform.announceLength(getter, width);
    }
    // For addresses only the getters' codes count.
    platform.announceLength("db_get_l2mc6_elb_groupAddr", 17);
    EXPECT_EQ(0u, MCAST6_DB_GetL2Elb6AddrItem(iterator->object, &record));
    EXPECT_EQ(0xE0E1E2E3u, record.sourceAddr.word[0]);
    MCAST6_DB_ReleaseL2Elb6Iterator(iterator);
}

TEST_F(L2ElbTest, anIteratorIsReadToItsEndAndAnswers60AgainAndAgain) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2Elb6Iter();
    ASSERT_NE(nullptr, iterator);
    platform.fillNextRead(unhex(kStoredRow));
    EXPECT_EQ(0u, MCAST6_DB_GetL2Elb6Entry(iterator, &record));
    EXPECT_EQ(table.readBack(), bytesOf(record));
    platform.answerAlways("db_root_iterator_next", 110012);
    EXPECT_EQ(60u, MCAST6_DB_GetL2Elb6Entry(iterator, &record));
    EXPECT_EQ(60u, MCAST6_DB_GetNextL2Elb6(iterator, &record));
    EXPECT_EQ(60u, MCAST6_DB_GetNextL2Elb6(iterator, &record));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(1u, platform.liveObjects());
    MCAST6_DB_ReleaseL2Elb6Iterator(iterator);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveBlocks());
}

TEST_F(L2ElbTest, aCountIs0When15005And1WithoutAnObject) {
    platform.answer("db_get_table_record_count_by_key", 15005);
    EXPECT_EQ(0u, MCAST6_DB_L2Elb6CountBySource(1, 2, &kSourceAddr, &kGroupAddr));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(0u, g_mcast6DbErrStat[7][0]);
    platform.answer("db_create_l2mc6_elb_obj", 4711);
    EXPECT_EQ(1u, MCAST6_DB_L2Elb6CountBySource(1, 2, &kSourceAddr, &kGroupAddr));
    EXPECT_EQ(1u, g_mcast6DbErrStat[7][0]);
    EXPECT_EQ("log 9 0x0F2E100F \"[MCAST6 DB] l2 elb6 create db object failed. ret:4711.\"", platform.trace().back());
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_elb
