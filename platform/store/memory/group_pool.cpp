#include "platform/store/memory/group_pool.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace mcast6::store::memory {

GroupPool::~GroupPool() {
    for (size_t number = 0; number < bases.size(); ++number) {
        if (bases[number] != nullptr) memory.give(bases[number], chunks[number].size);
    }
}

uint8_t GroupPool::classOf(uint64_t size) {
    return static_cast<uint8_t>(std::lower_bound(kSizes.begin(), kSizes.end(), size) - kSizes.begin());
}

uint32_t GroupPool::make(uint64_t slots) noexcept {
    if (slots >= UINT32_MAX / 2) return kNone;
    const uint64_t size = bytesFor(slots);
    const uint8_t sizeClass = classOf(size);
    if (sizeClass == kAlone) {
        const uint32_t number = addChunk(size);
        if (number == kNone) return kNone;
        chunks[number].units = kUnits;
        return makeIn(number, size);
    }
    uint32_t made = makeOfClass(sizeClass);
    fillReserve();
    if (made == kNone) made = makeOfClass(sizeClass);
    return made;
}

uint32_t GroupPool::makeOfReserve(uint64_t slots) noexcept { return makeOfClass(classOf(bytesFor(slots))); }

uint32_t GroupPool::makeOfClass(uint8_t sizeClass) {
    if (sizeClass == kAlone) return kNone;
    uint32_t number = vacant[sizeClass];
    if (number == kNone) number = chunkOfReserve(sizeClass);
    return number != kNone ? makeIn(number, kSizes[sizeClass]) : kNone;
}

bool GroupPool::cut(uint32_t ref, uint64_t slots) noexcept {
    Chunk& chunk = chunks[ref >> kUnitBits];
    if (chunk.sizeClass != kAlone) return false;
    const size_t size = memory.shrink(bases[ref >> kUnitBits], chunk.size, bytesFor(slots));
    if (size == chunk.size) return false;
    chunk.size = size;
    at(ref).capacity = static_cast<uint32_t>((size - sizeof(Group)) / sizeof(uint32_t));
    return true;
}

uint32_t GroupPool::makeIn(uint32_t number, size_t blockSize) {
    const uint32_t ref = takeBlock(number);
    at(ref) = {static_cast<uint32_t>((blockSize - sizeof(Group)) / sizeof(uint32_t)), 0, 0, 0, Group::kNoHole, 0};
    return ref;
}

bool GroupPool::isFull(const Chunk& chunk) const { return chunk.freed == kNone && chunk.fresh + chunk.units > kUnits; }

uint32_t GroupPool::takeBlock(uint32_t number) {
    Chunk& chunk = chunks[number];
    uint32_t unit = chunk.freed;
    if (unit != kNone) {
        std::memcpy(&chunk.freed, bases[number] + unit * kUnit, sizeof chunk.freed);
    } else {
        unit = chunk.fresh;
        chunk.fresh += chunk.units;
    }
    ++chunk.live;
    if (chunk.sizeClass != kAlone && isFull(chunk)) unlink(number);
    return number << kUnitBits | unit;
}

void GroupPool::drop(uint32_t ref) {
    const uint32_t number = ref >> kUnitBits;
    Chunk& chunk = chunks[number];
    if (chunk.sizeClass == kAlone) return removeChunk(number);
    const bool wasFull = isFull(chunk);
    std::memcpy(address(ref), &chunk.freed, sizeof chunk.freed);
    chunk.freed = ref % kUnits;
    if (wasFull) link(number);
    if (--chunk.live > 0) return;
    // An empty chunk stays while it is the only one with room.
    if (chunk.before == kNone && chunk.after == kNone) return;
    unlink(number);
    --inUse;
    putInReserve(number);
    // One chunk more than growth would add is kept: alternating at the limit maps nothing.
    while (reserved > reserveFor(inUse + 1) + 1) removeChunk(takeReserved());
}

// A chunk of no class yet.
uint32_t GroupPool::addChunk(size_t size) noexcept {
    if (freeEntry == kNone) {
        if (chunks.size() >= kChunks) return kNone;
        try {
            if (bases.capacity() == bases.size()) bases.reserve(2 * bases.size() + 1);
            chunks.push_back({});
        } catch (const std::bad_alloc&) {
            return kNone;
        }
        bases.push_back(nullptr);
        chunks.back().after = kNone;
        freeEntry = static_cast<uint32_t>(chunks.size() - 1);
    }
    auto* const block = static_cast<std::byte*>(memory.take(size));
    if (block == nullptr) return kNone;
    const uint32_t number = freeEntry;
    freeEntry = chunks[number].after;
    bases[number] = block;
    chunks[number] = {size, 0, 0, 0, kNone, kNone, kNone, kAlone};
    return number;
}

void GroupPool::putInReserve(uint32_t number) {
    chunks[number].after = reserve;
    reserve = number;
    ++reserved;
}

uint32_t GroupPool::takeReserved() {
    const uint32_t number = reserve;
    reserve = chunks[number].after;
    --reserved;
    return number;
}

// Growth goes on without a full reserve where there is no memory for it.
void GroupPool::fillReserve() noexcept {
    while (reserved < reserveFor(inUse + 1)) {
        const uint32_t number = addChunk(kChunkSize);
        if (number == kNone) return;
        putInReserve(number);
    }
}

uint32_t GroupPool::chunkOfReserve(uint8_t sizeClass) {
    if (reserve == kNone) return kNone;
    const uint32_t number = takeReserved();
    const auto units = static_cast<uint32_t>(kSizes[sizeClass] / kUnit);
    chunks[number] = {kChunkSize, units, 0, 0, kNone, kNone, kNone, sizeClass};
    link(number);
    ++inUse;
    return number;
}

void GroupPool::removeChunk(uint32_t number) {
    memory.give(bases[number], chunks[number].size);
    bases[number] = nullptr;
    chunks[number].after = freeEntry;
    freeEntry = number;
}

void GroupPool::purge() {
    for (uint32_t& first : vacant) {
        while (first != kNone && chunks[first].live == 0) {
            const uint32_t number = first;
            unlink(number);
            --inUse;
            removeChunk(number);
        }
    }
    while (reserve != kNone) removeChunk(takeReserved());
}

void GroupPool::link(uint32_t number) {
    Chunk& chunk = chunks[number];
    uint32_t& first = vacant[chunk.sizeClass];
    chunk.before = kNone;
    chunk.after = first;
    if (first != kNone) chunks[first].before = number;
    first = number;
}

void GroupPool::unlink(uint32_t number) {
    const Chunk& chunk = chunks[number];
    if (chunk.before != kNone) chunks[chunk.before].after = chunk.after;
    if (chunk.after != kNone) chunks[chunk.after].before = chunk.before;
    if (vacant[chunk.sizeClass] == number) vacant[chunk.sizeClass] = chunk.after;
}

}  // namespace mcast6::store::memory
