// The recording platform on its own: what it records, what it returns, which misuse it finds.
#include "tests/platform/recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <stdexcept>

#include "mcast6_platform/engine.h"
#include "mcast6_platform/host.h"
#include "mcast6_platform/tables.h"

namespace {

using namespace mcast6::recording;

struct Descriptor {
    uint32_t word;
    uint32_t reserved[3] = {0, 0, 0};
};

class RecorderTest : public testing::Test {
protected:
    void SetUp() override { platform.reset(); }
    void TearDown() override { platform.reset(); }

    uint64_t newObject(uint32_t objType) {
        uint64_t object = 0;
        EXPECT_EQ(0u, db_create_l2mc6_bd_enable_obj(objType, 0, &object));
        return object;
    }
    uint64_t newIterator(uint64_t object) {
        uint64_t iterator = 0;
        EXPECT_EQ(0u, db_create_root_iter(object, nullptr, nullptr, &iterator));
        return iterator;
    }

    Recorder& platform = Recorder::instance();
    const uint32_t key[3] = {1, 2, 0x0A0B0C0D};
    const Descriptor primary{0x0001000C};
};

TEST_F(RecorderTest, notesAWriteWithItsBytes) {
    const uint64_t object = newObject(0);
    uint8_t row[68] = {};
    row[0] = 0xAB;
    row[67] = 0x01;
    EXPECT_EQ(0u, db_set_l2mc6_bd_enable_all_fields(object, row, sizeof row));
    EXPECT_EQ(0u, db_write_obj(object));
    db_release_l2mc6_bd_enable_object(object);
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_bd_enable 0 0 -> obj1",
                                    "set_all l2mc6_bd_enable obj1 ab" + std::string(132, '0') + "01",
                                    "write obj1",
                                    "release l2mc6_bd_enable obj1",
                                }));
    EXPECT_EQ(3u, platform.callCount());
    EXPECT_EQ(0u, platform.liveObjects());
}

TEST_F(RecorderTest, notesSettersAndGettersOfEveryWidth) {
    uint64_t object = 0;
    ASSERT_EQ(0u, db_create_l3mc6_mfib_obj(1, 0, &object));
    const uint8_t bytes[8] = {1, 2, 3, 4, 5, 6, 7, 0xF8};
    EXPECT_EQ(0u, db_set_l3mc6_mfib_attr2(object, 255));
    EXPECT_EQ(0u, db_set_l3mc6_mfib_attr3(object, 65535));
    EXPECT_EQ(0u, db_set_l3mc6_mfib_smoothVersion(object, 4294967295u));
    EXPECT_EQ(0u, db_set_l3mc6_mfib_timeStampSmooth(object, 18446744073709551615u));
    EXPECT_EQ(0u, db_set_l3mc6_mfib_attr14(object, bytes, sizeof bytes));
    uint8_t attr2 = 9;
    EXPECT_EQ(0u, db_get_l3mc6_mfib_attr2(object, &attr2));
    EXPECT_EQ(0, attr2);
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l3mc6_mfib 1 0 -> obj1",
                                    "set l3mc6_mfib.attr2 obj1 255",
                                    "set l3mc6_mfib.attr3 obj1 65535",
                                    "set l3mc6_mfib.smoothVersion obj1 4294967295",
                                    "set l3mc6_mfib.timeStampSmooth obj1 18446744073709551615",
                                    "set l3mc6_mfib.attr14 obj1 01020304050607f8",
                                    "get l3mc6_mfib.attr2 obj1",
                                }));
}

TEST_F(RecorderTest, notesKeyedCalls) {
    const uint64_t object = newObject(3);
    uint8_t buffer[68] = {};
    EXPECT_EQ(0u, db_update_obj(object, &primary, key));
    EXPECT_EQ(0u, db_remove_obj(object, &primary, key));
    EXPECT_EQ(0u, db_read_obj_with_buf(object, &primary, key, buffer, sizeof buffer));
    EXPECT_EQ(0u, db_read_obj_with_buf(object, nullptr, nullptr, buffer, sizeof buffer));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l2mc6_bd_enable 3 0 -> obj1",
                                    "update obj1 key=0001000c:01000000020000000d0c0b0a",
                                    "remove obj1 key=0001000c:01000000020000000d0c0b0a",
                                    "read obj1 key=0001000c:01000000020000000d0c0b0a 68",
                                    "read obj1 none 68",
                                }));
}

