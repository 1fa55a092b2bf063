// l2-elb, bd-untag-elb, bd-tag-elb, bd-vxlan-elb, bd-vxlan-sub-elb: the egress members of layer-2 forwarding entries.
// One record serves all five tables; each description below holds what its table has of its own.
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

const Filter<E> kVr = numberFilter("vr", "Virtual router", &E::vrId);
const Filter<E> kBd =
    needing(&kVr, interfaceFilter("bd", "Bridge domain, or the bridge (in VR 0 without --vr)", &E::bdId));
const Filter<E> kBridge = interfaceFilter("vr", "Virtual router, or the bridge", &E::vrId);
const Filter<E> kVlan = numberFilter("vlan", "VLAN", &E::vlanId);
const Filter<E> kVrf = routingTableFilter("vrf", "VRF, the routing table's number, main, default or local", &E::vrfId);
const Filter<E> kGroup = addressFilter("group", "Group", &E::groupAddr);
const Filter<E> kSource = addressFilter("source", "Source; any or :: for the members of any source", &E::sourceAddr);
const Filter<E> kOif = interfaceFilter("oif", "Outgoing interface", &E::outIfIndex);
const Filter<E> kUserVlan = numberFilter("tag", "VLAN tag on the member's interface; 0: untagged", &E::userVlanId);
const Filter<E> kTag = numberFilter("tag", "VLAN tag", &E::tagVid1);
const Filter<E> kInnerTag = numberFilter("inner-tag", "Inner VLAN tag", &E::tagVid2);
const Filter<E> kUnderlay = numberFilter("underlay", "IP version that carries the tunnel, 4 or 6", &E::vxlanByte);
const Filter<E> kVni = numberFilter("vni", "VXLAN network", &E::vxlanWord1);
const Filter<E> kPid = numberFilter("pid", "Process that wrote the member", &E::appSrcPid);

// What a table has of its own: how it names its domain, what tells a member besides its interface, and its operations.
struct Own {
    const char* name;
    const char* holds;
    kernel::TableOperations<E> operations;
    bool isVlan;
    uint8_t E::*protocol;
    std::vector<Column<E>> way;
    Filters<E> wayFilters;
    Filters<E> keyEnd;  // the filters that end the key, after VR, domain, group and source
    Mcast6DbRes* (*openMembers)(const E& wanted);
    std::vector<Query<E>> further;  // the table's other indexes
    Mcast6DbRes* (*openInterface)(uint32_t ifIndex);
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

// The filters that name an entry.
Filters<E> entryOf(const Own& own) {
    return own.isVlan ? Filters<E>{&kBridge, &kVlan, &kGroup, &kSource} : Filters<E>{&kVr, &kBd, &kGroup, &kSource};
}

Filters<E> filtersOf(const Own& own) {
    const Filters<E> domain = own.isVlan ? Filters<E>{&kBridge, &kVlan} : Filters<E>{&kVr, &kBd};
    return joined(joined(joined(domain, {&kVrf, &kGroup, &kSource, &kOif}), own.wayFilters), {&kPid});
}

std::vector<Query<E>> queriesOf(const Own& own) {
    const auto release = own.operations.release;
    std::vector<Query<E>> queries;
    queries.push_back(byKey<E>(joined(entryOf(own), own.keyEnd)));
    queries.push_back(byEntry<E>(entryOf(own), own.openMembers, release));
    for (Query<E> query : own.further) {
        query.release = release;
        queries.push_back(query);
    }
    const auto open = own.openInterface;
    queries.push_back(
        {"outgoing interface", {&kOif}, [open](const E& wanted) { return open(wanted.outIfIndex); }, release});
    std::stable_sort(queries.begin(), queries.end(),
                     [](const auto& left, const auto& right) { return left.takes.size() > right.takes.size(); });
    return queries;
}

Table<E> tableOf(const Own& own) {
    const EntryKind kind = own.isVlan ? EntryKind::kVlan : EntryKind::kBridgeDomain;
    return {.name = own.name,
            .holds = own.holds,
            .operations = own.operations,
            .entry = {kind, true, &E::vrId, own.isVlan ? &E::vlanId : &E::bdId, &E::groupAddr, &E::sourceAddr},
            .columns = columnsOf(own),
            .filters = filtersOf(own),
            .queries = queriesOf(own),
            .layer = Layer::kLayer2,
            .vr = own.isVlan ? &kBridge : &kVr,
            .vrIsBridge = own.isVlan};
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
    return {"source process", {&kVr, &kVrf, &kPid}, [open](const E& wanted) { return open(&wanted); }};
}

Query<E> byBridgeDomain(Mcast6DbRes* (*open)(uint32_t, uint32_t)) {
    return {"VR and bridge domain", {&kVr, &kBd}, [open](const E& wanted) { return open(wanted.vrId, wanted.bdId); }};
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
    .holds = "egress members of entries of VLANs",
    .operations = kernel::kL2Mc6Elb,
    .isVlan = true,
    .protocol = &E::elbByte1,
    .way = {column("TAG", "userVlanId", &E::userVlanId)},
    .wayFilters = {&kUserVlan},
    .keyEnd = {&kOif, &kUserVlan},
    .openMembers = openMembersOfVlan,
    .further = {},
    .openInterface = MCAST6_DB_CreateL2Elb6IterByIfindex,
});

