// l2mc6_bd_mfib: the layer-2 forwarding entries of bridge domains.
// Index 4 finds the entries of an error code, 5 for a hash conflict.
#pragma once

#include "platform/schema/schema.h"

namespace mcast6::schema::l2mc6_bd_mfib {

inline constexpr Field kFields[] = {
    u32("vrId", 0),
    address("groupAddr", 4),
    address("sourceAddr", 20),
    u32("bdId", 36),
    u32("vrfId", 40),
    u32("pathFlags", 44),
    u32("mcId", 48),
    u64("mcidVersion", 52),
    u32("mfibVersion", 60),
    bytes("svcCtxHighPrio", 64, 12),
    bytes("svcCtxNormalPrio", 76, 12),
    u32("appSrcPid", 88),
    u32("smoothVersion", 92),
    u32("appVersion", 96),
    bytes("serviceStatus", 100, 2),
    u32("hppErrCode", 102),
    u32("enpErrCode", 106),
    u64("timeStampCreate", 110),
    u64("timeStampSmooth", 118),
};

inline constexpr Key kIndexes[] = {
    sortedKey(kFields, 0x01020004, "bdId_local_key", "bdId"), key(kFields, 0x02090008, "vrId", "bdId"),
    key(kFields, 0x03090018, "vrId", "groupAddr", "bdId"),    key(kFields, 0x04090004, "hppErrCode"),
    key(kFields, 0x0509000C, zeros(8), "appSrcPid"),
};

inline constexpr Table kTable = checked({
    .name = "l2mc6_bd_mfib",
    .recordSize = 126,
    .fields = kFields,
    .primary = key(kFields, 0x00010028, "vrId", "groupAddr", "sourceAddr", "bdId"),
    .indexes = kIndexes,
    .absentRemoval = 13044,
    .presentWrite = PresentWrite::replaces,
    .capacity = 0,
});

}  // namespace mcast6::schema::l2mc6_bd_mfib
