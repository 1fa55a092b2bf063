// l2mc6_vlan_enable: the MLD switches of each VLAN.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_vlan_enable {

inline constexpr Field kFields[] = {
    u32("keyId1", 0),           u32("keyId2", 4),
    u16("vlanId", 8),           u16("vlanAttr", 10),
    u32("cfgWord1", 12),        u32("cfgWord2", 16),
    u32("cfgWord3", 20),        u32("cfgWord4", 24),
    u32("cfgWord5", 28),        bytes("serviceStatus", 32, 2),
    bytes("errCode", 34, 2),    u64("timeStampCreate", 36),
    u64("timeStampSmooth", 44), u32("l2mcEnable", 52),
    bytes("attrC", 56, 12),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_vlan_enable",
    .recordSize = 68,
    .fields = kFields,
    .primary = key(kFields, 0x0001000A, "keyId1", "keyId2", "vlanId"),
    .indexes = {},
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_vlan_enable
