// One entry of `ip -6 -j -s mroute show table all`.
#pragma once

#include <cstdint>
#include <string>

#include "kernel/capture/json.h"
#include "kernel/link_table.h"

namespace mcast6::kernel {

// The routing table of an entry. Throws Refused.
uint32_t routeTable(const Json& entry);

// Reads an entry into 'route', whose memory is used again. Throws Refused; Error when it names an interface and 'links'
// is null.
void readRoute(const Json& entry, const LinkTable* links, Route& route);

// "entry 3 (source 2001:db8::1, group ff0e::1)", with what can be told of a wrong one.
std::string routeName(size_t entryNumber, const Json& entry);

}  // namespace mcast6::kernel
