// l2mc6_bd_vxlan_elb: the VXLAN tunnel members of bridge domain entries.
// Index 4 pads the interface with zeros; index 6, the tunnel VSG, ends with the constant 2.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_vxlan_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("bdId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("vxlanByte", 40),
    u32("vxlanWord1", 44),
    u32("vxlanWord2", 48),
    u32("vxlanWord3", 56),
    bytes("vxlanWords4to6", 64, 12),
    u32("vxlanWord0", 76),
    u32("vrfId", 80),
    u32("vxlanByte2", 84),
    u32("outIfIndex", 88),
    u16("fwdIfType", 92),
    u8("isSelfBoard", 94),
    u8("vxlanFlag", 95),
    u32("pathFlags", 96),
    u32("mcId", 100),
    u64("mcidVersion", 104),
    u32("mfibVersion", 112),
    u32("appSrcPid", 116),
    u32("appVersion", 120),
    u32("smoothVersion", 124),
    bytes("elbData1", 128, 16),
    bytes("svcCtxHighPrio", 144, 28),
    bytes("svcCtxNormalPrio", 172, 12),
    bytes("serviceStatus", 184, 2),
    bytes("errCode", 186, 2),
    u64("timeStampCreate", 188),
    u64("timeStampSmooth", 196),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "bdId", "groupAddr", "sourceAddr"),
    key(kFields, 0x0209000C, "vrId", "vxlanByte", "vxlanWord1"),
    key(kFields, 0x0409000C, "outIfIndex", zeros(8)),
    key(kFields, 0x05090008, "vrId", "bdId"),
    key(kFields, 0x06090014, "vrId", "bdId", "vxlanByte", "vxlanWord1", constant(2, 4)),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_vxlan_elb",
    .recordSize = 204,
    .fields = kFields,
    .primary = key(kFields, 0x00010030, "vrId", "bdId", "groupAddr", "sourceAddr", "vxlanByte", "vxlanWord1"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_vxlan_elb
