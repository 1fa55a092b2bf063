// Descriptions of the standard operations of a table, built from what differs between tables.
//
// A table is described once: its name, its bytes, and what creating and releasing an object does in addition to the
// engine's call. Each builder adds the engine calls of one kind of operation, in order. The test of a table spells out
// the effects of each exit, in order.
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
// A builder returns an Operation that a test may modify. An operation with other calls is written by hand, on one of
// the scenes here. Operations refer to the table that built them and must not outlive it. Only the operations under
// test come from the library.
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

// -- exits: the effects after the failing call, or after success, to the end of the operation -------------------------

// For operations that create an object and make one call: read, remove, count.
struct CallExits {
    Effects null = {};     // a null record or output; empty if the operation does not check for null
    Effects createFailed;  // after the table's effects of any failed creation
    Effects failed;
    std::map<uint32_t, Effects> answered = {};  // by code, where the effects differ from 'failed'
    Effects done;
};

// For operations that fill the object in between: write, update.
struct ChangeExits {
    Effects null = {};
    Effects createFailed;
    Effects setFailed;
    Effects failed;
    std::map<uint32_t, Effects> answered = {};
    Effects done;
};

// For creating an iterator. Success returns the handle, or 0 for a handle that the caller provides.
struct IterExits {
    Effects createFailed;
    Effects rootIterFailed;
    Effects propertyFailed;
    Effects allocationFailed = {};  // none for a handle that the caller provides
};
// For an iterator that the frame creates, with one report for all steps: the object is released if there is one, then
// 'failed'.
IterExits builtByTheFrame(const Effect& released, const Effects& failed);

// For the step to the next record. Success fills the record and returns 0.
struct EntryExits {
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
    uint32_t createStamp = 0;  // offset in the row; the smooth time follows
    std::string key;           // the sample's key as the recorder prints it: "key=0001000c:<digits>"
    std::string writtenRow;    // digits of the row that a write of the sample stores at the recorder's time
    std::string storedRow;     // a row that the engine returns for reads
    Effects created = {};      // in addition to the engine's call, on every successful creation
    Effects createFailed = {};
    Argument createAnswers = code;                   // result of the create operation when the engine fails: 1 or code
    Effect released;                                 // "release <table> obj1" and its counters
    Mcast6DbCreateFunc createObject = nullptr;       // for scenes
    Mcast6DbRes* (*createIterator)(void) = nullptr;  // for scenes; over all records
};

// The parts that operations are built from, also for operations written by hand.
Step creation(const TableFacts& table, uint32_t objType, Effects failed);
std::vector<Step> iteration(const TableFacts& table, const std::string& key, const IterExits& exits);
std::vector<Step> stepAndRead(const TableFacts& table, const EntryExits& exits);
Call setsAll(const TableFacts& table);

// The result of a count in the scenes of a table, and the value before.
inline constexpr uint32_t kCounted = 7;
inline constexpr uint32_t kUncounted = 0xDEADBEEF;

// -- independent of the record type -----------------------------------------------------------------------------------

// Digits of all bytes except the first and the last, which must be 5a.
std::string inner(const recording::Bytes& bytes);
std::string keyText(uint32_t keyWord, const std::string& digitsOfKey);
std::string stampMismatch(const TableFacts& table, uint32_t create, uint32_t smooth,
                          const std::function<uint32_t()>& run);

// -- a table ----------------------------------------------------------------------------------------------------------

template <class Record>
class TableFamily {
public:
    // 'fillSample' fills all bytes of a record, padding included; 'readStored' changes a record as reading storedRow
    // does.
    TableFamily(TableFacts tableFacts, void (*fillSample)(Record&), void (*readStored)(Record&))
        : facts(std::move(tableFacts)), fillSample_(fillSample), readStored_(readStored) {}
    TableFamily(const TableFamily&) = delete;
    TableFamily& operator=(const TableFamily&) = delete;

    const TableFacts facts;

    // The operands of the operations. Each scene resets them.
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
    // All bytes of a sample record after the stored row was read into it.
    std::string readBack() const {
        Record read;
        fillSample_(read);
        readStored_(read);
        return bytesOf(read);
    }

    // -- scenes

    // The sample, a row and a count ready to be read, and no object yet.
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

    // -- operations; 'function' is called with the record unless said otherwise

    template <class Function>
    Operation read(std::string name, Function function, CallExits exits) {
        exits.done.insert(exits.done.begin(), leaves("record", readBack()));
        const Call reads = call("read obj1 " + facts.key + " " + std::to_string(facts.rowSize));
        return keyed(std::move(name), function, 3, {}, reads, exits);
    }

    template <class Function>
    Operation write(std::string name, Function function, const ChangeExits& exits) {
        const std::vector<Step> fill = {{.calls = {setsAll(facts)}, .failed = exits.setFailed}};
        return keyed(std::move(name), function, 0, fill, call("write obj1"), callExits(exits));
    }

    // For updates that end when a setter fails; all setters are called in any case.
    template <class Function>
    Operation update(std::string name, Function function, std::vector<Call> setters, const ChangeExits& exits) {
        const std::vector<Step> fill = {{.calls = std::move(setters), .failed = exits.setFailed}};
        return keyed(std::move(name), function, 1, fill, call("update obj1 " + facts.key), callExits(exits));
    }