TEST_F(RecorderTest, notesIteratorsAndCounts) {
    uint64_t object = 0;
    ASSERT_EQ(0u, db_create_l3mc6_mfib_obj(5, 0, &object));
    const Descriptor byInterface{0x02090004};
    const uint32_t interface = 258;
    const uint32_t one = 1;
    uint64_t iterator = 0;
    uint64_t filtered = 0;
    uint64_t cached = 0;
    uint64_t count = 0;
    EXPECT_EQ(0u, db_create_root_iter(object, &byInterface, &interface, &iterator));
    EXPECT_EQ(0u, db_set_root_iterator_property(iterator, 0, &one, 4));
    EXPECT_EQ(0u, db_root_iterator_next(iterator));
    EXPECT_EQ(0u, db_create_stmt(object, 2, nullptr, 0));
    EXPECT_EQ(0u, db_append_stmt_condition(object, "bdId_local_key", 3, 0, nullptr, 0, &byInterface.word, nullptr, 0));
    EXPECT_EQ(0u, db_append_stmt_condition(object, "other", 3, 0, nullptr, 0, &byInterface.word, &interface, 4));
    EXPECT_EQ(0u, db_create_root_iterator_by_filter(object, &filtered));
    EXPECT_EQ(0u, db_create_cache_root_iter(object, &byInterface, &cached));
    EXPECT_EQ(0u, db_reset_cache_root_iter(cached, &interface));
    EXPECT_EQ(0u, db_get_table_record_count(object, reinterpret_cast<uint32_t*>(&count)));
    EXPECT_EQ(0u,
              db_get_table_record_count_by_key(object, &byInterface, &interface, reinterpret_cast<uint32_t*>(&count)));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l3mc6_mfib 5 0 -> obj1",
                                    "root_iter obj1 key=02090004:02010000 -> iter1",
                                    "property iter1 0 01000000",
                                    "next iter1",
                                    "stmt obj1 2",
                                    "condition obj1 bdId_local_key 3 key=02090004:none",
                                    "condition obj1 other 3 key=02090004:02010000",
                                    "filter_iter obj1 -> iter2",
                                    "cache_iter obj1 02090004 -> iter3",
                                    "reset_cache_iter iter3 key=02090004:02010000",
                                    "count obj1",
                                    "count_by_key obj1 key=02090004:02010000",
                                }));
    EXPECT_EQ(3u, platform.liveIterators());
    db_release_l3mc6_mfib_object(object);
    EXPECT_EQ(0u, platform.liveIterators());
}

TEST_F(RecorderTest, aResetEndsIteratorsButCachedOnes) {
    uint64_t object = 0;
    ASSERT_EQ(0u, db_create_l3mc6_mfib_cache_object(5, 0, &object));
    const Descriptor byInterface{0x02090004};
    uint64_t cached = 0;
    newIterator(object);
    ASSERT_EQ(0u, db_create_cache_root_iter(object, &byInterface, &cached));
    EXPECT_EQ(2u, platform.liveIterators());
    EXPECT_EQ(0u, db_reset_l3mc6_mfib_cache_object(object));
    EXPECT_EQ(1u, platform.liveIterators());
    EXPECT_EQ(0u, db_reset_l3mc6_mfib_object(object, 5));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create_cache l3mc6_mfib 5 0 -> obj1",
                                    "root_iter obj1 none -> iter1",
                                    "cache_iter obj1 02090004 -> iter2",
                                    "reset_cache l3mc6_mfib obj1",
                                    "reset l3mc6_mfib obj1 5",
                                }));
}

