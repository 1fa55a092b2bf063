// mld-global, vlan-enable, vlan-port: the MLD snooping switches of VRs and VLANs, and the ports of VLANs. The tool takes
// keyId1 as VR in all three, keyId4 of a port as its interface, and leaves keyId2 and keyId3 0.
#include "cli/tables/l2.h"
#include "kernel/apply/layer2_words.h"
#include "mcast6_db/l2mc6_global_enable.h"
#include "mcast6_db/l2mc6_vlan_enable.h"
#include "mcast6_db/l2mc6_vlan_port.h"

namespace mcast6::ctl {
namespace {

using kernel::kVlanMldVersion;
using kernel::kVlanQuerier;
using kernel::kVlanSmoothVersion;
using enum kernel::VlanPortFlags;

constexpr const char* kVrHelp = "Virtual router, or the bridge";

// clang-format off
using Global = MldGlobalEntry;
const Table<Global> kGlobal{
    .name = "mld-global",
    .databaseName = "l2mc6_global_enable",
    .holds = "global MLD snooping switches",
    .columns = withStamps<Global>({
        column("VR", "keyId1", &Global::keyId1, ColumnKind::kBridge),
        column("KEY 2", "keyId2", &Global::keyId2),
        column<Global>("SNOOPING", "enabled", [](const Global& record) -> Value { return record.cfgWord1 != 0; }),
        column("STATUS", "serviceStatus", &Global::serviceStatus),
        column("ERROR", "errCode", &Global::errCode),
        column(nullptr, "cfgWord1", &Global::cfgWord1),
    }, &Global::smoothVersion),
    .filters = {
        interfaceFilter("vr", kVrHelp, &Global::keyId1),
        numberFilter("key2", "Second key word", &Global::keyId2),
    },
    .queries = {
        byKey<Global>({"vr", "key2"}, MCAST6_DB_ReadMldGlobal),
        wholeTable<Global>(MCAST6_DB_CreateMldGlbCfgIter, MCAST6_DB_ReleaseMldGlbCfgIter, MCAST6_DB_GetMldGlbCfgCount),
    },
    .step = MCAST6_DB_GetMldGlbEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &Global::smoothVersion,
    .remove = MCAST6_DB_RemoveMldGlobal,
    .layer = Layer::kLayer2,
    .router = nullptr,
};

using Vlan = L2VlanEnableEntry;
const Table<Vlan> kVlans{
    .name = "vlan-enable",
    .databaseName = "l2mc6_vlan_enable",
    .holds = "MLD snooping switches of VLANs",
    .columns = withStamps<Vlan>({
        column("VR", "keyId1", &Vlan::keyId1, ColumnKind::kBridge),
        column("KEY 2", "keyId2", &Vlan::keyId2),
        column("VLAN", "vlanId", &Vlan::vlanId),
        column<Vlan>("SNOOPING", "l2mcEnable", [](const Vlan& record) -> Value { return record.l2mcEnable != 0; }),
        column("MLD", "mldVersion", kVlanMldVersion),
        column<Vlan>("QUERIER", "querier", [](const Vlan& record) -> Value { return record.*kVlanQuerier != 0; }),
        column("STATUS", "serviceStatus", &Vlan::serviceStatus),
        column("ERROR", "errCode", &Vlan::errCode),
    }, kVlanSmoothVersion),
    .filters = {
        interfaceFilter("vr", kVrHelp, &Vlan::keyId1),
        numberFilter("key2", "Second key word", &Vlan::keyId2),
        numberFilter("vlan", "VLAN", &Vlan::vlanId),
    },
    .queries = {
        byKey<Vlan>({"vr", "key2", "vlan"}, MCAST6_DB_ReadL2VlanEnableCfg),
        wholeTable<Vlan>(MCAST6_DB_CreateMldVlanCfgIter, MCAST6_DB_ReleaseMldVlanIter),
    },
    .step = MCAST6_DB_GetMldVlanEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = kVlanSmoothVersion,
    .remove = MCAST6_DB_DelL2VlanEnableCfg,
    .layer = Layer::kLayer2,
    .router = nullptr,
};

using Port = VlanPortEntry;
const Table<Port> kPorts{
    .name = "vlan-port",
    .databaseName = "l2mc6_vlan_port",
    .holds = "ports of VLANs",
    .columns = withStamps<Port>({
        column("VR", "keyId1", &Port::keyId1, ColumnKind::kBridge),
        column("VLAN", "vlanId", &Port::vlanId),
        column("KEY 3", "keyId3", &Port::keyId3),
        column("PORT", "portIfIndex", &Port::keyId4, ColumnKind::kInterface),
        column<Port>("EGRESS", "egress", [](const Port& record) -> Value { return (record.portAttr & kUntaggedPort) != 0 ? "untagged" : "tagged"; }),
        column<Port>("PVID", "pvid", [](const Port& record) -> Value { return (record.portAttr & kPvidPort) != 0; }),
        column("ROUTER", "mcastRouter", &Port::cfgWord1),
        column("STATUS", "serviceStatus", &Port::serviceStatus),
        column("ERROR", "errCode", &Port::errCode),
        column(nullptr, "portAttr", &Port::portAttr),
    }, &Port::smoothVersion),
    .filters = {
        interfaceFilter("vr", kVrHelp, &Port::keyId1),
        numberFilter("vlan", "VLAN", &Port::vlanId),
        numberFilter("key3", "Third key word", &Port::keyId3),
        interfaceFilter("port", "Port", &Port::keyId4),
    },
    .queries = {
        byKey<Port>({"vr", "vlan", "key3", "port"}, MCAST6_DB_ReadVlanPort),
        wholeTable<Port>(MCAST6_DB_CreateVlanPortIter, MCAST6_DB_ReleaseVlanPortIter),
    },
    .step = MCAST6_DB_GetVlanPortEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &Port::smoothVersion,
    .remove = MCAST6_DB_RemoveVlanPort,
    .layer = Layer::kLayer2,
    .router = nullptr,
};
// clang-format on

}  // namespace

StoredTables l2SwitchTables() { return {storedTable(kGlobal), storedTable(kVlans), storedTable(kPorts)}; }

}  // namespace mcast6::ctl
