// l3-bd-tag-elb, l3-bd-untag-elb, l3-bd-tnl-elb: the members of layer-3 forwarding entries in bridge domains. One
// record serves all three tables. The tool takes bdElbAttr4 as bridge domain, bdElbAttr5 as outgoing interface,
// bdElbAttr7 and bdElbAttr8 as tags; of a tunnel tnlAttr2 as its interface, tnlAttr3 as IP version of its ends,
// tnlAttr1 as VXLAN network or GRE key, tnlAttr4 as UDP port and tnlAttr5 as its far end.
#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>

#include "cli/tables/l3.h"
#include "mcast6_db/l3mc6_bd_tag_elb.h"
#include "mcast6_db/l3mc6_bd_tnl_elb.h"
#include "mcast6_db/l3mc6_bd_untag_elb.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L3BdElb6Entry;

constexpr uint32_t kLargestByte = 0xFF;  // what the tables store of bdElbAttr19

const EntryFilters<E>& kOf = entryFilters<E>();
const Filter<E> kBd =
    needing(&kOf.vr, interfaceFilter("bd", "Bridge domain, or the bridge (in VR 0 without --vr)", &E::bdElbAttr4));
const Filter<E> kOif = interfaceFilter("oif", "Outgoing interface", &E::bdElbAttr5);
const Filter<E> kTag = numberFilter("tag", "VLAN tag", &E::bdElbAttr7);
const Filter<E> kInnerTag = numberFilter("inner-tag", "Inner VLAN tag", &E::bdElbAttr8);
const Filter<E> kTunnel = interfaceFilter("tunnel", "Tunnel", &E::tnlAttr2);
const Filter<E> kUnderlay =
    numberFilter("underlay", "IP version that carries the tunnel: 4, 6, or 0 for unknown", &E::tnlAttr3);
const Filter<E> kTunnelKey = numberFilter("tunnel-key", "VXLAN network or GRE key; 0: none", &E::tnlAttr1);
const Filter<E> kPid = numberFilter("pid", "Process that wrote the member", &E::appSrcPid);
const Filter<E> kAttr19 = numberFilter("attr19", "Low byte of bdElbAttr19", &E::bdElbAttr19, kLargestByte);

// What a table has of its own.
struct Own {
    const char* name;
    const char* holds;
    kernel::TableOperations<E> operations;
    std::vector<Column<E>> way;
    Filters<E> wayFilters;
    Filters<E> keyEnd;  // the filters that end the key, after VR, VRF, group and source
    Mcast6DbRes* (*openAttribute)(const E*);
    Mcast6DbRes* (*openMembers)(const L3BdElb6VsgKey*);
    std::vector<Query<E>> further;  // indexes that not all three tables have
    Mcast6DbRes* (*openProcess)(const E*);
    Mcast6DbRes* (*openBridgeDomain)(uint32_t vrId, uint32_t bdId);
    Mcast6DbRes* (*openInterface)(uint32_t ifIndex);
    uint32_t (*countFast)();
};

std::vector<Column<E>> columnsOf(const Own& own) {
    std::vector<Column<E>> columns = entryColumns<E>({
        column("BD", "bdElbAttr4", &E::bdElbAttr4, ColumnKind::kBridge),
        column("OIF", "outIfIndex", &E::bdElbAttr5, ColumnKind::kInterface),
    });
    columns = withStamps(joined(columns, own.way), &E::smoothVersion);
    return joined(columns,
                  {column(nullptr, "bdElbAttr5", &E::bdElbAttr5), column(nullptr, "bdElbAttr19", &E::bdElbAttr19),
                   column(nullptr, "appSrcPid", &E::appSrcPid)});
}

std::vector<Query<E>> queriesOf(const Own& own) {
    const auto release = own.operations.release;
    const auto openMembers = [open = own.openMembers](const E& wanted) {
        const L3BdElb6VsgKey key{wanted.vrId, wanted.vrfId, wanted.groupAddr, wanted.sourceAddr};
        return open(&key);
    };
    const auto byRecord = [](Mcast6DbRes* (*open)(const E*)) {
        return [open](const E& wanted) { return open(&wanted); };
    };
    std::vector<Query<E>> queries{
        byKey<E>(kOf.with(own.keyEnd)),
        {"entry and attribute", kOf.with({&kAttr19}), byRecord(own.openAttribute), release},
        byEntry<E>(kOf.with(), openMembers, release),
    };
    for (Query<E> query : own.further) {
        query.release = release;
        queries.push_back(query);
    }
    queries.push_back({"source process", {&kOf.vr, &kOf.vrf, &kPid}, byRecord(own.openProcess), release});
    queries.push_back({"VR and bridge domain",
                       {&kOf.vr, &kBd},
                       [open = own.openBridgeDomain](const E& wanted) { return open(wanted.vrId, wanted.bdElbAttr4); },
                       release});
    queries.push_back({"outgoing interface",
                       {&kOif},
                       [open = own.openInterface](const E& wanted) { return open(wanted.bdElbAttr5); },
                       release});
    return queries;
}

