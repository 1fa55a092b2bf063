// One table of the memory store: records in slabs, a hash of their primary keys, an index for each further key, and
// the lock over all of it.
//
// Every change reserves, then commits. The first part finds everything and reserves all memory, and may fail; the
// second changes the records and cannot fail. So a change is done whole or not at all.
//
// A batch is applied in two parts as well: prepare() adds all that needs memory, and can be undone without; finish()
// changes and removes, and needs none. A record that moves within an index is prepared by a stand-in: a cell that holds
// the record to come and is entered under its new keys, so that the record itself takes its places later.
//
// 'version' counts the changes. A scan that has copied a few records ahead need not look at the table again until the
// version moves.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/schema/schema.h"
#include "platform/store/memory/group_index.h"
#include "platform/store/memory/group_pool.h"
#include "platform/store/memory/key_shape.h"
#include "platform/store/memory/memory.h"
#include "platform/store/memory/slabs.h"
#include "platform/store/memory/slot_hash.h"
#include "platform/store/memory/table_lock.h"
#include "platform/store/memory/writer_gate.h"
#include "platform/store/staged.h"
#include "platform/store/store.h"

namespace mcast6::store::memory {

class Table {
public:
    // The most indexes that a table may have.
    static constexpr size_t kIndexes = 32;

    // A step of a batch that is applied, and how far it is.
    struct BatchStep {
        const Step* step;
        uint32_t hash;      // of the primary key
        uint32_t slot;      // of the record
        uint32_t standIn;   // a slot, or Slabs::kNone
        uint64_t affected;  // the indexes in which the record moves
    };

    // 'gate' keeps writers out during batches. Throws std::length_error when the table has too many indexes.
    Table(const schema::Table& description, WriterGate& gate);

    Answer put(const std::byte* row);
    Answer get(const std::byte* key, std::byte* row) const;
    Answer read(const std::byte* key, std::byte* row) const;  // the same inline, for the hot path
    Answer patch(const std::byte* key, const std::byte* row, uint64_t fields);
    Answer erase(const std::byte* key);
    uint64_t count() const;
    uint64_t countByKey(uint32_t index, const std::byte* key) const;
    uint64_t memoryBytes() const;

    // Applies the steps of a batch, under the lock: prepare() all or, when there is no memory, nothing; then finish(),
    // or undo() for a failure elsewhere.
    bool prepare(std::span<BatchStep> steps);
    void finish(std::span<const BatchStep> steps);
    void undo(std::span<const BatchStep> steps);
    TableLock& batchLock() { return lock; }

    // As store::Store::open; null when there is no memory.
    std::unique_ptr<Scan> open(const ScanRange& range);

private:
    friend class BatchedScan;
    friend class WholeScan;
    friend class IndexScan;

    using IndexKeys = std::array<KeyLookup, kIndexes>;

    // A record's slot and row; Slabs::kNone and null where there is none.
    struct Cell {
        uint32_t slot;
        const std::byte* row;
    };

    struct Gap {
        uint16_t offset;
        uint16_t width;
    };

    void hashKeys(const std::byte* row, uint64_t which, IndexKeys& keys) const;
    void prefetchAddition(uint64_t which, IndexKeys& keys) const;  // finds where reserveKeys() begins
    void prefetchRemoval(uint32_t slot, uint64_t which, IndexKeys& keys) const;
    bool reserveKeys(uint64_t which, IndexKeys& keys);
    Cell find(const std::byte* key, uint32_t hash) const;
    Answer copyOut(const std::byte* key, uint32_t hash, std::byte* row) const;
    [[gnu::noinline]] Answer getShared(const std::byte* key, uint32_t hash, std::byte* row) const;
    uint32_t add(const std::byte* row, uint32_t hash, IndexKeys& keys);
    void remove(uint32_t place, uint32_t slot);
    bool prepareStep(BatchStep& step);
    bool prepareStandIn(BatchStep& step, const std::byte* row, uint64_t which);
    void finishStep(const BatchStep& step);
    void takeStandInsPlace(const BatchStep& step);
    uint32_t placeOf(uint32_t hash, uint32_t slot) const;
    Answer insert(const std::byte* row, uint32_t hash, IndexKeys& keys);
    bool change(uint32_t slot, const std::byte* row, uint64_t which);
    void store(uint32_t slot, const std::byte* row);
    void overlay(std::byte* row, const std::byte* from, uint64_t fields) const;
    void moved() { version.store(version.load(std::memory_order_relaxed) + 1, std::memory_order_release); }

    const schema::Table& schema;
    const KeyShape primaryKey;
    Memory memory;
    Slabs slabs;
    GroupPool pool;
    SlotHash primary;
    std::vector<std::unique_ptr<GroupIndex>> indexes;      // which do not move
    uint64_t allIndexes = 0;                               // bit i: index i
    std::array<uint64_t, schema::kMaxFields> indexesOf{};  // of each field
    std::vector<Gap> gaps;                                 // bytes that no field names
    mutable TableLock lock;
    WriterGate& gate;
    std::atomic<uint64_t> version{0};
};

inline Table::Cell Table::find(const std::byte* key, uint32_t hash) const {
    Cell found{Slabs::kNone, nullptr};
    primary.find(hash, [&](uint32_t slot) {
        const std::byte* const row = slabs.row(slot);
        if (!primaryKey.matches(row, key)) return false;
        found = {slot, row};
        return true;
    });
    return found;
}

inline Answer Table::copyOut(const std::byte* key, uint32_t hash, std::byte* row) const {
    const Cell found = find(key, hash);
    if (found.row == nullptr) return Answer::absent;
    std::memcpy(row, found.row, schema.recordSize);
    return Answer::done;
}

// The hot path: inlined into its one caller. The fewer instructions between two reads, the sooner the processor starts
// the second one while the first still waits for memory.
[[gnu::always_inline]] inline Answer Table::read(const std::byte* key, std::byte* row) const {
    if (!primaryKey.accepts(key)) return Answer::absent;
    const uint32_t hash = primaryKey.hash(key);
    return isAlone() ? copyOut(key, hash, row) : getShared(key, hash, row);
}

}  // namespace mcast6::store::memory