TEST_F(RecorderTest, notesTheHostFunctions) {
    uint8_t version[40] = {1};
    MCAST6_DfxCounterInc(151);
    MCAST6_DfxCounterInc(151);
    MCAST6_KPI_AddKpiData(93);
    MCAST6_TRAP_DecreaseMfib6DbCnt();
    MCAST6_DBG_Print(1, 2, 3, "object %u of \"%s\"", 7, "x");
    Recorder::log(9, 0x0F2E1012, "[MCAST6 DB]code %u.", 13044u);
    platform.fillNextGlobalVersion(0x01020304);
    EXPECT_EQ(0u, MCAST_DB_ReadGlbVersion(version));
    EXPECT_EQ(0u, MCAST_DB_UpdateGlbVersion(version));
    platform.answer("MCAST_DB_WriteGlbVersion", 5);
    EXPECT_EQ(5u, MCAST_DB_WriteGlbVersion(version));
    const std::string before = "01" + std::string(78, '0');
    const std::string after = "01" + std::string(38, '0') + "04030201" + std::string(32, '0');
    EXPECT_EQ(platform.trace(), (Trace{"dfx 151", "dfx 151", "kpi 93", "trap", "debug 1 2 3 \"object 7 of \"x\"\"",
                                       "log 9 0x0F2E1012 \"[MCAST6 DB]code 13044.\"", "glb_read " + before,
                                       "glb_update " + after, "glb_write " + after + " -> 5"}));
    EXPECT_EQ(2u, platform.dfx(151));
    EXPECT_EQ(0u, platform.dfx(152));
    EXPECT_EQ(1u, platform.kpi(93));
    EXPECT_EQ(1u, platform.trapCount());
    EXPECT_EQ(platform.logFormats(), (std::vector<std::string>{"[MCAST6 DB]code %u."}));
}

