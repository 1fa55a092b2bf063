// The memory store: the conformance suite, and that it is lean and gives its memory back.
#include "platform/store/memory/memory_store.h"

#include <algorithm>
#include <numeric>
#include <random>

#include "tests/store/conformance.h"
#include "tests/store/faulty.h"

namespace mcast6::store::test {
namespace {

std::unique_ptr<Store> makeStore(std::span<const schema::Table> catalog) { return makeMemoryStore(catalog); }

FaultPlan noFaults;
std::unique_ptr<Store> makeFaultyStore(std::span<const schema::Table> catalog) {
    return std::make_unique<FaultyStore>(makeMemoryStore(catalog), noFaults);
}

INSTANTIATE_TEST_SUITE_P(Memory, StoreConformance, testing::Values(&makeStore));
INSTANTIATE_TEST_SUITE_P(FaultyWithoutFaults, StoreConformance, testing::Values(&makeFaultyStore));

constexpr uint64_t kRecords = 60'000;

// 'sources' for each group, 60 incoming interfaces; or every record with a group and a source of its own.
Bytes entry(uint64_t number, bool isUnique) {
    const uint64_t group = isUnique ? number : number / 200;
    const uint64_t source = isUnique ? number : number % 200;
    return makeRow(kTables[kMfibTable], {{"vrId", 0},
                                         {"vrfId", number % 4},
                                         {"groupAddr", group},
                                         {"sourceAddr", source},
                                         {"inIfIndex", number * 7919 % 60},
                                         {"regIfIndex", number % 3}});
}

class MemoryStore : public testing::TestWithParam<bool> {
protected:
    void fill() {
        for (uint64_t number = 0; number < kRecords; ++number) {
            ASSERT_EQ(store->put(kMfibTable, raw(entry(number, GetParam()))), Answer::done);
        }
    }

    void eraseAtRandom() {
        std::vector<uint64_t> order(kRecords);
        std::iota(order.begin(), order.end(), uint64_t{0});
        std::shuffle(order.begin(), order.end(), std::mt19937(7));
        for (const uint64_t number : order) {
            const Bytes key = keyOf(kTables[kMfibTable].primary, entry(number, GetParam()));
            ASSERT_EQ(store->erase(kMfibTable, raw(key)), Answer::done);
        }
    }

    std::unique_ptr<Store> store = makeMemoryStore(kTables);
};

TEST_P(MemoryStore, TakesAtMost450BytesForARecord) {
    const uint64_t empty = store->memory();
    fill();
    EXPECT_LT(store->memory() - empty, kRecords * 450);
    EXPECT_GT(store->memory() - empty, kRecords * (208 + 11 * sizeof(uint32_t)));
}

TEST_P(MemoryStore, ReturnsItsMemoryWhenRecordsGo) {
    // One slab stays for the next record.
    constexpr uint64_t kKept = uint64_t{300} << 10;
    const uint64_t empty = store->memory();
    for (int round = 0; round < 2; ++round) {
        fill();
        eraseAtRandom();
        EXPECT_LT(store->memory(), empty + kKept);
    }
}

TEST(MemoryStoreBatch, ChangesAsManyRecordsAsItsBoundAllows) {
    const std::unique_ptr<Store> store = makeMemoryStore(kTables, 2);
    std::unique_ptr<Transaction> batch;
    ASSERT_EQ(store->begin(batch), Answer::done);
    const auto row = [](uint64_t group) { return makeRow(kOdd, {{"vr", 1}, {"group", group}}); };
    EXPECT_EQ(batch->put(kOddTable, raw(row(1))), Answer::done);
    EXPECT_EQ(batch->put(kOddTable, raw(row(2))), Answer::done);
    EXPECT_EQ(batch->put(kOddTable, raw(row(3))), Answer::tooLarge);
    EXPECT_EQ(batch->put(kOddTable, raw(row(2))), Answer::present) << "a record that it has changed already";
    EXPECT_EQ(batch->commit(), Answer::done);
    uint64_t records = 0;
    EXPECT_EQ(store->count(kOddTable, records), Answer::done);
    EXPECT_EQ(records, 2u);
}

INSTANTIATE_TEST_SUITE_P(Shapes, MemoryStore, testing::Bool(),
                         [](const auto& shape) { return shape.param ? "Unique" : "Groups"; });

}  // namespace
}  // namespace mcast6::store::test
