#include "platform/store/shared/slot_set.h"

#include <algorithm>
#include <array>
#include <vector>

namespace mcast6::store::shared {

Ref SlotSet::make(Region& region, uint32_t first, uint32_t second) {
    const Ref made = Slots::make(region, 2);
    const View view = region.view();
    const uint32_t slots[] = {std::min(first, second), std::max(first, second)};
    region.fill(view.array<uint32_t>(made, sizeof(ListHead)), slots, sizeof slots);
    region.init(view.at<ListHead>(made).count, 2);
    region.init(view.at<ListHead>(made).sample, second);
    return made;
}

void SlotSet::drop(Region& region, Ref set) {
    const View view = region.view();
    const ListHead& head = view.at<ListHead>(set);
    if (!isDense(head)) return Slots::drop(region, set);
    for (uint32_t i = 0; i < chunksOf(head); ++i) {
        if (chunks(view, set)[i] != 0) region.give(chunks(view, set)[i], sizeof(Chunk));
    }
    region.give(set, denseBytes(chunksOf(head)));
}

uint32_t SlotSet::next(const View& view, Ref set, uint32_t from, uint32_t* to, uint32_t wanted) {
    view.expect(set, sizeof(ListHead));
    if (isDense(view.at<ListHead>(set))) return nextDense(view, set, from, to, wanted);
    return Slots::next(
        view, set, [from](uint32_t slot) { return slot < from; }, to, wanted);
}

uint32_t SlotSet::nextDense(const View& view, Ref set, uint32_t from, uint32_t* to, uint32_t wanted) {
    const uint32_t chunkCount = chunksOf(view.at<ListHead>(set));
    view.expect(set, denseBytes(chunkCount));
    uint32_t found = 0;
    uint32_t word = from % kChunk / 64;
    uint64_t mask = ~uint64_t{0} << (from % 64);
    for (uint32_t i = from / kChunk; i < chunkCount; ++i, word = 0, mask = ~uint64_t{0}) {
        const Ref at = peek(chunks(view, set)[i]);
        if (at == 0) continue;
        view.expect(at, sizeof(Chunk));
        const Chunk& chunk = view.at<Chunk>(at);
        for (; word < kChunk / 64; ++word, mask = ~uint64_t{0}) {
            for (uint64_t rest = peek(chunk.words[word]) & mask; rest != 0; rest &= rest - 1) {
                if (found == wanted) return found;
                to[found++] = i * kChunk + word * 64 + static_cast<uint32_t>(std::countr_zero(rest));
            }
        }
    }
    return found;
}

Ref SlotSet::insert(Region& region, Ref set, uint32_t slot, uint32_t slots) {
    const ListHead& head = region.view().at<ListHead>(set);
    if (!isDense(head)) {
        if (head.count < kLeastDense || uint64_t{head.count} * kSparse < slots) {
            return Slots::insert(region, set, slot, slot);
        }
        set = toDense(region, set, slots);
    }
    return insertDense(region, set, slot);
}

Ref SlotSet::insertDense(Region& region, Ref set, uint32_t slot) {
    const uint32_t number = slot / kChunk;
    if (number >= chunksOf(region.view().at<ListHead>(set))) set = withChunks(region, set, number + 1);
    const View view = region.view();
    const ListHead& head = view.at<ListHead>(set);
    const Ref& place = chunks(view, set)[number];
    if (place == 0) {
        const Ref made = region.take(sizeof(Chunk));
        region.zero(&view.at<Chunk>(made), sizeof(Chunk));
        region.set(place, made);
    }
    const uint64_t& word = view.at<Chunk>(place).words[slot % kChunk / 64];
    region.set(word, word | uint64_t{1} << (slot % 64));
    region.set(*reinterpret_cast<const uint64_t*>(&head), uint64_t{slot} << 32 | (head.count + 1));
    return set;
}

Ref SlotSet::erase(Region& region, Ref set, uint32_t slot) {
    const View view = region.view();
    const bool wasSample = view.at<ListHead>(set).sample == slot;
    set = isDense(view.at<ListHead>(set)) ? eraseDense(region, set, slot) : Slots::erase(region, set, slot);
    uint32_t other = 0;
    if (wasSample && next(view, set, 0, &other, 1) == 1) region.set(view.at<ListHead>(set).sample, other);
    return set;
}

Ref SlotSet::eraseDense(Region& region, Ref set, uint32_t slot) {
    const View view = region.view();
    const ListHead& head = view.at<ListHead>(set);
    const Ref& place = chunks(view, set)[slot / kChunk];
    const Chunk& chunk = view.at<Chunk>(place);
    const uint64_t& word = chunk.words[slot % kChunk / 64];
    region.set(word, word & ~(uint64_t{1} << (slot % 64)));
    region.set(head.count, head.count - 1);
    if (word == 0 && std::all_of(std::begin(chunk.words), std::end(chunk.words), [](uint64_t w) { return w == 0; })) {
        region.give(place, sizeof(Chunk));
        region.set(place, 0);
    }
    const uint64_t slots = uint64_t{chunksOf(head)} * kChunk;
    if (head.count >= kLeastDense / 2 && uint64_t{head.count} * kSparse * 4 >= slots) return set;
    try {
        return toSorted(region, set);
    } catch (const NoRoom&) {
        return set;
    }
}

Ref SlotSet::makeDense(Region& region, const ListHead& old, uint32_t chunkCount) {
    const size_t bytes = Region::sizeFor(denseBytes(chunkCount));
    const Ref made = region.take(bytes);
    const auto capacity = static_cast<uint32_t>((bytes - sizeof(ListHead)) / sizeof(Ref));
    const View view = region.view();
    const ListHead head{old.count, old.sample, capacity | kDense, 0};
    region.fill(&view.at<ListHead>(made), &head, sizeof head);
    region.zero(chunks(view, made), capacity * sizeof(Ref));
    return made;
}

Ref SlotSet::withChunks(Region& region, Ref set, uint32_t wanted) {
    const ListHead old = region.view().at<ListHead>(set);
    const uint32_t present = chunksOf(old);
    const Ref made = makeDense(region, old, std::max(wanted, present + present / 4 + 1));
    const View view = region.view();
    region.fill(chunks(view, made), chunks(view, set), present * sizeof(Ref));
    region.give(set, denseBytes(present));
    return made;
}

Ref SlotSet::toDense(Region& region, Ref set, uint32_t slots) {
    const ListHead old = region.view().at<ListHead>(set);
    const Ref made = makeDense(region, old, (slots + kChunk - 1) / kChunk);
    std::array<uint32_t, 64> some;
    uint32_t from = 0;
    for (;;) {
        const View view = region.view();
        const auto found = Slots::next(
            view, set, [from](uint32_t slot) { return slot < from; }, some.data(), 64);
        if (found == 0) break;
        for (uint32_t i = 0; i < found; ++i) {
            const uint32_t slot = some[i];
            const Ref& place = chunks(region.view(), made)[slot / kChunk];
            if (place == 0) {
                const Ref chunk = region.take(sizeof(Chunk));
                region.zero(&region.view().at<Chunk>(chunk), sizeof(Chunk));
                region.init(place, chunk);
            }
            const uint64_t& word = region.view().at<Chunk>(place).words[slot % kChunk / 64];
            region.init(word, word | uint64_t{1} << (slot % 64));
        }
        from = some[found - 1] + 1;
    }
    Slots::drop(region, set);
    return made;
}

Ref SlotSet::toSorted(Region& region, Ref set) {
    const ListHead old = region.view().at<ListHead>(set);
    std::vector<uint32_t> slots(old.count);
    (void)nextDense(region.view(), set, 0, slots.data(), old.count);
    const Ref made = Slots::makeOf(region, slots.data(), old.count, old.sample);
    drop(region, set);
    return made;
}

void SlotSet::prefetchSlot(const View& view, Ref set, uint32_t slot) {
    const ListHead& head = view.at<ListHead>(set);
    if (!isDense(head)) return Slots::prefetch(view, set, slot);
    if (slot / kChunk >= chunksOf(head)) return;
    const Ref chunk = chunks(view, set)[slot / kChunk];
    if (chunk != 0) view.prefetch(chunk, slot % kChunk / 8);
}

}  // namespace mcast6::store::shared
