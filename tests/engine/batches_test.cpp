// Batches through the engine, and what becomes of objects when a store is closed and another one opened.
#include <thread>

#include "mcast6_platform/platform.h"
#include "platform/schema/accessors.h"
#include "platform/schema/catalog.h"
#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class BatchesOfAnEngine : public EngineTest {};

TEST_P(BatchesOfAnEngine, AnswerAtOnceAndBecomeVisibleTogether) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 1, .port = 10}), 0U);
    EXPECT_EQ(engine.begin(), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 2, .port = 10}), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 2, .port = 20}), 13044U);
    EXPECT_EQ(write(Port{.id = 7, .value = 8}), 0U);
    EXPECT_EQ(remove(1, 1), 0U);
    EXPECT_EQ(remove(1, 1), 13044U);
    Route route;
    EXPECT_EQ(read(1, 1, route), 15005U);
    EXPECT_EQ(read(1, 2, route), 0U);
    EXPECT_EQ(route.port, 20U);

    const uint64_t walker = object(kIterate);
    EXPECT_THAT(walk(walker, tableIter(walker)), ElementsAre(1)) << "what is committed";
    EXPECT_THAT(walk(walker, indexIter(walker, kRouteKey.word, join(1U, 2U))), IsEmpty());
    EXPECT_EQ(records(), 1U);
    EXPECT_EQ(records(kByPort, join(uint16_t{20})), 0U);
    EXPECT_EQ(records(kRouteKey.word, join(1U, 2U)), 0U);

    EXPECT_EQ(engine.commit(), 0U);
    EXPECT_THAT(walk(walker, tableIter(walker)), ElementsAre(2));
    EXPECT_EQ(records(kByPort, join(uint16_t{20})), 1U);
    EXPECT_EQ(records(kPortTable), 1U);
}

TEST_P(BatchesOfAnEngine, DropWhatIsAborted) {
    EXPECT_EQ(engine.begin(), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 2}), 0U);
    EXPECT_EQ(engine.abort(), 0U);
    EXPECT_EQ(records(), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 2}), 0U) << "a single step again";
    EXPECT_EQ(records(), 1U);
}

TEST_P(BatchesOfAnEngine, DoNotNestAndDoNotEndTwice) {
    EXPECT_EQ(engine.commit(), MCAST6_DB_NO_BATCH);
    EXPECT_EQ(engine.abort(), MCAST6_DB_NO_BATCH);
    EXPECT_EQ(engine.begin(), 0U);
    EXPECT_EQ(engine.begin(), MCAST6_DB_BATCH_OPEN);
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    EXPECT_EQ(engine.commit(), 0U);
    EXPECT_EQ(engine.commit(), MCAST6_DB_NO_BATCH);
    EXPECT_EQ(records(), 1U);
}

TEST_P(BatchesOfAnEngine, BelongToTheirThread) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 1, .version = 3}), 0U);
    EXPECT_EQ(engine.begin(), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 1, .version = 4}), 13044U);
    std::thread([this] {
        Route route;
        EXPECT_EQ(read(1, 1, route), 0U);
        EXPECT_EQ(route.version, 3U);
        EXPECT_EQ(engine.commit(), MCAST6_DB_NO_BATCH);
    }).join();
    std::thread writer([this] { EXPECT_EQ(write(Route{.vr = 1, .id = 2}), 13044U) << "waits for the batch"; });
    EXPECT_EQ(write(Route{.vr = 1, .id = 2}), 0U);
    EXPECT_EQ(engine.commit(), 0U);
    writer.join();
    Route route;
    EXPECT_EQ(read(1, 1, route), 0U);
    EXPECT_EQ(route.version, 4U);
}

TEST_P(BatchesOfAnEngine, SurviveARefusedStep) {
    EXPECT_EQ(engine.begin(), 0U);
    for (uint32_t id = 0; id < 3; ++id) EXPECT_EQ(write(Port{.id = id}), 0U);
    EXPECT_EQ(write(Port{.id = 3}), 110024U);
    EXPECT_EQ(write(Port{.id = 1}), 13044U);
    EXPECT_EQ(engine.commit(), 0U);
    EXPECT_EQ(records(kPortTable), 3U);
}

