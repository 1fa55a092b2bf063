// l3mc6_register_elb: the register interfaces of layer-3 entries.
// The removal of an absent key answers 15005.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_register_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("outIfIndex", 40),
    u32("regAttrA", 44),
    u64("regAttrB", 48),
    u32("instId", 56),
    u8("instType", 60),
    u8("regAttrC", 61),
    u8("regAttrD", 62),
    bytes("regHalfB", 64, 2),
    bytes("regHalfA", 66, 2),
    bytes("regCtxA", 68, 28),
    bytes("regCtxB", 96, 12),
    u32("regWord", 108),
    u64("timeStampCreate", 112),
    u64("timeStampSmooth", 120),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x02090004, "outIfIndex"),
    key(kFields, 0x03090005, "instId", "instType"),
    key(kFields, 0x04090029, "vrId", "vrfId", "groupAddr", "sourceAddr", "regAttrC"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_register_elb",
    .recordSize = 128,
    .fields = kFields,
    .primary = key(kFields, 0x00010028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    .indexes = kIndexes,
    .absentRemoval = 15005,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_register_elb
