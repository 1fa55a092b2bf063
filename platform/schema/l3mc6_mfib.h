// l3mc6_mfib: the layer-3 multicast forwarding entries.
//
// Index 10 finds the entries of one hash-conflict code: 'attr23' holds the error code, 5 for a hash conflict.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_mfib {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u8("attr2", 40),
    u8("attr1", 41),
    u16("attr3", 42),
    u32("attr4", 44),
    u32("inIfIndex", 48),
    u32("regIfIndex", 52),
    u32("attr7", 56),
    u8("attr8", 61),
    u16("attr9", 62),
    u32("attr10", 64),
    u32("attr11", 68),
    u32("attr12", 72),
    u32("attr13", 76),
    bytes("attr14", 80, 8),
    u32("attr15", 88),
    bytes("mcStatSvcCtx", 92, 36),
    bytes("attr17", 128, 12),
    bytes("attr19", 140, 12),
    bytes("attr18", 152, 12),
    u16("attr22", 164),
    u16("attr21", 166),
    u32("appSrcPid", 168),
    u32("attr20", 172),
    u32("smoothVersion", 176),
    u32("attr23", 180),
    u32("attr24", 184),
    u64("timeStampCreate", 188),
    u64("timeStampSmooth", 196),
    u32("attr16", 204),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x02090004, "inIfIndex"),
    key(kFields, 0x03090008, "vrId", "vrfId"),
    key(kFields, 0x04090018, "vrId", "vrfId", "sourceAddr"),
    key(kFields, 0x05090018, "vrId", "vrfId", "groupAddr"),
    key(kFields, 0x0609001C, "vrId", "vrfId", "sourceAddr", "inIfIndex"),
    key(kFields, 0x0709001C, "vrId", "vrfId", "groupAddr", "inIfIndex"),
    key(kFields, 0x0809000C, "vrId", "vrfId", "inIfIndex"),
    key(kFields, 0x0A090008, "vrId", "attr23"),
    key(kFields, 0x0C09000C, "vrId", "vrfId", "regIfIndex"),
    key(kFields, 0x0D09001C, "vrId", "vrfId", "groupAddr", "regIfIndex"),
    key(kFields, 0x0E09001C, "vrId", "vrfId", "sourceAddr", "regIfIndex"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_mfib",
    .recordSize = 208,
    .fields = kFields,
    .primary = key(kFields, 0x00010028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_mfib
