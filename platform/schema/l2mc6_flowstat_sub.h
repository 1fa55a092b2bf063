// l2mc6_flowstat_sub: the flow-statistics subscriptions outside bridge domains.
// A write of a present key is refused.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_flowstat_sub {

inline constexpr Field kFields[] = {
    u32("keyId1", 0),           u32("keyId2", 4),           address("flowAddr1", 8), address("flowAddr2", 24),
    u32("srcPid", 40),          u32("cfgWord2", 44),        u32("cfgWord3", 48),     u32("smoothVersion", 52),
    u64("timeStampCreate", 56), u64("timeStampSmooth", 64),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_flowstat_sub",
    .recordSize = 72,
    .fields = kFields,
    .primary = key(kFields, 0x00010028, "keyId1", "keyId2", "flowAddr1", "flowAddr2"),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::refused,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_flowstat_sub
