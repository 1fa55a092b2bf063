// The memory store without memory: every allocation of every change is made to fail once, and nothing may change.
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <random>

#include "platform/store/memory/memory_store.h"
#include "tests/store/conformance.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MCAST6_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define MCAST6_SANITIZED 1
#endif
#endif

namespace {

// Allocations that still succeed; below zero all do.
thread_local int64_t g_left = -1;
thread_local bool g_hasFailed = false;

[[maybe_unused]] bool failsNow() {
    if (g_left < 0) return false;
    if (g_left-- > 0) return false;
    g_left = -1;
    g_hasFailed = true;
    return true;
}

}  // namespace

// The sanitizers have these for themselves.
#ifndef MCAST6_SANITIZED
// Not inlined, or the compiler takes them for a mismatched pair.
[[gnu::noinline]] void* operator new(size_t size) {
    void* const block = failsNow() ? nullptr : std::malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept;  // clang declares this one only when asked to
[[gnu::noinline]] void operator delete(void* block, size_t) noexcept { std::free(block); }

extern "C" void* mmap(void* address, size_t size, int protection, int flags, int file, off_t offset) noexcept {
    if (failsNow()) return MAP_FAILED;
    return reinterpret_cast<void*>(syscall(SYS_mmap, address, size, protection, flags, file, offset));
}
#endif

namespace mcast6::store::test {
namespace {

Bytes record(uint64_t group, uint64_t zone) {
    return makeRow(kOdd, {{"vr", 1}, {"group", group}, {"zone", zone}, {"kind", zone}, {"stamp", group}});
}

// What can be seen of the store.
struct View {
    std::vector<Bytes> rows;
    std::vector<uint64_t> counts;
    std::vector<Bytes> sorted;
    bool operator==(const View&) const = default;
};

std::vector<Bytes> drain(Store& store, const ScanRange& range) {
    std::unique_ptr<Scan> scan;
    EXPECT_EQ(store.open(kOddTable, range, scan), Answer::done);
    std::vector<Bytes> rows;
    while (scan->next() == Answer::done) {
        rows.emplace_back(kOdd.recordSize, '\0');
        EXPECT_EQ(scan->read(raw(rows.back())), Answer::done);
    }
    return rows;
}

View look(Store& store, const std::vector<Bytes>& samples) {
    View view{drain(store, {ScanRange::Order::table, 0, nullptr}),
              {},
              drain(store, {ScanRange::Order::sorted, kByZone, nullptr})};
    for (const Bytes& sample : samples) {
        for (uint32_t index = 0; index < std::size(kOddIndexes); ++index) {
            uint64_t records = 0;
            EXPECT_EQ(store.countByKey(kOddTable, index, raw(keyOf(kOddIndexes[index], sample)), records),
                      Answer::done);
            view.counts.push_back(records);
        }
    }
    return view;
}

// Runs 'change' on a store of 'records' records, with the first allocation failing, then the second, and so on until
// none fails. Returns how many did.
template <class Change>
int sweep(uint64_t records, const std::vector<Bytes>& samples, Answer expected, const Change& change) {
    for (int failing = 0;; ++failing) {
        const std::unique_ptr<Store> store = makeMemoryStore(kTables);
        for (uint64_t i = 0; i < records; ++i) EXPECT_EQ(store->put(kOddTable, raw(record(i, i % 3))), Answer::done);
        const View before = look(*store, samples);
        g_hasFailed = false;
        g_left = failing;
        const Answer answer = change(*store);
        g_left = -1;
        if (!g_hasFailed) {
            EXPECT_EQ(answer, expected);
            return failing;
        }
        if (answer == expected) continue;  // it could do without
        EXPECT_EQ(answer, Answer::noMemory) << failing;
        EXPECT_TRUE(look(*store, samples) == before) << failing;
        EXPECT_EQ(change(*store), expected) << failing;
    }
}

TEST(MemoryFaults, AChangeHappensWholeOrNotAtAll) {
#ifdef MCAST6_SANITIZED
    GTEST_SKIP() << "the sanitizer has the allocator";
#endif
    // A new record in an empty table, one beside others, one at which containers grow, one in a new slab.
    int failures = 0;
    for (const uint64_t records : {0u, 1u, 2u, 3u, 5u, 19u, 20u, 40u, 1024u}) {
        const Bytes row = record(records, 77);
        failures += sweep(records, {row, record(0, 0)}, Answer::done,
                          [&](Store& store) { return store.put(kOddTable, raw(row)); });
    }
    EXPECT_GT(failures, 30);
    // A record that moves within its indexes, to new keys and to present ones.
    for (const uint64_t zone : {88u, 1u}) {
        const Bytes row = record(0, zone);
        failures = sweep(24, {row, record(0, 0)}, Answer::present,
                         [&](Store& store) { return store.put(kOddTable, raw(row)); });
        if (zone == 88) {
            EXPECT_GT(failures, 0);
        }
        const uint64_t fields = uint64_t{1} << fieldOf(kOdd, "zone") | uint64_t{1} << fieldOf(kOdd, "kind");
        const Bytes key = keyOf(kOdd.primary, row);
        sweep(24, {row, record(0, 0)}, Answer::done,
              [&](Store& store) { return store.patch(kOddTable, raw(key), raw(row), fields); });
    }
}

// New records in two tables, records that move within their indexes and such that do not, and a removal.
TEST(MemoryFaults, ABatchHappensWholeOrNotAtAll) {
#ifdef MCAST6_SANITIZED
    GTEST_SKIP() << "the sanitizer has the allocator";
#endif
    const Bytes moved = record(0, 88);
    const Bytes joined = record(1, 2);
    const Bytes patched = record(2, 99);
    const Bytes gone = record(3, 0);
    // Made here, as the test itself needs memory for them.
    const Bytes other = record(1, 1);
    const Bytes patchedKey = keyOf(kOdd.primary, patched);
    const Bytes notedKey = keyOf(kOdd.primary, record(4, 0));
    const Bytes goneKey = keyOf(kOdd.primary, gone);
    std::vector<Bytes> rows;
    for (uint64_t i = 5000; i < 5030; ++i) rows.push_back(record(i, i % 7));
    const auto batch = [&](Store& store) {
        std::unique_ptr<Transaction> steps;
        Answer answer = store.begin(steps);
        const auto step = [&](Answer expected, const auto& call) {
            if (answer != Answer::done) return;
            answer = call();
            if (answer == expected) answer = Answer::done;
        };
        const uint64_t fields = uint64_t{1} << fieldOf(kOdd, "zone") | uint64_t{1} << fieldOf(kOdd, "kind");
        const uint64_t note = uint64_t{1} << fieldOf(kOdd, "note");
        for (const Bytes& row : rows) step(Answer::done, [&] { return steps->put(kOddTable, raw(row)); });
        step(Answer::done, [&] { return steps->put(kRefusingTable, raw(other)); });
        step(Answer::present, [&] { return steps->put(kOddTable, raw(moved)); });
        step(Answer::present, [&] { return steps->put(kOddTable, raw(joined)); });
        step(Answer::done, [&] { return steps->patch(kOddTable, raw(patchedKey), raw(patched), fields); });
        step(Answer::done, [&] { return steps->patch(kOddTable, raw(notedKey), raw(patched), note); });
        step(Answer::done, [&] { return steps->erase(kOddTable, raw(goneKey)); });
        return answer == Answer::done ? steps->commit() : answer;
    };
    int failures = 0;
    for (const uint64_t records : {24u, 1020u}) {
        failures += sweep(records, {moved, joined, patched, gone, record(5000, 2)}, Answer::done, batch);
    }
    EXPECT_GT(failures, 60);
}

TEST(MemoryFaults, AScanThatFindsNoMemoryIsNotOpened) {
#ifdef MCAST6_SANITIZED
    GTEST_SKIP() << "the sanitizer has the allocator";
#endif
    const int failures = sweep(3, {}, Answer::done, [](Store& store) {
        std::unique_ptr<Scan> scan;
        return store.open(kOddTable, {ScanRange::Order::sorted, kByZone, nullptr}, scan);
    });
    EXPECT_EQ(failures, 2);
}

TEST(MemoryFaults, AWalkOfAScanAllocatesNothing) {
#ifdef MCAST6_SANITIZED
    GTEST_SKIP() << "the sanitizer has the allocator";
#endif
    const std::unique_ptr<Store> store = makeMemoryStore(kTables);
    for (uint64_t i = 0; i < 500; ++i) ASSERT_EQ(store->put(kOddTable, raw(record(i, i % 3))), Answer::done);
    const Bytes key = keyOf(kOddIndexes[kByZone], record(0, 1));
    for (const ScanRange range :
         {ScanRange{ScanRange::Order::table, 0, nullptr}, ScanRange{ScanRange::Order::index, kByZone, raw(key)},
          ScanRange{ScanRange::Order::sorted, kByZone, nullptr}}) {
        std::unique_ptr<Scan> scan;
        ASSERT_EQ(store->open(kOddTable, range, scan), Answer::done);
        Bytes row(kOdd.recordSize, '\0');
        g_hasFailed = false;
        g_left = 0;
        int found = 0;
        for (int round = 0; round < 2; ++round) {
            while (scan->next() == Answer::done && scan->read(raw(row)) == Answer::done) ++found;
            scan->restart(range.key);
        }
        g_left = -1;
        EXPECT_FALSE(g_hasFailed);
        EXPECT_GT(found, 300);
    }
}

TEST(MemoryFaults, RemovalsTakeNoMemoryAndReturnThatOfTheIndexes) {
#ifdef MCAST6_SANITIZED
    GTEST_SKIP() << "the sanitizer has the allocator";
#endif
    // Groups of 5 to 10,000 records: in small blocks, in large ones of the heap and in mapped ones.
    constexpr uint64_t kRecords = 40'000;
    constexpr uint64_t kReturned = kRecords * 30;
    std::vector<Bytes> rows;
    for (uint64_t i = 0; i < kRecords; ++i) {
        rows.push_back(makeRow(kTables[kMfibTable], {{"vrId", 0},
                                                     {"vrfId", i % 4},
                                                     {"groupAddr", i / 200},
                                                     {"sourceAddr", i % 8000},
                                                     {"inIfIndex", i * 7919 % 60},
                                                     {"regIfIndex", i % 3}}));
    }
    const std::unique_ptr<Store> store = makeMemoryStore(kTables);
    for (const Bytes& row : rows) ASSERT_EQ(store->put(kMfibTable, raw(row)), Answer::done);
    std::shuffle(rows.begin(), rows.end(), std::mt19937(11));
    const uint64_t full = store->memory();
    uint64_t left = kRecords;
    g_hasFailed = false;
    for (const Bytes& row : rows) {
        const Bytes key = keyOf(kTables[kMfibTable].primary, row);
        g_left = 0;
        const Answer answer = store->erase(kMfibTable, raw(key));
        g_left = -1;
        ASSERT_EQ(answer, Answer::done);
        // Few slabs are empty by now, but the indexes are smaller.
        if (--left == kRecords / 10) {
            EXPECT_LT(store->memory(), full - kReturned);
        }
    }
    EXPECT_FALSE(g_hasFailed);
}

}  // namespace
}  // namespace mcast6::store::test
