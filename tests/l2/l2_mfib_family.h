// The two tables of layer-2 forwarding entries, l2mc6_bd_mfib and l2mc6_vlan_mfib. Their steps are the same. Names,
// numbers and messages differ and are in a file for each table. MfibFamily builds their operations from these.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "mcast6_db/iterator.h"
#include "mcast6_platform/engine.h"
#include "tests/l2/l2_mfib_sample.h"
#include "tests/support/operation_sweep.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l2_mfib {

using Entry = L2Mc6MfibEntry;

inline const LogId forwarding{0x0F2E1010};

template <class Function>
struct Named {
    const char* name;
    Function* function;
};

struct Functions {
    Named<uint32_t(const Entry*, void*)> set;
    Named<uint32_t(const void*, Entry*)> get;
    Named<uint32_t(Mcast6DbHandle, Entry*)> getContexts;
    Named<uint32_t(Mcast6DbHandle, Entry*)> getAddresses;
    Named<void(Mcast6DbHandle, Entry*)> getItem;
    Named<uint32_t(uint32_t, uint32_t, Mcast6DbHandle*)> createObject;
    Named<void(Mcast6DbHandle)> releaseObject;
    Named<uint32_t(Entry*, Mcast6DbHandle)> readEntry;
    Named<uint32_t(Entry*)> read;
    Named<uint32_t(uint32_t, uint32_t, Mcast6DbHandle*)> createCache;
    Named<uint32_t(Entry*)> readFast;
    Named<uint32_t(const Entry*)> write;
    Named<uint32_t(const Entry*)> updateSmoothVersion;
    Named<uint32_t(const Entry*)> remove;
    Named<uint32_t(Mcast6DbRes*, Entry*)> getEntry;
    Named<uint32_t(Mcast6DbRes*, Entry*)> getNext;
    Named<Mcast6DbRes*()> createIter;
    Named<Mcast6DbRes*(uint32_t, uint32_t, const Mcast6Ipv6Addr*)> createIterByGroup;
    Named<Mcast6DbRes*(uint32_t, uint32_t)> createIterByDomain;
    Named<Mcast6DbRes*()> createSortedIter;
    Named<uint32_t(Mcast6DbRes*)> createIterByErrCode;
    Named<void(Mcast6DbRes*)> releaseIter;
    Named<uint32_t(uint32_t*)> count;
    Named<uint32_t(uint32_t, uint32_t)> countByDomain;
    Named<uint32_t(uint32_t*)> countConflicts;
    Named<uint32_t()> sourcePid;
    Named<void(uint32_t)> setSourcePid;
};

// Messages; where a message has a conversion it logs the code.
struct Messages {
    Effect createFailed, itemFailed;
    Effect readNull, readCreateFailed, readFailed;
    Effect cacheCreateFailed, cacheResetFailed, fastReadFailed;
    Effect writeNull, writeCreateFailed, setAllFailed, writeFailed;
    Effect updateNull, updateCreateFailed, settersFailed, updateFailed;
    Effect removeNull, removeCreateFailed, removeFailed;
    Effect nextFailed, entryFailed, nextItemFailed;
    Effect iterCreateFailed, iterRootIterFailed, iterPropertyFailed, iterAllocationFailed;
    Effect byGroupPropertyFailed, byGroupAllocationFailed;
    Effect byDomainPropertyFailed, byDomainAllocationFailed;
    Effect sortedPropertyFailed, sortedAllocationFailed;
    Effect byErrCodePropertyFailed;
    Effect countByDomainFailed, conflictsFailed, conflictsAbsent;
};

struct MfibTable {
    std::string name;
    std::string domain;     // the field that holds domainId
    std::string sortedKey;  // the key of the sorted scan
    uint32_t rowSize;
    bool hasMaskLengths;
    uint32_t domainType;  // as it reads back
    uint32_t number;
    uint32_t sortedNumber;       // the table number of a failed allocation of the sorted scan
    uint32_t conflictNumber;     // the table number of a failed object of the hash-conflict count
    uint32_t created, released;  // diagnostic counters
    uint32_t written, writeFailed, removed, removeFailed;  // KPIs
    uint32_t* pid;
    Mcast6DbHandle* keptObject;
    Functions functions;
    Messages messages;

    std::string accessor(const std::string& verb, const std::string& what) const {
        return "db_" + verb + "_" + name + "_" + what;
    }
    std::string writtenRow() const { return kWrittenHead + (hasMaskLengths ? kWrittenMaskLengths : "") + kWrittenTail; }
    std::string storedRow() const { return kStoredHead + (hasMaskLengths ? kStoredMaskLengths : "") + kStoredTail; }
    // The fields in the order of a read by field.
    std::vector<MfibRead> itemReads() const;
};

