// What the layer-3 egress tables keep between operations: cached objects, cached root iterators, and the scan handle
// with its fast scans. Each builder adds the engine calls; the test of a table spells out the other effects of each
// exit.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/support/table_family.h"

namespace mcast6::tests {

struct CacheExits {
    Effects createFailed;
    Effects resetFailed;
};

// -- cached objects: objType 3, connType 2, so that a message shows which is which

inline Effects with(const Effects& first, const Effects& rest) {
    Effects all = first;
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
}

// The first use, with an empty slot. An object whose reset fails leaks.
template <class Record>
Operation cacheObject(TableFamily<Record>& table, std::string name, Mcast6DbCreateFunc function,
                      const CacheExits& exits) {
    return {
        .name = std::move(name),
        .scene = table.plain(),
        .run = [&table, function] { return function(3, 2, &table.object); },
        .steps = {{.calls = {gives("create_cache " + table.facts.name + " 3 2", "obj1")}, .failed = exits.createFailed},
                  {.calls = {call("reset_cache " + table.facts.name + " obj1")},
                   .failed = with(exits.resetFailed, {keeps(1, 0, 0)})}},
        .done = {leaves("object", "obj1"), keeps(1, 0, 0), returns(0)}};
}

// Every further use. The object stays in its slot even if the reset fails.
template <class Record>
Operation cacheObjectAgain(TableFamily<Record>& table, std::string name, Mcast6DbCreateFunc function,
                           const CacheExits& exits) {
    Operation operation = cacheObject(table, std::move(name), function, exits);
    operation.scene.prepare = [&table, function, prepare = operation.scene.prepare] {
        prepare();
        if (function(3, 2, &table.object) != 0) throw std::logic_error("no cached object for the scene");
    };
    operation.steps = {{.calls = {call("reset_cache " + table.facts.name + " obj1")}, .failed = exits.resetFailed}};
    operation.done = {returns(0)};
    return operation;
}

// -- keyed reads with a cached object

struct FastReadExits {
    Effects null;
    Effects createFailed;
    Effects resetFailed;
    Effects failed;
};

inline Scene withCache(Scene scene, Mcast6DbHandle& cache) {
    scene.watched.push_back(watchHandle("cache", cache));
    return scene;
}

template <class Record>
Operation readFast(TableFamily<Record>& table, std::string name, uint32_t (*function)(Record*), Mcast6DbHandle& cache,
                   const FastReadExits& exits) {
    const Effects kept = {leaves("cache", "obj1"), keeps(1, 0, 0)};
    return {
        .name = std::move(name),
        .scene = withCache(table.plain(), cache),
        .run = [&table, function] { return function(&table.record); },
        .nulls = {{"record", [function] { return function(nullptr); }, exits.null}},
        .steps = {{.calls = {gives("create_cache " + table.facts.name + " 3 0", "obj1")}, .failed = exits.createFailed},
                  {.calls = {call("reset_cache " + table.facts.name + " obj1")},
                   .failed = with(exits.resetFailed, {keeps(1, 0, 0)})},
                  {.calls = {call("read obj1 " + table.facts.key + " " + std::to_string(table.facts.rowSize))},
                   .failed = with(kept, exits.failed)}},
        .done = with(kept, {leaves("record", table.readBack()), returns(0)}),
    };
}

template <class Record>
Operation readFastAgain(TableFamily<Record>& table, std::string name, uint32_t (*function)(Record*),
                        Mcast6DbHandle& cache, const FastReadExits& exits) {
    Operation operation = readFast(table, std::move(name), function, cache, exits);
    operation.scene.prepare = [function, prepare = operation.scene.prepare] {
        prepare();
        Record other{};
        if (function(&other) != 0) throw std::logic_error("no cached object for the scene");
        prepare();  // consumes the row that was ready to be read
    };
    operation.steps = {{.calls = {call("reset_cache " + table.facts.name + " obj1")}, .failed = exits.resetFailed},
                       {.calls = {call("read obj1 " + table.facts.key + " " + std::to_string(table.facts.rowSize))},
                        .failed = exits.failed}};
    operation.done = {leaves("record", table.readBack()), returns(0)};
    return operation;
}

// -- cached root iterators on a given object; the slot is that of 'resource'

using CacheIterFunc = uint32_t (*)(Mcast6DbHandle object, const Mcast6DbKeyDesc* descriptor, const void* key,
                                   Mcast6DbHandle* slot);

// 'keyWord' and 'key' as digits: "01090029".
template <class Record>
Operation cacheIterator(TableFamily<Record>& table, std::string name, CacheIterFunc function,
                        const std::string& keyWord, const std::string& key, const CacheExits& exits) {
    const Run run = [&table, function, keyWord, key] {
        const Mcast6DbKeyDesc descriptor{static_cast<uint32_t>(std::stoul(keyWord, nullptr, 16)), {0, 0, 0}};
        return function(table.object, &descriptor, recording::unhex(key).data(), &table.resource.rootIter);
    };
    return {.name = std::move(name),
            .scene = table.withObject(),
            .run = run,
            .steps = {{.calls = {gives("cache_iter obj1 " + keyWord, "iter1")}, .failed = exits.createFailed},
                      {.calls = {call("reset_cache_iter iter1 key=" + keyWord + ":" + key)},
                       .failed = with(exits.resetFailed, {keeps(0, 1, 0)})}},
            .done = {leaves("resource", "none iter1"), keeps(0, 1, 0), returns(0)}};
}

// The slot holds one: the descriptor is not used.
template <class Record>
Operation cacheIteratorAgain(TableFamily<Record>& table, std::string name, CacheIterFunc function,
                             const std::string& keyWord, const std::string& key, const CacheExits& exits) {
    Operation operation = cacheIterator(table, std::move(name), function, keyWord, key, exits);
    operation.scene.prepare = [prepare = operation.scene.prepare, run = operation.run] {
        prepare();
        if (run() != "0") throw std::logic_error("no cached root iterator for the scene");
    };
    operation.run = [&table, function, key] {
        return function(table.object, nullptr, recording::unhex(key).data(), &table.resource.rootIter);
    };
    operation.steps = {
        {.calls = {call("reset_cache_iter iter1 key=" + keyWord + ":" + key)}, .failed = exits.resetFailed}};
    operation.done = {returns(0)};
    return operation;
}

// -- fast scans

struct ScanExits {
    Effects objectFailed;
    Effects objectResetFailed;
    Effects iteratorFailed;
    Effects iteratorResetFailed;
    Effects propertyFailed;
    Effects allocationFailed;
};

struct ScanFacts {
    Mcast6DbScanHandle* handle;
    std::function<Mcast6DbRes*()> scan;  // with the key
    void (*release)(Mcast6DbRes*);
    std::string keyWord;  // digits: "01090029"
    std::string key;      // digits
    ScanExits exits;
    uint32_t releasedCounter;  // of an object that is released
    Effects returned;          // the counters of returning the cached object to the scan handle
    Effects ordinaryFailed;    // of an ordinary iterator, after its object is released
};

// An empty scan handle has object 0: releasing object 0 returns it to the handle, with the trace 'expected'.
inline void expectNoObjectToBeTheEmptyHandles(Mcast6DbScanHandle& handle, void (*releaseObject)(Mcast6DbHandle),
                                              const Trace& expected) {
    handle.inUse = 1;
    releaseObject(0);
    EXPECT_EQ(0u, handle.inUse);
    EXPECT_EQ(expected, recording::Recorder::instance().trace());
}

template <class Record>
class FastScans {
public:
    FastScans(TableFamily<Record>& table, ScanFacts scanFacts) : facts(std::move(scanFacts)), table_(table) {}
    FastScans(const FastScans&) = delete;
    FastScans& operator=(const FastScans&) = delete;

