// l3mc6_bd_tag_elb: the bridge domain members of layer-3 entries that send tagged frames.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_bd_tag_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("bdElbAttr4", 40),
    u32("bdElbAttr5", 44),
    u16("bdElbAttr7", 48),
    u16("bdElbAttr8", 50),
    u8("bdElbAttr6", 52),
    u8("bdElbAttr19", 53),
    u8("bdElbAttr18", 54),
    u32("bdElbAttr9", 56),
    u32("bdElbAttr10", 60),
    u32("bdElbAttr16", 64),
    u32("bdElbAttr1", 68),
    u64("bdElbAttr2", 72),
    u32("bdElbAttr3", 80),
    u32("appSrcPid", 84),
    u32("bdElbAttr14", 88),
    u32("smoothVersion", 92),
    u8("mlagRole", 96),
    u8("isMlagDual", 97),
    u16("inIfhasMlag", 98),
    bytes("bdElbAttr11", 100, 28),
    u64("bdElbAttr12", 128),
    u32("bdElbAttr13", 136),
    u16("bdElbAttr15", 140),
    u16("bdElbAttr17", 142),
    u64("timeStampCreate", 144),
    u64("timeStampSmooth", 152),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090008, "vrId", "bdElbAttr4"),
    key(kFields, 0x03090008, "vrId", "bdElbAttr5"),
    key(kFields, 0x0409000C, "vrId", "vrfId", "appSrcPid"),
    key(kFields, 0x05090029, "vrId", "vrfId", "groupAddr", "sourceAddr", "bdElbAttr19"),
    key(kFields, 0x06090004, "bdElbAttr5"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_bd_tag_elb",
    .recordSize = 160,
    .fields = kFields,
    .primary = key(kFields, 0x00010034, "vrId", "vrfId", "groupAddr", "sourceAddr", "bdElbAttr4", "bdElbAttr5",
                   "bdElbAttr7", "bdElbAttr8"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_bd_tag_elb