TEST_P(BatchesOfAnEngine, EndWithTheStore) {
    EXPECT_EQ(engine.begin(), 0U);
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    engine.detach();
    engine.attach(GetParam().make());
    EXPECT_EQ(engine.commit(), MCAST6_DB_NO_BATCH);
    EXPECT_EQ(records(), 0U);
}

TEST_P(BatchesOfAnEngine, OneObjectServesTheNextStoreIfItIsCached) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 1, .port = 10}), 0U);
    const uint64_t reader = cacheObject(kRead), walker = cacheObject(kIterate), plain = object(kIterate);
    const KeyDesc byPort{kByPort};
    uint64_t cached = 0, byKey = 0;
    EXPECT_EQ(engine.createCacheRootIter(walker, &byPort, &cached), 0U);
    EXPECT_EQ(engine.createCacheRootIter(walker, &kRouteKey, &byKey), 0U);
    const uint64_t uncached = tableIter(walker);
    EXPECT_EQ(engine.resetCacheRootIter(cached, join(uint16_t{10}).data()), 0U);
    EXPECT_EQ(engine.next(cached), 0U);

    engine.detach();
    engine.attach(GetParam().make());
    Route route;
    EXPECT_EQ(engine.next(cached), MCAST6_DB_BAD_OPERATION) << "it needs a key";
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(engine.next(uncached), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(engine.resetObject(kRoute, plain, kIterate), MCAST6_DB_BAD_HANDLE);

    EXPECT_EQ(write(Route{.vr = 1, .id = 5, .port = 10}), 0U);
    EXPECT_EQ(engine.resetCacheObject(kRoute, reader), 0U);
    EXPECT_EQ(engine.read(reader, &kRouteKey, join(1U, 5U).data(), &route, sizeof route), 0U);
    EXPECT_EQ(route.port, 10U);
    EXPECT_EQ(engine.resetCacheObject(kRoute, walker), 0U);
    EXPECT_EQ(engine.resetCacheRootIter(cached, join(uint16_t{10}).data()), 0U);
    EXPECT_THAT(walk(walker, cached), ElementsAre(5));
    EXPECT_EQ(engine.resetCacheRootIter(byKey, join(1U, 5U).data()), 0U);
    EXPECT_THAT(walk(walker, byKey), ElementsAre(5));
}

INSTANTIATE_TEST_SUITE_P(Stores, BatchesOfAnEngine, ::testing::ValuesIn(kStores), storeName);

// Through the C entries.
class BatchEntries : public ::testing::Test {
protected:
    void SetUp() override { mcast6_platform_close(); }
    void TearDown() override { mcast6_platform_close(); }

    uint32_t write(uint32_t first) const {
        uint64_t writer = 0;
        EXPECT_EQ(accessors::createObject(table, kWrite, 0, &writer), 0U);
        std::vector<uint32_t> row(schema::catalog()[table].recordSize / sizeof(uint32_t));
        row[0] = first;
        EXPECT_EQ(accessors::setAllFields(table, writer, row.data(), schema::catalog()[table].recordSize), 0U);
        const uint32_t code = db_write_obj(writer);
        accessors::releaseObject(table, writer);
        return code;
    }
    uint64_t count() const {
        uint64_t counter = 0, records = UINT64_MAX;
        EXPECT_EQ(accessors::createObject(table, kCount, 0, &counter), 0U);
        EXPECT_EQ(db_get_table_record_count(counter, reinterpret_cast<uint32_t*>(&records)), 0U);
        accessors::releaseObject(table, counter);
        return records;
    }

    const uint32_t table = schema::tableNamed("l3mc6_mfib").value();
};

