// l2-elb, bd-untag-elb, bd-tag-elb, bd-vxlan-elb, bd-vxlan-sub-elb: the egress members of layer-2 forwarding entries. One
// record serves all five tables; each description below holds what its table has of its own.
#include <fmt/format.h>

#include "cli/tables/l2.h"
#include "mcast6_db/l2mc6_bd_tag_elb.h"
#include "mcast6_db/l2mc6_bd_untag_elb.h"
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"
#include "mcast6_db/l2mc6_elb.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L2Elb6Entry;

// What a table has of its own: how it names its domain, what tells a member besides its interface, and its operations.
struct Own {
    const char* name;
    const char* databaseName;
    const char* holds;
    bool isVlan;
    uint8_t E::*protocol;
    std::vector<Column<E>> way;
    std::vector<Filter<E>> wayFilters;
    std::vector<std::string> keyEnd;  // the filters that end the key, after VR, domain, group and source
    uint32_t (*read)(E*);
    Mcast6DbRes* (*openMembers)(const E& wanted);
    std::vector<Query<E>> further;  // the table's other indexes
    Mcast6DbRes* (*openInterface)(uint32_t ifIndex);
    Mcast6DbRes* (*openAll)();
    void (*release)(Mcast6DbRes*);
    uint32_t (*step)(Mcast6DbRes*, E*);
    uint32_t (*remove)(const E*);
};

std::vector<Column<E>> columnsOf(const Own& own) {
    std::vector<Column<E>> columns;
    columns.push_back(column("VR", "vrId", &E::vrId, own.isVlan ? ColumnKind::kBridge : ColumnKind::kPlain));
    if (own.isVlan) {
        columns.push_back(column("VLAN", "vlanId", &E::vlanId));
    } else {
        columns.push_back(column("BD", "bdId", &E::bdId, ColumnKind::kBridge));
    }
    columns.push_back(column("SOURCE", "sourceAddr", &E::sourceAddr));
    columns.push_back(column("GROUP", "groupAddr", &E::groupAddr));
    columns.push_back(column("OIF", "outIfIndex", &E::outIfIndex, ColumnKind::kInterface));
    columns.insert(columns.end(), own.way.begin(), own.way.end());
    columns.push_back(column("PROTO", "protocol", own.protocol));
    columns.push_back(
        column<E>("FLAGS", "flags", [](const E& record) -> Value { return memberFlagsText(record.pathFlags); }));
    columns = withStamps(std::move(columns), &E::smoothVersion);
    columns.push_back(column(nullptr, "pathFlags", &E::pathFlags));
    columns.push_back(column(nullptr, "vrfId", &E::vrfId));
    columns.push_back(column(nullptr, "errCode", &E::errCode));
    columns.push_back(column(nullptr, "appSrcPid", &E::appSrcPid));
    return columns;
}

std::vector<Filter<E>> filtersOf(const Own& own) {
    std::vector<Filter<E>> filters;
    if (own.isVlan) {
        filters.push_back(interfaceFilter("vr", "Virtual router, or the bridge", &E::vrId));
        filters.push_back(numberFilter("vlan", "VLAN", &E::vlanId));
    } else {
        filters.push_back(numberFilter("vr", "Virtual router", &E::vrId));
        filters.push_back(
            needing("vr", interfaceFilter("bd", "Bridge domain, or the bridge (in VR 0 without --vr)", &E::bdId)));
    }
    filters.push_back(numberFilter("vrf", "VRF", &E::vrfId));
    filters.push_back(addressFilter("group", "Group", &E::groupAddr));
    filters.push_back(addressFilter("source", "Source; any or :: for the members of any source", &E::sourceAddr));
    filters.push_back(interfaceFilter("oif", "Outgoing interface", &E::outIfIndex));
    filters.insert(filters.end(), own.wayFilters.begin(), own.wayFilters.end());
    filters.push_back(numberFilter("pid", "Process that wrote the member", &E::appSrcPid));
    return filters;
}

std::vector<Query<E>> queriesOf(const Own& own) {
    const std::vector<std::string> entry{"vr", own.isVlan ? "vlan" : "bd", "group", "source"};
    std::vector<std::string> key = entry;
    key.insert(key.end(), own.keyEnd.begin(), own.keyEnd.end());
    std::vector<Query<E>> queries;
    queries.push_back(byKey<E>(key, own.read));
    queries.push_back({kMembersOfEntry, entry, own.openMembers, own.release});
    for (Query<E> query : own.further) {
        query.release = own.release;
        queries.push_back(query);
    }
    const auto open = own.openInterface;
    queries.push_back(
        {"outgoing interface", {"oif"}, [open](const E& wanted) { return open(wanted.outIfIndex); }, own.release});
    queries.push_back(wholeTable<E>(own.openAll, own.release));
    std::stable_sort(queries.begin(), queries.end(),
                     [](const auto& left, const auto& right) { return left.takes.size() > right.takes.size(); });
    return queries;
}

