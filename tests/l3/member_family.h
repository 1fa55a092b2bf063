// The common part of the tables of a layer-3 entry's egress members in bridge domains and behind MVPN tunnels. See
// bd_egress_family.h and mvpn_family.h for the steps of their operations.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"
#include "tests/support/bytes.h"
#include "tests/support/claims.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l3_members {

inline const LogId egress{0x0F2E1016};

// Parts of keys, with the values of both samples.
inline const std::string kVrVrf = "0405060708090a0b";
inline const std::string kGroup = digits("13121110 17161514 1b1a1918 1f1e1d1c");
inline const std::string kSource = digits("23222120 27262524 2b2a2928 2f2e2d2c");

// A key record of two words and two addresses that names an entry: byte n is 0x80 + n.
template <class EntryKey>
EntryKey entryKey() {
    static_assert(sizeof(EntryKey) == 40);
    EntryKey key;
    uint8_t bytes[sizeof key];
    for (size_t n = 0; n < sizeof bytes; ++n) bytes[n] = static_cast<uint8_t>(0x80 + n);
    std::memcpy(&key, bytes, sizeof key);
    return key;
}
inline const std::string kEntryFilter =
    keyOf("01090028", "80818283 84858687 8b8a8988 8f8e8d8c 93929190 97969594 9b9a9998 9f9e9d9c a3a2a1a0 a7a6a5a4");

struct Counters {
    uint32_t created, released;
};

struct Kpis {
    uint32_t written, writeFailed, removed, removeFailed, createFailed, iteratorFailed;
};

struct Messages {
    const char *readNull, *readCreate, *readFailed;
    const char *writeNull, *writeCreate, *writeFailed;
    const char *smoothNull, *smoothCreate, *smoothSet, *smoothFailed;
    const char *removeNull, *removeCreate, *removeFailed;
    const char *nextFailed, *entryFailed;
};

// An iterator over some records, created from the sample or from arguments, and the key that the engine gets.
template <class Entry>
struct Filter {
    std::string name;
    std::function<Mcast6DbRes*(const Entry&)> create;
    std::string key;
};

template <class Entry, class EntryKey>
Filter<Entry> overEntry(Mcast6DbRes* (*create)(const EntryKey*)) {
    return {"iteratorOfAnEntry",
            [create](const Entry&) {
                const EntryKey key = entryKey<EntryKey>();
                return create(&key);
            },
            kEntryFilter};
}

template <class Entry, class GetResult>
struct Literals {
    std::string name;
    uint32_t number;
    uint32_t rowSize;
    uint32_t createStamp;  // offset in the row; the smooth time follows
    std::string key;
    std::string row;  // see withGaps()
    void (*readStored)(Entry&);
    std::vector<std::pair<std::string, uint64_t>> smoothSetters;  // without the time stamp, which comes last
    Counters counters;
    Kpis kpis;
    Messages messages;
    MemberFunctions<Entry, GetResult> functions;
    std::vector<Filter<Entry>> filters;
};

template <class Entry, class GetResult>
class MemberFamily {
public:
    explicit MemberFamily(const Literals<Entry, GetResult>& values)
        : literals(values),
          table(factsOf(values, {kpi(values.kpis.createFailed)}), fillWithOffsets<Entry>, values.readStored),
          released(table.facts.released) {}
    virtual ~MemberFamily() = default;
    MemberFamily(const MemberFamily&) = delete;
    MemberFamily& operator=(const MemberFamily&) = delete;

    const Literals<Entry, GetResult> literals;
    TableFamily<Entry> table;
    const Effect released;

    std::vector<Operation> operations() {
        std::vector<Operation> all = {table.createObject("createObject", literals.functions.createObject),
                                      table.releaseObject("releaseObject", literals.functions.releaseObject),
                                      table.read("read", literals.functions.read, exitsOfRead()),
                                      write(),
                                      updateSmoothVersion(),
                                      remove(),
                                      getEntry(),
                                      table.releaseIterator("releaseIterator", literals.functions.releaseIterator)};
        const auto create = literals.functions.createIterator;
        const auto ofAll = literals.functions.createIteratorOfAll;
        all.push_back(iterator({"iteratorOfAll", [ofAll](const Entry&) { return ofAll(); }, "none"}));
        all.push_back(
            iterator({"iteratorWithoutKey", [create](const Entry&) { return create(nullptr, nullptr); }, "none"}));
        const Filter<Entry>& some = literals.filters.front();
        all.push_back(iterator({"iteratorWithKey",
                                [create, key = some.key](const Entry&) {
                                    const Mcast6DbKeyDesc descriptor = descriptorOf(key);
                                    const recording::Bytes bytes = bytesOfKey(key);
                                    return create(&descriptor, bytes.data());
                                },
                                some.key}));
        for (const Filter<Entry>& filter : literals.filters) all.push_back(iterator(filter));
        return all;
    }

