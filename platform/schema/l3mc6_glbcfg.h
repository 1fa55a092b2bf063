// l3mc6_glbcfg: the layer-3 global configuration.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_glbcfg {

inline constexpr Field kFields[] = {
    u32("cfgKeyA", 0),          u32("cfgKeyB", 4),          u32("cfgKeyC", 8),   u32("cfgWord3", 12),
    u32("smoothVersion", 16),   u32("glbVersion", 20),      u32("cfgWord6", 24), u32("cfgWord7", 28),
    u64("timeStampCreate", 32), u64("timeStampSmooth", 40),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090008, "cfgKeyA", "cfgKeyB"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_glbcfg",
    .recordSize = 48,
    .fields = kFields,
    .primary = key(kFields, 0x0001000C, "cfgKeyA", "cfgKeyB", "cfgKeyC"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_glbcfg