TEST_F(RecorderTest, theClockIsTheScripts) {
    EXPECT_EQ(1'700'000'000, time(nullptr));
    platform.setTime(42, 2);
    time_t seconds = 0;
    EXPECT_EQ(42, time(&seconds));
    EXPECT_EQ(42, seconds);
    platform.traceClock(true);
    EXPECT_EQ(44, time(nullptr));
    EXPECT_EQ(3u, platform.clockReadings());
    EXPECT_EQ(platform.trace(), (Trace{"time"}));
}

TEST_F(RecorderTest, copiesAreNotedOnRequest) {
    const char source[4] = {1, 2, 3, 4};
    char destination[4] = {};
    EXPECT_EQ(0, memcpy_s(destination, 4, source, 4));
    EXPECT_EQ(0, std::memcmp(source, destination, 4));
    platform.traceCopies(true);
    EXPECT_EQ(ERANGE, memcpy_s(destination, 3, source, 4));
    platform.answer("memcpy_s", 7);
    EXPECT_EQ(7, memcpy_s(destination, 4, source, 4));
    EXPECT_EQ(0, destination[0]);
    EXPECT_EQ(platform.trace(), (Trace{"memcpy_s 3 4 -> 34", "memcpy_s 4 4 -> 7"}));
    EXPECT_EQ(0u, platform.callCount());
}

TEST_F(RecorderTest, answersTakeTheirTurn) {
    const uint64_t object = newObject(0);
    platform.answer("db_write_obj", 13044);
    platform.answer("db_write_obj", 0);
    platform.answer("db_write_obj", 9);
    platform.answerAlways("db_write_obj", 110024);
    EXPECT_EQ(3u, platform.pendingAnswers());
    EXPECT_EQ(13044u, db_write_obj(object));
    EXPECT_EQ(0u, db_write_obj(object));
    EXPECT_EQ(9u, db_write_obj(object));
    EXPECT_EQ(110024u, db_write_obj(object));
    EXPECT_EQ(110024u, db_write_obj(object));
    EXPECT_EQ(0u, platform.pendingAnswers());
    EXPECT_EQ(5u, platform.callsOf("db_write_obj"));
    EXPECT_THAT(platform.trace(),
                testing::ElementsAre(testing::_, "write obj1 -> 13044", "write obj1", "write obj1 -> 9",
                                     "write obj1 -> 110024", "write obj1 -> 110024"));
}

TEST_F(RecorderTest, aFailedCreateGivesNoHandle) {
    platform.answer("db_create_l2mc6_bd_enable_obj", 1);
    uint64_t object = 77;
    EXPECT_EQ(1u, db_create_l2mc6_bd_enable_obj(5, 0, &object));
    EXPECT_EQ(77u, object);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(platform.trace(), (Trace{"create l2mc6_bd_enable 5 0 -> 1"}));
    const uint64_t real = newObject(5);
    platform.answer("db_create_root_iter", 15005);
    uint64_t iterator = 77;
    EXPECT_EQ(15005u, db_create_root_iter(real, nullptr, nullptr, &iterator));
    EXPECT_EQ(77u, iterator);
    EXPECT_EQ("root_iter obj1 none -> 15005", platform.trace().back());
}

TEST_F(RecorderTest, aNameThatTheContractLacksIsRefused) {
    EXPECT_THROW(platform.answer("db_write_object", 1), std::invalid_argument);
    EXPECT_THROW(platform.answerAlways("db_set_l3mc6_mfib_nothing", 1), std::invalid_argument);
    EXPECT_THROW(platform.announceLength("groupAddr", 1), std::invalid_argument);
    EXPECT_THROW(platform.announceLength("db_get_l3mc6_mfib_groupAddr", 257), std::invalid_argument);
    EXPECT_NO_THROW(platform.answer("db_set_l3mc6_mfib_smoothVersion", 1));
}

TEST_F(RecorderTest, readsBringTheScriptedRows) {
    const uint64_t object = newObject(3);
    uint8_t buffer[68] = {};
    platform.fillNextRead(unhex("0102"));
    platform.fillNextRead(unhex("0304 05"));
    EXPECT_EQ(0u, db_read_obj_with_buf(object, &primary, key, buffer, sizeof buffer));
    EXPECT_EQ("01020000", hex({buffer, 4}));
    std::memset(buffer, 0, sizeof buffer);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(15005u, db_read_obj_with_buf(object, &primary, key, buffer, sizeof buffer));
    EXPECT_EQ("00000000", hex({buffer, 4}));
    EXPECT_EQ(0u, db_read_obj_with_buf(object, &primary, key, buffer, sizeof buffer));
    EXPECT_EQ("03040500", hex({buffer, 4}));
    std::memset(buffer, 0, sizeof buffer);
    EXPECT_EQ(0u, db_read_obj_with_buf(object, &primary, key, buffer, sizeof buffer));
    EXPECT_EQ("00000000", hex({buffer, 4}));
    EXPECT_TRUE(platform.misuses().empty());
}

TEST_F(RecorderTest, stepsBringRowsForGettersAndReads) {
    uint64_t object = 0;
    ASSERT_EQ(0u, db_create_l3mc6_mfib_obj(5, 0, &object));
    const uint64_t iterator = newIterator(object);
    platform.fillNextStep(unhex("11000000 22000000 000102030405060708090a0b0c0d0e0f"));
    EXPECT_EQ(0u, db_root_iterator_next(iterator));
    uint32_t vrfId = 0;
    EXPECT_EQ(0u, db_get_l3mc6_mfib_vrfId(object, &vrfId));
    EXPECT_EQ(0x22u, vrfId);
    void* group = nullptr;
    void* source = nullptr;
    uint32_t length = 0;
    EXPECT_EQ(0u, db_get_l3mc6_mfib_groupAddr(object, &group, &length));
    EXPECT_EQ(16u, length);
    platform.announceLength("db_get_l3mc6_mfib_sourceAddr", 200);
    EXPECT_EQ(0u, db_get_l3mc6_mfib_sourceAddr(object, &source, &length));
    EXPECT_EQ(200u, length);
    EXPECT_EQ("000102030405060708090a0b0c0d0e0f", hex({static_cast<uint8_t*>(group), 16}));
    EXPECT_EQ(std::string(400, '0'), hex({static_cast<uint8_t*>(source), 200}));
    uint8_t buffer[208] = {};
    EXPECT_EQ(0u, db_read_obj_with_buf(object, nullptr, nullptr, buffer, sizeof buffer));
    EXPECT_EQ("1100000022000000", hex({buffer, 8}));
    EXPECT_EQ(0u, db_root_iterator_next(iterator));
    EXPECT_EQ(0u, db_get_l3mc6_mfib_vrfId(object, &vrfId));
    EXPECT_EQ(0u, vrfId);
}

TEST_F(RecorderTest, countsComeInSixtyFourBits) {
    const uint64_t object = newObject(9);
    uint64_t count = 0;
    platform.fillNextCount(0x1'0000'0007);
    EXPECT_EQ(0u, db_get_table_record_count(object, reinterpret_cast<uint32_t*>(&count)));
    EXPECT_EQ(0x1'0000'0007u, count);
    EXPECT_EQ(0u, db_get_table_record_count(object, reinterpret_cast<uint32_t*>(&count)));
    EXPECT_EQ(platform.misuses(), (Trace{"MISUSE count word not cleared"}));
}

TEST_F(RecorderTest, allocationsAreNotedAndCanFail) {
    auto* block = static_cast<uint8_t*>(Recorder::alloc(2));
    EXPECT_EQ(0xA5, block[1]);
    EXPECT_EQ(1u, platform.liveBlocks());
    Recorder::free(block);
    platform.failAllocation(2);
    void* second = Recorder::alloc(8);
    EXPECT_FALSE(platform.faultHit());
    EXPECT_EQ(nullptr, Recorder::alloc(9));
    EXPECT_TRUE(platform.faultHit());
    void* third = Recorder::alloc(0);
    EXPECT_EQ(3u, platform.allocationCount());
    Recorder::free(second);
    Recorder::free(third);
    Recorder::free(nullptr);
    EXPECT_EQ(0u, platform.liveBlocks());
    EXPECT_EQ(platform.trace(), (Trace{"alloc 2 -> block1", "free block1", "alloc 8 -> block2", "alloc 9 -> null",
                                       "alloc 0 -> block3", "free block2", "free block3", "free none"}));
    int other = 0;
    Recorder::free(&other);
    EXPECT_EQ(platform.misuses(), (Trace{"MISUSE free of an unknown block"}));
}

TEST_F(RecorderTest, theWatcherAddsItsLinesBeforeTheNext) {
    int errors = 0;
    int seen = 0;
    platform.watch([&](Trace& trace) {
        for (; seen < errors; ++seen) trace.push_back("error " + std::to_string(seen));
    });
    MCAST6_DfxCounterInc(1);
    ++errors;
    MCAST6_DfxCounterInc(2);
    ++errors;
    EXPECT_EQ(120001u, db_write_obj(77));
    ++errors;
    EXPECT_EQ(platform.takeTrace(),
              (Trace{"dfx 1", "error 0", "dfx 2", "error 1", "MISUSE write of an unknown handle, ?77",
                     "write ?77 -> 120001", "error 2"}));
    platform.watch(nullptr);
    ++errors;
    MCAST6_DfxCounterInc(3);
    EXPECT_EQ(platform.takeTrace(), (Trace{"dfx 3"}));
}

TEST_F(RecorderTest, handlesAreNamedAsInTheTrace) {
    const uint64_t object = newObject(5);
    const uint64_t iterator = newIterator(object);
    EXPECT_EQ("obj1", platform.nameOf(object));
    EXPECT_EQ("iter1", platform.nameOf(iterator));
    EXPECT_EQ("none", platform.nameOf(0));
    db_release_l2mc6_bd_enable_object(object);
    EXPECT_EQ("?1", platform.nameOf(object));
}

TEST_F(RecorderTest, handleZeroIsRefusedWithoutMisuse) {
    uint64_t iterator = 0;
    EXPECT_EQ(120001u, db_write_obj(0));
    EXPECT_EQ(120001u, db_create_stmt(0, 2, nullptr, 0));
    EXPECT_EQ(120001u, db_create_root_iterator_by_filter(0, &iterator));
    db_release_l2mc6_bd_enable_object(0);
    EXPECT_EQ(platform.trace(), (Trace{"write none -> 120001", "stmt none 2 -> 120001", "filter_iter none -> 120001",
                                       "release l2mc6_bd_enable none"}));
    EXPECT_TRUE(platform.misuses().empty());
}

TEST_F(RecorderTest, wrongHandlesAreMisuse) {
    const uint64_t object = newObject(5);
    const uint64_t iterator = newIterator(object);
    platform.takeTrace();
    EXPECT_EQ(120001u, db_write_obj(77));
    EXPECT_EQ(120001u, db_write_obj(iterator));
    EXPECT_EQ(120001u, db_root_iterator_next(object));
    db_release_l3mc6_mfib_object(object);
    EXPECT_EQ(1u, platform.liveObjects());
    db_release_l2mc6_bd_enable_object(object);
    db_release_l2mc6_bd_enable_object(object);
    EXPECT_EQ(120001u, db_root_iterator_next(iterator));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "MISUSE write of an unknown handle, ?77",
                                    "write ?77 -> 120001",
                                    "MISUSE write of an iterator for an object, iter1",
                                    "write iter1 -> 120001",
                                    "MISUSE next of an object for an iterator, obj1",
                                    "next obj1 -> 120001",
                                    "MISUSE release of an object of l2mc6_bd_enable, obj1",
                                    "release l3mc6_mfib obj1",
                                    "release l2mc6_bd_enable obj1",
                                    "MISUSE release of a released handle, obj1",
                                    "release l2mc6_bd_enable ?1",
                                    "MISUSE next of a released handle, iter1",
                                    "next ?1000001 -> 120001",
                                }));
    EXPECT_EQ(6u, platform.misuses().size());
}

