// l3mc6_mvpn_tnl_subelb: the MVPN tunnel members of layer-3 entries that are bound to an interface.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_mvpn_tnl_subelb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("outIfIndex", 40),
    u32("subKeyWord", 44),
    u32("l2IfIndex", 48),
    u32("subWord1", 52),
    u32("subWord2", 56),
    u32("subWord3", 60),
    u8("subByte1", 64),
    u8("subByte2", 65),
    u8("subByte3", 66),
    u32("memberAttr1", 68),
    u64("memberAttr2", 72),
    u32("memberAttr3", 80),
    u32("appSrcPid", 84),
    u32("smoothVersion", 88),
    bytes("tunnelData", 92, 16),
    bytes("svcCtxHighPrio", 108, 28),
    bytes("svcCtxNormalPrio", 136, 12),
    bytes("serviceStatus", 148, 2),
    bytes("errCode", 150, 2),
    u64("timeStampCreate", 152),
    u64("timeStampSmooth", 160),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090004, "outIfIndex"),
    key(kFields, 0x03090008, "vrId", "vrfId"),
    key(kFields, 0x04090004, "l2IfIndex"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_mvpn_tnl_subelb",
    .recordSize = 168,
    .fields = kFields,
    .primary = key(kFields, 0x00010030, "vrId", "vrfId", "groupAddr", "sourceAddr", "outIfIndex", "subKeyWord"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_mvpn_tnl_subelb
