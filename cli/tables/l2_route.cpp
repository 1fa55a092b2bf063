// bd-untag-rt, bd-tag-rt, bd-rt-vxlan: the router ports of bridge domains. The tool takes rtKeyWord1 as bridge domain,
// rtKeyWord2 as interface, rtKeyValue as the VLAN that the port is a router port of (0: all of them), rtKeyWord3 as VXLAN
// network and rtAttr as the kind of router port.
#include "cli/tables/l2.h"
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_tag_rt.h"
#include "mcast6_db/l2mc6_bd_untag_rt.h"

namespace mcast6::ctl {
namespace {

const char* routerKindName(uint32_t kind) {
    constexpr const char* kNames[] = {"never", "learned", "permanent", "temporary"};
    return kind < std::size(kNames) ? kNames[kind] : "other";
}

// What the records of all three tables have; 'way' tells a port besides its interface.
template <class Record>
std::vector<Column<Record>> columnsOf(const std::vector<Column<Record>>& way) {
    std::vector<Column<Record>> columns{column("VR", "vrId", &Record::vrId),
                                        column("BD", "bdId", &Record::rtKeyWord1, ColumnKind::kBridge),
                                        column("PORT", "portIfIndex", &Record::rtKeyWord2, ColumnKind::kInterface),
                                        column("VLAN", "vlanId", &Record::rtKeyValue)};
    columns.insert(columns.end(), way.begin(), way.end());
    columns.push_back(
        column<Record>("KIND", "kind", [](const Record& record) -> Value { return routerKindName(record.rtAttr); }));
    columns.push_back(column("STATUS", "serviceStatus", &Record::serviceStatus));
    columns.push_back(column("ERROR", "errCode", &Record::errCode));
    columns = withStamps(std::move(columns), &Record::smoothVersion);
    columns.push_back(column(nullptr, "rtAttr", &Record::rtAttr));
    columns.push_back(column(nullptr, "vrfId", &Record::vrfId));
    return columns;
}

template <class Record>
std::vector<Filter<Record>> filtersOf(const std::vector<Filter<Record>>& way) {
    std::vector<Filter<Record>> filters{
        numberFilter("vr", "Virtual router", &Record::vrId),
        interfaceFilter("bd", "Bridge domain, or the bridge", &Record::rtKeyWord1),
        interfaceFilter("port", "Port", &Record::rtKeyWord2),
        numberFilter("vlan", "VLAN of which the port is a router port; 0: all of them", &Record::rtKeyValue),
        numberFilter("vrf", "VRF", &Record::vrfId)};
    filters.insert(filters.end(), way.begin(), way.end());
    return filters;
}

// clang-format off
using Rt = L2McBdRtEntry;
const Table<Rt> kUntagged{
    .name = "bd-untag-rt",
    .databaseName = "l2mc6_bd_untag_rt",
    .holds = "untagged router ports of bridge domains",
    .columns = columnsOf<Rt>({}),
    .filters = filtersOf<Rt>({}),
    .queries = {
        byKey<Rt>({"vr", "bd", "port", "vlan"}, MCAST6_DB_ReadL2McBdUntagRt),
        wholeTable<Rt>(MCAST6_DB_CreateL2McBdUntagRtIter, MCAST6_DB_ReleaseL2McBdUntagRtIterator),
    },
    .step = MCAST6_DB_GetL2McBdUntagRtEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &Rt::smoothVersion,
    .remove = MCAST6_DB_DeleteL2McBdUntagRt,
    .layer = Layer::kLayer2,
    .router = &Rt::vrId,
};

const Table<Rt> kTagged{
    .name = "bd-tag-rt",
    .databaseName = "l2mc6_bd_tag_rt",
    .holds = "tagged router ports of bridge domains",
    .columns = columnsOf<Rt>({column("TAG", "tagVid1", &Rt::tagVid1), column("INNER TAG", "tagVid2", &Rt::tagVid2)}),
    .filters = filtersOf<Rt>({numberFilter("tag", "VLAN tag", &Rt::tagVid1),
                              numberFilter("inner-tag", "Inner VLAN tag", &Rt::tagVid2)}),
    .queries = {
        byKey<Rt>({"vr", "bd", "port", "vlan", "tag", "inner-tag"}, MCAST6_DB_ReadL2McBdTagRt),
        wholeTable<Rt>(MCAST6_DB_CreateL2McBdTagRtIter, MCAST6_DB_ReleaseL2McBdTagRtIterator),
    },
    .step = MCAST6_DB_GetL2McBdTagRtEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &Rt::smoothVersion,
    .remove = MCAST6_DB_DeleteL2McBdTagRt,
    .layer = Layer::kLayer2,
    .router = &Rt::vrId,
};

using Vx = L2McBdRtVxlanEntry;
const Table<Vx> kVxlan{
    .name = "bd-rt-vxlan",
    .databaseName = "l2mc6_bd_rt_vxlan_elb",
    .holds = "router ports of bridge domains that are VXLAN tunnels",
    .columns = columnsOf<Vx>({column("VNI", "vni", &Vx::rtKeyWord3), column(nullptr, "appSrcPid", &Vx::appSrcPid)}),
    .filters = filtersOf<Vx>({numberFilter("vni", "VXLAN network", &Vx::rtKeyWord3),
                              numberFilter("pid", "Process that wrote the entry", &Vx::appSrcPid)}),
    .queries = {
        byKey<Vx>({"vr", "bd", "port", "vlan", "vni"}, MCAST6_DB_ReadL2Mc6BdRtVxlanElb),
        {"source process", {"vr", "vrf", "pid"},
         [](const Vx& wanted) { return MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid(&wanted); },
         MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator},
        wholeTable<Vx>(MCAST6_DB_CreateL2Mc6BdRtVxlanElbIter, MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator),
    },
    .step = MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &Vx::smoothVersion,
    .remove = MCAST6_DB_DeleteL2Mc6BdRtVxlanElb,
    .layer = Layer::kLayer2,
    .router = &Vx::vrId,
};
// clang-format on

}  // namespace

StoredTables l2RouteTables() { return {storedTable(kUntagged), storedTable(kTagged), storedTable(kVxlan)}; }

}  // namespace mcast6::ctl
