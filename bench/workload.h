// The measured entries: routes of a multicast network of any size, the same in every run.
//
//   shared   1,000 groups, each with the same number of sources; a source sends to many groups
//   unique   1,000 groups, no source sends to two
//
// Groups are spread over 4 VRFs. A source is received on one of 60 interfaces; one in 8 also has a register interface.
// In set 'shared' every group has an any-source entry.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace mcast6::bench {

enum class EntrySet : uint8_t { shared, unique };

// What distinguishes an entry; the rest of a record is derived from 'number'. Addresses are words in host order.
struct Seed {
    uint32_t number;
    uint32_t vrId;
    uint32_t vrfId;
    std::array<uint32_t, 4> group;
    std::array<uint32_t, 4> source;
    uint32_t inIfIndex;
    uint32_t regIfIndex;
    uint32_t errorCode;

    // An arbitrary value for the attribute 'which'.
    uint32_t attribute(uint32_t which) const { return number * 2654435761U + which; }
};

struct Workload {
    std::vector<Seed> seeds;            // in the order of loading, which is random
    std::vector<uint32_t> readOrder;    // positions in 'seeds', each once, in another random order
    std::vector<uint32_t> deleteOrder;  // in a third random order
    std::vector<uint32_t> groups;       // positions of one entry of each group, in random order
    std::vector<uint32_t> vrfs;         // positions of one entry of each VRF
};

Workload makeWorkload(EntrySet set, uint32_t size);

}  // namespace mcast6::bench
