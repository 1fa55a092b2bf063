#include "platform/store/shared/hash.h"

namespace mcast6::store::shared {
namespace {

constexpr uint32_t kFirstSlack = 8;

// Four fifths full at most: a search then looks at three entries on the average.
constexpr uint32_t roomIn(uint32_t homes) { return homes - homes / 5; }

}  // namespace

bool HashView::hasRoomFor(uint32_t hash) const {
    if (head.entries == 0 || head.count >= head.room) return false;
    const HashEntry* const entries = array();
    uint64_t gap = home(hash, head.homes);
    while (gap < size() && entries[gap].hash != 0) ++gap;
    return gap < size();
}

OtherArray HashWriter::prepare(uint32_t hash) {
    if (HashView(region.view(), head).hasRoomFor(hash)) return {};
    const bool isFull = head.count >= head.room;
    return rebuilt(isFull ? std::max(kFewestHomes, head.homes + head.homes / 3) : head.homes,
                   std::max(isFull ? head.slack : head.slack * 2, kFirstSlack));
}

// One pass over both arrays in order, without asking for any key.
OtherArray HashWriter::rebuilt(uint32_t homes, uint32_t slack) {
    const uint64_t size = uint64_t{homes} + slack;
    const size_t bytes = (size + 1) * sizeof(HashEntry);
    if (size >= kNone) throw NoRoom{};
    const Ref made = region.take(bytes);
    const View view = region.view();
    const HashEntry* const to = view.array<HashEntry>(made);
    region.zero(to, bytes);
    const HashEntry* const from = view.array<HashEntry>(head.entries);
    const uint64_t oldSize = head.entries != 0 ? uint64_t{head.homes} + head.slack : 0;
    uint64_t next = 0;
    for (uint64_t place = 0; place < oldSize; ++place) {
        const HashEntry entry = from[place];
        if (entry.hash == 0) continue;
        const uint64_t target = std::max(next, HashView::home(entry.hash, homes));
        // One gap must be left at the end, for the entry that is about to come.
        if (target + 1 >= size) {
            region.give(made, bytes);
            return rebuilt(homes, slack * 2);
        }
        region.init(to[target].hash, entry.hash);
        region.init(to[target].ref, entry.ref);
        next = target + 1;
    }
    return {made, homes, slack};
}

void HashWriter::adopt(const OtherArray& other) {
    if (other.entries == 0) return;
    if (head.entries != 0) {
        region.give(head.entries, (uint64_t{head.homes} + head.slack + 1) * sizeof(HashEntry));
    }
    const HashHead changed{other.entries, other.homes, other.slack, head.count, roomIn(other.homes)};
    region.write(&head, &changed, sizeof changed);
}

void HashWriter::insert(uint32_t hash, uint32_t ref) {
    const HashEntry* const entries = region.view().array<HashEntry>(head.entries);
    uint64_t place = HashView::home(hash, head.homes);
    while (entries[place].hash != 0 && entries[place].hash <= hash) ++place;
    uint64_t gap = place;
    while (entries[gap].hash != 0) ++gap;
    if (gap != place) region.move(entries + place + 1, entries + place, (gap - place) * sizeof(HashEntry));
    region.set(entries[place], {hash, ref});
    region.set(head.count, head.count + 1);
}

void HashWriter::setRef(uint32_t place, uint32_t ref) {
    region.set(region.view().array<HashEntry>(head.entries)[place].ref, ref);
}

void HashWriter::erase(uint32_t place) {
    const HashEntry* const entries = region.view().array<HashEntry>(head.entries);
    uint64_t end = uint64_t{place} + 1;
    while (entries[end].hash != 0 && HashView::home(entries[end].hash, head.homes) < end) ++end;
    if (end - 1 != place) region.move(entries + place, entries + place + 1, (end - 1 - place) * sizeof(HashEntry));
    region.set(entries[end - 1], {0, 0});
    region.set(head.count, head.count - 1);
}

OtherArray HashWriter::prepareSmaller() {
    if (!isLoose()) return {};
    return rebuilt(std::max(kFewestHomes, head.count + head.count / 2), kFirstSlack);
}

}  // namespace mcast6::store::shared
