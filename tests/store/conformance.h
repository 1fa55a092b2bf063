// What every store must do, as a test suite over the store interface alone. A store runs it by
//   INSTANTIATE_TEST_SUITE_P(<Name>, StoreConformance, testing::Values(<a function that makes an empty store>));
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/schema/l3mc6_mfib.h"
#include "platform/schema/schema.h"
#include "platform/store/store.h"

namespace mcast6::store::test {

using Factory = std::unique_ptr<Store> (*)(std::span<const schema::Table> catalog);

// Tables that exist for the tests: what the real ones have, and what they may have one day.
inline constexpr schema::Field kOddFields[] = {
    schema::u32("vr", 0),     schema::u16("zone", 4),  // byte 6 is no field
    schema::u8("kind", 7),    schema::address("group", 8),
    schema::u64("stamp", 24), schema::bytes("note", 32, 5),  // bytes 37 to 39 are no field
};
inline constexpr schema::Key kOddIndexes[] = {
    schema::key(kOddFields, 0x02090004, "vr"),
    schema::key(kOddFields, 0x0309000C, "vr", schema::zeros(4), schema::lowBytes("stamp", 2), schema::constant(7, 2)),
    schema::key(kOddFields, 0x04090001, "kind"),
    schema::sortedKey(kOddFields, 0x05020006, "zone_key", "zone", "vr"),
    schema::sortedKey(kOddFields, 0x06020012, "group_key", "group", "zone"),
};
inline constexpr schema::Table kOdd = schema::checked({
    .name = "odd",
    .recordSize = 40,
    .fields = kOddFields,
    .primary = schema::key(kOddFields, 0x00010014, "vr", "group"),
    .indexes = kOddIndexes,
    .absentRemoval = 13044,
    .presentWrite = schema::PresentWrite::replaces,
    .capacity = 0,
});
inline constexpr schema::Table kRefusing = schema::checked({
    .name = "refusing",
    .recordSize = 40,
    .fields = kOddFields,
    .primary = schema::key(kOddFields, 0x00010018, "vr", "group", schema::constant(0x0A0B, 4)),
    .indexes = kOddIndexes,
    .absentRemoval = 13044,
    .presentWrite = schema::PresentWrite::refused,
    .capacity = 3,
});
inline constexpr schema::Table kTables[] = {kOdd, kRefusing, schema::l3mc6_mfib::kTable};
inline constexpr uint32_t kOddTable = 0;
inline constexpr uint32_t kRefusingTable = 1;
inline constexpr uint32_t kMfibTable = 2;

// Positions in kOddIndexes.
inline constexpr uint32_t kByVr = 0;
inline constexpr uint32_t kByStamp = 1;
inline constexpr uint32_t kByKind = 2;
inline constexpr uint32_t kByZone = 3;
inline constexpr uint32_t kByGroup = 4;

// A row under construction, or any bytes.
using Bytes = std::string;

inline const std::byte* raw(const Bytes& bytes) { return reinterpret_cast<const std::byte*>(bytes.data()); }
inline std::byte* raw(Bytes& bytes) { return reinterpret_cast<std::byte*>(bytes.data()); }

inline size_t fieldOf(const schema::Table& table, std::string_view name) {
    for (size_t i = 0; i < table.fields.size(); ++i) {
        if (table.fields[i].name == name) return i;
    }
    ADD_FAILURE() << "no field " << name;
    return 0;
}

// Sets a field to a number; an address or other bytes get it in their last bytes, most significant first.
inline void setField(const schema::Table& table, Bytes& row, std::string_view name, uint64_t value) {
    const schema::Field& field = table.fields[fieldOf(table, name)];
    for (size_t i = 0; i < field.width; ++i) {
        const size_t at = field.kind == schema::FieldKind::scalar ? i : field.width - size_t{1} - i;
        row[field.offset + at] = i < 8 ? static_cast<char>(value >> (8 * i)) : '\0';
    }
}

inline Bytes makeRow(const schema::Table& table,
                     std::initializer_list<std::pair<std::string_view, uint64_t>> values = {}) {
    Bytes row(table.recordSize, '\0');
    for (const auto& [name, value] : values) setField(table, row, name, value);
    return row;
}

// The key of a row, by the plainest reading of the schema.
inline Bytes keyOf(const schema::Key& key, const Bytes& row) {
    Bytes composed;
    for (const schema::KeyPart& part : key.parts()) {
        for (size_t i = 0; i < part.width; ++i) {
            composed +=
                part.isConstant ? static_cast<char>(i < 8 ? part.constant >> (8 * i) : 0) : row[part.offset + i];
        }
    }
    return composed;
}

// Bytes that compare as the key's values do.
inline Bytes sortable(const schema::Key& key, const Bytes& composed) {
    Bytes result;
    size_t at = 0;
    for (const schema::KeyPart& part : key.parts()) {
        const Bytes bytes = composed.substr(at, part.width);
        result += part.isScalar ? Bytes(bytes.rbegin(), bytes.rend()) : bytes;
        at += part.width;
    }
    return result;
}

class StoreConformance : public testing::TestWithParam<Factory> {
protected:
    void SetUp() override { store = GetParam()(std::span<const schema::Table>(kTables)); }

