// The three tables of a bridge domain's routes: l2mc6_bd_tag_rt, l2mc6_bd_untag_rt and l2mc6_bd_rt_vxlan_elb. Their
// steps are the same. The names below are counters of each table:
//
// operation          step          fails with   then
// create object      create        any          createFailed; the code
//                    -             -            created; 0
// release object     -             -            released
// read               null          -            log; 1
//                    create 3      any          log; the code
//                    read          15005        released; 60
//                                  other        log; error 0; released; the code
//                    -             -            record filled; released; 0
// write              null          -            log; writeFailed; 1
//                    create 0      any          log; writeFailed; the code
//                    set all       any          released; log; writeFailed; the code
//                    write         13044        released; error 1; as the table counts; 0
//                                  other        released; log; error 2; writeFailed; the code
//                    -             -            released; written; 0
// item setters       2 or 4        any          the others are called; OR of all codes
// update             null          -            log; 1
//                    create 1      any          log; the code
//                    item setter   any          log; released; what it answered
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; removeFailed; 1
//                    create 4      any          log; removeFailed; the code
//                    remove        13044        released; error 1; as the table counts; 0
//                                  other        released; error 4; log; removeFailed; the code
//                    -             -            released; removed; 0
// create iterator    any           any          released if created; iteratorFailed; log (not in the common one); null
//                    -             -            handle
// get entry          null          -            log, if the table has one; 1
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
#include "tests/support/bytes.h"
#include "tests/support/claims.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::bd_route {

inline const LogId routes{0x0F2E100F};

struct Counters {
    uint32_t createFailed, created, released, written, writeFailed, removed, removeFailed, iteratorFailed;
};

struct Messages {
    const char *readNull, *readCreate, *readFailed;
    const char *writeNull, *writeCreate, *writeSet, *writeFailed;
    const char *updateNull, *updateCreate, *updateSet, *updateFailed;
    const char *removeNull, *removeCreate, *removeFailed;
    const char* entryNull;  // null: nothing is logged
    const char *nextFailed, *entryFailed;
    const char* iteratorOfAll;
};

// The counters of 13044, after the error and before the result 0.
struct Tolerated {
    Effects write, remove;
};

template <class Record>
using ItemSetter = uint32_t (*)(Mcast6DbHandle, const Record*);

template <class Record>
struct Functions {
    void (*stamp)(void*, const Record*);
    void (*set)(const Record*, void*);
    void (*get)(const void*, Record*);
    Mcast6DbCreateFunc createObject;
    void (*releaseObject)(Mcast6DbHandle);
    uint32_t (*read)(Record*);
    uint32_t (*write)(const Record*);
    ItemSetter<Record> setSmoothItem;
    ItemSetter<Record> setItem;
    uint32_t (*updateOper)(const Record*, ItemSetter<Record>);
    uint32_t (*updateSmoothVersion)(const Record*, ItemSetter<Record>);
    uint32_t (*update)(const Record*, ItemSetter<Record>);
    uint32_t (*remove)(const Record*);
    uint32_t (*getEntry)(Mcast6DbRes*, Record*);
    Mcast6DbRes* (*createIterator)(const Mcast6DbKeyDesc*, const void*);
    Mcast6DbRes* (*createIteratorOfAll)();
    void (*releaseIterator)(Mcast6DbRes*);
};

template <class Record>
struct Literals {
    std::string name;
    uint32_t number;
    uint32_t rowSize;
    uint32_t createStamp;  // offset in the row; the smooth time follows
    std::string key;
    std::string row;  // see withGaps()
    void (*readStored)(Record&);
    std::string iteratorKeyWord, iteratorKey;  // of a key that the table has
    Counters counters;
    Messages messages;
    Tolerated tolerated;
    Functions<Record> functions;
};

template <class Record>
class BdRoute {
public:
    explicit BdRoute(const Literals<Record>& values)
        : literals(values),
          table(factsOf(values, {dfx(values.counters.createFailed)}), fillWithOffsets<Record>, values.readStored),
          released(table.facts.released) {}

    const Literals<Record> literals;
    TableFamily<Record> table;
    const Effect released;

