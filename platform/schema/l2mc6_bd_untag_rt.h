// l2mc6_bd_untag_rt: the routes of bridge domains to untagged interfaces.
// The key holds the low half of rtKeyValue.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_untag_rt {

inline constexpr Field kFields[] = {
    u32("vrId", 0),     u32("rtKeyWord1", 4),       u32("rtKeyWord2", 8),       u32("rtKeyValue", 12),
    u32("vrfId", 16),   u32("rtAttr", 20),          u32("smoothVersion", 24),   u32("serviceStatus", 28),
    u32("errCode", 32), u64("timeStampCreate", 36), u64("timeStampSmooth", 44),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_untag_rt",
    .recordSize = 52,
    .fields = kFields,
    .primary = key(kFields, 0x0001000E, "vrId", "rtKeyWord1", "rtKeyWord2", lowBytes("rtKeyValue", 2)),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_untag_rt
