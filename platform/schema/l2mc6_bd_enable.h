// l2mc6_bd_enable: the layer-2 multicast switch of each bridge domain.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_enable {

inline constexpr Field kFields[] = {
    u32("keyId1", 0),        u32("keyId2", 4),           u32("addrType", 8),
    u32("attrA", 12),        u32("pathFlags", 16),       u32("mldVersion", 20),
    u32("attrB", 24),        u32("smoothVersion", 28),   bytes("serviceStatus", 32, 2),
    bytes("errCode", 34, 2), u64("timeStampCreate", 36), u64("timeStampSmooth", 44),
    u32("l2mcEnable", 52),   bytes("attrC", 56, 12),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_enable",
    .recordSize = 68,
    .fields = kFields,
    .primary = key(kFields, 0x0001000C, "keyId1", "keyId2", "addrType"),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_enable