    std::vector<Operation> operations() {
        const Functions<Record>& functions = literals.functions;
        return {
            table.createObject("createObject", functions.createObject),
            table.releaseObject("releaseObject", functions.releaseObject),
            read(),
            write(),
            table.setFields(
                "setSmoothItem", [this] { return literals.functions.setSmoothItem(table.object, &table.record); },
                smoothItem()),
            table.setFields(
                "setItem", [this] { return literals.functions.setItem(table.object, &table.record); }, item()),
            update(
                "updateThroughAnItemSetter",
                [functions](const Record* record) { return functions.updateOper(record, functions.setSmoothItem); },
                smoothItem()),
            update(
                "updateSmoothVersion",
                [functions](const Record* record) { return functions.updateSmoothVersion(record, notToBeCalled); },
                smoothItem()),
            update(
                "update", [functions](const Record* record) { return functions.update(record, notToBeCalled); },
                item()),
            remove(),
            getEntry(),
            iterator("iteratorOfAll", functions.createIteratorOfAll, "none", routes(literals.messages.iteratorOfAll)),
            iterator(
                "iteratorWithoutKey", [functions] { return functions.createIterator(nullptr, nullptr); }, "none"),
            iterator(
                "iteratorWithKey", [this] { return iteratorWithKey(); },
                keyOf(literals.iteratorKeyWord, literals.iteratorKey)),
            table.releaseIterator("releaseIterator", functions.releaseIterator),
        };
    }

    Operation iterator(const std::string& name, std::function<Mcast6DbRes*()> run, const std::string& key,
                       const Effect& log = allOf({})) {
        return table.createIterator(
            name, std::move(run), key,
            builtByTheFrame(released, {dfx(literals.counters.iteratorFailed), log, returnsNull()}));
    }

    std::vector<Claim> claims() {
        return claimsOf(
            literals, table,
            {
                {"setReadsTheClockOnceAndTakesItForAMissingCreationTime", [this] { checkClockOfSet(); }},
                {"aStampKeepsTheCallersCreationTimeUnlessItIs0", [this] { checkStamp(); }},
                {"readingAnAbsentRecordAnswers60AndIsSilent",
                 [this] { expectAbsentRead(table, literals.functions.read, 60); }},
                {"anUpdateCallsItsItemSetterWithTheObjectAndTheRecord", [this] { checkArgumentsOfItemSetter(); }},
                {"anItemSettersAnswerEndsTheUpdateAndIsReturned", [this] { checkAnswerOfItemSetter(); }},
                {"anUpdateOfAnAbsentRecordReturns0AndRecordsKind1", [this] { checkAbsentUpdate(); }},
            });
    }

private:
    using Recorder = recording::Recorder;

    // Passed in place of the setters that the updates use themselves.
    static uint32_t notToBeCalled(Mcast6DbHandle, const Record*) {
        ADD_FAILURE() << "an update called a setter that it ignores";
        return 0;
    }

    std::vector<Call> smoothItem() const {
        return {table.sets("smoothVersion", 0x33323130), table.stamps("timeStampSmooth")};
    }
    std::vector<Call> item() const {
        return {table.sets("smoothVersion", 0x33323130), table.sets("serviceStatus", 0x37363534),
                table.sets("errCode", 0x3B3A3938), table.stamps("timeStampSmooth")};
    }

    Mcast6DbRes* iteratorWithKey() const {
        const auto keyWord = static_cast<uint32_t>(std::stoul(literals.iteratorKeyWord, nullptr, 16));
        const Mcast6DbKeyDesc descriptor{keyWord, {}};
        const recording::Bytes key = recording::unhex(literals.iteratorKey);
        return literals.functions.createIterator(&descriptor, key.data());
    }

    Operation read() {
        return table.read("read", literals.functions.read,
                          {.null = {routes(literals.messages.readNull), returns(1)},
                           .createFailed = {routes(literals.messages.readCreate, code), returns(code)},
                           .failed = {routes(literals.messages.readFailed, code), record(literals.number, 0), released,
                                      returns(code)},
                           .answered = {{15005, {released, returns(60)}}},
                           .done = {released, returns(0)}});
    }

    Operation write() {
        const Effect failed = dfx(literals.counters.writeFailed);
        return table.write(
            "write", literals.functions.write,
            {.null = {routes(literals.messages.writeNull), failed, returns(1)},
             .createFailed = {routes(literals.messages.writeCreate, code), failed, returns(code)},
             .setFailed = {released, routes(literals.messages.writeSet, code), failed, returns(code)},
             .failed = {released, routes(literals.messages.writeFailed, code), record(literals.number, 2), failed,
                        returns(code)},
             .answered = {{13044, {released, record(literals.number, 1), allOf(literals.tolerated.write), returns(0)}}},
             .done = {released, dfx(literals.counters.written), returns(0)}});
    }

