#include "kernel/capture/route.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/failure.h"
#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

constexpr const char* kUnresolved = "unresolved";

Mcast6Ipv6Addr addressMember(const Json& entry, const char* name) {
    const std::string text = textMember(entry, name);
    if (const auto address = parseAddress(text)) return *address;
    throw Refused(fmt::format("'{}' is '{}', not an IPv6 address", name, printable(text)));
}

const Link& linkMember(const Json& entry, const char* name, const LinkTable* links) {
    const std::string text = textMember(entry, name);
    if (links == nullptr) {
        throw Failure(
            fmt::format("names the interface {}; give the captured link list with --links FILE", printable(text)));
    }
    if (const Link* link = links->byName(text)) return *link;
    throw Refused(fmt::format("'{}' is the interface '{}', which the link list does not have", name, printable(text)));
}

void checkResolved(const Json& entry) {
    const std::string state = hasMember(entry, "state") ? textMember(entry, "state") : "resolved";
    if (state == kUnresolved) throw Unresolved("the route is unresolved");
    if (state != "resolved")
        throw Refused(fmt::format("'state' is '{}', neither resolved nor unresolved", printable(state)));
    if (textMember(entry, "iif") == kUnresolved) throw Unresolved("the route has no incoming interface");
}

std::vector<const Link*> outgoingLinks(const Json& entry, const LinkTable* links) {
    std::vector<const Link*> outgoing;
    if (!hasMember(entry, "multipath")) return outgoing;
    const Json& paths = listMember(entry, "multipath");
    for (size_t position = 0; position < paths.size(); ++position) {
        try {
            const Link& link = linkMember(paths[position], "oif", links);
            if (std::find(outgoing.begin(), outgoing.end(), &link) != outgoing.end()) {
                throw Refused(fmt::format("the interface '{}' is there twice", printable(link.name)));
            }
            outgoing.push_back(&link);
        } catch (const Refused& refused) {
            throw Refused(fmt::format("'multipath' {}: {}", position + 1, refused.what()));
        }
    }
    return outgoing;
}

// The register interface that a route with these interfaces uses, or 0.
uint32_t registerOf(const Link& incoming, const std::vector<const Link*>& outgoing) {
    if (incoming.isRegister) return incoming.index;
    const auto found =
        std::find_if(outgoing.begin(), outgoing.end(), [](const Link* link) { return link->isRegister; });
    return found == outgoing.end() ? 0 : (*found)->index;
}

std::string shownMember(const Json& entry, const char* name) {
    if (!entry.is_object() || !entry.contains(name) || !entry.at(name).is_string()) return "?";
    return printable(entry.at(name).get<std::string>());
}

}  // namespace

uint32_t routeTable(const Json& entry) {
    if (!hasMember(entry, "table")) return kMainTable;
    if (!entry.at("table").is_string()) return numberMember(entry, "table");
    const std::string text = textMember(entry, "table");
    if (const auto table = parseRoutingTable(text)) return *table;
    throw Refused(fmt::format("'table' is '{}', neither a number nor main, default or local", printable(text)));
}

Route readRoute(const Json& entry, const LinkTable* links) {
    Route route;
    route.table = routeTable(entry);
    route.source = addressMember(entry, "src");
    route.group = addressMember(entry, "dst");
    if (!isMulticastAddress(route.group) && !isAnyAddress(route.group)) {
        throw Refused(fmt::format("the group {} is not a multicast address", addressText(route.group)));
    }
    if (isMulticastAddress(route.source)) {
        throw Refused(fmt::format("the source {} is a multicast address", addressText(route.source)));
    }
    checkResolved(entry);
    const Link& incoming = linkMember(entry, "iif", links);
    route.outgoing = outgoingLinks(entry, links);
    route.inIfIndex = incoming.index;
    route.regIfIndex = registerOf(incoming, route.outgoing);
    return route;
}

std::string routeName(size_t entryNumber, const Json& entry) {
    return fmt::format("entry {} (source {}, group {})", entryNumber, shownMember(entry, "src"),
                       shownMember(entry, "dst"));
}

}  // namespace mcast6::ctl