Table<E> tableOf(const Own& own) {
    return {.name = own.name,
            .databaseName = own.databaseName,
            .holds = own.holds,
            .columns = columnsOf(own),
            .filters = filtersOf(own),
            .queries = queriesOf(own),
            .step = own.step,
            .absentCodes = {MCAST6_DB_NO_SUCH_RECORD},
            .smoothVersion = &E::smoothVersion,
            .remove = own.remove,
            .layer = Layer::kLayer2,
            .router = own.isVlan ? nullptr : &E::vrId};
}

template <Mcast6DbRes* (*kOpen)(const L2McBdElbKey*)>
Mcast6DbRes* openMembersOfBridgeDomain(const E& wanted) {
    const L2McBdElbKey key{wanted.vrId, 0, wanted.bdId, 0, wanted.groupAddr, wanted.sourceAddr};
    return kOpen(&key);
}

Mcast6DbRes* openMembersOfVlan(const E& wanted) {
    return MCAST6_DB_CreateL2Elb6IterBySrcAddr(wanted.vrId, static_cast<uint16_t>(wanted.vlanId), &wanted.sourceAddr,
                                               &wanted.groupAddr);
}

Query<E> byProcess(Mcast6DbRes* (*open)(const E*)) {
    return {"source process", {"vr", "vrf", "pid"}, [open](const E& wanted) { return open(&wanted); }};
}

Query<E> byBridgeDomain(Mcast6DbRes* (*open)(uint32_t, uint32_t)) {
    return {"VR and bridge domain", {"vr", "bd"}, [open](const E& wanted) { return open(wanted.vrId, wanted.bdId); }};
}

Mcast6Ipv6Addr remoteOf(const E& record) {
    Mcast6Ipv6Addr remote{};
    for (size_t word = 0; word < 4; ++word) remote.word[word] = record.vxlanWords3to6[word];
    return remote;
}

std::vector<Column<E>> tunnelColumns() {
    return {column("UNDERLAY", "underlay", &E::vxlanByte), column("VNI", "vni", &E::vxlanWord1),
            column<E>("REMOTE", "remoteAddr", [](const E& record) -> Value { return addressText(remoteOf(record)); }),
            column("UDP", "udpPort", &E::vxlanWord2)};
}

std::vector<Filter<E>> tunnelFilters() {
    return {numberFilter("underlay", "IP version that carries the tunnel, 4 or 6", &E::vxlanByte),
            numberFilter("vni", "VXLAN network", &E::vxlanWord1)};
}

uint32_t countOfTunnel(const E& wanted, uint32_t* count) {
    const L2McBdVxlanVsgKey key{{wanted.vrId, wanted.bdId, wanted.vxlanByte, wanted.vxlanWord1}};
    return MCAST6_DB_GetL2Mc6BdVxlanElbCountByTnlVsg(&key, count);
}

Mcast6DbRes* openTunnel(const E& wanted) {
    return MCAST6_DB_CreateL2mcv6ElbIterByVxlanTnl(wanted.vrId, 0, wanted.vxlanByte, wanted.vxlanWord1);
}

Mcast6DbRes* openTunnelInBridgeDomain(const E& wanted) {
    return MCAST6_DB_CreateL2Mc6VxlanElbIterByTnlVsg(wanted.vrId, wanted.bdId, wanted.vxlanByte, wanted.vxlanWord1);
}

Mcast6DbRes* openTunnelOfEntry(const E& wanted) { return MCAST6_DB_CreateL2Mc6VxlanSubElbCreateVSGIterator(&wanted); }

// clang-format off
const Table<E> kVlanMembers = tableOf({
    .name = "l2-elb",
    .databaseName = "l2mc6_elb",
    .holds = "egress members of entries of VLANs",
    .isVlan = true,
    .protocol = &E::elbByte1,
    .way = {column("TAG", "userVlanId", &E::userVlanId)},
    .wayFilters = {numberFilter("tag", "VLAN tag on the member's interface; 0: untagged", &E::userVlanId)},
    .keyEnd = {"oif", "tag"},
    .read = MCAST6_DB_ReadL2Elb6,
    .openMembers = openMembersOfVlan,
    .further = {},
    .openInterface = MCAST6_DB_CreateL2Elb6IterByIfindex,
    .openAll = MCAST6_DB_CreateL2Elb6Iter,
    .release = MCAST6_DB_ReleaseL2Elb6Iterator,
    .step = MCAST6_DB_GetL2Elb6Entry,
    .remove = MCAST6_DB_DeleteL2Elb6,
});

const Table<E> kUntagged = tableOf({
    .name = "bd-untag-elb",
    .databaseName = "l2mc6_bd_untag_elb",
    .holds = "untagged egress members of entries of bridge domains",
    .isVlan = false,
    .protocol = &E::elbByte1,
    .way = {},
    .wayFilters = {},
    .keyEnd = {"oif"},
    .read = MCAST6_DB_ReadL2McBdUntagElb,
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2McBdUntagElbMcidIterator>,
    .further = {byProcess(MCAST6_DB_CreateL2McBdUntagElbIterBySrcPid)},
    .openInterface = MCAST6_DB_CreateL2McBdUntagElbIterByIfindex,
    .openAll = MCAST6_DB_CreateL2BdUntagElbIter,
    .release = MCAST6_DB_ReleaseL2BdUntagElbIter,
    .step = MCAST6_DB_GetL2McBdUntagElbEntry,
    .remove = MCAST6_DB_DeleteL2McBdUntagElb,
});

