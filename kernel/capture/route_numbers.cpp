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
    uint32_t* const slot = slotOf(key);
    if (*slot != 0) return keys_[*slot - 1].number;
    keys_.push_back(key);
    *slot = static_cast<uint32_t>(keys_.size());
    return 0;
}

size_t RouteNumbers::hashOf(const Key& key) {
    constexpr size_t kStart = offsetof(Key, table);
    char bytes[sizeof key - kStart];
    std::memcpy(bytes, reinterpret_cast<const char*>(&key) + kStart, sizeof bytes);
    return std::hash<std::string_view>()({bytes, sizeof bytes});
}

// Where the key is, or would be.
uint32_t* RouteNumbers::slotOf(const Key& key) {
    const size_t mask = slots_.size() - 1;
    for (size_t position = hashOf(key) & mask;; position = (position + 1) & mask) {
        uint32_t& slot = slots_[position];
        if (slot == 0) return &slot;
        const Key& there = keys_[slot - 1];
        if (there.table == key.table && sameAddress(there.group, key.group) && sameAddress(there.source, key.source)) {
            return &slot;
        }
    }
}

void RouteNumbers::grow() {
    constexpr size_t kFirst = 1024;
    std::vector<uint32_t>().swap(slots_);
    slots_.assign(std::max(kFirst, std::bit_ceil(keys_.size() * 4)), 0);
    for (size_t position = 0; position < keys_.size(); ++position) {
        *slotOf(keys_[position]) = static_cast<uint32_t>(position + 1);
    }
}

}  // namespace mcast6::kernel
