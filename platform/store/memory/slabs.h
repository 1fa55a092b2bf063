// The records of a table, each in a cell that a 32-bit slot names. A record keeps its slot for life.
//
// Cells lie in slabs of kCells. The first kSpan slabs are mapped one by one, so that a small table stays small; those
// after them by spans of kSpan, so that a large one lies in huge pages (see memory.h). What was mapped together goes
// back to the operating system when the last record in it goes, but for one span that is kept for the next record. New
// records take the lowest free slot, so that the upper slabs become empty when the table shrinks. A bitmap of live
// cells makes the walk of the table a walk over memory.
//
// A cell is the packed row, then one 32-bit place for each index (see group_index.h). Where that costs little, cells
// are padded to whole cache lines: then the key, which comes first in most rows, lies in one line.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/store/memory/bit_set.h"
#include "platform/store/memory/memory.h"

namespace mcast6::store::memory {

class Slabs {
public:
    static constexpr uint32_t kNone = kNoBit;
    // Slots stay below this, so that a reference has a bit to spare.
    static constexpr uint32_t kSlots = uint32_t{1} << 31;

    Slabs(Memory& from, size_t rowSize, size_t placesPerCell);
    Slabs(const Slabs&) = delete;
    Slabs& operator=(const Slabs&) = delete;
    ~Slabs();

    // Makes room for one record; false when there is no memory.
    bool reserve() noexcept;

    // The lowest free slot, now live. Needs room. What the cell holds is left over from others.
    uint32_t take();

    void release(uint32_t slot);

    std::byte* row(uint32_t slot) { return cells[slot / kCells] + (slot % kCells) * stride; }
    const std::byte* row(uint32_t slot) const { return cells[slot / kCells] + (slot % kCells) * stride; }
    uint32_t& place(uint32_t slot, uint32_t index) { return places(slot)[index]; }

    // The first live slot at or after 'slot', or kNone.
    uint32_t next(uint32_t slot) const;

    uint64_t records() const { return recordCount; }

    void prefetch(uint32_t slot) const {
        const std::byte* const cell = row(slot);
        for (size_t offset = 0; offset < placesAt; offset += 64) __builtin_prefetch(cell + offset);
    }
    void prefetchPlaces(uint32_t slot) const { __builtin_prefetch(row(slot) + placesAt, 1); }
    void prefetchPlace(uint32_t slot, uint32_t index) const {
        __builtin_prefetch(row(slot) + placesAt + index * sizeof(uint32_t), 1);
    }

private:
    static constexpr uint32_t kCells = 1024;
    static constexpr uint32_t kWords = kCells / 64;
    static constexpr uint32_t kSpan = 16;

    struct Slab {
        uint32_t count;
        uint32_t roomyWord;  // the words of 'live' before this one are full
        std::array<uint64_t, kWords> live;
    };

    // The slabs that are mapped together, by any of them: the first and how many.
    static uint32_t spanStart(uint32_t slab) { return slab < kSpan ? slab : slab - slab % kSpan; }
    static uint32_t spanLength(uint32_t slab) { return slab < kSpan ? 1 : kSpan; }

    uint32_t* places(uint32_t slot) { return reinterpret_cast<uint32_t*>(row(slot) + placesAt); }
    bool map(uint32_t first) noexcept;
    void unmap(uint32_t first);
    void keepOrUnmap(uint32_t first);
    bool isEmpty(uint32_t first) const;
    size_t slabSize() const { return kCells * stride; }
    size_t spanSize(uint32_t first) const { return spanLength(first) * slabSize(); }

    Memory& memory;
    const size_t placesAt;
    const size_t stride;
    uint64_t recordCount = 0;
    uint32_t spare = kNone;  // the first slab of the one span that is mapped without records
    // Of each slab. The addresses stand apart so that they stay in the nearest cache: every access begins with one.
    std::pmr::vector<std::byte*> cells;  // null: not mapped, no records
    std::pmr::vector<Slab> slabs;
    BitSet roomy;     // slabs that are mapped and not full
    BitSet used;      // slabs with records
    BitSet unmapped;  // slabs of the list that are not mapped
};

}  // namespace mcast6::store::memory