Table<E> tableOf(const Own& own) {
    return {.name = own.name,
            .holds = own.holds,
            .operations = own.operations,
            .entry = memberOfRoute<E>(),
            .columns = columnsOf(own),
            .filters = joined(joined(kOf.with({&kBd, &kOif}), own.wayFilters), {&kPid, &kAttr19}),
            .queries = queriesOf(own),
            .layer = Layer::kLayer3,
            .vr = &kOf.vr,
            .countFast = own.countFast};
}

Query<E> byInterfaceOfVr(Mcast6DbRes* (*open)(uint32_t vrId, uint32_t ifIndex)) {
    return {"VR and outgoing interface", {&kOf.vr, &kOif}, [open](const E& wanted) {
                return open(wanted.vrId, wanted.bdElbAttr5);
            }};
}

// The far end of a tunnel, which the table holds in network order.
Mcast6Ipv6Addr remoteOf(const E& member) {
    Mcast6Ipv6Addr remote{};
    for (size_t word = 0; word < 4; ++word) {
        uint32_t bytes = 0;
        std::memcpy(&bytes, member.tnlAttr5 + 4 * word, sizeof bytes);
        remote.word[word] = ntohl(bytes);
    }
    return remote;
}

Value remoteValue(const E& member) {
    const Mcast6Ipv6Addr remote = remoteOf(member);
    return isAnyAddress(remote) ? Value() : Value(addressText(remote));
}

Mcast6DbRes* openTunnel(const E& wanted) {
    return MCAST6_DB_CreateL3McBdTnlElbIterByVrTnlInfo(wanted.vrId, wanted.bdElbAttr4, wanted.tnlAttr2,
                                                       wanted.tnlAttr3);
}

// clang-format off
const Table<E> kTagged = tableOf({
    .name = "l3-bd-tag-elb",
    .holds = "tagged members of layer-3 forwarding entries in bridge domains",
    .operations = {
        .databaseName = "l3mc6_bd_tag_elb",
        .read = MCAST6_DB_ReadL3McBdTagElb,
        .absentCode = MCAST6_DB_NO_SUCH_RECORD,
        .write = nullptr,
        .restamp = nullptr,
        .remove = MCAST6_DB_DeleteL3McBdTagElb,
        .merge = nullptr,
        .smoothVersion = &E::smoothVersion,
        .appSrcPid = &E::appSrcPid,
        .vrId = &E::vrId,
        .openAll = MCAST6_DB_CreateL3McBdTagElbAllIter,
        .step = MCAST6_DB_GetL3McBdTagElbEntry,
        .release = MCAST6_DB_ReleaseL3McBdTagElbIterator,
    },
    .way = {column("TAG", "bdElbAttr7", &E::bdElbAttr7), column("INNER TAG", "bdElbAttr8", &E::bdElbAttr8)},
    .wayFilters = {&kTag, &kInnerTag},
    .keyEnd = {&kBd, &kOif, &kTag, &kInnerTag},
    .openAttribute = MCAST6_DB_CreateL3McBdTagElbMfibIter,
    .openMembers = MCAST6_DB_CreateL3McBdTagElbCreateVSGIterator,
    .further = {byInterfaceOfVr(MCAST6_DB_CreateL3McBdTagElbIterByVrIdIfIndex)},
    .openProcess = MCAST6_DB_CreateL3McBdTagElbIterBySrcPid,
    .openBridgeDomain = MCAST6_DB_CreateL3McBdTagElbVrBdIter,
    .openInterface = MCAST6_DB_CreateL3McBdTagElbIterByIfIndex,
    .countFast = MCAST6_DB_GetL3McBdTagElbCountFast,
});

