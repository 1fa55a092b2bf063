// What a Linux kernel tells of its multicast state, as plain values: whether they come from a capture or from the
// kernel itself is seen nowhere here. Links are named by their index; 0 is none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "mcast6_db/types.h"

namespace mcast6::kernel {

struct Tunnel {
    uint32_t id = 0;  // the network of VXLAN and Geneve, the output key of GRE; 0: none
    uint32_t udpPort = 0;
    uint8_t underlay = 0;  // IP version of the tunnel's ends; 0: not told
    Mcast6Ipv6Addr
        remote{};  // the far end, or the group that stands for all ends; all zero: none; IPv4 as ::ffff:a.b.c.d
};

struct BridgeSettings {
    bool snooping = false;
    bool vlanFiltering = false;
    bool vlanSnooping = false;
    uint32_t mldVersion = 0;
};

struct Link {
    uint32_t index = 0;
    std::string name;
    std::string kind;                      // "bridge", "vlan", "vxlan", ...; empty: not told
    bool isRegister = false;               // the PIM register interface of a routing table
    bool fastLeave = false;                // a bridge port that leaves groups without a last query
    uint16_t vlanId = 0;                   // of a VLAN device
    uint32_t masterIndex = 0;              // the link that it is a port of
    uint32_t lowerIndex = 0;               // of a VLAN device, the one below
    std::optional<Tunnel> tunnel;          // of the kinds that are tunnels
    std::optional<BridgeSettings> bridge;  // of a bridge

    bool isVxlan() const { return kind == "vxlan" && tunnel.has_value(); }
};

enum class RouteState : uint8_t {
    kForwards,
    kUnresolved,  // the kernel waits for the routing daemon
    kNoInput,     // its incoming interface is gone
};

struct Route {
    uint32_t table = 0;
    Mcast6Ipv6Addr source{};  // all zero: any source
    Mcast6Ipv6Addr group{};   // all zero: any group
    RouteState state = RouteState::kForwards;
    uint32_t inIfIndex = 0;              // 0 unless it forwards, and so are the others
    std::vector<uint32_t> outIfIndexes;  // each once
};

// A VLAN of a bridge.
struct Vlan {
    uint32_t bridgeIndex = 0;
    uint32_t vlanId = 0;
    bool snooping = false;
    bool querier = false;
    uint32_t mldVersion = 0;
};

// A port's membership of a VLAN.
struct VlanPort {
    uint32_t bridgeIndex = 0;
    uint32_t portIndex = 0;
    uint32_t vlanId = 0;
    bool untagged = false;  // datagrams of the VLAN leave the port untagged
    bool pvid = false;      // untagged datagrams that enter the port belong to the VLAN
    uint32_t mcastRouter = 0;
};

// A port behind which a multicast router is.
struct RouterPort {
    uint32_t bridgeIndex = 0;
    uint32_t portIndex = 0;
    uint32_t vlanId = 0;           // 0: the whole bridge
    std::optional<uint32_t> kind;  // 0 never, 1 learned, 2 permanent; none: as its VLAN says, else learned
};

// A group, or a source of a group, that a port of a bridge wants.
struct GroupEntry {
    uint32_t bridgeIndex = 0;
    uint32_t portIndex = 0;
    uint32_t vlanId = 0;  // 0: none
    Mcast6Ipv6Addr group{};
    Mcast6Ipv6Addr source{};  // all zero: any source
    uint32_t flags = 0;       // MemberFlags of apply/layer2_words.h
    uint8_t protocol = 0;     // who installed it
};

}  // namespace mcast6::kernel
