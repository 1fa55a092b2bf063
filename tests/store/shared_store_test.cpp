// The shared store: the conformance suite, on a file and on memory of this process, and that it is lean and gives its
// memory back. What several processes do to each other: tests/shared/.
#include "platform/store/shared/shared_store.h"

#include <unistd.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "tests/store/conformance.h"

namespace mcast6::store::test {
namespace {

using shared::FileOptions;
using shared::SharedStore;

constexpr uint64_t kLimit = uint64_t{1} << 30;

// Its file is gone at once: whoever has it mapped goes on.
std::unique_ptr<SharedStore> makeShared(std::span<const schema::Table> catalog) {
    FileOptions options;
    options.path = "test-" + std::to_string(getpid());
    options.limit = kLimit;
    std::string reason;
    const std::string path = shared::pathOf(options.path, reason);
    (void)unlink(path.c_str());
    std::unique_ptr<SharedStore> store = SharedStore::open(options, catalog, reason);
    EXPECT_NE(store, nullptr) << reason;
    (void)unlink(path.c_str());
    return store;
}

// Is checked whole when it goes.
class Checked final : public Store {
public:
    explicit Checked(std::unique_ptr<SharedStore> inner) : store(std::move(inner)) {}
    ~Checked() override { EXPECT_EQ(store->check(), ""); }

    Answer put(uint32_t table, const std::byte* row) override { return store->put(table, row); }
    Answer get(uint32_t table, const std::byte* key, std::byte* row) override { return store->get(table, key, row); }
    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        return store->patch(table, key, row, fields);
    }
    Answer erase(uint32_t table, const std::byte* key) override { return store->erase(table, key); }
    Answer count(uint32_t table, uint64_t& records) override { return store->count(table, records); }
    Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override {
        return store->countByKey(table, index, key, records);
    }
    Answer open(uint32_t table, const ScanRange& range, std::unique_ptr<Scan>& scan) override {
        return store->open(table, range, scan);
    }
    Answer begin(std::unique_ptr<Transaction>& transaction) override { return store->begin(transaction); }
    uint64_t memory() const override { return store->memory(); }

private:
    const std::unique_ptr<SharedStore> store;
};

std::unique_ptr<Store> makeOnFile(std::span<const schema::Table> catalog) {
    return std::make_unique<Checked>(makeShared(catalog));
}

std::unique_ptr<Store> makePrivately(std::span<const schema::Table> catalog) {
    return std::make_unique<Checked>(SharedStore::makePrivate(catalog, kLimit));
}

INSTANTIATE_TEST_SUITE_P(SharedFile, StoreConformance, testing::Values(&makeOnFile));
INSTANTIATE_TEST_SUITE_P(SharedPrivate, StoreConformance, testing::Values(&makePrivately));

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

class SharedMemory : public testing::TestWithParam<bool> {
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

    std::unique_ptr<SharedStore> store = makeShared(kTables);
};

TEST_P(SharedMemory, TakesAtMost420BytesForARecord) {
    const uint64_t empty = store->memory();
    fill();
    EXPECT_EQ(store->check(), "");
    EXPECT_LT(store->memory() - empty, kRecords * 420);
    EXPECT_GT(store->memory() - empty, kRecords * 208);
}

TEST_P(SharedMemory, ReturnsItsMemoryWhenRecordsGo) {
    // One slab stays for the next record, small arrays, and the log.
    constexpr uint64_t kKept = uint64_t{600} << 10;
    const uint64_t empty = store->memory();
    for (int round = 0; round < 2; ++round) {
        fill();
        eraseAtRandom();
        EXPECT_EQ(store->check(), "");
        EXPECT_LT(store->memory(), empty + kKept);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, SharedMemory, testing::Bool(),
                         [](const auto& shape) { return shape.param ? "Unique" : "Groups"; });

// In a file there are two mappings, one to read and one to write.
TEST(SharedRegion, MovesWhatOverlapsItself) {
    const std::unique_ptr<SharedStore> store = makeShared(kTables);
    ASSERT_NE(store, nullptr);
    ASSERT_EQ(store->lockWriters(), Answer::done);
    shared::Region& region = store->regionForTests();
    region.begin();
    constexpr size_t kWords = 1024;
    std::vector<uint64_t> expected(kWords);
    std::iota(expected.begin(), expected.end(), uint64_t{1});
    const uint64_t* const words = region.view().array<uint64_t>(region.take(kWords * sizeof(uint64_t)));
    region.fill(words, expected.data(), kWords * sizeof(uint64_t));
    for (const size_t by : {1u, 2u, 5u, 100u}) {
        region.move(words + by, words, (kWords - by) * sizeof(uint64_t));
        std::copy_backward(expected.begin(), expected.end() - static_cast<ptrdiff_t>(by), expected.end());
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), words)) << by << " up";
        region.move(words, words + by, (kWords - by) * sizeof(uint64_t));
        std::copy(expected.begin() + static_cast<ptrdiff_t>(by), expected.end(), expected.begin());
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), words)) << by << " down";
    }
    region.undo();
    store->unlockWriters();
}

}  // namespace
}  // namespace mcast6::store::test
