/* Sizes and offsets of the types in the headers, in C and in C++. Hosts are compiled against them: a number here
 * changes only together with the library's soname. */
#include <assert.h>
#include <stddef.h>

#include "mcast6_db.h"

/* types.h, context.h, iterator.h */
static_assert(sizeof(Mcast6Ipv6Addr) == 16, "");
static_assert(offsetof(Mcast6Ipv6Addr, word) == 0, "");
static_assert(sizeof(Mcast6DbHandle) == 8, "");
static_assert(sizeof(Mcast6DbKeyDesc) == 16, "");
static_assert(offsetof(Mcast6DbKeyDesc, keyWord) == 0, "");
static_assert(offsetof(Mcast6DbKeyDesc, reserved) == 4, "");
static_assert(sizeof(Mcast6DbRes) == 16, "");
static_assert(offsetof(Mcast6DbRes, object) == 0, "");
static_assert(offsetof(Mcast6DbRes, rootIter) == 8, "");
static_assert(sizeof(Mcast6DbIterFuncs) == 16, "");
static_assert(offsetof(Mcast6DbIterFuncs, create) == 0, "");
static_assert(offsetof(Mcast6DbIterFuncs, release) == 8, "");
static_assert(sizeof(Mcast6DbCacheFuncs) == 16, "");
static_assert(offsetof(Mcast6DbCacheFuncs, create) == 0, "");
static_assert(offsetof(Mcast6DbCacheFuncs, reset) == 8, "");
static_assert(sizeof(Mcast6DbScanHandle) == 24, "");
static_assert(offsetof(Mcast6DbScanHandle, inUse) == 0, "");
static_assert(offsetof(Mcast6DbScanHandle, object) == 8, "");
static_assert(offsetof(Mcast6DbScanHandle, rootIter) == 16, "");
static_assert(sizeof(Mcast6DbLogFunc) == 8, "");
static_assert(sizeof(Mcast6DbContext) == 8, "");
static_assert(offsetof(Mcast6DbContext, log) == 0, "");
static_assert(sizeof(Mcast6DbMemCallback) == 16, "");
static_assert(offsetof(Mcast6DbMemCallback, alloc) == 0, "");
static_assert(offsetof(Mcast6DbMemCallback, free) == 8, "");
static_assert(sizeof(g_mcast6DbErrStat) == 33 * 10 * 8, "");
static_assert(sizeof(g_mcast6DbErrStat[0]) == 10 * 8, "");
static_assert(sizeof(g_mcast6DbMemCallback) == 16, "");
static_assert(sizeof(g_mcast6DbContext) == 8, "");
static_assert(MCAST6_DB_SUCCESS == 0, "");
static_assert(MCAST6_DB_FAILED == 1, "");
static_assert(MCAST6_DB_NO_RECORD == 60, "");

/* l2mc6_bd_enable.h */
static_assert(sizeof(L2McBdEnableEntry) == 80, "");
static_assert(offsetof(L2McBdEnableEntry, keyId1) == 0, "");
static_assert(offsetof(L2McBdEnableEntry, addrType) == 4, "");
static_assert(offsetof(L2McBdEnableEntry, getFlag) == 8, "");
static_assert(offsetof(L2McBdEnableEntry, keyId2) == 12, "");
static_assert(offsetof(L2McBdEnableEntry, spare1) == 16, "");
static_assert(offsetof(L2McBdEnableEntry, attrA) == 20, "");
static_assert(offsetof(L2McBdEnableEntry, mldVersion) == 24, "");
static_assert(offsetof(L2McBdEnableEntry, attrB) == 28, "");
static_assert(offsetof(L2McBdEnableEntry, smoothVersion) == 32, "");
static_assert(offsetof(L2McBdEnableEntry, pathFlags) == 36, "");
static_assert(offsetof(L2McBdEnableEntry, serviceStatus) == 40, "");
static_assert(offsetof(L2McBdEnableEntry, errCode) == 42, "");
static_assert(offsetof(L2McBdEnableEntry, timeStampCreate) == 48, "");
static_assert(offsetof(L2McBdEnableEntry, timeStampSmooth) == 56, "");
static_assert(offsetof(L2McBdEnableEntry, l2mcEnable) == 64, "");
static_assert(offsetof(L2McBdEnableEntry, attrC) == 68, "");

