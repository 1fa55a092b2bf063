// l2mc6_vlan_mfib: its names, numbers and messages.
#pragma once

#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "tests/l2/l2_mfib_family.h"

namespace mcast6::tests::l2_mfib {

inline const MfibTable kVlanMfib{
    .name = "l2mc6_vlan_mfib",
    .domain = "vlanId",
    .sortedKey = "vlanId_local_key",
    .rowSize = 128,
    .hasMaskLengths = true,
    .domainType = 0,
    .number = 8,
    .sortedNumber = 8,
    .conflictNumber = 8,
    .created = 0,
    .released = 1,
    .written = 3,
    .writeFailed = 4,
    .removed = 5,
    .removeFailed = 6,
    .pid = &g_l2McVlanMfib6Pid,
    .keptObject = &g_l2Mfib6DbReadObjCache,
    .functions =
        {
            .set = {"SetVlanMfib6", MCAST6_DB_SetVlanMfib6},
            .get = {"GetVlanMfib6", MCAST6_DB_GetVlanMfib6},
            .getContexts = {"GetVlanMfib6SvcCtx", MCAST6_DB_GetVlanMfib6SvcCtx},
            .getAddresses = {"GetVlanMfib6Addr", MCAST6_DB_GetVlanMfib6Addr},
            .getItem = {"GetVlanMfib6Item", MCAST6_DB_GetVlanMfib6Item},
            .createObject = {"CreateL2Mfib6Object", MCAST6_DB_CreateL2Mfib6Object},
            .releaseObject = {"ReleaseL2Mfib6Object", MCAST6_DB_ReleaseL2Mfib6Object},
            .readEntry = {"ReadVlanMfib6Entry", MCAST6_DB_ReadVlanMfib6Entry},
            .read = {"ReadVlanMfib6", MCAST6_DB_ReadVlanMfib6},
            .createCache = {"CreateL2Mfib6ObjectCache", MCAST6_DB_CreateL2Mfib6ObjectCache},
            .readFast = {"ReadVlanMfib6Fast", MCAST6_DB_ReadVlanMfib6Fast},
            .write = {"WriteVlanMfib6", MCAST6_DB_WriteVlanMfib6},
            .updateSmoothVersion = {"UpdateVlanMfib6SmoothVersion", MCAST6_DB_UpdateVlanMfib6SmoothVersion},
            .remove = {"DeleteVlanMfib6", MCAST6_DB_DeleteVlanMfib6},
            .getEntry = {"GetVlanMfib6Entry", MCAST6_DB_GetVlanMfib6Entry},
            .getNext = {"GetNextVlanMfib6", MCAST6_DB_GetNextVlanMfib6},
            .createIter = {"CreateVlanMfib6Iter", MCAST6_DB_CreateVlanMfib6Iter},
            .createIterByGroup = {"CreateVlanMfib6IterByGrpAddr", MCAST6_DB_CreateVlanMfib6IterByGrpAddr},
            .createIterByDomain = {"CreateVlanMfib6IterByVlanId", MCAST6_DB_CreateVlanMfib6IterByVlanId},
            .createSortedIter = {"VlanMfib6_ScanGetVlanIterSorted", MCAST6_DB_VlanMfib6_ScanGetVlanIterSorted},
            .createIterByErrCode = {"CreateVlanMfib6IterByErrCode", MCAST6_DB_CreateVlanMfib6IterByErrCode},
            .releaseIter = {"ReleaseVlanMfib6Iterator", MCAST6_DB_ReleaseVlanMfib6Iterator},
            .count = {"GetVlanMfib6Count", MCAST6_DB_GetVlanMfib6Count},
            .countByDomain = {"VlanMfib6CountByVlanId", MCAST6_DB_VlanMfib6CountByVlanId},
            .countConflicts = {"GetL2Mfib6HashConflictTotalNum", MCAST6_DB_GetL2Mfib6HashConflictTotalNum},
            .sourcePid = {"GetVlanMfib6SourcePid", MCAST6_DB_GetVlanMfib6SourcePid},
            .setSourcePid = {"SetVlanMfib6SourcePid", MCAST6_DB_SetVlanMfib6SourcePid},
        },
    .messages =
        {
            .createFailed = forwarding("[MCAST6 DB] l2 mfib6 create db object failed, ret:%u.", code),
            .itemFailed = forwarding("[MCAST6 DB] get vlan mfib item fail, ret:%u.", code),
            .readNull = forwarding("[MCAST6 DB] read vlan mfib fail, vlanMfib6Entry is null."),
            .readCreateFailed = forwarding("[MCAST6 DB] read vlan mfib fail, create db object failed."),
            .readFailed = forwarding("[MCAST6 DB] read vlan mfib6 object db failed, ret:%u.", code),
            .cacheCreateFailed = forwarding("[MCAST6 DB] failed to create l2mfib cache object, ret:%d", code),
            .cacheResetFailed = forwarding("[MCAST6 DB] failed to reset l2mfib cache object, ret:%d", code),
            .fastReadFailed = forwarding("[MCAST6 DB] read vlan mfib6 perf opt failed, create db object failed."),
            .writeNull = forwarding("[MCAST6 DB] write vlan mfib fail, vlanMfib6Entry is null."),
            .writeCreateFailed = forwarding("[MCAST6 DB] write vlan mfib fail, create db object failed."),
            .setAllFailed = forwarding("[MCAST6 DB] write vlan mfib fail, set_all_fields failed, ret:%u.", code),
            .writeFailed = forwarding("[MCAST6 DB] write vlan mfib fail, release object fail, ret:%u.", code),
            .updateNull = forwarding("[MCAST6 DB] update vlan mfib smooth version fail, vlanMfib6Entry is null."),
            .updateCreateFailed =
                forwarding("[MCAST6 DB] update vlan mfib smooth version fail, create db object failed."),
            .settersFailed = forwarding("[MCAST6 DB] set smooth version when update fail, ret:%u.", code),
            .updateFailed =
                forwarding("[MCAST6 DB] update vlan mfib smooth version, release object fail, ret:%u.", code),
            .removeNull = forwarding("[MCAST6 DB] delete vlan mfib fail, vlanMfib6Entry is null."),
            .removeCreateFailed = forwarding("[MCAST6 DB] delete vlan mfib fail, create db object failed."),
            .removeFailed = forwarding("[MCAST6 DB] delete vlan mfib fail, release object fail, ret:%u.", code),
            .nextFailed = forwarding("[MCAST6 DB] get vlan mfib fail, db root iterator next fail, ret:%d.", code),
            .entryFailed = forwarding("[MCAST6 DB] delete vlan mfib fail, read obj fail, ret:%d.", code),
            .nextItemFailed = forwarding("[MCAST6 DB] get vlan mfib6,, root iterator next fail, ret:%u.", code),
            .iterCreateFailed = forwarding("[MCAST6 DB] create vlan mfib iter fail, create obj failed."),
            .iterRootIterFailed =
                forwarding("[MCAST6 DB] create vlan mfib iter fail, create root iter failed, ret:%d.", code),
            .iterPropertyFailed = forwarding("[MCAST6 DB] set VlanMfib6 root iterator property fail, ret:%d.", code),
            .iterAllocationFailed = forwarding("[MCAST6 DB] create vlan mfib iter fail, malloc db res failed."),
            .byGroupPropertyFailed =
                forwarding("[MCAST6 DB] set VlanMfib6 root iterator by group addr property fail, ret:%d.", code),
            .byGroupAllocationFailed = forwarding("[MCAST6 DB] CreateL2vlan_mfib6 malloc db res failed."),
            .byDomainPropertyFailed =
                forwarding("[MCAST6 DB] set VlanMfib6 root iterator by vlanId property fail, ret:%d.", code),
            .byDomainAllocationFailed = forwarding("[MCAST6 DB] CreateL2vlanmfib6IterByVlanId malloc db res failed."),
            .sortedPropertyFailed =
                forwarding("[MCAST6 DB] set VlanMfib6 root iterator by filter property fail, ret:%u.", code),
            .sortedAllocationFailed = forwarding("[MCAST6 DB] L2mcMfib ScanGetVlanIterSorted malloc db res failed."),
            .byErrCodePropertyFailed =
                forwarding("[MCAST6 DB] set VlanMfib6 root iterator by errCode property fail, ret:%d.", code),
            .countByDomainFailed = forwarding("[MCAST6 DB] db count by valnId failed, ret:%d.", code),
            .conflictsFailed = forwarding("[MCAST6 DB] db count by valnId failed, ret:%u.", code),
            .conflictsAbsent = forwarding("[MCAST6 DB] db count by valnId failed, ret:%u.", 0u),
        },
};

}  // namespace mcast6::tests::l2_mfib
