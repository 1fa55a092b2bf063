// Root iterators, cached ones, and statements.
#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class Iterators : public EngineTest {
protected:
    void SetUp() override {
        for (uint32_t id = 1; id <= 4; ++id) {
            const uint16_t port = id % 2 == 0 ? 20 : 10;
            EXPECT_EQ(write(Route{.vr = 1, .id = id, .group = {static_cast<uint8_t>(id)}, .port = port}), 0U);
        }
    }
    uint64_t cachedIter(uint64_t owner, uint32_t word) {
        uint64_t made = 0;
        const KeyDesc desc{word};
        EXPECT_EQ(engine.createCacheRootIter(owner, &desc, &made), 0U);
        return made;
    }
    uint32_t condition(uint64_t owner, const char* name, uint32_t word, const void* value, uint32_t length) {
        return engine.appendCondition(owner, name, 3, 0, nullptr, 0, &word, value, length);
    }
    uint64_t sortedIter(uint64_t owner, const Bytes& value = {}) {
        uint64_t made = 0;
        EXPECT_EQ(engine.createStatement(owner, 2, nullptr, 0), 0U);
        const uint32_t length = static_cast<uint32_t>(value.size());
        EXPECT_EQ(condition(owner, kVersionOrder, kInVersionOrder, length != 0 ? value.data() : nullptr, length), 0U);
        EXPECT_EQ(engine.createRootIterOfStatement(owner, &made), 0U);
        return made;
    }
};

TEST_P(Iterators, WalkTheWholeTable) {
    const uint64_t walker = object(kIterate);
    EXPECT_THAT(walk(walker, tableIter(walker)), UnorderedElementsAre(1, 2, 3, 4));
}

TEST_P(Iterators, WalkTheMatchesOfAKey) {
    const uint64_t walker = object(kIterate);
    EXPECT_THAT(walk(walker, indexIter(walker, kByPort, join(uint16_t{10}))), UnorderedElementsAre(1, 3));
    EXPECT_THAT(walk(walker, indexIter(walker, kByPort, join(uint16_t{20}))), UnorderedElementsAre(2, 4));
    EXPECT_THAT(walk(walker, indexIter(walker, kByPort, join(uint16_t{30}))), IsEmpty());
}

TEST_P(Iterators, OfAPrimaryKeyGiveTheOneRecordOrNone) {
    const uint64_t walker = object(kIterate);
    EXPECT_THAT(walk(walker, indexIter(walker, kRouteKey.word, join(1U, 3U))), ElementsAre(3));
    EXPECT_THAT(walk(walker, indexIter(walker, kRouteKey.word, join(2U, 3U))), IsEmpty());
    EXPECT_EQ(write(Port{.id = 7, .value = 8}), 0U);
    const uint64_t ports = object(kIterate, kPortTable);  // a table without an index
    const uint64_t rootIter = indexIter(ports, kPortKey.word, join(7U));
    EXPECT_EQ(engine.next(rootIter), 0U);
    Port port;
    EXPECT_EQ(engine.read(ports, nullptr, nullptr, &port, sizeof port), 0U);
    EXPECT_EQ(port, (Port{7, 8}));
    EXPECT_EQ(engine.next(rootIter), 110012U);
}

TEST_P(Iterators, OfAPrimaryKeyFollowTheirRecord) {
    const uint64_t walker = object(kIterate);
    const uint64_t found = indexIter(walker, kRouteKey.word, join(1U, 3U));
    const uint64_t missed = indexIter(walker, kRouteKey.word, join(1U, 3U));
    EXPECT_EQ(engine.next(found), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 3, .port = 77}), 13044U);
    Route route;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
    EXPECT_EQ(route.port, 77U) << "as it is now";
    EXPECT_EQ(remove(1, 3), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 15005U);
    EXPECT_EQ(engine.next(missed), 110012U) << "gone before the step";
    EXPECT_EQ(write(Route{.vr = 1, .id = 3}), 0U);
    EXPECT_EQ(engine.next(missed), 110012U) << "the end stays";
    EXPECT_EQ(engine.next(found), 110012U);
}

