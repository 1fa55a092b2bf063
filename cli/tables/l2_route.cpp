// bd-untag-rt, bd-tag-rt, bd-rt-vxlan: the router ports of bridge domains. The tool takes rtKeyWord1 as bridge domain,
// rtKeyWord2 as interface, rtKeyValue as the VLAN that the port is a router port of (0: all of them), rtKeyWord3 as
// VXLAN network and rtAttr as the kind of router port.
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

// The filters that the records of all three tables have.
template <class Record>
struct PortFilters {
    Filter<Record> vr = numberFilter("vr", "Virtual router", &Record::vrId);
    Filter<Record> bd = interfaceFilter("bd", "Bridge domain, or the bridge", &Record::rtKeyWord1);
    Filter<Record> port = interfaceFilter("port", "Port", &Record::rtKeyWord2);
    Filter<Record> vlan =
        numberFilter("vlan", "VLAN of which the port is a router port; 0: all of them", &Record::rtKeyValue);
    Filter<Record> vrf =
        routingTableFilter("vrf", "VRF, the routing table's number, main, default or local", &Record::vrfId);

    Filters<Record> with(const Filters<Record>& way) const { return joined({&vr, &bd, &port, &vlan, &vrf}, way); }
    Filters<Record> key(const Filters<Record>& end) const { return joined({&vr, &bd, &port, &vlan}, end); }
};

using Rt = L2McBdRtEntry;
const PortFilters<Rt> kOf;
const Filter<Rt> kTag = numberFilter("tag", "VLAN tag", &Rt::tagVid1);
const Filter<Rt> kInnerTag = numberFilter("inner-tag", "Inner VLAN tag", &Rt::tagVid2);

using Vx = L2McBdRtVxlanEntry;
const PortFilters<Vx> kOfVxlan;
const Filter<Vx> kVni = numberFilter("vni", "VXLAN network", &Vx::rtKeyWord3);
const Filter<Vx> kPid = numberFilter("pid", "Process that wrote the entry", &Vx::appSrcPid);

// clang-format off
const Table<Rt> kUntagged{
    .name = "bd-untag-rt",
    .holds = "untagged router ports of bridge domains",
    .operations = kernel::kL2Mc6BdUntagRt,
    .columns = columnsOf<Rt>({}),
    .filters = kOf.with({}),
    .queries = {byKey<Rt>(kOf.key({}))},
    .layer = Layer::kLayer2,
    .vr = &kOf.vr,
};

const Table<Rt> kTagged{
    .name = "bd-tag-rt",
    .holds = "tagged router ports of bridge domains",
    .operations = kernel::kL2Mc6BdTagRt,
    .columns = columnsOf<Rt>({column("TAG", "tagVid1", &Rt::tagVid1), column("INNER TAG", "tagVid2", &Rt::tagVid2)}),
    .filters = kOf.with({&kTag, &kInnerTag}),
    .queries = {byKey<Rt>(kOf.key({&kTag, &kInnerTag}))},
    .layer = Layer::kLayer2,
    .vr = &kOf.vr,
};

const Table<Vx> kVxlan{
    .name = "bd-rt-vxlan",
    .holds = "router ports of bridge domains that are VXLAN tunnels",
    .operations = kernel::kL2Mc6BdRtVxlanElb,
    .columns = columnsOf<Vx>({column("VNI", "vni", &Vx::rtKeyWord3), column(nullptr, "appSrcPid", &Vx::appSrcPid)}),
    .filters = kOfVxlan.with({&kVni, &kPid}),
    .queries = {
        byKey<Vx>(kOfVxlan.key({&kVni})),
        {"source process", {&kOfVxlan.vr, &kOfVxlan.vrf, &kPid},
         [](const Vx& wanted) { return MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid(&wanted); },
         MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator},
    },
    .layer = Layer::kLayer2,
    .vr = &kOfVxlan.vr,
};
// clang-format on

}  // namespace

StoredTables l2RouteTables() { return {storedTable(kUntagged), storedTable(kTagged), storedTable(kVxlan)}; }

}  // namespace mcast6::ctl