    template <class Function>
    Operation remove(std::string name, Function function, const CallExits& exits) {
        return keyed(std::move(name), function, 4, {}, call("remove obj1 " + facts.key), exits);
    }

    // 'run' is called with a pointer to the count, which is filled on success.
    template <class Function>
    Operation countAll(std::string name, Function function, const CallExits& exits) {
        return counted(std::move(name), function, call("count obj1"), exits);
    }

    // 'key' as the recorder prints it.
    template <class Function>
    Operation countByKey(std::string name, Function function, const std::string& key, const CallExits& exits) {
        return counted(std::move(name), function, call("count_by_key obj1 " + key), exits);
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

    // 'run' calls the operation with its arguments; 'key' as the recorder prints it, "none" for all records.
    template <class Function>
    Operation createIterator(std::string name, Function run, const std::string& key, const IterExits& exits) {
        std::vector<Step> steps = iteration(facts, key, exits);
        steps.push_back({.calls = {allocation(16, "block1")}, .failed = exits.allocationFailed});
        return {
            .name = std::move(name),
            .scene = plain(),
            .run = [this, run] { return iterator = run(); },
            .steps = steps,
            .done = {leaves("iterator", "obj1 iter1"), keeps(1, 1, 1), returnsHandle()},
        };
    }

    // Into 'resource', which 'function' gets a pointer to.
    template <class Function>
    Operation createIteratorIn(std::string name, Function function, const std::string& key, const IterExits& exits) {
        return {
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(&resource); },
            .steps = iteration(facts, key, exits),
            .done = {leaves("resource", "obj1 iter1"), keeps(1, 1, 0), returns(0)},
        };
    }

    // 'function' is called with the iterator and the record.
    template <class Function>
    Operation getEntry(std::string name, Function function, const EntryExits& exits) {
        Operation operation{
            .name = std::move(name),
            .scene = withIterator(),
            .run = [this, function] { return function(iterator, &record); },
            .steps = stepAndRead(facts, exits),
            .done = {leaves("record", readBack()), returns(0)},
        };
        if (!exits.null.empty()) {
            operation.nulls = {
                {"iterator", [this, function] { return function(static_cast<Mcast6DbRes*>(nullptr), &record); },
                 exits.null},
                {"record", [this, function] { return function(iterator, static_cast<Record*>(nullptr)); }, exits.null}};
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

    // -- conversions, without a scene; the returned text says if bytes around the output changed

    // The row that 'set' writes for the sample, over bytes 5a.
    template <class Function>
    std::string rowOf(Function set) {
        fillSample_(record);
        recording::Bytes row(facts.rowSize + 2, 0x5A);  // at an odd address
        set(&record, row.data() + 1);
        const bool isSampleLeft = bytesOf(record) == bytesOf(sample());
        return inner(row) + (isSampleLeft ? "" : " and changes the record");
    }

    // The record that 'get' makes of the sample when it reads the stored row.
    template <class Function>
    std::string recordOf(Function get) {
        fillSample_(record);
        recording::Bytes row = recording::unhex("5a" + facts.storedRow);  // at an odd address
        get(row.data() + 1, &record);
        return bytesOf(record) + (recording::hex(row) == "5a" + digits(facts.storedRow) ? "" : " and changes the row");
    }

    // The key that 'setKey' makes of the sample, as the recorder would print it. 'setKey' is called with a descriptor,
    // a buffer and the record.
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

    // 'function', called with an object and a flag other than 0, sets both stamps even if the first setter fails, in
    // any order, and returns the OR of both codes. Returns one text for each call that does otherwise.
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

    // The iterator is not watched: the operation may free its block.
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
                    const Call& last, const CallExits& exits) {
        Operation operation{
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(&record); },
            .steps = {creation(facts, objType, exits.createFailed)},
            .done = exits.done,
        };
        if (!exits.null.empty()) {
            operation.nulls = {{"record", [function] { return function(static_cast<Record*>(nullptr)); }, exits.null}};
        }
        operation.steps.insert(operation.steps.end(), fill.begin(), fill.end());
        operation.steps.push_back({.calls = {last}, .failed = exits.failed, .answered = exits.answered});
        return operation;
    }

    template <class Function>
    Operation counted(std::string name, Function function, const Call& last, CallExits exits) {
        exits.done.insert(exits.done.begin(), leaves("count", std::to_string(kCounted)));
        Operation operation{
            .name = std::move(name),
            .scene = plain(),
            .run = [this, function] { return function(&count); },
            .steps = {creation(facts, 9, exits.createFailed),
                      {.calls = {last}, .failed = exits.failed, .answered = exits.answered}},
            .done = exits.done,
        };
        if (!exits.null.empty()) {
            operation.nulls = {{"count", [function] { return function(static_cast<uint32_t*>(nullptr)); }, exits.null}};
        }
        return operation;
    }

    static CallExits callExits(const ChangeExits& exits) {
        return {.null = exits.null,
                .createFailed = exits.createFailed,
                .failed = exits.failed,
                .answered = exits.answered,
                .done = exits.done};
    }

    void (*fillSample_)(Record&);
    void (*readStored_)(Record&);
};

}  // namespace mcast6::tests
