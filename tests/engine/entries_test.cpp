// The C entries: opening, closing, bad URIs, the store that opens by itself. The entries are a part of the shared
// library, not of the engine that the tests link, so they are compiled in here.
#include "platform/engine/entries.cpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/schema/catalog.h"

namespace mcast6::testing {
namespace {

using ::testing::HasSubstr;

constexpr uint32_t kWriteType = 0, kReadType = 3, kIterateType = 5, kCountType = 9;

class Entries : public ::testing::Test {
protected:
    void SetUp() override { mcast6_platform_close(); }
    void TearDown() override { mcast6_platform_close(); }

    uint64_t object(uint32_t objType) {
        uint64_t made = 0;
        EXPECT_EQ(accessors::createObject(table, objType, 0, &made), 0U);
        return made;
    }
    uint64_t count() {
        const uint64_t counter = object(kCountType);
        uint64_t records = 0;
        EXPECT_EQ(db_get_table_record_count(counter, reinterpret_cast<uint32_t*>(&records)), 0U);
        accessors::releaseObject(table, counter);
        return records;
    }
    uint32_t writeZeros() {
        const uint64_t writer = object(kWriteType);
        const std::vector<char> row(schema::catalog()[table].recordSize);
        EXPECT_EQ(accessors::setAllFields(table, writer, row.data(), static_cast<uint32_t>(row.size())), 0U);
        const uint32_t code = db_write_obj(writer);
        accessors::releaseObject(table, writer);
        return code;
    }

    const uint32_t table = schema::tableNamed("l3mc6_mfib").value();
};

TEST_F(Entries, AStoreOpensWithTheFirstObject) {
    EXPECT_EQ(mcast6_platform_memory(), 0U);
    EXPECT_EQ(engine::openEngine(), nullptr);
    EXPECT_EQ(writeZeros(), 0U);
    EXPECT_NE(engine::openEngine(), nullptr);
    EXPECT_EQ(count(), 1U);
    EXPECT_GT(mcast6_platform_memory(), 0U);
}

TEST_F(Entries, WithoutAStoreNoHandleIsValid) {
    uint64_t out = 7;
    uint32_t* const count32 = reinterpret_cast<uint32_t*>(&out);
    const uint32_t desc[4] = {schema::catalog()[table].primary.word};
    const char key[64] = {};
    char row[256];
    void* bytes = nullptr;
    for (const uint64_t handle : {uint64_t{0}, uint64_t{1} << 62, ~uint64_t{0}}) {
        const uint32_t codes[] = {
            db_write_obj(handle),
            db_update_obj(handle, desc, key),
            db_remove_obj(handle, desc, key),
            db_read_obj_with_buf(handle, desc, key, row, 208),
            db_create_root_iter(handle, nullptr, nullptr, &out),
            db_set_root_iterator_property(handle, 0, desc, 4),
            db_root_iterator_next(handle),
            db_get_table_record_count(handle, count32),
            db_get_table_record_count_by_key(handle, desc, key, count32),
            db_create_stmt(handle, 2, nullptr, 0),
            db_append_stmt_condition(handle, "key", 3, 0, nullptr, 0, desc, nullptr, 0),
            db_create_root_iterator_by_filter(handle, &out),
            db_create_cache_root_iter(handle, desc, &out),
            db_reset_cache_root_iter(handle, key),
            accessors::resetObject(table, handle, kReadType),
            accessors::resetCacheObject(table, handle),
            accessors::setAllFields(table, handle, row, 208),
            accessors::setField(table, 0, handle, key, 4),
            accessors::getField(table, 0, handle, row),
            accessors::getFieldBytes(table, 2, handle, &bytes, count32),
        };
        EXPECT_THAT(codes, ::testing::Each(uint32_t{MCAST6_DB_BAD_HANDLE}));
        accessors::releaseObject(table, handle);
    }
    EXPECT_EQ(out, 7U);
    EXPECT_EQ(engine::openEngine(), nullptr) << "and none is opened for them";
}

TEST_F(Entries, EveryEntryReachesTheEngine) {
    EXPECT_EQ(writeZeros(), 0U);
    const schema::Table& mfib = schema::catalog()[table];
    const uint32_t primary[4] = {mfib.primary.word}, byInterface[4] = {0x02090004};
    const char key[64] = {};
    char row[256];
    uint64_t rootIter = 0, records = 0;
    uint32_t* const count32 = reinterpret_cast<uint32_t*>(&records);
    const uint32_t one = 1, version = 12;
    uint32_t value = 0, length = 0;
    void* bytes = nullptr;
    uint32_t smoothVersion = 0;
    while (mfib.fields[smoothVersion].name != "smoothVersion") ++smoothVersion;

    const uint64_t updater = object(1);
    EXPECT_EQ(accessors::setField(table, smoothVersion, updater, &version, 4), 0U);
    EXPECT_EQ(db_update_obj(updater, primary, key), 0U);
    EXPECT_EQ(accessors::resetObject(table, updater, kReadType), 0U);
    EXPECT_EQ(db_read_obj_with_buf(updater, primary, key, row, mfib.recordSize), 0U);
    EXPECT_EQ(accessors::getField(table, smoothVersion, updater, &value), 0U);
    EXPECT_EQ(value, version);

    uint64_t walker = 0;
    EXPECT_EQ(accessors::createCacheObject(table, kIterateType, 0, &walker), 0U);
    EXPECT_EQ(accessors::resetCacheObject(table, walker), 0U);
    EXPECT_EQ(db_create_root_iter(walker, byInterface, key, &rootIter), 0U);
    EXPECT_EQ(db_set_root_iterator_property(rootIter, 0, &one, 4), 0U);
    EXPECT_EQ(db_root_iterator_next(rootIter), 0U);
    EXPECT_EQ(accessors::getFieldBytes(table, 2, walker, &bytes, &length), 0U);
    EXPECT_EQ(length, 16U);
    EXPECT_EQ(db_root_iterator_next(rootIter), 110012U);
    EXPECT_EQ(db_create_cache_root_iter(walker, byInterface, &rootIter), 0U);
    EXPECT_EQ(db_reset_cache_root_iter(rootIter, key), 0U);
    EXPECT_EQ(db_root_iterator_next(rootIter), 0U);
    EXPECT_EQ(db_create_stmt(walker, 2, nullptr, 0), 0U);
    EXPECT_EQ(db_append_stmt_condition(walker, "", 3, 0, nullptr, 0, &one, nullptr, 0), MCAST6_DB_BAD_KEY);
    EXPECT_EQ(db_create_root_iterator_by_filter(walker, &rootIter), MCAST6_DB_BAD_OPERATION);

    const uint64_t counter = object(kCountType);
    EXPECT_EQ(db_get_table_record_count_by_key(counter, byInterface, key, count32), 0U);
    EXPECT_EQ(records, 1U);
    const uint64_t remover = object(4);
    EXPECT_EQ(db_remove_obj(remover, primary, key), 0U);
    EXPECT_EQ(count(), 0U);
}

TEST_F(Entries, MemoryOpensByName) {
    EXPECT_EQ(mcast6_platform_open("memory:"), 0U);
    EXPECT_EQ(writeZeros(), 0U);
}

TEST_F(Entries, AStoreIsOpenedOnce) {
    EXPECT_EQ(mcast6_platform_open("memory:"), 0U);
    EXPECT_EQ(writeZeros(), 0U);
    EXPECT_NE(mcast6_platform_open("memory:"), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("'memory:' is open already"));
    EXPECT_EQ(count(), 1U) << "the open one is unharmed";
}

TEST_F(Entries, AStoreThatOpenedByItselfCountsAsOpen) {
    EXPECT_EQ(count(), 0U);
    EXPECT_NE(mcast6_platform_open("memory:"), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("'memory:' is open already"));
}

TEST_F(Entries, ABadUriIsNamedTogetherWithTheKnownKinds) {
    const std::string bad[] = {"",          "memory",        ":",       "mem:", "Memory:", "memory:x",
                               "memory://", "oracle:/tmp/x", " memory:"};
    for (const std::string& uri : bad) {
        EXPECT_NE(mcast6_platform_open(uri.c_str()), 0U) << uri;
        EXPECT_THAT(mcast6_platform_error(), HasSubstr("'" + uri + "'"));
        EXPECT_THAT(mcast6_platform_error(), HasSubstr("memory:"));
        EXPECT_EQ(engine::openEngine(), nullptr) << uri;
    }
    EXPECT_NE(mcast6_platform_open(nullptr), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("null"));
    EXPECT_EQ(mcast6_platform_open("memory:"), 0U) << "a failure is in the way of nothing";
}

TEST_F(Entries, ALongUriStillGivesAText) {
    const std::string uri(5000, 'x');
    EXPECT_NE(mcast6_platform_open(uri.c_str()), 0U);
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("xxxxxxxx"));
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("memory:"));
}