    Answer put(uint32_t table, const Bytes& row) { return store->put(table, raw(row)); }

    std::optional<Bytes> get(uint32_t table, const Bytes& row) {
        Bytes found(kTables[table].recordSize, '\x55');
        const Answer answer = store->get(table, raw(keyOf(kTables[table].primary, row)), raw(found));
        if (answer == Answer::done) return found;
        EXPECT_EQ(answer, Answer::absent);
        return std::nullopt;
    }

    Answer erase(uint32_t table, const Bytes& row) {
        return store->erase(table, raw(keyOf(kTables[table].primary, row)));
    }

    Answer patch(uint32_t table, const Bytes& row, std::initializer_list<std::string_view> fields) {
        uint64_t set = 0;
        for (const std::string_view name : fields) set |= uint64_t{1} << fieldOf(kTables[table], name);
        return store->patch(table, raw(keyOf(kTables[table].primary, row)), raw(row), set);
    }

    uint64_t count(uint32_t table) {
        uint64_t records = UINT64_MAX;
        EXPECT_EQ(store->count(table, records), Answer::done);
        return records;
    }

    // Counts the records with the key that 'row' has.
    uint64_t countLike(uint32_t table, uint32_t index, const Bytes& row) {
        uint64_t records = UINT64_MAX;
        const Bytes key = keyOf(kTables[table].indexes[index], row);
        EXPECT_EQ(store->countByKey(table, index, raw(key), records), Answer::done);
        return records;
    }

    std::unique_ptr<Scan> open(uint32_t table, const ScanRange& range) {
        std::unique_ptr<Scan> scan;
        EXPECT_EQ(store->open(table, range, scan), Answer::done);
        return scan;
    }
    std::unique_ptr<Scan> openWhole(uint32_t table) { return open(table, {ScanRange::Order::table, 0, nullptr}); }
    std::unique_ptr<Scan> openLike(uint32_t table, uint32_t index, const Bytes& row) {
        const Bytes key = keyOf(kTables[table].indexes[index], row);
        return open(table, {ScanRange::Order::index, index, raw(key)});
    }
    std::unique_ptr<Scan> openSorted(uint32_t table, uint32_t index) {
        return open(table, {ScanRange::Order::sorted, index, nullptr});
    }

    std::unique_ptr<Transaction> begin() {
        std::unique_ptr<Transaction> batch;
        EXPECT_EQ(store->begin(batch), Answer::done);
        return batch;
    }

    // The next record, or nothing at the end.
    static std::optional<Bytes> step(uint32_t table, Scan& scan) {
        const Answer answer = scan.next();
        if (answer == Answer::end) return std::nullopt;
        EXPECT_EQ(answer, Answer::done);
        Bytes row(kTables[table].recordSize, '\x55');
        EXPECT_EQ(scan.read(raw(row)), Answer::done);
        return row;
    }

    // All records that are left, in the order of the scan.
    static std::vector<Bytes> drain(uint32_t table, Scan& scan) {
        std::vector<Bytes> rows;
        while (const std::optional<Bytes> row = step(table, scan)) rows.push_back(*row);
        return rows;
    }

    std::unique_ptr<Store> store;
};

}  // namespace mcast6::store::test
