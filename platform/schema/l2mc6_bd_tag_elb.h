// l2mc6_bd_tag_elb: the outgoing interfaces of bridge domains that send tagged frames.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_tag_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("bdId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("outIfIndex", 40),
    u16("tagVid1", 44),
    u16("tagVid2", 46),
    u32("vrfId", 48),
    u16("fwdIfExtType", 52),
    u16("fwdIfKind", 54),
    u8("isSelfBoard", 56),
    u8("elbByte1", 57),
    u32("egressAttr", 60),
    u32("pathFlags", 64),
    u32("mcId", 68),
    u64("mcidVersion", 72),
    u32("mfibVersion", 80),
    u32("appSrcPid", 84),
    u32("appVersion", 88),
    u32("smoothVersion", 92),
    u32("elbWord1", 96),
    u32("elbWord2", 100),
    bytes("elbData1", 104, 16),
    bytes("svcCtxHighPrio", 120, 28),
    bytes("svcCtxNormalPrio", 148, 12),
    bytes("serviceStatus", 160, 2),
    bytes("errCode", 162, 2),
    u64("timeStampCreate", 164),
    u64("timeStampSmooth", 172),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "bdId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090004, "outIfIndex"),
    key(kFields, 0x0309000C, "vrId", "vrfId", "appSrcPid"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_tag_elb",
    .recordSize = 180,
    .fields = kFields,
    .primary = key(kFields, 0x00010030, "vrId", "bdId", "groupAddr", "sourceAddr", "outIfIndex", "tagVid1", "tagVid2"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_tag_elb
