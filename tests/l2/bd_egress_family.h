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
#include "tests/support/table_claims.h"
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

using Functions = MemberFunctions<Entry>;

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
          table(factsOf(literals, {dfx(literals.counters.createFailed)}), fillWithOffsets<Entry>, literals.readStored),
          released(table.facts.released) {}

    const Literals told;
    TableFamily<Entry> table;
    const Effect released;

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
        return claimsOf(
            told, table,
            {
                {"setReadsTheClockOnceForBothStamps",
                 [this] { expectStamps(table, told.functions.set, table.sample(), kFirstTime + kFirstTime); }},
                {"aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime",
                 [this] { expectStamping(table, told.functions.stamp); }},
                {"readingAnAbsentRecordAnswers15005AndIsSilent",
                 [this] { expectAbsentRead(table, told.functions.read, 15005); }},
            });
    }

    // Of a key operation, where a table has one.
    Claim keyClaim(void (*setKey)(uint32_t*, void*, const Entry*)) {
        return {"aKeyIsItsWordAndItsFields", [this, setKey] { expectKey(table, setKey); }};
    }

    // Of an operation whose engine call answers 13044: it returns 0, bumps one counter and not the other, and records one
    // error of the kind.
    Claim toleranceClaim(std::string name, uint32_t (*function)(const Entry*), std::string engineCall, uint32_t counter,
                         uint32_t otherCounter, uint32_t errorKind) {
        const Tolerance tolerance{
            .engineCall = std::move(engineCall),
            .counted = "dfx " + std::to_string(counter),
            .notCounted = "dfx " + std::to_string(otherCounter),
            .error = "record " + std::to_string(told.number) + " " + std::to_string(errorKind),
        };
        return {std::move(name), [this, function, tolerance] { expectTolerance(table, function, tolerance); }};
    }

private:
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
};

}  // namespace mcast6::tests::bd_egress
