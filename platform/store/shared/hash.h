// A hash table of 32-bit references in a region: entries in one array in ascending order of their hashes, with gaps,
// each at its home or shortly after it. The memory store's table (memory/slot_hash.h) tells the idea.
//
// It knows the hash of what a reference stands for, not the thing itself: whoever looks for something compares what the
// hash finds. Searches may meet a change under way; all else is the writer's.
//
// An array that is too small is replaced in two steps: prepare() makes a larger one beside it, which takes a while and
// disturbs no reader, and adopt() puts it in place. The same makes a table smaller.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/store/shared/layout.h"
#include "platform/store/shared/region.h"
#include "platform/store/shared/view.h"

namespace mcast6::store::shared {

// An array that waits to be put in place of a table's.
struct OtherArray {
    Ref entries = 0;
    uint32_t homes = 0;
    uint32_t slack = 0;
};

class HashView {
public:
    HashView(const View& of, const HashHead& from) : view(of), head(from) {}

    // The place of the entry with this hash for which same(ref) holds, or kNone.
    template <class Same>
    uint32_t find(uint32_t hash, const Same& same) const {
        const Ref entries = peek(head.entries);
        if (entries == 0) return kNone;
        const uint32_t homes = peek(head.homes);
        const uint64_t size = uint64_t{homes} + peek(head.slack);
        view.expect(entries, (size + 1) * sizeof(HashEntry));
        const HashEntry* const array = view.array<HashEntry>(entries);
        for (uint64_t place = home(hash, homes); place <= size; ++place) {
            const uint32_t found = peek(array[place].hash);
            if (found == hash) {
                if (same(peek(array[place].ref))) return static_cast<uint32_t>(place);
            } else if (found == 0 || found > hash) {
                break;
            }
        }
        return kNone;
    }

    // A place that find() would look at, or kNone.
    uint32_t probe(uint32_t hash) const {
        return find(hash, [](uint32_t) { return true; });
    }

    uint32_t at(uint32_t place) const { return peek(array()[place].ref); }
    uint32_t hashAt(uint32_t place) const { return peek(array()[place].hash); }

    void prefetch(uint32_t hash) const {
        const Ref entries = peek(head.entries);
        if (entries != 0) view.prefetch(entries, home(hash, peek(head.homes)) * sizeof(HashEntry));
    }

    // Whether one more entry has room, and stays clear of the array's end.
    bool hasRoomFor(uint32_t hash) const;

    static uint64_t home(uint32_t hash, uint32_t homes) { return (uint64_t{hash} * homes) >> 32; }

    // Checks the table by itself, and calls each(hash, ref) for its entries. Tells what is wrong, or nothing. Adds the
    // bytes of its block.
    template <class Each>
    std::string check(uint64_t& bytes, const Each& each) const;

private:
    friend class HashWriter;
    const HashEntry* array() const { return view.array<HashEntry>(head.entries); }
    uint64_t size() const { return uint64_t{head.homes} + head.slack; }

    const View view;
    const HashHead& head;
};

class HashWriter {
public:
    static constexpr uint32_t kFewestHomes = 24;

    HashWriter(Region& in, const HashHead& of) : region(in), head(of) {}

    // A larger array where one more entry with this hash has no room; none where it has. Throws NoRoom.
    OtherArray prepare(uint32_t hash);
    // Whether the table has become much too large, and a smaller array for it.
    bool isLoose() const { return uint64_t{head.count} * 3 < head.homes && head.homes > kFewestHomes; }
    OtherArray prepareSmaller();
    void adopt(const OtherArray& other);

    // Needs room. Moves other entries: places found before are void, as they are after erase().
    void insert(uint32_t hash, uint32_t ref);
    void erase(uint32_t place);
    void setRef(uint32_t place, uint32_t ref);

private:
    OtherArray rebuilt(uint32_t homes, uint32_t slack);

    Region& region;
    const HashHead& head;
};

template <class Each>
std::string HashView::check(uint64_t& bytes, const Each& each) const {
    if (head.entries == 0) return head.count == 0 ? "" : "entries without an array";
    const size_t taken = (size() + 1) * sizeof(HashEntry);
    view.expect(head.entries, taken);
    bytes += Region::sizeFor(taken);
    uint64_t count = 0;
    uint64_t lastGap = 0;  // the place after it
    uint32_t last = 0;
    for (uint64_t place = 0; place <= size(); ++place) {
        const HashEntry entry = array()[place];
        if (entry.hash == 0) {
            if (entry.ref != 0) return "a reference in a gap";
            lastGap = place + 1;
            continue;
        }
        if (place == size()) return "no gap at the end of the hash";
        if (entry.hash < last) return "hashes out of order";
        const uint64_t from = home(entry.hash, head.homes);
        if (from > place || from < lastGap) return "an entry that is not found from its home";
        last = entry.hash;
        ++count;
        std::string wrong = each(entry.hash, entry.ref);
        if (!wrong.empty()) return wrong;
    }
    return count == head.count ? "" : "the count of a hash";
}

}  // namespace mcast6::store::shared
