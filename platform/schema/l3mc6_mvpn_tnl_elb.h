// l3mc6_mvpn_tnl_elb: the MVPN tunnel members of layer-3 entries.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_mvpn_tnl_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("tunnelWord1", 40),
    u32("tunnelWord2", 44),
    u32("tunnelWord3", 48),
    u32("tunnelWord4", 52),
    u32("tunnelWord5", 56),
    u32("tunnelWord6", 60),
    u32("tunnelWord7", 64),
    u32("tunnelWord8", 68),
    u32("tunnelWord9", 72),
    u32("memberAttr1", 80),
    u64("memberAttr2", 84),
    u32("memberAttr3", 92),
    u32("appSrcPid", 96),
    u32("appVersion", 100),
    u32("smoothVersion", 104),
    bytes("tunnelData", 108, 16),
    bytes("serviceStatus", 124, 2),
    u64("timeStampCreate", 126),
    u64("timeStampSmooth", 134),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x0109000C, "vrId", "vrfId", "tunnelWord1"),
    key(kFields, 0x0209000C, "vrId", "vrfId", "appSrcPid"),
    key(kFields, 0x03090010, "vrId", "vrfId", "tunnelWord2", "tunnelWord3"),
    key(kFields, 0x0409000D, "vrId", "vrfId", "tunnelWord2", lowBytes("tunnelWord4", 1)),
    key(kFields, 0x05090008, "vrId", "vrfId"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_mvpn_tnl_elb",
    .recordSize = 142,
    .fields = kFields,
    .primary = key(kFields, 0x00010028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_mvpn_tnl_elb
