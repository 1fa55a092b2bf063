// Handles: stale, foreign, invented and double-released ones, and the reuse of their slots.
#include <malloc.h>

#include <random>
#include <set>

#include "platform/engine/handle_table.h"
#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

class Handles : public EngineTest {
protected:
    // Every call that takes an object handle answers 'handle' with MCAST6_DB_BAD_HANDLE.
    void expectNoObject(uint64_t handle) { expectNoObject(engine, handle); }
    static void expectNoObject(engine::Engine& engine, uint64_t handle) {
        SCOPED_TRACE(handle);
        const Route route{.id = 1};
        const KeyDesc byPort{kByPort};
        uint64_t out = 7;
        uint32_t* const count = reinterpret_cast<uint32_t*>(&out);
        Route buffer{.id = 77};
        void* bytes = &out;
        const uint32_t word = kInVersionOrder;
        EXPECT_EQ(engine.resetObject(kRoute, handle, kWrite), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.resetCacheObject(kRoute, handle), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.setAllFields(kRoute, handle, &route, sizeof route), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.setField(kRoute, kId, handle, &route, 4), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.getField(kRoute, kId, handle, &out), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.getFieldBytes(kRoute, kGroup, handle, &bytes, count), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.write(handle), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.update(handle, &kRouteKey, &route), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.remove(handle, &kRouteKey, &route), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.read(handle, &kRouteKey, &route, &buffer, sizeof buffer), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.read(handle, nullptr, nullptr, &buffer, sizeof buffer), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.count(handle, count), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.countByKey(handle, &byPort, &route, count), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.createRootIter(handle, nullptr, nullptr, &out), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.createCacheRootIter(handle, &byPort, &out), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.createStatement(handle, 2, nullptr, 0), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.appendCondition(handle, kVersionOrder, 3, 0, nullptr, 0, &word, nullptr, 0),
                  MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.createRootIterOfStatement(handle, &out), MCAST6_DB_BAD_HANDLE);
        engine.releaseObject(kRoute, handle);
        EXPECT_EQ(out, 7U);
        EXPECT_EQ(buffer.id, 77U);
        EXPECT_EQ(bytes, &out);
    }
    void expectNoIterator(uint64_t handle) {
        SCOPED_TRACE(handle);
        const uint32_t one = 1;
        EXPECT_EQ(engine.next(handle), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.setRootIterProperty(handle, 0, &one, 4), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.resetCacheRootIter(handle, &one), MCAST6_DB_BAD_HANDLE);
    }
};

TEST_P(Handles, ZeroNamesNothing) {
    expectNoObject(0);
    expectNoIterator(0);
}

TEST_P(Handles, AReleasedObjectIsStaleAlsoWhenItsSlotIsUsedAgain) {
    const uint64_t old = object(kWrite);
    engine.releaseObject(kRoute, old);
    expectNoObject(old);
    const uint64_t again = object(kWrite);
    EXPECT_NE(again, old);
    expectNoObject(old);
    const Route route{.id = 1};
    EXPECT_EQ(engine.setAllFields(kRoute, again, &route, sizeof route), 0U) << "and the new one is unharmed";
    EXPECT_EQ(engine.write(again), 0U);
}

TEST_P(Handles, ASecondReleaseDoesNothing) {
    const uint64_t old = object(kWrite);
    engine.releaseObject(kRoute, old);
    engine.releaseObject(kRoute, old);
    const uint64_t first = object(kWrite), second = object(kWrite);
    EXPECT_NE(first, second) << "the slot is not given out twice";
    engine.releaseObject(kRoute, old);
    const Route route{.id = 1};
    EXPECT_EQ(engine.setAllFields(kRoute, first, &route, sizeof route), 0U);
    EXPECT_EQ(engine.setAllFields(kRoute, second, &route, sizeof route), 0U);
}

TEST_P(Handles, AnIteratorIsNoObjectAndTheOtherWayRound) {
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker);
    EXPECT_NE(walker, rootIter);
    expectNoObject(rootIter);
    expectNoIterator(walker);
    EXPECT_EQ(engine.next(rootIter), MCAST6_DB_END_OF_ITERATION) << "the release of it as an object did nothing";
}

