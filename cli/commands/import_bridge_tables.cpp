// docs/bridge-import.md tells how captured attributes map.
#include "cli/commands/import_bridge_tables.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "cli/tables/l2.h"
#include "cli/tables/l2_switch.h"
#include "kernel/text.h"
#include "mcast6_db/l2mc6_bd_enable.h"
#include "mcast6_db/l2mc6_bd_mfib.h"
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_tag_elb.h"
#include "mcast6_db/l2mc6_bd_tag_rt.h"
#include "mcast6_db/l2mc6_bd_untag_elb.h"
#include "mcast6_db/l2mc6_bd_untag_rt.h"
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"
#include "mcast6_db/l2mc6_elb.h"
#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

constexpr uint32_t kIpv6 = 2;  // addrType
constexpr uint32_t kBridgeDomainVr = 0;

// For tables that refuse to write over a record.
template <class Record, uint32_t (*kRemove)(const Record*), uint32_t (*kWrite)(const Record*)>
uint32_t removeAndWrite(const Record* record) {
    const uint32_t code = kRemove(record);
    return code != MCAST6_DB_SUCCESS ? code : kWrite(record);
}

// The router port tables' updates take a setter that they do not use.
template <class Record, auto kUpdate>
uint32_t restampRoute(const Record* record) {
    return kUpdate(record, nullptr);
}

using Switch = L2McBdEnableEntry;
using Global = MldGlobalEntry;
using Vlan = L2VlanEnableEntry;
using Port = VlanPortEntry;
using Route = L2McBdRtEntry;
using TunnelRoute = L2McBdRtVxlanEntry;
using Mfib = L2Mc6MfibEntry;
using Elb = L2Elb6Entry;

constexpr ImportTable<Switch> kBdEnable{
    .databaseName = "l2mc6_bd_enable",
    .read = MCAST6_DB_ReadL2McBdEnable,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2McBdEnable,
    .restamp = MCAST6_DB_UpdateL2McBdEnableSmoothVersion,
    .merge = mergeMembers<Switch, &Switch::l2mcEnable, &Switch::mldVersion>,
    .smoothVersion = &Switch::smoothVersion,
};

constexpr ImportTable<Global> kGlobal{
    .databaseName = "l2mc6_global_enable",
    .read = MCAST6_DB_ReadMldGlobal,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteMldGlobal,
    .restamp = MCAST6_DB_UpdateMldGlobalSmoothVersion,
    .merge = mergeMembers<Global, &Global::cfgWord1>,
    .smoothVersion = &Global::smoothVersion,
    .replace = removeAndWrite<Global, MCAST6_DB_RemoveMldGlobal, MCAST6_DB_WriteMldGlobal>,
};

// The table has no operation that re-stamps; a write does the same.
constexpr ImportTable<Vlan> kVlan{
    .databaseName = "l2mc6_vlan_enable",
    .read = MCAST6_DB_ReadL2VlanEnableCfg,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2VlanEnableCfg,
    .restamp = MCAST6_DB_WriteL2VlanEnableCfg,
    .merge = mergeMembers<Vlan, &Vlan::l2mcEnable, kVlanMldVersion, kVlanQuerier>,
    .smoothVersion = kVlanSmoothVersion,
};

// The update renews the smooth time as well, which the table's smooth operation leaves.
constexpr ImportTable<Port> kVlanPort{
    .databaseName = "l2mc6_vlan_port",
    .read = MCAST6_DB_ReadVlanPort,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteVlanPort,
    .restamp = MCAST6_DB_UpdateVlanPort,
    .merge = mergeMembers<Port, &Port::portAttr, &Port::cfgWord1>,
    .smoothVersion = &Port::smoothVersion,
    .replace = removeAndWrite<Port, MCAST6_DB_RemoveVlanPort, MCAST6_DB_WriteVlanPort>,
};

constexpr ImportTable<Route> kUntaggedRoute{
    .databaseName = "l2mc6_bd_untag_rt",
    .read = MCAST6_DB_ReadL2McBdUntagRt,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2McBdUntagRt,
    .restamp = restampRoute<Route, MCAST6_DB_UpdateL2McBdUntagRtSmoothVersion>,
    .merge = mergeMembers<Route, &Route::rtAttr>,
    .smoothVersion = &Route::smoothVersion,
};