TEST_P(Iterators, ACachedOneOfAPrimaryKeyTakesOneKeyAfterAnother) {
    const uint64_t walker = cacheObject(kIterate);
    const uint64_t rootIter = cachedIter(walker, kRouteKey.word);
    EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_OPERATION);
    for (const uint32_t id : {2U, 4U, 2U}) {
        EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(1U, id).data()), 0U);
        EXPECT_THAT(walk(walker, rootIter), ElementsAre(id));
    }
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(1U, 9U).data()), 0U);
    EXPECT_THAT(walk(walker, rootIter), IsEmpty());
}

TEST_P(Iterators, StayAtTheEnd) {
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = indexIter(walker, kByPort, join(uint16_t{10}));
    EXPECT_THAT(walk(walker, rootIter), UnorderedElementsAre(1, 3));
    EXPECT_EQ(engine.next(rootIter), 110012U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 9, .port = 10}), 0U);
    EXPECT_EQ(engine.next(rootIter), 110012U) << "a later record does not bring it back";
    Route route{.id = 77};
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 15005U);
    EXPECT_EQ(route.id, 77U);
}

TEST_P(Iterators, APositionWhoseRecordIsGoneAnswers15005AndGoesOn) {
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker);
    Route route;
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
    const uint32_t first = route.id;
    EXPECT_EQ(remove(1, first), 0U);
    route.id = 77;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 15005U);
    EXPECT_EQ(route.id, 77U) << "the buffer is untouched";
    EXPECT_EQ(walk(walker, rootIter).size(), 3U);
}

TEST_P(Iterators, APositionShowsTheRecordAsItIsNow) {
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = indexIter(walker, kByPort, join(uint16_t{10}));
    Route route;
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
    route.version = 99;
    EXPECT_EQ(write(route), 13044U);
    Route again;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &again, sizeof again), 0U);
    EXPECT_EQ(again, route);
}

TEST_P(Iterators, TheOneThatWasSteppedLastIsRead) {
    const uint64_t walker = object(kIterate);
    const uint64_t tens = indexIter(walker, kByPort, join(uint16_t{10}));
    const uint64_t twenties = indexIter(walker, kByPort, join(uint16_t{20}));
    Route route;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), MCAST6_DB_BAD_OPERATION) << "no step yet";
    EXPECT_EQ(engine.next(tens), 0U);
    EXPECT_EQ(engine.next(twenties), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
    EXPECT_EQ(route.port, 20U);
    EXPECT_EQ(engine.next(tens), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
    EXPECT_EQ(route.port, 10U);
    EXPECT_EQ(engine.next(tens), 110012U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 15005U) << "a step to the end is a step";
}

TEST_P(Iterators, AreOfTheTableOfTheirObject) {
    EXPECT_EQ(write(Port{.id = 7, .value = 8}), 0U);
    const uint64_t walker = object(kIterate, kPortTable);
    const uint64_t rootIter = tableIter(walker);
    EXPECT_EQ(engine.next(rootIter), 0U);
    Port port;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &port, sizeof port), 0U);
    EXPECT_EQ(port, (Port{7, 8}));
    EXPECT_EQ(engine.next(rootIter), 110012U);
}

TEST_P(Iterators, ArgumentsOfTheirMakingAreChecked) {
    const uint64_t walker = object(kIterate);
    const KeyDesc byPort{kByPort};
    const Bytes key(64, '\0');
    uint64_t rootIter = 7;
    EXPECT_EQ(engine.createRootIter(walker, nullptr, nullptr, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createRootIter(walker, &byPort, nullptr, &rootIter), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createRootIter(walker, nullptr, key.data(), &rootIter), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createCacheRootIter(walker, nullptr, &rootIter), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createCacheRootIter(walker, &byPort, nullptr), MCAST6_DB_BAD_ARGUMENT);
    for (const uint32_t word : {0U, kRouteKey.word + 1, kInVersionOrder, kByPort + 1, kByPort + 0x01000000}) {
        const KeyDesc desc{word};
        EXPECT_EQ(engine.createRootIter(walker, &desc, key.data(), &rootIter), MCAST6_DB_BAD_KEY) << word;
        EXPECT_EQ(engine.createCacheRootIter(walker, &desc, &rootIter), MCAST6_DB_BAD_KEY) << word;
    }
    EXPECT_EQ(rootIter, 7U);
}

TEST_P(Iterators, HaveOnePropertyWithOneValue) {
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker);
    const uint32_t one = 1, two = 2, none = 0;
    EXPECT_EQ(engine.setRootIterProperty(rootIter, 0, &one, 4), 0U);
    EXPECT_EQ(engine.setRootIterProperty(rootIter, 0, &two, 4), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.setRootIterProperty(rootIter, 0, &none, 4), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.setRootIterProperty(rootIter, 0, nullptr, 4), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.setRootIterProperty(rootIter, 1, &one, 4), MCAST6_DB_BAD_PROPERTY);
    EXPECT_EQ(engine.setRootIterProperty(rootIter, 0xFFFFFFFF, &one, 4), MCAST6_DB_BAD_PROPERTY);
    for (const uint32_t length : {0U, 1U, 8U}) {
        EXPECT_EQ(engine.setRootIterProperty(rootIter, 0, &one, length), MCAST6_DB_BAD_LENGTH);
    }
    EXPECT_EQ(walk(walker, rootIter).size(), 4U) << "the walk is as it was";
}

