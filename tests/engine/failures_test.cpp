// A store that fails: its answers and exceptions become codes, and a failed call changes nothing.
#include "tests/engine/test_tables.h"
#include "tests/store/faulty.h"

namespace mcast6::testing {
namespace {

using store::test::Fault;

store::test::FaultPlan faults;

const StoreKind kFaulty[] = {
    {"map", [] { return std::make_unique<store::test::FaultyStore>(std::make_unique<MapStore>(kTables), faults); }},
    {"memory", [] { return std::make_unique<store::test::FaultyStore>(store::makeMemoryStore(kTables), faults); }},
};

class Failures : public EngineTest {
protected:
    // Runs 'call' under every fault: it answers the fault's code, and 'expectUnchanged' holds after each.
    template <class Call, class Check>
    void underEveryFault(Call call, Check expectUnchanged) {
        const std::pair<Fault, uint32_t> expected[] = {
            {Fault::failed, MCAST6_DB_STORE_FAILED},
            {Fault::noMemory, MCAST6_DB_NO_MEMORY},
            {Fault::badAlloc, MCAST6_DB_NO_MEMORY},
            {Fault::exception, MCAST6_DB_STORE_FAILED},
        };
        for (const auto& [fault, code] : expected) {
            SCOPED_TRACE(static_cast<int>(fault));
            faults.arm(fault, 1, true);
            EXPECT_EQ(call(), code);
            faults.disarm();
            expectUnchanged();
        }
    }
    void TearDown() override { faults.disarm(); }

    // Removes route 1, changes route 2 and writes route 3, as a batch: 0, or what failed first.
    uint32_t runBatch() {
        uint32_t code = engine.begin();
        if (code != 0) return code;
        Route ignored;
        code = remove(0, 1);
        if (code == 0) code = read(0, 1, ignored) == 15005 ? 0 : MCAST6_DB_STORE_FAILED;
        if (code == 0) code = write(Route{.id = 2, .version = 4}) == 13044 ? 0 : MCAST6_DB_STORE_FAILED;
        if (code == 0) code = write(Route{.id = 3});
        if (code == 0) return engine.commit();
        EXPECT_EQ(engine.abort(), 0U);
        return code;
    }

    const Bytes key = join(0U, 1U);
    const KeyDesc byPort{kByPort};
    const Bytes port = join(uint16_t{4});
};

TEST_P(Failures, OfAWrite) {
    const Route route{.id = 1};
    const uint64_t writer = object(kWrite);
    EXPECT_EQ(engine.setAllFields(kRoute, writer, &route, sizeof route), 0U);
    underEveryFault([&] { return engine.write(writer); }, [&] { EXPECT_EQ(records(), 0U); });
    EXPECT_EQ(engine.write(writer), 0U) << "the object still holds the record";
}

TEST_P(Failures, OfAnUpdate) {
    EXPECT_EQ(write(Route{.id = 1, .version = 3}), 0U);
    const uint64_t updater = object(kUpdate);
    const uint32_t version = 4;
    EXPECT_EQ(engine.setField(kRoute, kVersion, updater, &version, 4), 0U);
    underEveryFault([&] { return engine.update(updater, &kRouteKey, key.data()); },
                    [&] {
                        Route stored;
                        EXPECT_EQ(read(0, 1, stored), 0U);
                        EXPECT_EQ(stored.version, 3U);
                    });
    EXPECT_EQ(engine.update(updater, &kRouteKey, key.data()), 0U);
}

TEST_P(Failures, OfARemoval) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t remover = object(kRemove);
    underEveryFault([&] { return engine.remove(remover, &kRouteKey, key.data()); }, [&] { EXPECT_EQ(records(), 1U); });
    EXPECT_EQ(engine.remove(remover, &kRouteKey, key.data()), 0U);
}

TEST_P(Failures, OfAKeyedRead) {
    EXPECT_EQ(write(Route{.id = 1, .version = 3}), 0U);
    const uint64_t reader = object(kRead);
    Route buffer{.id = 77};
    uint32_t version = 99;
    underEveryFault([&] { return engine.read(reader, &kRouteKey, key.data(), &buffer, sizeof buffer); },
                    [&] {
                        EXPECT_EQ(buffer.id, 77U);
                        EXPECT_EQ(engine.getField(kRoute, kVersion, reader, &version), MCAST6_DB_BAD_OPERATION);
                    });
    EXPECT_EQ(version, 99U);
}

TEST_P(Failures, OfACount) {
    const uint64_t counter = object(kCount);
    uint64_t count = 7;
    uint32_t* const count32 = reinterpret_cast<uint32_t*>(&count);
    underEveryFault([&] { return engine.count(counter, count32); }, [&] { EXPECT_EQ(count, 7U); });
    underEveryFault([&] { return engine.countByKey(counter, &byPort, port.data(), count32); },
                    [&] { EXPECT_EQ(count, 7U); });
}

TEST_P(Failures, OfTheMakingOfAnIterator) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t walker = object(kIterate);
    EXPECT_EQ(engine.createStatement(walker, 2, nullptr, 0), 0U);
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 3, 0, nullptr, 0, &kInVersionOrder, nullptr, 0), 0U);
    uint64_t rootIter = 7;
    const auto expectNone = [&] { EXPECT_EQ(rootIter, 7U); };
    underEveryFault([&] { return engine.createRootIter(walker, nullptr, nullptr, &rootIter); }, expectNone);
    underEveryFault([&] { return engine.createRootIter(walker, &byPort, port.data(), &rootIter); }, expectNone);
    underEveryFault([&] { return engine.createCacheRootIter(walker, &byPort, &rootIter); }, expectNone);
    underEveryFault([&] { return engine.createRootIterOfStatement(walker, &rootIter); }, expectNone);
    EXPECT_EQ(engine.iteratorSlots(), 0U);
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), 0U) << "the statement is still there";
    EXPECT_THAT(walk(walker, rootIter), ::testing::ElementsAre(1));
}