const Table<E> kUntagged = tableOf({
    .name = "bd-untag-elb",
    .holds = "untagged egress members of entries of bridge domains",
    .operations = kernel::kL2Mc6BdUntagElb,
    .isVlan = false,
    .protocol = &E::elbByte1,
    .way = {},
    .wayFilters = {},
    .keyEnd = {&kOif},
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2McBdUntagElbMcidIterator>,
    .further = {byProcess(MCAST6_DB_CreateL2McBdUntagElbIterBySrcPid)},
    .openInterface = MCAST6_DB_CreateL2McBdUntagElbIterByIfindex,
});

const Table<E> kTagged = tableOf({
    .name = "bd-tag-elb",
    .holds = "tagged egress members of entries of bridge domains",
    .operations = kernel::kL2Mc6BdTagElb,
    .isVlan = false,
    .protocol = &E::elbByte1,
    .way = {column("TAG", "tagVid1", &E::tagVid1), column("INNER TAG", "tagVid2", &E::tagVid2)},
    .wayFilters = {&kTag, &kInnerTag},
    .keyEnd = {&kOif, &kTag, &kInnerTag},
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2McBdTagElbMcidIter>,
    .further = {byProcess(MCAST6_DB_CreateL2McBdTagElbIterBySrcPid)},
    .openInterface = MCAST6_DB_CreateL2McBdTagElbIterByIfindex,
});

const Table<E> kVxlan = tableOf({
    .name = "bd-vxlan-elb",
    .holds = "VXLAN egress members of entries of bridge domains",
    .operations = kernel::kL2Mc6BdVxlanElb,
    .isVlan = false,
    .protocol = &E::vxlanFlag,
    .way = tunnelColumns(),
    .wayFilters = {&kUnderlay, &kVni},
    .keyEnd = {&kUnderlay, &kVni},
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator>,
    .further = {{"tunnel in a bridge domain", {&kVr, &kBd, &kUnderlay, &kVni}, openTunnelInBridgeDomain, nullptr,
                 countOfTunnel},
                {"tunnel", {&kVr, &kUnderlay, &kVni}, openTunnel},
                byBridgeDomain(MCAST_DB_CreateL2McBdVxlanElbIteratorByBd)},
    .openInterface = MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex,
});

const Table<E> kVxlanSub = tableOf({
    .name = "bd-vxlan-sub-elb",
    .holds = "VXLAN egress members of entries of bridge domains that are bound to an interface",
    .operations = {
        .databaseName = "l2mc6_bd_vxlan_sub_elb",
        .read = MCAST6_DB_ReadL2Mc6BdVxlanSubElb,
        .absentCode = MCAST6_DB_NO_SUCH_RECORD,
        .write = nullptr,
        .restamp = nullptr,
        .remove = MCAST6_DB_DeleteL2Mc6BdVxlanSubElb,
        .merge = nullptr,
        .smoothVersion = &E::smoothVersion,
        .appSrcPid = &E::appSrcPid,
        .vrId = &E::vrId,
        .openAll = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter,
        .step = MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry,
        .release = MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator,
    },
    .isVlan = false,
    .protocol = &E::vxlanFlag,
    .way = tunnelColumns(),
    .wayFilters = {&kUnderlay, &kVni},
    .keyEnd = {&kUnderlay, &kVni, &kOif},
    .openMembers = openMembersOfBridgeDomain<MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator>,
    .further = {{"tunnel of an entry", {&kVr, &kBd, &kGroup, &kSource, &kUnderlay, &kVni}, openTunnelOfEntry},
                byBridgeDomain(MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByBd)},
    .openInterface = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByIfindex,
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
