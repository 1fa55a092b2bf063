// l2mc6_vlan_mfib: the layer-2 forwarding entries of VLANs.
// Index 4 finds the entries of an error code, 5 for a hash conflict.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_vlan_mfib {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    address("groupAddr", 4),
    address("sourceAddr", 20),
    u32("vlanId", 36),
    u32("vrfId", 40),
    u8("groupMaskLen", 44),
    u8("sourceMaskLen", 45),
    u32("pathFlags", 46),
    u32("mcId", 50),
    u64("mcidVersion", 54),
    u32("mfibVersion", 62),
    bytes("svcCtxHighPrio", 66, 12),
    bytes("svcCtxNormalPrio", 78, 12),
    u32("appSrcPid", 90),
    u32("smoothVersion", 94),
    u32("appVersion", 98),
    bytes("serviceStatus", 102, 2),
    u32("hppErrCode", 104),
    u32("enpErrCode", 108),
    u64("timeStampCreate", 112),
    u64("timeStampSmooth", 120),
};

inline constexpr Key kIndexes[] = {
    sortedKey(kFields, 0x01020004, "vlanId_local_key", "vlanId"),
    key(kFields, 0x02090008, "vrId", "vlanId"),
    key(kFields, 0x03090018, "vrId", "groupAddr", "vlanId"),
    key(kFields, 0x04090004, "hppErrCode"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_vlan_mfib",
    .recordSize = 128,
    .fields = kFields,
    .primary = key(kFields, 0x00010028, "vrId", "groupAddr", "sourceAddr", "vlanId"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_vlan_mfib
