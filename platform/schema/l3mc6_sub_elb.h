// l3mc6_sub_elb: the sub-interface members of layer-3 entries.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_sub_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("subIfIndex", 40),
    u16("instId", 44),
    u8("elbFlagD", 46),
    u8("elbFlagA", 47),
    u8("elbFlagB", 48),
    u32("outIfIndex", 52),
    u32("elbAttrD", 56),
    u32("elbAttrA", 60),
    u64("elbAttrB", 64),
    u32("elbAttrC", 72),
    u32("elbAttrG", 76),
    u16("elbHalfB", 80),
    u16("elbHalfA", 82),
    bytes("elbCtxA", 84, 28),
    bytes("elbCtxB", 112, 12),
    u32("elbExtA", 128),
    u32("elbExtB", 132),
    bytes("elbExtCtx", 136, 16),
    u32("elbWord", 152),
    u64("timeStampCreate", 156),
    u64("timeStampSmooth", 164),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x0109002D, "vrId", "vrfId", "groupAddr", "sourceAddr", "outIfIndex", "elbFlagD"),
    key(kFields, 0x02090002, "instId"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_sub_elb",
    .recordSize = 172,
    .fields = kFields,
    .primary = key(kFields, 0x0001002F, "vrId", "vrfId", "groupAddr", "sourceAddr", "subIfIndex", "instId", "elbFlagD"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_sub_elb
