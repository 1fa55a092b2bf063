// l2mc6_bd_untag_elb: the outgoing interfaces of bridge domains that send untagged frames.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_untag_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("bdId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("outIfIndex", 40),
    u32("vrfId", 44),
    u16("fwdIfExtType", 48),
    u16("fwdIfKind", 50),
    u8("isSelfBoard", 52),
    u8("elbByte1", 53),
    u32("pathFlags", 56),
    u32("mcId", 60),
    u32("egressAttr", 64),
    u64("mcidVersion", 68),
    u32("mfibVersion", 76),
    u32("appSrcPid", 80),
    u32("appVersion", 84),
    u32("smoothVersion", 88),
    bytes("svcCtxHighPrio", 92, 28),
    bytes("svcCtxNormalPrio", 120, 12),
    bytes("serviceStatus", 132, 2),
    bytes("errCode", 134, 2),
    u64("timeStampCreate", 136),
    u64("timeStampSmooth", 144),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "bdId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090004, "outIfIndex"),
    key(kFields, 0x0309000C, "vrId", "vrfId", "appSrcPid"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_untag_elb",
    .recordSize = 152,
    .fields = kFields,
    .primary = key(kFields, 0x0001002C, "vrId", "bdId", "groupAddr", "sourceAddr", "outIfIndex"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_untag_elb
