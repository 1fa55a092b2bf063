// The shapes of all keys that there are: hashing and comparing a row by its key is hashing and comparing the key.
#include "platform/store/memory/key_shape.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "platform/schema/catalog.h"
#include "tests/store/conformance.h"

namespace mcast6::store::test {
namespace {

using memory::KeyShape;
using Row = std::array<std::byte, schema::kMaxRecordSize>;

// Every primary key, index and sorted key of the catalog and of the tables made up for tests.
std::vector<const schema::Key*> allKeys() {
    std::vector<const schema::Key*> keys;
    const auto take = [&](std::span<const schema::Table> tables) {
        for (const schema::Table& table : tables) {
            keys.push_back(&table.primary);
            for (const schema::Key& index : table.indexes) keys.push_back(&index);
        }
    };
    take(schema::catalog());
    take(kTables);
    return keys;
}

Row randomRow(std::mt19937& random) {
    Row row;
    for (std::byte& byte : row) byte = static_cast<std::byte>(random());
    return row;
}

// The key of a row, put together part by part.
std::vector<std::byte> keyOf(const schema::Key& key, const Row& row) {
    std::vector<std::byte> bytes;
    for (const schema::KeyPart& part : key.parts()) {
        for (uint16_t i = 0; i < part.width; ++i) {
            const bool isBeyond = i >= sizeof part.constant;
            const auto constant = static_cast<std::byte>(isBeyond ? 0 : part.constant >> (8 * i));
            bytes.push_back(part.isConstant ? constant : row[part.offset + size_t{i}]);
        }
    }
    return bytes;
}

// Whether the byte at 'at' of the key comes from the row.
bool comesFromRow(const schema::Key& key, size_t at) {
    size_t end = 0;
    for (const schema::KeyPart& part : key.parts()) {
        end += part.width;
        if (at < end) return !part.isConstant;
    }
    return false;
}

TEST(KeyShapes, ARowIsHashedAndComparedAsItsKeyIs) {
    std::mt19937 random(11);
    for (const schema::Key* key : allKeys()) {
        SCOPED_TRACE(key->word);
        const KeyShape shape(*key);
        const Row row = randomRow(random);
        Row other = randomRow(random);
        const std::vector<std::byte> bytes = keyOf(*key, row);
        ASSERT_EQ(bytes.size(), shape.length());
        memory::KeyBuffer room{};
        EXPECT_EQ(std::memcmp(shape.of(row.data(), room), bytes.data(), bytes.size()), 0);
        EXPECT_EQ(shape.hash(bytes.data()), shape.hashOf(row.data()));
        EXPECT_NE(shape.hash(bytes.data()), 0U);
        EXPECT_TRUE(shape.accepts(bytes.data()));
        EXPECT_TRUE(shape.matches(row.data(), bytes.data()));
        for (const schema::KeyPart& part : key->parts()) {
            if (!part.isConstant) std::copy_n(row.begin() + part.offset, part.width, other.begin() + part.offset);
        }
        EXPECT_TRUE(shape.sameKey(row.data(), other.data()));
        EXPECT_EQ(shape.hashOf(row.data()), shape.hashOf(other.data()));
    }
}

TEST(KeyShapes, EveryByteOfAKeyCounts) {
    std::mt19937 random(12);
    for (const schema::Key* key : allKeys()) {
        SCOPED_TRACE(key->word);
        const KeyShape shape(*key);
        const Row row = randomRow(random);
        std::vector<std::byte> bytes = keyOf(*key, row);
        std::set<uint32_t> hashes{shape.hash(bytes.data())};
        size_t counted = 0;
        for (size_t at = 0; at < bytes.size(); ++at) {
            bytes[at] ^= std::byte{1};
            if (comesFromRow(*key, at)) {
                EXPECT_FALSE(shape.matches(row.data(), bytes.data())) << at;
                hashes.insert(shape.hash(bytes.data()));
                ++counted;
            } else {
                EXPECT_FALSE(shape.accepts(bytes.data())) << at;
            }
            bytes[at] ^= std::byte{1};
        }
        // Two of a few dozen hashes of 31 bits may be the same by chance, hardly more.
        EXPECT_GE(hashes.size(), counted);
    }
}

TEST(KeyShapes, OnlyTheBytesOfAKeyCount) {
    std::mt19937 random(13);
    for (const schema::Key* key : allKeys()) {
        SCOPED_TRACE(key->word);
        const KeyShape shape(*key);
        const Row row = randomRow(random);
        for (size_t at = 0; at < row.size(); ++at) {
            Row other = row;
            other[at] ^= std::byte{0x80};
            EXPECT_EQ(shape.sameKey(row.data(), other.data()), !shape.covers(at, 1)) << at;
        }
    }
}

}  // namespace
}  // namespace mcast6::store::test
