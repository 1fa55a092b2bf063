// Several threads on one table. Made for the thread sanitizer; the rules are checked all the same.
#include <atomic>
#include <thread>

#include "tests/store/conformance.h"

namespace mcast6::store::test {
namespace {

constexpr uint64_t kLasting = 300;  // records of vr 0 stay; those of the writers come and go
constexpr int kRounds = 40;

Bytes record(uint64_t vr, uint64_t group, uint64_t stamp) {
    return makeRow(kOdd, {{"vr", vr}, {"group", group}, {"zone", group % 5}, {"stamp", stamp}, {"note", stamp}});
}

// A record is written whole: stamp and note were put or patched together.
bool isWhole(const Bytes& row) {
    const Bytes note = row.substr(32, 5);
    return row.substr(24, 5) == Bytes(note.rbegin(), note.rend());
}

uint64_t mask(std::initializer_list<std::string_view> fields) {
    uint64_t set = 0;
    for (const std::string_view name : fields) set |= uint64_t{1} << fieldOf(kOdd, name);
    return set;
}

void write(Store& store, uint64_t vr) {
    for (uint64_t round = 1; round <= kRounds; ++round) {
        for (uint64_t group = 0; group < 50; ++group) {
            ASSERT_EQ(store.put(kOddTable, raw(record(vr, group, round))), Answer::done);
        }
        for (uint64_t group = 0; group < 50; ++group) {
            const Bytes row = record(vr, group, round + 1);
            const Bytes key = keyOf(kOdd.primary, row);
            ASSERT_EQ(store.patch(kOddTable, raw(key), raw(row), mask({"stamp", "note"})), Answer::done);
            const Bytes lasting = record(0, group * vr, round);
            ASSERT_EQ(store.patch(kOddTable, raw(keyOf(kOdd.primary, lasting)), raw(lasting), mask({"stamp", "note"})),
                      Answer::done);
            ASSERT_EQ(store.erase(kOddTable, raw(key)), Answer::done);
        }
    }
}

// Walks the table in some order: each lasting record is served once, and every record is whole.
void walk(Store& store, int order) {
    const Bytes key = keyOf(kOddIndexes[kByVr], record(0, 0, 0));
    const ScanRange ranges[] = {{ScanRange::Order::table, 0, nullptr},
                                {ScanRange::Order::index, kByVr, raw(key)},
                                {ScanRange::Order::sorted, kByZone, nullptr}};
    std::unique_ptr<Scan> scan;
    ASSERT_EQ(store.open(kOddTable, ranges[order], scan), Answer::done);
    std::map<Bytes, int> served;
    while (scan->next() == Answer::done) {
        Bytes row(kOdd.recordSize, '\0');
        const Answer answer = scan->read(raw(row));
        ASSERT_TRUE(answer == Answer::done || answer == Answer::absent);
        if (answer == Answer::absent) continue;
        ASSERT_TRUE(isWhole(row));
        ++served[keyOf(kOdd.primary, row)];
    }
    for (uint64_t group = 0; group < kLasting; ++group) {
        ASSERT_EQ(served[keyOf(kOdd.primary, record(0, group, 0))], 1) << "order " << order << ", group " << group;
    }
}

void look(Store& store, const std::atomic<bool>& isOver) {
    while (!isOver) {
        Bytes row(kOdd.recordSize, '\0');
        ASSERT_EQ(store.get(kOddTable, raw(keyOf(kOdd.primary, record(0, 7, 0))), raw(row)), Answer::done);
        ASSERT_TRUE(isWhole(row));
        uint64_t records = 0;
        const Bytes key = keyOf(kOddIndexes[kByVr], record(0, 0, 0));
        ASSERT_EQ(store.countByKey(kOddTable, kByVr, raw(key), records), Answer::done);
        ASSERT_EQ(records, kLasting);
        ASSERT_EQ(store.count(kOddTable, records), Answer::done);
        ASSERT_GE(records, kLasting);
        ASSERT_GT(store.memory(), 0u);
    }
}

}  // namespace

TEST_P(StoreConformance, ThreadsSeeWholeRecordsAndScansMissNothing) {
    for (uint64_t group = 0; group < kLasting; ++group) ASSERT_EQ(put(kOddTable, record(0, group, 1)), Answer::done);
    std::atomic<bool> isOver = false;
    std::vector<std::thread> writers;
    for (const uint64_t vr : {1u, 2u}) writers.emplace_back([this, vr] { write(*store, vr); });
    std::vector<std::thread> readers;
    for (const int order : {0, 1, 2}) {
        readers.emplace_back([this, order, &isOver] {
            do walk(*store, order);
            while (!isOver && !HasFailure());
        });
    }
    readers.emplace_back([this, &isOver] { look(*store, isOver); });
    for (std::thread& writer : writers) writer.join();
    isOver = true;
    for (std::thread& reader : readers) reader.join();
    EXPECT_EQ(count(kOddTable), kLasting);
}

}  // namespace mcast6::store::test
