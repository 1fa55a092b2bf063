// l2mc6_querier: the MLD querier elected in each bridge domain.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_querier {

inline constexpr Field kFields[] = {
    u32("vrId", 0),    u32("bdId", 4),           address("querierAddr", 8),  u32("ifIndex", 24),
    u8("version", 28), u32("smoothVersion", 32), u64("timeStampCreate", 36), u64("timeStampSmooth", 44),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x02090004, "ifIndex"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_querier",
    .recordSize = 52,
    .fields = kFields,
    .primary = key(kFields, 0x00010008, "vrId", "bdId"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_querier