/* l3mc6_mfib.h */
static_assert(sizeof(L3Mc6MfibEntry) == 256, "");
static_assert(offsetof(L3Mc6MfibEntry, vrId) == 0, "");
static_assert(offsetof(L3Mc6MfibEntry, vrfId) == 4, "");
static_assert(offsetof(L3Mc6MfibEntry, addrType) == 8, "");
static_assert(offsetof(L3Mc6MfibEntry, groupAddr) == 12, "");
static_assert(offsetof(L3Mc6MfibEntry, sourceAddr) == 28, "");
static_assert(offsetof(L3Mc6MfibEntry, attr1) == 44, "");
static_assert(offsetof(L3Mc6MfibEntry, attr2) == 45, "");
static_assert(offsetof(L3Mc6MfibEntry, attr3) == 46, "");
static_assert(offsetof(L3Mc6MfibEntry, attr4) == 48, "");
static_assert(offsetof(L3Mc6MfibEntry, inIfIndex) == 52, "");
static_assert(offsetof(L3Mc6MfibEntry, regIfIndex) == 56, "");
static_assert(offsetof(L3Mc6MfibEntry, attr7) == 60, "");
static_assert(offsetof(L3Mc6MfibEntry, attr8) == 65, "");
static_assert(offsetof(L3Mc6MfibEntry, attr9) == 68, "");
static_assert(offsetof(L3Mc6MfibEntry, attr10) == 72, "");
static_assert(offsetof(L3Mc6MfibEntry, attr11) == 76, "");
static_assert(offsetof(L3Mc6MfibEntry, attr12) == 80, "");
static_assert(offsetof(L3Mc6MfibEntry, attr13) == 88, "");
static_assert(offsetof(L3Mc6MfibEntry, attr14) == 96, "");
static_assert(offsetof(L3Mc6MfibEntry, attr15) == 104, "");
static_assert(offsetof(L3Mc6MfibEntry, attr16) == 108, "");
static_assert(offsetof(L3Mc6MfibEntry, mcStatSvcCtx) == 116, "");
static_assert(offsetof(L3Mc6MfibEntry, attr17) == 152, "");
static_assert(offsetof(L3Mc6MfibEntry, attr18) == 164, "");
static_assert(offsetof(L3Mc6MfibEntry, attr19) == 176, "");
static_assert(offsetof(L3Mc6MfibEntry, appSrcPid) == 188, "");
static_assert(offsetof(L3Mc6MfibEntry, attr20) == 192, "");
static_assert(offsetof(L3Mc6MfibEntry, smoothVersion) == 196, "");
static_assert(offsetof(L3Mc6MfibEntry, attr21) == 200, "");
static_assert(offsetof(L3Mc6MfibEntry, attr22) == 202, "");
static_assert(offsetof(L3Mc6MfibEntry, attr23) == 204, "");
static_assert(offsetof(L3Mc6MfibEntry, attr24) == 208, "");
static_assert(offsetof(L3Mc6MfibEntry, timeStampCreate) == 216, "");
static_assert(offsetof(L3Mc6MfibEntry, timeStampSmooth) == 224, "");
static_assert(offsetof(L3Mc6MfibEntry, hostTail) == 232, "");
static_assert(sizeof(g_l3Mfib6Pid) == 4, "");
static_assert(sizeof(g_l3Mfib6DbReadObjCache) == 8, "");
static_assert(sizeof(g_l3Mfib6DbStatObjCache) == 8, "");

/* l3mc6_mfib_query.h */
static_assert(sizeof(L3MfibQueryType) == 4, "");
static_assert(sizeof(g_Mfib6CreatIterFunc) == 10 * 8, "");
static_assert(sizeof(g_Mfib6GetNumFunc) == 10 * 8, "");
static_assert(L3_MFIB_QUERY_SOURCE == 0, "");
static_assert(L3_MFIB_QUERY_GROUP == 1, "");
static_assert(L3_MFIB_QUERY_INTERFACE == 2, "");
static_assert(L3_MFIB_QUERY_SOURCE_INTERFACE == 3, "");
static_assert(L3_MFIB_QUERY_GROUP_INTERFACE == 4, "");
static_assert(L3_MFIB_QUERY_NONE == 5, "");
static_assert(L3_MFIB_QUERY_VR_VRF == 6, "");
static_assert(L3_MFIB_QUERY_REG_INTERFACE == 7, "");
static_assert(L3_MFIB_QUERY_REG_INTERFACE_SOURCE == 8, "");
static_assert(L3_MFIB_QUERY_REG_INTERFACE_GROUP == 9, "");