TEST_F(Entries, AnErrorTextBelongsToItsThread) {
    EXPECT_NE(mcast6_platform_open("nonsense"), 0U);
    std::thread([] { EXPECT_STREQ(mcast6_platform_error(), ""); }).join();
    EXPECT_THAT(mcast6_platform_error(), HasSubstr("nonsense"));
}

TEST_F(Entries, ClosingDropsRecordsAndMakesHandlesStale) {
    EXPECT_EQ(writeZeros(), 0U);
    const uint64_t reader = object(kReadType), walker = object(kIterateType);
    uint64_t rootIter = 0;
    EXPECT_EQ(db_create_root_iter(walker, nullptr, nullptr, &rootIter), 0U);
    mcast6_platform_close();
    mcast6_platform_close();
    EXPECT_EQ(mcast6_platform_memory(), 0U);
    EXPECT_EQ(db_root_iterator_next(rootIter), MCAST6_DB_BAD_HANDLE);

    EXPECT_EQ(count(), 0U) << "a new, empty store";
    char row[256];
    const char key[64] = {};
    const uint32_t desc[4] = {schema::catalog()[table].primary.word};
    const uint64_t again = object(kReadType), walkerAgain = object(kIterateType);
    EXPECT_NE(again, reader);
    EXPECT_NE(walkerAgain, walker);
    EXPECT_EQ(db_read_obj_with_buf(reader, desc, key, row, 208), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(db_root_iterator_next(rootIter), MCAST6_DB_BAD_HANDLE);
    accessors::releaseObject(table, reader);
    EXPECT_EQ(db_read_obj_with_buf(again, desc, key, row, 208), MCAST6_DB_NO_SUCH_RECORD);
}

TEST_F(Entries, ThreadsThatMakeTheFirstObjectOpenOneStore) {
    std::vector<std::thread> threads;
    std::vector<engine::Engine*> seen(8);
    for (size_t i = 0; i < seen.size(); ++i) {
        threads.emplace_back([&, i] {
            accessors::releaseObject(table, object(kWriteType));
            seen[i] = engine::openEngine();
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(seen, ::testing::Each(engine::openEngine()));
    EXPECT_NE(seen[0], nullptr);
}

}  // namespace
}  // namespace mcast6::testing
