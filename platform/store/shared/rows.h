// The records of a table, each in a cell that a 32-bit slot names. A record keeps its slot for life.
//
// Cells lie in slabs of kCells, each with a bitmap of its live cells. The directory names the slabs and tells which
// have room; a slab without memory is one that has. New records take the lowest free slot, so that the upper slabs run
// empty when the table shrinks; an empty slab is given back, but for one that is kept for the next record.
#pragma once

#include <cstdint>
#include <string>

#include "platform/store/shared/layout.h"
#include "platform/store/shared/region.h"
#include "platform/store/shared/view.h"

namespace mcast6::store::shared {

inline constexpr uint32_t kCells = 1024;

struct SlabHead {
    uint32_t count;
    uint32_t roomyWord;  // the words of 'live' before this one are full
    uint64_t live[kCells / 64];
    uint64_t reserved;
};

// What a reader sees of them.
class RowsView {
public:
    RowsView(const View& of, const TableHead& from, size_t cellSize) : view(of), head(from), stride(cellSize) {}

    // Throws Torn when there is no such cell.
    const std::byte* row(uint32_t slot) const {
        return view.array<std::byte>(slab(slot / kCells), sizeof(SlabHead) + slot % kCells * stride);
    }

    // The first live slot at or after 'slot', or kNone.
    uint32_t next(uint32_t slot) const;
    bool isLive(uint32_t slot) const;

    void prefetch(uint32_t slot) const {
        const std::byte* const at = row(slot);
        for (size_t offset = 0; offset < stride; offset += 64) __builtin_prefetch(at + offset);
    }

    std::string check(uint64_t& bytes) const;

    size_t slabBytes() const { return sizeof(SlabHead) + kCells * stride; }
    static size_t directoryBytes(uint32_t capacity) {
        return capacity * sizeof(Ref) + capacity / 64 * sizeof(uint64_t);
    }

private:
    Ref slab(uint32_t number) const {
        const Ref directory = peek(head.directory);
        if (number >= peek(head.slabs)) [[unlikely]]
            throw Torn{};
        view.expect(directory, (uint64_t{number} + 1) * sizeof(Ref));
        const Ref at = peek(view.array<Ref>(directory)[number]);
        if (at == 0) [[unlikely]]
            throw Torn{};
        view.expect(at, slabBytes());
        return at;
    }

    const View view;
    const TableHead& head;
    const size_t stride;
};

class RowsWriter {
public:
    RowsWriter(Region& in, const TableHead& of, size_t cellSize) : region(in), head(of), stride(cellSize) {}

    // Makes sure that the lowest free slot has memory, and says which it is. Disturbs no reader. Throws NoRoom.
    uint32_t prepare();

    // Makes the slot that prepare() told live. Its row comes before.
    void take(uint32_t slot);

    void release(uint32_t slot);

    const std::byte* row(uint32_t slot) const { return RowsView(region.view(), head, stride).row(slot); }

private:
    size_t slabBytes() const { return sizeof(SlabHead) + kCells * stride; }
    const Ref* refs() const { return region.view().array<Ref>(head.directory); }
    const uint64_t* roomy() const {
        return region.view().array<uint64_t>(head.directory, head.slabCapacity * sizeof(Ref));
    }
    const SlabHead& slab(uint32_t number) const { return region.view().at<SlabHead>(refs()[number]); }
    uint32_t addSlab();
    void setRoomy(uint32_t number, bool isRoomy);
    void giveSlab(uint32_t number);
    uint32_t lowestRoomy() const;

    Region& region;
    const TableHead& head;
    const size_t stride;
};

}  // namespace mcast6::store::shared
