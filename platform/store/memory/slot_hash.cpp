#include "platform/store/memory/slot_hash.h"

namespace mcast6::store::memory {
namespace {

constexpr uint64_t kFirstSlack = 8;

// Four fifths full at most: a search then looks at three entries on the average.
constexpr uint64_t roomIn(uint64_t homes) { return homes - homes / 5; }

}  // namespace

bool SlotHash::grow() {
    // Called for want of room in general, or after the last home only.
    const uint64_t newHomes = count < room ? homes : std::max(kFewest, homes + homes / 3);
    return rebuild(newHomes, std::max(count < room ? slack * 2 : slack, kFirstSlack));
}

// Homes come closer together, so every entry goes forward or stays, and meets none that is still to go.
void SlotHash::shrink() {
    const uint64_t newHomes = std::max(kFewest, count + count / 2);
    uint64_t next = 0;
    for (uint64_t from = 0; from < size(); ++from) {
        const Entry entry = entries[from];
        if (entry.hash == 0) continue;
        const uint64_t place = std::max(next, (uint64_t{entry.hash} * newHomes) >> 32);
        entries[from] = {0, 0};
        entries[place] = entry;
        next = place + 1;
    }
    // One gap must be left at the end, for the entry that is about to come.
    const uint64_t newSlack = std::max(kFirstSlack, next < newHomes ? 0 : next + 1 - newHomes);
    adopt(entries, memory.shrink(entries, bytes, (newHomes + newSlack + 1) * sizeof(Entry)), newHomes, newSlack);
}

bool SlotHash::rebuild(uint64_t newHomes, uint64_t newSlack) {
    const uint64_t newSize = newHomes + newSlack;
    if (newSize >= kNone) return false;
    auto* const fresh = static_cast<Entry*>(memory.take((newSize + 1) * sizeof(Entry)));
    if (fresh == nullptr) return false;
    uint64_t next = 0;
    for (uint64_t from = 0; from < size(); ++from) {
        const Entry entry = entries[from];
        if (entry.hash == 0) continue;
        const uint64_t place = std::max(next, (uint64_t{entry.hash} * newHomes) >> 32);
        // One gap must be left at the end, for the entry that is about to come.
        if (place + 1 >= newSize) {
            memory.give(fresh, (newSize + 1) * sizeof(Entry));
            return rebuild(newHomes, newSlack * 2);
        }
        fresh[place] = entry;
        next = place + 1;
    }
    const uint64_t kept = count;
    release();
    count = kept;
    adopt(fresh, (newSize + 1) * sizeof(Entry), newHomes, newSlack);
    return true;
}

void SlotHash::adopt(Entry* array, size_t arrayBytes, uint64_t newHomes, uint64_t newSlack) {
    entries = array;
    bytes = arrayBytes;
    homes = newHomes;
    slack = newSlack;
    room = roomIn(newHomes);
}

void SlotHash::release() {
    if (entries != nullptr) memory.give(entries, bytes);
    entries = nullptr;
    bytes = 0;
    homes = slack = count = room = 0;
}

}  // namespace mcast6::store::memory