    const ScanFacts facts;

    // Nothing is cached. What was created is kept for the next scan; the flag is set last.
    Operation first(std::string name) {
        const std::string table = table_.facts.name;
        const std::string key = "key=" + facts.keyWord + ":" + facts.key;
        const Effects object = {leaves("scan", "0 obj1 none"), keeps(1, 0, 0)};
        const Effects pair = {leaves("scan", "0 obj1 iter1"), keeps(1, 1, 0)};
        return {
            .name = std::move(name),
            .scene = scene([] {}),
            .run = [this] { return table_.iterator = facts.scan(); },
            .steps = {{.calls = {gives("create_cache " + table + " 5 0", "obj1")}, .failed = facts.exits.objectFailed},
                      {.calls = {call("reset_cache " + table + " obj1")},
                       .failed = with(facts.exits.objectResetFailed, {keeps(1, 0, 0)})},
                      {.calls = {gives("cache_iter obj1 " + facts.keyWord, "iter1")},
                       .failed = with(facts.exits.iteratorFailed, object)},
                      {.calls = {call("reset_cache_iter iter1 " + key)},
                       .failed = with(with(facts.exits.iteratorResetFailed, object), {keeps(1, 1, 0)})},
                      {.calls = {call("property iter1 0 01000000")}, .failed = with(facts.exits.propertyFailed, pair)},
                      {.calls = {allocation(16, "block1")}, .failed = with(facts.exits.allocationFailed, pair)}},
            .done = {leaves("scan", "1 obj1 iter1"), leaves("iterator", "obj1 iter1"), keeps(1, 1, 1),
                     returnsHandle()}};
    }