TEST_F(RecorderTest, wrongKeysAreMisuse) {
    const uint64_t object = newObject(3);
    const Descriptor littered{0x0001000C, {0, 0, 0x01000000}};
    const Descriptor unknown{0x0201000C};
    uint8_t buffer[68] = {};
    platform.takeTrace();
    EXPECT_EQ(0u, db_remove_obj(object, &littered, key));
    EXPECT_EQ(0u, db_remove_obj(object, &unknown, key));
    EXPECT_EQ(0u, db_remove_obj(object, nullptr, nullptr));
    EXPECT_EQ(0u, db_read_obj_with_buf(object, &primary, nullptr, buffer, sizeof buffer));
    EXPECT_EQ(platform.misuses(),
              (Trace{"MISUSE key descriptor with 000000000000000000000001 after the word",
                     "MISUSE key word 0201000c, which l2mc6_bd_enable does not have",
                     "MISUSE key or key descriptor missing", "MISUSE key or key descriptor missing"}));
    EXPECT_EQ(8u, platform.trace().size());
}

TEST_F(RecorderTest, wrongBuffersAreMisuse) {
    const uint64_t object = newObject(0);
    uint8_t row[70] = {};
    row[69] = 1;
    EXPECT_EQ(0u, db_set_l2mc6_bd_enable_all_fields(object, row, 67));
    EXPECT_EQ(0u, db_set_l2mc6_bd_enable_errCode(object, row, 3));
    EXPECT_EQ(0u, db_read_obj_with_buf(object, nullptr, nullptr, row, 70));
    EXPECT_EQ(120006u, db_read_obj_with_buf(object, nullptr, nullptr, nullptr, 68));
    EXPECT_EQ(120006u, db_create_l2mc6_bd_enable_obj(0, 0, nullptr));
    EXPECT_EQ(120006u, MCAST_DB_ReadGlbVersion(nullptr));
    EXPECT_EQ(0u, db_create_stmt(object, 2, row, 0));
    EXPECT_EQ(0u, db_append_stmt_condition(object, "key", 3, 1, nullptr, 0, &primary, nullptr, 0));
    EXPECT_EQ(platform.misuses(), (Trace{
                                      "MISUSE row of 67 bytes instead of 68",
                                      "MISUSE l2mc6_bd_enable.errCode of 3 bytes instead of 2",
                                      "MISUSE read buffer of 70 bytes instead of 68",
                                      "MISUSE read buffer not cleared",
                                      "MISUSE null read buffer",
                                      "MISUSE null place for a handle",
                                      "MISUSE MCAST_DB_ReadGlbVersion of a null record",
                                      "MISUSE statement with parameters",
                                      "MISUSE condition with reserved arguments",
                                  }));
}

