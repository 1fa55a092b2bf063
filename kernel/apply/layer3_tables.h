// The layer-3 tables that routes go to.
#pragma once

#include "kernel/apply/forwarding_process.h"
#include "kernel/apply/table_operations.h"
#include "mcast6_db/l3mc6_bd_tnl_elb.h"
#include "mcast6_db/l3mc6_bd_untag_elb.h"
#include "mcast6_db/l3mc6_elb.h"
#include "mcast6_db/l3mc6_glbcfg.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "mcast6_db/l3mc6_register_elb.h"
#include "mcast6_db/l3mc6_vlan_elb.h"
#include "mcast6_platform/engine.h"

namespace mcast6::kernel {

// The library stamps the version into the record that it is given.
inline uint32_t writeGlobalConfiguration(const L3Mc6GlbCfgEntry* record) {
    L3Mc6GlbCfgEntry stamped = *record;
    return MCAST6_DB_WriteGlbCfg(&stamped);
}

Mcast6DbRes* openVlanMembers(const L3Mc6ElbEntryExt* member);

inline constexpr TableOperations<L3Mc6MfibEntry> kL3Mc6Mfib{
    .databaseName = "l3mc6_mfib",
    .read = MCAST6_DB_ReadL3MfibFast,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL3Mfib,
    .restamp = MCAST6_DB_UpdateL3MfibSmoothVersion,
    .remove = MCAST6_DB_DeleteL3Mfib,
    .merge = mergeMembers<L3Mc6MfibEntry, &L3Mc6MfibEntry::inIfIndex, &L3Mc6MfibEntry::regIfIndex>,
    .smoothVersion = &L3Mc6MfibEntry::smoothVersion,
    .appSrcPid = &L3Mc6MfibEntry::appSrcPid,
    .vrId = &L3Mc6MfibEntry::vrId,
    .openAll = MCAST6_DB_CreateL3MfibIter,
    .step = MCAST6_DB_GetL3MfibEntry,
    .release = MCAST6_DB_ReleaseL3MfibIter,
};

inline constexpr TableOperations<L3Mc6GlbCfgEntry> kL3Mc6GlbCfg{
    .databaseName = "l3mc6_glbcfg",
    .read = MCAST6_DB_ReadGlbCfg,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = writeGlobalConfiguration,
    .restamp = MCAST6_DB_UpdateGlbCfgSmoothVersion,
    .remove = MCAST6_DB_DeleteGlbCfg,
    .merge = mergeMembers<L3Mc6GlbCfgEntry, &L3Mc6GlbCfgEntry::cfgWord3>,
    .smoothVersion = &L3Mc6GlbCfgEntry::smoothVersion,
    .vrId = &L3Mc6GlbCfgEntry::cfgKeyA,
    .openAll = MCAST6_DB_CreateGlbCfgIter,
    .step = MCAST6_DB_GetGlbCfgEntry,
    .release = MCAST6_DB_ReleaseGlbCfgIterator,
};

// The tables of these three have no operation that re-stamps; a write of the same record renews its smooth time.
inline constexpr TableOperations<L3Mc6RegOifEntry> kL3Mc6RegisterElb{
    .databaseName = "l3mc6_register_elb",
    .read = MCAST6_DB_ReadRegistOif,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteRegistOif,
    .restamp = MCAST6_DB_WriteRegistOif,
    .remove = MCAST6_DB_DeleteRegistOif,
    .merge = mergeMembers<L3Mc6RegOifEntry, &L3Mc6RegOifEntry::outIfIndex>,
    .vrId = &L3Mc6RegOifEntry::vrId,
    .openAll = MCAST6_DB_CreateL3mcRegOifAllIterator,
    .step = MCAST6_DB_GetL3mcRegOifEntry,
    .release = MCAST6_DB_ReleaseL3mcRegOifIterator,
};

inline constexpr TableOperations<L3Mc6ElbEntry> kL3Mc6Elb{
    .databaseName = "l3mc6_elb",
    .read = MCAST6_DB_ReadL3ElbFast,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = writeOutgoingInterface,
    .restamp = writeOutgoingInterface,
    .remove = removeOutgoingInterface,
    .merge = mergeMembers<L3Mc6ElbEntry>,
    .vrId = &L3Mc6ElbEntry::vrId,
    .openAll = MCAST6_DB_CreateL3ElbAllIterator,
    .step = MCAST6_DB_GetL3ElbEntry,
    .release = MCAST6_DB_ReleaseL3ElbIterator,
    .openMembers = MCAST6_DB_CreateL3ElbMfibIteratorExt,
};

inline constexpr TableOperations<L3Mc6ElbEntryExt> kL3Mc6VlanElb{
    .databaseName = "l3mc6_vlan_elb",
    .read = MCAST6_DB_ReadVlanElb,
    .absentCode = MCAST6_DB_NO_RECORD,
    .write = MCAST6_DB_WriteVlanElb,
    .restamp = MCAST6_DB_WriteVlanElb,
    .remove = MCAST6_DB_RemoveVlanElb,
    .merge = mergeMembers<L3Mc6ElbEntryExt>,
    .vrId = &L3Mc6ElbEntryExt::vrId,
    .openAll = MCAST6_DB_CreateVlanElbAllIterator,
    .step = MCAST6_DB_GetVlanElbEntry,
    .release = MCAST6_DB_ReleaseVlanElbIterator,
    .openMembers = openVlanMembers,
};

inline constexpr TableOperations<L3BdElb6Entry> kL3Mc6BdUntagElb{
    .databaseName = "l3mc6_bd_untag_elb",
    .read = MCAST6_DB_ReadL3McBdUntagElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL3McBdUntagElb,
    .restamp = MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion,
    .remove = MCAST6_DB_DeleteL3McBdUntagElb,
    .merge = mergeMembers<L3BdElb6Entry>,
    .smoothVersion = &L3BdElb6Entry::smoothVersion,
    .appSrcPid = &L3BdElb6Entry::appSrcPid,
    .vrId = &L3BdElb6Entry::vrId,
    .openAll = MCAST6_DB_CreateL3McBdUntagElbAllIter,
    .step = MCAST6_DB_GetL3McBdUntagElbEntry,
    .release = MCAST6_DB_ReleaseL3McBdUntagElbIterator,
};

inline constexpr TableOperations<L3BdElb6Entry> kL3Mc6BdTnlElb{
    .databaseName = "l3mc6_bd_tnl_elb",
    .read = MCAST6_DB_ReadL3McBdTnlElb,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL3McBdTnlElb,
    .restamp = MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion,
    .remove = MCAST6_DB_DeleteL3McBdTnlElb,
    .merge = mergeMembers<L3BdElb6Entry, &L3BdElb6Entry::bdElbAttr5, &L3BdElb6Entry::tnlAttr1, &L3BdElb6Entry::tnlAttr4,
                          &L3BdElb6Entry::tnlAttr5>,
    .smoothVersion = &L3BdElb6Entry::smoothVersion,
    .appSrcPid = &L3BdElb6Entry::appSrcPid,
    .vrId = &L3BdElb6Entry::vrId,
    .openAll = MCAST6_DB_CreateL3McBdTnlElbAllIter,
    .step = MCAST6_DB_GetL3McBdTnlElbEntry,
    .release = MCAST6_DB_ReleaseL3McBdTnlElbIterator,
};

}  // namespace mcast6::kernel
