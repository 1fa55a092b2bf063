// l3mc6_elb: the outgoing interfaces of layer-3 entries.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),        u32("vrfId", 4),     address("groupAddr", 8),     address("sourceAddr", 24),
    u32("outIfIndex", 40), u8("elbFlagD", 44),  u8("elbFlagA", 45),          u16("instId", 46),
    u8("elbFlagC", 48),    u8("elbFlagB", 49),  u32("elbAttrD", 52),         u32("elbAttrE", 56),
    u32("elbAttrG", 60),   u32("elbAttrA", 64), u64("elbAttrB", 68),         u32("elbAttrC", 76),
    u16("elbHalfB", 80),   u16("elbHalfA", 82), bytes("elbCtxA", 84, 28),    bytes("elbCtxB", 112, 12),
    u32("elbAttrF", 124),  u32("elbWord", 128), u64("timeStampCreate", 132), u64("timeStampSmooth", 140),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090029, "vrId", "vrfId", "groupAddr", "sourceAddr", "elbFlagD"),
    key(kFields, 0x02090004, "outIfIndex"),
    key(kFields, 0x06090029, "vrId", "vrfId", "groupAddr", "sourceAddr", "elbFlagA"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_elb",
    .recordSize = 148,
    .fields = kFields,
    .primary = key(kFields, 0x0001002D, "vrId", "vrfId", "groupAddr", "sourceAddr", "outIfIndex", "elbFlagD"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_elb
