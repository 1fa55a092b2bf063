// l2mc6_bd_rt_vxlan_elb: the routes of bridge domains to VXLAN tunnels.
// The key holds the low half of rtKeyValue.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_rt_vxlan_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("rtKeyWord1", 4),
    u32("rtKeyWord2", 8),
    u32("rtKeyWord3", 12),
    u32("rtKeyValue", 16),
    u32("rtAttr", 20),
    u32("vrfId", 28),
    u32("appSrcPid", 32),
    u32("smoothVersion", 36),
    u32("serviceStatus", 40),
    u32("errCode", 44),
    u64("timeStampCreate", 48),
    u64("timeStampSmooth", 56),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x0209000C, "vrId", "vrfId", "appSrcPid"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_rt_vxlan_elb",
    .recordSize = 64,
    .fields = kFields,
    .primary = key(kFields, 0x00010012, "vrId", "rtKeyWord1", "rtKeyWord2", "rtKeyWord3", lowBytes("rtKeyValue", 2)),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_rt_vxlan_elb
