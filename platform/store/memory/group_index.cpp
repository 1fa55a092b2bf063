#include "platform/store/memory/group_index.h"

#include <cstring>
#include <new>
#include <string_view>

namespace mcast6::store::memory {
namespace {

// Groups of this many entries and more have blocks of exact size, and grow by a quarter.
constexpr uint64_t kLarge = 1024;

constexpr uint64_t grown(uint64_t capacity) { return capacity < kLarge ? capacity + 1 : capacity + capacity / 4; }

}  // namespace

GroupIndex::GroupIndex(const schema::Key& key, uint32_t position, Memory& memory, Slabs& cells, GroupPool& groups)
    : keyShape(key), number(position), slabs(cells), pool(groups), entries(memory) {
    if (key.kind() == schema::KeyKind::sorted) order.emplace(&memory);
}

uint32_t GroupIndex::find(uint32_t hash, const std::byte* key) const {
    return entries.find(hash, [&](uint32_t ref) { return keyShape.matches(slabs.row(sampleOf(ref)), key); });
}

void GroupIndex::find(KeyLookup& of) const {
    of.place = entries.find(of.hash, [&](uint32_t ref) { return keyShape.sameKey(slabs.row(sampleOf(ref)), of.row); });
}

uint64_t GroupIndex::count(uint32_t hash, const std::byte* key) const {
    const uint32_t place = find(hash, key);
    if (place == kNone) return 0;
    const uint32_t ref = entries.at(place);
    return isGroup(ref) ? groupAt(ref).live : 1;
}

void GroupIndex::probe(KeyLookup& of) const {
    of.place = entries.probe(of.hash);
    if (of.place == kNone) return;
    const uint32_t ref = entries.at(of.place);
    if (isGroup(ref)) {
        __builtin_prefetch(&groupAt(ref), 1);
    } else {
        keyShape.prefetch(slabs.row(ref));
    }
}

// The key's group, most likely; null: there is none.
const Group* GroupIndex::probedGroup(const KeyLookup& of) const {
    return of.place != kNone && isGroup(entries.at(of.place)) ? &groupAt(entries.at(of.place)) : nullptr;
}

void GroupIndex::prefetchAddition(const KeyLookup& of) const {
    const Group* const group = probedGroup(of);
    if (group == nullptr) return;
    __builtin_prefetch(group->slots() + group->used, 1);
    keyShape.prefetch(slabs.row(group->sample));
}

void GroupIndex::prefetchEntries(const KeyLookup& of, uint32_t slot) const {
    const Group* const group = probedGroup(of);
    if (group == nullptr) return;
    __builtin_prefetch(group->slots() + group->used - 1, 1);
    const uint32_t position = slabs.place(slot, number);
    if (position < group->used) __builtin_prefetch(group->slots() + position, 1);
}

void GroupIndex::prefetchRemoval(const KeyLookup& of) const {
    const Group* const group = probedGroup(of);
    if (group != nullptr) slabs.prefetchPlace(group->slots()[group->used - 1], number);
}

bool GroupIndex::reserve(KeyLookup& of) noexcept {
    of.place = entries.findFrom(of.place, of.hash,
                                [&](uint32_t ref) { return keyShape.sameKey(slabs.row(sampleOf(ref)), of.row); });
    if (of.place == kNone) return entries.reserve(of.hash) && orderKey(of.row);
    const uint32_t ref = entries.at(of.place);
    if (!isGroup(ref)) return makeGroup(of.place);
    const Group& group = groupAt(ref);
    if (group.used < group.capacity || group.live < group.used) return true;
    const uint32_t made = pool.make(grown(group.capacity));
    if (made == GroupPool::kNone) return false;
    moveTo(made, of.place);
    return true;
}

void GroupIndex::cancelReserve(const KeyLookup& of) {
    if (!order) return;
    KeyLookup present = of;
    find(present);
    if (present.place == kNone) unorderKey(of.row);
}

void GroupIndex::flippedKey(const std::byte* row, KeyBuffer& flipped) const {
    KeyBuffer room;
    keyShape.flip(keyShape.of(row, room), flipped.data());
}

bool GroupIndex::orderKey(const std::byte* row) noexcept {
    if (!order) return true;
    KeyBuffer flipped;
    flippedKey(row, flipped);
    try {
        order->emplace(reinterpret_cast<const char*>(flipped.data()), keyShape.length());
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void GroupIndex::unorderKey(const std::byte* row) {
    KeyBuffer flipped;
    flippedKey(row, flipped);
    const Order::iterator found =
        order->find(std::string_view(reinterpret_cast<const char*>(flipped.data()), keyShape.length()));
    if (found != order->end()) order->erase(found);
}

// Turns the single record of a key into a group.
bool GroupIndex::makeGroup(uint32_t place) noexcept {
    const uint32_t made = pool.make(2);
    if (made == GroupPool::kNone) return false;
    const uint32_t slot = entries.at(place);
    Group& group = pool.at(made);
    group.slots()[0] = slot;
    group.used = group.live = 1;
    group.sample = slot;
    slabs.place(slot, number) = 0;
    entries.set(place, made | kGroup);
    return true;
}

// Moves a group to the empty block of another size. Its entries keep their positions.
void GroupIndex::moveTo(uint32_t made, uint32_t place) {
    const uint32_t ref = entries.at(place);
    const Group& from = groupAt(ref);
    Group& to = pool.at(made);
    const uint32_t capacity = to.capacity;
    to = from;
    to.capacity = capacity;
    std::memcpy(to.slots(), from.slots(), from.used * sizeof(uint32_t));
    if (from.scans > 0) retarget(ref, made | kGroup);
    pool.drop(ref & ~kGroup);
    entries.set(place, made | kGroup);
}

// Gives a part of a group's block back. Without the room for a smaller block the larger one stays until the next time.
void GroupIndex::shrink(uint32_t place) {
    const uint32_t ref = entries.at(place) & ~kGroup;
    const uint32_t used = pool.at(ref).used;
    if (pool.cut(ref, used + used / 2)) return;
    const uint32_t made = pool.makeOfReserve(used + used / 2);
    if (made != GroupPool::kNone) moveTo(made, place);
}

void GroupIndex::add(const KeyLookup& of, uint32_t slot) {
    if (of.place == kNone) return entries.insert(of.hash, slot);
    Group& group = groupAt(entries.at(of.place));
    uint32_t position = group.used;
    while (group.hole != Group::kNoHole) {
        const uint32_t hole = group.hole;
        group.hole = group.slots()[hole] & ~kHole;
        if (hole >= group.used) continue;
        position = hole;
        break;
    }
    if (position == group.used) ++group.used;
    group.slots()[position] = slot;
    group.sample = slot;
    ++group.live;
    slabs.place(slot, number) = position;
}

// Whether the record in 'slot' is in what this reference names. Reads no other record.
bool GroupIndex::contains(uint32_t ref, uint32_t slot) const {
    if (!isGroup(ref)) return ref == slot;
    const Group& group = groupAt(ref);
    const uint32_t position = slabs.place(slot, number);
    return position < group.used && group.slots()[position] == slot;
}

void GroupIndex::remove(const KeyLookup& of, uint32_t slot) {
    const uint32_t place = entries.findFrom(of.place, of.hash, [&](uint32_t ref) { return contains(ref, slot); });
    const uint32_t ref = entries.at(place);
    if (!isGroup(ref)) {
        entries.erase(place);
        if (order) unorderKey(of.row);
        return;
    }
    Group& group = groupAt(ref);
    takeOut(group, slot);
    if (group.live > 0) return settle(place);
    if (group.scans > 0) retarget(ref, kNone);
    pool.drop(ref & ~kGroup);
    entries.erase(place);
    if (order) unorderKey(of.row);
}

void GroupIndex::substitute(const KeyLookup& of, uint32_t standIn, uint32_t slot) {
    const uint32_t place = entries.find(of.hash, [&](uint32_t ref) { return contains(ref, standIn); });
    const uint32_t ref = entries.at(place);
    if (!isGroup(ref)) return entries.set(place, slot);
    Group& group = groupAt(ref);
    const uint32_t position = slabs.place(standIn, number);
    group.slots()[position] = slot;
    slabs.place(slot, number) = position;
    if (group.sample == standIn) group.sample = slot;
}

void GroupIndex::takeOut(Group& group, uint32_t slot) {
    uint32_t* const slots = group.slots();
    const uint32_t position = slabs.place(slot, number);
    --group.live;
    if (position == group.used - 1) {
        --group.used;
        dropTailHoles(group);
    } else if (group.scans > 0) {
        slots[position] = kHole | group.hole;
        group.hole = position;
    } else {
        const uint32_t last = slots[--group.used];
        slots[position] = last;
        slabs.place(last, number) = position;
    }
    // The last entry is no hole.
    if (group.sample == slot && group.live > 0) group.sample = slots[group.used - 1];
}

void GroupIndex::dropTailHoles(Group& group) {
    while (group.used > 0 && isHole(group.slots()[group.used - 1])) --group.used;
}

void GroupIndex::fillHoles(Group& group) {
    uint32_t* const slots = group.slots();
    while (group.hole != Group::kNoHole) {
        const uint32_t hole = group.hole;
        group.hole = slots[hole] & ~kHole;
        if (hole >= group.used) continue;
        const uint32_t last = slots[--group.used];
        slots[hole] = last;
        slabs.place(last, number) = hole;
        dropTailHoles(group);
    }
}

// Gives a group that has lost records the form that fits its size, unless a scan holds it.
void GroupIndex::settle(uint32_t place) {
    const uint32_t ref = entries.at(place);
    const Group& group = groupAt(ref);
    if (group.scans > 0) return;
    if (group.live == 1) {
        entries.set(place, group.slots()[0]);
        pool.drop(ref & ~kGroup);
    } else if (group.used * 4 < group.capacity) {
        shrink(place);
    }
}

uint32_t GroupIndex::open(GroupHold& hold, uint32_t hash, const std::byte* key) {
    const uint32_t place = find(hash, key);
    if (place == kNone) return kNone;
    const uint32_t ref = entries.at(place);
    if (!isGroup(ref)) return ref;
    ++groupAt(ref).scans;
    hold = {ref, &holds, holds.after};
    if (holds.after != nullptr) holds.after->before = &hold;
    holds.after = &hold;
    return kNone;
}

void GroupIndex::close(GroupHold& hold) {
    if (hold.before != nullptr) hold.before->after = hold.after;
    if (hold.after != nullptr) hold.after->before = hold.before;
    const uint32_t ref = hold.group;
    hold = {};
    if (ref == kNone) return;
    Group& group = groupAt(ref);
    if (--group.scans > 0) return;
    fillHoles(group);
    const uint32_t hash = keyShape.hashOf(slabs.row(sampleOf(ref)));
    settle(entries.find(hash, [&](uint32_t other) { return other == ref; }));
}

uint32_t GroupIndex::step(const GroupHold& hold, uint32_t& position) const {
    const Group& group = groupAt(hold.group);
    while (position < group.used) {
        const uint32_t entry = group.slots()[position++];
        if (!isHole(entry)) return entry;
    }
    return kNone;
}

void GroupIndex::retarget(uint32_t from, uint32_t to) {
    for (GroupHold* hold = holds.after; hold != nullptr; hold = hold->after) {
        if (hold->group == from) hold->group = to;
    }
}

bool GroupIndex::nextKey(bool isFirst, KeyBuffer& flipped) const {
    const std::string_view last(reinterpret_cast<const char*>(flipped.data()), keyShape.length());
    const Order::const_iterator next = isFirst ? order->begin() : order->upper_bound(last);
    if (next == order->end()) return false;
    std::memcpy(flipped.data(), next->data(), next->size());
    return true;
}

}  // namespace mcast6::store::memory