const Table<E> kTagged = tableOf({
    .name = "bd-tag-elb",
    .databaseName = "l2mc6_bd_tag_elb",
    .holds = "tagged egress members of entries of bridge domains",
    .isVlan = false,
    .protocol = &E::elbByte1,
    .way = {column("TAG", "tagVid1", &E::tagVid1), column("INNER TAG", "tagVid2", &E::tagVid2)},
    .wayFilters = {numberFilter("tag", "VLAN tag", &E::tagVid1),
                   numberFilter("inner-tag", "Inner VLAN tag", &E::tagVid2)},
    .keyEnd = {"oif", "tag", "inner-tag"},
    .read = MCAST6_DB_ReadL2McBdTagElb,
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2McBdTagElbMcidIter>,
    .further = {byProcess(MCAST6_DB_CreateL2McBdTagElbIterBySrcPid)},
    .openInterface = MCAST6_DB_CreateL2McBdTagElbIterByIfindex,
    .openAll = MCAST6_DB_CreateL2BdTagElbIter,
    .release = MCAST6_DB_ReleaseL2BdTagElbIter,
    .step = MCAST6_DB_GetL2McBdTagElbEntry,
    .remove = MCAST6_DB_DeleteL2McBdTagElb,
});

const Table<E> kVxlan = tableOf({
    .name = "bd-vxlan-elb",
    .databaseName = "l2mc6_bd_vxlan_elb",
    .holds = "VXLAN egress members of entries of bridge domains",
    .isVlan = false,
    .protocol = &E::vxlanFlag,
    .way = tunnelColumns(),
    .wayFilters = tunnelFilters(),
    .keyEnd = {"underlay", "vni"},
    .read = MCAST6_DB_ReadL2Mc6BdVxlanElb,
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator>,
    .further = {{"tunnel in a bridge domain", {"vr", "bd", "underlay", "vni"}, openTunnelInBridgeDomain, nullptr, countOfTunnel},
                {"tunnel", {"vr", "underlay", "vni"}, openTunnel},
                byBridgeDomain(MCAST_DB_CreateL2McBdVxlanElbIteratorByBd)},
    .openInterface = MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex,
    .openAll = MCAST6_DB_CreateL2Mc6BdVxlanElbIter,
    .release = MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator,
    .step = MCAST6_DB_GetL2Mc6BdVxlanElbEntry,
    .remove = MCAST6_DB_DeleteL2Mc6BdVxlanElb,
});

const Table<E> kVxlanSub = tableOf({
    .name = "bd-vxlan-sub-elb",
    .databaseName = "l2mc6_bd_vxlan_sub_elb",
    .holds = "VXLAN egress members of entries of bridge domains that are bound to an interface",
    .isVlan = false,
    .protocol = &E::vxlanFlag,
    .way = tunnelColumns(),
    .wayFilters = tunnelFilters(),
    .keyEnd = {"underlay", "vni", "oif"},
    .read = MCAST6_DB_ReadL2Mc6BdVxlanSubElb,
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator>,
    .further = {{"tunnel of an entry", {"vr", "bd", "group", "source", "underlay", "vni"}, openTunnelOfEntry},
                byBridgeDomain(MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByBd)},
    .openInterface = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByIfindex,
    .openAll = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter,
    .release = MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator,
    .step = MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry,
    .remove = MCAST6_DB_DeleteL2Mc6BdVxlanSubElb,
});
// clang-format on

}  // namespace

std::string memberWay(const Table<E>& table, const E& member) {
    if (&table == &kVlanMembers) return member.userVlanId == 0 ? "untagged" : fmt::format("tag {}", member.userVlanId);
    if (&table == &kUntagged) return "untagged";
    if (&table == &kTagged) {
        return member.tagVid2 == 0 ? fmt::format("tag {}", member.tagVid1)
                                   : fmt::format("tag {} {}", member.tagVid1, member.tagVid2);
    }
    return fmt::format("VNI {} to {}", member.vxlanWord1, addressText(remoteOf(member)));
}

StoredTables l2EgressTables() {
    return {storedTable(kVlanMembers), storedTable(kUntagged), storedTable(kTagged), storedTable(kVxlan),
            storedTable(kVxlanSub)};
}

const EgressTables& bridgeDomainMembers() {
    static const EgressTables kTables{&kUntagged, &kTagged, &kVxlan, &kVxlanSub};
    return kTables;
}

const EgressTables& vlanMembers() {
    static const EgressTables kTables{&kVlanMembers};
    return kTables;
}

}  // namespace mcast6::ctl
