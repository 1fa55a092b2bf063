// What lies where in a region. All of it is offsets and numbers, so that processes may map it anywhere.
//
//     0           Header
//     kLogAt      the undo log, as far as it was ever needed
//     kHeapAt     the heap: blocks of size classes, the first one unused, so that reference 0 is none
//
// A file that was written by another layout is refused: change kFormat with anything below.
#pragma once

#include <pthread.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/store/shared/view.h"

namespace mcast6::store::shared {

inline constexpr uint32_t kFormat = 1;
inline constexpr uint64_t kLogAt = uint64_t{64} << 10;
inline constexpr uint64_t kHeapAt = uint64_t{256} << 20;
// References have a bit to spare, which tells sets of slots from slots.
inline constexpr uint64_t kMostHeap = (uint64_t{1} << 31) * kUnit;
inline constexpr size_t kTables = 64;
inline constexpr size_t kIndexes = 32;

// Sizes of blocks: 16 bytes times 1 to 4, then times 5 to 8 and their doubles, so that a fifth is wasted at most.
inline constexpr uint32_t kSizeClasses = 4 + 4 * 30;

// The first eight bytes of a file.
inline constexpr uint64_t kComplete = 0x3142443654534D02;  // in this byte order; the other one reads it backwards
inline constexpr uint64_t kCreating = 0x3042443654534D02;

struct Header {
    uint64_t magic;
    uint32_t format;
    uint16_t mutexSize;    // of this C library
    uint16_t pointerSize;  // and of this kind of program
    uint64_t fingerprint;  // of the schema
    std::array<char, 40> bootId;
    uint64_t limit;  // most bytes that the file may have
    uint64_t hashSeed;
    uint64_t hashSecret;

    alignas(64) pthread_mutex_t lock;

    alignas(64) uint64_t logUsed;  // bytes of undo log that count; 0: no change is under way
    uint64_t logBacked;            // ... that have memory behind them
    uint64_t heapUsed;
    uint64_t heapBacked;
    uint64_t freeBytes;     // in the lists of free blocks
    uint64_t punchedBytes;  // of these, without memory behind them
    uint64_t changes;       // begun; so that a glance at an unfinished one can tell whether it is still the same
    uint64_t recoveries;
    uint64_t isAskedForWay;  // by a reader that does not get through
    std::array<Ref, kSizeClasses> freeBlocks;
    std::array<Ref, kTables> tables;
};
static_assert(sizeof(Header) <= kLogAt);

// The head of a free block.
struct FreeBlock {
    Ref next;
    uint32_t isPunched;  // whole pages after its first one have no memory behind them
};

struct HashHead {
    Ref entries;
    uint32_t homes;
    uint32_t slack;
    uint32_t count;
    uint32_t room;  // most entries before it grows
};

struct HashEntry {
    uint32_t hash;  // 0: a gap
    uint32_t ref;
};

struct TableHead {
    uint64_t rowSequence;  // odd: rows or the hash of the primary keys are being changed
    uint64_t sequence;     // odd: anything of the table is being changed
    uint64_t records;
    Ref directory;  // of slabs
    uint32_t slabs;
    uint32_t slabCapacity;
    uint32_t roomyWord;  // the words of the bitmap of roomy slabs before this one are zero
    HashHead primary;
    uint32_t spareSlab;  // the one slab that has memory and no records; kNone: there is none
    std::array<HashHead, kIndexes> indexes;
    std::array<Ref, kIndexes> orders;  // of sorted indexes: their keys in order
};

inline constexpr uint32_t kNone = UINT32_MAX;

}  // namespace mcast6::store::shared
