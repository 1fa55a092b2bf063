// The captured link list (`ip -j -d link`): interface names, indexes and kinds.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <unordered_map>

#include "kernel/capture/tunnel.h"

namespace mcast6::ctl {

struct Link {
    uint32_t index = 0;
    std::string name;
    std::string kind;          // "bridge", "vlan", "vxlan", ...; empty where the link list does not tell
    bool isRegister = false;   // the PIM register interface of a routing table: pim6reg, pim6regTABLE
    uint16_t vlanId = 0;       // of a VLAN device
    std::string master;        // the link that it is a port of
    uint32_t bridgeIndex = 0;  // of that link where it is a bridge; 0: none
    std::optional<Tunnel> tunnel;
};

// One link of a list, without bridgeIndex, for which the others are needed. Throws Refused.
Link readLink(const nlohmann::json& entry);

class LinkTable {
public:
    // Reads a capture. Throws Failure, naming file, entry and reason, and then nothing was read.
    static LinkTable fromFile(const std::string& path);
    // The same of a capture that was read already; 'path' names it in messages.
    static LinkTable fromEntries(const std::string& path, const nlohmann::json& entries);

    // Null when there is no such link.
    const Link* byName(const std::string& name) const;
    const Link* byIndex(uint32_t index) const;

    // By name.
    const std::unordered_map<std::string, Link>& all() const { return byName_; }

private:
    void add(const std::string& file, size_t entryNumber, Link link);

    std::unordered_map<std::string, Link> byName_;
    std::unordered_map<uint32_t, std::string> nameOf_;
};

}  // namespace mcast6::ctl
