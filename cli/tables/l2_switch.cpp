// mld-global, vlan-enable, vlan-port: the MLD snooping switches of VRs and VLANs, and the ports of VLANs. The tool
// takes keyId1 as VR in all three, keyId4 of a port as its interface, and leaves keyId2 and keyId3 0.
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

using Global = MldGlobalEntry;
const Filter<Global> kGlobalVr = interfaceFilter("vr", kVrHelp, &Global::keyId1);
const Filter<Global> kGlobalKey2 = numberFilter("key2", "Second key word", &Global::keyId2);

using Vlan = L2VlanEnableEntry;
const Filter<Vlan> kVlanVr = interfaceFilter("vr", kVrHelp, &Vlan::keyId1);
const Filter<Vlan> kVlanKey2 = numberFilter("key2", "Second key word", &Vlan::keyId2);
const Filter<Vlan> kVlan = numberFilter("vlan", "VLAN", &Vlan::vlanId);

using Port = VlanPortEntry;
const Filter<Port> kPortVr = interfaceFilter("vr", kVrHelp, &Port::keyId1);
const Filter<Port> kPortVlan = numberFilter("vlan", "VLAN", &Port::vlanId);
const Filter<Port> kPortKey3 = numberFilter("key3", "Third key word", &Port::keyId3);
const Filter<Port> kPort = interfaceFilter("port", "Port", &Port::keyId4);

// clang-format off
const Table<Global> kGlobal{
    .name = "mld-global",
    .holds = "global MLD snooping switches",
    .operations = kernel::kL2Mc6GlobalEnable,
    .columns = withStamps<Global>({
        column("VR", "keyId1", &Global::keyId1, ColumnKind::kBridge),
        column("KEY 2", "keyId2", &Global::keyId2),
        column<Global>("SNOOPING", "enabled", [](const Global& record) -> Value { return record.cfgWord1 != 0; }),
        column("STATUS", "serviceStatus", &Global::serviceStatus),
        column("ERROR", "errCode", &Global::errCode),
        column(nullptr, "cfgWord1", &Global::cfgWord1),
    }, &Global::smoothVersion),
    .filters = {&kGlobalVr, &kGlobalKey2},
    .queries = {byKey<Global>({&kGlobalVr, &kGlobalKey2})},
    .layer = Layer::kLayer2,
    .vr = &kGlobalVr,
    .vrIsBridge = true,
    .countAll = MCAST6_DB_GetMldGlbCfgCount,
};

const Table<Vlan> kVlans{
    .name = "vlan-enable",
    .holds = "MLD snooping switches of VLANs",
    .operations = kernel::kL2Mc6VlanEnable,
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
    .filters = {&kVlanVr, &kVlanKey2, &kVlan},
    .queries = {byKey<Vlan>({&kVlanVr, &kVlanKey2, &kVlan})},
    .layer = Layer::kLayer2,
    .vr = &kVlanVr,
    .vrIsBridge = true,
};

const Table<Port> kPorts{
    .name = "vlan-port",
    .holds = "ports of VLANs",
    .operations = kernel::kL2Mc6VlanPort,
    .columns = withStamps<Port>({
        column("VR", "keyId1", &Port::keyId1, ColumnKind::kBridge),
        column("VLAN", "vlanId", &Port::vlanId),
        column("KEY 3", "keyId3", &Port::keyId3),
        column("PORT", "portIfIndex", &Port::keyId4, ColumnKind::kInterface),
        column<Port>("EGRESS", "egress", [](const Port& record) -> Value {
            return (record.portAttr & kUntaggedPort) != 0 ? "untagged" : "tagged";
        }),
        column<Port>("PVID", "pvid", [](const Port& record) -> Value { return (record.portAttr & kPvidPort) != 0; }),
        column("ROUTER", "mcastRouter", &Port::cfgWord1),
        column("STATUS", "serviceStatus", &Port::serviceStatus),
        column("ERROR", "errCode", &Port::errCode),
        column(nullptr, "portAttr", &Port::portAttr),
    }, &Port::smoothVersion),
    .filters = {&kPortVr, &kPortVlan, &kPortKey3, &kPort},
    .queries = {byKey<Port>({&kPortVr, &kPortVlan, &kPortKey3, &kPort})},
    .layer = Layer::kLayer2,
    .vr = &kPortVr,
    .vrIsBridge = true,
};
// clang-format on

}  // namespace

StoredTables l2SwitchTables() { return {storedTable(kGlobal), storedTable(kVlans), storedTable(kPorts)}; }

}  // namespace mcast6::ctl