    // A fast scan is in progress: an ordinary iterator with its own object.
    Operation second(std::string name) {
        const std::string table = table_.facts.name;
        const Effects failed =
            with({line("release " + table + " obj2"), dfx(facts.releasedCounter)}, facts.ordinaryFailed);
        return {.name = std::move(name),
                .scene = scene([this] { begin(); }),
                .run = [this] { return table_.iterator = facts.scan(); },
                .steps = {{.calls = {gives("create " + table + " 5 0", "obj2")},
                           .failed = with(table_.facts.createFailed, facts.ordinaryFailed),
                           .done = table_.facts.created},
                          {.calls = {gives("root_iter obj2 key=" + facts.keyWord + ":" + facts.key, "iter2")},
                           .failed = failed},
                          {.calls = {call("property iter2 0 01000000")}, .failed = failed},
                          {.calls = {allocation(16, "block2")}, .failed = failed}},
                .done = {leaves("iterator", "obj2 iter2"), keeps(1, 1, 1), returnsHandle()}};
    }

    // There was a fast scan before: its pair is reset and used again.
    Operation third(std::string name) {
        const std::string table = table_.facts.name;
        return {.name = std::move(name),
                .scene = scene([this] {
                    begin();
                    facts.release(begun_);
                }),
                .run = [this] { return table_.iterator = facts.scan(); },
                .steps = {{.calls = {call("reset_cache " + table + " obj1")}, .failed = facts.exits.objectResetFailed},
                          {.calls = {call("reset_cache_iter iter1 key=" + facts.keyWord + ":" + facts.key)},
                           .failed = facts.exits.iteratorResetFailed},
                          {.calls = {call("property iter1 0 01000000")}, .failed = facts.exits.propertyFailed},
                          {.calls = {allocation(16, "block2")}, .failed = facts.exits.allocationFailed}},
                .done = {leaves("scan", "1 obj1 iter1"), leaves("iterator", "obj1 iter1"), keeps(0, 0, 1),
                         returnsHandle()}};
    }

    // The pair is kept; only the handle's block is freed.
    Operation releaseFirst(std::string name) {
        return {.name = std::move(name),
                .scene = scene([this] { begin(); }),
                .run = [this] { facts.release(begun_); },
                .steps = {},
                .done = with(facts.returned,
                             {line("free block1"), leaves("scan", "0 obj1 iter1"), keeps(0, 0, -1), returnsNothing()})};
    }

