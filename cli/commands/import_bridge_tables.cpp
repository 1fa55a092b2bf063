// docs/bridge-import.md tells how captured attributes map.
#include "cli/commands/import_bridge_tables.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "kernel/apply/layer2_tables.h"
#include "kernel/text.h"

namespace mcast6::ctl {

using namespace kernel;

namespace {

constexpr uint32_t kIpv6 = 2;  // addrType
constexpr uint32_t kBridgeDomainVr = 0;

using Switch = L2McBdEnableEntry;
using Global = MldGlobalEntry;
using Vlan = L2VlanEnableEntry;
using Port = VlanPortEntry;
using Route = L2McBdRtEntry;
using TunnelRoute = L2McBdRtVxlanEntry;
using Mfib = L2Mc6MfibEntry;
using Elb = L2Elb6Entry;

}  // namespace

BridgeTables::BridgeTables(BridgeReport& report, uint32_t smoothVersion)
    : report_(report), stamp_{smoothVersion, static_cast<uint32_t>(getpid())} {}

template <class Record>
void BridgeTables::bring(const kernel::TableOperations<Record>& table, const Record& record) {
    report_.count(table.databaseName, importRecord(table, record, stamp_));
}

void BridgeTables::bridge(const Device& bridge) {
    Switch record{};
    record.keyId1 = kBridgeDomainVr;
    record.keyId2 = bridge.index;
    record.addrType = kIpv6;
    record.l2mcEnable = bridge.bridge->snooping ? 1 : 0;
    record.mldVersion = bridge.bridge->mldVersion;
    bring(kL2Mc6BdEnable, record);
    if (!bridge.bridge->vlanFiltering) return;
    Global global{};
    global.keyId1 = bridge.index;
    global.cfgWord1 = bridge.bridge->snooping && bridge.bridge->vlanSnooping ? 1 : 0;
    bring(kL2Mc6GlobalEnable, global);
}

void BridgeTables::vlan(const Device& bridge, uint32_t vlanId, bool snooping, bool querier, uint32_t mldVersion) {
    Vlan record{};
    record.keyId1 = bridge.index;
    record.vlanId = vlanId;
    record.l2mcEnable = snooping ? 1 : 0;
    record.*kVlanQuerier = querier ? 1 : 0;
    record.*kVlanMldVersion = mldVersion;
    bring(kL2Mc6VlanEnable, record);
}

void BridgeTables::vlanPort(const Device& bridge, const Device& port, uint32_t vlanId,
                            const VlanMembership& membership) {
    Port record{};
    record.keyId1 = bridge.index;
    record.vlanId = vlanId;
    record.keyId4 = port.index;
    record.portAttr = (membership.untagged ? kUntaggedPort : 0U) | (membership.pvid ? kPvidPort : 0U);
    record.cfgWord1 = membership.mcastRouter;
    bring(kL2Mc6VlanPort, record);
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
        return bring(kL2Mc6BdRtVxlanElb, record);
    }
    Route record = fill(Route{});
    record.tagVid1 = tags.outer;
    record.tagVid2 = tags.inner;
    bring(tags.tagged ? kL2Mc6BdTagRt : kL2Mc6BdUntagRt, record);
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
    bring(row.vlanId == 0 ? kL2Mc6BdMfib : kL2Mc6VlanMfib, record);
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
        return bring(kL2Mc6Elb, record);
    }
    record.vrId = kBridgeDomainVr;
    record.bdId = row.bridge->index;
    if (const Tunnel* tunnel = row.port->vxlan()) {
        record.vxlanByte = tunnel->underlay;
        record.vxlanWord1 = tunnel->id;
        record.vxlanWord2 = tunnel->udpPort;
        record.vxlanFlag = row.protocol;
        std::copy(std::begin(tunnel->remote.word), std::end(tunnel->remote.word), record.vxlanWords3to6);
        return bring(kL2Mc6BdVxlanElb, record);
    }
    record.tagVid1 = tags.outer;
    record.tagVid2 = tags.inner;
    bring(tags.tagged ? kL2Mc6BdTagElb : kL2Mc6BdUntagElb, record);
}

}  // namespace mcast6::ctl
