// l2mc6_bd_mfib: its names, numbers and messages.
#pragma once

#include "mcast6_db/l2mc6_bd_mfib.h"
#include "tests/l2/l2_mfib_family.h"

namespace mcast6::tests::l2_mfib {

inline const MfibTable kBdMfib{
    .name = "l2mc6_bd_mfib",
    .domain = "bdId",
    .sortedKey = "bdId_local_key",
    .rowSize = 126,
    .hasMaskLengths = false,
    .domainType = 1,
    .number = 27,
    .sortedNumber = 8,    // the other table's number
    .conflictNumber = 8,  // the other table's number
    .created = 473,
    .released = 474,
    .written = 3,
    .writeFailed = 208,
    .removed = 209,
    .removeFailed = 210,
    .pid = &g_l2BdMfib6Pid,
    .keptObject = &g_l2Mfib6BdDbReadObjCache,
    .functions =
        {
            .set = {"SetL2BdMfib6", MCAST6_DB_SetL2BdMfib6},
            .get = {"GetL2BdMfib6", MCAST6_DB_GetL2BdMfib6},
            .getContexts = {"GetL2mcBdMfib6SvcCtx", MCAST6_DB_GetL2mcBdMfib6SvcCtx},
            .getAddresses = {"GetL2mcBdMfib6Addr", MCAST6_DB_GetL2mcBdMfib6Addr},
            .getItem = {"GetL2BdMfib6Item", MCAST6_DB_GetL2BdMfib6Item},
            .createObject = {"CreateL2BdMfib6Object", MCAST6_DB_CreateL2BdMfib6Object},
            .releaseObject = {"ReleaseL2BdMfib6Object", MCAST6_DB_ReleaseL2BdMfib6Object},
            .readEntry = {"ReadL2BdMfib6Entry", MCAST6_DB_ReadL2BdMfib6Entry},
            .read = {"ReadL2BdMfib6", MCAST6_DB_ReadL2BdMfib6},
            .createCache = {"CreateL2BdMfib6ObjectCache", MCAST6_DB_CreateL2BdMfib6ObjectCache},
            .readFast = {"ReadL2BdMfib6Fast", MCAST6_DB_ReadL2BdMfib6Fast},
            .write = {"WriteL2BdMfib6", MCAST6_DB_WriteL2BdMfib6},
            .updateSmoothVersion = {"UpdateL2BdMfib6SmoothVersion", MCAST6_DB_UpdateL2BdMfib6SmoothVersion},
            .remove = {"DeleteL2BdMfib6", MCAST6_DB_DeleteL2BdMfib6},
            .getEntry = {"GetL2BdMfib6Entry", MCAST6_DB_GetL2BdMfib6Entry},
            .getNext = {"GetNextL2BdMfib6", MCAST6_DB_GetNextL2BdMfib6},
            .createIter = {"CreateL2BdMfib6Iter", MCAST6_DB_CreateL2BdMfib6Iter},
            .createIterByGroup = {"Createl2BdMfib6IterByGrpAddr", MCAST6_DB_Createl2BdMfib6IterByGrpAddr},
            .createIterByDomain = {"CreateL2BdMfib6IterByBdId", MCAST6_DB_CreateL2BdMfib6IterByBdId},
            .createSortedIter = {"l2BdMfib6_ScanGetBdIterSorted", MCAST6_DB_l2BdMfib6_ScanGetBdIterSorted},
            .createIterByErrCode = {"CreateL2BdMfib6IterByErrCode", MCAST6_DB_CreateL2BdMfib6IterByErrCode},
            .releaseIter = {"ReleaseL2BdMfib6Iterator", MCAST6_DB_ReleaseL2BdMfib6Iterator},
            .count = {"GetL2BdMfib6Count", MCAST6_DB_GetL2BdMfib6Count},
            .countByDomain = {"L2BdMfib6CountByBdId", MCAST6_DB_L2BdMfib6CountByBdId},
            .countConflicts = {"GetL2BdMfib6HashConflictTotalNum", MCAST6_DB_GetL2BdMfib6HashConflictTotalNum},
            .sourcePid = {"GetL2BdMfib6SourcePid", MCAST6_DB_GetL2BdMfib6SourcePid},
            .setSourcePid = {"SetL2BdMfib6SourcePid", MCAST6_DB_SetL2BdMfib6SourcePid},
        },
    .messages =
        {
            .createFailed = forwarding("[MCAST6 DB] l2 mfib6 create db object failed, ret:%u.", code),
            .itemFailed = forwarding("[MCAST6 DB] get vlan mfib item fail, ret:%u.", code),
            .readNull = forwarding("[MCAST6 DB] read bd mfib fail, bdMfib6Entry is null."),
            .readCreateFailed = forwarding("[MCAST6 DB] read bd mfib fail, create db object failed."),
            .readFailed = forwarding("[MCAST6 DB] read bd mfib6 object db failed, ret:%u.", code),
            .cacheCreateFailed = forwarding("[MCAST6 DB] failed to create l2 bd mfib cache object, ret:%d", code),
            .cacheResetFailed = forwarding("[MCAST6 DB] failed to reset l2 bd mfib cache object, ret:%d", code),
            .fastReadFailed = forwarding("[MCAST6 DB] read bd mfib6 perf opt failed, create db object failed."),
            .writeNull = forwarding("[MCAST6 DB] write bd mfib fail, l2BdMfib6Entry is null."),
            .writeCreateFailed = forwarding("[MCAST6 DB] write bd mfib fail, create db object failed."),
            .setAllFailed = forwarding("[MCAST6 DB] write bd mfib fail, set_all_fields failed, ret:%u.", code),
            .writeFailed = forwarding("[MCAST6 DB] write bd mfib fail, release object fail, ret:%u.", code),
            .updateNull = forwarding("[MCAST6 DB] update bd mfib smooth version fail, l2BdMfib6Entry is null."),
            .updateCreateFailed =
                forwarding("[MCAST6 DB] update bd mfib smooth version fail, create db object failed."),
            .settersFailed = forwarding("[MCAST6 DB] set smooth version when update fail, ret:%u.", code),
            .updateFailed = forwarding("[MCAST6 DB] update bd mfib smooth version, release object fail, ret:%u.", code),
            .removeNull = forwarding("[MCAST6 DB] delete bd mfib fail, l2BdMfib6Entry is null."),
            .removeCreateFailed = forwarding("[MCAST6 DB] delete bd mfib fail, create db object failed."),
            .removeFailed = forwarding("[MCAST6 DB] delete bd mfib fail, release object fail, ret:%u.", code),
            .nextFailed = forwarding("[MCAST6 DB] get bd mfib fail, db root iterator next fail, ret:%u.", code),
            .entryFailed = forwarding("[MCAST6 DB] delete bd mfib fail, read obj fail, ret:%u.", code),
            .nextItemFailed = forwarding("[MCAST6 DB] get l2bd mfib6,, root iterator next fail, ret:%u.", code),
            .iterCreateFailed = forwarding("[MCAST6 DB] create l2bd mfib iter fail, create obj failed."),
            .iterRootIterFailed =
                forwarding("[MCAST6 DB] create bd mfib iter fail, create root iter failed, ret:%d.", code),
            .iterPropertyFailed = forwarding("[MCAST6 DB] set VlanMfib6 root iterator property fail, ret:%d.", code),
            .iterAllocationFailed = forwarding("[MCAST6 DB] create bd mfib iter fail, malloc db res failed."),
            .byGroupPropertyFailed =
                forwarding("[MCAST6 DB] set BdMfib6 root iterator by group addr property fail, ret:%d.", code),
            .byGroupAllocationFailed = forwarding("[MCAST6 DB] CreateL2bd_mfib6 malloc db res failed."),
            .byDomainPropertyFailed =
                forwarding("[MCAST6 DB] set VlanMfib6 root iterator by vlanId property fail, ret:%d.", code),
            .byDomainAllocationFailed = forwarding("[MCAST6 DB] CreateL2vlanmfib6IterByBdId malloc db res failed."),
            .sortedPropertyFailed =
                forwarding("[MCAST6 DB] set BdMfib6 root iterator by filter property fail, ret:%u.", code),
            .sortedAllocationFailed = forwarding("[MCAST6 DB] L2mcMfib ScanGetBdIterSorted malloc db res failed."),
            .byErrCodePropertyFailed =
                forwarding("[MCAST6 DB] set L2BdMfib6 root iterator by errCode property fail, ret:%d.", code),
            .countByDomainFailed = forwarding("[MCAST6 DB] db count by bd failed, ret:%d.", code),
            .conflictsFailed = forwarding("[MCAST6 DB] db count by bdId failed, ret:%u.", code),
            .conflictsAbsent = forwarding("[MCAST6 DB] db count by bdId failed, ret:%u.", 0u),
        },
};

}  // namespace mcast6::tests::l2_mfib
