// Write, update, remove, read and count: codes and what is stored afterwards.
#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

class Records : public EngineTest {};

TEST_P(Records, AWrittenRecordIsRead) {
    const Route route{.vr = 1, .id = 2, .group = {0xFF}, .flag = 3, .reserved = 0, .port = 4, .version = 5, .stamp = 6};
    EXPECT_EQ(write(route), 0U);
    Route stored;
    EXPECT_EQ(read(1, 2, stored), 0U);
    EXPECT_EQ(stored, route);
    EXPECT_EQ(records(), 1U);
}

TEST_P(Records, AWriteOfAPresentKeyReplacesAndAnswers13044) {
    EXPECT_EQ(write(Route{.id = 1, .port = 4, .version = 5}), 0U);
    EXPECT_EQ(write(Route{.id = 1, .port = 6, .version = 7}), 13044U);
    Route stored;
    EXPECT_EQ(read(0, 1, stored), 0U);
    EXPECT_EQ(stored, (Route{.id = 1, .port = 6, .version = 7}));
    EXPECT_EQ(records(), 1U);
    EXPECT_EQ(records(kByPort, join(uint16_t{4})), 0U);
    EXPECT_EQ(records(kByPort, join(uint16_t{6})), 1U);
}

TEST_P(Records, ARefusingTableStoresNothingAndAnswers13044) {
    EXPECT_EQ(write(Port{.id = 1, .value = 5}), 0U);
    EXPECT_EQ(write(Port{.id = 1, .value = 6}), 13044U);
    const uint64_t reader = object(kRead, kPortTable);
    Port stored;
    EXPECT_EQ(engine.read(reader, &kPortKey, join(1U).data(), &stored, sizeof stored), 0U);
    EXPECT_EQ(stored, (Port{1, 5}));
}

TEST_P(Records, AFullTableTakesNoNewRecordAndAnswers110024) {
    for (uint32_t id = 1; id <= 3; ++id) EXPECT_EQ(write(Port{.id = id, .value = id}), 0U);
    EXPECT_EQ(write(Port{.id = 4, .value = 4}), 110024U);
    EXPECT_EQ(write(Port{.id = 3, .value = 9}), 13044U) << "a present key is no new record";
    EXPECT_EQ(records(kPortTable), 3U);
    const uint64_t remover = object(kRemove, kPortTable);
    EXPECT_EQ(engine.remove(remover, &kPortKey, join(2U).data()), 0U);
    EXPECT_EQ(write(Port{.id = 4, .value = 4}), 0U);
}

TEST_P(Records, AnAbsentRemovalAnswersWhatTheTableSays) {
    EXPECT_EQ(remove(1, 1), 13044U);
    const uint64_t remover = object(kRemove, kPortTable);
    EXPECT_EQ(engine.remove(remover, &kPortKey, join(1U).data()), 15005U);
}

TEST_P(Records, ARemovedRecordIsGone) {
    EXPECT_EQ(write(Route{.id = 1, .port = 4}), 0U);
    EXPECT_EQ(remove(0, 1), 0U);
    EXPECT_EQ(remove(0, 1), 13044U);
    Route stored{.id = 77};
    EXPECT_EQ(read(0, 1, stored), 15005U);
    EXPECT_EQ(stored, (Route{.id = 77})) << "the buffer is untouched";
    EXPECT_EQ(records(), 0U);
    EXPECT_EQ(records(kByPort, join(uint16_t{4})), 0U);
}

TEST_P(Records, AnUpdateChangesTheFieldsThatWereSetAndTheirIndexes) {
    const Route route{.vr = 1, .id = 2, .group = {9}, .flag = 3, .reserved = 0, .port = 4, .version = 5, .stamp = 6};
    EXPECT_EQ(write(route), 0U);
    const uint64_t updater = object(kUpdate);
    const uint16_t port = 40;
    const uint64_t stamp = 60;
    EXPECT_EQ(engine.setField(kRoute, kPort, updater, &port, sizeof port), 0U);
    EXPECT_EQ(engine.setField(kRoute, kStamp, updater, &stamp, sizeof stamp), 0U);
    EXPECT_EQ(engine.update(updater, &kRouteKey, join(1U, 2U).data()), 0U);
    Route expected = route, stored;
    expected.port = port;
    expected.stamp = stamp;
    EXPECT_EQ(read(1, 2, stored), 0U);
    EXPECT_EQ(stored, expected);
    EXPECT_EQ(records(kByPort, join(uint16_t{4})), 0U);
    EXPECT_EQ(records(kByPort, join(uint16_t{40})), 1U);
}

