// Iterator handles, object caches and fast counts. What each operation does, one row for each step:
//
// operation          step          fails with   then
// iterator           create 5      any          null
//                    root iterator any          released; null
//                    property      any          released; null; the root iterator is released with its object
//                    allocation    -            released; null
//                    -             -            handle
// iterator, given    null resource -            1
//   resource         create 5      any          1
//                    root iterator any          released; 1
//                    property      any          released; 1
//                    -             -            resource filled; 0
// object cache       create cache  any          55; log; 1
//                    reset cache   any          56; log; 1; a new object is lost
//                    -             -            object in the slot; 0
// fast count         null pair, null member of it   0
//                    create cache  any          55; log; 0
//                    reset cache   any          56; log; 0; a new object is lost
//                    count         any          log; 0
//                    -             -            the count
#include "mcast6_db/iterator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_platform/tables.h"
#include "tests/support/operation_sweep.h"
#include "tests/support/operation_test.h"

namespace mcast6::tests {

namespace {

using recording::Recorder;
using testing::IsEmpty;

Mcast6DbRes* iterator;
Mcast6DbRes resource;
Mcast6DbHandle slot;

const LogId helpers{0x0F2E1016};
const Effect released = line("release l3mc6_mfib obj1");

// The engine's own functions, so that only the frame counts or logs.
const Mcast6DbIterFuncs objects{db_create_l3mc6_mfib_obj, db_release_l3mc6_mfib_object};
const Mcast6DbCacheFuncs cached{db_create_l3mc6_mfib_cache_object, db_reset_l3mc6_mfib_cache_object};
const Mcast6DbKeyDesc kInterface{0x02090004, {0, 0, 0}};
const uint8_t kInterfaceKey[4] = {1, 2, 3, 4};

Scene plain() {
    return {.prepare =
                [] {
                    iterator = nullptr;
                    resource = {0xA5A5, 0x5A5A};
                    slot = 0;
                    Recorder::instance().fillNextCount(0x01020007);
                },
            .watched = {watchHandle("slot", slot),
                        {"resource", [] { return nameOf(resource.object) + " " + nameOf(resource.rootIter); }},
                        {"iterator", [] {
                             if (iterator == nullptr) return std::string("none");
                             return nameOf(iterator->object) + " " + nameOf(iterator->rootIter);
                         }}}};
}

Scene withSlot() {
    Scene scene = plain();
    scene.prepare = [first = scene.prepare] {
        first();
        ASSERT_EQ(0u, MCAST6_DB_CreateObjCache(9, 0, &slot, &cached));
    };
    return scene;
}

Operation owned(std::string name, std::string key, Run run) {
    return {
        .name = std::move(name),
        .scene = plain(),
        .run = std::move(run),
        .steps =
            {
                {.calls = {gives("create l3mc6_mfib 5 0", "obj1")}, .failed = {returnsNull()}},
                {.calls = {gives("root_iter obj1 " + std::move(key), "iter1")}, .failed = {released, returnsNull()}},
                {.calls = {call("property iter1 0 01000000")}, .failed = {released, returnsNull()}},
                {.calls = {allocation(16, "block1")}, .failed = {released, returnsNull()}},
            },
        .done = {leaves("iterator", "obj1 iter1"), keeps(1, 1, 1), returnsHandle()},
    };
}

Operation given(std::string name, std::string key, Run run, Run nullRun) {
    return {
        .name = std::move(name),
        .scene = plain(),
        .run = std::move(run),
        .nulls = {{"resource", std::move(nullRun), {returns(1)}}},
        .steps =
            {
                {.calls = {gives("create l3mc6_mfib 5 0", "obj1")}, .failed = {returns(1)}},
                {.calls = {gives("root_iter obj1 " + std::move(key), "iter1")}, .failed = {released, returns(1)}},
                {.calls = {call("property iter1 0 01000000")}, .failed = {released, returns(1)}},
            },
        .done = {leaves("resource", "obj1 iter1"), keeps(1, 1, 0), returns(0)},
    };
}

Step cacheCreation(uint32_t result) {
    return {.calls = {gives("create_cache l3mc6_mfib 9 0", "obj1")},
            .failed = {dfx(55), helpers("Failed to create cache object, objType:%d, connType:%d, ret:%d", 9u, 0u, code),
                       returns(result)}};
}

// 'lost': the number of objects that leak because the reset of a new one failed.
Step cacheReset(uint32_t result, int64_t lost) {
    return {.calls = {call("reset_cache l3mc6_mfib obj1")},
            .failed = {dfx(56), helpers("Failed to reset cache object, objType:%d, connType:%d, ret:%d", 9u, 0u, code),
                       keeps(lost, 0, 0), returns(result)}};
}

std::vector<Operation> iterators() {
    return {
        owned("CreateIterCommonOfAll", "none",
              [] { return iterator = MCAST6_DB_CreateIterCommon(&objects, nullptr, nullptr); }),
        owned("CreateIterCommonByKey", "key=02090004:01020304",
              [] { return iterator = MCAST6_DB_CreateIterCommon(&objects, &kInterface, kInterfaceKey); }),
        given(
            "CreateIterCommonWithDbResOfAll", "none",
            [] { return MCAST6_DB_CreateIterCommonWithDbRes(&resource, &objects, nullptr, nullptr); },
            [] { return MCAST6_DB_CreateIterCommonWithDbRes(nullptr, &objects, nullptr, nullptr); }),
        given(
            "CreateIterCommonWithDbResByKey", "key=02090004:01020304",
            [] { return MCAST6_DB_CreateIterCommonWithDbRes(&resource, &objects, &kInterface, kInterfaceKey); },
            [] { return MCAST6_DB_CreateIterCommonWithDbRes(nullptr, &objects, &kInterface, kInterfaceKey); }),
    };
}

std::vector<Operation> caches() {
    const Run create = [] { return MCAST6_DB_CreateObjCache(9, 0, &slot, &cached); };
    const Run count = [] { return MCAST6_DB_GetCountFast(&cached, &slot); };
    static const Mcast6DbCacheFuncs noCreate{nullptr, db_reset_l3mc6_mfib_cache_object};
    static const Mcast6DbCacheFuncs noReset{db_create_l3mc6_mfib_cache_object, nullptr};
    const Effect countFailed = helpers("[GetCountFast]Failed to get db count, ret:%d", code);
    const Effect filled = allOf({leaves("slot", "obj1"), keeps(1, 0, 0)});
    return {
        {.name = "CreateObjCacheOfEmptySlot",
         .scene = plain(),
         .run = create,
         .steps = {cacheCreation(1), cacheReset(1, 1)},
         .done = {filled, returns(0)}},
        {.name = "CreateObjCacheOfFilledSlot",
         .scene = withSlot(),
         .run = create,
         .steps = {cacheReset(1, 0)},
         .done = {returns(0)}},
        {.name = "GetCountFastAtFirst",
         .scene = plain(),
         .run = count,
         .nulls = {{"pair", [] { return MCAST6_DB_GetCountFast(nullptr, &slot); }, {returns(0)}},
                   {"create function", [] { return MCAST6_DB_GetCountFast(&noCreate, &slot); }, {returns(0)}},
                   {"reset function", [] { return MCAST6_DB_GetCountFast(&noReset, &slot); }, {returns(0)}}},
         .steps = {cacheCreation(0),
                   cacheReset(0, 1),
                   {.calls = {call("count obj1")}, .failed = {countFailed, filled, returns(0)}}},
         .done = {filled, returns(0x01020007)}},
        {.name = "GetCountFast",
         .scene = withSlot(),
         .run = count,
         .steps = {cacheReset(0, 0), {.calls = {call("count obj1")}, .failed = {countFailed, returns(0)}}},
         .done = {returns(0x01020007)}},
    };
}

INSTANTIATE_TEST_SUITE_P(iterators, EveryExit, testing::ValuesIn(iterators()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(caches, EveryExit, testing::ValuesIn(caches()), nameOfOperation);

class FastCountTest : public testing::Test {
protected:
    void SetUp() override {
        startOver();
        slot = 0;
    }
    void TearDown() override { platform.reset(); }

    Recorder& platform = Recorder::instance();
};

// The types of an object are passed unchanged to the engine and into the messages.
TEST_F(FastCountTest, aCacheIsOfTheTypesAskedFor) {
    platform.answer("db_create_l3mc6_mfib_cache_object", 4294967295u);
    EXPECT_EQ(1u, MCAST6_DB_CreateObjCache(3, 2, &slot, &cached));
    platform.answer("db_reset_l3mc6_mfib_cache_object", 9);
    EXPECT_EQ(1u, MCAST6_DB_CreateObjCache(3, 2, &slot, &cached));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create_cache l3mc6_mfib 3 2 -> 4294967295",
                                    "dfx 55",
                                    "log 9 0x0F2E1016 \"Failed to create cache object, objType:3, connType:2, ret:-1\"",
                                    "create_cache l3mc6_mfib 3 2 -> obj1",
                                    "reset_cache l3mc6_mfib obj1 -> 9",
                                    "dfx 56",
                                    "log 9 0x0F2E1016 \"Failed to reset cache object, objType:3, connType:2, ret:9\"",
                                }));
    EXPECT_EQ(0u, slot);
}

TEST_F(FastCountTest, afterAFailedResetTheKeptObjectIsTriedAgain) {
    platform.fillNextCount(4);
    EXPECT_EQ(4u, MCAST6_DB_GetCountFast(&cached, &slot));
    const Mcast6DbHandle kept = slot;
    platform.takeTrace();
    platform.answer("db_reset_l3mc6_mfib_cache_object", 9);
    EXPECT_EQ(0u, MCAST6_DB_GetCountFast(&cached, &slot));
    EXPECT_EQ(kept, slot);
    platform.fillNextCount(5);
    EXPECT_EQ(5u, MCAST6_DB_GetCountFast(&cached, &slot));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "reset_cache l3mc6_mfib obj1 -> 9",
                                    "dfx 56",
                                    "log 9 0x0F2E1016 \"Failed to reset cache object, objType:9, connType:0, ret:9\"",
                                    "reset_cache l3mc6_mfib obj1",
                                    "count obj1",
                                }));
}

TEST_F(FastCountTest, aCountIs32BitsOfWhatTheEngineFills) {
    platform.fillNextCount(0xFFFFFFFF'00000003);
    EXPECT_EQ(3u, MCAST6_DB_GetCountFast(&cached, &slot));
    EXPECT_THAT(platform.misuses(), IsEmpty());
}

}  // namespace

}  // namespace mcast6::tests
