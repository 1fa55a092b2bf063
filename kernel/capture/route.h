// One entry of `ip -6 -j -s mroute show table all`.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "kernel/capture/json_input.h"
#include "kernel/capture/link_table.h"
#include "mcast6_db/types.h"

namespace mcast6::ctl {

struct Route {
    uint32_t table = 0;
    Mcast6Ipv6Addr source{};  // all zero: any source
    Mcast6Ipv6Addr group{};   // all zero: any group
    uint32_t inIfIndex = 0;
    uint32_t regIfIndex = 0;            // the register interface that the route comes in or goes out by; 0: neither
    std::vector<const Link*> outgoing;  // each once; of the link list
};

// A route that is right and yet cannot forward: it has no incoming interface.
class Unresolved : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The routing table of an entry. Throws Refused.
uint32_t routeTable(const Json& entry);

// Throws Refused or Unresolved; Failure when it names an interface and 'links' is null.
Route readRoute(const Json& entry, const LinkTable* links);

// "entry 3 (source 2001:db8::1, group ff0e::1)", with what can be told of a wrong one.
std::string routeName(size_t entryNumber, const Json& entry);

}  // namespace mcast6::ctl
