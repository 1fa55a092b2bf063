// l3mc6_bd_tnl_elb: the bridge domain members of layer-3 entries behind tunnels.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l3mc6_bd_tnl_elb {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    u32("vrfId", 4),
    address("groupAddr", 8),
    address("sourceAddr", 24),
    u32("bdElbAttr4", 40),
    u32("tnlAttr2", 44),
    u8("tnlAttr3", 48),
    u8("tnlAttr6", 49),
    u8("bdElbAttr6", 50),
    u8("bdElbAttr19", 51),
    u32("tnlAttr1", 52),
    u32("tnlAttr4", 56),
    u32("bdElbAttr16", 60),
    u32("bdElbAttr5", 64),
    u32("bdElbAttr1", 68),
    u64("bdElbAttr2", 72),
    u32("bdElbAttr3", 80),
    u32("appSrcPid", 84),
    u32("bdElbAttr14", 88),
    u32("smoothVersion", 92),
    bytes("tnlAttr5", 96, 16),
    bytes("bdElbAttr11", 112, 28),
    u64("bdElbAttr12", 140),
    u32("bdElbAttr13", 148),
    u16("bdElbAttr15", 152),
    u16("bdElbAttr17", 154),
    u64("timeStampCreate", 156),
    u64("timeStampSmooth", 164),
};

inline constexpr Key kIndexes[] = {
    key(kFields, 0x01090028, "vrId", "vrfId", "groupAddr", "sourceAddr"),
    key(kFields, 0x02090008, "vrId", "bdElbAttr4"),
    key(kFields, 0x0309000D, "vrId", "bdElbAttr4", "tnlAttr2", "tnlAttr3"),
    key(kFields, 0x0409000C, "vrId", "vrfId", "appSrcPid"),
    key(kFields, 0x05090029, "vrId", "vrfId", "groupAddr", "sourceAddr", "bdElbAttr19"),
    key(kFields, 0x06090004, "bdElbAttr5"),
};

inline constexpr Table kTable = checked({
    .name = "l3mc6_bd_tnl_elb",
    .recordSize = 172,
    .fields = kFields,
    .primary =
        key(kFields, 0x00010031, "vrId", "vrfId", "groupAddr", "sourceAddr", "bdElbAttr4", "tnlAttr2", "tnlAttr3"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l3mc6_bd_tnl_elb
