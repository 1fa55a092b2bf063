// A hash table of 32-bit references. It stores the hash of what a reference names, not the thing itself: the caller of
// a search compares what the hash finds.
//
// The idea: entries lie in one array in ascending order of their hashes, with gaps. An entry's home is its hash scaled
// to the array, so a hash is found at its home or shortly after it. From that follows
//   - a search reads one line of memory, mostly, and ends at the first greater hash;
//   - the table grows by one pass over both arrays in order, without asking for any key. So it can grow in small steps
//     and stay well filled. It shrinks by such a pass within its array, whose end it gives back: that takes no memory;
//   - removal closes the gap that it leaves: there are no tombstones, and nothing degrades.
//
// Invariants: hashes ascend; an entry lies at its home or after it with no gap between; hash 0 is a gap. The array is
// longer than the range of homes by 'slack' entries, for those that the end would cut off.
//
// A function passed to the table must not call the table.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/store/memory/memory.h"

namespace mcast6::store::memory {

class SlotHash {
public:
    static constexpr uint32_t kNone = UINT32_MAX;

    explicit SlotHash(Memory& from) : memory(from) {}
    SlotHash(const SlotHash&) = delete;
    SlotHash& operator=(const SlotHash&) = delete;
    ~SlotHash() { release(); }

    // The place of the entry with this hash for which same(ref) holds, or kNone.
    template <class Same>
    uint32_t find(uint32_t hash, const Same& same) const {
        return count != 0 ? search(entries + home(hash), hash, same) : kNone;
    }

    // The same from a place on that probe() found, while the table is unchanged.
    template <class Same>
    uint32_t findFrom(uint32_t probed, uint32_t hash, const Same& same) const {
        return probed != kNone ? search(entries + probed, hash, same) : kNone;
    }

    // The place of the first entry with this hash, or kNone: most likely what find() will return.
    uint32_t probe(uint32_t hash) const {
        return find(hash, [](uint32_t) { return true; });
    }

    void prefetch(uint32_t hash) const {
        if (count != 0) __builtin_prefetch(entries + home(hash));
    }

    uint32_t at(uint32_t place) const { return entries[place].ref; }
    void set(uint32_t place, uint32_t ref) { entries[place].ref = ref; }

    // Makes room for one entry with this hash; false when there is no memory. Removals keep the room.
    bool reserve(uint32_t hash) {
        if (count >= room) return grow();
        const Entry* entry = entries + home(hash);
        while (entry->hash != 0) ++entry;
        return entry < entries + size() || grow();
    }

    // Needs room. Moves other entries: places found before are void.
    void insert(uint32_t hash, uint32_t ref) {
        Entry* place = entries + home(hash);
        while (place->hash != 0 && place->hash <= hash) ++place;
        Entry* gap = place;
        while (gap->hash != 0) ++gap;
        std::memmove(place + 1, place, static_cast<size_t>(gap - place) * sizeof(Entry));
        *place = {hash, ref};
        ++count;
    }

    // Moves other entries: places found before are void.
    void erase(uint32_t place) {
        uint32_t end = place + 1;
        while (entries[end].hash != 0 && home(entries[end].hash) < end) ++end;
        std::memmove(entries + place, entries + place + 1, (end - place - 1) * sizeof(Entry));
        entries[end - 1] = {0, 0};
        --count;
    }

    // Gives memory back when the table has become much too large.
    void trim() {
        if (count * 3 < homes && homes > kFewest) shrink();
        if (count == 0 && bytes > kSmall) release();
    }

private:
    struct Entry {
        uint32_t hash;
        uint32_t ref;
    };

    static constexpr uint64_t kFewest = 24;
    static constexpr size_t kSmall = 64 * sizeof(Entry);  // an array that may stay without entries

    template <class Same>
    uint32_t search(const Entry* from, uint32_t hash, const Same& same) const {
        for (const Entry* entry = from; entry->hash != 0 && entry->hash <= hash; ++entry) {
            if (entry->hash == hash && same(entry->ref)) return static_cast<uint32_t>(entry - entries);
        }
        return kNone;
    }

    uint64_t home(uint32_t hash) const { return (uint64_t{hash} * homes) >> 32; }
    uint64_t size() const { return homes + slack; }

    bool grow();
    void shrink();
    bool rebuild(uint64_t newHomes, uint64_t newSlack);
    void adopt(Entry* array, size_t arrayBytes, uint64_t newHomes, uint64_t newSlack);
    void release();

    Memory& memory;
    Entry* entries = nullptr;  // one gap more than size() says, as a sentinel
    size_t bytes = 0;          // of the array, which may be longer than that
    uint64_t homes = 0;
    uint64_t slack = 0;
    uint64_t count = 0;
    uint64_t room = 0;  // most entries before it grows
};

}  // namespace mcast6::store::memory
