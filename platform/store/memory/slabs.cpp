#include "platform/store/memory/slabs.h"

#include <algorithm>
#include <bit>
#include <new>

namespace mcast6::store::memory {
namespace {

constexpr size_t kLine = 64;

constexpr size_t aligned(size_t size, size_t to) { return (size + to - 1) / to * to; }

// Whole lines, unless they would cost more than an eighth of the cell.
constexpr size_t cellSize(size_t size) {
    const size_t lines = aligned(size, kLine);
    return (lines - size) * 8 <= size ? lines : size;
}

}  // namespace

Slabs::Slabs(Memory& from, size_t rowSize, size_t placesPerCell)
    : memory(from),
      placesAt(aligned(rowSize, alignof(uint32_t))),
      stride(cellSize(placesAt + placesPerCell * sizeof(uint32_t))),
      cells(&from),
      slabs(&from),
      roomy(&from),
      used(&from),
      unmapped(&from) {}

Slabs::~Slabs() {
    for (uint32_t first = 0; first < slabs.size(); first += spanLength(first)) {
        if (cells[first] != nullptr) memory.give(cells[first], spanSize(first));
    }
}

bool Slabs::reserve() noexcept {
    if (roomy.first() != kNone) return true;
    const uint32_t hole = unmapped.first();
    if (hole != kNone) return map(hole);
    const auto first = static_cast<uint32_t>(slabs.size());
    const uint32_t size = first + spanLength(first);
    if (size > kSlots / kCells) return false;
    try {
        roomy.reach(size);
        used.reach(size);
        unmapped.reach(size);
        if (cells.capacity() < size) cells.reserve(2 * size_t{size});
        slabs.resize(size, {});
        cells.resize(size, nullptr);
    } catch (const std::bad_alloc&) {
        return false;
    }
    for (uint32_t slab = first; slab < size; ++slab) unmapped.set(slab);
    return map(first);
}

bool Slabs::map(uint32_t first) noexcept {
    auto* const mapped = static_cast<std::byte*>(memory.take(spanSize(first)));
    if (mapped == nullptr) return false;
    for (uint32_t i = 0; i < spanLength(first); ++i) {
        cells[first + i] = mapped + i * slabSize();
        unmapped.clear(first + i);
        roomy.set(first + i);
    }
    spare = first;
    return true;
}

void Slabs::unmap(uint32_t first) {
    memory.give(cells[first], spanSize(first));
    for (uint32_t slab = first; slab < first + spanLength(first); ++slab) {
        cells[slab] = nullptr;
        roomy.clear(slab);
        unmapped.set(slab);
    }
}

uint32_t Slabs::take() {
    const uint32_t index = roomy.first();
    Slab& slab = slabs[index];
    while (slab.live[slab.roomyWord] == ~uint64_t{0}) ++slab.roomyWord;
    const uint32_t word = slab.roomyWord;
    const auto bit = static_cast<uint32_t>(std::countr_one(slab.live[word]));
    slab.live[word] |= uint64_t{1} << bit;
    if (slab.count++ == 0) {
        used.set(index);
        if (spare == spanStart(index)) spare = kNone;
    }
    if (slab.count == kCells) roomy.clear(index);
    ++recordCount;
    return index * kCells + word * 64 + bit;
}

void Slabs::release(uint32_t slot) {
    const uint32_t index = slot / kCells;
    const uint32_t word = slot % kCells / 64;
    Slab& slab = slabs[index];
    slab.live[word] &= ~(uint64_t{1} << (slot % 64));
    slab.roomyWord = std::min(slab.roomyWord, word);
    --recordCount;
    roomy.set(index);
    if (--slab.count != 0) return;
    used.clear(index);
    if (isEmpty(spanStart(index))) keepOrUnmap(spanStart(index));
}

bool Slabs::isEmpty(uint32_t first) const {
    return std::all_of(slabs.begin() + first, slabs.begin() + first + spanLength(first),
                       [](const Slab& slab) { return slab.count == 0; });
}

// One empty span is kept, the lower of two: alternating at the limit maps nothing.
void Slabs::keepOrUnmap(uint32_t first) {
    if (spare == kNone) {
        spare = first;
    } else if (first < spare) {
        unmap(spare);
        spare = first;
    } else {
        unmap(first);
    }
}

uint32_t Slabs::next(uint32_t slot) const {
    if (slot / kCells >= slabs.size()) return kNone;
    // Mostly the next one is near.
    const uint64_t near = slabs[slot / kCells].live[slot % kCells / 64] >> (slot % 64);
    if (near != 0) return slot + static_cast<uint32_t>(std::countr_zero(near));
    uint32_t index = used.first(slot / kCells);
    uint32_t from = index == slot / kCells ? slot % kCells : 0;
    while (index != kNone) {
        const uint32_t bit = firstBit(slabs[index].live.data(), kWords, from);
        if (bit != kNone) return index * kCells + bit;
        index = used.first(index + 1);
        from = 0;
    }
    return kNone;
}

}  // namespace mcast6::store::memory
