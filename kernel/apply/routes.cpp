#include "kernel/apply/routes.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

#include "kernel/apply/layer3_tables.h"

namespace mcast6::kernel {
namespace {

constexpr uint32_t kIpv6 = 2;     // addrType
constexpr uint8_t kForwards = 1;  // elbFlagD: the fast scan of an entry's members looks for it

using Entry = L3Mc6MfibEntry;
using Register = L3Mc6RegOifEntry;
using Plain = L3Mc6ElbEntry;
using Vlan = L3Mc6ElbEntryExt;
using Domain = L3BdElb6Entry;

// A record that begins with the key of 'entry'.
template <class Record>
Record keyOf(const Entry& entry) {
    Record record{};
    record.vrId = entry.vrId;
    record.vrfId = entry.vrfId;
    record.groupAddr = entry.groupAddr;
    record.sourceAddr = entry.sourceAddr;
    return record;
}

Plain plainMember(const Entry& entry, const Link& link, const LinkTable&) {
    Plain record = keyOf<Plain>(entry);
    record.outIfIndex = link.index;
    record.elbFlagD = kForwards;
    return record;
}

Register registerMember(const Entry& entry, const Link& link, const LinkTable& links) {
    Plain member = plainMember(entry, link, links);
    member.instType = L3_REG_INST_NONE;
    Register record{};
    MCAST6_DB_TransElbEntryToRegElbEntry(&member, &record);
    return record;
}

Vlan vlanMember(const Entry& entry, const Link& link, const LinkTable&) {
    Vlan record = keyOf<Vlan>(entry);
    record.outIfIndex = link.index;
    record.instId = link.vlanId;
    record.elbFlagD = kForwards;
    return record;
}

Domain bridgeMember(const Entry& entry, const Link& link, const LinkTable&) {
    Domain record = keyOf<Domain>(entry);
    record.bdElbAttr4 = link.index;
    record.bdElbAttr5 = link.index;
    return record;
}

Domain tunnelMember(const Entry& entry, const Link& link, const LinkTable& links) {
    const Link* bridge = links.bridgeOf(link);
    Domain record = keyOf<Domain>(entry);
    record.bdElbAttr4 = bridge == nullptr ? 0 : bridge->index;
    record.bdElbAttr5 = link.index;
    record.tnlAttr1 = link.tunnel->id;
    record.tnlAttr2 = link.index;
    record.tnlAttr3 = link.tunnel->underlay;
    record.tnlAttr4 = link.tunnel->udpPort;
    for (size_t word = 0; word < 4; ++word) {
        const uint32_t bytes = htonl(link.tunnel->remote.word[word]);
        std::memcpy(record.tnlAttr5 + 4 * word, &bytes, sizeof bytes);
    }
    return record;
}

// Whether a stored member is the one that the route has.
bool isSame(const Register& member, const Register& wanted) { return member.outIfIndex == wanted.outIfIndex; }
bool isSame(const Plain& member, const Plain& wanted) { return member.outIfIndex == wanted.outIfIndex; }
bool isSame(const Vlan& member, const Vlan& wanted) {
    return member.outIfIndex == wanted.outIfIndex && member.instId == wanted.instId;
}

}  // namespace

// The first kind that matches is the kind of a link.
const RouteTables::LinkKind RouteTables::kLinkKinds[] = {
    {[](const Link& link) { return link.isRegister; }, &RouteTables::bringMember<&kL3Mc6RegisterElb, registerMember>},
    {[](const Link& link) { return link.kind == "vlan"; }, &RouteTables::bringMember<&kL3Mc6VlanElb, vlanMember>},
    {[](const Link& link) { return link.kind == "bridge"; },
     &RouteTables::bringMember<&kL3Mc6BdUntagElb, bridgeMember>},
    {[](const Link& link) { return link.tunnel.has_value(); },
     &RouteTables::bringMember<&kL3Mc6BdTnlElb, tunnelMember>},
    {[](const Link&) { return true; }, &RouteTables::bringMember<&kL3Mc6Elb, plainMember>},
};

RouteTables::RouteTables(const LinkTable& links, uint32_t vrId, uint32_t smoothVersion)
    : links_(links), vrId_(vrId), applier_(smoothVersion) {}

const RouteTables::LinkKind& RouteTables::kindOf(const Link& link) {
    return *std::find_if(std::begin(kLinkKinds), std::end(kLinkKinds),
                         [&](const LinkKind& kind) { return kind.matches(link); });
}

void RouteTables::bringVrf(uint32_t vrfId) {
    constexpr uint32_t kRoutes = 1;
    if (vrfs_.contains(vrfId)) return;
    L3Mc6GlbCfgEntry record{};
    record.cfgKeyA = vrId_;
    record.cfgKeyB = vrfId;
    record.cfgKeyC = kIpv6;
    record.cfgWord3 = kRoutes;
    applier_.bring(kL3Mc6GlbCfg, record);
    vrfs_.insert(vrfId);
}

Fate RouteTables::route(const Route& route, bool isFirst) {
    bringVrf(route.table);
    if (route.state != RouteState::kForwards) return Fate::kSkipped;
    Entry entry{};
    entry.vrId = vrId_;
    entry.vrfId = route.table;
    entry.addrType = kIpv6;
    entry.groupAddr = route.group;
    entry.sourceAddr = route.source;
    entry.inIfIndex = route.inIfIndex;
    entry.regIfIndex = registerOf(route);
    const bool mayBeStored = !isFirst || applier_.heldAny(kL3Mc6Mfib);
    const Fate fate = applier_.bring(kL3Mc6Mfib, entry, mayBeStored ? Stored::kMaybe : Stored::kNo);
    for (const uint32_t index : route.outIfIndexes) {
        const Link& link = linkOf(index);
        (this->*kindOf(link).bring)(entry, link, fate);
    }
    removeVanished<&kL3Mc6RegisterElb, registerMember>(entry, route, fate);
    removeVanished<&kL3Mc6Elb, plainMember>(entry, route, fate);
    removeVanished<&kL3Mc6VlanElb, vlanMember>(entry, route, fate);
    return fate;
}

// A new entry has no member in a table that held none before: what was brought since belongs to other entries.
template <auto kTable, auto kMake>
void RouteTables::bringMember(const Entry& entry, const Link& link, Fate fateOfEntry) {
    const bool mayBeStored = fateOfEntry == Fate::kNew ? applier_.heldAny(*kTable) : applier_.mayHoldAny(*kTable);
    applier_.bring(*kTable, kMake(entry, link, links_), mayBeStored ? Stored::kMaybe : Stored::kNo);
}

// Removes the members that the route does not have any more. Those of an entry that is new can only be left from one
// that was deleted without them.
template <auto kTable, auto kMake>
void RouteTables::removeVanished(const Entry& entry, const Route& route, Fate fateOfEntry) {
    if (fateOfEntry == Fate::kNew ? !applier_.heldAny(*kTable) : !applier_.mayHoldAny(*kTable)) return;
    const auto bring = &RouteTables::bringMember<kTable, kMake>;
    using Record = decltype(kMake(entry, unknown_, links_));
    applier_.removeMembers(*kTable, keyOf<Record>(entry), [&](const Record& member) {
        return std::none_of(route.outIfIndexes.begin(), route.outIfIndexes.end(), [&](uint32_t index) {
            const Link& link = linkOf(index);
            return kindOf(link).bring == bring && isSame(member, kMake(entry, link, links_));
        });
    });
}

const Link& RouteTables::linkOf(uint32_t index) {
    if (const Link* link = links_.byIndex(index)) return *link;
    unknown_.index = index;
    return unknown_;
}

// The register interface that the route comes in or goes out by, or 0.
uint32_t RouteTables::registerOf(const Route& route) {
    if (linkOf(route.inIfIndex).isRegister) return route.inIfIndex;
    const auto found = std::find_if(route.outIfIndexes.begin(), route.outIfIndexes.end(),
                                    [&](uint32_t index) { return linkOf(index).isRegister; });
    return found == route.outIfIndexes.end() ? 0 : *found;
}

}  // namespace mcast6::kernel
