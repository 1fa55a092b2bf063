// l2mc6_elb: the outgoing interfaces of VLAN forwarding entries.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u16("vlanId", 4),
    u16("userVlanId", 6),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("outIfIndex", 40),
    u32("vrfId", 44),
    u16("fwdIfExtType", 48),
    u16("fwdIfType", 50),
    u8("isSelfBoard", 52),
    u8("elbByte1", 53),
    u32("pathFlags", 56),
    u32("appSrcPid", 60),
    u64("mcidVersion", 64),
    u32("mfibVersion", 72),
    u32("mcId", 76),
    u32("smoothVersion", 80),
    u32("elbWord1", 84),
    u32("elbWord2", 88),
    bytes("elbData1", 92, 16),
    bytes("svcCtxHighPrio", 108, 28),
    bytes("svcCtxNormalPrio", 136, 12),
    bytes("serviceStatus", 148, 2),
    bytes("errCode", 150, 2),
    u64("timeStampCreate", 152),
    u64("timeStampSmooth", 160),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x02090026, "vrId", "vlanId", "sourceAddr", "groupAddr"),
    key(kFields, 0x03090004, "outIfIndex"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_elb",
    .recordSize = 168,
    .fields = kFields,
    .primary = key(kFields, 0x0001002C, "vrId", "vlanId", "userVlanId", "groupAddr", "sourceAddr", "outIfIndex"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_elb
