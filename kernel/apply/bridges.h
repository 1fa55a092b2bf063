// The state of bridges into the layer-2 tables. docs/bridge-import.md tells how it maps.
#pragma once

#include <cstdint>
#include <map>
#include <unordered_set>
#include <utility>

#include "kernel/apply/applier.h"
#include "kernel/link_table.h"
#include "mcast6_db/types.h"

namespace mcast6::kernel {

class BridgeTables {
public:
    // 'links' outlives this and has the links that are named below.
    BridgeTables(const LinkTable& links, uint32_t smoothVersion);

    // Each is one group of steps, and throws TableError. How a port sends is known once its memberships of VLANs were
    // brought.
    void bridge(const Link& bridge);
    void vlan(const Vlan& vlan);
    void vlanPort(const VlanPort& membership);
    void routerPort(const RouterPort& router);
    // The forwarding entry, when this is its first member, and the member.
    void group(const GroupEntry& entry);

    // The memberships that were brought, by port and VLAN.
    using Memberships = std::map<std::pair<uint32_t, uint32_t>, VlanPort>;
    const Memberships& memberships() const { return memberships_; }

    TableChanges changes() const { return applier_.changes(); }

private:
    // How a datagram leaves a port. A tagged port with no outer tag has several VLANs.
    struct Tags {
        uint16_t outer = 0;
        uint16_t inner = 0;
        bool tagged = false;
    };
    struct EntryKey {
        uint32_t bridgeIndex;
        uint32_t vlanId;
        Mcast6Ipv6Addr group;
        Mcast6Ipv6Addr source;
        bool operator==(const EntryKey& other) const;
    };
    struct EntryHash {
        size_t operator()(const EntryKey& key) const;
    };

    const Link& linkOf(uint32_t index) const;
    Tags tagsOf(const Link& port, uint32_t vlanId) const;
    void entry(const GroupEntry& row);
    void member(const GroupEntry& row);

    const LinkTable& links_;
    Applier applier_;
    Memberships memberships_;
    std::unordered_set<EntryKey, EntryHash> entries_;  // that were brought
};

}  // namespace mcast6::kernel
