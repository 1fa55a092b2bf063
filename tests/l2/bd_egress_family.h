// The four tables of a bridge domain's egress members: l2mc6_bd_tag_elb, l2mc6_bd_untag_elb, l2mc6_bd_vxlan_elb and
// l2mc6_bd_vxlan_sub_elb. They take the same steps; the names stand for counters that each table tells:
//
// operation          step          fails with   then
// create object      create        any          createFailed; the code
//                    -             -            created; 0
// release object     -             -            released
// read               null          -            log; 1
//                    create 3      any          log; the code
//                    read          15005        released; 15005
//                                  other        log; error 0; released; the code
//                    -             -            record filled; released; 0
// write              null          -            log; writeFailed; 1
//                    create 0      any          log; writeFailed; the code
//                    set all       any          released; log; writeFailed; the code
//                    write         13044        released; as the table tells; 0
//                                  other        released; log; error 2; writeFailed; the code
//                    -             -            released; written; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; as the table tells; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; removeFailed; 1
//                    create 4      any          log; removeFailed; the code
//                    remove        13044        released; as the table tells; 0
//                                  other        released; error 4; log; removeFailed; the code
//                    -             -            released; removed; 0
// create iterator    any           any          released if created; iteratorFailed; log (over all records only); null
//                    -             -            handle
// get entry          null          -            1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_db/l2_egress.h"
#include "tests/support/bytes.h"
#include "tests/support/claims.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::bd_egress {

using Entry = L2Elb6Entry;

inline const LogId egress{0x0F2E100F};

// Pieces of keys, as the sample's bytes say.
inline const std::string kVr = "00010203";
inline const std::string kVrf = "04050607";
inline const std::string kBd = "30313233";
inline const std::string kGroup = digits("0f0e0d0c 13121110 17161514 1b1a1918");
inline const std::string kSource = digits("1f1e1d1c 23222120 27262524 2b2a2928");

// The key record of the iterators over an entry: byte n is 0x80 + n. What they look for is its entry.
inline L2McBdElbKey entryKey() {
    L2McBdElbKey key;
    uint8_t bytes[sizeof key];
    for (size_t n = 0; n < sizeof bytes; ++n) bytes[n] = static_cast<uint8_t>(0x80 + n);
    std::memcpy(&key, bytes, sizeof key);
    return key;
}
inline const std::string kEntryFilter =
    keyOf("01090028", "80818283 88898a8b 93929190 97969594 9b9a9998 9f9e9d9c a3a2a1a0 a7a6a5a4 abaaa9a8 afaeadac");

struct Counters {
    uint32_t createFailed, created, released, written, writeFailed, removed, removeFailed, iteratorFailed;
};

struct Messages {
    const char *readNull, *readCreate, *readFailed;
    const char *writeNull, *writeCreate, *writeSet, *writeFailed;
    const char *smoothNull, *smoothCreate, *smoothSet, *smoothFailed;
    const char *removeNull, *removeCreate, *removeFailed;
    const char *nextFailed, *entryFailed;
    const char* iteratorOfAll;
};

// What 13044 does between the release and the result 0.
struct Tolerated {
    Effects write, smooth, remove;
};

struct Functions {
    int64_t (*stamp)(int32_t, void*);
    void (*set)(const Entry*, void*);
    void (*get)(const void*, Entry*);
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

// An iterator over some records, and the key that it gives to the engine.
struct Filter {
    std::string name;
    std::function<Mcast6DbRes*()> run;
    std::string key;
};

inline Filter overEntry(std::string name, Mcast6DbRes* (*create)(const L2McBdElbKey*)) {
    return {std::move(name),
            [create] {
                const L2McBdElbKey key = entryKey();
                return create(&key);
            },
            kEntryFilter};
}

struct Literals {
    std::string name;
    uint32_t number;
    uint32_t rowSize;
    uint32_t createStamp;  // where in the row; the smooth time follows
    std::string key;
    std::string row;  // see withGaps()
    void (*readStored)(Entry&);
    Counters counters;
    Messages messages;
    Tolerated tolerated;
    Functions functions;
    std::vector<Filter> filters;
};

class BdEgress {
public:
    explicit BdEgress(const Literals& literals)
        : told(literals),
          released(allOf({line("release " + literals.name + " obj1"), dfx(literals.counters.released)})),
          table(
              {
                  .name = literals.name,
                  .rowSize = literals.rowSize,
                  .key = literals.key,
                  .writtenRow = withGaps(literals.row, "00"),
                  .storedRow = storedRow(literals.rowSize),
                  .created = {dfx(literals.counters.created)},
                  .createFailed = {dfx(literals.counters.createFailed)},
                  .released = released,
                  .createObject = literals.functions.createObject,
                  .createIterator = literals.functions.createIteratorOfAll,
              },
              fillWithOffsets<Entry>, literals.readStored) {}

    const Literals told;
    const Effect released;
    TableFamily<Entry> table;