inline std::vector<MfibRead> MfibTable::itemReads() const {
    std::vector<MfibRead> reads;
    const auto add = [&](const auto& more) { reads.insert(reads.end(), std::begin(more), std::end(more)); };
    add(kContextReads);
    add(kAddressReads);
    add(kReadsUpToVrf);
    if (hasMaskLengths) add(kMaskLengthReads);
    add(kReadsFromPathFlags);
    for (MfibRead& read : reads) {
        if (read.field == "<domain>") read.field = domain;
    }
    return reads;
}

// Changes a record as reading the whole stored row does.
inline void readStored(const MfibTable& table, Entry& record) {
    for (const MfibRead& read : table.itemReads()) read.readInto(record);
    record.addrType = 2;
    record.domainType = table.domainType;
    if (!table.hasMaskLengths) record.groupMaskLen = record.sourceMaskLen = 0;
}

// The arguments of the keyed iterators and counts.
inline constexpr uint32_t kFirst = 0x0A0B0C0D;
inline constexpr uint32_t kSecond = 0x1A1B1C1D;
inline const Mcast6Ipv6Addr kAddress = {{0x10111213, 0x14151617, 0x18191A1B, 0x1C1D1E1F}};
inline const std::string kByGroup = "key=03090018:0d0c0b0a" + kGroup + "1d1c1b1a";
inline const std::string kByDomain = "key=02090008:0d0c0b0a1d1c1b1a";
inline const std::string kByHashConflict = "key=04090004:05000000";

class MfibFamily {
public:
    MfibFamily(const MfibTable& table, void (*readStoredRow)(Entry&))
        : base(factsOf(table), fillSample, readStoredRow), t(table) {}

    TableFamily<Entry> base;

    std::vector<Operation> operations() {
        std::vector<Operation> all = {createObject(),
                                      releaseObject(),
                                      readEntry(),
                                      read(),
                                      createCache(),
                                      resetCache(),
                                      readFast(),
                                      readFastAgain(),
                                      write(),
                                      update(),
                                      remove(),
                                      getContexts(),
                                      getAddresses(),
                                      getItem(),
                                      getEntry(),
                                      getNext(),
                                      createIter(),
                                      createIterByGroup(),
                                      createIterByDomain(),
                                      createSortedIter(),
                                      createIterByErrCode(),
                                      releaseIter(),
                                      count(),
                                      countByDomain(),
                                      countConflicts()};
        for (Operation& operation : all) watchGlobals(operation);
        return all;
    }

    // A keyed iterator; both tables record its failures in the same way.
    Operation keyedIterator(const char* name, std::function<Mcast6DbRes*()> run, const std::string& key,
                            const Effect& propertyFailed, const Effect& allocationFailed) {
        return base.createIterator(
            name, std::move(run), key,
            {.createFailed = {record(t.number, 0), returnsNull()},
             .rootIterFailed = {released, returnsNull()},
             .propertyFailed = {released, propertyFailed, returnsNull()},
             .allocationFailed = {allocationFailed, record(t.number, 8), released, returnsNull()}});
    }

private:
    static TableFacts factsOf(const MfibTable& table) {
        return {.name = table.name,
                .rowSize = table.rowSize,
                .key = kKey,
                .writtenRow = table.writtenRow(),
                .storedRow = table.storedRow(),
                .created = {dfx(table.created)},
                .createFailed = {table.messages.createFailed},
                .createAnswers = 1,
                .released = allOf({line("release " + table.name + " obj1"), dfx(table.released)}),
                .createObject = table.functions.createObject.function,
                .createIterator = table.functions.createIter.function};
    }

    // Starts without a cached object and source pid, and watches both.
    void watchGlobals(Operation& operation) const {
        operation.scene.prepare = [&table = t, prepare = operation.scene.prepare] {
            *table.pid = 0;
            *table.keptObject = 0;
            prepare();
        };
        operation.scene.watched.push_back(watchBytes("source pid", *t.pid));
        operation.scene.watched.push_back(watchHandle("kept object", *t.keptObject));
    }

    Operation createObject() { return base.createObject(f.createObject.name, f.createObject.function); }

    Operation releaseObject() { return base.releaseObject(f.releaseObject.name, f.releaseObject.function); }

    // -- reads with a key

    Step keyedRead() const {
        return {.calls = {call("read obj1 " + kKey + " " + std::to_string(t.rowSize))},
                .failed = {m.readFailed, record(t.number, 0), returns(1)},
                .answered = {{15005, {returns(60)}}}};
    }