TEST_P(Iterators, ACachedOneWaitsForItsFirstKey) {
    const uint64_t walker = cacheObject(kIterate);
    const uint64_t rootIter = cachedIter(walker, kByPort);
    EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_OPERATION);
    Route route;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), MCAST6_DB_BAD_OPERATION);
}

TEST_P(Iterators, ACachedOneTakesOneKeyAfterAnother) {
    const uint64_t walker = cacheObject(kIterate);
    const uint64_t rootIter = cachedIter(walker, kByPort);
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(uint16_t{10}).data()), 0U);
    EXPECT_THAT(walk(walker, rootIter), UnorderedElementsAre(1, 3));
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(uint16_t{20}).data()), 0U);
    Route route;
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), MCAST6_DB_BAD_OPERATION) << "no step since";
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(uint16_t{20}).data()), 0U);
    EXPECT_THAT(walk(walker, rootIter), UnorderedElementsAre(2, 4)) << "from the first again";
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(uint16_t{99}).data()), 0U);
    EXPECT_THAT(walk(walker, rootIter), IsEmpty());
}

TEST_P(Iterators, OnlyACachedOneIsReset) {
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = indexIter(walker, kByPort, join(uint16_t{10}));
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, join(uint16_t{20}).data()), MCAST6_DB_BAD_OPERATION);
    EXPECT_THAT(walk(walker, rootIter), UnorderedElementsAre(1, 3));
}

TEST_P(Iterators, ReleasingTheObjectReleasesThem) {
    const uint64_t walker = cacheObject(kIterate);
    const uint64_t iterators[] = {tableIter(walker), indexIter(walker, kByPort, join(uint16_t{10})),
                                  cachedIter(walker, kByPort), sortedIter(walker)};
    engine.releaseObject(kRoute, walker);
    for (const uint64_t rootIter : iterators) {
        EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_HANDLE);
        EXPECT_EQ(engine.resetCacheRootIter(rootIter, "\0\0"), MCAST6_DB_BAD_HANDLE);
    }
}

TEST_P(Iterators, ReturnWhatStaysAndNothingTwiceWhileRecordsChange) {
    for (uint32_t id = 5; id <= 100; ++id) EXPECT_EQ(write(Route{.vr = 1, .id = id, .port = 10}), 0U);
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = indexIter(walker, kByPort, join(uint16_t{10}));
    std::vector<uint32_t> seen;
    uint32_t added = 200;
    while (engine.next(rootIter) == 0) {
        Route route;
        ASSERT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
        seen.push_back(route.id);
        if (route.id % 3 == 0) remove(1, route.id);  // the one under the iterator
        if (added < 220) {
            EXPECT_EQ(write(Route{.vr = 1, .id = added++, .port = 10}), 0U);
        }
        if (route.id % 7 == 0) write(Route{.vr = 1, .id = route.id, .port = 20});  // moves away, or comes back there
    }
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(std::adjacent_find(seen.begin(), seen.end()), seen.end());
    for (uint32_t id = 5; id <= 100; ++id) EXPECT_TRUE(std::binary_search(seen.begin(), seen.end(), id)) << id;
}

TEST_P(Iterators, AStatementWalksInTheOrderOfTheSortedKey) {
    const uint64_t walker = object(kIterate);
    const uint32_t versions[] = {300, 1, 256, 255};  // as bytes in memory they would come in another order
    for (uint32_t id = 1; id <= 4; ++id) write(Route{.vr = 1, .id = id, .version = versions[id - 1]});
    EXPECT_EQ(write(Route{.vr = 0x100, .id = 5, .version = 256}), 0U);
    EXPECT_THAT(walk(walker, sortedIter(walker)), ElementsAre(2, 4, 3, 5, 1));
}

