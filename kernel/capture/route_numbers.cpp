#include "kernel/capture/route_numbers.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string_view>

#include "kernel/text.h"

namespace mcast6::kernel {

uint64_t RouteNumbers::firstOf(const Route& route, uint64_t number) {
    if (keys_.size() * 2 >= slots_.size()) grow();
    const auto shortened = static_cast<uint32_t>(std::min<uint64_t>(number, UINT32_MAX));
    const Key key{shortened, route.table, route.source, route.group};
    const uint64_t hash = hashOf(key);
    Slot& slot = slotOf(hash, key);
    if (slot.position != 0) return keys_[slot.position - 1].number;
    keys_.push_back(key);
    slot = {static_cast<uint32_t>(hash >> 32), static_cast<uint32_t>(keys_.size())};
    return 0;
}

uint64_t RouteNumbers::hashOf(const Key& key) {
    constexpr size_t kStart = offsetof(Key, table);
    char bytes[sizeof key - kStart];
    std::memcpy(bytes, reinterpret_cast<const char*>(&key) + kStart, sizeof bytes);
    return std::hash<std::string_view>()({bytes, sizeof bytes});
}

// Where the key is, or would be. Keys are looked at only where the hash agrees.
RouteNumbers::Slot& RouteNumbers::slotOf(uint64_t hash, const Key& key) {
    const size_t mask = slots_.size() - 1;
    for (size_t position = hash & mask;; position = (position + 1) & mask) {
        Slot& slot = slots_[position];
        if (slot.position == 0) return slot;
        if (slot.hash != static_cast<uint32_t>(hash >> 32)) continue;
        const Key& there = keys_[slot.position - 1];
        if (there.table == key.table && sameAddress(there.group, key.group) && sameAddress(there.source, key.source)) {
            return slot;
        }
    }
}

void RouteNumbers::grow() {
    constexpr size_t kFirst = 1024;
    std::vector<Slot>().swap(slots_);
    slots_.assign(std::max(kFirst, std::bit_ceil(keys_.size() * 4)), Slot{});
    uint32_t position = 0;
    for (const Key& key : keys_) {
        const uint64_t hash = hashOf(key);
        slotOf(hash, key) = {static_cast<uint32_t>(hash >> 32), ++position};
    }
}

}  // namespace mcast6::kernel
