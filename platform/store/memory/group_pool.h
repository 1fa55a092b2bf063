// Groups: the slots of the records that are equal in one index, in one block of memory each, named by a 31-bit
// reference.
//
// Blocks come in some twenty sizes. Small ones are cut from chunks that hold blocks of one size only. Larger blocks are
// mapped on their own.
//
// Growth takes memory, shrinking never does: a large block is cut short where it lies, and a small one moves to a chunk
// of smaller blocks that has room, or to one in reserve. A group shrinks to three eighths of its block at most, so the
// reserve is three empty chunks for eight in use. It is filled when the pool grows, mostly by addresses without pages
// so far, and when a chunk runs empty; beyond that, empty chunks go back to the operating system.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/store/memory/memory.h"

namespace mcast6::store::memory {

// The head of a block; 'capacity' entries follow it. What they mean: see group_index.h.
struct Group {
    uint32_t capacity;
    uint32_t live;    // slots among the entries
    uint32_t used;    // entries, holes included
    uint32_t sample;  // one of the slots: its record's key is the group's
    uint32_t hole;    // the newest hole, or kNoHole
    uint32_t scans;   // open on this group

    static constexpr uint32_t kNoHole = UINT32_MAX >> 1;

    uint32_t* slots() { return reinterpret_cast<uint32_t*>(this + 1); }
    const uint32_t* slots() const { return reinterpret_cast<const uint32_t*>(this + 1); }
};

class GroupPool {
public:
    static constexpr uint32_t kNone = UINT32_MAX;

    explicit GroupPool(Memory& from) : memory(from), bases(&from), chunks(&from) { vacant.fill(kNone); }
    GroupPool(const GroupPool&) = delete;
    GroupPool& operator=(const GroupPool&) = delete;
    ~GroupPool();

    // An empty group with room for 'slots' entries at least; kNone when there is no memory.
    uint32_t make(uint64_t slots) noexcept;

    // The same without taking memory: kNone when there is no room at hand.
    uint32_t makeOfReserve(uint64_t slots) noexcept;

    // Cuts the block of a group short where it lies, to 'slots' entries or more; false when it must stay as it is.
    bool cut(uint32_t ref, uint64_t slots) noexcept;

    void drop(uint32_t ref);

    Group& at(uint32_t ref) { return *reinterpret_cast<Group*>(address(ref)); }
    const Group& at(uint32_t ref) const { return *reinterpret_cast<const Group*>(address(ref)); }

    // Returns the reserve, when all groups are gone.
    void purge();

private:
    // A block's reference: its chunk in the upper bits, where it lies in the chunk in the lower, in units of 16 bytes.
    static constexpr size_t kUnit = 16;
    static constexpr uint32_t kUnitBits = 11;
    static constexpr uint32_t kUnits = uint32_t{1} << kUnitBits;
    static constexpr uint32_t kChunks = uint32_t{1} << (31 - kUnitBits);
    static constexpr size_t kChunkSize = kUnit << kUnitBits;
    static constexpr std::array<uint16_t, 16> kSizes{32,  48,  64,   96,   128,  192,  256,  384,
                                                     512, 768, 1024, 1536, 2048, 3072, 4096, 6144};
    static constexpr uint8_t kAlone = kSizes.size();  // the class of a chunk that is one block

    struct Chunk {
        size_t size;
        uint32_t units;          // of a block
        uint32_t live;           // blocks
        uint32_t fresh;          // units never used so far begin here
        uint32_t freed;          // the block freed last, by its unit; each names the one before
        uint32_t before, after;  // chunks of its size with room; after: the reserve and free entries of the list too
        uint8_t sizeClass;
    };

    std::byte* address(uint32_t ref) const { return bases[ref >> kUnitBits] + size_t{ref % kUnits} * kUnit; }
    static uint64_t bytesFor(uint64_t slots) { return sizeof(Group) + slots * sizeof(uint32_t); }
    static uint8_t classOf(uint64_t size);
    uint32_t addChunk(size_t size) noexcept;
    void removeChunk(uint32_t number);
    void putInReserve(uint32_t number);
    void fillReserve() noexcept;
    uint32_t takeReserved();
    uint32_t chunkOfReserve(uint8_t sizeClass);
    // How many chunks.
    static uint32_t reserveFor(uint32_t chunksInUse) { return (chunksInUse * 3 + 7) / 8; }
    uint32_t makeOfClass(uint8_t sizeClass);
    uint32_t makeIn(uint32_t number, size_t blockSize);
    uint32_t takeBlock(uint32_t number);
    bool isFull(const Chunk& chunk) const;
    void link(uint32_t number);
    void unlink(uint32_t number);

    Memory& memory;
    // Of each chunk. The addresses stand apart so that they stay in the nearest cache.
    std::pmr::vector<std::byte*> bases;  // null: the entry is free
    std::pmr::vector<Chunk> chunks;
    uint32_t freeEntry = kNone;
    uint32_t inUse = 0;                          // chunks of small blocks
    uint32_t reserved = 0;                       // empty ones ...
    uint32_t reserve = kNone;                    // ... of which this is the first
    std::array<uint32_t, kSizes.size()> vacant;  // the first chunk of each size with room
};

}  // namespace mcast6::store::memory