    Operation readEntry() {
        return {
            .name = f.readEntry.name,
            .scene = base.withObject(),
            .run = [this] { return f.readEntry.function(&base.record, base.object); },
            .steps = {keyedRead()},
            .done = {leaves("record", base.readBack()), returns(0)},
        };
    }

    Operation read() {
        return base.read(f.read.name, f.read.function,
                         {.null = {m.readNull, returns(1)},
                          .createFailed = {m.readCreateFailed, returns(1)},
                          .failed = {m.readFailed, record(t.number, 0), released, returns(1)},
                          .answered = {{15005, {released, returns(60)}}},
                          .done = {released, returns(0)}});
    }

    Operation createCache() {
        return {
            .name = f.createCache.name,
            .scene = base.plain(),
            .run = [this] { return f.createCache.function(3, 0, &base.object); },
            .steps = {{.calls = {gives("create " + t.name + " 3 0", "obj1")},
                       .failed = {m.cacheCreateFailed, returns(1)}}},
            .done = {leaves("object", "obj1"), keeps(1, 0, 0), returns(0)},
        };
    }

    Operation resetCache() {
        return {
            .name = std::string(f.createCache.name) + "Again",
            .scene = base.withObject(),
            .run = [this] { return f.createCache.function(3, 0, &base.object); },
            .steps = {{.calls = {call("reset " + t.name + " obj1 3")}, .failed = {m.cacheResetFailed, returns(1)}}},
            .done = {returns(0)},
        };
    }

    Operation readFast() {
        return {
            .name = f.readFast.name,
            .scene = base.plain(),
            .run = [this] { return f.readFast.function(&base.record); },
            .steps = {{.calls = {gives("create " + t.name + " 3 0", "obj1")},
                       .failed = {m.cacheCreateFailed, m.fastReadFailed, returns(1)},
                       .done = {leaves("kept object", "obj1"), keeps(1, 0, 0)}},
                      keyedRead()},
            .done = {leaves("record", base.readBack()), returns(0)},
        };
    }

    Operation readFastAgain() {
        Scene scene = base.plain();
        scene.prepare = [this, prepare = scene.prepare] {
            prepare();
            if (f.createCache.function(3, 0, t.keptObject) != 0) throw std::logic_error("no object to keep");
        };
        return {
            .name = std::string(f.readFast.name) + "Again",
            .scene = scene,
            .run = [this] { return f.readFast.function(&base.record); },
            .steps = {{.calls = {call("reset " + t.name + " obj1 3")},
                       .failed = {m.cacheResetFailed, m.fastReadFailed, returns(1)}},
                      keyedRead()},
            .done = {leaves("record", base.readBack()), returns(0)},
        };
    }

    // -- changes

    Operation write() {
        const Effect converted = leaves("source pid", "84838281");
        return base.write(
            f.write.name, f.write.function,
            {.null = {m.writeNull, kpi(t.writeFailed), returns(1)},
             .createFailed = {m.writeCreateFailed, kpi(t.writeFailed), returns(1)},
             .setFailed = {converted, released, m.setAllFailed, kpi(t.writeFailed), returns(1)},
             .failed = {converted, released, kpi(t.writeFailed), m.writeFailed, record(t.number, 2), returns(1)},
             .answered = {{13044, {converted, released, record(t.number, 1), kpi(t.written), returns(0)}}},
             .done = {converted, released, kpi(t.written), returns(0)}});
    }

    Operation update() {
        return base.update(f.updateSmoothVersion.name, f.updateSmoothVersion.function,
                           {base.sets("smoothVersion", 0x898A8B8C), base.stamps("timeStampSmooth")},
                           {.null = {m.updateNull, returns(1)},
                            .createFailed = {m.updateCreateFailed, returns(1)},
                            .setFailed = {m.settersFailed, released, returns(1)},
                            .failed = {released, m.updateFailed, record(t.number, 6), returns(1)},
                            .answered = {{13044, {released, record(t.number, 1), returns(0)}}},
                            .done = {released, returns(0)}});
    }

    Operation remove() {
        return base.remove(f.remove.name, f.remove.function,
                           {.null = {m.removeNull, kpi(t.removeFailed), returns(1)},
                            .createFailed = {m.removeCreateFailed, kpi(t.removeFailed), returns(1)},
                            .failed = {released, kpi(t.removeFailed), record(t.number, 4), m.removeFailed, returns(1)},
                            .answered = {{13044, {released, record(t.number, 1), kpi(t.removed), returns(0)}}},
                            .done = {released, kpi(t.removed), returns(0)}});
    }

