#include "platform/store/shared/scan.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/store/shared/look.h"

namespace mcast6::store::shared {

std::unique_ptr<SharedScan> SharedScan::make(SharedStore& store, uint32_t table, const ScanRange& range) noexcept {
    const size_t size = size_t{kBatch} * store.tables[table]->description().recordSize;
    std::unique_ptr<std::byte[]> room(new (std::nothrow) std::byte[size]);
    if (room == nullptr) return nullptr;
    return std::unique_ptr<SharedScan>(new (std::nothrow) SharedScan(store, table, range, std::move(room)));
}

void SharedScan::setKey(Position& at, const std::byte* key) const {
    const KeyShape& shape = table().shape(index);
    std::memcpy(at.key.data(), key, shape.length());
    at.hash = shape.hash(key);
    at.hasKey = true;
    at.from = 0;
}

Answer SharedScan::restart(const std::byte* key) {
    count = 0;
    position = Position();
    isAllKeys = order == ScanRange::Order::sorted && key == nullptr;
    isAtEnd = false;
    if (order == ScanRange::Order::table || isAllKeys) return Answer::done;
    isAtEnd = key == nullptr || !table().shape(index).accepts(key);
    if (!isAtEnd) setKey(position, key);
    return Answer::done;
}

uint32_t SharedScan::fetch(const View& view, Position& at, uint32_t* to, uint32_t wanted) const {
    if (order == ScanRange::Order::table) return table().nextSlots(view, at.from, to, wanted);
    uint32_t found = 0;
    if (at.hasKey) found = table().nextSlots(view, index, at.hash, at.key.data(), at.from, to, wanted);
    while (found == 0 && isAllKeys) {
        OrderKey next;
        if (!table().nextKey(view, index, at.hasKey ? &at.order : nullptr, next)) break;
        KeyBuffer key;
        table().shape(index).flip(next.bytes.data(), key.data());
        setKey(at, key.data());
        at.order = next;
        found = table().nextSlots(view, index, at.hash, at.key.data(), 0, to, wanted);
    }
    return found;
}

Answer SharedScan::next() {
    if (isAtEnd) return Answer::end;
    const bool isCurrent = count > 0 && version == peek(table().sequence());
    if (isCurrent && current + 1 < count) {
        ++current;
        return Answer::done;
    }
    Position from = position;
    if (count > 0) from.from = slots[current] + 1;
    const uint32_t wanted = isCurrent ? std::min(count * 2, kBatch) : 1;
    Position reached;
    uint32_t found = 0;
    SharedStore::Glance glance{table().sequence(), 0};
    const Answer answer = store.look(glance, [&](const View& view) {
        reached = from;
        found = fetch(view, reached, slots.data(), wanted);
        if (found > 1) {
            for (uint32_t i = 0; i < found; ++i) table().prefetchRow(view, slots[i]);
        }
        for (uint32_t i = 0; i < found; ++i) table().copyRow(view, slots[i], rowAt(i));
    });
    if (answer != Answer::done) {
        // The slots may be anything now; the position is where it was.
        count = 0;
        position = from;
        return answer;
    }
    version = glance.version;
    position = reached;
    count = found;
    current = 0;
    isAtEnd = found == 0;
    return isAtEnd ? Answer::end : Answer::done;
}

Answer SharedScan::read(std::byte* row) {
    if (count == 0) return Answer::absent;
    if (version == peek(table().sequence())) {
        std::memcpy(row, rowAt(current), table().description().recordSize);
        return Answer::done;
    }
    // The record may have changed or gone since; its key tells.
    KeyBuffer room;
    return store.get(number, table().primaryShape().of(rowAt(current), room), row);
}

}  // namespace mcast6::store::shared
