// Shared by the tests of the layer-3 egress tables: members to store, a function to store them where the library has
// none, and walks.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_platform/engine.h"
#include "tests/system/host.h"

namespace mcast6::tests {

// An outgoing interface of the entry (VR 1, VRF 2, group, any source).
template <class Entry>
Entry memberOf(uint32_t group, uint32_t outIfIndex) {
    Entry entry{};
    entry.vrId = 1;
    entry.vrfId = 2;
    entry.groupAddr = {{0xFF1E0000, 0, 0, group}};
    entry.outIfIndex = outIfIndex;
    return entry;
}

// Writes a row of a table that the library does not write. Returns the engine's code.
struct RowWriter {
    Mcast6DbCreateFunc create;
    uint32_t (*setAll)(uint64_t object, const void* row, uint32_t length);
    void (*release)(uint64_t object);

    uint32_t write(const void* row, uint32_t length) const {
        uint64_t object = 0;
        EXPECT_EQ(0u, create(0, 0, &object));
        EXPECT_EQ(0u, setAll(object, row, length));
        const uint32_t answer = db_write_obj(object);
        release(object);
        return answer;
    }
};

// "group:interface" of every record of an iterator; a repeated one is found by the size.
template <class Entry>
std::multiset<std::string> walked(Mcast6DbRes* iterator, uint32_t (*next)(Mcast6DbRes*, Entry*)) {
    std::multiset<std::string> names;
    Entry entry{};
    uint32_t result = 0;
    while (names.size() < 10'000 && (result = next(iterator, &entry)) == 0) {
        names.insert(std::to_string(entry.groupAddr.word[3]) + ":" + std::to_string(entry.outIfIndex));
    }
    EXPECT_EQ(60u, result);
    return names;
}

}  // namespace mcast6::tests