TEST_F(BatchEntries, TellWhatWentWrong) {
    EXPECT_EQ(mcast6_platform_commit(), MCAST6_DB_NO_BATCH);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("no batch open"));
    EXPECT_EQ(mcast6_platform_begin(), 0U) << "opens a store by itself";
    EXPECT_EQ(mcast6_platform_begin(), MCAST6_DB_BATCH_OPEN);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("has a batch open"));
    EXPECT_EQ(mcast6_platform_abort(), 0U);
    EXPECT_EQ(mcast6_platform_abort(), MCAST6_DB_NO_BATCH);
    uint64_t made = 0;
    EXPECT_EQ(accessors::createObject(table, 77, 0, &made), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("argument"));
}

TEST_F(BatchEntries, AreBoundedByAnOptionOfTheUri) {
    EXPECT_EQ(mcast6_platform_open("memory:?batch=2"), 0U);
    EXPECT_EQ(mcast6_platform_begin(), 0U);
    EXPECT_EQ(write(1), 0U);
    EXPECT_EQ(write(2), 0U);
    EXPECT_EQ(write(3), MCAST6_DB_BATCH_TOO_LARGE);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("more records than the store allows"));
    EXPECT_EQ(write(2), 13044U);
    EXPECT_EQ(mcast6_platform_commit(), 0U);
    EXPECT_EQ(count(), 2U);
}

TEST_F(BatchEntries, TellABatchWhoseStoreWasClosed) {
    EXPECT_EQ(mcast6_platform_begin(), 0U);
    EXPECT_EQ(write(1), 0U);
    mcast6_platform_close();
    EXPECT_EQ(mcast6_platform_commit(), MCAST6_DB_BATCH_GONE);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("closed while the batch was open"));
    EXPECT_EQ(mcast6_platform_commit(), MCAST6_DB_NO_BATCH) << "told once";
    EXPECT_EQ(mcast6_platform_begin(), 0U);
    mcast6_platform_close();
    EXPECT_EQ(mcast6_platform_open("memory:"), 0U);
    EXPECT_EQ(mcast6_platform_abort(), MCAST6_DB_BATCH_GONE);
    EXPECT_EQ(count(), 0U);
}

TEST_F(BatchEntries, AThreadThatEndsAbortsItsBatch) {
    EXPECT_EQ(count(), 0U);
    std::thread([this] {
        EXPECT_EQ(mcast6_platform_begin(), 0U);
        EXPECT_EQ(write(1), 0U);
    }).join();
    EXPECT_EQ(write(1), 0U) << "and lets others write";
    EXPECT_EQ(count(), 1U);
}

TEST_F(BatchEntries, AStoreModuleIsLoadedAndGivesItsReasons) {
    ASSERT_EQ(setenv("MCAST6_STORE_DIR", MCAST6_MODULES, 1), 0);
    EXPECT_NE(mcast6_platform_open("faulty:?fault=nothing"), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("'nothing' is none of"));
    EXPECT_NE(mcast6_platform_open("faulty:?bad=1"), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("unknown option 'bad'; faulty: takes fault, nth, lasting"));
    ASSERT_EQ(mcast6_platform_open("faulty:?fault=failed&nth=2"), 0U) << mcast6_platform_error();
    EXPECT_EQ(write(1), 0U);
    EXPECT_EQ(write(2), MCAST6_DB_STORE_FAILED);
    EXPECT_STREQ(mcast6_platform_error(), "the store failed: a fault was asked for");
    EXPECT_EQ(write(3), 0U);
    EXPECT_EQ(mcast6_platform_begin(), 0U);
    EXPECT_EQ(write(4), 0U);
    EXPECT_EQ(mcast6_platform_commit(), 0U);
    EXPECT_EQ(count(), 3U);
    mcast6_platform_close();
    ASSERT_EQ(setenv("MCAST6_STORE_DIR", "/nowhere", 1), 0);
    EXPECT_NE(mcast6_platform_open("absent:"), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("/nowhere/mcast6_store_absent.so"));
    ASSERT_EQ(unsetenv("MCAST6_STORE_DIR"), 0);
}

}  // namespace
}  // namespace mcast6::testing