const Table<E> kUntagged = tableOf({
    .name = "l3-bd-untag-elb",
    .holds = "untagged members of layer-3 forwarding entries in bridge domains",
    .operations = kernel::kL3Mc6BdUntagElb,
    .way = {},
    .wayFilters = {},
    .keyEnd = {&kBd, &kOif},
    .openAttribute = MCAST6_DB_CreateL3McBdUntagElbMfibIter,
    .openMembers = MCAST6_DB_CreateL3McBdUntagElbCreateVSGIterator,
    .further = {byInterfaceOfVr(MCAST6_DB_CreateL3McBdUntagElbIterByVrIdIfIndex)},
    .openProcess = MCAST6_DB_CreateL3McBdUntagElbIterBySrcPid,
    .openBridgeDomain = MCAST6_DB_CreateL3McBdUntagElbVrBdIter,
    .openInterface = MCAST6_DB_CreateL3McBdUntagElbIfindexIter,
    .countFast = MCAST6_DB_GetL3McBdUntagElbCountFast,
});

const Table<E> kTunnels = tableOf({
    .name = "l3-bd-tnl-elb",
    .holds = "members of layer-3 forwarding entries behind tunnels",
    .operations = kernel::kL3Mc6BdTnlElb,
    .way = {column("TUNNEL", "tnlAttr2", &E::tnlAttr2, ColumnKind::kInterface),
            column("UNDERLAY", "tnlAttr3", &E::tnlAttr3),
            column("TUNNEL KEY", "tnlAttr1", &E::tnlAttr1),
            column<E>("REMOTE", "tnlAttr5", remoteValue),
            column("UDP", "tnlAttr4", &E::tnlAttr4)},
    .wayFilters = {&kTunnel, &kUnderlay, &kTunnelKey},
    .keyEnd = {&kBd, &kTunnel, &kUnderlay},
    .openAttribute = MCAST6_DB_CreateL3McBdTnlElbMfibIter,
    .openMembers = MCAST6_DB_CreateL3McBdTnlElbCreateVSGIterator,
    .further = {{"tunnel in a bridge domain", {&kOf.vr, &kBd, &kTunnel, &kUnderlay}, openTunnel}},
    .openProcess = MCAST6_DB_CreateL3McBdTnlElbIterBySrcPid,
    .openBridgeDomain = MCAST6_DB_CreateL3McBdTnlElbVrBdIter,
    .openInterface = MCAST6_DB_CreateL3McBdTnlElbIterByIfIndex,
    .countFast = MCAST6_DB_GetL3McBdTnlElbCountFast,
});
// clang-format on

// "bridge br7", "bridge br7, tag 10 20", "tunnel vx9 to 2001:db8::9, key 5009".
std::string wayOf(const Table<E>& table, const E& member, const RouterLinks& links) {
    std::string way;
    const auto add = [&](const std::string& words) { way += (way.empty() ? "" : ", ") + words; };
    const ColumnHead bridge{"", "bdElbAttr4", ColumnKind::kBridge};
    if (member.bdElbAttr4 != 0) add("bridge " + cellText(bridge, uint64_t{member.bdElbAttr4}, links));
    if (&table == &kTagged) {
        add(member.bdElbAttr8 == 0 ? fmt::format("tag {}", member.bdElbAttr7)
                                   : fmt::format("tag {} {}", member.bdElbAttr7, member.bdElbAttr8));
    }
    if (&table != &kTunnels) return way;
    const ColumnHead tunnel{"", "tnlAttr2", ColumnKind::kInterface};
    add("tunnel " + cellText(tunnel, uint64_t{member.tnlAttr2}, links));
    if (!isAnyAddress(remoteOf(member))) way += " to " + addressText(remoteOf(member));
    if (member.tnlAttr1 != 0) add(fmt::format("key {}", member.tnlAttr1));
    return way;
}

}  // namespace

StoredTables l3BridgeDomainTables() { return {storedTable(kTagged), storedTable(kUntagged), storedTable(kTunnels)}; }

void addBridgeDomainMembers(const Tool& tool, L3Members& members) {
    using Entry = L3Mc6MfibEntry;
    for (const Table<E>* table : {&kTagged, &kUntagged, &kTunnels}) {
        const auto way = [table, &tool](const E& member) -> std::vector<std::string> {
            return {wayOf(*table, member, linksOf(tool, *table, member))};
        };
        members.push_back(
            memberTable<Entry, E>(tool, *table, membersByQuery(kRouteWords, *table), {&E::bdElbAttr5, way}));
    }
}

}  // namespace mcast6::ctl