// Creates, sets and writes; stops at the first failure.
uint32_t writeOnce() {
    uint64_t object = 0;
    uint8_t row[68] = {};
    uint32_t code = db_create_l2mc6_bd_enable_obj(0, 0, &object);
    if (code != 0) return code;
    code = db_set_l2mc6_bd_enable_all_fields(object, row, sizeof row);
    if (code == 0) code = db_write_obj(object);
    db_release_l2mc6_bd_enable_object(object);
    return code;
}

TEST_F(RecorderTest, aSweepFailsEachCallOnce) {
    uint32_t code = 0;
    std::vector<std::string> failed;
    const uint64_t calls = sweepCalls(
        110024, [&] { platform.reset(); }, [&] { code = writeOnce(); },
        [&](uint64_t n) {
            EXPECT_EQ(110024u, code);
            EXPECT_EQ(n, platform.callCount());
            EXPECT_EQ(0u, platform.liveObjects());
            for (const std::string& line : platform.trace()) {
                if (line.ends_with("-> 110024")) failed.push_back(line.substr(0, line.find(' ')));
            }
        });
    EXPECT_EQ(3u, calls);
    EXPECT_EQ(failed, (std::vector<std::string>{"create", "set_all", "write"}));
    EXPECT_EQ(0u, code);
}

