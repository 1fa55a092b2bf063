// docs/mcast6ctl.md tells how the members of a route map.
#include "cli/commands/import_mroute_tables.h"

#include <arpa/inet.h>
#include <unistd.h>

#include <algorithm>

#include "cli/tables/l3.h"
#include "kernel/apply/layer3_tables.h"

namespace mcast6::ctl {

using namespace kernel;

namespace {

constexpr uint32_t kIpv6 = 2;     // addrType
constexpr uint8_t kForwards = 1;  // elbFlagD: the fast scan of an entry's members looks for it

using Entry = L3Mc6MfibEntry;
using Global = L3Mc6GlbCfgEntry;
using Register = L3Mc6RegOifEntry;
using Plain = L3Mc6ElbEntry;
using Vlan = L3Mc6ElbEntryExt;
using Domain = L3BdElb6Entry;

// Where a route's member of a kind of link goes.
enum class MemberKind { kPlain, kVlan, kBridge, kTunnel, kRegister };

MemberKind memberKind(const Link& link) {
    if (link.isRegister) return MemberKind::kRegister;
    if (link.kind == "vlan") return MemberKind::kVlan;
    if (link.kind == "bridge") return MemberKind::kBridge;
    return link.tunnel ? MemberKind::kTunnel : MemberKind::kPlain;
}

Plain plainMember(const Entry& entry, const Link& link) {
    Plain record = keyOf<Plain>(entry);
    record.outIfIndex = link.index;
    record.elbFlagD = kForwards;
    return record;
}

Register registerMember(const Entry& entry, const Link& link) {
    Plain member = plainMember(entry, link);
    member.instType = L3_REG_INST_NONE;
    Register record{};
    MCAST6_DB_TransElbEntryToRegElbEntry(&member, &record);
    return record;
}

Vlan vlanMember(const Entry& entry, const Link& link) {
    Vlan record = keyOf<Vlan>(entry);
    record.outIfIndex = link.index;
    record.instId = link.vlanId;
    record.elbFlagD = kForwards;
    return record;
}

Domain bridgeMember(const Entry& entry, const Link& link) {
    Domain record = keyOf<Domain>(entry);
    record.bdElbAttr4 = link.index;
    record.bdElbAttr5 = link.index;
    return record;
}

Domain tunnelMember(const Entry& entry, const Link& link) {
    Domain record = keyOf<Domain>(entry);
    record.bdElbAttr4 = link.bridgeIndex;
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

// Removes the members of 'entry' in a table that are none of 'links': 'isOf' tells whether a member is of a link of this kind.
// Returns how many.
template <class Record, class IsOf>
uint64_t removeVanished(const Table<Record>& table, MemberKind kind, const Entry& entry,
                        const std::vector<const Link*>& links, IsOf isOf) {
    const Selection<Record> members{keyOf<Record>(entry), &membersQuery(table), {}};
    return deleteStale(table, members, [&](const Record& member) {
        return std::none_of(links.begin(), links.end(),
                            [&](const Link* link) { return memberKind(*link) == kind && isOf(member, *link); });
    });
}

}  // namespace

RouteTables::RouteTables(TableChanges& changes, uint32_t vrId, uint32_t smoothVersion)
    : changes_(changes), vrId_(vrId), stamp_{smoothVersion, static_cast<uint32_t>(getpid())} {}

template <class Record>
Fate RouteTables::bring(const kernel::TableOperations<Record>& table, const Record& record) {
    const Fate fate = importRecord(table, record, stamp_);
    changes_.count(table.databaseName, fate);
    return fate;
}

void RouteTables::vrf(uint32_t vrfId) {
    constexpr uint32_t kRoutes = 1;
    Global record{};
    record.cfgKeyA = vrId_;
    record.cfgKeyB = vrfId;
    record.cfgKeyC = kIpv6;
    record.cfgWord3 = kRoutes;
    bring(kL3Mc6GlbCfg, record);
}

Fate RouteTables::route(const Route& route) {
    Entry entry{};
    entry.vrId = vrId_;
    entry.vrfId = route.table;
    entry.addrType = kIpv6;
    entry.groupAddr = route.group;
    entry.sourceAddr = route.source;
    entry.inIfIndex = route.inIfIndex;
    entry.regIfIndex = route.regIfIndex;
    const Fate fate = bring(kL3Mc6Mfib, entry);
    for (const Link* link : route.outgoing) member(entry, *link);
    const auto tidy = [&](const auto& table, MemberKind kind, auto isOf) {
        changes_.countRemoved(table.databaseName, removeVanished(table, kind, entry, route.outgoing, isOf));
    };
    const auto isOut = [](const auto& member, const Link& link) { return member.outIfIndex == link.index; };
    tidy(registerElbTable(), MemberKind::kRegister, isOut);
    tidy(l3ElbTable(), MemberKind::kPlain, isOut);
    tidy(l3VlanElbTable(), MemberKind::kVlan,
         [&](const Vlan& member, const Link& link) { return isOut(member, link) && member.instId == link.vlanId; });
    return fate;
}

void RouteTables::member(const Entry& entry, const Link& link) {
    switch (memberKind(link)) {
        case MemberKind::kPlain:
            bring(kL3Mc6Elb, plainMember(entry, link));
            break;
        case MemberKind::kVlan:
            bring(kL3Mc6VlanElb, vlanMember(entry, link));
            break;
        case MemberKind::kBridge:
            bring(kL3Mc6BdUntagElb, bridgeMember(entry, link));
            break;
        case MemberKind::kTunnel:
            bring(kL3Mc6BdTnlElb, tunnelMember(entry, link));
            break;
        case MemberKind::kRegister:
            bring(kL3Mc6RegisterElb, registerMember(entry, link));
            break;
    }
}

}  // namespace mcast6::ctl
