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

// Calls f with every primary key, index and sorted key of the catalog and of the tables made up for tests: the key, its
// shape and a row. Different ones at random for each key.
template <class F>
void forEveryKey(const F& f) {
    std::mt19937 random(11);
    const auto see = [&](const schema::Key& key) {
        SCOPED_TRACE(key.word);
        Bytes row(schema::kMaxRecordSize, '\0');
        for (char& byte : row) byte = static_cast<char>(random());
        f(key, KeyShape(key), row);
    };
    for (const std::span<const schema::Table> tables : {schema::catalog(), std::span<const schema::Table>(kTables)}) {
        for (const schema::Table& table : tables) {
            see(table.primary);
            for (const schema::Key& index : table.indexes) see(index);
        }
    }
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
    forEveryKey([](const schema::Key& key, const KeyShape& shape, const Bytes& row) {
        const Bytes composed = keyOf(key, row);
        ASSERT_EQ(composed.size(), shape.length());
        memory::KeyBuffer room{};
        EXPECT_EQ(std::memcmp(shape.of(raw(row), room), composed.data(), composed.size()), 0);
        EXPECT_EQ(shape.hash(raw(composed)), shape.hashOf(raw(row)));
        EXPECT_NE(shape.hash(raw(composed)), 0U);
        EXPECT_TRUE(shape.accepts(raw(composed)));
        EXPECT_TRUE(shape.matches(raw(row), raw(composed)));
    });
}

TEST(KeyShapes, EveryByteOfAKeyCounts) {
    forEveryKey([](const schema::Key& key, const KeyShape& shape, const Bytes& row) {
        Bytes composed = keyOf(key, row);
        std::set<uint32_t> hashes{shape.hash(raw(composed))};
        size_t counted = 0;
        for (size_t at = 0; at < composed.size(); ++at) {
            composed[at] ^= 1;
            if (comesFromRow(key, at)) {
                EXPECT_FALSE(shape.matches(raw(row), raw(composed))) << at;
                hashes.insert(shape.hash(raw(composed)));
                ++counted;
            } else {
                EXPECT_FALSE(shape.accepts(raw(composed))) << at;
            }
            composed[at] ^= 1;
        }
        // Two of a few dozen hashes of 31 bits may be the same by chance, hardly more.
        EXPECT_GE(hashes.size(), counted);
    });
}

TEST(KeyShapes, OnlyTheBytesOfAKeyCount) {
    forEveryKey([](const schema::Key& /*key*/, const KeyShape& shape, const Bytes& row) {
        for (size_t at = 0; at < row.size(); ++at) {
            Bytes other = row;
            other[at] ^= 1;
            const bool isSame = !shape.covers(at, 1);
            EXPECT_EQ(shape.sameKey(raw(row), raw(other)), isSame) << at;
            if (isSame) {
                EXPECT_EQ(shape.hashOf(raw(row)), shape.hashOf(raw(other))) << at;
            }
        }
    });
}

}  // namespace
}  // namespace mcast6::store::test
