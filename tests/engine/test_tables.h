// The tables that the engine's tests use: two that together have every feature of a description, and two of the real
// ones. With them the engine under test, over either store, and short ways to call it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <memory>

#include "mcast6_platform/engine.h"
#include "platform/engine/engine.h"
#include "platform/schema/l2mc6_bd_enable.h"
#include "platform/schema/l3mc6_mfib.h"
#include "platform/store/memory/memory_store.h"
#include "tests/engine/map_store.h"

namespace mcast6::testing {

// Route: replaces, no limit, 13044 for an absent removal; secondary indexes, one with a constant, and a sorted key.
struct Route {
    uint32_t vr = 0;
    uint32_t id = 0;
    std::array<uint8_t, 16> group{};
    uint8_t flag = 0;
    uint8_t reserved = 0;
    uint16_t port = 0;
    uint32_t version = 0;
    uint64_t stamp = 0;

    bool operator==(const Route&) const = default;
};
static_assert(sizeof(Route) == 40);

inline constexpr schema::Field kRouteFields[] = {
    schema::u32("vr", 0),    schema::u32("id", 4),       schema::address("group", 8), schema::u8("flag", 24),
    schema::u16("port", 26), schema::u32("version", 28), schema::u64("stamp", 32),
};
enum RouteField : uint32_t { kVr, kId, kGroup, kFlag, kPort, kVersion, kStamp, kNoSuchField };

inline constexpr uint32_t kByPort = 0x01090002;
inline constexpr uint32_t kByGroup = 0x02090014;
inline constexpr uint32_t kByFlag = 0x0309000D;
inline constexpr uint32_t kInVersionOrder = 0x04020008;
inline constexpr const char* kVersionOrder = "version_order_key";

inline constexpr schema::Key kRouteIndexes[] = {
    schema::key(kRouteFields, kByPort, "port"),
    schema::key(kRouteFields, kByGroup, "vr", "group"),
    schema::key(kRouteFields, kByFlag, "vr", schema::zeros(4), "flag", schema::constant(2, 4)),
    schema::sortedKey(kRouteFields, kInVersionOrder, kVersionOrder, "version", "vr"),
};

// Port: refuses a present key, holds three records, 15005 for an absent removal, no index.
struct Port {
    uint32_t id = 0;
    uint32_t value = 0;

    bool operator==(const Port&) const = default;
};

inline constexpr schema::Field kPortFields[] = {schema::u32("id", 0), schema::u32("value", 4)};

inline constexpr schema::Table kTables[] = {
    schema::checked({
        .name = "route",
        .recordSize = sizeof(Route),
        .fields = kRouteFields,
        .primary = schema::key(kRouteFields, 0x00010008, "vr", "id"),
        .indexes = kRouteIndexes,
        .absentRemoval = 13044,
        .presentWrite = schema::PresentWrite::replaces,
        .capacity = 0,
    }),
    schema::checked({
        .name = "port",
        .recordSize = sizeof(Port),
        .fields = kPortFields,
        .primary = schema::key(kPortFields, 0x00010004, "id"),
        .indexes = {},
        .absentRemoval = 15005,
        .presentWrite = schema::PresentWrite::refused,
        .capacity = 3,
    }),
    schema::l3mc6_mfib::kTable,
    schema::l2mc6_bd_enable::kTable,
};
enum TableId : uint32_t { kRoute, kPortTable, kMfib, kBdEnable, kNoSuchTable };

enum Type : uint32_t { kWrite = 0, kUpdate = 1, kRead = 3, kRemove = 4, kIterate = 5, kCount = 9 };

struct KeyDesc {
    uint32_t word;
    uint32_t reserved[3] = {0, 0, 0};
};
inline constexpr KeyDesc kRouteKey{0x00010008};
inline constexpr KeyDesc kPortKey{0x00010004};

template <class... Scalars>
Bytes join(Scalars... scalars) {
    Bytes bytes;
    (bytes.append(reinterpret_cast<const char*>(&scalars), sizeof scalars), ...);
    return bytes;
}

struct StoreKind {
    const char* name;
    std::function<std::unique_ptr<store::Store>()> make;
};
inline std::ostream& operator<<(std::ostream& out, const StoreKind& kind) { return out << kind.name; }
inline const StoreKind kStores[] = {
    {"memory", [] { return store::makeMemoryStore(kTables); }},
    {"map", [] { return std::make_unique<MapStore>(kTables); }},
};
inline std::string storeName(const ::testing::TestParamInfo<StoreKind>& kind) { return kind.param.name; }

class EngineTest : public ::testing::TestWithParam<StoreKind> {
protected:
    uint64_t object(uint32_t objType, uint32_t table = kRoute) {
        uint64_t made = 0;
        EXPECT_EQ(engine.createObject(table, objType, 0, &made), 0U);
        return made;
    }
    uint64_t cacheObject(uint32_t objType, uint32_t table = kRoute) {
        uint64_t made = 0;
        EXPECT_EQ(engine.createCacheObject(table, objType, 0, &made), 0U);
        return made;
    }
    uint64_t tableIter(uint64_t owner) {
        uint64_t made = 0;
        EXPECT_EQ(engine.createRootIter(owner, nullptr, nullptr, &made), 0U);
        return made;
    }
    uint64_t indexIter(uint64_t owner, uint32_t word, const Bytes& key) {
        uint64_t made = 0;
        const KeyDesc desc{word};
        EXPECT_EQ(engine.createRootIter(owner, &desc, key.data(), &made), 0U);
        return made;
    }

