// The layer-2 tables that the state of bridges goes to.
#pragma once

#include "kernel/apply/layer2_words.h"
#include "kernel/apply/table_operations.h"
#include "mcast6_db/l2mc6_bd_enable.h"
#include "mcast6_db/l2mc6_bd_mfib.h"
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_tag_elb.h"
#include "mcast6_db/l2mc6_bd_tag_rt.h"
#include "mcast6_db/l2mc6_bd_untag_elb.h"
#include "mcast6_db/l2mc6_bd_untag_rt.h"
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"
#include "mcast6_db/l2mc6_elb.h"
#include "mcast6_db/l2mc6_global_enable.h"
#include "mcast6_db/l2mc6_vlan_enable.h"
#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "mcast6_db/l2mc6_vlan_port.h"
#include "mcast6_platform/engine.h"

namespace mcast6::kernel {

// For tables that refuse to write over a record.
template <class Record, uint32_t (*kRemove)(const Record*), uint32_t (*kWrite)(const Record*)>
uint32_t removeAndWrite(const Record* record) {
    const uint32_t code = kRemove(record);
    return code != MCAST6_DB_SUCCESS ? code : kWrite(record);
}

// The router port tables' updates take a setter that they do not use.
template <class Record, auto kUpdate>
uint32_t restampRoute(const Record* record) {
    return kUpdate(record, nullptr);
}

inline constexpr TableOperations<L2McBdEnableEntry> kL2Mc6BdEnable{
    .databaseName = "l2mc6_bd_enable",
    .read = MCAST6_DB_ReadL2McBdEnable,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2McBdEnable,
    .restamp = MCAST6_DB_UpdateL2McBdEnableSmoothVersion,
    .remove = MCAST6_DB_DeleteL2McBdEnable,
    .merge = mergeMembers<L2McBdEnableEntry, &L2McBdEnableEntry::l2mcEnable, &L2McBdEnableEntry::mldVersion>,
    .smoothVersion = &L2McBdEnableEntry::smoothVersion,
    .vrId = &L2McBdEnableEntry::keyId1,
    .openAll = MCAST6_DB_CreateL2McBdEnableIter,
    .step = MCAST6_DB_GetL2McBdEnableEntry,
    .release = MCAST6_DB_ReleaseL2McBdEnableIterator,
};

inline constexpr TableOperations<MldGlobalEntry> kL2Mc6GlobalEnable{
    .databaseName = "l2mc6_global_enable",
    .read = MCAST6_DB_ReadMldGlobal,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteMldGlobal,
    .restamp = MCAST6_DB_UpdateMldGlobalSmoothVersion,
    .replace = removeAndWrite<MldGlobalEntry, MCAST6_DB_RemoveMldGlobal, MCAST6_DB_WriteMldGlobal>,
    .remove = MCAST6_DB_RemoveMldGlobal,
    .merge = mergeMembers<MldGlobalEntry, &MldGlobalEntry::cfgWord1>,
    .smoothVersion = &MldGlobalEntry::smoothVersion,
    .vrId = &MldGlobalEntry::keyId1,
    .openAll = MCAST6_DB_CreateMldGlbCfgIter,
    .step = MCAST6_DB_GetMldGlbEntry,
    .release = MCAST6_DB_ReleaseMldGlbCfgIter,
};

// The table has no operation that re-stamps; a write does the same.
inline constexpr TableOperations<L2VlanEnableEntry> kL2Mc6VlanEnable{
    .databaseName = "l2mc6_vlan_enable",
    .read = MCAST6_DB_ReadL2VlanEnableCfg,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2VlanEnableCfg,
    .restamp = MCAST6_DB_WriteL2VlanEnableCfg,
    .remove = MCAST6_DB_DelL2VlanEnableCfg,
    .merge = mergeMembers<L2VlanEnableEntry, &L2VlanEnableEntry::l2mcEnable, kVlanMldVersion, kVlanQuerier>,
    .smoothVersion = kVlanSmoothVersion,
    .vrId = &L2VlanEnableEntry::keyId1,
    .openAll = MCAST6_DB_CreateMldVlanCfgIter,
    .step = MCAST6_DB_GetMldVlanEntry,
    .release = MCAST6_DB_ReleaseMldVlanIter,
};

// The update renews the smooth time as well, which the table's smooth operation leaves.
inline constexpr TableOperations<VlanPortEntry> kL2Mc6VlanPort{
    .databaseName = "l2mc6_vlan_port",
    .read = MCAST6_DB_ReadVlanPort,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteVlanPort,
    .restamp = MCAST6_DB_UpdateVlanPort,
    .replace = removeAndWrite<VlanPortEntry, MCAST6_DB_RemoveVlanPort, MCAST6_DB_WriteVlanPort>,
    .remove = MCAST6_DB_RemoveVlanPort,
    .merge = mergeMembers<VlanPortEntry, &VlanPortEntry::portAttr, &VlanPortEntry::cfgWord1>,
    .smoothVersion = &VlanPortEntry::smoothVersion,
    .vrId = &VlanPortEntry::keyId1,
    .openAll = MCAST6_DB_CreateVlanPortIter,
    .step = MCAST6_DB_GetVlanPortEntry,
    .release = MCAST6_DB_ReleaseVlanPortIter,
};

inline constexpr TableOperations<L2McBdRtEntry> kL2Mc6BdUntagRt{
    .databaseName = "l2mc6_bd_untag_rt",
    .read = MCAST6_DB_ReadL2McBdUntagRt,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2McBdUntagRt,
    .restamp = restampRoute<L2McBdRtEntry, MCAST6_DB_UpdateL2McBdUntagRtSmoothVersion>,
    .remove = MCAST6_DB_DeleteL2McBdUntagRt,
    .merge = mergeMembers<L2McBdRtEntry, &L2McBdRtEntry::rtAttr>,
    .smoothVersion = &L2McBdRtEntry::smoothVersion,
    .vrId = &L2McBdRtEntry::vrId,
    .openAll = MCAST6_DB_CreateL2McBdUntagRtIter,
    .step = MCAST6_DB_GetL2McBdUntagRtEntry,
    .release = MCAST6_DB_ReleaseL2McBdUntagRtIterator,
};

inline constexpr TableOperations<L2McBdRtEntry> kL2Mc6BdTagRt{
    .databaseName = "l2mc6_bd_tag_rt",
    .read = MCAST6_DB_ReadL2McBdTagRt,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2McBdTagRt,
    .restamp = restampRoute<L2McBdRtEntry, MCAST6_DB_UpdateL2McBdTagRtSmoothVersion>,
    .remove = MCAST6_DB_DeleteL2McBdTagRt,
    .merge = mergeMembers<L2McBdRtEntry, &L2McBdRtEntry::rtAttr>,
    .smoothVersion = &L2McBdRtEntry::smoothVersion,
    .vrId = &L2McBdRtEntry::vrId,
    .openAll = MCAST6_DB_CreateL2McBdTagRtIter,
    .step = MCAST6_DB_GetL2McBdTagRtEntry,
    .release = MCAST6_DB_ReleaseL2McBdTagRtIterator,
};

inline constexpr TableOperations<L2McBdRtVxlanEntry> kL2Mc6BdRtVxlanElb{
    .databaseName = "l2mc6_bd_rt_vxlan_elb",
    .read = MCAST6_DB_ReadL2Mc6BdRtVxlanElb,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2Mc6BdRtVxlanElb,
    .restamp = restampRoute<L2McBdRtVxlanEntry, MCAST6_DB_UpdateL2Mc6BdRtVxlanElbSmoothVersion>,
    .remove = MCAST6_DB_DeleteL2Mc6BdRtVxlanElb,
    .merge = mergeMembers<L2McBdRtVxlanEntry, &L2McBdRtVxlanEntry::rtAttr>,
    .smoothVersion = &L2McBdRtVxlanEntry::smoothVersion,
    .appSrcPid = &L2McBdRtVxlanEntry::appSrcPid,
    .vrId = &L2McBdRtVxlanEntry::vrId,
    .openAll = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIter,
    .step = MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry,
    .release = MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator,
};

inline constexpr TableOperations<L2Mc6MfibEntry> kL2Mc6BdMfib{
    .databaseName = "l2mc6_bd_mfib",
    .read = MCAST6_DB_ReadL2BdMfib6Fast,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteL2BdMfib6,
    .restamp = MCAST6_DB_UpdateL2BdMfib6SmoothVersion,
    .remove = MCAST6_DB_DeleteL2BdMfib6,
    .merge = mergeMembers<L2Mc6MfibEntry>,
    .smoothVersion = &L2Mc6MfibEntry::smoothVersion,
    .appSrcPid = &L2Mc6MfibEntry::appSrcPid,
    .vrId = &L2Mc6MfibEntry::vrId,
    .openAll = MCAST6_DB_CreateL2BdMfib6Iter,
    .step = MCAST6_DB_GetL2BdMfib6Entry,
    .release = MCAST6_DB_ReleaseL2BdMfib6Iterator,
};

inline constexpr TableOperations<L2Mc6MfibEntry> kL2Mc6VlanMfib{
    .databaseName = "l2mc6_vlan_mfib",
    .read = MCAST6_DB_ReadVlanMfib6Fast,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteVlanMfib6,
    .restamp = MCAST6_DB_UpdateVlanMfib6SmoothVersion,
    .remove = MCAST6_DB_DeleteVlanMfib6,
    .merge = mergeMembers<L2Mc6MfibEntry, &L2Mc6MfibEntry::groupMaskLen, &L2Mc6MfibEntry::sourceMaskLen>,
    .smoothVersion = &L2Mc6MfibEntry::smoothVersion,
    .appSrcPid = &L2Mc6MfibEntry::appSrcPid,
    .vrId = &L2Mc6MfibEntry::vrId,
    .openAll = MCAST6_DB_CreateVlanMfib6Iter,
    .step = MCAST6_DB_GetVlanMfib6Entry,
    .release = MCAST6_DB_ReleaseVlanMfib6Iterator,
};

inline constexpr TableOperations<L2Elb6Entry> kL2Mc6Elb{
    .databaseName = "l2mc6_elb",
    .read = MCAST6_DB_ReadL2Elb6,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2Elb6,
    .restamp = MCAST6_DB_UpdateL2Elb6SmoothVersion,
    .remove = MCAST6_DB_DeleteL2Elb6,
    .merge = mergeMembers<L2Elb6Entry, &L2Elb6Entry::pathFlags, &L2Elb6Entry::elbByte1>,
    .smoothVersion = &L2Elb6Entry::smoothVersion,
    .appSrcPid = &L2Elb6Entry::appSrcPid,
    .vrId = &L2Elb6Entry::vrId,
    .openAll = MCAST6_DB_CreateL2Elb6Iter,
    .step = MCAST6_DB_GetL2Elb6Entry,
    .release = MCAST6_DB_ReleaseL2Elb6Iterator,
};

inline constexpr TableOperations<L2Elb6Entry> kL2Mc6BdUntagElb{
    .databaseName = "l2mc6_bd_untag_elb",
    .read = MCAST6_DB_ReadL2McBdUntagElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2McBdUntagElb,
    .restamp = MCAST6_DB_UpdateL2McBdUntagElbSmoothVersion,
    .remove = MCAST6_DB_DeleteL2McBdUntagElb,
    .merge = mergeMembers<L2Elb6Entry, &L2Elb6Entry::pathFlags, &L2Elb6Entry::elbByte1>,
    .smoothVersion = &L2Elb6Entry::smoothVersion,
    .appSrcPid = &L2Elb6Entry::appSrcPid,
    .vrId = &L2Elb6Entry::vrId,
    .openAll = MCAST6_DB_CreateL2BdUntagElbIter,
    .step = MCAST6_DB_GetL2McBdUntagElbEntry,
    .release = MCAST6_DB_ReleaseL2BdUntagElbIter,
};

inline constexpr TableOperations<L2Elb6Entry> kL2Mc6BdTagElb{
    .databaseName = "l2mc6_bd_tag_elb",
    .read = MCAST6_DB_ReadL2McBdTagElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2McBdTagElb,
    .restamp = MCAST6_DB_UpdateL2McBdTagElbSmoothVersion,
    .remove = MCAST6_DB_DeleteL2McBdTagElb,
    .merge = mergeMembers<L2Elb6Entry, &L2Elb6Entry::pathFlags, &L2Elb6Entry::elbByte1>,
    .smoothVersion = &L2Elb6Entry::smoothVersion,
    .appSrcPid = &L2Elb6Entry::appSrcPid,
    .vrId = &L2Elb6Entry::vrId,
    .openAll = MCAST6_DB_CreateL2BdTagElbIter,
    .step = MCAST6_DB_GetL2McBdTagElbEntry,
    .release = MCAST6_DB_ReleaseL2BdTagElbIter,
};

inline constexpr TableOperations<L2Elb6Entry> kL2Mc6BdVxlanElb{
    .databaseName = "l2mc6_bd_vxlan_elb",
    .read = MCAST6_DB_ReadL2Mc6BdVxlanElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL2Mc6BdVxlanElb,
    .restamp = MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion,
    .remove = MCAST6_DB_DeleteL2Mc6BdVxlanElb,
    .merge = mergeMembers<L2Elb6Entry, &L2Elb6Entry::pathFlags, &L2Elb6Entry::vxlanFlag, &L2Elb6Entry::outIfIndex,
                          &L2Elb6Entry::vxlanWord2, &L2Elb6Entry::vxlanWords3to6>,
    .smoothVersion = &L2Elb6Entry::smoothVersion,
    .appSrcPid = &L2Elb6Entry::appSrcPid,
    .vrId = &L2Elb6Entry::vrId,
    .openAll = MCAST6_DB_CreateL2Mc6BdVxlanElbIter,
    .step = MCAST6_DB_GetL2Mc6BdVxlanElbEntry,
    .release = MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator,
};

}  // namespace mcast6::kernel
