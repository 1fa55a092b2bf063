// Walks over egress members, for tables with different record types.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "mcast6_db/iterator.h"

namespace mcast6::tests {

// An iterator, and the records that it must return.
template <class Entry>
struct Selection {
    std::string name;
    std::function<Mcast6DbRes*()> create;
    std::function<bool(const Entry&)> isSelected;
};

// The ids, by 'idOf', of all records that the iterator returns, in ascending order. Stops at the first result other
// than 0, which must be 60, or after 'limit' records. Releases the iterator.
template <class Entry>
std::vector<uint32_t> walk(Mcast6DbRes* iterator, uint32_t (*getEntry)(Mcast6DbRes*, Entry*),
                           void (*release)(Mcast6DbRes*), uint32_t (*idOf)(const Entry&), size_t limit = 10'000) {
    std::vector<uint32_t> ids;
    if (iterator == nullptr) return {UINT32_MAX};
    Entry record{};
    uint32_t result = 0;
    while (ids.size() < limit && (result = getEntry(iterator, &record)) == 0) ids.push_back(idOf(record));
    if (result != 60) ids.push_back(UINT32_MAX);
    release(iterator);
    std::sort(ids.begin(), ids.end());
    return ids;
}

template <class Entry>
std::vector<uint32_t> idsOf(const std::vector<Entry>& records, const std::function<bool(const Entry&)>& isSelected,
                            uint32_t (*idOf)(const Entry&)) {
    std::vector<uint32_t> ids;
    for (const Entry& record : records) {
        if (isSelected(record)) ids.push_back(idOf(record));
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

}  // namespace mcast6::tests