constexpr ImportTable<Route> kTaggedRoute{
    .databaseName = "l2mc6_bd_tag_rt",
    .read = MCAST6_DB_ReadL2McBdTagRt,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2McBdTagRt,
    .restamp = restampRoute<Route, MCAST6_DB_UpdateL2McBdTagRtSmoothVersion>,
    .merge = mergeMembers<Route, &Route::rtAttr>,
    .smoothVersion = &Route::smoothVersion,
};

constexpr ImportTable<TunnelRoute> kTunnelRoute{
    .databaseName = "l2mc6_bd_rt_vxlan_elb",
    .read = MCAST6_DB_ReadL2Mc6BdRtVxlanElb,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2Mc6BdRtVxlanElb,
    .restamp = restampRoute<TunnelRoute, MCAST6_DB_UpdateL2Mc6BdRtVxlanElbSmoothVersion>,
    .merge = mergeMembers<TunnelRoute, &TunnelRoute::rtAttr>,
    .smoothVersion = &TunnelRoute::smoothVersion,
    .appSrcPid = &TunnelRoute::appSrcPid,
};

constexpr ImportTable<Mfib> kBdMfib{
    .databaseName = "l2mc6_bd_mfib",
    .read = MCAST6_DB_ReadL2BdMfib6Fast,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2BdMfib6,
    .restamp = MCAST6_DB_UpdateL2BdMfib6SmoothVersion,
    .merge = mergeMembers<Mfib>,
    .smoothVersion = &Mfib::smoothVersion,
    .appSrcPid = &Mfib::appSrcPid,
};

constexpr ImportTable<Mfib> kVlanMfib{
    .databaseName = "l2mc6_vlan_mfib",
    .read = MCAST6_DB_ReadVlanMfib6Fast,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteVlanMfib6,
    .restamp = MCAST6_DB_UpdateVlanMfib6SmoothVersion,
    .merge = mergeMembers<Mfib, &Mfib::groupMaskLen, &Mfib::sourceMaskLen>,
    .smoothVersion = &Mfib::smoothVersion,
    .appSrcPid = &Mfib::appSrcPid,
};

constexpr ImportTable<Elb> kVlanMember{
    .databaseName = "l2mc6_elb",
    .read = MCAST6_DB_ReadL2Elb6,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2Elb6,
    .restamp = MCAST6_DB_UpdateL2Elb6SmoothVersion,
    .merge = mergeMembers<Elb, &Elb::pathFlags, &Elb::elbByte1>,
    .smoothVersion = &Elb::smoothVersion,
    .appSrcPid = &Elb::appSrcPid,
};

constexpr ImportTable<Elb> kUntaggedMember{
    .databaseName = "l2mc6_bd_untag_elb",
    .read = MCAST6_DB_ReadL2McBdUntagElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2McBdUntagElb,
    .restamp = MCAST6_DB_UpdateL2McBdUntagElbSmoothVersion,
    .merge = mergeMembers<Elb, &Elb::pathFlags, &Elb::elbByte1>,
    .smoothVersion = &Elb::smoothVersion,
    .appSrcPid = &Elb::appSrcPid,
};

constexpr ImportTable<Elb> kTaggedMember{
    .databaseName = "l2mc6_bd_tag_elb",
    .read = MCAST6_DB_ReadL2McBdTagElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2McBdTagElb,
    .restamp = MCAST6_DB_UpdateL2McBdTagElbSmoothVersion,
    .merge = mergeMembers<Elb, &Elb::pathFlags, &Elb::elbByte1>,
    .smoothVersion = &Elb::smoothVersion,
    .appSrcPid = &Elb::appSrcPid,
};

constexpr ImportTable<Elb> kTunnelMember{
    .databaseName = "l2mc6_bd_vxlan_elb",
    .read = MCAST6_DB_ReadL2Mc6BdVxlanElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2Mc6BdVxlanElb,
    .restamp = MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion,
    .merge =
        mergeMembers<Elb, &Elb::pathFlags, &Elb::vxlanFlag, &Elb::outIfIndex, &Elb::vxlanWord2, &Elb::vxlanWords3to6>,
    .smoothVersion = &Elb::smoothVersion,
    .appSrcPid = &Elb::appSrcPid,
};

}  // namespace

BridgeTables::BridgeTables(BridgeReport& report, uint32_t smoothVersion)
    : report_(report), stamp_{smoothVersion, static_cast<uint32_t>(getpid())} {}

template <class Record>
void BridgeTables::bring(const ImportTable<Record>& table, const Record& record) {
    report_.count(table.databaseName, importRecord(table, record, stamp_));
}

