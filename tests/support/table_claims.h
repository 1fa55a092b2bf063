// Checks that the tests of many tables share, in addition to the sweep over the exits of their operations.
//
// Each check uses EXPECT_... and needs a recorder and a library that were reset: use it in a SampleTest or a Claim. The
// bytes, numbers and results of a table are given where the check is used.
//
//     TEST_F(VlanPortTest, setKeepsACreationTimeThatIsGiven) {
//         record.timeStampCreate = 1ULL << 63;
//         expectStamps(table, MCAST6_DB_SetVlanPortItem, record, "0000000000000080" + kFirstTime);
//     }
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests {

// A test with a sample record that it may change.
template <class Record, void (*fill)(Record&)>
class SampleTest : public testing::Test {
protected:
    void SetUp() override {
        startOver();
        fill(record);
    }
    void TearDown() override { startOver(false); }

    recording::Recorder& platform = recording::Recorder::instance();
    Record record;
};

// Nothing was logged and no error was recorded for any table.
void expectSilence();

// -- conversions ------------------------------------------------------------------------------------------------------

// 'set' converts the sample into this row, without a call of the engine.
template <class Record, class Set>
void expectRow(TableFamily<Record>& table, const std::string& row, Set set) {
    EXPECT_EQ(row, table.rowOf(set));
    EXPECT_THAT(recording::Recorder::instance().trace(), testing::IsEmpty());
}

// 'get' changes the sample as reading the stored row does, without a call of the engine or a reading of the clock.
template <class Record, class Get>
void expectRecord(TableFamily<Record>& table, Get get) {
    EXPECT_EQ(table.readBack(), table.recordOf(get));
    EXPECT_THAT(recording::Recorder::instance().trace(), testing::IsEmpty());
    EXPECT_EQ(0u, recording::Recorder::instance().clockReadings());
}

// 'setKey' makes the key of the sample; it is called with the key word or all of its descriptor, the key and the
// record.
template <class Record, class SetKey>
void expectKey(TableFamily<Record>& table, SetKey setKey) {
    EXPECT_EQ(table.facts.key, table.keyOf([setKey](Mcast6DbKeyDesc* descriptor, void* key, const Record* record) {
        if constexpr (std::is_invocable_v<SetKey, uint32_t*, void*, const Record*>) {
            setKey(&descriptor->keyWord, key, record);
        } else {
            setKey(descriptor, key, record);
        }
    }));
    EXPECT_THAT(recording::Recorder::instance().trace(), testing::IsEmpty());
}

// -- time stamps ------------------------------------------------------------------------------------------------------

// Sets the clock to times that no sample holds, different at each reading. In a row they are kFirstTime and
// kSecondTime.
void startClock();
inline const std::string kFirstTime = "0807060504030201";
inline const std::string kSecondTime = "0907060504030201";

// 'set' writes these stamps, the creation time first, and reads the clock once.
template <class Record, class Set>
void expectStamps(const TableFamily<Record>& table, Set set, const Record& record, const std::string& stamps) {
    startClock();
    recording::Bytes row(table.facts.rowSize);
    if constexpr (std::is_void_v<std::invoke_result_t<Set, const Record*, void*>>) {
        set(&record, row.data());
    } else {
        EXPECT_EQ(0u, set(&record, row.data()));
    }
    EXPECT_EQ(1u, recording::Recorder::instance().clockReadings());
    EXPECT_EQ(stamps, recording::hex(std::span(row).subspan(table.facts.createStamp, 16)));
}

// A row of bytes 5a with these stamps.
std::string stampedRow(const TableFacts& table, const std::string& createTime, const std::string& smoothTime);

// 'stamp' writes the smooth time to a row and, if its flag is not 0, the same time as the creation time. It reads the
// clock once, and returns the time unless it returns void.
template <class Record, class Result, class Flag>
void expectStamping(const TableFamily<Record>& table, Result (*stamp)(Flag, void*)) {
    startClock();
    recording::Bytes row(table.facts.rowSize + 2, 0x5A);  // at an odd address
    const auto expectTime = [&row, stamp](int64_t time, uint32_t flag) {
        if constexpr (std::is_void_v<Result>) {
            stamp(static_cast<Flag>(flag), row.data() + 1);
        } else {
            EXPECT_EQ(time, stamp(static_cast<Flag>(flag), row.data() + 1));
        }
    };
    expectTime(0x0102030405060708, 0);
    EXPECT_EQ(1u, recording::Recorder::instance().clockReadings());
    EXPECT_EQ(stampedRow(table.facts, "5a5a5a5a5a5a5a5a", kFirstTime), inner(row));
    expectTime(0x0102030405060709, 0x80000000);
    EXPECT_EQ(2u, recording::Recorder::instance().clockReadings());
    EXPECT_EQ(stampedRow(table.facts, kSecondTime, kSecondTime), inner(row));
    EXPECT_THAT(recording::Recorder::instance().trace(), testing::IsEmpty());
}

// -- operations -------------------------------------------------------------------------------------------------------

// The create operation passes its arguments to the engine, then counts 'counted': "dfx 336".
void expectArgumentsOfCreation(const TableFacts& table, const std::string& counted);

// A read of an absent record returns 'result', logs and records nothing, leaves the caller's record unchanged and no
// object alive.
template <class Record>
void expectAbsentRead(const TableFamily<Record>& table, uint32_t (*read)(Record*), uint32_t result) {
    Record record = table.sample();
    recording::Recorder::instance().answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(result, read(&record));
    EXPECT_EQ(bytesOf(table.sample()), bytesOf(record));
    expectSilence();
    EXPECT_EQ(0u, recording::Recorder::instance().liveObjects());
}

// A record that is removed after an iterator stepped to it and before it is read: 60, nothing logged or recorded, and
// the caller's record is unchanged.
template <class Record>
void expectVanishedRecord(const TableFamily<Record>& table, uint32_t (*getEntry)(Mcast6DbRes*, Record*),
                          void (*releaseIterator)(Mcast6DbRes*)) {
    Mcast6DbRes* const iterator = table.facts.createIterator();
    ASSERT_NE(nullptr, iterator);
    Record record = table.sample();
    recording::Recorder::instance().answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, getEntry(iterator, &record));
    EXPECT_EQ(0u, recording::Recorder::instance().pendingAnswers());
    EXPECT_EQ(bytesOf(table.sample()), bytesOf(record));
    expectSilence();
    releaseIterator(iterator);
    EXPECT_EQ(0u, recording::Recorder::instance().liveObjects());
    EXPECT_EQ(0u, recording::Recorder::instance().liveIterators());
    EXPECT_EQ(0u, recording::Recorder::instance().liveBlocks());
}