    // The ordinary iterator is released with its object; the first scan stays in progress.
    Operation releaseSecond(std::string name) {
        return {.name = std::move(name),
                .scene = scene([this] {
                    begin();
                    ordinary_ = facts.scan();
                    if (ordinary_ == nullptr) throw std::logic_error("no second scan for the scene");
                }),
                .run = [this] { facts.release(ordinary_); },
                .steps = {},
                .done = {line("release " + table_.facts.name + " obj2"), dfx(facts.releasedCounter),
                         line("free block2"), keeps(-1, -1, -1), returnsNothing()}};
    }

    // -- claims about sequences of calls; call startOver() first

    void expectOnePairServesEveryScan() {
        const uint64_t createdBefore = created();
        for (int i = 0; i < 100; ++i) {
            Mcast6DbRes* const scan = facts.scan();
            ASSERT_NE(nullptr, scan);
            EXPECT_EQ("1 obj1 iter1", handleText());
            EXPECT_EQ(facts.handle->object, scan->object);
            EXPECT_EQ(facts.handle->rootIter, scan->rootIter);
            facts.release(scan);
            EXPECT_EQ("0 obj1 iter1", handleText());
        }
        EXPECT_EQ(createdBefore, created());
        EXPECT_EQ(1u, platform().callsOf("db_create_" + table_.facts.name + "_cache_object"));
        EXPECT_EQ(100u, platform().callsOf("db_reset_" + table_.facts.name + "_cache_object"));
        EXPECT_EQ(1u, platform().callsOf("db_create_cache_root_iter"));
        EXPECT_EQ(100u, platform().callsOf("db_reset_cache_root_iter"));
        EXPECT_EQ(0u, platform().callsOf("db_create_root_iter"));
        EXPECT_EQ(1u, platform().liveObjects());
        EXPECT_EQ(1u, platform().liveIterators());
        EXPECT_EQ(0u, platform().liveBlocks());
        EXPECT_THAT(platform().misuses(), testing::IsEmpty());
    }

    void expectTheSecondOfTwoScansToBeOrdinaryAndTheThirdToReuseThePair() {
        Mcast6DbRes* const firstScan = facts.scan();
        ASSERT_NE(nullptr, firstScan);
        Mcast6DbRes* const secondScan = facts.scan();
        ASSERT_NE(nullptr, secondScan);
        EXPECT_EQ("obj1 iter1", textOf(*firstScan));
        EXPECT_EQ("obj2 iter2", textOf(*secondScan));
        EXPECT_EQ("1 obj1 iter1", handleText());
        facts.release(firstScan);
        EXPECT_EQ("0 obj1 iter1", handleText());
        Mcast6DbRes* const thirdScan = facts.scan();
        ASSERT_NE(nullptr, thirdScan);
        EXPECT_EQ("obj1 iter1", textOf(*thirdScan));
        EXPECT_EQ("1 obj1 iter1", handleText());
        // The end of the second scan does not free the pair.
        facts.release(secondScan);
        EXPECT_EQ("1 obj1 iter1", handleText());
        Mcast6DbRes* const fourthScan = facts.scan();
        ASSERT_NE(nullptr, fourthScan);
        EXPECT_EQ("obj3 iter3", textOf(*fourthScan));
        facts.release(thirdScan);
        facts.release(fourthScan);
        EXPECT_EQ("0 obj1 iter1", handleText());
        EXPECT_EQ(1u, platform().liveObjects());
        EXPECT_EQ(1u, platform().liveIterators());
        EXPECT_EQ(0u, platform().liveBlocks());
        EXPECT_THAT(platform().misuses(), testing::IsEmpty());
    }

