// The standard operations of a table, told by what differs between tables.
//
// A table is told once: its name, its bytes, and what creating and releasing an object does beside the engine's call.
// Each builder adds the engine calls of one kind of operation, in their order; what each way out does, in the order in
// which it does it, is spelled out where the table is tested.
//
//     const LogId ports{0x0F2E100F};
//     const Effect released = allOf({line("release l2mc6_vlan_port obj1"), dfx(22)});
//     TableFamily<VlanPortEntry> table({.name = "l2mc6_vlan_port", .rowSize = 48, ...}, fillSample, readStored);
//
//     table.read("ReadVlanPort", MCAST6_DB_ReadVlanPort,
//                {.null = {ports("[MCAST6 DB] read vlan port fail, portEntry is null"), returns(1)},
//                 .createFailed = {ports("[MCAST6 DB] read vlan port fail, create object fail."), returns(1)},
//                 .answered = {{15005, {released, returns(60)}}},
//                 .failed = {released, ports("[MCAST6 DB] read vlan port object fail, ret:%u.", code), returns(1)},
//                 .done = {released, returns(0)}})
//
// What comes back is an Operation, in which a test may change what is particular; an operation with calls of its own is
// written by hand on one of the scenes here. Operations use the table that built them and must not outlive it. Nothing
// is taken from the library but the operations under test.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mcast6_db/iterator.h"
#include "tests/platform/recorder.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests {

// -- ways out: what follows the failing call, or success, to the end of the operation ---------------------------------

// Of operations that create an object and make one call: read, remove, count.
struct CallWays {
    Effects null = {};     // a null record or output; empty if that is the caller's to avoid
    Effects createFailed;  // after what the table does for every failed creation
    Effects failed;
    std::map<uint32_t, Effects> answered = {};  // answers that are not treated as the others are
    Effects done;
};

// Of operations that fill the object in between: write, update.
struct ChangeWays {
    Effects null = {};
    Effects createFailed;
    Effects setFailed;
    Effects failed;
    std::map<uint32_t, Effects> answered = {};
    Effects done;
};

// Of building an iterator. A success returns the handle; in a caller's resource, 0.
struct IterWays {
    Effects createFailed;
    Effects rootIterFailed;
    Effects propertyFailed;
    Effects allocationFailed = {};  // in a caller's resource nothing is allocated
};
// When the frame builds it and the table reports once: the object goes back if there is one, then 'failed'.
IterWays builtByTheFrame(const Effect& released, const Effects& failed);

// Of the step to the next record. A success fills the record and returns 0.
struct EntryWays {
    Effects null = {};
    Effects ended = {returns(60)};  // 110012 from the step
    Effects nextFailed;
    Effects vanished = {returns(60)};  // 15005 from the read
    Effects readFailed;
};

// -- tables -----------------------------------------------------------------------------------------------------------

struct TableFacts {
    std::string name;          // of the database table
    uint32_t rowSize;          // bytes
    uint32_t createStamp = 0;  // where in a row; the smooth time follows
    std::string key;           // the sample's as the recorder tells it: "key=0001000c:<digits>"
    std::string writtenRow;    // digits of the row that a write makes of the sample at the recorder's time
    std::string storedRow;     // a row that the engine answers reads with
    Effects created = {};      // beside the engine's call, on every successful creation
    Effects createFailed = {};
    Argument createAnswers = code;                   // result of the create operation when the engine fails: 1 or code
    Effect released;                                 // "release <table> obj1" and what goes with it
    Mcast6DbCreateFunc createObject = nullptr;       // for scenes
    Mcast6DbRes* (*createIterator)(void) = nullptr;  // for scenes; over all records
};

// The pieces of which the operations are made, for operations written by hand too.
Step creation(const TableFacts& table, uint32_t objType, Effects failed);
std::vector<Step> iteration(const TableFacts& table, const std::string& key, const IterWays& ways);
std::vector<Step> stepAndRead(const TableFacts& table, const EntryWays& ways);
Call setsAll(const TableFacts& table);

// What a count gives in the scenes of a table, and what is in its place before.
inline constexpr uint32_t kCounted = 7;
inline constexpr uint32_t kUncounted = 0xDEADBEEF;

// -- what the template shares -----------------------------------------------------------------------------------------

