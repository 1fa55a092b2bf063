// Shared by the tests of a bridge domain's egress members.
#pragma once

#include <cstdint>
#include <vector>

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_egress.h"

namespace mcast6::tests {

inline constexpr Mcast6Ipv6Addr kGroup{{0xFF0E0000, 0, 0, 0x00000101}};
inline constexpr Mcast6Ipv6Addr kOtherGroup{{0xFF0E0000, 0, 0, 0x01010000}};
inline constexpr Mcast6Ipv6Addr kSource{{0x20010DB8, 0, 0, 1}};

// A member of an entry with an outgoing interface, a tunnel, and nothing else.
inline L2Elb6Entry memberOf(const Mcast6Ipv6Addr& group, uint32_t ifIndex, uint8_t tunnel = 1) {
    L2Elb6Entry member{};
    member.vrId = 1;
    member.bdId = 100;
    member.groupAddr = group;
    member.sourceAddr = kSource;
    member.outIfIndex = ifIndex;
    member.vxlanByte = tunnel;
    member.vxlanWord1 = 0x1000u + tunnel;
    return member;
}

inline L2McBdElbKey entryOf(const Mcast6Ipv6Addr& group) { return {1, 0xAAAAAAAA, 100, 0xBBBBBBBB, group, kSource}; }

// The interfaces of all members that the iterator returns. Releases the iterator.
template <class Table>
std::vector<uint32_t> interfacesOf(Mcast6DbRes* iterator) {
    std::vector<uint32_t> interfaces;
    L2Elb6Entry member{};
    while (interfaces.size() < 1000 && Table::getEntry(iterator, &member) == 0) interfaces.push_back(member.outIfIndex);
    Table::releaseIterator(iterator);
    return interfaces;
}

}  // namespace mcast6::tests