    Operation update(const char* name, std::function<uint32_t(const Record*)> run, std::vector<Call> setters) {
        return table.update(name, run, std::move(setters),
                            {.null = {routes(literals.messages.updateNull), returns(1)},
                             .createFailed = {routes(literals.messages.updateCreate, code), returns(code)},
                             .setFailed = {routes(literals.messages.updateSet, code), released, returns(code)},
                             .failed = {released, routes(literals.messages.updateFailed, code),
                                        record(literals.number, 6), returns(code)},
                             .answered = {{13044, {released, record(literals.number, 1), returns(0)}}},
                             .done = {released, returns(0)}});
    }

    Operation remove() {
        const Effect failed = dfx(literals.counters.removeFailed);
        return table.remove(
            "delete", literals.functions.remove,
            {.null = {routes(literals.messages.removeNull), failed, returns(1)},
             .createFailed = {routes(literals.messages.removeCreate, code), failed, returns(code)},
             .failed = {released, record(literals.number, 4), routes(literals.messages.removeFailed, code), failed,
                        returns(code)},
             .answered = {{13044,
                           {released, record(literals.number, 1), allOf(literals.tolerated.remove), returns(0)}}},
             .done = {released, dfx(literals.counters.removed), returns(0)}});
    }

    Operation getEntry() {
        const char* const message = literals.messages.entryNull;
        return table.getEntry(
            "getEntry", literals.functions.getEntry,
            {.null = {message == nullptr ? allOf({}) : routes(message), returns(1)},
             .nextFailed = {routes(literals.messages.nextFailed, code), record(literals.number, 9), returns(1)},
             .readFailed = {routes(literals.messages.entryFailed, code), record(literals.number, 0), returns(1)}});
    }

    void checkClockOfSet() const {
        Record record = table.sample();
        record.timeStampCreate = 0;
        expectStamps(table, literals.functions.set, record, kFirstTime + kFirstTime);
    }

    void checkStamp() const {
        startClock();
        Record record = table.sample();
        recording::Bytes row(literals.rowSize + 2, 0x5A);  // at an odd address
        literals.functions.stamp(row.data() + 1, &record);
        EXPECT_EQ(stampedRow(table.facts, "4041424344454647", kFirstTime), inner(row));
        record.timeStampCreate = 0;
        literals.functions.stamp(row.data() + 1, &record);
        EXPECT_EQ(stampedRow(table.facts, kSecondTime, kSecondTime), inner(row));
        EXPECT_EQ(2u, Recorder::instance().clockReadings());
        EXPECT_THAT(Recorder::instance().trace(), testing::IsEmpty());
    }

    void checkArgumentsOfItemSetter() const {
        static std::string object;
        static const Record* given;
        const Record record = table.sample();
        const auto note = [](Mcast6DbHandle handle, const Record* itsRecord) {
            object = nameOf(handle);
            given = itsRecord;
            return 0u;
        };
        EXPECT_EQ(0u, literals.functions.updateOper(&record, note));
        EXPECT_EQ("obj1", object);
        EXPECT_EQ(&record, given);
        EXPECT_EQ(Recorder::instance().trace(),
                  (Trace{"create " + literals.name + " 1 0 -> obj1", "dfx " + std::to_string(literals.counters.created),
                         "update obj1 " + literals.key, "release " + literals.name + " obj1",
                         "dfx " + std::to_string(literals.counters.released)}));
    }

    void checkAnswerOfItemSetter() const {
        const Record record = table.sample();
        EXPECT_EQ(13044u, literals.functions.updateOper(&record, [](Mcast6DbHandle, const Record*) { return 13044u; }));
        EXPECT_EQ(0u, Recorder::instance().callsOf("db_update_obj"));
        EXPECT_THAT(Recorder::instance().logFormats(), testing::ElementsAre(literals.messages.updateSet));
        EXPECT_THAT(g_mcast6DbErrStat[literals.number], testing::Each(0u));
        EXPECT_EQ(0u, Recorder::instance().liveObjects());
    }

    void checkAbsentUpdate() const {
        const Record record = table.sample();
        Recorder::instance().answer("db_update_obj", 13044);
        EXPECT_EQ(0u, literals.functions.update(&record, nullptr));
        EXPECT_EQ(1u, g_mcast6DbErrStat[literals.number][1]);
        EXPECT_EQ(0u, g_mcast6DbErrStat[literals.number][6]);
        EXPECT_THAT(Recorder::instance().logFormats(), testing::IsEmpty());
    }
};

}  // namespace mcast6::tests::bd_route
