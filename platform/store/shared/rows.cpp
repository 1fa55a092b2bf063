#include "platform/store/shared/rows.h"

#include <algorithm>
#include <bit>

namespace mcast6::store::shared {
namespace {

constexpr uint32_t kWords = kCells / 64;
constexpr uint32_t kFewestSlabs = 64;  // a multiple of 64, for the bitmap
constexpr uint64_t kSlots = uint64_t{1} << 31;

}  // namespace

uint32_t RowsView::next(uint32_t slot) const {
    const uint32_t slabs = peek(head.slabs);
    const Ref directory = peek(head.directory);
    if (slabs == 0) return kNone;
    view.expect(directory, uint64_t{slabs} * sizeof(Ref));
    uint32_t word = slot % kCells / 64;
    uint64_t mask = ~uint64_t{0} << (slot % 64);
    for (uint32_t number = slot / kCells; number < slabs; ++number, word = 0, mask = ~uint64_t{0}) {
        const Ref at = peek(view.array<Ref>(directory)[number]);
        if (at == 0) continue;
        view.expect(at, sizeof(SlabHead));
        const SlabHead& slabHead = view.at<SlabHead>(at);
        for (; word < kWords; ++word, mask = ~uint64_t{0}) {
            const uint64_t rest = peek(slabHead.live[word]) & mask;
            if (rest != 0) return number * kCells + word * 64 + static_cast<uint32_t>(std::countr_zero(rest));
        }
    }
    return kNone;
}

bool RowsView::isLive(uint32_t slot) const {
    if (slot / kCells >= head.slabs || view.array<Ref>(head.directory)[slot / kCells] == 0) return false;
    return (view.at<SlabHead>(slab(slot / kCells)).live[slot % kCells / 64] >> (slot % 64) & 1) != 0;
}

std::string RowsView::check(uint64_t& bytes) const {
    if (head.slabCapacity == 0) return head.records == 0 && head.slabs == 0 ? "" : "records without a directory";
    if (head.slabs > head.slabCapacity || head.slabCapacity % 64 != 0) return "the directory of slabs";
    view.expect(head.directory, directoryBytes(head.slabCapacity));
    bytes += Region::sizeFor(directoryBytes(head.slabCapacity));
    const uint64_t* const roomy = view.array<uint64_t>(head.directory, head.slabCapacity * sizeof(Ref));
    uint64_t records = 0;
    uint32_t spare = kNone;
    for (uint32_t number = 0; number < head.slabCapacity; ++number) {
        const bool isRoomy = (roomy[number / 64] >> (number % 64) & 1) != 0;
        const Ref at = number < head.slabs ? view.array<Ref>(head.directory)[number] : 0;
        if (isRoomy && number / 64 < head.roomyWord) return "the hint to the first slab with room";
        if (number >= head.slabs && isRoomy) return "a bit behind the last slab";
        if (at == 0) {
            if (number < head.slabs && !isRoomy) return "a slab without memory and without room";
            continue;
        }
        view.expect(at, slabBytes());
        bytes += Region::sizeFor(slabBytes());
        const SlabHead& slabHead = view.at<SlabHead>(at);
        uint32_t live = 0;
        for (uint32_t word = 0; word < kWords; ++word) {
            live += static_cast<uint32_t>(std::popcount(slabHead.live[word]));
            if (word < slabHead.roomyWord && slabHead.live[word] != ~uint64_t{0}) return "the hint to room in a slab";
        }
        if (live != slabHead.count) return "the count of a slab";
        if (isRoomy != (live < kCells)) return "the bit of a slab";
        if (live == 0 && spare != kNone) return "a second empty slab";
        if (live == 0) spare = number;
        records += live;
    }
    if (spare != head.spareSlab) return "the spare slab";
    return records == head.records ? "" : "the count of records";
}

uint32_t RowsWriter::lowestRoomy() const {
    const uint64_t* const words = roomy();
    for (uint32_t word = head.roomyWord; word < head.slabCapacity / 64; ++word) {
        if (words[word] != 0) return word * 64 + static_cast<uint32_t>(std::countr_zero(words[word]));
    }
    return kNone;
}

uint32_t RowsWriter::prepare() {
    uint32_t number = head.slabCapacity != 0 ? lowestRoomy() : kNone;
    if (number == kNone) number = addSlab();
    if (refs()[number] == 0) {
        const Ref made = region.take(slabBytes());
        region.zero(&region.view().at<SlabHead>(made), sizeof(SlabHead));
        region.set(refs()[number], made);
        if (head.spareSlab != kNone) giveSlab(head.spareSlab);
        region.set(head.spareSlab, number);
    }
    const SlabHead& found = slab(number);
    uint32_t word = found.roomyWord;
    while (found.live[word] == ~uint64_t{0}) ++word;
    return number * kCells + word * 64 + static_cast<uint32_t>(std::countr_one(found.live[word]));
}

// One more slab in the directory, without memory yet.
uint32_t RowsWriter::addSlab() {
    const uint32_t number = head.slabs;
    if (number >= kSlots / kCells) throw NoRoom{};
    if (number == head.slabCapacity) {
        const uint32_t capacity = std::max(kFewestSlabs, number * 2);
        const Ref made = region.take(RowsView::directoryBytes(capacity));
        const View view = region.view();
        region.zero(view.array<std::byte>(made), RowsView::directoryBytes(capacity));
        if (number != 0) {
            region.fill(view.array<Ref>(made), refs(), number * sizeof(Ref));
            region.fill(view.array<uint64_t>(made, capacity * sizeof(Ref)), roomy(), number / 64 * sizeof(uint64_t));
            region.give(head.directory, RowsView::directoryBytes(number));
        }
        region.set(head.directory, made);
        region.set(head.slabCapacity, capacity);
    }
    region.set(refs()[number], 0);
    region.set(head.slabs, number + 1);
    setRoomy(number, true);
    return number;
}

void RowsWriter::setRoomy(uint32_t number, bool isRoomy) {
    const uint64_t bit = uint64_t{1} << (number % 64);
    const uint64_t& word = roomy()[number / 64];
    region.set(word, isRoomy ? word | bit : word & ~bit);
    if (isRoomy) {
        if (number / 64 < head.roomyWord) region.set(head.roomyWord, number / 64);
        return;
    }
    uint32_t first = head.roomyWord;
    while (first < head.slabCapacity / 64 && roomy()[first] == 0) ++first;
    if (first != head.roomyWord) region.set(head.roomyWord, first);
}

void RowsWriter::take(uint32_t slot) {
    const uint32_t number = slot / kCells;
    const SlabHead& into = slab(number);
    const uint32_t word = slot % kCells / 64;
    region.set(into.live[word], into.live[word] | uint64_t{1} << (slot % 64));
    const uint64_t counts = uint64_t{word} << 32 | (into.count + 1);
    region.set(*reinterpret_cast<const uint64_t*>(&into), counts);
    region.set(head.records, head.records + 1);
    if (head.spareSlab == number) region.set(head.spareSlab, kNone);
    if (into.count == kCells) setRoomy(number, false);
}

void RowsWriter::release(uint32_t slot) {
    const uint32_t number = slot / kCells;
    const SlabHead& from = slab(number);
    const uint32_t word = slot % kCells / 64;
    region.set(from.live[word], from.live[word] & ~(uint64_t{1} << (slot % 64)));
    const uint64_t counts = uint64_t{std::min(from.roomyWord, word)} << 32 | (from.count - 1);
    region.set(*reinterpret_cast<const uint64_t*>(&from), counts);
    region.set(head.records, head.records - 1);
    if (from.count == kCells - 1) setRoomy(number, true);
    if (from.count != 0) return;
    // One empty slab stays, the lower of two: coming and going at a border costs no memory's coming and going.
    if (head.spareSlab == kNone) {
        region.set(head.spareSlab, number);
    } else if (number < head.spareSlab) {
        giveSlab(head.spareSlab);
        region.set(head.spareSlab, number);
    } else {
        giveSlab(number);
    }
}

void RowsWriter::giveSlab(uint32_t number) {
    region.give(refs()[number], slabBytes());
    region.set(refs()[number], 0);
}

}  // namespace mcast6::store::shared
