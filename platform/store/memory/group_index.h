// One secondary or sorted index: for every key the group of the records that have it.
//
// The idea: a group is a dense array of slots, and the cell of a record holds its place in the group. So a count is a
// number in the group's head, the first match is the first entry, each further match costs four bytes, and a removal
// moves the last entry into the gap. A key of one record needs no group: the hash table names the slot
// itself. Keys are stored nowhere: a group's key is that of one record in it, the sample. The
// sample is the record added last, if it is still there: it is the most likely one to be cached.
//
// While a scan is open on a group, nothing in it moves: a removal leaves a hole, and a new record takes the newest hole
// before it goes to the end. The end of the last scan fills the holes from the end, which costs no more than the
// removals that made them.
//
// Invariants: the last entry in use is no hole; without scans there is no hole; entries of the list of holes that lie
// behind the end are void, and nothing is appended before the list is empty. A group of one record may exist (a scan
// is open on it, or there was no memory for the second).
//
// Sorted keys are kept in a tree beside, once each, in a form whose bytes compare as the values do.
#pragma once

#include <cstdint>
#include <functional>
#include <memory_resource>
#include <optional>
#include <set>
#include <string>

#include "platform/schema/schema.h"
#include "platform/store/memory/group_pool.h"
#include "platform/store/memory/key_shape.h"
#include "platform/store/memory/slabs.h"
#include "platform/store/memory/slot_hash.h"

namespace mcast6::store::memory {

// What a scan holds of an index: the group that it is open on. The index keeps it right when the group moves, and
// clears it when the group is removed.
struct GroupHold {
    uint32_t group = UINT32_MAX;
    GroupHold* before = nullptr;
    GroupHold* after = nullptr;

    bool isHeld() const { return group != UINT32_MAX; }
};

// The key of a row on its way through an index.
struct KeyLookup {
    const std::byte* row;
    uint32_t hash;
    // In the index: probed, which is nearly always right, then found; kNone when no record has the key.
    uint32_t place;
};

class GroupIndex {
public:
    static constexpr uint32_t kNone = UINT32_MAX;

    // 'number' is the position of the index in its table, and of its places in the cells.
    GroupIndex(const schema::Key& key, uint32_t number, Memory& memory, Slabs& slabs, GroupPool& pool);

    const KeyShape& shape() const { return keyShape; }

    // Counts the records with this key.
    uint64_t count(uint32_t hash, const std::byte* key) const;

    KeyLookup lookup(const std::byte* row) const { return {row, keyShape.hashOf(row), kNone}; }

    // Prefetching: each step prefetches what the next one reads, and the last one what reserve() and add(), or
    // remove(), will read. Done for all indexes in turn, they wait for memory once instead of once for each index.
    // probe() fills in the place where the later steps start.
    void prefetch(const KeyLookup& of) const { entries.prefetch(of.hash); }
    void probe(KeyLookup& of) const;
    void prefetchAddition(const KeyLookup& of) const;
    void prefetchEntries(const KeyLookup& of, uint32_t slot) const;
    void prefetchRemoval(const KeyLookup& of) const;

    // Makes room for one more record with this key, and finds its place for add(). False when there is no memory.
    // cancelReserve() undoes what is visible of it.
    bool reserve(KeyLookup& of) noexcept;
    void cancelReserve(const KeyLookup& of);

    // Finds the key's place anew, for when the index has changed since.
    void find(KeyLookup& of) const;

    // Needs room and the key's present place. The record need not be in its cell yet.
    void add(const KeyLookup& of, uint32_t slot);

    // Removes the record in 'slot', whose key this is. Needs the probed place.
    void remove(const KeyLookup& of, uint32_t slot);

    // Puts the record in 'slot' in the place of the one in 'standIn', whose key this is. Takes no memory.
    void substitute(const KeyLookup& of, uint32_t standIn, uint32_t slot);

    // Gives memory back after removals.
    void trim() { entries.trim(); }

    // Opens a scan on the records with this key. One record: its slot is the result and there is nothing to hold. No
    // record: kNone. Else the group is held until close().
    uint32_t open(GroupHold& hold, uint32_t hash, const std::byte* key);
    void close(GroupHold& hold);

    // The slot of the first record at or after 'position' in the group, kNone behind the last. The position becomes
    // the one after the record.
    uint32_t step(const GroupHold& hold, uint32_t& position) const;

    // The lowest key in sorted order, above 'flipped' if given: false when there is none. It replaces 'flipped'.
    bool nextKey(bool isFirst, KeyBuffer& flipped) const;

private:
    using Order = std::pmr::set<std::pmr::string, std::less<>>;

    // The upper bit of a reference tells groups from slots.
    static constexpr uint32_t kGroup = uint32_t{1} << 31;
    static constexpr uint32_t kHole = kGroup;

    static bool isGroup(uint32_t ref) { return (ref & kGroup) != 0; }
    static bool isHole(uint32_t entry) { return (entry & kHole) != 0; }
    Group& groupAt(uint32_t ref) { return pool.at(ref & ~kGroup); }
    const Group& groupAt(uint32_t ref) const { return pool.at(ref & ~kGroup); }
    uint32_t sampleOf(uint32_t ref) const { return isGroup(ref) ? groupAt(ref).sample : ref; }

    const Group* probedGroup(const KeyLookup& of) const;
    uint32_t find(uint32_t hash, const std::byte* key) const;
    bool contains(uint32_t ref, uint32_t slot) const;
    bool orderKey(const std::byte* row) noexcept;
    void unorderKey(const std::byte* row);
    void flippedKey(const std::byte* row, KeyBuffer& flipped) const;
    bool makeGroup(uint32_t place) noexcept;
    void moveTo(uint32_t made, uint32_t place);
    void shrink(uint32_t place);
    static void dropTailHoles(Group& group);
    void takeOut(Group& group, uint32_t slot);
    void fillHoles(Group& group);
    void settle(uint32_t place);
    void retarget(uint32_t from, uint32_t to);

    const KeyShape keyShape;
    const uint32_t number;
    Slabs& slabs;
    GroupPool& pool;
    SlotHash entries;
    GroupHold holds;  // the list of all holds begins behind it
    std::optional<Order> order;
};

}  // namespace mcast6::store::memory
