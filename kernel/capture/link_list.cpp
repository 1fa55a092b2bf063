#include "kernel/capture/link_list.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "kernel/capture/json_list.h"
#include "kernel/capture/tunnel.h"
#include "kernel/error.h"
#include "kernel/text.h"

namespace mcast6::kernel {
namespace {

uint16_t readVlanId(const Json& settings) {
    constexpr uint32_t kLargest = 4094;
    const uint32_t vlanId = numberMember(settings, "id");
    if (vlanId > kLargest) throw Refused(fmt::format("'id' is {}, not a VLAN from 0 to {}", vlanId, kLargest));
    return static_cast<uint16_t>(vlanId);
}

BridgeSettings readBridge(const Json& settings) {
    BridgeSettings bridge;
    bridge.snooping = truthMember(settings, "mcast_snooping");
    bridge.vlanFiltering = truthMember(settings, "vlan_filtering");
    bridge.vlanSnooping = truthMember(settings, "mcast_vlan_snooping");
    bridge.mldVersion = numberOr(settings, "mcast_mld_version", 0);
    return bridge;
}

// All but what needs the other links.
Link readLink(const Json& entry) {
    Link link;
    link.index = numberMember(entry, "ifindex");
    link.name = textMember(entry, "ifname");
    if (link.index == 0) throw Refused("'ifindex' is 0");
    const std::string_view type = textOr(entry, "link_type");
    const Json& linkInfo = objectMember(entry, "linkinfo");
    const Json& settings = objectMember(linkInfo, "info_data");
    link.kind = textOr(linkInfo, "info_kind");
    if (link.kind == "vlan") link.vlanId = readVlanId(settings);
    if (link.kind == "bridge") link.bridge = readBridge(settings);
    if (isTunnel(link.kind)) link.tunnel = readTunnel(link.kind, settings);
    link.isRegister = type == "pimreg" || (type.empty() && link.name.starts_with("pim6reg"));
    link.fastLeave = truthMember(objectMember(linkInfo, "info_slave_data"), "fastleave");
    return link;
}

// Calls 'read' with each entry of a list of links. A wrong one is the whole list's failure.
template <class Read>
void readLinks(const std::string& path, const char* holds, Read read) {
    JsonList list(path, {.holds = holds});
    list.check();
    size_t number = 0;
    list.read([&](const Json& entry) {
        ++number;
        // `ip` prints an empty object for each link that a selection such as `type veth` leaves out.
        if (entry.IsObject() && entry.ObjectEmpty()) return;
        try {
            read(entry, number);
        } catch (const Refused& refused) {
            throw Error(fmt::format("{}: link {}: {}", inputName(path), number, refused.what()));
        }
    });
}

// Links as they are read, with the names of those that they are on.
struct NamedLink {
    Link link;
    std::string master;
    std::string lower;
};

}  // namespace

LinkList LinkList::fromFile(const std::string& path) {
    LinkList list;
    std::vector<NamedLink> named;
    readLinks(path, "links", [&](const Json& entry, size_t number) {
        Link link = readLink(entry);
        list.detailed_ |= hasMember(entry, "linkinfo") || hasMember(entry, "promiscuity");
        named.push_back({link, std::string(textOr(entry, "master")), {}});
        if (link.kind == "vlan") named.back().lower = textOr(entry, "link");
        const auto refuse = [&](const std::string& reason) {
            return Error(fmt::format("{}: link {} ({}): {}", inputName(path), number, shown(link.name), reason));
        };
        const Link* same = list.links_.byIndex(link.index);
        if (same != nullptr && same->name != link.name) {
            throw refuse(fmt::format("link {} has the same index {}", shown(same->name), link.index));
        }
        if (list.links_.byName(link.name) != nullptr) throw refuse("a link before it has the same name");
        list.links_.put(std::move(link));
    });
    for (NamedLink& each : named) {
        if (each.master.empty() && each.lower.empty()) continue;
        if (const Link* lower = list.links_.byName(each.lower)) each.link.lowerIndex = lower->index;
        list.setMaster(each.link, each.master);
        list.links_.put(std::move(each.link));
    }
    return list;
}

void LinkList::setMaster(Link& link, const std::string& name) {
    const Link* master = links_.byName(name);
    link.masterIndex = master == nullptr ? 0 : master->index;
    if (master == nullptr && !name.empty()) {
        strangeMasters_[link.index] = name;
    } else {
        strangeMasters_.erase(link.index);
    }
}

void LinkList::addBridgeLinks(const std::string& path) {
    readLinks(path, "ports", [&](const Json& entry, size_t) {
        Link link = named("ifname", textMember(entry, "ifname"));
        if (hasMember(entry, "master")) setMaster(link, std::string(textMember(entry, "master")));
        link.fastLeave = truthMember(entry, "fastleave");
        links_.put(std::move(link));
    });
}

const Link& LinkList::named(const char* member, std::string_view name) const {
    if (const Link* link = links_.byName(name)) return *link;
    throw Refused(fmt::format("'{}' is '{}', which the link list does not have", member, shown(name)));
}

const Link& LinkList::bridgeNamed(const char* member, std::string_view name) const {
    const Link& link = named(member, name);
    if (!link.bridge) throw Refused(fmt::format("'{}' is '{}', which is no bridge", member, shown(name)));
    return link;
}

const Link& LinkList::portNamed(const char* member, std::string_view name, const Link& bridge) const {
    const Link& link = named(member, name);
    if (link.masterIndex == bridge.index) return link;
    throw Refused(fmt::format("'{}' is '{}', which is no port of {}", member, shown(name), shown(bridge.name)));
}

const Link& LinkList::bridgeOf(const Link& port) const {
    if (const Link* master = links_.byIndex(port.masterIndex)) return bridgeNamed("master", master->name);
    const auto strange = strangeMasters_.find(port.index);
    return bridgeNamed("master", strange == strangeMasters_.end() ? std::string_view() : strange->second);
}

}  // namespace mcast6::kernel