    // The fast count, with its cache empty and filled.
    std::vector<Operation> fastCounts(uint32_t (*count)(), Mcast6DbHandle& cache) {
        const Step creates{
            .calls = {gives("create_cache " + literals.name + " 9 0", "obj1")},
            .failed = {dfx(55), egress("Failed to create cache object, objType:%d, connType:%d, ret:%d", 9u, 0u, code),
                       returns(0)}};
        const auto resets = [this](int64_t lost) {
            return Step{
                .calls = {call("reset_cache " + literals.name + " obj1")},
                .failed = {dfx(56),
                           egress("Failed to reset cache object, objType:%d, connType:%d, ret:%d", 9u, 0u, code),
                           keeps(lost, 0, 0), returns(0)}};
        };
        const Effect failed = egress("[GetCountFast]Failed to get db count, ret:%d", code);
        const Effect filled = allOf({leaves("cache", "obj1"), keeps(1, 0, 0)});
        return {
            {.name = "fastCountAtFirst",
             .scene = withCache(cache, nullptr),
             .run = count,
             .steps = {creates,
                       resets(1),  // the object is neither kept in the cache nor released
                       {.calls = {call("count obj1")}, .failed = {failed, filled, returns(0)}}},
             .done = {filled, returns(kCounted)}},
            {.name = "fastCount",
             .scene = withCache(cache, count),
             .run = count,
             .steps = {resets(0), {.calls = {call("count obj1")}, .failed = {failed, returns(0)}}},
             .done = {returns(kCounted)}},
        };
    }

    // A count by key whose failures log and return 1; 'create' and 'count' are its messages.
    Operation countByKey(std::string name, std::function<uint32_t(uint32_t*)> function, const std::string& key,
                         const char* createFailed, const char* countFailed) {
        return table.countByKey(std::move(name), std::move(function), key,
                                {.createFailed = {egress(createFailed, code), returns(1)},
                                 .failed = {released, egress(countFailed, code), returns(1)},
                                 .done = {released, returns(0)}});
    }

    std::vector<Claim> claims() {
        return claimsOf(
            literals, table,
            {
                {"setReadsTheClockOnceForBothStampsAndIgnoresTheCallers",
                 [this] { expectStamps(table, literals.functions.set, table.sample(), kFirstTime + kFirstTime); }},
                {"aRowIsStampedWithTheSmoothTimeAndIfAskedTheCreationTime",
                 [this] { expectStamping(table, literals.functions.stamp); }},
                {"aWriteOfAPresentRecordCountsAsWritten",
                 [this] {
                     expectTolerance(table, literals.functions.write,
                                     tolerance("db_write_obj", literals.kpis.written, literals.kpis.writeFailed));
                 }},
                {"aDeletionOfAnAbsentRecordCountsAsDeleted",
                 [this] {
                     expectTolerance(table, literals.functions.remove,
                                     tolerance("db_remove_obj", literals.kpis.removed, literals.kpis.removeFailed));
                 }},
            });
    }

    // Reading an absent record returns 'result', leaves the record unchanged, logs nothing and records nothing.
    Claim absenceClaim(std::string name, uint32_t result) {
        return {std::move(name), [this, result] { expectAbsentRead(table, literals.functions.read, result); }};
    }

    // The fast count creates one object, keeps it, and resets it before each count.
    Claim fastCountClaim(uint32_t (*count)()) {
        return {"theFastCountKeepsItsObject", [this, count] {
                    Recorder::instance().fillNextCount(0xFFFFFFFF);
                    EXPECT_EQ(0xFFFFFFFFu, count());
                    Recorder::instance().fillNextCount(5);
                    EXPECT_EQ(5u, count());
                    EXPECT_EQ(Recorder::instance().trace(),
                              (Trace{"create_cache " + literals.name + " 9 0 -> obj1",
                                     "reset_cache " + literals.name + " obj1", "count obj1",
                                     "reset_cache " + literals.name + " obj1", "count obj1"}));
                    EXPECT_EQ(1u, Recorder::instance().liveObjects());
                }};
    }

    // No operation changes the host's process id.
    Claim pidClaim(uint32_t& pid, std::vector<Operation> operations) {
        return {"noOperationWritesTheProcessId", [&pid, operations] {
                    for (const Operation& operation : operations) {
                        startOver();
                        pid = 0xA1A2A3A4;
                        operation.scene.prepare();
                        operation.run();
                        EXPECT_EQ(0xA1A2A3A4u, pid) << operation.name;
                    }
                    pid = 0;
                }};
    }

