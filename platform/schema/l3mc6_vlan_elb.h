// l3mc6_vlan_elb: the VLAN members of layer-3 entries.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_vlan_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("outIfIndex", 40),
    u16("instId", 44),
    u16("elbAttrD", 46),
    u32("elbAttrA", 48),
    u64("elbAttrB", 52),
    u32("elbAttrC", 60),
    u32("elbAttrG", 64),
    u8("elbFlagD", 68),
    u8("elbFlagA", 69),
    u8("elbFlagB", 70),
    u8("vlanFlagC", 71),
    u8("vlanFlagA", 72),
    u8("vlanFlagB", 73),
    u8("elbFlagE", 74),
    u16("elbHalfB", 76),
    u16("elbHalfA", 78),
    bytes("elbCtxA", 80, 28),
    bytes("elbCtxB", 108, 12),
    u32("elbAttrF", 120),
    u32("elbExtA", 124),
    u32("elbExtB", 128),
    bytes("elbExtCtx", 132, 16),
    u32("elbWord", 148),
    u64("timeStampCreate", 152),
    u64("timeStampSmooth", 160),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090004, "outIfIndex"),
    key(kFields, 0x0309002A, "vrId", "vrfId", "groupAddr", "sourceAddr", "instId"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_vlan_elb",
    .recordSize = 168,
    .fields = kFields,
    .primary = key(kFields, 0x0001002E, "vrId", "vrfId", "groupAddr", "sourceAddr", "outIfIndex", "instId"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_vlan_elb