TEST_P(Iterators, AStatementMayBeRestrictedToOneKey) {
    const uint64_t walker = object(kIterate);
    EXPECT_EQ(write(Route{.vr = 1, .id = 8, .version = 5}), 0U);
    EXPECT_EQ(write(Route{.vr = 2, .id = 9, .version = 5}), 0U);
    EXPECT_THAT(walk(walker, sortedIter(walker, join(5U, 1U))), ElementsAre(8));
    EXPECT_THAT(walk(walker, sortedIter(walker, join(0U, 1U))), UnorderedElementsAre(1, 2, 3, 4));
    EXPECT_THAT(walk(walker, sortedIter(walker, join(6U, 1U))), IsEmpty());
}

TEST_P(Iterators, AStatementIsCheckedStepByStep) {
    const uint64_t walker = object(kIterate);
    uint64_t rootIter = 7;
    const Bytes value = join(5U, 1U);
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), MCAST6_DB_BAD_OPERATION) << "no statement";
    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, nullptr, 0), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(engine.createStatement(walker, 1, nullptr, 0), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createStatement(walker, 2, &rootIter, 0), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createStatement(walker, 2, nullptr, 1), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createStatement(walker, 2, nullptr, 0), 0U);
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), MCAST6_DB_BAD_OPERATION) << "no condition";

    const uint32_t word = kInVersionOrder;
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 2, 0, nullptr, 0, &word, nullptr, 0),
              MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 3, 1, nullptr, 0, &word, nullptr, 0),
              MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 3, 0, &word, 0, &word, nullptr, 0), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 3, 0, nullptr, 1, &word, nullptr, 0),
              MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.appendCondition(walker, nullptr, 3, 0, nullptr, 0, &word, nullptr, 0), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 3, 0, nullptr, 0, nullptr, nullptr, 0),
              MCAST6_DB_BAD_ARGUMENT);

    EXPECT_EQ(condition(walker, "", kInVersionOrder, nullptr, 0), MCAST6_DB_BAD_KEY);
    EXPECT_EQ(condition(walker, "version_order", kInVersionOrder, nullptr, 0), MCAST6_DB_BAD_KEY);
    EXPECT_EQ(condition(walker, kVersionOrder, kByPort, nullptr, 0), MCAST6_DB_BAD_KEY) << "name and word must agree";
    EXPECT_EQ(condition(walker, "", kByPort, nullptr, 0), MCAST6_DB_BAD_KEY) << "a secondary key has no order";
    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, value.data(), 7), MCAST6_DB_BAD_LENGTH);
    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, value.data(), 0), MCAST6_DB_BAD_LENGTH);
    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, nullptr, 8), MCAST6_DB_BAD_LENGTH);
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), MCAST6_DB_BAD_OPERATION) << "still no condition";

    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, value.data(), 8), 0U);
    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, nullptr, 0), MCAST6_DB_BAD_OPERATION) << "one is all";
    EXPECT_EQ(engine.createRootIterOfStatement(walker, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(rootIter, 7U);
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), 0U);
    EXPECT_THAT(walk(walker, rootIter), IsEmpty());
}

TEST_P(Iterators, ANewStatementReplacesTheOneBefore) {
    const uint64_t walker = object(kIterate);
    const uint64_t old = sortedIter(walker, join(0U, 1U));
    EXPECT_EQ(engine.createStatement(walker, 2, nullptr, 0), 0U);
    uint64_t rootIter = 0;
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(walk(walker, old).size(), 4U) << "an iterator outlives its statement";
}

TEST_P(Iterators, ATableWithoutSortedKeysHasNoConditions) {
    const uint64_t walker = object(kIterate, kMfib);
    EXPECT_EQ(engine.createStatement(walker, 2, nullptr, 0), 0U);
    EXPECT_EQ(condition(walker, "", 0x02090004, nullptr, 0), MCAST6_DB_BAD_KEY);
    EXPECT_EQ(condition(walker, kVersionOrder, kInVersionOrder, nullptr, 0), MCAST6_DB_BAD_KEY);
}

INSTANTIATE_TEST_SUITE_P(Stores, Iterators, ::testing::ValuesIn(kStores), storeName);

}  // namespace
}  // namespace mcast6::testing
