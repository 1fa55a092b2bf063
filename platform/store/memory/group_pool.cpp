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

uint32_t GroupPool::make(uint64_t slots) noexcept {
    if (slots >= UINT32_MAX / 2) return kNone;
    const uint64_t size = sizeof(Group) + slots * sizeof(uint32_t);
    const auto* const fitting = std::lower_bound(kSizes.begin(), kSizes.end(), size);
    const auto sizeClass = static_cast<uint8_t>(fitting - kSizes.begin());
    const bool isAlone = sizeClass == kAlone;
    uint32_t number = isAlone ? kNone : vacant[sizeClass];
    if (number == kNone) number = addChunk(isAlone ? size : kChunkSize, sizeClass);
    if (number == kNone) return kNone;
    const uint32_t ref = takeBlock(number);
    const uint64_t blockSize = isAlone ? size : *fitting;
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
    removeChunk(number);
}

uint32_t GroupPool::addChunk(size_t size, uint8_t sizeClass) noexcept {
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
    const uint32_t units = sizeClass == kAlone ? kUnits : static_cast<uint32_t>(kSizes[sizeClass] / kUnit);
    chunks[number] = {size, units, 0, 0, kNone, kNone, kNone, sizeClass};
    if (sizeClass != kAlone) link(number);
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
            removeChunk(number);
        }
    }
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
