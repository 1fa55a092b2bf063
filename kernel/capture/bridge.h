// What the captures of a bridge hold, checked: the devices of a link list with their VLANs, and one row of a group list.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "kernel/capture/json_input.h"
#include "kernel/capture/link_table.h"
#include "mcast6_db/types.h"

namespace mcast6::ctl {

// A row that is right and yet has no place in the tables.
class Skipped : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct BridgeSettings {
    bool snooping = false;
    bool vlanFiltering = false;
    bool vlanSnooping = false;
    uint32_t mldVersion = 0;
};

struct VlanMembership {
    bool untagged = false;
    bool pvid = false;
    uint32_t mcastRouter = 0;
};

// A link: a bridge, a port of one, or neither.
struct Device : Link {
    bool fastLeave = false;
    std::string lower;  // of a VLAN device, the one below
    std::optional<BridgeSettings> bridge;
    std::map<uint32_t, VlanMembership> vlans;

    // Null unless it is a VXLAN device.
    const Tunnel* vxlan() const { return kind == "vxlan" ? &*tunnel : nullptr; }
};

// How a datagram leaves a port. A tagged port with no outer tag has several VLANs.
struct Tags {
    uint16_t outer = 0;
    uint16_t inner = 0;
    bool tagged = false;
};

class Devices {
public:
    // Throws Failure, naming file, entry and reason.
    static Devices fromLinks(const std::string& path, const Json& entries);
    // What `bridge link` tells of ports goes over what the link list told. Throws Failure.
    void addBridgeLinks(const std::string& path, const Json& entries);

    const std::map<std::string, Device>& all() const { return byName_; }
    // The members throw Refused when there is no such device, or it is no bridge, or no port of 'bridge'.
    Device& named(const char* member, const std::string& name);
    Device& bridgeNamed(const char* member, const std::string& name);
    Device& portNamed(const char* member, const std::string& name, const Device& bridge);

    // How datagrams of a VLAN, or of the whole bridge (0), leave a port.
    Tags tagsOf(const Device& port, uint32_t vlanId) const;

private:
    std::map<std::string, Device> byName_;
};

// A row of a group list on a port of a bridge.
struct GroupRow {
    uint32_t vlanId = 0;  // 0: none
    Mcast6Ipv6Addr group{};
    Mcast6Ipv6Addr source{};  // all zero: any source
    uint32_t flags = 0;       // MemberFlags
    uint8_t protocol = 0;
    const Device* bridge = nullptr;
    const Device* port = nullptr;
};

// Throws Refused or Skipped.
GroupRow readGroupRow(const Json& entry, Devices& devices);

// "entry 3 (dev br10, port p101, group ff0e::1, source ::)", with what can be told of a wrong one.
std::string groupRowName(size_t number, const Json& entry);

struct VlanRange {
    uint32_t first = 0;
    uint32_t last = 0;  // included
};

// The VLANs of an entry, mostly one. Throws Refused.
VlanRange readVlanRange(const Json& entry);

// The membership that an entry of `bridge vlan show` tells. Throws Refused.
VlanMembership readMembership(const Json& entry);

// The kind of a router port: 0 never, 1 learned, 2 permanent, or 'otherwise' where the capture does not tell. Throws Refused.
uint32_t readRouterKind(const Json& entry, uint32_t otherwise);

}  // namespace mcast6::ctl
