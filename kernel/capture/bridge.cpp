#include "kernel/capture/bridge.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cli/failure.h"
#include "cli/tables/l2.h"
#include "kernel/text.h"

namespace mcast6::ctl {
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
std::optional<uint32_t> valueOf(const Word (&words)[kCount], const std::string& text) {
    const auto* found =
        std::find_if(std::begin(words), std::end(words), [&](const Word& word) { return text == word.text; });
    return found == std::end(words) ? std::nullopt : std::optional<uint32_t>(found->value);
}

// The value of a member that is one of 'words', or 0 when it is missing.
template <size_t kCount>
uint32_t wordMember(const Json& entry, const char* name, const Word (&words)[kCount]) {
    if (!hasMember(entry, name)) return 0;
    const std::string text = textMember(entry, name);
    if (const auto value = valueOf(words, text)) return *value;
    throw Refused(fmt::format("'{}' is '{}', which is unknown", name, printable(text)));
}

BridgeSettings readBridge(const Json& settings) {
    BridgeSettings bridge;
    bridge.snooping = truthMember(settings, "mcast_snooping");
    bridge.vlanFiltering = truthMember(settings, "vlan_filtering");
    bridge.vlanSnooping = truthMember(settings, "mcast_vlan_snooping");
    bridge.mldVersion = numberOr(settings, "mcast_mld_version", 0);
    return bridge;
}

Device readDevice(const Json& entry) {
    Device device{readLink(entry), false, {}, {}, {}};
    const Json& linkInfo = objectMember(entry, "linkinfo");
    device.fastLeave = truthMember(objectMember(linkInfo, "info_slave_data"), "fastleave");
    if (device.kind == "bridge") device.bridge = readBridge(objectMember(linkInfo, "info_data"));
    if (device.kind == "vlan") device.lower = textOr(entry, "link");
    return device;
}

// Calls 'read' with each entry of a list of links. A wrong one is the whole list's failure.
template <class Read>
void readLinks(const std::string& path, const Json& entries, Read read) {
    for (size_t position = 0; position < entries.size(); ++position) {
        const Json& entry = entries[position];
        if (entry.is_object() && entry.empty()) continue;
        try {
            read(entry);
        } catch (const Refused& refused) {
            throw Failure(fmt::format("{}: link {}: {}", inputName(path), position + 1, refused.what()));
        }
    }
}

bool isMacAddress(const std::string& text) {
    if (text.size() != 17) return false;
    for (size_t position = 0; position < text.size(); ++position) {
        const bool isColon = text[position] == ':';
        if (isColon != (position % 3 == 2)) return false;
    }
    return true;
}

Mcast6Ipv6Addr readGroup(const Json& entry) {
    const std::string text = textMember(entry, "grp");
    if (const auto address = parseAddress(text)) return *address;
    in_addr ignored{};
    if (inet_pton(AF_INET, text.c_str(), &ignored) == 1) throw Skipped("an IPv4 group");
    if (isMacAddress(text)) throw Skipped("a MAC address group");
    throw Refused(fmt::format("'grp' is '{}', not an address", printable(text)));
}

Mcast6Ipv6Addr readSource(const Json& entry) {
    if (!hasMember(entry, "src")) return {};
    const std::string text = textMember(entry, "src");
    const auto address = parseAddress(text);
    if (!address) throw Refused(fmt::format("'src' is '{}', not an IPv6 address", printable(text)));
    if (isMulticastAddress(*address)) throw Refused(fmt::format("the source {} is a multicast address", text));
    return *address;
}

uint8_t readProtocol(const Json& entry) {
    const std::string text = textOr(entry, "protocol");
    if (const auto known = valueOf(kProtocols, text)) return static_cast<uint8_t>(*known);
    const auto number = parseNumber(text);
    return number && *number <= UINT8_MAX ? static_cast<uint8_t>(*number) : uint8_t{0};
}

uint32_t readFlags(const Json& entry) {
    uint32_t flags = wordMember(entry, "state", kStates) | wordMember(entry, "filter_mode", kModes);
    if (!hasMember(entry, "flags")) return flags;
    for (const Json& word : listMember(entry, "flags")) {
        const auto flag = word.is_string() ? valueOf(kRowFlags, word.get<std::string>()) : std::nullopt;
        if (!flag) throw Refused(fmt::format("'flags' has {}, which is unknown", word.dump()));
        flags |= *flag;
    }
    return flags;
}

std::string shownMember(const Json& entry, const char* name, const char* otherwise) {
    if (!entry.is_object() || !entry.contains(name)) return otherwise;
    return entry.at(name).is_string() ? printable(entry.at(name).get<std::string>()) : "?";
}

}  // namespace

