// The captured link list (`ip -j -d link`), and what `bridge -j -d link` adds to it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "kernel/link_table.h"

namespace mcast6::kernel {

class LinkList {
public:
    // Reads a capture of links. Throws Error, naming file, entry and reason.
    static LinkList fromFile(const std::string& path);

    // What a capture of bridge ports tells goes over what the link list told. Throws Error.
    void addBridgeLinks(const std::string& path);

    const LinkTable& links() const { return links_; }

    // Whether the capture has the details of links: without `-d`, VLANs, bridges and tunnels look like plain
    // interfaces.
    bool isDetailed() const { return detailed_ || links_.empty(); }

    // The link of this name, which the member 'member' of an entry gives. Throw Refused when there is none, it is no
    // bridge, or no port of 'bridge'.
    const Link& named(const char* member, std::string_view name) const;
    const Link& bridgeNamed(const char* member, std::string_view name) const;
    const Link& portNamed(const char* member, std::string_view name, const Link& bridge) const;
    // The bridge that 'port' is in. Throws Refused.
    const Link& bridgeOf(const Link& port) const;

private:
    void setMaster(Link& link, const std::string& name);

    LinkTable links_;
    std::unordered_map<uint32_t, std::string> strangeMasters_;  // names of masters that the list does not have
    bool detailed_ = false;
};

}  // namespace mcast6::kernel
