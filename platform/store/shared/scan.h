// Scans of the shared store.
//
// A position is the slot served last, and the key in a sorted walk: plain numbers in the scan's own memory. Nothing of
// a scan lies in the region, so nothing is left behind when its process dies, and nothing has to be told when records
// come and go: sets and tables are walked by ascending slots, which records keep for life.
//
// A scan copies a few records ahead and serves them while the table's sequence number stands still: one record first,
// then twice as many each time. A change voids what was copied; the scan goes on behind the record that it served last.
#pragma once

#include <array>
#include <memory>

#include "platform/store/shared/shared_store.h"

namespace mcast6::store::shared {

class SharedScan final : public Scan {
public:
    // Null when there is no memory.
    static std::unique_ptr<SharedScan> make(SharedStore& store, uint32_t table, const ScanRange& range) noexcept;

    Answer next() override;
    Answer read(std::byte* row) override;
    Answer restart(const std::byte* key) override;

private:
    static constexpr uint32_t kBatch = 16;

    // Where a scan stands.
    struct Position {
        uint32_t from = 0;  // the first slot that is still to come, of the table or the key
        bool hasKey = false;
        uint32_t hash = 0;
        KeyBuffer key{};
        OrderKey order{};  // in a sorted walk: the key's place in it
    };

    SharedScan(SharedStore& of, uint32_t table, const ScanRange& range, std::unique_ptr<std::byte[]> room)
        : store(of), number(table), order(range.order), index(range.index), rows(std::move(room)) {}

    const Table& table() const { return *store.tables[number]; }
    std::byte* rowAt(uint32_t i) const { return rows.get() + size_t{i} * table().description().recordSize; }
    uint32_t fetch(const View& view, Position& at, uint32_t* slots, uint32_t wanted) const;
    void setKey(Position& at, const std::byte* key) const;

    SharedStore& store;
    const uint32_t number;
    const ScanRange::Order order;
    const uint32_t index;
    const std::unique_ptr<std::byte[]> rows;
    std::array<uint32_t, kBatch> slots{};  // of the records copied
    uint32_t count = 0;                    // of them
    uint32_t current = 0;                  // the one under the position
    uint64_t version = SharedStore::kVoid;
    Position position;
    bool isAllKeys = false;
    bool isAtEnd = false;
};

}  // namespace mcast6::store::shared
