#include "platform/store/memory/slabs.h"

#include <bit>
#include <new>

namespace mcast6::store::memory {
namespace {

constexpr size_t aligned(size_t size) { return (size + alignof(uint32_t) - 1) / alignof(uint32_t) * alignof(uint32_t); }

}  // namespace

Slabs::Slabs(Memory& from, size_t rowSize, size_t placesPerCell)
    : memory(from),
      placesAt(aligned(rowSize)),
      stride(placesAt + placesPerCell * sizeof(uint32_t)),
      cells(&from),
      slabs(&from),
      roomy(&from),
      used(&from),
      unmapped(&from) {}

Slabs::~Slabs() {
    for (std::byte* const slab : cells) {
        if (slab != nullptr) memory.give(slab, slabSize());
    }
}

bool Slabs::reserve() noexcept {
    if (roomy.first() != kNone) return true;
    const uint32_t hole = unmapped.first();
    if (hole != kNone) return map(hole);
    if (slabs.size() >= kSlots / kCells) return false;
    try {
        const size_t size = slabs.size() + 1;
        roomy.reach(size);
        used.reach(size);
        unmapped.reach(size);
        if (cells.capacity() < size) cells.reserve(2 * size);
        slabs.push_back({0, {}});
        cells.push_back(nullptr);
    } catch (const std::bad_alloc&) {
        return false;
    }
    const auto added = static_cast<uint32_t>(slabs.size() - 1);
    unmapped.set(added);
    return map(added);
}

bool Slabs::map(uint32_t index) noexcept {
    auto* const mapped = static_cast<std::byte*>(memory.take(slabSize()));
    if (mapped == nullptr) return false;
    cells[index] = mapped;
    unmapped.clear(index);
    roomy.set(index);
    spare = index;
    return true;
}

void Slabs::unmap(uint32_t index) {
    memory.give(cells[index], slabSize());
    cells[index] = nullptr;
    roomy.clear(index);
    unmapped.set(index);
}

uint32_t Slabs::take() {
    const uint32_t index = roomy.first();
    Slab& slab = slabs[index];
    uint32_t word = 0;
    while (slab.live[word] == ~uint64_t{0}) ++word;
    const auto bit = static_cast<uint32_t>(std::countr_one(slab.live[word]));
    slab.live[word] |= uint64_t{1} << bit;
    if (slab.count++ == 0) {
        used.set(index);
        if (spare == index) spare = kNone;
    }
    if (slab.count == kCells) roomy.clear(index);
    ++recordCount;
    return index * kCells + word * 64 + bit;
}

void Slabs::release(uint32_t slot) {
    const uint32_t index = slot / kCells;
    Slab& slab = slabs[index];
    slab.live[slot % kCells / 64] &= ~(uint64_t{1} << (slot % 64));
    --recordCount;
    roomy.set(index);
    if (--slab.count != 0) return;
    used.clear(index);
    // One empty slab stays, the lower of two: coming and going at a border costs no mapping.
    if (spare == kNone) {
        spare = index;
    } else if (index < spare) {
        unmap(spare);
        spare = index;
    } else {
        unmap(index);
    }
}

uint32_t Slabs::next(uint32_t slot) const {
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