    void expectAScanWithoutMemoryToLeaveThePairForTheNext() {
        platform().failAllocation(1);
        EXPECT_EQ(nullptr, facts.scan());
        EXPECT_EQ("0 obj1 iter1", handleText());
        Mcast6DbRes* const scan = facts.scan();
        ASSERT_NE(nullptr, scan);
        EXPECT_EQ("1 obj1 iter1", handleText());
        EXPECT_EQ(1u, platform().callsOf("db_create_" + table_.facts.name + "_cache_object"));
        facts.release(scan);
    }

    // The next scan starts again from the step that failed.
    void expectAFailedScanToBeRepeatable() {
        const std::string resetObject = "db_reset_" + table_.facts.name + "_cache_object";
        const std::string createObject = "db_create_" + table_.facts.name + "_cache_object";
        const std::pair<std::string, std::string> failures[] = {
            {createObject, "0 none none"},
            {resetObject, "0 none none"},
            {"db_create_cache_root_iter", "0 obj2 none"},  // obj1 leaked when its reset failed
            {"db_reset_cache_root_iter", "0 obj2 none"},
            {"db_set_root_iterator_property", "0 obj2 iter2"}};  // as did iter1
        for (const auto& [function, left] : failures) {
            platform().answer(function, 9);
            EXPECT_EQ(nullptr, facts.scan()) << function;
            EXPECT_EQ(left, handleText()) << function;
        }
        Mcast6DbRes* const scan = facts.scan();
        ASSERT_NE(nullptr, scan);
        EXPECT_EQ("1 obj2 iter2", handleText());
        facts.release(scan);
    }

    // A scan with another key, after the first has ended.
    void expectALaterScanToHaveItsOwnKey(const std::function<Mcast6DbRes*()>& laterScan, const std::string& key) {
        facts.release(facts.scan());
        platform().takeTrace();
        Mcast6DbRes* const scan = laterScan();
        ASSERT_NE(nullptr, scan);
        EXPECT_EQ(platform().trace(), (Trace{
                                          "reset_cache " + table_.facts.name + " obj1",
                                          "reset_cache_iter iter1 key=" + facts.keyWord + ":" + digits(key),
                                          "property iter1 0 01000000",
                                          "alloc 16 -> block2",
                                      }));
        facts.release(scan);
    }

    // Object 0 does not match a handle that holds an object.
    void expectNoObjectToBeReleasedWhileAScanIsOut(void (*releaseObject)(Mcast6DbHandle)) {
        Mcast6DbRes* const scan = facts.scan();
        ASSERT_NE(nullptr, scan);
        platform().takeTrace();
        releaseObject(0);
        EXPECT_EQ(1u, facts.handle->inUse);
        EXPECT_EQ(platform().trace(),
                  (Trace{"release " + table_.facts.name + " none", "dfx " + std::to_string(facts.releasedCounter)}));
        facts.release(scan);
    }

    std::string handleText() const {
        return std::to_string(facts.handle->inUse) + " " + nameOf(facts.handle->object) + " " +
               nameOf(facts.handle->rootIter);
    }

private:
    static recording::Recorder& platform() { return recording::Recorder::instance(); }
    static std::string textOf(const Mcast6DbRes& scan) { return nameOf(scan.object) + " " + nameOf(scan.rootIter); }

    uint64_t created() const { return platform().callsOf("db_create_" + table_.facts.name + "_obj"); }

    void begin() {
        begun_ = facts.scan();
        if (begun_ == nullptr) throw std::logic_error("no fast scan for the scene");
    }

    template <class Function>
    Scene scene(Function further) {
        Scene made = table_.plain();
        made.prepare = [prepare = made.prepare, further] {
            prepare();
            further();
        };
        made.watched.push_back({"scan", [this] { return handleText(); }});
        return made;
    }

    TableFamily<Record>& table_;
    Mcast6DbRes* begun_ = nullptr;
    Mcast6DbRes* ordinary_ = nullptr;
};

}  // namespace mcast6::tests
