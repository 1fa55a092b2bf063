// A capture of a router with many multicast routes, made up.
#pragma once

#include <cstdint>
#include <string>

namespace mcast6::bench {

// Writes DIRECTORY/mroute.json and DIRECTORY/link.json, as `ip -6 -j -s mroute show table all` and `ip -j -d link`
// print them. A route has one to five outgoing interfaces, three on average; a source sends to sixteen groups.
void writeCapture(const std::string& directory, uint32_t routes);

}  // namespace mcast6::bench
