#include "kernel/capture/route.h"

#include <fmt/format.h>

#include <algorithm>

#include "kernel/error.h"
#include "kernel/text.h"

namespace mcast6::kernel {
namespace {

constexpr std::string_view kUnresolved = "unresolved";

Mcast6Ipv6Addr addressMember(const Json& entry, const char* name) {
    const std::string_view text = textMember(entry, name);
    if (const auto address = parseAddress(text)) return *address;
    throw Refused(fmt::format("'{}' is '{}', not an IPv6 address", name, shown(text)));
}

const Link& linkMember(const Json& entry, const char* name, const LinkTable* links) {
    const std::string_view text = textMember(entry, name);
    if (links == nullptr) {
        throw Error(fmt::format("names the interface {}; give the captured link list with --links FILE", shown(text)));
    }
    if (const Link* link = links->byName(text)) return *link;
    throw Refused(fmt::format("'{}' is the interface '{}', which the link list does not have", name, shown(text)));
}

RouteState stateOf(const Json& entry) {
    const std::string_view state = hasMember(entry, "state") ? textMember(entry, "state") : "resolved";
    if (state == kUnresolved) return RouteState::kUnresolved;
    if (state != "resolved") {
        throw Refused(fmt::format("'state' is '{}', neither resolved nor unresolved", shown(state)));
    }
    return textMember(entry, "iif") == kUnresolved ? RouteState::kNoInput : RouteState::kForwards;
}

void readOutgoing(const Json& entry, const LinkTable* links, std::vector<uint32_t>& outgoing) {
    if (!hasMember(entry, "multipath")) return;
    size_t number = 0;
    for (const Json& path : listMember(entry, "multipath").GetArray()) {
        ++number;
        try {
            const Link& link = linkMember(path, "oif", links);
            if (std::find(outgoing.begin(), outgoing.end(), link.index) != outgoing.end()) {
                throw Refused(fmt::format("the interface '{}' is there twice", shown(link.name)));
            }
            outgoing.push_back(link.index);
        } catch (const Refused& refused) {
            throw Refused(fmt::format("'multipath' {}: {}", number, refused.what()));
        }
    }
}

}  // namespace

uint32_t routeTable(const Json& entry) {
    if (!hasMember(entry, "table")) return kMainTable;
    if (!findMember(entry, "table")->IsString()) return numberMember(entry, "table");
    const std::string_view text = textMember(entry, "table");
    if (const auto table = parseRoutingTable(text)) return *table;
    throw Refused(fmt::format("'table' is '{}', neither a number nor main, default or local", shown(text)));
}

void readRoute(const Json& entry, const LinkTable* links, Route& route) {
    route.outIfIndexes.clear();
    route.inIfIndex = 0;
    route.table = routeTable(entry);
    route.source = addressMember(entry, "src");
    route.group = addressMember(entry, "dst");
    if (!isMulticastAddress(route.group) && !isAnyAddress(route.group)) {
        throw Refused(fmt::format("the group {} is not a multicast address", addressText(route.group)));
    }
    if (isMulticastAddress(route.source)) {
        throw Refused(fmt::format("the source {} is a multicast address", addressText(route.source)));
    }
    route.state = stateOf(entry);
    if (route.state != RouteState::kForwards) return;
    route.inIfIndex = linkMember(entry, "iif", links).index;
    readOutgoing(entry, links, route.outIfIndexes);
}

std::string routeName(size_t entryNumber, const Json& entry) {
    return fmt::format("entry {} (source {}, group {})", entryNumber, shownMember(entry, "src"),
                       shownMember(entry, "dst"));
}

}  // namespace mcast6::kernel
