// l2mc6_bd_vxlan_sub_elb: the VXLAN tunnel members of bridge domain entries that are bound to an interface.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_vxlan_sub_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("bdId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("vxlanByte", 40),
    u32("vxlanWord1", 44),
    u32("outIfIndex", 48),
    u32("vxlanWord2", 52),
    bytes("vxlanWords3to6", 56, 16),
    u32("vxlanWord0", 72),
    u32("vrfId", 76),
    u16("fwdIfType", 80),
    u8("isSelfBoard", 82),
    u8("vxlanFlag", 83),
    u32("pathFlags", 84),
    u32("mcId", 88),
    u64("mcidVersion", 92),
    u32("mfibVersion", 100),
    u32("appSrcPid", 104),
    u32("appVersion", 108),
    u32("smoothVersion", 112),
    bytes("elbData1", 116, 16),
    bytes("svcCtxHighPrio", 132, 28),
    bytes("svcCtxNormalPrio", 160, 12),
    bytes("serviceStatus", 172, 2),
    bytes("errCode", 174, 2),
    u64("timeStampCreate", 176),
    u64("timeStampSmooth", 184),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "bdId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090030, "vrId", "bdId", "groupAddr", "sourceAddr", "vxlanByte", "vxlanWord1"),
    key(kFields, 0x03090004, "outIfIndex"),
    key(kFields, 0x04090008, "vrId", "bdId"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_vxlan_sub_elb",
    .recordSize = 192,
    .fields = kFields,
    .primary =
        key(kFields, 0x00010034, "vrId", "bdId", "groupAddr", "sourceAddr", "vxlanByte", "vxlanWord1", "outIfIndex"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_vxlan_sub_elb