    // -- reads by field

    Call getter(const std::string& field) const { return call(getterLine(t.name, field)); }

    // The sample after the successful getters.
    Effect leavesItem(bool hasConstants) const {
        return [this, hasConstants](Expectation& expectation) {
            Entry read;
            fillSample(read);
            readWhatWasGot(read, t.itemReads(), t.name, expectation.expected.trace);
            if (hasConstants) {
                read.addrType = 2;
                read.domainType = t.domainType;
            }
            expectation.expected.memory["record"] = bytesOf(read);
        };
    }

    // The getters after one whose failure is not reported.
    Effect restAfter(const std::string& field) const {
        Effects lines;
        bool isAfter = false;
        for (const MfibRead& read : t.itemReads()) {
            if (isAfter) lines.push_back(line(getterLine(t.name, read.field)));
            isAfter = isAfter || read.field == field;
        }
        return allOf(lines);
    }

    // A failed service context or group is not reported.
    std::vector<Step> itemSteps(const Effect& result) const {
        const Effect read = allOf({leavesItem(true), result});
        std::vector<Step> steps = {
            {.calls = {getter("svcCtxHighPrio"), getter("svcCtxNormalPrio")},
             .failed = {restAfter("svcCtxNormalPrio"), read}},
            {.calls = {getter("groupAddr")}, .failed = {restAfter("groupAddr"), read}},
            {.calls = {getter("sourceAddr")}, .failed = {m.itemFailed, read}},
        };
        const std::vector<MfibRead> fields = t.itemReads();
        for (size_t i = 4; i < fields.size(); ++i) steps.back().calls.push_back(getter(fields[i].field));
        return steps;
    }

    // The next step of the iterator succeeds.
    Scene beforeARecord() {
        Scene scene = base.withIterator();
        scene.prepare = [this, prepare = scene.prepare] {
            prepare();
            recording::Recorder::instance().fillNextStep(recording::unhex(t.storedRow()));
        };
        return scene;
    }

    Scene onARecord() {
        Scene scene = beforeARecord();
        scene.prepare = [this, prepare = scene.prepare] {
            prepare();
            if (db_root_iterator_next(base.iterator->rootIter) != 0) throw std::logic_error("no record to read");
        };
        return scene;
    }

    Operation getContexts() {
        return {
            .name = f.getContexts.name,
            .scene = onARecord(),
            .run = [this] { return f.getContexts.function(base.iterator->object, &base.record); },
            .steps = {{.calls = {getter("svcCtxHighPrio"), getter("svcCtxNormalPrio")},
                       .failed = {leavesItem(false), returns(code)}}},
            .done = {leavesItem(false), returns(0)},
        };
    }

    Operation getAddresses() {
        return {
            .name = f.getAddresses.name,
            .scene = onARecord(),
            .run = [this] { return f.getAddresses.function(base.iterator->object, &base.record); },
            .steps = {{.calls = {getter("groupAddr")},
                       .failed = {line(getterLine(t.name, "sourceAddr")), leavesItem(true), returns(0)}},
                      {.calls = {getter("sourceAddr")}, .failed = {leavesItem(true), returns(code)}}},
            .done = {leavesItem(true), returns(0)},
        };
    }

    Operation getItem() {
        return {
            .name = f.getItem.name,
            .scene = onARecord(),
            .run = [this] { f.getItem.function(base.iterator->object, &base.record); },
            .nulls = {{"record", [this] { f.getItem.function(base.iterator->object, nullptr); }, {returnsNothing()}}},
            .steps = itemSteps(returnsNothing()),
            .done = {leavesItem(true), returnsNothing()},
        };
    }

    Operation getNext() {
        std::vector<Step> steps = itemSteps(returns(0));
        steps.insert(steps.begin(), {.calls = {call("next iter1")},
                                     .failed = {m.nextItemFailed, returns(1)},
                                     .answered = {{110012, {returns(60)}}}});
        return {
            .name = f.getNext.name,
            .scene = beforeARecord(),
            .run = [this] { return f.getNext.function(base.iterator, &base.record); },
            .nulls = {{"iterator", [this] { return f.getNext.function(nullptr, &base.record); }, {returns(1)}},
                      {"record",
                       [this] { return f.getNext.function(base.iterator, nullptr); },
                       {line("next iter1"), returns(0)}}},
            .steps = steps,
            .done = {leavesItem(true), returns(0)},
        };
    }

    // -- iterators

