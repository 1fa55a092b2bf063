// l3mc6_bd_untag_elb: the bridge domain members of layer-3 entries that send untagged frames.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_bd_untag_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("bdElbAttr4", 40),
    u32("bdElbAttr5", 44),
    u8("bdElbAttr6", 48),
    u8("bdElbAttr19", 49),
    u8("bdElbAttr18", 50),
    u32("bdElbAttr9", 52),
    u32("bdElbAttr10", 56),
    u32("bdElbAttr16", 60),
    u32("bdElbAttr1", 64),
    u64("bdElbAttr2", 68),
    u8("mlagRole", 76),
    u8("isMlagDual", 77),
    u16("inIfhasMlag", 78),
    u32("bdElbAttr3", 80),
    u32("appSrcPid", 84),
    u32("bdElbAttr14", 88),
    u32("smoothVersion", 92),
    bytes("bdElbAttr11", 96, 28),
    u64("bdElbAttr12", 124),
    u32("bdElbAttr13", 132),
    u16("bdElbAttr15", 136),
    u16("bdElbAttr17", 138),
    u64("timeStampCreate", 140),
    u64("timeStampSmooth", 148),
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
    .name = "l3mc6_bd_untag_elb",
    .recordSize = 156,
    .fields = kFields,
    .primary = key(kFields, 0x00010030, "vrId", "vrfId", "groupAddr", "sourceAddr", "bdElbAttr4", "bdElbAttr5"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_bd_untag_elb
