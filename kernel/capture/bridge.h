// Rows of the captures of bridges. The members throw Refused or Skipped.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "kernel/capture/json.h"
#include "kernel/capture/link_list.h"
#include "kernel/model.h"

namespace mcast6::kernel {

// A row of a group list.
GroupEntry readGroupEntry(const Json& row, const LinkList& links);

// "group row 3 (br10, port p101, group ff0e::1, source ::)", with what can be told of a wrong one.
std::string groupRowName(size_t number, const Json& row);

// A router port of a bridge, or of a VLAN of it.
RouterPort readRouterPort(const Json& entry, std::string_view bridge, uint32_t vlanId, const LinkList& links);

struct VlanRange {
    uint32_t first = 0;
    uint32_t last = 0;  // included
};

// The VLANs of an entry, mostly one.
VlanRange readVlanRange(const Json& vlan);

// What an entry of `bridge vlan global show` tells of a VLAN of the bridge 'bridge'; what one of `bridge vlan show`
// tells of a membership of the port 'port'. The VLANs are those of readVlanRange.
Vlan readVlan(const Json& vlan, std::string_view bridge, const LinkList& links);
VlanPort readVlanPort(const Json& vlan, std::string_view port, const LinkList& links);

}  // namespace mcast6::kernel
