// l2mc6_global_enable: the global MLD switches.
// A write of a present key is refused.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_global_enable {

inline constexpr Field kFields[] = {
    u32("keyId1", 0),
    u32("keyId2", 4),
    u32("cfgWord1", 8),
    u32("smoothVersion", 12),
    bytes("serviceStatus", 16, 2),
    bytes("errCode", 18, 2),
    u64("timeStampCreate", 20),
    u64("timeStampSmooth", 28),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_global_enable",
    .recordSize = 36,
    .fields = kFields,
    .primary = key(kFields, 0x00010008, "keyId1", "keyId2"),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::refused,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_global_enable
