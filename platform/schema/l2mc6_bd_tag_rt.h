// l2mc6_bd_tag_rt: the routes of bridge domains to tagged interfaces.
// The key holds the low half of rtKeyValue.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_tag_rt {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("rtKeyWord1", 4),
    u32("rtKeyWord2", 8),
    u16("tagVid1", 12),
    u16("tagVid2", 14),
    u32("rtKeyValue", 16),
    u32("vrfId", 20),
    u32("rtAttr", 24),
    u32("smoothVersion", 28),
    u32("serviceStatus", 32),
    u32("errCode", 36),
    u64("timeStampCreate", 40),
    u64("timeStampSmooth", 48),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_tag_rt",
    .recordSize = 56,
    .fields = kFields,
    .primary =
        key(kFields, 0x00010012, "vrId", "rtKeyWord1", "rtKeyWord2", "tagVid1", "tagVid2", lowBytes("rtKeyValue", 2)),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_tag_rt