Devices Devices::fromLinks(const std::string& path, const Json& entries) {
    Devices devices;
    readLinks(path, entries, [&](const Json& entry) {
        Device device = readDevice(entry);
        devices.byName_[device.name] = std::move(device);
    });
    return devices;
}

void Devices::addBridgeLinks(const std::string& path, const Json& entries) {
    readLinks(path, entries, [&](const Json& entry) {
        Device& device = named("ifname", textMember(entry, "ifname"));
        if (hasMember(entry, "master")) device.master = textMember(entry, "master");
        device.fastLeave = truthMember(entry, "fastleave");
    });
}

Device& Devices::named(const char* member, const std::string& name) {
    const auto found = byName_.find(name);
    if (found != byName_.end()) return found->second;
    throw Refused(fmt::format("'{}' is '{}', which the link list does not have", member, printable(name)));
}

Device& Devices::bridgeNamed(const char* member, const std::string& name) {
    Device& device = named(member, name);
    if (!device.bridge) throw Refused(fmt::format("'{}' is '{}', which is no bridge", member, printable(name)));
    return device;
}

Device& Devices::portNamed(const char* member, const std::string& name, const Device& bridge) {
    Device& device = named(member, name);
    if (device.master == bridge.name) return device;
    throw Refused(fmt::format("'{}' is '{}', which is no port of {}", member, printable(name), printable(bridge.name)));
}

Tags Devices::tagsOf(const Device& port, uint32_t vlanId) const {
    if (vlanId != 0) {
        const auto membership = port.vlans.find(vlanId);
        const bool tagged = membership != port.vlans.end() && !membership->second.untagged;
        return {tagged ? static_cast<uint16_t>(vlanId) : uint16_t{0}, 0, tagged};
    }
    if (port.kind == "vlan") {
        const auto below = byName_.find(port.lower);
        const bool isDouble = below != byName_.end() && below->second.kind == "vlan";
        return isDouble ? Tags{below->second.vlanId, port.vlanId, true} : Tags{port.vlanId, 0, true};
    }
    const bool tagged = !port.vlans.empty() && std::none_of(port.vlans.begin(), port.vlans.end(),
                                                            [](const auto& vlan) { return vlan.second.untagged; });
    const bool isOne = tagged && port.vlans.size() == 1;
    return {isOne ? static_cast<uint16_t>(port.vlans.begin()->first) : uint16_t{0}, 0, tagged};
}

GroupRow readGroupRow(const Json& entry, Devices& devices) {
    GroupRow row;
    const std::string deviceName = textMember(entry, "dev");
    const std::string portName = textMember(entry, "port");
    const Device& device = devices.named("dev", deviceName);
    row.group = readGroup(entry);
    row.source = readSource(entry);
    if (device.vxlan() != nullptr)
        throw Skipped("a row of a VXLAN device's own, whose far ends the capture does not have");
    row.bridge = &devices.bridgeNamed("dev", deviceName);
    if (!isMulticastAddress(row.group)) {
        throw Refused(fmt::format("the group {} is not a multicast address", addressText(row.group)));
    }
    if (portName == deviceName) throw Skipped("joined by the bridge itself");
    row.port = &devices.portNamed("port", portName, *row.bridge);
    row.vlanId = numberOr(entry, "vid", 0);
    if (row.vlanId > kLargestVlan) throw Refused(fmt::format("'vid' is {}, not a VLAN", row.vlanId));
    row.flags = readFlags(entry) | (row.port->fastLeave ? kFastLeave : 0U);
    row.protocol = readProtocol(entry);
    return row;
}

std::string groupRowName(size_t number, const Json& entry) {
    return fmt::format("group row {} ({}, port {}, group {}, source {})", number, shownMember(entry, "dev", "?"),
                       shownMember(entry, "port", "?"), shownMember(entry, "grp", "?"),
                       shownMember(entry, "src", "::"));
}

VlanRange readVlanRange(const Json& entry) {
    const uint32_t first = numberMember(entry, "vlan");
    const uint32_t last = numberOr(entry, "vlanEnd", first);
    if (first == 0 || last < first || last > kLargestVlan) {
        throw Refused(fmt::format("'vlan' is {} to {}, not a range of VLANs", first, last));
    }
    return {first, last};
}

VlanMembership readMembership(const Json& entry) {
    VlanMembership membership;
    membership.mcastRouter = numberOr(entry, "mcast_router", 0);
    if (!hasMember(entry, "flags")) return membership;
    for (const Json& word : listMember(entry, "flags")) {
        membership.untagged |= word == "Egress Untagged";
        membership.pvid |= word == "PVID";
    }
    return membership;
}

uint32_t readRouterKind(const Json& entry, uint32_t otherwise) {
    return hasMember(entry, "type") ? wordMember(entry, "type", kRouterKinds) : otherwise;
}

}  // namespace mcast6::ctl
