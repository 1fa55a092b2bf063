// link_name: the names of interfaces, by virtual router, layer and interface index.
// No table of the library: hosts and tools keep it through platform.h, so that all processes see the same names.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::link_name {

inline constexpr uint16_t kNameWidth = 52;  // with at least one zero at the end

inline constexpr Field kFields[] = {u32("vrId", 0), u32("layer", 4), u32("ifIndex", 8), bytes("name", 12, kNameWidth)};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090008, "vrId", "layer"),
    key(kFields, 0x0209003C, "vrId", "layer", "name"),
};

inline constexpr Table kTable = checked({
    .name = "link_name",
    .recordSize = 64,
    .fields = kFields,
    .primary = key(kFields, 0x0001000C, "vrId", "layer", "ifIndex"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::link_name