void BridgeTables::bridge(const Device& bridge) {
    Switch record{};
    record.keyId1 = kBridgeDomainVr;
    record.keyId2 = bridge.index;
    record.addrType = kIpv6;
    record.l2mcEnable = bridge.bridge->snooping ? 1 : 0;
    record.mldVersion = bridge.bridge->mldVersion;
    bring(kBdEnable, record);
    if (!bridge.bridge->vlanFiltering) return;
    Global global{};
    global.keyId1 = bridge.index;
    global.cfgWord1 = bridge.bridge->snooping && bridge.bridge->vlanSnooping ? 1 : 0;
    bring(kGlobal, global);
}

void BridgeTables::vlan(const Device& bridge, uint32_t vlanId, bool snooping, bool querier, uint32_t mldVersion) {
    Vlan record{};
    record.keyId1 = bridge.index;
    record.vlanId = vlanId;
    record.l2mcEnable = snooping ? 1 : 0;
    record.*kVlanQuerier = querier ? 1 : 0;
    record.*kVlanMldVersion = mldVersion;
    bring(kVlan, record);
}

void BridgeTables::vlanPort(const Device& bridge, const Device& port, uint32_t vlanId,
                            const VlanMembership& membership) {
    Port record{};
    record.keyId1 = bridge.index;
    record.vlanId = vlanId;
    record.keyId4 = port.index;
    record.portAttr = (membership.untagged ? kUntaggedPort : 0U) | (membership.pvid ? kPvidPort : 0U);
    record.cfgWord1 = membership.mcastRouter;
    bring(kVlanPort, record);
}

void BridgeTables::routerPort(const Device& bridge, const Device& port, uint32_t vlanId, const Tags& tags,
                              uint32_t kind) {
    const auto fill = [&](auto record) {
        record.vrId = kBridgeDomainVr;
        record.rtKeyWord1 = bridge.index;
        record.rtKeyWord2 = port.index;
        record.rtKeyValue = vlanId;
        record.rtAttr = kind;
        return record;
    };
    if (const Tunnel* tunnel = port.vxlan()) {
        TunnelRoute record = fill(TunnelRoute{});
        record.rtKeyWord3 = tunnel->id;
        return bring(kTunnelRoute, record);
    }
    Route record = fill(Route{});
    record.tagVid1 = tags.outer;
    record.tagVid2 = tags.inner;
    bring(tags.tagged ? kTaggedRoute : kUntaggedRoute, record);
}

void BridgeTables::entry(const GroupRow& row) {
    Mfib record{};
    record.addrType = kIpv6;
    record.groupAddr = row.group;
    record.sourceAddr = row.source;
    record.vrId = row.vlanId == 0 ? kBridgeDomainVr : row.bridge->index;
    record.domainId = row.vlanId == 0 ? row.bridge->index : row.vlanId;
    if (row.vlanId != 0) {
        record.groupMaskLen = 128;
        record.sourceMaskLen = isAnyAddress(row.source) ? 0 : 128;
    }
    bring(row.vlanId == 0 ? kBdMfib : kVlanMfib, record);
}

void BridgeTables::member(const GroupRow& row, const Tags& tags) {
    Elb record{};
    record.addrType = kIpv6;
    record.groupAddr = row.group;
    record.sourceAddr = row.source;
    record.outIfIndex = row.port->index;
    record.pathFlags = row.flags;
    record.elbByte1 = row.protocol;
    if (row.vlanId != 0) {
        record.vrId = row.bridge->index;
        record.vlanId = row.vlanId;
        record.userVlanId = tags.outer;
        return bring(kVlanMember, record);
    }
    record.vrId = kBridgeDomainVr;
    record.bdId = row.bridge->index;
    if (const Tunnel* tunnel = row.port->vxlan()) {
        record.vxlanByte = tunnel->underlay;
        record.vxlanWord1 = tunnel->id;
        record.vxlanWord2 = tunnel->udpPort;
        record.vxlanFlag = row.protocol;
        std::copy(std::begin(tunnel->remote.word), std::end(tunnel->remote.word), record.vxlanWords3to6);
        return bring(kTunnelMember, record);
    }
    record.tagVid1 = tags.outer;
    record.tagVid2 = tags.inner;
    bring(tags.tagged ? kTaggedMember : kUntaggedMember, record);
}

}  // namespace mcast6::ctl
