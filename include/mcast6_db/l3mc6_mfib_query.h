/* Queries of l3mc6_mfib: iterators and counts over all entries, or over those that match a filter, chosen by function
 * or by query type. Nothing here records error statistics.
 *
 * A filter takes its fields from an L3Mc6MfibEntry, whose other members are ignored, or from plain arguments. All
 * iterators are stepped with MCAST6_DB_GetL3MfibEntry or MCAST6_DB_GetNextL3Mfib. */
#ifndef MCAST6_DB_L3MC6_MFIB_QUERY_H
#define MCAST6_DB_L3MC6_MFIB_QUERY_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The fields that a query filters on, in addition to vrId and vrfId. */
typedef enum L3MfibQueryType {
    L3_MFIB_QUERY_SOURCE = 0,
    L3_MFIB_QUERY_GROUP = 1,
    L3_MFIB_QUERY_INTERFACE = 2, /* incoming interface */
    L3_MFIB_QUERY_SOURCE_INTERFACE = 3,
    L3_MFIB_QUERY_GROUP_INTERFACE = 4,
    L3_MFIB_QUERY_NONE = 5, /* not a query: refused */
    L3_MFIB_QUERY_VR_VRF = 6,
    L3_MFIB_QUERY_REG_INTERFACE = 7, /* register interface */
    L3_MFIB_QUERY_REG_INTERFACE_SOURCE = 8,
    L3_MFIB_QUERY_REG_INTERFACE_GROUP = 9
} L3MfibQueryType;

typedef uint32_t (*L3MfibCreateIterFunc)(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
typedef uint32_t (*L3MfibGetNumFunc)(const L3Mc6MfibEntry *record, uint32_t *count);

/* The iterator constructor and the count of each query type; null for type 5. */
extern MCAST6_API const L3MfibCreateIterFunc g_Mfib6CreatIterFunc[10];
extern MCAST6_API const L3MfibGetNumFunc g_Mfib6GetNumFunc[10];

/* Iterators that the caller owns and releases with MCAST6_DB_ReleaseL3MfibIter. Null when one could not be created; KPI
 * 115, and also KPI 114 when the object could not be created. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3MfibIterCommon(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3MfibIter(void);

/* Over the records of one VR and VRF. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3MfibIterByVrVrf(uint32_t vrId, uint32_t vrfId);

/* Over the records of one incoming interface, in any VR. A failure is logged. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3MfibIterByIfIndex(uint32_t ifIndex);

/* Releases an iterator with its object. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3MfibIter(Mcast6DbRes *iterator);

/* Iterators into a handle that the caller provides. 'resource' is written on success only. Release its object with
 * MCAST6_DB_ReleaseL3MfibObject; the memory of the handle is the caller's. 'record' must not be null.
 *   0      done
 *   1      'resource' is null or a step failed; KPI 115 (and 114 when the object could not be created); logged, except
 *          by the common constructor */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterWithDbResCommon(Mcast6DbRes *resource, const Mcast6DbKeyDesc *descriptor,
                                                              const void *key);

/* vrId, vrfId, sourceAddr */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterBySrcAddr(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, groupAddr */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByGrpAddr(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, inIfIndex */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByIntf(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, sourceAddr, inIfIndex */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterBySrcAndIntf(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, groupAddr, inIfIndex */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByGrpAndIntf(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId: only the first two words at 'record' are read */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByVrAndVrf(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, regIfIndex */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByRegIntf(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, sourceAddr, regIfIndex */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByRegIntfAndSrc(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* vrId, vrfId, groupAddr, regIfIndex */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByRegIntfAndGrp(Mcast6DbRes *resource, const L3Mc6MfibEntry *record);
/* The records of VR 'vrId' whose error code is 5, a hash conflict. */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibIterByErrCode(uint32_t vrId, Mcast6DbRes *resource);

/* The constructor of a query type.
 *   0      done
 *   1      no such query type (5, or above 9): logged, nothing else happens; or the constructor failed: logged, in
 *          addition to what the constructor does itself */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibFwdIter(Mcast6DbRes *resource, uint32_t queryType,
                                                  const L3Mc6MfibEntry *record);

/* Counts. '*count', 32 bits, is written on success only; neither pointer may be null. */

/* All records.
 *   0      done
 *   other  the engine's code; nothing is logged */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibCnt(uint32_t *count);

/* The records that match 'key'.
 *   0      done
 *   other  the engine's code; logged */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibCountByKey(const Mcast6DbKeyDesc *descriptor, const void *key, uint32_t *count);

/* The records that match fields of 'record', counted by MCAST6_DB_GetL3MfibCountByKey.
 *   0      done
 *   other  the engine's code; logged here again, so twice */
/* vrId, vrfId: only the first two words at 'record' are read */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibFwdTotalNum(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, sourceAddr */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumBySource(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, groupAddr */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumByGroup(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, inIfIndex */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumByIntf(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, sourceAddr, inIfIndex */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumBySrcAndIntf(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, groupAddr, inIfIndex */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumByGrpAndIntf(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, regIfIndex */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumByRegIntf(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, sourceAddr, regIfIndex */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumByRegIntfAndSrc(const L3Mc6MfibEntry *record, uint32_t *count);
/* vrId, vrfId, groupAddr, regIfIndex */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibNumByRegIntfAndGrp(const L3Mc6MfibEntry *record, uint32_t *count);
/* The records of VR 'vrId' whose error code is 5, a hash conflict. */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibHashConflictTotalNum(uint32_t vrId, uint32_t *count);

/* The count of a query type.
 *   0      done
 *   1      no such query type (5, or above 9); logged
 *   other  the engine's code; logged, in addition to what the count does itself */
MCAST6_API uint32_t MCAST6_DB_QueryL3MfibCountDispatch(const L3Mc6MfibEntry *record, uint32_t *count,
                                                       uint32_t queryType);

/* The same as MCAST6_DB_QueryL3MfibCountDispatch, but a failure is logged once more. */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibFwdMatchNum(const L3Mc6MfibEntry *record, uint32_t *count, uint32_t queryType);

#ifdef __cplusplus
}
#endif

#endif