// Digits of all bytes but the first and the last, which must be 5a.
std::string inner(const recording::Bytes& bytes);
std::string keyText(uint32_t keyWord, const std::string& digitsOfKey);
std::string stampMismatch(const TableFacts& table, uint32_t create, uint32_t smooth,
                          const std::function<uint32_t()>& run);

// -- a table ----------------------------------------------------------------------------------------------------------

template <class Record>
class TableFamily {
public:
    // 'fillSample' fills all bytes of a record, padding too; 'readStored' does to a record what reading storedRow does.
    TableFamily(TableFacts told, void (*fillSample)(Record&), void (*readStored)(Record&))
        : facts(std::move(told)), fillSample_(fillSample), readStored_(readStored) {}
    TableFamily(const TableFamily&) = delete;
    TableFamily& operator=(const TableFamily&) = delete;

    const TableFacts facts;

    // What the operations work on. Each scene puts it back.
    Record record;
    Mcast6DbHandle object = 0;
    Mcast6DbRes* iterator = nullptr;
    Mcast6DbRes resource{};
    uint32_t count = kUncounted;

    Record sample() const {
        Record made;
        fillSample_(made);
        return made;
    }
    // All bytes of a record that was the sample and into which the stored row was read.
    std::string readBack() const {
        Record read;
        fillSample_(read);
        readStored_(read);
        return bytesOf(read);
    }

    // -- scenes

    // The sample, a row and a count that wait to be read, and no object yet.
    Scene plain() {
        return {.prepare = [this] { startScene(); }, .watched = watchedWithIterator()};
    }
    Scene withObject() {
        return {.prepare =
                    [this] {
                        startScene();
                        if (facts.createObject(1, 0, &object) != 0) throw std::logic_error("no object for the scene");
                    },
                .watched = watchedWithIterator()};
    }
    Scene withIterator() {
        return {.prepare =
                    [this] {
                        startScene();
                        iterator = facts.createIterator();
                        if (iterator == nullptr) throw std::logic_error("no iterator for the scene");
                    },
                .watched = watched()};
    }

    // -- calls of setters on obj1

    Call sets(const std::string& field, uint64_t value) const {
        return tests::sets(facts.name + "." + field, "obj1", value);
    }
    Call setsBytes(const std::string& field, std::string_view bytes) const {
        return call("set " + facts.name + "." + field + " obj1 " + digits(bytes));
    }
    // With the recorder's time.
    Call stamps(const std::string& field) const { return sets(field, 1'700'000'000); }

    // -- operations; 'function' is called with the record, or as told

    template <class Function>
    Operation read(std::string name, Function function, CallWays ways) {
        ways.done.insert(ways.done.begin(), leaves("record", readBack()));
        const Call reads = call("read obj1 " + facts.key + " " + std::to_string(facts.rowSize));
        return keyed(std::move(name), function, 3, {}, reads, ways);
    }

    template <class Function>
    Operation write(std::string name, Function function, const ChangeWays& ways) {
        const std::vector<Step> fill = {{.calls = {setsAll(facts)}, .failed = ways.setFailed}};
        return keyed(std::move(name), function, 0, fill, call("write obj1"), callWays(ways));
    }

    // For updates that end when a setter fails; all setters are called nevertheless.
    template <class Function>
    Operation update(std::string name, Function function, std::vector<Call> setters, const ChangeWays& ways) {
        const std::vector<Step> fill = {{.calls = std::move(setters), .failed = ways.setFailed}};
        return keyed(std::move(name), function, 1, fill, call("update obj1 " + facts.key), callWays(ways));
    }

    template <class Function>
    Operation remove(std::string name, Function function, const CallWays& ways) {
        return keyed(std::move(name), function, 4, {}, call("remove obj1 " + facts.key), ways);
    }

    // 'run' is called with the place of the count, which is filled on success.
    template <class Function>
    Operation countAll(std::string name, Function function, const CallWays& ways) {
        return counted(std::move(name), function, call("count obj1"), ways);
    }

    // 'key' as the recorder tells it.
    template <class Function>
    Operation countByKey(std::string name, Function function, const std::string& key, const CallWays& ways) {
        return counted(std::move(name), function, call("count_by_key obj1 " + key), ways);
    }

    Operation createObject(std::string name, Mcast6DbCreateFunc function) {
        return {
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(3, 0, &object); },
            .steps = {creation(facts, 3, {returns(facts.createAnswers)})},
            .done = {leaves("object", "obj1"), keeps(1, 0, 0), returns(0)},
        };
    }

    Operation releaseObject(std::string name, void (*function)(Mcast6DbHandle)) {
        return {
            .name = std::move(name),
            .scene = withObject(),
            .run = [this, function] { function(object); },
            .steps = {},
            .done = {facts.released, leaves("object", "?1"), keeps(-1, 0, 0), returnsNothing()},
        };
    }

    // Setters on a given object; 'run' calls the operation on 'object'.
    template <class Function>
    Operation setFields(std::string name, Function run, std::vector<Call> setters, Effects failed = {returns(code)}) {
        return {
            .name = std::move(name),
            .scene = withObject(),
            .run = run,
            .steps = {{.calls = std::move(setters), .failed = std::move(failed)}},
            .done = {returns(0)},
        };
    }

    // 'run' calls the operation with what it takes; 'key' as the recorder tells it, "none" for all records.
    template <class Function>
    Operation createIterator(std::string name, Function run, const std::string& key, const IterWays& ways) {
        std::vector<Step> steps = iteration(facts, key, ways);
        steps.push_back({.calls = {allocation(16, "block1")}, .failed = ways.allocationFailed});
        return {
            .name = std::move(name),
            .scene = plain(),
            .run = [this, run] { return iterator = run(); },
            .steps = steps,
            .done = {leaves("iterator", "obj1 iter1"), keeps(1, 1, 1), returnsHandle()},
        };
    }

    // Into 'resource', whose place 'function' is called with.
    template <class Function>
    Operation createIteratorIn(std::string name, Function function, const std::string& key, const IterWays& ways) {
        return {
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(&resource); },
            .steps = iteration(facts, key, ways),
            .done = {leaves("resource", "obj1 iter1"), keeps(1, 1, 0), returns(0)},
        };
    }

