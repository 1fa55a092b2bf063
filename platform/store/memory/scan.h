// Scans of the memory store.
//
// A scan copies a few records ahead under one lock and serves them from its own memory while the table's version does
// not change: one record first, so that the first step costs no more than that, then twice as many each time. A
// change of the table invalidates the copies; the scan continues behind the record that it served last.
//
// A walk of the table goes by slots, which records keep. A walk of a group goes by positions, which the group keeps
// while it is held (see group_index.h); where nothing is held, there was one record only and it has been served. A
// sorted walk goes from key to key and within each as above.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/store/memory/group_index.h"
#include "platform/store/memory/key_shape.h"
#include "platform/store/memory/table.h"
#include "platform/store/store.h"

namespace mcast6::store::memory {

class BatchedScan : public Scan {
public:
    // Null when there is no memory. Gets its key by restart().
    static std::unique_ptr<BatchedScan> make(Table& table, const ScanRange& range) noexcept;

    Answer next() final;
    Answer read(std::byte* row) final;

protected:
    static constexpr uint32_t kBatch = 16;

    BatchedScan(Table& of, std::unique_ptr<std::byte[]> room) : table(of), rows(std::move(room)) {}

    // Copies up to 'wanted' records from the position on, and says how many. Called without the lock.
    virtual uint32_t fetch(uint64_t position, uint32_t wanted) = 0;

    // Before the first record again.
    void rewind();

    // For fetch(), under the lock: copies the records in 'slots' and remembers the table's version.
    void copy(const uint32_t* slots, uint32_t count);

    Table& table;
    std::array<uint64_t, kBatch> behind{};  // the position behind each record copied

private:
    std::byte* rowAt(uint32_t i) const { return rows.get() + size_t{i} * table.schema.recordSize; }

    const std::unique_ptr<std::byte[]> rows;
    uint32_t count = 0;    // records copied
    uint32_t current = 0;  // of them, the one under the position
    uint64_t version = 0;  // of the table when they were copied
    bool isAtEnd = false;
};

class WholeScan final : public BatchedScan {
public:
    WholeScan(Table& of, std::unique_ptr<std::byte[]> room) : BatchedScan(of, std::move(room)) {}

    Answer restart(const std::byte* key) override;

private:
    uint32_t fetch(uint64_t position, uint32_t wanted) override;
};

// The records of one key of an index, or of all keys in sorted order.
class IndexScan final : public BatchedScan {
public:
    IndexScan(Table& of, std::unique_ptr<std::byte[]> room, GroupIndex& by, bool sorted)
        : BatchedScan(of, std::move(room)), index(by), isSorted(sorted) {}
    ~IndexScan() override { close(); }

    Answer restart(const std::byte* key) override;

private:
    enum class State : uint8_t {
        before,  // the next key has not been looked for
        inKey,   // at 'key', which is held if it has several records
        done,
    };

    uint32_t fetch(uint64_t position, uint32_t wanted) override;
    uint32_t fetchKey(uint64_t position, uint32_t wanted);
    uint32_t openKey(uint32_t wanted);
    uint32_t walkKeys(uint64_t position, uint32_t wanted);
    void close();

    GroupIndex& index;
    const bool isSorted;
    bool isAllKeys = false;
    bool isFirstKey = true;
    bool mayHold = false;
    State state = State::done;
    GroupHold hold;
    KeyBuffer key{};      // that of the records, or under way through all keys ...
    KeyBuffer flipped{};  // ... its form in the order
};

}  // namespace mcast6::store::memory