    // The process id of the host: 0 until it sets one.
    static Claim pidReaderClaim(uint32_t& pid, uint32_t (*read)()) {
        return {"theProcessIdIs0UntilTheHostSetsIt", [&pid, read] {
                    EXPECT_EQ(0u, read());
                    pid = 0xA1A2A3A4;
                    EXPECT_EQ(0xA1A2A3A4u, read());
                    pid = 0;
                }};
    }

protected:
    virtual CallExits exitsOfRead() const = 0;
    // The effects of a failed setter of a write between the release and the KPI.
    virtual Effect setterLog() const = 0;

private:
    using Recorder = recording::Recorder;

    Operation write() {
        const Effect failed = kpi(literals.kpis.writeFailed);
        const Effect written = kpi(literals.kpis.written);
        return table.write("write", literals.functions.write,
                           {.null = {egress(literals.messages.writeNull), failed, returns(1)},
                            .createFailed = {egress(literals.messages.writeCreate, code), failed, returns(code)},
                            .setFailed = {released, setterLog(), failed, returns(code)},
                            .failed = {released, egress(literals.messages.writeFailed, code),
                                       record(literals.number, 2), failed, returns(code)},
                            .answered = {{13044, {released, record(literals.number, 1), written, returns(0)}}},
                            .done = {released, written, returns(0)}});
    }

    Operation updateSmoothVersion() {
        std::vector<Call> setters;
        for (const auto& [field, value] : literals.smoothSetters) setters.push_back(table.sets(field, value));
        setters.push_back(table.stamps("timeStampSmooth"));
        return table.update("updateSmoothVersion", literals.functions.updateSmoothVersion, setters,
                            {.null = {egress(literals.messages.smoothNull), returns(1)},
                             .createFailed = {egress(literals.messages.smoothCreate, code), returns(code)},
                             .setFailed = {egress(literals.messages.smoothSet, code), released, returns(code)},
                             .failed = {released, egress(literals.messages.smoothFailed, code),
                                        record(literals.number, 6), returns(code)},
                             .answered = {{13044, {released, record(literals.number, 1), returns(0)}}},
                             .done = {released, returns(0)}});
    }

    Operation remove() {
        const Effect failed = kpi(literals.kpis.removeFailed);
        const Effect removed = kpi(literals.kpis.removed);
        return table.remove("delete", literals.functions.remove,
                            {.null = {egress(literals.messages.removeNull), failed, returns(1)},
                             .createFailed = {egress(literals.messages.removeCreate, code), failed, returns(code)},
                             .failed = {released, record(literals.number, 4),
                                        egress(literals.messages.removeFailed, code), failed, returns(code)},
                             .answered = {{13044, {released, record(literals.number, 1), removed, returns(0)}}},
                             .done = {released, removed, returns(0)}});
    }

    Operation getEntry() {
        return table.getEntry(
            "getEntry", literals.functions.getEntry,
            {.null = {returns(1)},
             .nextFailed = {egress(literals.messages.nextFailed, code), record(literals.number, 9), returns(1)},
             .readFailed = {egress(literals.messages.entryFailed, code), record(literals.number, 0), returns(1)}});
    }

    Operation iterator(const Filter<Entry>& filter) {
        return table.createIterator(
            filter.name, [this, create = filter.create] { return create(table.record); }, filter.key,
            builtByTheFrame(released, {kpi(literals.kpis.iteratorFailed), returnsNull()}));
    }

    static Mcast6DbKeyDesc descriptorOf(const std::string& key) {
        return {static_cast<uint32_t>(std::stoul(key.substr(4, 8), nullptr, 16)), {}};
    }
    static recording::Bytes bytesOfKey(const std::string& key) { return recording::unhex(key.substr(13)); }

    // An earlier count has filled the cache.
    Scene withCache(Mcast6DbHandle& cache, uint32_t (*before)()) {
        Scene scene = table.plain();
        scene.prepare = [first = std::move(scene.prepare), before] {
            first();
            if (before == nullptr) return;
            before();
            Recorder::instance().fillNextCount(kCounted);
        };
        scene.watched.push_back(watchHandle("cache", cache));
        return scene;
    }

    Tolerance tolerance(const char* engineCall, uint32_t counted, uint32_t notCounted) const {
        return {.engineCall = engineCall,
                .counted = "kpi " + std::to_string(counted),
                .notCounted = "kpi " + std::to_string(notCounted),
                .error = "record " + std::to_string(literals.number) + " 1"};
    }
};

}  // namespace mcast6::tests::l3_members