TEST_P(Records, AnAbsentUpdateAnswers13044AndStoresNothing) {
    const uint64_t updater = object(kUpdate);
    const uint32_t version = 1;
    EXPECT_EQ(engine.setField(kRoute, kVersion, updater, &version, sizeof version), 0U);
    EXPECT_EQ(engine.update(updater, &kRouteKey, join(1U, 2U).data()), 13044U);
    EXPECT_EQ(records(), 0U);
}

TEST_P(Records, AnObjectCanBeUsedAgain) {
    const uint64_t writer = object(kWrite);
    for (uint32_t id = 0; id < 3; ++id) {
        EXPECT_EQ(engine.setField(kRoute, kId, writer, &id, sizeof id), 0U);
        EXPECT_EQ(engine.write(writer), 0U);
        EXPECT_EQ(engine.write(writer), 13044U);
    }
    EXPECT_EQ(records(), 3U);
}

TEST_P(Records, KeyedCallsWantThePrimaryKeyWord) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t reader = object(kRead), remover = object(kRemove), updater = object(kUpdate);
    const uint32_t version = 9;
    EXPECT_EQ(engine.setField(kRoute, kVersion, updater, &version, sizeof version), 0U);
    const Bytes key = join(0U, 1U, uint64_t{0}, uint64_t{0}, uint64_t{0});
    Route stored{.id = 77};
    for (const uint32_t word : {0U, 8U, 0x00010004U, 0x0001000CU, 0x01010008U, kByPort, kByGroup, kInVersionOrder}) {
        SCOPED_TRACE(word);
        const KeyDesc desc{word};
        EXPECT_EQ(engine.read(reader, &desc, key.data(), &stored, sizeof stored), MCAST6_DB_BAD_KEY);
        EXPECT_EQ(engine.update(updater, &desc, key.data()), MCAST6_DB_BAD_KEY);
        EXPECT_EQ(engine.remove(remover, &desc, key.data()), MCAST6_DB_BAD_KEY);
    }
    EXPECT_EQ(stored, (Route{.id = 77}));
    EXPECT_EQ(read(0, 1, stored), 0U);
    EXPECT_EQ(stored, (Route{.id = 1}));
}

TEST_P(Records, KeyedCallsWantAllTheirPointers) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t reader = object(kRead), remover = object(kRemove), updater = object(kUpdate);
    const uint32_t version = 9;
    EXPECT_EQ(engine.setField(kRoute, kVersion, updater, &version, sizeof version), 0U);
    const Bytes key = join(0U, 1U);
    Route stored;
    EXPECT_EQ(engine.read(reader, nullptr, key.data(), &stored, sizeof stored), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.read(reader, &kRouteKey, nullptr, &stored, sizeof stored), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.read(reader, &kRouteKey, key.data(), nullptr, sizeof stored), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.update(updater, nullptr, key.data()), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.update(updater, &kRouteKey, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.remove(remover, nullptr, key.data()), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.remove(remover, &kRouteKey, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(records(), 1U);
}

TEST_P(Records, AReadWantsTheRecordSize) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t reader = object(kRead);
    Route stored[2]{{.id = 77}, {.id = 77}};
    for (const uint32_t length : {0U, 39U, 41U, 80U}) {
        EXPECT_EQ(engine.read(reader, &kRouteKey, join(0U, 1U).data(), stored, length), MCAST6_DB_BAD_LENGTH);
    }
    EXPECT_EQ(stored[0].id, 77U);
}

TEST_P(Records, AKeyAndItsDescriptorMayLieAnywhere) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 2}), 0U);
    char unaligned[64] = {};
    std::memcpy(unaligned + 1, &kRouteKey, sizeof kRouteKey);
    std::memcpy(unaligned + 19, join(1U, 2U).data(), 8);
    const uint64_t reader = object(kRead);
    char row[1 + sizeof(Route)];
    EXPECT_EQ(engine.read(reader, unaligned + 1, unaligned + 19, row + 1, sizeof(Route)), 0U);
    EXPECT_EQ(std::memcmp(row + 1, unaligned + 19, 8), 0);
}

