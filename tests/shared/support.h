// What the tests of several processes on one shared store have in common: a file of their own, made-up changes that are
// the same in every process, and a plain model to compare with.
#pragma once

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "platform/store/memory/memory_store.h"
#include "platform/store/shared/shared_store.h"
#include "platform/store/transaction.h"
#include "tests/store/conformance.h"

namespace mcast6::store::test {

using shared::FileOptions;
using shared::SharedStore;

// The long form of a test, or the short one: MCAST6_LONG_TESTS is set for the nightly run.
inline uint64_t rounds(uint64_t few, uint64_t many) { return std::getenv("MCAST6_LONG_TESTS") != nullptr ? many : few; }

// A file that is gone when the test is over.
class StoreFile {
public:
    StoreFile() {
        options.path = "/dev/shm/mcast6db.test-" + std::to_string(getpid());
        options.limit = uint64_t{1} << 30;
        remove();
    }
    StoreFile(const StoreFile&) = delete;
    StoreFile& operator=(const StoreFile&) = delete;
    ~StoreFile() { remove(); }

    void remove() const { (void)unlink(options.path.c_str()); }

    std::unique_ptr<SharedStore> open(std::string& reason) const {
        return SharedStore::open(options, std::span<const schema::Table>(kTables), reason);
    }
    std::unique_ptr<SharedStore> open() const {
        std::string reason;
        std::unique_ptr<SharedStore> store = open(reason);
        EXPECT_NE(store, nullptr) << reason;
        return store;
    }
    std::unique_ptr<SharedStore> openReadOnly() const {
        FileOptions reading = options;
        reading.isReadOnly = true;
        std::string reason;
        std::unique_ptr<SharedStore> store =
            SharedStore::open(reading, std::span<const schema::Table>(kTables), reason);
        EXPECT_NE(store, nullptr) << reason;
        return store;
    }

    FileOptions options;
};

// Memory that a process shares with its children, all zeros.
template <class T>
T* shareWithChildren() {
    void* const memory = mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<T*>(memory);
}

// A change, made up from a number: the same one in every process.
struct Change {
    enum class Kind : uint8_t { put, patch, erase };
    Kind kind;
    uint32_t table;
    Bytes row;
    Bytes key;
    uint64_t fields;
};

// 'range' keys, so that records come, change and go.
inline Change changeAt(uint64_t number, uint64_t range) {
    std::mt19937_64 random(number * 7919 + 13);
    Change change{};
    change.table = random() % 3 == 0 ? kMfibTable : kOddTable;
    const uint64_t choice = random() % 10;
    change.kind = choice < 5 ? Change::Kind::put : choice < 7 ? Change::Kind::patch : Change::Kind::erase;
    const uint64_t key = random() % range;
    const schema::Table& table = kTables[change.table];
    if (change.table == kOddTable) {
        change.row = makeRow(table, {{"vr", key % 2},
                                     {"group", key},
                                     {"zone", random() % 3},
                                     {"kind", random() % 2},
                                     {"stamp", random() % 4},
                                     {"note", random()}});
        for (const std::string_view name : {"zone", "kind", "note"}) {
            if (random() % 2 == 0) change.fields |= uint64_t{1} << fieldOf(table, name);
        }
    } else {
        change.row = makeRow(table, {{"vrfId", key % 2},
                                     {"groupAddr", key / 8},
                                     {"sourceAddr", key % 8},
                                     {"inIfIndex", random() % 3},
                                     {"regIfIndex", random() % 2},
                                     {"smoothVersion", random()}});
        for (const std::string_view name : {"inIfIndex", "smoothVersion"}) {
            if (random() % 2 == 0) change.fields |= uint64_t{1} << fieldOf(table, name);
        }
    }
    change.key = keyOf(table.primary, change.row);
    return change;
}

// To a store, or as a step of a batch.
template <class Target>
Answer apply(Target& target, const Change& change) {
    if (change.kind == Change::Kind::put) return target.put(change.table, raw(change.row));
    if (change.kind == Change::Kind::erase) return target.erase(change.table, raw(change.key));
    return target.patch(change.table, raw(change.key), raw(change.row), change.fields);
}

// All changes as one batch: the answer of its end.
inline Answer applyAsOne(Store& store, const std::vector<Change>& changes) {
    std::unique_ptr<Transaction> batch;
    const Answer begun = store.begin(batch);
    if (begun != Answer::done) return begun;
    for (const Change& change : changes) (void)apply(*batch, change);
    return batch->commit();
}

// One number of all records, whatever their order.
inline uint64_t digest(Store& store) {
    uint64_t sum = 0;
    for (uint32_t table = 0; table < std::size(kTables); ++table) {
        std::unique_ptr<Scan> scan;
        EXPECT_EQ(store.open(table, {ScanRange::Order::table, 0, nullptr}, scan), Answer::done);
        std::array<std::byte, schema::kMaxRecordSize> row;
        Answer answer = Answer::done;
        while ((answer = scan->next()) == Answer::done) {
            if (scan->read(row.data()) != Answer::done) continue;
            uint64_t hash = table + 1;
            for (uint32_t i = 0; i < kTables[table].recordSize; ++i) {
                hash = (hash ^ std::to_integer<uint64_t>(row[i])) * 1099511628211U;
            }
            sum += (hash ^ hash >> 31) * 0x9E3779B97F4A7C15U;
        }
        EXPECT_EQ(answer, Answer::end);
    }
    return sum;
}

inline std::unique_ptr<Store> makeModel() { return makeMemoryStore(std::span<const schema::Table>(kTables)); }

}  // namespace mcast6::store::test