    // 'function' is called with the iterator and the record.
    template <class Function>
    Operation getEntry(std::string name, Function function, const EntryWays& ways) {
        Operation operation{
            .name = std::move(name),
            .scene = withIterator(),
            .run = [this, function] { return function(iterator, &record); },
            .steps = stepAndRead(facts, ways),
            .done = {leaves("record", readBack()), returns(0)},
        };
        if (!ways.null.empty()) {
            operation.nulls = {
                {"iterator", [this, function] { return function(static_cast<Mcast6DbRes*>(nullptr), &record); },
                 ways.null},
                {"record", [this, function] { return function(iterator, static_cast<Record*>(nullptr)); }, ways.null}};
        }
        return operation;
    }

    Operation releaseIterator(std::string name, void (*function)(Mcast6DbRes*)) {
        return {
            .name = std::move(name),
            .scene = withIterator(),
            .run = [this, function] { function(iterator); },
            .nulls = {{"iterator", [function] { function(nullptr); }, {returnsNothing()}}},
            .steps = {},
            .done = {facts.released, line("free block1"), keeps(-1, -1, -1), returnsNothing()},
        };
    }

    // -- conversions, without a scene; the bytes around what is filled must stay, or the text says so

    // The row that 'set', called with the sample and the place of a row, makes of bytes 5a.
    template <class Function>
    std::string rowOf(Function set) {
        fillSample_(record);
        recording::Bytes row(facts.rowSize + 2, 0x5A);  // at an odd address
        set(&record, row.data() + 1);
        const bool isSampleLeft = bytesOf(record) == bytesOf(sample());
        return inner(row) + (isSampleLeft ? "" : " and changes the record");
    }

    // The record that 'get', called with the stored row and the place of a record, makes of the sample.
    template <class Function>
    std::string recordOf(Function get) {
        fillSample_(record);
        recording::Bytes row = recording::unhex("5a" + facts.storedRow);  // at an odd address
        get(row.data() + 1, &record);
        return bytesOf(record) + (recording::hex(row) == "5a" + digits(facts.storedRow) ? "" : " and changes the row");
    }

