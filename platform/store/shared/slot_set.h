// The slots of the records with one key, in ascending order, in blocks of a region. It is known by the reference of its
// head; insert() and erase() say where that is now.
//
// A set has one of three forms. A few slots are one block, some more a directory of leaves (see sorted.h). Where a set
// holds a good part of the table's slots it is a bitmap, in chunks of kChunk bits that a directory names by their
// number: then to find a slot, to add one and to take one out costs the same few words at any size.
//
// A scan's position in a set is the slot it served last: a plain number, which stays right whatever comes and goes.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

#include "platform/store/shared/sorted.h"

namespace mcast6::store::shared {

class SlotSet {
public:
    // A set of two.
    static Ref make(Region& region, uint32_t first, uint32_t second);
    static void drop(Region& region, Ref set);

    static uint32_t count(const View& view, Ref set) {
        view.expect(set, sizeof(ListHead));
        return peek(view.at<ListHead>(set).count);
    }
    // One of the slots: that of the record whose key stands for the set's.
    static uint32_t sample(const View& view, Ref set) {
        view.expect(set, sizeof(ListHead));
        return peek(view.at<ListHead>(set).sample);
    }

    // Copies the first slots at or after 'from', up to 'wanted'.
    static uint32_t next(const View& view, Ref set, uint32_t from, uint32_t* to, uint32_t wanted);

    // 'slots' is the end of the table's slots. The slot must not be in the set, or must be, respectively. A set of one
    // is to be replaced by its slot.
    static Ref insert(Region& region, Ref set, uint32_t slot, uint32_t slots);
    static Ref erase(Region& region, Ref set, uint32_t slot);

    static void prefetch(const View& view, Ref set) { view.prefetch(set); }
    // The same for what insert() or erase() will touch, when the head is there.
    static void prefetchSlot(const View& view, Ref set, uint32_t slot);

    template <class Each>
    static std::string check(const View& view, Ref set, uint64_t& bytes, const Each& each);

private:
    using Slots = Sorted<uint32_t>;

    static constexpr uint32_t kChunk = 2048;
    struct Chunk {
        uint64_t words[kChunk / 64];
    };
    // Sets of one slot in so many become bitmaps, and stop to be when they hold half as many.
    static constexpr uint32_t kSparse = 64;
    static constexpr uint32_t kLeastDense = 256;

    static bool isDense(const ListHead& head) { return (peek(head.capacity) & kDense) != 0; }
    static uint32_t chunksOf(const ListHead& head) { return peek(head.capacity) & ~kForms; }
    static size_t denseBytes(uint32_t chunks) { return sizeof(ListHead) + chunks * sizeof(Ref); }
    static const Ref* chunks(const View& view, Ref set) { return view.array<Ref>(set, sizeof(ListHead)); }

    static uint32_t nextDense(const View& view, Ref set, uint32_t from, uint32_t* to, uint32_t wanted);
    static Ref insertDense(Region& region, Ref set, uint32_t slot);
    static Ref eraseDense(Region& region, Ref set, uint32_t slot);
    static Ref withChunks(Region& region, Ref set, uint32_t wanted);
    static Ref toDense(Region& region, Ref set, uint32_t slots);
    static Ref toSorted(Region& region, Ref set);
    static Ref makeDense(Region& region, const ListHead& old, uint32_t chunks);
};

template <class Each>
std::string SlotSet::check(const View& view, Ref set, uint64_t& bytes, const Each& each) {
    view.expect(set, sizeof(ListHead));
    const ListHead& head = view.at<ListHead>(set);
    if (!isDense(head)) return Slots::check(view, set, bytes, each);
    view.expect(set, denseBytes(chunksOf(head)));
    bytes += Region::sizeFor(denseBytes(chunksOf(head)));
    uint64_t seen = 0;
    for (uint32_t i = 0; i < chunksOf(head); ++i) {
        const Ref at = chunks(view, set)[i];
        if (at == 0) continue;
        view.expect(at, sizeof(Chunk));
        bytes += Region::sizeFor(sizeof(Chunk));
        const uint64_t before = seen;
        const Chunk& chunk = view.at<Chunk>(at);
        for (uint32_t word = 0; word < kChunk / 64; ++word) {
            for (uint64_t rest = chunk.words[word]; rest != 0; rest &= rest - 1, ++seen) {
                each(i * kChunk + word * 64 + static_cast<uint32_t>(std::countr_zero(rest)));
            }
        }
        if (seen == before) return "an empty chunk of a set";
    }
    return seen == head.count ? "" : "the count of a set";
}

}  // namespace mcast6::store::shared
