// Objects: types, resets, setters and getters.
#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

class Objects : public EngineTest {
protected:
    uint32_t set(uint64_t made, uint32_t field, auto value) {
        return engine.setField(kRoute, field, made, &value, sizeof value);
    }
    template <class Scalar>
    Scalar get(uint64_t made, uint32_t field) {
        Scalar value{};
        EXPECT_EQ(engine.getField(kRoute, field, made, &value), 0U);
        return value;
    }
};

TEST_P(Objects, AreMadeForTheKnownTypesAndNoOther) {
    for (uint32_t objType = 0; objType < 300; ++objType) {
        const bool isKnown = objType < 2 || (objType >= 3 && objType <= 5) || objType == 9;
        uint64_t made = 0;
        const uint32_t expected = isKnown ? MCAST6_DB_OK : MCAST6_DB_BAD_ARGUMENT;
        EXPECT_EQ(engine.createObject(kRoute, objType, 0, &made), expected) << objType;
        EXPECT_EQ(made != 0, isKnown) << objType;
        engine.releaseObject(kRoute, made);
    }
}

TEST_P(Objects, ArgumentsOfTheirMakingAreChecked) {
    uint64_t made = 7;
    EXPECT_EQ(engine.createObject(kRoute, kWrite, 1, &made), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createCacheObject(kRoute, kRead, 1, &made), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createObject(kNoSuchTable, kWrite, 0, &made), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createObject(kRoute, kWrite, 0, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.createCacheObject(kRoute, 2, 0, &made), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(made, 7U) << "an output is written on success only";
}

// Every operation against every object type: exactly the ones that the type covers get past the type check.
TEST_P(Objects, CoverTheOperationsOfTheirTypeOnly) {
    const Route route{.vr = 1, .id = 2};
    const KeyDesc byPort{kByPort};
    for (const uint32_t objType : {kWrite, kUpdate, kRead, kRemove, kIterate, kCount}) {
        SCOPED_TRACE(objType);
        const uint64_t made = object(objType);
        uint64_t rootIter = 0, count = 0;
        uint32_t* const count32 = reinterpret_cast<uint32_t*>(&count);
        const uint16_t port = 1;
        Route buffer;
        void* bytes = nullptr;
        uint32_t length = 0, version = 0;
        const auto expect = [&](const char* call, uint32_t code, std::initializer_list<uint32_t> types) {
            const bool isCovered = std::count(types.begin(), types.end(), objType) != 0;
            EXPECT_EQ(code != MCAST6_DB_BAD_OPERATION, isCovered) << call << " answers " << code;
        };
        expect("setField", engine.setField(kRoute, kPort, made, &port, 2), {kWrite, kUpdate});
        expect("setAllFields", engine.setAllFields(kRoute, made, &route, sizeof route), {kWrite, kUpdate});
        expect("write", engine.write(made), {kWrite});
        expect("update", engine.update(made, &kRouteKey, &route), {kUpdate});
        expect("read by key", engine.read(made, &kRouteKey, &route, &buffer, sizeof buffer), {kRead});
        expect("getField after a read", engine.getField(kRoute, kVersion, made, &version), {kRead});
        expect("getFieldBytes after a read", engine.getFieldBytes(kRoute, kGroup, made, &bytes, &length), {kRead});
        expect("count", engine.count(made, count32), {kCount});
        expect("countByKey", engine.countByKey(made, &byPort, &port, count32), {kCount});
        expect("createStatement", engine.createStatement(made, 2, nullptr, 0), {kIterate});
        expect("appendCondition",
               engine.appendCondition(made, kVersionOrder, 3, 0, nullptr, 0, &kInVersionOrder, nullptr, 0), {kIterate});
        expect("createRootIterOfStatement", engine.createRootIterOfStatement(made, &rootIter), {kIterate});
        expect("createCacheRootIter", engine.createCacheRootIter(made, &byPort, &rootIter), {kIterate});
        expect("createRootIter", engine.createRootIter(made, nullptr, nullptr, &rootIter), {kIterate});
        engine.next(rootIter);
        expect("read at the position", engine.read(made, nullptr, nullptr, &buffer, sizeof buffer), {kIterate});
        expect("getField", engine.getField(kRoute, kVersion, made, &version), {kRead, kIterate});
        expect("getFieldBytes", engine.getFieldBytes(kRoute, kGroup, made, &bytes, &length), {kRead, kIterate});
        expect("remove", engine.remove(made, &kRouteKey, &route), {kRemove});
        engine.releaseObject(kRoute, made);
        if (objType == kRemove) {
            EXPECT_EQ(write(route), 0U) << "the remover found the record";
        }
    }
}

TEST_P(Objects, AWriteTakesAllFieldsAtOnceOrOneByOne) {
    const Route route{.vr = 1, .id = 2, .group = {3}, .flag = 4, .reserved = 0, .port = 5, .version = 6, .stamp = 7};
    const uint64_t writer = object(kWrite);
    EXPECT_EQ(set(writer, kVr, route.vr), 0U);
    EXPECT_EQ(set(writer, kId, route.id), 0U);
    EXPECT_EQ(set(writer, kGroup, route.group), 0U);
    EXPECT_EQ(set(writer, kFlag, route.flag), 0U);
    EXPECT_EQ(set(writer, kPort, route.port), 0U);
    EXPECT_EQ(set(writer, kVersion, route.version), 0U);
    EXPECT_EQ(set(writer, kStamp, route.stamp), 0U);
    EXPECT_EQ(engine.write(writer), 0U);
    Route stored;
    EXPECT_EQ(read(1, 2, stored), 0U);
    EXPECT_EQ(stored, route);
}

TEST_P(Objects, FieldsOfAWriteThatWereNotSetAreZero) {
    uint64_t writer = object(kWrite);
    const Bytes ones(sizeof(Route), '\xFF');
    EXPECT_EQ(engine.setAllFields(kRoute, writer, ones.data(), sizeof(Route)), 0U);
    engine.releaseObject(kRoute, writer);

    writer = object(kWrite);  // the same slot, whose row is still full of ones
    EXPECT_EQ(set(writer, kId, 9U), 0U);
    EXPECT_EQ(engine.write(writer), 0U);
    Route stored;
    EXPECT_EQ(read(0, 9, stored), 0U);
    EXPECT_EQ(stored, (Route{.id = 9}));
}

TEST_P(Objects, AWriteOrUpdateOfNothingIsRefused) {
    EXPECT_EQ(engine.write(object(kWrite)), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    EXPECT_EQ(engine.update(object(kUpdate), &kRouteKey, join(0U, 1U).data()), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(records(), 1U);
}

TEST_P(Objects, AnUpdateTakesNoFieldOfThePrimaryKey) {
    EXPECT_EQ(write(Route{.vr = 1, .id = 2, .version = 3}), 0U);
    const uint64_t updater = object(kUpdate);
    EXPECT_EQ(set(updater, kVr, 8U), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(set(updater, kId, 8U), MCAST6_DB_BAD_OPERATION);
    const Route other{.vr = 8, .id = 8, .port = 8, .version = 8};
    EXPECT_EQ(engine.setAllFields(kRoute, updater, &other, sizeof other), 0U);
    EXPECT_EQ(engine.update(updater, &kRouteKey, join(1U, 2U).data()), 0U);
    Route stored;
    EXPECT_EQ(read(1, 2, stored), 0U);
    EXPECT_EQ(stored, (Route{.vr = 1, .id = 2, .port = 8, .version = 8}));
    EXPECT_EQ(read(8, 8, stored), MCAST6_DB_NO_SUCH_RECORD);
}

TEST_P(Objects, SettersCheckPointerFieldAndLength) {
    const uint64_t writer = object(kWrite);
    const Route route{.id = 1};
    EXPECT_EQ(engine.setField(kRoute, kPort, writer, nullptr, 2), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.setField(kRoute, kNoSuchField, writer, &route, 2), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.setField(kRoute, 64 + kPort, writer, &route, 2), MCAST6_DB_BAD_ARGUMENT);
    for (const uint32_t length : {0U, 1U, 3U, 4U}) {
        EXPECT_EQ(engine.setField(kRoute, kPort, writer, &route, length), MCAST6_DB_BAD_LENGTH) << length;
    }
    EXPECT_EQ(engine.setField(kRoute, kGroup, writer, &route, 15), MCAST6_DB_BAD_LENGTH);
    EXPECT_EQ(engine.setAllFields(kRoute, writer, nullptr, sizeof route), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.setAllFields(kRoute, writer, &route, sizeof route - 1), MCAST6_DB_BAD_LENGTH);
    EXPECT_EQ(engine.setAllFields(kRoute, writer, &route, sizeof route + 1), MCAST6_DB_BAD_LENGTH);
    EXPECT_EQ(engine.write(writer), MCAST6_DB_BAD_OPERATION) << "none of the failed calls set anything";
}

TEST_P(Objects, GettersGiveTheRecordThatWasRead) {
    const Route route{.vr = 1, .id = 2, .group = {3}, .flag = 4, .reserved = 0, .port = 5, .version = 6, .stamp = 7};
    EXPECT_EQ(write(route), 0U);
    const uint64_t reader = object(kRead);
    uint32_t version = 99;
    EXPECT_EQ(engine.getField(kRoute, kVersion, reader, &version), MCAST6_DB_BAD_OPERATION) << "nothing read yet";
    EXPECT_EQ(version, 99U);
    Route buffer;
    EXPECT_EQ(engine.read(reader, &kRouteKey, join(1U, 2U).data(), &buffer, sizeof buffer), 0U);
    EXPECT_EQ(get<uint32_t>(reader, kVr), 1U);
    EXPECT_EQ(get<uint32_t>(reader, kId), 2U);
    EXPECT_EQ(get<decltype(Route::group)>(reader, kGroup), route.group);
    EXPECT_EQ(get<uint8_t>(reader, kFlag), 4U);
    EXPECT_EQ(get<uint16_t>(reader, kPort), 5U);
    EXPECT_EQ(get<uint32_t>(reader, kVersion), 6U);
    EXPECT_EQ(get<uint64_t>(reader, kStamp), 7U);
    EXPECT_EQ(remove(1, 2), 0U);
    EXPECT_EQ(get<uint32_t>(reader, kVersion), 6U) << "a keyed read is a copy";
}

TEST_P(Objects, AFailedReadLeavesTheGettersAsTheyWere) {
    EXPECT_EQ(write(Route{.id = 1, .version = 11}), 0U);
    const uint64_t reader = object(kRead);
    Route buffer;
    EXPECT_EQ(engine.read(reader, &kRouteKey, join(0U, 1U).data(), &buffer, sizeof buffer), 0U);
    EXPECT_EQ(engine.read(reader, &kRouteKey, join(0U, 2U).data(), &buffer, sizeof buffer), MCAST6_DB_NO_SUCH_RECORD);
    EXPECT_EQ(get<uint32_t>(reader, kVersion), 11U);
}

TEST_P(Objects, GettersCheckPointerAndField) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t reader = object(kRead);
    Route buffer;
    EXPECT_EQ(engine.read(reader, &kRouteKey, join(0U, 1U).data(), &buffer, sizeof buffer), 0U);
    void* bytes = &buffer;
    uint32_t length = 99;
    EXPECT_EQ(engine.getField(kRoute, kVersion, reader, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.getField(kRoute, kNoSuchField, reader, &buffer), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.getFieldBytes(kRoute, kGroup, reader, nullptr, &length), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.getFieldBytes(kRoute, kGroup, reader, &bytes, nullptr), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.getFieldBytes(kRoute, kNoSuchField, reader, &bytes, &length), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(bytes, &buffer);
    EXPECT_EQ(length, 99U);
}

TEST_P(Objects, GettersOfAnIterateObjectReadTheRecordAtThePosition) {
    EXPECT_EQ(write(Route{.id = 1, .group = {1, 2, 3}, .version = 5}), 0U);
    const uint64_t walker = object(kIterate);
    uint32_t version = 0;
    EXPECT_EQ(engine.getField(kRoute, kVersion, walker, &version), MCAST6_DB_BAD_OPERATION) << "no step yet";
    const uint64_t rootIter = tableIter(walker);
    EXPECT_EQ(engine.getField(kRoute, kVersion, walker, &version), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(get<uint32_t>(walker, kVersion), 5U);
    void* bytes = nullptr;
    uint32_t length = 0;
    EXPECT_EQ(engine.getFieldBytes(kRoute, kGroup, walker, &bytes, &length), 0U);
    ASSERT_EQ(length, 16U);

    EXPECT_EQ(write(Route{.id = 1, .group = {7, 7, 7}, .version = 6}), MCAST6_DB_EXISTS_OR_ABSENT);
    EXPECT_EQ(get<uint32_t>(walker, kVersion), 6U) << "the record as it is now";
    EXPECT_EQ(std::memcmp(bytes, "\1\2\3\0", 4), 0) << "bytes in hand hold until the next step";

    EXPECT_EQ(remove(0, 1), 0U);
    EXPECT_EQ(engine.getField(kRoute, kVersion, walker, &version), MCAST6_DB_NO_SUCH_RECORD);
    EXPECT_EQ(engine.getFieldBytes(kRoute, kGroup, walker, &bytes, &length), MCAST6_DB_NO_SUCH_RECORD);
    EXPECT_EQ(engine.next(rootIter), MCAST6_DB_END_OF_ITERATION);
    EXPECT_EQ(engine.getField(kRoute, kVersion, walker, &version), MCAST6_DB_NO_SUCH_RECORD);
}

TEST_P(Objects, AResetMakesThemAsNewForTheType) {
    EXPECT_EQ(write(Route{.id = 1, .port = 4, .version = 5}), 0U);
    const KeyDesc byPort{kByPort};
    const uint64_t made = object(kWrite);
    EXPECT_EQ(set(made, kId, 3U), 0U);
    EXPECT_EQ(engine.resetObject(kRoute, made, kWrite), 0U);
    EXPECT_EQ(engine.write(made), MCAST6_DB_BAD_OPERATION) << "fields are dropped";

    Route buffer;
    EXPECT_EQ(engine.resetObject(kRoute, made, kRead), 0U);
    EXPECT_EQ(engine.read(made, &kRouteKey, join(0U, 1U).data(), &buffer, sizeof buffer), 0U);
    EXPECT_EQ(engine.resetObject(kRoute, made, kRead), 0U);
    uint32_t version = 0;
    EXPECT_EQ(engine.getField(kRoute, kVersion, made, &version), MCAST6_DB_BAD_OPERATION) << "so is what was read";

    EXPECT_EQ(engine.resetObject(kRoute, made, kIterate), 0U);
    EXPECT_EQ(engine.createStatement(made, 2, nullptr, 0), 0U);
    EXPECT_EQ(engine.appendCondition(made, kVersionOrder, 3, 0, nullptr, 0, &kInVersionOrder, nullptr, 0), 0U);
    uint64_t sorted = 0, cached = 0;
    EXPECT_EQ(engine.createRootIterOfStatement(made, &sorted), 0U);
    EXPECT_EQ(engine.createCacheRootIter(made, &byPort, &cached), 0U);
    const uint64_t whole = tableIter(made);
    EXPECT_EQ(engine.next(whole), 0U);
    EXPECT_EQ(engine.resetObject(kRoute, made, kIterate), 0U);
    for (const uint64_t rootIter : {sorted, cached, whole}) {
        EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_HANDLE) << "and the iterators";
    }
    EXPECT_EQ(engine.createRootIterOfStatement(made, &sorted), MCAST6_DB_BAD_OPERATION) << "and the statement";
    EXPECT_EQ(engine.read(made, nullptr, nullptr, &buffer, sizeof buffer), MCAST6_DB_BAD_OPERATION);
}

TEST_P(Objects, AResetForAnUnknownTypeChangesNothing) {
    const uint64_t made = object(kWrite);
    EXPECT_EQ(set(made, kId, 3U), 0U);
    EXPECT_EQ(engine.resetObject(kRoute, made, 2), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.resetObject(kRoute, made, 0x10000), MCAST6_DB_BAD_ARGUMENT);
    EXPECT_EQ(engine.write(made), 0U);
}

TEST_P(Objects, ACacheObjectThatIsResetKeepsItsTypeAndItsCachedIterators) {
    EXPECT_EQ(write(Route{.id = 1, .port = 4}), 0U);
    EXPECT_EQ(write(Route{.id = 2, .port = 4}), 0U);
    const KeyDesc byPort{kByPort};
    const uint64_t made = cacheObject(kIterate);
    uint64_t cached = 0;
    EXPECT_EQ(engine.createCacheRootIter(made, &byPort, &cached), 0U);
    EXPECT_EQ(engine.resetCacheRootIter(cached, join(uint16_t{4}).data()), 0U);
    EXPECT_EQ(engine.next(cached), 0U);
    const uint64_t whole = tableIter(made);
    EXPECT_EQ(engine.createStatement(made, 2, nullptr, 0), 0U);

    EXPECT_EQ(engine.resetCacheObject(kRoute, made), 0U);
    EXPECT_EQ(engine.next(whole), MCAST6_DB_BAD_HANDLE);
    EXPECT_EQ(engine.appendCondition(made, kVersionOrder, 3, 0, nullptr, 0, &kInVersionOrder, nullptr, 0),
              MCAST6_DB_BAD_OPERATION);
    Route buffer;
    EXPECT_EQ(engine.read(made, nullptr, nullptr, &buffer, sizeof buffer), MCAST6_DB_BAD_OPERATION) << "no step since";
    EXPECT_EQ(engine.next(cached), 0U) << "the kept iterator goes on where it was";
    EXPECT_EQ(engine.next(cached), MCAST6_DB_END_OF_ITERATION);

    EXPECT_EQ(engine.resetObject(kRoute, made, kIterate), 0U);
    EXPECT_EQ(engine.next(cached), MCAST6_DB_BAD_HANDLE) << "a plain reset keeps nothing";
}

TEST_P(Objects, OnlyACacheObjectIsResetAsOne) {
    const uint64_t made = object(kRead);
    EXPECT_EQ(engine.resetCacheObject(kRoute, made), MCAST6_DB_BAD_OPERATION);
    const uint64_t cache = cacheObject(kCount);
    EXPECT_EQ(engine.resetCacheObject(kRoute, cache), 0U);
    uint64_t count = 7;
    EXPECT_EQ(engine.count(cache, reinterpret_cast<uint32_t*>(&count)), 0U);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(engine.resetObject(kRoute, cache, kRead), 0U);
    EXPECT_EQ(engine.resetCacheObject(kRoute, cache), 0U) << "it stays a cache object";
}

TEST_P(Objects, ACacheObjectKeepsNothingOfWhatItReadsByKey) {
    const Route route{.vr = 1, .id = 2, .version = 3};
    ASSERT_EQ(write(route), 0U);
    uint64_t cache = 0;
    ASSERT_EQ(engine.createCacheObject(kRoute, kRead, 0, &cache), MCAST6_DB_OK);
    Route read;
    EXPECT_EQ(engine.read(cache, &kRouteKey, join(1U, 2U).data(), &read, sizeof read), MCAST6_DB_OK);
    EXPECT_EQ(read, route);
    uint32_t version = 9;
    EXPECT_EQ(engine.getField(kRoute, kVersion, cache, &version), MCAST6_DB_BAD_OPERATION);
    EXPECT_EQ(version, 9U);
}

TEST_P(Objects, ManyAtATimeAreToldApart) {
    constexpr uint32_t kMany = 300;  // more than the first slots
    for (uint32_t id = 0; id < kMany; ++id) ASSERT_EQ(write(Route{.vr = 1, .id = id, .version = id}), 0U);
    std::vector<uint64_t> readers(kMany);
    for (uint64_t& reader : readers) reader = object(kRead);
    for (uint32_t id = 0; id < kMany; ++id) {
        Route read;
        EXPECT_EQ(engine.read(readers[id], &kRouteKey, join(1U, id).data(), &read, sizeof read), MCAST6_DB_OK);
    }
    for (uint32_t id = 0; id < kMany; ++id) EXPECT_EQ(get<uint32_t>(readers[id], kVersion), id);
    for (uint32_t id = 0; id < kMany; id += 2) engine.releaseObject(kRoute, readers[id]);
    for (uint32_t id = 0; id < kMany; ++id) {
        uint32_t version = 0;
        const uint32_t expected = id % 2 == 0 ? MCAST6_DB_BAD_HANDLE : MCAST6_DB_OK;
        EXPECT_EQ(engine.getField(kRoute, kVersion, readers[id], &version), expected) << id;
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, Objects, ::testing::ValuesIn(kStores), storeName);

}  // namespace
}  // namespace mcast6::testing
