// l2mc6_querier: every exit of its write and of its iterators, and both conversions.
#include "mcast6_db/l2mc6_querier.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/operation_sweep.h"
#include "tests/support/operation_test.h"

namespace mcast6::tests::l2mc6_querier {

namespace {

L2Mc6QuerierEntry entry;
Mcast6DbRes* iterator;

const LogId config{0x0F2E1012};
const Effect released = allOf({line("release l2mc6_querier obj1"), dfx(601)});

// The row of the sample when it is written at 1'700'000'000, the recorder's time.
const std::string kWrittenRow = digits(
    "01000000 20000000 fe80000000000000 0000000000000001"  // vrId, bdId, querierAddr
    "07000000 82000000 05000000"                           // ifIndex, version and 3 reserved bytes, smoothVersion
    "00f1536500000000 00f1536500000000");                  // timeStampCreate, timeStampSmooth

Scene plain() {
    return {.prepare =
                [] {
                    entry = {};
                    entry.vrId = 1;
                    entry.bdId = 0x20;
                    entry.querierAddr = {{0xFE800000, 0, 0, 1}};
                    entry.ifIndex = 7;
                    entry.version = 0x382;  // the upper bytes are dropped
                    entry.smoothVersion = 5;
                },
            .watched = {watchBytes("record", entry)}};
}

Scene withIterator() {
    Scene scene = plain();
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        iterator = MCAST6_DB_CreateL2Mc6QuerierIter();
        ASSERT_NE(nullptr, iterator);
    };
    return scene;
}

// What an empty row reads back as.
std::string readBack() {
    L2Mc6QuerierEntry record{};
    record.addrType = 2;
    return bytesOf(record);
}

Step creation(uint32_t objType, Effects failed) {
    failed.insert(failed.begin(), config("[MCAST6 DB] querier create object fail, ret:%u.", code));
    return {.calls = {gives("create l2mc6_querier " + std::to_string(objType) + " 0", "obj1")},
            .failed = failed,
            .done = {dfx(600)}};
}

Operation write() {
    return {
        .name = "WriteL2Mc6Querier",
        .scene = plain(),
        .run = [] { return MCAST6_DB_WriteL2Mc6Querier(&entry); },
        .nulls = {{"record", [] { return MCAST6_DB_WriteL2Mc6Querier(nullptr); }, {kpi(301), returns(1)}}},
        .steps =
            {
                creation(0, {kpi(301), returns(1)}),
                {.calls = {call("set_all l2mc6_querier obj1 " + kWrittenRow)},
                 .failed = {released, kpi(301), returns(1)}},
                {.calls = {call("write obj1")},
                 .failed = {config("[MCAST6 DB] querier write object fail, ret:%u.", code), released, record(12, 2),
                            kpi(301), returns(1)},
                 .answered = {{13044, {released, record(12, 1), kpi(300), returns(0)}}}},
            },
        .done = {released, kpi(300), returns(0)},
    };
}

Operation createIteratorByIfIndex() {
    const Effect failed = allOf({config("[MCAST6 DB] querier create iter fail."), returnsNull()});
    return {
        .name = "CreateL2Mc6QuerierIterByIfIndex",
        .scene = plain(),
        .run = [] { return MCAST6_DB_CreateL2Mc6QuerierIterByIfIndex(7); },
        .steps =
            {
                creation(5, {failed}),
                {.calls = {gives("root_iter obj1 key=02090004:07000000", "iter1")}, .failed = {released, failed}},
                {.calls = {call("property iter1 0 01000000")}, .failed = {released, failed}},
                {.calls = {allocation(16, "block1")}, .failed = {released, failed}},
            },
        .done = {keeps(1, 1, 1), returnsHandle()},
    };
}

Operation getEntry() {
    return {
        .name = "GetL2Mc6QuerierEntry",
        .scene = withIterator(),
        .run = [] { return MCAST6_DB_GetL2Mc6QuerierEntry(iterator, &entry); },
        .nulls = {{"iterator", [] { return MCAST6_DB_GetL2Mc6QuerierEntry(nullptr, &entry); }, {returns(1)}},
                  {"record", [] { return MCAST6_DB_GetL2Mc6QuerierEntry(iterator, nullptr); }, {returns(1)}}},
        .steps =
            {
                {.calls = {call("next iter1")},
                 .failed = {config("[MCAST6 DB] querier get entry, next fail, ret:%d.", code), record(12, 9),
                            returns(1)},
                 .answered = {{110012, {returns(60)}}}},
                {.calls = {call("read obj1 none 52")}, .failed = {returns(1)}, .answered = {{15005, {returns(60)}}}},
            },
        .done = {leaves("record", readBack()), returns(0)},
    };
}

INSTANTIATE_TEST_SUITE_P(l2mc6_querier, EveryExit, testing::Values(write(), createIteratorByIfIndex(), getEntry()),
                         nameOfOperation);

TEST(L2Mc6Querier, givenCreationTimeIsKeptAndAllElseComesBack) {
    startOver();
    plain().prepare();
    entry.timeStampCreate = 9;
    unsigned char row[52]{};
    MCAST6_DB_SetL2Mc6Querier(&entry, row);
    L2Mc6QuerierEntry back{};
    MCAST6_DB_GetL2Mc6Querier(row, &back);

    L2Mc6QuerierEntry expected = entry;
    expected.addrType = 2;
    expected.version = 0x82;
    expected.timeStampSmooth = 1'700'000'000;
    EXPECT_EQ(bytesOf(back), bytesOf(expected));
}

}  // namespace

}  // namespace mcast6::tests::l2mc6_querier