    template <class Record>
    uint32_t write(uint32_t table, const Record& record) {
        const uint64_t made = object(kWrite, table);
        EXPECT_EQ(engine.setAllFields(table, made, &record, sizeof record), 0U);
        const uint32_t code = engine.write(made);
        engine.releaseObject(table, made);
        return code;
    }
    uint32_t write(const Route& route) { return write(kRoute, route); }
    uint32_t write(const Port& port) { return write(kPortTable, port); }

    uint32_t remove(uint32_t vr, uint32_t id) {
        const uint64_t made = object(kRemove);
        const uint32_t code = engine.remove(made, &kRouteKey, join(vr, id).data());
        engine.releaseObject(kRoute, made);
        return code;
    }
    uint32_t read(uint32_t vr, uint32_t id, Route& route) {
        const uint64_t made = object(kRead);
        const uint32_t code = engine.read(made, &kRouteKey, join(vr, id).data(), &route, sizeof route);
        engine.releaseObject(kRoute, made);
        return code;
    }
    uint64_t records(uint32_t table = kRoute) {
        const uint64_t made = object(kCount, table);
        uint64_t found = 0;
        EXPECT_EQ(engine.count(made, reinterpret_cast<uint32_t*>(&found)), 0U);
        engine.releaseObject(table, made);
        return found;
    }
    uint64_t records(uint32_t word, const Bytes& key) {
        const uint64_t made = object(kCount);
        const KeyDesc desc{word};
        uint64_t found = 0;
        EXPECT_EQ(engine.countByKey(made, &desc, key.data(), reinterpret_cast<uint32_t*>(&found)), 0U);
        engine.releaseObject(kRoute, made);
        return found;
    }

    // The ids of the records that the iterator still gives, in its order, up to 110012.
    std::vector<uint32_t> walk(uint64_t owner, uint64_t rootIter) {
        std::vector<uint32_t> ids;
        uint32_t code = 0;
        while ((code = engine.next(rootIter)) == 0) {
            Route route;
            EXPECT_EQ(engine.read(owner, nullptr, nullptr, &route, sizeof route), 0U);
            ids.push_back(route.id);
        }
        EXPECT_EQ(code, MCAST6_DB_END_OF_ITERATION);
        return ids;
    }

    engine::Engine engine{GetParam().make(), kTables};
};

}  // namespace mcast6::testing
