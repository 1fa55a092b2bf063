#include "kernel/apply/bridges.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "kernel/apply/layer2_tables.h"
#include "kernel/text.h"

namespace mcast6::kernel {
namespace {

constexpr uint32_t kIpv6 = 2;  // addrType
constexpr uint32_t kBridgeDomainVr = 0;

}  // namespace

BridgeTables::BridgeTables(const LinkTable& links, uint32_t smoothVersion) : links_(links), applier_(smoothVersion) {}

const Link& BridgeTables::linkOf(uint32_t index) const {
    if (const Link* link = links_.byIndex(index)) return *link;
    throw Error("the links have none with the index " + std::to_string(index));
}

void BridgeTables::bridge(const Link& bridge) {
    L2McBdEnableEntry record{};
    record.keyId1 = kBridgeDomainVr;
    record.keyId2 = bridge.index;
    record.addrType = kIpv6;
    record.l2mcEnable = bridge.bridge->snooping ? 1 : 0;
    record.mldVersion = bridge.bridge->mldVersion;
    applier_.bring(kL2Mc6BdEnable, record);
    if (!bridge.bridge->vlanFiltering) return;
    MldGlobalEntry global{};
    global.keyId1 = bridge.index;
    global.cfgWord1 = bridge.bridge->snooping && bridge.bridge->vlanSnooping ? 1 : 0;
    applier_.bring(kL2Mc6GlobalEnable, global);
}

void BridgeTables::vlan(const Vlan& vlan) {
    L2VlanEnableEntry record{};
    record.keyId1 = vlan.bridgeIndex;
    record.vlanId = vlan.vlanId;
    record.l2mcEnable = vlan.snooping ? 1 : 0;
    record.*kVlanQuerier = vlan.querier ? 1 : 0;
    record.*kVlanMldVersion = vlan.mldVersion;
    applier_.bring(kL2Mc6VlanEnable, record);
}

void BridgeTables::vlanPort(const VlanPort& membership) {
    VlanPortEntry record{};
    record.keyId1 = membership.bridgeIndex;
    record.vlanId = membership.vlanId;
    record.keyId4 = membership.portIndex;
    record.portAttr = (membership.untagged ? kUntaggedPort : 0U) | (membership.pvid ? kPvidPort : 0U);
    record.cfgWord1 = membership.mcastRouter;
    memberships_[{membership.portIndex, membership.vlanId}] = membership;
    applier_.bring(kL2Mc6VlanPort, record);
}

// In one VLAN, or in the whole bridge (0).
BridgeTables::Tags BridgeTables::tagsOf(const Link& port, uint32_t vlanId) const {
    if (vlanId != 0) {
        const auto membership = memberships_.find({port.index, vlanId});
        const bool tagged = membership != memberships_.end() && !membership->second.untagged;
        return {tagged ? static_cast<uint16_t>(vlanId) : uint16_t{0}, 0, tagged};
    }
    if (port.kind == "vlan") {
        const Link* below = links_.byIndex(port.lowerIndex);
        const bool isDouble = below != nullptr && below->kind == "vlan";
        return isDouble ? Tags{below->vlanId, port.vlanId, true} : Tags{port.vlanId, 0, true};
    }
    const auto first = memberships_.lower_bound({port.index, 0});
    const auto end = memberships_.upper_bound({port.index, UINT32_MAX});
    const bool tagged = first != end && std::none_of(first, end, [](const auto& vlan) { return vlan.second.untagged; });
    const bool isOne = tagged && std::next(first) == end;
    return {isOne ? static_cast<uint16_t>(first->first.second) : uint16_t{0}, 0, tagged};
}

void BridgeTables::routerPort(const RouterPort& router) {
    constexpr uint32_t kLearned = 1;
    const Link& port = linkOf(router.portIndex);
    const auto membership = memberships_.find({router.portIndex, router.vlanId});
    const uint32_t ofVlan = membership == memberships_.end() ? kLearned : membership->second.mcastRouter;
    const auto fill = [&](auto record) {
        record.vrId = kBridgeDomainVr;
        record.rtKeyWord1 = router.bridgeIndex;
        record.rtKeyWord2 = router.portIndex;
        record.rtKeyValue = router.vlanId;
        record.rtAttr = router.kind.value_or(ofVlan);
        return record;
    };
    if (port.isVxlan()) {
        L2McBdRtVxlanEntry record = fill(L2McBdRtVxlanEntry{});
        record.rtKeyWord3 = port.tunnel->id;
        applier_.bring(kL2Mc6BdRtVxlanElb, record);
        return;
    }
    const Tags tags = tagsOf(port, router.vlanId);
    L2McBdRtEntry record = fill(L2McBdRtEntry{});
    record.tagVid1 = tags.outer;
    record.tagVid2 = tags.inner;
    applier_.bring(tags.tagged ? kL2Mc6BdTagRt : kL2Mc6BdUntagRt, record);
}

bool BridgeTables::EntryKey::operator==(const EntryKey& other) const {
    return bridgeIndex == other.bridgeIndex && vlanId == other.vlanId && sameAddress(group, other.group) &&
           sameAddress(source, other.source);
}

size_t BridgeTables::EntryHash::operator()(const EntryKey& key) const {
    char bytes[sizeof key];
    std::memcpy(bytes, &key, sizeof key);
    return std::hash<std::string_view>()({bytes, sizeof bytes});
}

void BridgeTables::group(const GroupEntry& row) {
    if (entries_.insert({row.bridgeIndex, row.vlanId, row.group, row.source}).second) entry(row);
    member(row);
}

void BridgeTables::entry(const GroupEntry& row) {
    L2Mc6MfibEntry record{};
    record.addrType = kIpv6;
    record.groupAddr = row.group;
    record.sourceAddr = row.source;
    record.vrId = row.vlanId == 0 ? kBridgeDomainVr : row.bridgeIndex;
    record.domainId = row.vlanId == 0 ? row.bridgeIndex : row.vlanId;
    if (row.vlanId != 0) {
        record.groupMaskLen = 128;
        record.sourceMaskLen = isAnyAddress(row.source) ? 0 : 128;
    }
    applier_.bring(row.vlanId == 0 ? kL2Mc6BdMfib : kL2Mc6VlanMfib, record);
}

void BridgeTables::member(const GroupEntry& row) {
    const Link& port = linkOf(row.portIndex);
    const Tags tags = tagsOf(port, row.vlanId);
    L2Elb6Entry record{};
    record.addrType = kIpv6;
    record.groupAddr = row.group;
    record.sourceAddr = row.source;
    record.outIfIndex = row.portIndex;
    record.pathFlags = row.flags | (port.fastLeave ? kFastLeave : 0U);
    record.elbByte1 = row.protocol;
    if (row.vlanId != 0) {
        record.vrId = row.bridgeIndex;
        record.vlanId = row.vlanId;
        record.userVlanId = tags.outer;
        applier_.bring(kL2Mc6Elb, record);
        return;
    }
    record.vrId = kBridgeDomainVr;
    record.bdId = row.bridgeIndex;
    if (port.isVxlan()) {
        record.vxlanByte = port.tunnel->underlay;
        record.vxlanWord1 = port.tunnel->id;
        record.vxlanWord2 = port.tunnel->udpPort;
        record.vxlanFlag = row.protocol;
        std::copy(std::begin(port.tunnel->remote.word), std::end(port.tunnel->remote.word), record.vxlanWords3to6);
        applier_.bring(kL2Mc6BdVxlanElb, record);
        return;
    }
    record.tagVid1 = tags.outer;
    record.tagVid2 = tags.inner;
    applier_.bring(tags.tagged ? kL2Mc6BdTagElb : kL2Mc6BdUntagElb, record);
}

}  // namespace mcast6::kernel