TEST_F(RecorderTest, aPersistentFaultStays) {
    platform.failCallsFrom(2, 5);
    const uint64_t object = newObject(0);
    EXPECT_FALSE(platform.faultHit());
    EXPECT_EQ(5u, db_write_obj(object));
    EXPECT_EQ(5u, db_write_obj(object));
    EXPECT_TRUE(platform.faultHit());
    platform.failCall(1, 6);
    EXPECT_FALSE(platform.faultHit());
    EXPECT_EQ(6u, db_write_obj(object));
    EXPECT_EQ(0u, db_write_obj(object));
}

TEST_F(RecorderTest, aSweepFailsEachAllocationOnce) {
    int failures = 0;
    const uint64_t allocations = sweepAllocations([&] { platform.reset(); },
                                                  [&] {
                                                      void* first = Recorder::alloc(1);
                                                      void* second = Recorder::alloc(1);
                                                      failures += (first == nullptr) + (second == nullptr);
                                                      Recorder::free(first);
                                                      Recorder::free(second);
                                                  },
                                                  [&](uint64_t n) { EXPECT_EQ(static_cast<int>(n), failures); });
    EXPECT_EQ(2u, allocations);
}

TEST_F(RecorderTest, resetForgetsEverything) {
    newObject(0);
    Recorder::alloc(4);
    platform.answerAlways("db_write_obj", 3);
    platform.answer("db_update_obj", 3);
    platform.setTime(1);
    platform.failCall(1, 4);
    MCAST6_DfxCounterInc(1);
    platform.reset();
    EXPECT_TRUE(platform.trace().empty());
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveBlocks());
    EXPECT_EQ(0u, platform.pendingAnswers());
    EXPECT_EQ(0u, platform.dfx(1));
    EXPECT_EQ(1'700'000'000, time(nullptr));
    EXPECT_EQ(0u, db_write_obj(newObject(0)));
    EXPECT_EQ("create l2mc6_bd_enable 0 0 -> obj1", platform.trace().front());
}

TEST_F(RecorderTest, hexDigitsAreChecked) {
    EXPECT_EQ((Bytes{0x0A, 0xFF}), unhex("0a Ff"));
    EXPECT_THROW(unhex("0"), std::invalid_argument);
    EXPECT_THROW(unhex("0g"), std::invalid_argument);
    EXPECT_EQ("000aff", hex(Bytes{0, 10, 255}));
}

}  // namespace
