// Tunnel devices of a captured link list.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "mcast6_db/types.h"

namespace mcast6::ctl {

struct Tunnel {
    uint32_t id = 0;  // the network of VXLAN and Geneve, the output key of GRE; 0: none
    uint32_t udpPort = 0;
    uint8_t underlay = 0;  // IP version of the tunnel's ends; 0: not told
    Mcast6Ipv6Addr
        remote{};  // the far end, or the group that stands for all ends; all zero: none; IPv4 as ::ffff:a.b.c.d
};

// Whether links of this kind ("ip6gre", "vxlan", ...) are tunnels.
bool isTunnel(const std::string& kind);

// What the link list tells of a tunnel of this kind (its info_data). Throws Refused.
Tunnel readTunnel(const std::string& kind, const nlohmann::json& settings);

}  // namespace mcast6::ctl
