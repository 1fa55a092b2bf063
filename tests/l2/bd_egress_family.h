// The four tables of a bridge domain's egress members: l2mc6_bd_tag_elb, l2mc6_bd_untag_elb, l2mc6_bd_vxlan_elb and
// l2mc6_bd_vxlan_sub_elb. Their steps are the same. The names below are counters of each table:
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
//                    write         13044        released; as the table says; 0
//                                  other        released; log; error 2; writeFailed; the code
//                    -             -            released; written; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; as the table says; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; removeFailed; 1
//                    create 4      any          log; removeFailed; the code
//                    remove        13044        released; as the table says; 0
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

// Parts of keys, with the values of the sample's bytes.
inline const std::string kVr = "00010203";
inline const std::string kVrf = "04050607";
inline const std::string kBd = "30313233";
inline const std::string kGroup = digits("0f0e0d0c 13121110 17161514 1b1a1918");
inline const std::string kSource = digits("1f1e1d1c 23222120 27262524 2b2a2928");

// The key record of the iterators over an entry: byte n is 0x80 + n.
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

// The effects of 13044 between the release and the result 0.
struct Tolerated {
    Effects write, smooth, remove;
};

using Functions = MemberFunctions<Entry>;

// An iterator over some records, and the key that it passes to the engine.
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
    uint32_t createStamp;  // offset in the row; the smooth time follows
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
    explicit BdEgress(const Literals& values)
        : literals(values),
          table(factsOf(values, {dfx(values.counters.createFailed)}), fillWithOffsets<Entry>, values.readStored),
          released(table.facts.released) {}

    const Literals literals;
    TableFamily<Entry> table;
    const Effect released;

    std::vector<Operation> operations() {
        std::vector<Operation> all = {table.createObject("createObject", literals.functions.createObject),
                                      table.releaseObject("releaseObject", literals.functions.releaseObject),
                                      read(),
                                      write(),
                                      updateSmoothVersion(),
                                      remove(),
                                      getEntry(),
                                      iteratorOfAll(),
                                      table.releaseIterator("releaseIterator", literals.functions.releaseIterator)};
        const auto create = literals.functions.createIterator;
        all.push_back(iterator({"iteratorWithoutKey", [create] { return create(nullptr, nullptr); }, "none"}));
        all.push_back(iterator({"iteratorWithKey",
                                [create] {
                                    const Mcast6DbKeyDesc descriptor{0x01090028, {}};
                                    const recording::Bytes key = recording::unhex(kVr + kBd + kGroup + kSource);
                                    return create(&descriptor, key.data());
                                },
                                keyOf("01090028", kVr + kBd + kGroup + kSource)}));
        for (const Filter& filter : literals.filters) all.push_back(iterator(filter));
        return all;
    }

    std::vector<Claim> claims() {
        return claimsOf(
            literals, table,
            {
                {"setReadsTheClockOnceForBothStamps",
                 [this] { expectStamps(table, literals.functions.set, table.sample(), kFirstTime + kFirstTime); }},
                {"aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime",
                 [this] { expectStamping(table, literals.functions.stamp); }},
                {"readingAnAbsentRecordAnswers15005AndIsSilent",
                 [this] { expectAbsentRead(table, literals.functions.read, 15005); }},
            });
    }

    // For a key operation, if the table has one.
    Claim keyClaim(void (*setKey)(uint32_t*, void*, const Entry*)) {
        return {"aKeyIsItsWordAndItsFields", [this, setKey] { expectKey(table, setKey); }};
    }

    // For an operation whose engine call returns 13044: it returns 0, increments one counter and not the other, and
    // records one error of the kind.
    Claim toleranceClaim(std::string name, uint32_t (*function)(const Entry*), std::string engineCall, uint32_t counter,
                         uint32_t otherCounter, uint32_t errorKind) {
        const Tolerance tolerance{
            .engineCall = std::move(engineCall),
            .counted = "dfx " + std::to_string(counter),
            .notCounted = "dfx " + std::to_string(otherCounter),
            .error = "record " + std::to_string(literals.number) + " " + std::to_string(errorKind),
        };
        return {std::move(name), [this, function, tolerance] { expectTolerance(table, function, tolerance); }};
    }

private:
    Operation read() {
        return table.read("read", literals.functions.read,
                          {.null = {egress(literals.messages.readNull), returns(1)},
                           .createFailed = {egress(literals.messages.readCreate, code), returns(code)},
                           .failed = {egress(literals.messages.readFailed, code), record(literals.number, 0), released,
                                      returns(code)},
                           .answered = {{15005, {released, returns(15005)}}},
                           .done = {released, returns(0)}});
    }

    Operation write() {
        const Effect failed = dfx(literals.counters.writeFailed);
        return table.write("write", literals.functions.write,
                           {.null = {egress(literals.messages.writeNull), failed, returns(1)},
                            .createFailed = {egress(literals.messages.writeCreate, code), failed, returns(code)},
                            .setFailed = {released, egress(literals.messages.writeSet, code), failed, returns(code)},
                            .failed = {released, egress(literals.messages.writeFailed, code),
                                       record(literals.number, 2), failed, returns(code)},
                            .answered = {{13044, {released, allOf(literals.tolerated.write), returns(0)}}},
                            .done = {released, dfx(literals.counters.written), returns(0)}});
    }

    Operation updateSmoothVersion() {
        return table.update("updateSmoothVersion", literals.functions.updateSmoothVersion,
                            {table.sets("smoothVersion", 0x9F9E9D9C), table.stamps("timeStampSmooth")},
                            {.null = {egress(literals.messages.smoothNull), returns(1)},
                             .createFailed = {egress(literals.messages.smoothCreate, code), returns(code)},
                             .setFailed = {egress(literals.messages.smoothSet, code), released, returns(code)},
                             .failed = {released, egress(literals.messages.smoothFailed, code),
                                        record(literals.number, 6), returns(code)},
                             .answered = {{13044, {released, allOf(literals.tolerated.smooth), returns(0)}}},
                             .done = {released, returns(0)}});
    }

    Operation remove() {
        const Effect failed = dfx(literals.counters.removeFailed);
        return table.remove("delete", literals.functions.remove,
                            {.null = {egress(literals.messages.removeNull), failed, returns(1)},
                             .createFailed = {egress(literals.messages.removeCreate, code), failed, returns(code)},
                             .failed = {released, record(literals.number, 4),
                                        egress(literals.messages.removeFailed, code), failed, returns(code)},
                             .answered = {{13044, {released, allOf(literals.tolerated.remove), returns(0)}}},
                             .done = {released, dfx(literals.counters.removed), returns(0)}});
    }

    Operation getEntry() {
        return table.getEntry(
            "getEntry", literals.functions.getEntry,
            {.null = {returns(1)},
             .nextFailed = {egress(literals.messages.nextFailed, code), record(literals.number, 9), returns(1)},
             .readFailed = {egress(literals.messages.entryFailed, code), record(literals.number, 0), returns(1)}});
    }

    Operation iterator(const Filter& filter, const Effect& log = allOf({})) {
        return table.createIterator(
            filter.name, filter.run, filter.key,
            builtByTheFrame(released, {dfx(literals.counters.iteratorFailed), log, returnsNull()}));
    }

    Operation iteratorOfAll() {
        return iterator({"iteratorOfAll", literals.functions.createIteratorOfAll, "none"},
                        egress(literals.messages.iteratorOfAll));
    }
};

}  // namespace mcast6::tests::bd_egress