    Operation getEntry() {
        return base.getEntry(f.getEntry.name, f.getEntry.function,
                             {.null = {returns(1)},
                              .nextFailed = {m.nextFailed, record(t.number, 9), returns(1)},
                              .readFailed = {m.entryFailed, record(t.number, 0), returns(1)}});
    }

    Operation createIter() {
        return base.createIterator(
            f.createIter.name, f.createIter.function, "none",
            {.createFailed = {m.iterCreateFailed, returnsNull()},
             .rootIterFailed = {m.iterRootIterFailed, record(t.number, 7), released, returnsNull()},
             .propertyFailed = {released, m.iterPropertyFailed, returnsNull()},
             .allocationFailed = {released, m.iterAllocationFailed, record(t.number, 8), returnsNull()}});
    }

    Operation createIterByGroup() {
        return keyedIterator(
            f.createIterByGroup.name, [this] { return f.createIterByGroup.function(kFirst, kSecond, &kAddress); },
            kByGroup, m.byGroupPropertyFailed, m.byGroupAllocationFailed);
    }

    Operation createIterByDomain() {
        return keyedIterator(
            f.createIterByDomain.name, [this] { return f.createIterByDomain.function(kFirst, kSecond); }, kByDomain,
            m.byDomainPropertyFailed, m.byDomainAllocationFailed);
    }

    // Without an object the statement is created on handle 0, and handle 0 is released.
    Operation createSortedIter() {
        Operation operation = base.createIterator(
            f.createSortedIter.name, f.createSortedIter.function, "none",
            {.createFailed = {},
             .rootIterFailed = {},
             .propertyFailed = {released, m.sortedPropertyFailed, returnsNull()},
             .allocationFailed = {released, m.sortedAllocationFailed, record(t.sortedNumber, 8), returnsNull()}});
        const std::string condition = " " + t.sortedKey + " 3 key=01020004:none";
        const Effects gone = {released, returnsNull()};
        // Replaces the creation and the root iterator.
        operation.steps.erase(operation.steps.begin(), operation.steps.begin() + 2);
        operation.steps.insert(
            operation.steps.begin(),
            {
                creation(base.facts, 5,
                         {line("stmt none 2 -> 120001"), line("condition none" + condition + " -> 120001"),
                          line("release " + t.name + " none"), dfx(t.released), returnsNull()}),
                {.calls = {call("stmt obj1 2")}, .failed = {line("condition obj1" + condition), allOf(gone)}},
                {.calls = {call("condition obj1" + condition)}, .failed = gone},
                {.calls = {gives("filter_iter obj1", "iter1")}, .failed = gone},
            });
        return operation;
    }

    Operation createIterByErrCode() {
        return base.createIteratorIn(f.createIterByErrCode.name, f.createIterByErrCode.function, kByHashConflict,
                                     {.createFailed = {record(t.number, 0), returns(1)},
                                      .rootIterFailed = {released, returns(1)},
                                      .propertyFailed = {released, m.byErrCodePropertyFailed, returns(1)}});
    }

    Operation releaseIter() { return base.releaseIterator(f.releaseIter.name, f.releaseIter.function); }

    // -- counts

    Operation count() {
        return base.countAll(
            f.count.name, f.count.function,
            {.createFailed = {returns(1)}, .failed = {released, returns(1)}, .done = {released, returns(0)}});
    }

    // Its object is created and released without the counters and the message.
    Operation countByDomain() {
        const Effect gone = line("release " + t.name + " obj1");
        return {
            .name = f.countByDomain.name,
            .scene = base.plain(),
            .run = [this] { return f.countByDomain.function(kFirst, kSecond); },
            .steps = {{.calls = {gives("create " + t.name + " 9 0", "obj1")},
                       .failed = {record(t.number, 0), returns(1)}},
                      {.calls = {call("count_by_key obj1 " + kByDomain)},
                       .failed = {m.countByDomainFailed, record(t.number, 0), gone, returns(0)},
                       .answered = {{15005, {gone, returns(0)}}}}},
            .done = {gone, returns(kCounted)},
        };
    }

    Operation countConflicts() {
        const Effect failed = allOf({record(t.number, 0), released, leaves("count", "0"), returns(1)});
        return base.countByKey(f.countConflicts.name, f.countConflicts.function, kByHashConflict,
                               {.createFailed = {record(t.conflictNumber, 0), returns(1)},
                                .failed = {m.conflictsFailed, failed},
                                .answered = {{15005, {m.conflictsAbsent, failed}}},
                                .done = {released, returns(0)}});
    }

    const MfibTable& t;
    const Functions& f = t.functions;
    const Messages& m = t.messages;
    const Effect& released = base.facts.released;
};

}  // namespace mcast6::tests::l2_mfib
