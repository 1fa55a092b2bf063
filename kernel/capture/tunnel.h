// Tunnel devices of a captured link list.
#pragma once

#include <string_view>

#include "kernel/capture/json.h"
#include "kernel/model.h"

namespace mcast6::kernel {

// Whether links of this kind ("ip6gre", "vxlan", ...) are tunnels.
bool isTunnel(std::string_view kind);

// What the link list tells of a tunnel of this kind (its info_data). Throws Refused.
Tunnel readTunnel(std::string_view kind, const Json& settings);

}  // namespace mcast6::kernel