TEST_P(Handles, AnObjectOfAnotherTableIsForeign) {
    const uint64_t port = object(kWrite, kPortTable);
    const Port record{.id = 1, .value = 2};
    EXPECT_EQ(engine.setAllFields(kPortTable, port, &record, sizeof record), 0U);
    const Route route;
    uint32_t value = 0;
    EXPECT_EQ(engine.setAllFields(kRoute, port, &route, sizeof route), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(engine.setField(kRoute, kId, port, &route, 4), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(engine.getField(kRoute, kId, port, &value), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(engine.resetObject(kRoute, port, kRead), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(engine.resetCacheObject(kRoute, port), MCAST6_DB_BAD_HANDLE);
    engine.releaseObject(kRoute, port);
    engine.releaseObject(kNoSuchTable, port);
    EXPECT_EQ(engine.write(port), 0U) << "nothing of that changed it";
}

TEST_P(Handles, AnotherEngineDoesNotKnowThem) {
    engine::Engine other(GetParam().make(), kTables);
    uint64_t theirs = 0;
    EXPECT_EQ(other.createObject(kRoute, kIterate, 0, &theirs), 0U);
    const uint64_t ours = object(kIterate);
    EXPECT_NE(ours, theirs);
    expectNoObject(theirs);
    expectNoObject(other, ours);
    uint64_t rootIter = 0;
    EXPECT_EQ(other.createRootIter(theirs, nullptr, nullptr, &rootIter), 0U);
    expectNoIterator(rootIter);
    EXPECT_EQ(other.next(rootIter), MCAST6_DB_END_OF_ITERATION);
}

TEST_P(Handles, InventedOnesAreRefused) {
    const uint64_t real = object(kWrite);
    for (unsigned bit = 0; bit < 64; ++bit) expectNoObject(real ^ uint64_t{1} << bit);
    expectNoObject(~uint64_t{0});
    expectNoIterator(~uint64_t{0});
    std::mt19937_64 random(20240611);
    for (int i = 0; i < 100000; ++i) {
        const uint64_t invented = random();
        if (invented == real) continue;
        ASSERT_EQ(engine.write(invented), MCAST6_DB_BAD_HANDLE);
        ASSERT_EQ(engine.next(invented), MCAST6_DB_BAD_HANDLE);
        engine.releaseObject(kRoute, invented);
    }
    // With the real kind and nonce, so that slot and generation alone decide.
    for (uint64_t low = 0; low < 1 << 20; ++low) {
        const uint64_t invented = (real >> 50 << 50) | (random() >> 14);
        if (invented == real) continue;
        ASSERT_EQ(engine.write(invented), MCAST6_DB_BAD_HANDLE);
    }
    const Route route{.id = 1};
    EXPECT_EQ(engine.setAllFields(kRoute, real, &route, sizeof route), 0U);
    EXPECT_EQ(engine.write(real), 0U);
}

TEST_P(Handles, AMillionObjectsComeAndGoWithoutGrowth) {
    const uint64_t warm = object(kIterate);
    tableIter(warm);
    engine.releaseObject(kRoute, warm);
    const uint64_t objectSlots = engine.objectSlots(), iteratorSlots = engine.iteratorSlots();
    const size_t heap = mallinfo2().uordblks;
    uint64_t last = 0;
    for (int i = 0; i < 1000000; ++i) {
        uint64_t made = 0;
        ASSERT_EQ(engine.createObject(kRoute, kIterate, 0, &made), 0U);
        ASSERT_NE(made, last);
        if (i % 16 == 0) tableIter(made);
        engine.releaseObject(kRoute, made);
        last = made;
    }
    EXPECT_EQ(engine.objectSlots(), objectSlots);
    EXPECT_EQ(engine.iteratorSlots(), iteratorSlots);
    EXPECT_LE(mallinfo2().uordblks, heap + 4096) << "the heap holds what it held";
}

TEST_P(Handles, ManyAtOnceAreAllDifferentAndAllWork) {
    std::set<uint64_t> handles;
    for (int i = 0; i < 5000; ++i) handles.insert(object(kCount));
    EXPECT_EQ(handles.size(), 5000U);
    for (const uint64_t made : handles) {
        uint64_t count = 9;
        ASSERT_EQ(engine.count(made, reinterpret_cast<uint32_t*>(&count)), 0U);
        ASSERT_EQ(count, 0U);
        engine.releaseObject(kRoute, made);
    }
    const uint64_t slots = engine.objectSlots();
    EXPECT_LT(slots, 3 * 5000U);
    for (int i = 0; i < 5000; ++i) object(kCount);
    EXPECT_EQ(engine.objectSlots(), slots) << "released slots are used first";
}

INSTANTIATE_TEST_SUITE_P(Stores, Handles, ::testing::ValuesIn(kStores), storeName);

struct Value : engine::HandleSlot {};

TEST(HandleTable, RetiresASlotWhoseGenerationsAreUsedUp) {
    engine::HandleTable<Value> table(engine::HandleKind::object, 1);
    Value* value = table.claim();
    ASSERT_NE(value, nullptr);
    value->generation = engine::kLastGeneration;
    const uint64_t last = table.publish(*value);
    EXPECT_EQ(table.find(last), value);
    EXPECT_EQ(table.withdraw(last), value);
    table.recycle(*value);
    for (uint64_t i = 0; i < 3 * table.slots(); ++i) ASSERT_NE(table.claim(), value);
}

TEST(HandleTable, GivesOutEverySlotOfEveryChunkOnce) {
    engine::HandleTable<Value> table(engine::HandleKind::iterator, 5);
    std::set<const Value*> values;
    std::set<uint64_t> handles;
    for (uint32_t i = 0; i < 64 * 15; ++i) {
        Value* value = table.claim();
        ASSERT_NE(value, nullptr);
        const uint64_t handle = table.publish(*value);
        ASSERT_TRUE(values.insert(value).second);
        ASSERT_TRUE(handles.insert(handle).second);
        ASSERT_EQ(table.find(handle), value);
    }
    EXPECT_EQ(table.slots(), 64U * 15);
}

TEST(HandleTable, SaysSoWhenAllSlotsAreTaken) {
    engine::HandleTable<Value, 3> table(engine::HandleKind::object, 1);
    constexpr uint64_t kAllSlots = 64 + 128 + 256;
    Value* last = nullptr;
    uint64_t claimed = 0;
    for (Value* value = table.claim(); value != nullptr; value = table.claim()) {
        last = value;
        ASSERT_LE(++claimed, kAllSlots);
    }
    EXPECT_EQ(claimed, kAllSlots);
    EXPECT_EQ(table.find(table.publish(*last)), last);
    EXPECT_EQ(table.withdraw(last->handle), last);
    table.recycle(*last);
    EXPECT_EQ(table.claim(), last);
}

}  // namespace
}  // namespace mcast6::testing