    // The sample's key as the recorder would tell it, of 'setKey', called with a descriptor, the place of a key and the
    // record.
    template <class Function>
    std::string keyOf(Function setKey) {
        fillSample_(record);
        Mcast6DbKeyDesc descriptor{0x5A5A5A5A, {0xE1E2E3E4, 0xE5E6E7E8, 0xE9EAEBEC}};
        const size_t digitsOfKey = facts.key.size() - std::string_view("key=0001000c:").size();
        recording::Bytes key(digitsOfKey / 2 + 2, 0x5A);
        setKey(&descriptor, key.data() + 1, &record);
        const bool isRestLeft = descriptor.reserved[0] == 0xE1E2E3E4 && descriptor.reserved[1] == 0xE5E6E7E8 &&
                                descriptor.reserved[2] == 0xE9EAEBEC;
        return keyText(descriptor.keyWord, inner(key)) + (isRestLeft ? "" : " and changes the descriptor");
    }

    // 'function', called with an object and a flag that is not 0, sets both stamps whatever the first answers, in an
    // order that is free, and answers the OR of both codes. One text for each call that does otherwise.
    template <class Function>
    std::vector<std::string> stampMismatches(Function function) {
        std::vector<std::string> texts;
        for (const uint32_t flag : {1u, 0x80000000u}) {
            for (const auto& [create, smooth] : {std::pair{0u, 0u}, {8u, 0u}, {0u, 5u}, {8u, 5u}}) {
                startOver();
                withObject().prepare();
                const std::string found =
                    stampMismatch(facts, create, smooth, [this, function, flag] { return function(object, flag); });
                if (!found.empty()) texts.push_back("flag " + std::to_string(flag) + ": " + found);
            }
        }
        recording::Recorder::instance().reset();
        return texts;
    }

private:
    void startScene() {
        fillSample_(record);
        object = 0;
        iterator = nullptr;
        resource = {0, 0};
        count = kUncounted;
        recording::Recorder::instance().fillNextRead(recording::unhex(facts.storedRow));
        recording::Recorder::instance().fillNextCount(kCounted);
    }

    // Not the iterator: where a scene has one, the operation may free its block.
    std::vector<Watched> watched() {
        return {watchBytes("record", record),
                watchHandle("object", object),
                {"resource", [this] { return handlesOf(resource); }},
                {"count", [this] { return std::to_string(count); }}};
    }

    std::vector<Watched> watchedWithIterator() {
        std::vector<Watched> pieces = watched();
        pieces.push_back({"iterator", [this] { return iterator == nullptr ? "none" : handlesOf(*iterator); }});
        return pieces;
    }

    static std::string handlesOf(const Mcast6DbRes& handles) {
        return nameOf(handles.object) + " " + nameOf(handles.rootIter);
    }

    template <class Function>
    Operation keyed(std::string name, Function function, uint32_t objType, const std::vector<Step>& fill,
                    const Call& last, const CallWays& ways) {
        Operation operation{
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(&record); },
            .steps = {creation(facts, objType, ways.createFailed)},
            .done = ways.done,
        };
        if (!ways.null.empty()) {
            operation.nulls = {{"record", [function] { return function(static_cast<Record*>(nullptr)); }, ways.null}};
        }
        operation.steps.insert(operation.steps.end(), fill.begin(), fill.end());
        operation.steps.push_back({.calls = {last}, .failed = ways.failed, .answered = ways.answered});
        return operation;
    }

    template <class Function>
    Operation counted(std::string name, Function function, const Call& last, CallWays ways) {
        ways.done.insert(ways.done.begin(), leaves("count", std::to_string(kCounted)));
        Operation operation{
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(&count); },
            .steps = {creation(facts, 9, ways.createFailed),
                      {.calls = {last}, .failed = ways.failed, .answered = ways.answered}},
            .done = ways.done,
        };
        if (!ways.null.empty()) {
            operation.nulls = {{"count", [function] { return function(static_cast<uint32_t*>(nullptr)); }, ways.null}};
        }
        return operation;
    }

    static CallWays callWays(const ChangeWays& ways) {
        return {.null = ways.null,
                .createFailed = ways.createFailed,
                .failed = ways.failed,
                .answered = ways.answered,
                .done = ways.done};
    }

    void (*fillSample_)(Record&);
    void (*readStored_)(Record&);
};

}  // namespace mcast6::tests
