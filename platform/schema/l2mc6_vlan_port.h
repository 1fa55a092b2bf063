// l2mc6_vlan_port: the ports of VLANs.
// A write of a present key is refused.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_vlan_port {

inline constexpr Field kFields[] = {
    u32("keyId1", 0),    u16("vlanId", 4),           u16("keyId3", 6),           u32("keyId4", 8),
    u32("portAttr", 12), u32("cfgWord1", 16),        u32("smoothVersion", 20),   u32("serviceStatus", 24),
    u32("errCode", 28),  u64("timeStampCreate", 32), u64("timeStampSmooth", 40),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_vlan_port",
    .recordSize = 48,
    .fields = kFields,
    .primary = key(kFields, 0x0001000C, "keyId1", "vlanId", "keyId3", "keyId4"),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::refused,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_vlan_port