    std::vector<Operation> operations() {
        std::vector<Operation> all = {table.createObject("createObject", told.functions.createObject),
                                      table.releaseObject("releaseObject", told.functions.releaseObject),
                                      read(),
                                      write(),
                                      updateSmoothVersion(),
                                      remove(),
                                      getEntry(),
                                      iteratorOfAll(),
                                      table.releaseIterator("releaseIterator", told.functions.releaseIterator)};
        const auto create = told.functions.createIterator;
        all.push_back(iterator({"iteratorWithoutKey", [create] { return create(nullptr, nullptr); }, "none"}));
        all.push_back(iterator({"iteratorWithKey",
                                [create] {
                                    const Mcast6DbKeyDesc descriptor{0x01090028, {}};
                                    const recording::Bytes key = recording::unhex(kVr + kBd + kGroup + kSource);
                                    return create(&descriptor, key.data());
                                },
                                keyOf("01090028", kVr + kBd + kGroup + kSource)}));
        for (const Filter& filter : told.filters) all.push_back(iterator(filter));
        return all;
    }

    std::vector<Claim> claims() {
        return {
            {"setWritesEveryFieldInItsPlaceAndNothingElse",
             [this] { EXPECT_EQ(withGaps(told.row, "5a"), table.rowOf(told.functions.set)); }},
            {"setReadsTheClockOnceForBothStamps", [this] { checkClockOfSet(); }},
            {"getWritesEveryFieldItsConstantsAndNothingElse", [this] { checkGet(); }},
            {"aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime", [this] { checkStamp(); }},
            {"aCreationPassesItsArgumentsOn", [this] { checkArgumentsOfCreation(); }},
            {"readingAnAbsentRecordAnswers15005AndIsSilent", [this] { checkAbsentRead(); }},
            {"aRecordThatVanishedUnderAnIteratorAnswers60AndIsSilent", [this] { checkVanished(); }},
        };
    }

    // Of a key operation, where a table has one.
    Claim keyClaim(void (*setKey)(uint32_t*, void*, const Entry*)) {
        return {"aKeyIsItsWordAndItsFields", [this, setKey] {
                    EXPECT_EQ(told.key,
                              table.keyOf([setKey](Mcast6DbKeyDesc* descriptor, void* key, const Entry* entry) {
                                  setKey(&descriptor->keyWord, key, entry);
                              }));
                }};
    }

    // An operation whose engine call answers 13044 returns 0, bumps one counter and not the other, records one error of
    // the kind, and logs nothing.
    Claim toleranceClaim(std::string name, uint32_t (*function)(const Entry*), std::string engineCall, uint32_t counter,
                         uint32_t otherCounter, uint32_t errorKind) {
        return {std::move(name), [this, function, engineCall, counter, otherCounter, errorKind] {
                    const Entry entry = table.sample();
                    Recorder::instance().answer(engineCall, 13044);
                    EXPECT_EQ(0u, function(&entry));
                    EXPECT_EQ(1u, Recorder::instance().dfx(counter));
                    EXPECT_EQ(0u, Recorder::instance().dfx(otherCounter));
                    EXPECT_EQ(1u, g_mcast6DbErrStat[told.number][errorKind]);
                    EXPECT_THAT(Recorder::instance().logFormats(), testing::IsEmpty());
                }};
    }

private:
    using Recorder = recording::Recorder;

    Operation read() {
        return table.read(
            "read", told.functions.read,
            {.null = {egress(told.messages.readNull), returns(1)},
             .createFailed = {egress(told.messages.readCreate, code), returns(code)},
             .failed = {egress(told.messages.readFailed, code), record(told.number, 0), released, returns(code)},
             .answered = {{15005, {released, returns(15005)}}},
             .done = {released, returns(0)}});
    }

    Operation write() {
        const Effect failed = dfx(told.counters.writeFailed);
        return table.write("write", told.functions.write,
                           {.null = {egress(told.messages.writeNull), failed, returns(1)},
                            .createFailed = {egress(told.messages.writeCreate, code), failed, returns(code)},
                            .setFailed = {released, egress(told.messages.writeSet, code), failed, returns(code)},
                            .failed = {released, egress(told.messages.writeFailed, code), record(told.number, 2),
                                       failed, returns(code)},
                            .answered = {{13044, {released, allOf(told.tolerated.write), returns(0)}}},
                            .done = {released, dfx(told.counters.written), returns(0)}});
    }

    Operation updateSmoothVersion() {
        return table.update(
            "updateSmoothVersion", told.functions.updateSmoothVersion,
            {table.sets("smoothVersion", 0x9F9E9D9C), table.stamps("timeStampSmooth")},
            {.null = {egress(told.messages.smoothNull), returns(1)},
             .createFailed = {egress(told.messages.smoothCreate, code), returns(code)},
             .setFailed = {egress(told.messages.smoothSet, code), released, returns(code)},
             .failed = {released, egress(told.messages.smoothFailed, code), record(told.number, 6), returns(code)},
             .answered = {{13044, {released, allOf(told.tolerated.smooth), returns(0)}}},
             .done = {released, returns(0)}});
    }