// What an operation reports when it treats 13044 as success: lines of the trace, "dfx 339", "kpi 51", "record 21 1".
struct Tolerance {
    std::string engineCall;  // the call that returns 13044
    std::string counted;     // once
    std::string notCounted;
    std::string error;  // the only one
};
// Compares with the trace since it was last taken; nothing may have been logged.
void expectReported(const Tolerance& tolerance);

template <class Record>
void expectTolerance(const TableFamily<Record>& table, uint32_t (*function)(const Record*),
                     const Tolerance& tolerance) {
    const Record record = table.sample();
    recording::Recorder::instance().answer(tolerance.engineCall, 13044);
    EXPECT_EQ(0u, function(&record));
    expectReported(tolerance);
}

// -- families of tables -----------------------------------------------------------------------------------------------
// 'literals' describes one table of a family: the name, sizes, bytes, counters and functions that are used here. The
// values of the sample bytes show their offsets (see bytes.h).

// The functions of a table of egress members. 'get' returns nothing, or the code of an address conversion.
template <class Entry, class GetResult = void>
struct MemberFunctions {
    int64_t (*stamp)(int32_t, void*);
    void (*set)(const Entry*, void*);
    GetResult (*get)(const void*, Entry*);
    Mcast6DbCreateFunc createObject;
    void (*releaseObject)(Mcast6DbHandle);
    uint32_t (*read)(Entry*);
    uint32_t (*write)(const Entry*);
    uint32_t (*updateSmoothVersion)(const Entry*);
    uint32_t (*remove)(const Entry*);
    uint32_t (*getEntry)(Mcast6DbRes*, Entry*);
    Mcast6DbRes* (*createIterator)(const Mcast6DbKeyDesc*, const void*);
    Mcast6DbRes* (*createIteratorOfAll)();
    void (*releaseIterator)(Mcast6DbRes*);
};

// 'createFailed' as in TableFacts.
template <class Literals>
TableFacts factsOf(const Literals& literals, Effects createFailed) {
    return {.name = literals.name,
            .rowSize = literals.rowSize,
            .createStamp = literals.createStamp,
            .key = literals.key,
            .writtenRow = withGaps(literals.row, "00"),
            .storedRow = storedRow(literals.rowSize),
            .created = {dfx(literals.counters.created)},
            .createFailed = std::move(createFailed),
            .released = allOf({line("release " + literals.name + " obj1"), dfx(literals.counters.released)}),
            .createObject = literals.functions.createObject,
            .createIterator = literals.functions.createIteratorOfAll};
}

// The claims for every table of the families, after those given in 'all'. 'literals' and the table must outlive them.
template <class Literals, class Record>
std::vector<Claim> claimsOf(const Literals& literals, TableFamily<Record>& table, std::vector<Claim> all) {
    all.push_back({"setWritesEveryFieldInItsPlaceAndNothingElse",
                   [&literals, &table] { expectRow(table, withGaps(literals.row, "5a"), literals.functions.set); }});
    all.push_back({"getWritesEveryFieldItsConstantsAndNothingElse",
                   [&literals, &table] { expectRecord(table, literals.functions.get); }});
    all.push_back({"aCreationPassesItsArgumentsOn", [&literals, &table] {
                       expectArgumentsOfCreation(table.facts, "dfx " + std::to_string(literals.counters.created));
                   }});
    all.push_back({"aRecordThatVanishedUnderAnIteratorAnswers60AndIsSilent", [&literals, &table] {
                       expectVanishedRecord(table, literals.functions.getEntry, literals.functions.releaseIterator);
                   }});
    return all;
}

}  // namespace mcast6::tests
