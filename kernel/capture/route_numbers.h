// Which entry of a capture had a route first. Exact, and small beside what the same routes take in the tables: 40 bytes
// for a route, and 16 to 32 for finding it.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "kernel/model.h"

namespace mcast6::kernel {

class RouteNumbers {
public:
    // The number of the entry that had the table, source and group of 'route' before; 0 when none had, and then this is
    // the one.
    uint64_t firstOf(const Route& route, uint64_t number);

private:
    struct Key {
        uint32_t number;  // entries beyond 2^32 - 1 are told as that
        uint32_t table;
        Mcast6Ipv6Addr source;
        Mcast6Ipv6Addr group;
    };
    struct Slot {
        uint32_t hash;      // its upper half
        uint32_t position;  // in keys_, plus 1; 0: free
    };
    static uint64_t hashOf(const Key& key);
    Slot& slotOf(uint64_t hash, const Key& key);
    void grow();

    std::deque<Key> keys_;
    std::vector<Slot> slots_;  // a power of two, at most half of them taken
};

}  // namespace mcast6::kernel