TEST_P(Failures, OfAStep) {
    for (uint32_t id = 1; id <= 3; ++id) EXPECT_EQ(write(Route{.id = id}), 0U);
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker), other = tableIter(walker);
    Route before, after;
    EXPECT_EQ(engine.next(other), 0U);
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &before, sizeof before), 0U);
    underEveryFault([&] { return engine.next(rootIter); },
                    [&] {
                        EXPECT_EQ(engine.read(walker, nullptr, nullptr, &after, sizeof after), 0U);
                        EXPECT_EQ(after, before);
                    });
    underEveryFault([&] { return engine.next(other); },
                    [&] {
                        EXPECT_EQ(engine.read(walker, nullptr, nullptr, &after, sizeof after), 0U);
                        EXPECT_EQ(after, before) << "a step that failed is none";
                    });
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.next(rootIter), 110012U);
}

TEST_P(Failures, OfReadingAtAPosition) {
    EXPECT_EQ(write(Route{.id = 1, .version = 3}), 0U);
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker);
    EXPECT_EQ(engine.next(rootIter), 0U);
    Route buffer{.id = 77};
    uint32_t version = 99;
    void* bytes = &buffer;
    uint32_t length = 99;
    underEveryFault([&] { return engine.read(walker, nullptr, nullptr, &buffer, sizeof buffer); },
                    [&] { EXPECT_EQ(buffer.id, 77U); });
    underEveryFault([&] { return engine.getField(kRoute, kVersion, walker, &version); },
                    [&] { EXPECT_EQ(version, 99U); });
    underEveryFault([&] { return engine.getFieldBytes(kRoute, kGroup, walker, &bytes, &length); },
                    [&] { EXPECT_EQ(length, 99U); });
    EXPECT_EQ(engine.getField(kRoute, kVersion, walker, &version), 0U);
    EXPECT_EQ(version, 3U);
}

TEST_P(Failures, OfTheResetOfACachedIterator) {
    EXPECT_EQ(write(Route{.id = 1, .port = 4}), 0U);
    const uint64_t walker = cacheObject(kIterate);
    uint64_t rootIter = 0;
    EXPECT_EQ(engine.createCacheRootIter(walker, &byPort, &rootIter), 0U);
    underEveryFault([&] { return engine.resetCacheRootIter(rootIter, port.data()); },
                    [&] { EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_OPERATION); });
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, port.data()), 0U);
    EXPECT_EQ(engine.next(rootIter), 0U);
}

TEST_P(Failures, OfTheBeginOfABatch) {
    underEveryFault([&] { return engine.begin(); }, [&] { EXPECT_EQ(engine.commit(), MCAST6_DB_NO_BATCH); });
    EXPECT_EQ(engine.begin(), 0U);
    EXPECT_EQ(engine.abort(), 0U);
}

// A batch that writes, changes and removes, with a fault at its first call of the store, at its second, and so on until
// none comes any more. Where a step fails the batch is aborted. What is stored is all of the batch, or nothing.
TEST_P(Failures, OfAnyStepOfABatch) {
    for (const Fault fault : {Fault::failed, Fault::noMemory, Fault::badAlloc, Fault::exception}) {
        uint64_t nth = 1;
        for (bool isOver = false; !isOver; ++nth) {
            SCOPED_TRACE(nth);
            write(Route{.id = 1, .version = 3});
            write(Route{.id = 2, .version = 3});
            remove(0, 3);
            faults.arm(fault, nth);
            const bool isDone = runBatch() == 0;
            isOver = faults.hitCount() == 0;
            faults.disarm();
            EXPECT_EQ(isDone, isOver);
            Route first{}, second{}, third{};
            EXPECT_EQ(read(0, 1, first), isDone ? 15005U : 0U);
            EXPECT_EQ(read(0, 2, second), 0U);
            EXPECT_EQ(second.version, isDone ? 4U : 3U);
            EXPECT_EQ(read(0, 3, third), isDone ? 0U : 15005U);
            EXPECT_EQ(records(), 2U);
            EXPECT_EQ(engine.commit(), MCAST6_DB_NO_BATCH) << "the batch is over";
        }
        EXPECT_EQ(nth, 8U) << "begin, four steps, commit, and once without a fault";
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, Failures, ::testing::ValuesIn(kFaulty), storeName);

}  // namespace
}  // namespace mcast6::testing
