// Which entry of a capture had a route first. Exact, and small beside what the same routes take in the tables: 40 bytes for a
// route, and 4 to 8 for finding it.
#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "kernel/model.h"

namespace mcast6::kernel {

class RouteNumbers {
public:
    // The number of the entry that had the table, source and group of 'route' before; 0 when none had, and then this is the one.
    uint64_t firstOf(const Route& route, uint64_t number);

private:
    struct Key {
        uint32_t number;  // entries beyond 2^32 - 1 are told as that
        uint32_t table;
        Mcast6Ipv6Addr source;
        Mcast6Ipv6Addr group;
    };
    static size_t hashOf(const Key& key);
    uint32_t* slotOf(const Key& key);
    void grow();

    std::deque<Key> keys_;
    std::vector<uint32_t> slots_;  // positions in keys_ plus 1; 0: free. A power of two, at most half of them taken
};

}  // namespace mcast6::kernel