TEST_P(Records, ACountFills64Bits) {
    for (uint32_t id = 0; id < 5; ++id) EXPECT_EQ(write(Route{.id = id, .port = 4}), 0U);
    const uint64_t counter = object(kCount);
    const KeyDesc byPort{kByPort};
    uint32_t words[4] = {9, 9, 9, 9};  // the count may lie on any 32-bit boundary
    EXPECT_EQ(engine.count(counter, &words[1]), 0U);
    EXPECT_THAT(words, ::testing::ElementsAre(9, 5, 0, 9));
    EXPECT_EQ(engine.countByKey(counter, &byPort, join(uint16_t{4}).data(), &words[1]), 0U);
    EXPECT_THAT(words, ::testing::ElementsAre(9, 5, 0, 9));
    EXPECT_EQ(engine.countByKey(counter, &byPort, join(uint16_t{5}).data(), &words[1]), 0U) << "no match is no failure";
    EXPECT_THAT(words, ::testing::ElementsAre(9, 0, 0, 9));
}

TEST_P(Records, ACountByAPrimaryKeyIsOneOrNone) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 2}), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 3}), 0U);
    EXPECT_EQ(records(kRouteKey.word, join(1U, 2U)), 1U);
    EXPECT_EQ(records(kRouteKey.word, join(2U, 2U)), 0U);
    EXPECT_EQ(remove(1, 2), 0U);
    EXPECT_EQ(records(kRouteKey.word, join(1U, 2U)), 0U);
}

TEST_P(Records, ACountByKeyWantsAKeyWordOfTheTable) {
    const uint64_t counter = object(kCount);
    const Bytes key(64, '\0');
    uint64_t count = 7;
    uint32_t* const count32 = reinterpret_cast<uint32_t*>(&count);
    for (const uint32_t word : {0U, kRouteKey.word + 1, kInVersionOrder, kByPort + 1, kByPort + 0x01000000}) {
        const KeyDesc desc{word};
        EXPECT_EQ(engine.countByKey(counter, &desc, key.data(), count32), MCAST6_DB_BAD_KEY) << word;
    }
    const KeyDesc byPort{kByPort};
    EXPECT_EQ(engine.countByKey(counter, nullptr, key.data(), count32), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.countByKey(counter, &byPort, nullptr, count32), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.countByKey(counter, &byPort, key.data(), nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.count(counter, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(count, 7U);
}

TEST_P(Records, AnIndexMayHoldConstantParts) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 1, .flag = 3}), 0U);
    EXPECT_EQ(write(Route{.vr = 1, .id = 2, .flag = 3}), 0U);
    EXPECT_EQ(write(Route{.vr = 2, .id = 3, .flag = 3}), 0U);
    EXPECT_EQ(records(kByFlag, join(1U, 0U, uint8_t{3}, 2U)), 2U);
    EXPECT_EQ(records(kByFlag, join(1U, 0U, uint8_t{3}, 3U)), 0U) << "another constant matches nothing";
    EXPECT_EQ(records(kByFlag, join(1U, 1U, uint8_t{3}, 2U)), 0U);
    const uint64_t walker = object(kIterate);
    EXPECT_THAT(walk(walker, indexIter(walker, kByFlag, join(1U, 0U, uint8_t{3}, 2U))),
                ::testing::UnorderedElementsAre(1, 2));
    EXPECT_THAT(walk(walker, indexIter(walker, kByFlag, join(1U, 0U, uint8_t{3}, 1U))), ::testing::IsEmpty());
}

TEST_P(Records, TablesAreApart) {
    EXPECT_EQ(write(Port{.id = 1, .value = 2}), 0U);
    EXPECT_EQ(write(Route{.vr = 0, .id = 1}), 0U);
    EXPECT_EQ(records(kPortTable), 1U);
    EXPECT_EQ(records(), 1U);
    EXPECT_EQ(records(kMfib), 0U);
    EXPECT_EQ(remove(0, 1), 0U);
    EXPECT_EQ(records(kPortTable), 1U);
}

INSTANTIATE_TEST_SUITE_P(Stores, Records, ::testing::ValuesIn(kStores), storeName);

}  // namespace
}  // namespace mcast6::testing
