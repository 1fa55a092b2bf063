#include "kernel/capture/bridge.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "kernel/apply/layer2_words.h"
#include "kernel/error.h"
#include "kernel/text.h"

namespace mcast6::kernel {
namespace {

constexpr uint32_t kLargestVlan = 4094;

struct Word {
    const char* text;
    uint32_t value;
};

constexpr Word kRowFlags[] = {
    {"offload", kOffload}, {"fast_leave", kFastLeave}, {"added_by_star_ex", kStarExclude}, {"blocked", kBlocked}};
constexpr Word kStates[] = {{"temp", 0}, {"permanent", kPermanent}};
constexpr Word kModes[] = {{"include", kIncludeMode}, {"exclude", kExcludeMode}};
// The names that the kernel itself gives; others are the machine's own and may be printed as numbers.
constexpr Word kProtocols[] = {{"redirect", 1}, {"kernel", 2}, {"boot", 3}, {"static", 4}, {"mrouted", 17}};
constexpr Word kRouterKinds[] = {{"permanent", 2}, {"temp", 1}};

template <size_t kCount>
std::optional<uint32_t> valueOf(const Word (&words)[kCount], std::string_view text) {
    const auto* found =
        std::find_if(std::begin(words), std::end(words), [&](const Word& word) { return text == word.text; });
    return found == std::end(words) ? std::nullopt : std::optional<uint32_t>(found->value);
}

// The value of a member that is one of 'words', or 0 when it is missing.
template <size_t kCount>
uint32_t wordMember(const Json& entry, const char* name, const Word (&words)[kCount]) {
    if (!hasMember(entry, name)) return 0;
    const std::string_view text = textMember(entry, name);
    if (const auto value = valueOf(words, text)) return *value;
    throw Refused(fmt::format("'{}' is '{}', which is unknown", name, shown(text)));
}

bool isMacAddress(std::string_view text) {
    if (text.size() != 17) return false;
    for (size_t position = 0; position < text.size(); ++position) {
        const bool isColon = text[position] == ':';
        if (isColon != (position % 3 == 2)) return false;
    }
    return true;
}

Mcast6Ipv6Addr readGroup(const Json& entry) {
    const std::string text(textMember(entry, "grp"));
    if (const auto address = parseAddress(text)) return *address;
    in_addr ignored{};
    if (inet_pton(AF_INET, text.c_str(), &ignored) == 1) throw Skipped("an IPv4 group");
    if (isMacAddress(text)) throw Skipped("a MAC address group");
    throw Refused(fmt::format("'grp' is '{}', not an address", shown(text)));
}

Mcast6Ipv6Addr readSource(const Json& entry) {
    if (!hasMember(entry, "src")) return {};
    const std::string_view text = textMember(entry, "src");
    const auto address = parseAddress(text);
    if (!address) throw Refused(fmt::format("'src' is '{}', not an IPv6 address", shown(text)));
    if (isMulticastAddress(*address))
        throw Refused(fmt::format("the source {} is a multicast address", addressText(*address)));
    return *address;
}

uint8_t readProtocol(const Json& entry) {
    const std::string_view text = textOr(entry, "protocol");
    if (const auto known = valueOf(kProtocols, text)) return static_cast<uint8_t>(*known);
    const auto number = parseNumber(text);
    return number && *number <= UINT8_MAX ? static_cast<uint8_t>(*number) : uint8_t{0};
}

uint32_t readFlags(const Json& entry) {
    uint32_t flags = wordMember(entry, "state", kStates) | wordMember(entry, "filter_mode", kModes);
    if (!hasMember(entry, "flags")) return flags;
    for (const Json& word : listMember(entry, "flags").GetArray()) {
        const auto flag = word.IsString() ? valueOf(kRowFlags, textOf(word)) : std::nullopt;
        if (!flag) throw Refused(fmt::format("'flags' has {}, which is unknown", shownJson(word)));
        flags |= *flag;
    }
    return flags;
}

}  // namespace

GroupEntry readGroupEntry(const Json& row, const LinkList& links) {
    const std::string_view deviceName = textMember(row, "dev");
    const std::string_view portName = textMember(row, "port");
    const Link& device = links.named("dev", deviceName);
    GroupEntry entry;
    entry.group = readGroup(row);
    entry.source = readSource(row);
    if (device.isVxlan()) throw Skipped("a row of a VXLAN device's own, whose far ends the capture does not have");
    const Link& bridge = links.bridgeNamed("dev", deviceName);
    if (!isMulticastAddress(entry.group)) {
        throw Refused(fmt::format("the group {} is not a multicast address", addressText(entry.group)));
    }
    if (portName == deviceName) throw Skipped("joined by the bridge itself");
    entry.bridgeIndex = bridge.index;
    entry.portIndex = links.portNamed("port", portName, bridge).index;
    entry.vlanId = numberOr(row, "vid", 0);
    if (entry.vlanId > kLargestVlan) throw Refused(fmt::format("'vid' is {}, not a VLAN", entry.vlanId));
    entry.flags = readFlags(row);
    entry.protocol = readProtocol(row);
    return entry;
}

std::string groupRowName(size_t number, const Json& row) {
    return fmt::format("group row {} ({}, port {}, group {}, source {})", number, shownMember(row, "dev"),
                       shownMember(row, "port"), shownMember(row, "grp"), shownMember(row, "src", "::"));
}

RouterPort readRouterPort(const Json& entry, std::string_view bridgeName, uint32_t vlanId, const LinkList& links) {
    const Link& bridge = links.bridgeNamed("bridge", bridgeName);
    const Link& port = links.portNamed("port", textMember(entry, "port"), bridge);
    RouterPort router{bridge.index, port.index, vlanId, {}};
    if (hasMember(entry, "type")) router.kind = wordMember(entry, "type", kRouterKinds);
    return router;
}

VlanRange readVlanRange(const Json& vlan) {
    const uint32_t first = numberMember(vlan, "vlan");
    const uint32_t last = numberOr(vlan, "vlanEnd", first);
    if (first == 0 || last < first || last > kLargestVlan) {
        throw Refused(fmt::format("'vlan' is {} to {}, not a range of VLANs", first, last));
    }
    return {first, last};
}

Vlan readVlan(const Json& entry, std::string_view bridge, const LinkList& links) {
    Vlan vlan;
    vlan.bridgeIndex = links.bridgeNamed("ifname", bridge).index;
    vlan.vlanId = readVlanRange(entry).first;
    vlan.snooping = numberOr(entry, "mcast_snooping", 0) != 0;
    vlan.querier = numberOr(entry, "mcast_querier", 0) != 0;
    vlan.mldVersion = numberOr(entry, "mcast_mld_version", 0);
    return vlan;
}

VlanPort readVlanPort(const Json& entry, std::string_view portName, const LinkList& links) {
    const Link& port = links.named("ifname", portName);
    if (port.bridge) throw Skipped("the bridge itself, which is no port");
    VlanPort membership;
    membership.bridgeIndex = links.bridgeOf(port).index;
    membership.portIndex = port.index;
    membership.vlanId = readVlanRange(entry).first;
    membership.mcastRouter = numberOr(entry, "mcast_router", 0);
    if (!hasMember(entry, "flags")) return membership;
    for (const Json& word : listMember(entry, "flags").GetArray()) {
        membership.untagged |= word.IsString() && textOf(word) == "Egress Untagged";
        membership.pvid |= word.IsString() && textOf(word) == "PVID";
    }
    return membership;
}

}  // namespace mcast6::kernel
