// global_version: the global versions that IPv4 and IPv6 multicast share, one for each key of three words.
// No table of the library: the host functions for global versions keep it, so that it lies in the store like the rest.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::global_version {

inline constexpr Field kFields[] = {u32("keyWord1", 0), u32("keyWord2", 4), u32("keyWord3", 8), u32("version", 12)};

inline constexpr Table kTable = checked({
    .name = "global_version",
    .recordSize = 16,
    .fields = kFields,
    .primary = key(kFields, 0x0001000C, "keyWord1", "keyWord2", "keyWord3"),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::refused,
    .capacity = 0,
});

}  // namespace mcast6::schema::global_version