    Operation remove() {
        const Effect failed = dfx(told.counters.removeFailed);
        return table.remove("delete", told.functions.remove,
                            {.null = {egress(told.messages.removeNull), failed, returns(1)},
                             .createFailed = {egress(told.messages.removeCreate, code), failed, returns(code)},
                             .failed = {released, record(told.number, 4), egress(told.messages.removeFailed, code),
                                        failed, returns(code)},
                             .answered = {{13044, {released, allOf(told.tolerated.remove), returns(0)}}},
                             .done = {released, dfx(told.counters.removed), returns(0)}});
    }

    Operation getEntry() {
        return table.getEntry(
            "getEntry", told.functions.getEntry,
            {.null = {returns(1)},
             .nextFailed = {egress(told.messages.nextFailed, code), record(told.number, 9), returns(1)},
             .readFailed = {egress(told.messages.entryFailed, code), record(told.number, 0), returns(1)}});
    }

    Operation iterator(const Filter& filter, const Effect& log = allOf({})) {
        return table.createIterator(filter.name, filter.run, filter.key,
                                    builtByTheFrame(released, {dfx(told.counters.iteratorFailed), log, returnsNull()}));
    }

    Operation iteratorOfAll() {
        return iterator({"iteratorOfAll", told.functions.createIteratorOfAll, "none"},
                        egress(told.messages.iteratorOfAll));
    }

    void checkClockOfSet() const {
        Recorder::instance().setTime(0x0102030405060708, 1);
        const Entry entry = table.sample();
        recording::Bytes row(told.rowSize);
        told.functions.set(&entry, row.data());
        EXPECT_EQ(1u, Recorder::instance().clockReadings());
        EXPECT_EQ(digits("0807060504030201 0807060504030201"),
                  recording::hex(std::span(row).subspan(told.createStamp, 16)));
    }

    void checkGet() {
        EXPECT_EQ(table.readBack(), table.recordOf(told.functions.get));
        EXPECT_THAT(Recorder::instance().trace(), testing::IsEmpty());
        EXPECT_EQ(0u, Recorder::instance().clockReadings());
    }

    void checkStamp() const {
        Recorder::instance().setTime(0x0102030405060708, 1);
        recording::Bytes row(told.rowSize, 0x5A);
        recording::Bytes expected = row;
        EXPECT_EQ(0x0102030405060708, told.functions.stamp(0, row.data()));
        putTime(expected, told.createStamp + 8, "0807060504030201");
        EXPECT_EQ(recording::hex(expected), recording::hex(row));
        EXPECT_EQ(0x0102030405060709, told.functions.stamp(INT32_MIN, row.data()));
        putTime(expected, told.createStamp, "0907060504030201");
        putTime(expected, told.createStamp + 8, "0907060504030201");
        EXPECT_EQ(recording::hex(expected), recording::hex(row));
        EXPECT_EQ(2u, Recorder::instance().clockReadings());
        EXPECT_THAT(Recorder::instance().trace(), testing::IsEmpty());
    }

    static void putTime(recording::Bytes& row, size_t at, std::string_view time) {
        const recording::Bytes bytes = recording::unhex(time);
        std::memcpy(row.data() + at, bytes.data(), bytes.size());
    }

    void checkArgumentsOfCreation() const {
        Mcast6DbHandle object = 0;
        EXPECT_EQ(0u, told.functions.createObject(9, 7, &object));
        EXPECT_EQ(Recorder::instance().trace(),
                  (Trace{"create " + told.name + " 9 7 -> obj1", "dfx " + std::to_string(told.counters.created)}));
    }

    void checkAbsentRead() const {
        Entry entry = table.sample();
        Recorder::instance().answer("db_read_obj_with_buf", 15005);
        EXPECT_EQ(15005u, told.functions.read(&entry));
        EXPECT_EQ(bytesOf(table.sample()), bytesOf(entry));
        EXPECT_THAT(Recorder::instance().logFormats(), testing::IsEmpty());
        EXPECT_EQ(0u, g_mcast6DbErrStat[told.number][0]);
        EXPECT_EQ(0u, Recorder::instance().liveObjects());
    }

    void checkVanished() const {
        Mcast6DbRes* const iterator = told.functions.createIteratorOfAll();
        ASSERT_NE(nullptr, iterator);
        Entry entry = table.sample();
        Recorder::instance().answer("db_read_obj_with_buf", 15005);
        EXPECT_EQ(60u, told.functions.getEntry(iterator, &entry));
        EXPECT_EQ(bytesOf(table.sample()), bytesOf(entry));
        EXPECT_THAT(Recorder::instance().logFormats(), testing::IsEmpty());
        EXPECT_EQ(0u, g_mcast6DbErrStat[told.number][0]);
        told.functions.releaseIterator(iterator);
        EXPECT_EQ(0u, Recorder::instance().liveObjects());
        EXPECT_EQ(0u, Recorder::instance().liveBlocks());
    }
};

}  // namespace mcast6::tests::bd_egress
