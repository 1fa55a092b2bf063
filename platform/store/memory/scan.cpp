#include "platform/store/memory/scan.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace mcast6::store::memory {

std::unique_ptr<BatchedScan> BatchedScan::make(Table& table, const ScanRange& range) noexcept {
    std::unique_ptr<std::byte[]> room(new (std::nothrow) std::byte[size_t{kBatch} * table.schema.recordSize]);
    if (room == nullptr) return nullptr;
    if (range.order == ScanRange::Order::table) {
        return std::unique_ptr<BatchedScan>(new (std::nothrow) WholeScan(table, std::move(room)));
    }
    const bool isSorted = range.order == ScanRange::Order::sorted;
    return std::unique_ptr<BatchedScan>(new (std::nothrow)
                                            IndexScan(table, std::move(room), *table.indexes[range.index], isSorted));
}

Answer BatchedScan::next() {
    if (isAtEnd) return Answer::end;
    const bool isUndisturbed = count > 0 && version == table.version.load(std::memory_order_acquire);
    if (isUndisturbed && current + 1 < count) {
        ++current;
        return Answer::done;
    }
    const uint64_t position = count > 0 ? behind[current] : 0;
    count = fetch(position, isUndisturbed ? std::min(count * 2, kBatch) : 1);
    current = 0;
    isAtEnd = count == 0;
    return isAtEnd ? Answer::end : Answer::done;
}

Answer BatchedScan::read(std::byte* row) {
    if (count == 0) return Answer::absent;
    if (version == table.version.load(std::memory_order_acquire)) {
        std::memcpy(row, rowAt(current), table.schema.recordSize);
        return Answer::done;
    }
    // The record may have changed or gone since: read it by its key.
    KeyBuffer room;
    return table.get(table.primaryKey.of(rowAt(current), room), row);
}

void BatchedScan::rewind() {
    count = 0;
    isAtEnd = false;
}

void BatchedScan::copy(const uint32_t* slots, uint32_t slotCount) {
    if (slotCount > 1) std::for_each(slots, slots + slotCount, [&](uint32_t slot) { table.slabs.prefetch(slot); });
    for (uint32_t i = 0; i < slotCount; ++i) {
        std::memcpy(rowAt(i), table.slabs.row(slots[i]), table.schema.recordSize);
    }
    version = table.version.load(std::memory_order_relaxed);
}

Answer WholeScan::restart(const std::byte*) {
    rewind();
    return Answer::done;
}

uint32_t WholeScan::fetch(uint64_t position, uint32_t wanted) {
    std::array<uint32_t, kBatch> slots{};
    const ReadGuard guard(table.lock);
    uint32_t found = 0;
    for (auto from = static_cast<uint32_t>(position); found < wanted; ++found) {
        const uint32_t slot = table.slabs.next(from);
        if (slot == Slabs::kNone) break;
        slots[found] = slot;
        from = slot + 1;
        behind[found] = from;
    }
    copy(slots.data(), found);
    return found;
}

Answer IndexScan::restart(const std::byte* given) {
    close();
    rewind();
    isAllKeys = given == nullptr && isSorted;
    isFirstKey = true;
    state = State::before;
    if (isAllKeys) return Answer::done;
    if (given == nullptr || !index.shape().accepts(given)) {
        state = State::done;
    } else {
        std::memcpy(key.data(), given, index.shape().length());
    }
    return Answer::done;
}

uint32_t IndexScan::fetch(uint64_t position, uint32_t wanted) {
    if (state == State::done) return 0;
    if (isAllKeys) {
        const WriteGuard guard(table.lock);
        return walkKeys(position, wanted);
    }
    if (state == State::before) {
        const WriteGuard guard(table.lock);
        return openKey(wanted);
    }
    {
        const ReadGuard guard(table.lock);
        const uint32_t found = fetchKey(position, wanted);
        if (found > 0) return found;
    }
    close();
    state = State::done;
    return 0;
}

// The first records of 'key'.
uint32_t IndexScan::openKey(uint32_t wanted) {
    state = State::inKey;
    const uint32_t single = index.open(hold, index.shape().hash(key.data()), key.data());
    mayHold = hold.isHeld();
    if (mayHold) return fetchKey(0, wanted);
    if (single == GroupIndex::kNone) return 0;
    behind[0] = 0;
    copy(&single, 1);
    return 1;
}

// Records of 'key' from the position on. Nothing held: all have been served, or all are gone.
uint32_t IndexScan::fetchKey(uint64_t position, uint32_t wanted) {
    if (!hold.isHeld()) return 0;
    std::array<uint32_t, kBatch> slots{};
    auto from = static_cast<uint32_t>(position);
    uint32_t found = 0;
    for (; found < wanted; ++found) {
        const uint32_t slot = index.step(hold, from);
        if (slot == GroupIndex::kNone) break;
        slots[found] = slot;
        behind[found] = from;
    }
    copy(slots.data(), found);
    return found;
}

uint32_t IndexScan::walkKeys(uint64_t position, uint32_t wanted) {
    if (state == State::inKey) {
        const uint32_t found = fetchKey(position, wanted);
        if (found > 0) return found;
    }
    for (;;) {
        if (mayHold) index.close(hold);
        mayHold = false;
        if (!index.nextKey(isFirstKey, flipped)) break;
        isFirstKey = false;
        index.shape().flip(flipped.data(), key.data());
        const uint32_t found = openKey(wanted);
        if (found > 0) return found;
    }
    state = State::done;
    return 0;
}

void IndexScan::close() {
    if (!mayHold) return;
    const WriteGuard guard(table.lock);
    index.close(hold);
    mayHold = false;
}

}  // namespace mcast6::store::memory
