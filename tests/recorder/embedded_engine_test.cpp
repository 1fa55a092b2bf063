// The recorder in front of the embedded engine: calls are recorded, scripted codes take precedence, everything else
// comes from the engine.
#include "tests/platform/embedded_engine.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "mcast6_platform/engine.h"
#include "mcast6_platform/tables.h"
#include "platform/schema/catalog.h"
#include "platform/store/memory/memory_store.h"
#include "tests/platform/recorder.h"

namespace {

using namespace mcast6::recording;
namespace schema = mcast6::schema;

class StackedTest : public testing::Test {
protected:
    void SetUp() override {
        platform.reset();
        platform.forwardTo(&engineBehind);
    }
    void TearDown() override { platform.reset(); }

    uint32_t write(uint32_t keyId1) {
        uint64_t object = 0;
        uint8_t row[68] = {};
        std::memcpy(row, &keyId1, sizeof keyId1);
        EXPECT_EQ(0u, db_create_l2mc6_bd_enable_obj(0, 0, &object));
        EXPECT_EQ(0u, db_set_l2mc6_bd_enable_all_fields(object, row, sizeof row));
        const uint32_t code = db_write_obj(object);
        db_release_l2mc6_bd_enable_object(object);
        return code;
    }
    uint64_t count() {
        uint64_t object = 0;
        uint64_t records = 0;
        EXPECT_EQ(0u, db_create_l2mc6_bd_enable_obj(9, 0, &object));
        EXPECT_EQ(0u, db_get_table_record_count(object, reinterpret_cast<uint32_t*>(&records)));
        db_release_l2mc6_bd_enable_object(object);
        return records;
    }

    Recorder& platform = Recorder::instance();
    mcast6::engine::Engine engine{mcast6::store::makeMemoryStore(schema::catalog()), schema::catalog()};
    EmbeddedEngine engineBehind{engine};
};

TEST_F(StackedTest, theEngineAnswersAndTheRecorderNotes) {
    EXPECT_EQ(0u, write(1));
    platform.takeTrace();
    EXPECT_EQ(13044u, write(1));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_bd_enable 0 0 -> obj2",
                                    "set_all l2mc6_bd_enable obj2 01" + std::string(134, '0'),
                                    "write obj2 -> 13044",
                                    "release l2mc6_bd_enable obj2",
                                }));
    EXPECT_EQ(1u, count());
}

TEST_F(StackedTest, aScriptedFailureDoesNotReachTheEngine) {
    platform.answer("db_write_obj", 110024);
    EXPECT_EQ(110024u, write(1));
    EXPECT_EQ(0u, count());
    platform.answer("db_write_obj", 0);  // this call is left to the engine
    EXPECT_EQ(0u, write(1));
    EXPECT_EQ(1u, count());
}

TEST_F(StackedTest, iteratorsAndGettersComeFromTheEngine) {
    for (uint32_t id = 1; id <= 3; ++id) ASSERT_EQ(0u, write(id));
    uint64_t object = 0;
    uint64_t iterator = 0;
    ASSERT_EQ(0u, db_create_l2mc6_bd_enable_obj(5, 0, &object));
    ASSERT_EQ(0u, db_create_root_iter(object, nullptr, nullptr, &iterator));
    uint32_t sum = 0;
    while (db_root_iterator_next(iterator) == 0) {
        uint32_t id = 0;
        uint8_t row[68] = {};
        EXPECT_EQ(0u, db_get_l2mc6_bd_enable_keyId1(object, &id));
        EXPECT_EQ(0u, db_read_obj_with_buf(object, nullptr, nullptr, row, sizeof row));
        EXPECT_EQ(0, std::memcmp(row, &id, sizeof id));
        sum += id;
    }
    EXPECT_EQ(6u, sum);
    EXPECT_EQ("next iter1 -> 110012", platform.trace().back());
    db_release_l2mc6_bd_enable_object(object);
    EXPECT_EQ(0u, platform.liveIterators());
    EXPECT_TRUE(platform.misuses().empty());
}

TEST_F(StackedTest, theEngineRefusesWhatItDoesNotKnow) {
    uint64_t object = 0;
    EXPECT_NE(0u, db_create_l2mc6_bd_enable_obj(2, 0, &object));
    EXPECT_EQ(0u, platform.liveObjects());
    ASSERT_EQ(0u, db_create_l2mc6_bd_enable_obj(3, 0, &object));
    EXPECT_EQ(120002u, db_write_obj(object));
    db_release_l2mc6_bd_enable_object(object);
}

}  // namespace
