/* l2mc6_bd_vxlan_elb: the VXLAN tunnel members of bridge domain entries. Table number 30.
 *
 * Of L2Elb6Entry the table stores: vrId, bdId, groupAddr, sourceAddr, vxlanByte, vxlanWord1, which are the key;
 * vxlanWord0, vxlanWord2, vxlanWords3to6, vrfId, vxlanByte2, outIfIndex, fwdIfType, isSelfBoard, vxlanFlag, pathFlags,
 * mcId, mcidVersion, mfibVersion, appSrcPid, appVersion, smoothVersion, elbData1, both service contexts, serviceStatus,
 * errCode and both time stamps. Reading sets fwdIfKind to fwdIfType, fixedWord1 to 3 and fixedWord2 to 9.
 */
#ifndef MCAST6_DB_L2MC6_BD_VXLAN_ELB_H
#define MCAST6_DB_L2MC6_BD_VXLAN_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Names a tunnel in a bridge domain: vrId, bdId, vxlanByte widened, vxlanWord1. */
typedef struct L2McBdVxlanVsgKey {
    uint32_t word[4];
} L2McBdVxlanVsgKey;

/* Stamps the 204-byte database record 'row' with the current time: the smooth time, and the creation time when 'flag'
 * is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL2Mc6BdVxlanElbTimeStamp(int32_t flag, void *row);

/* Converts 'record' into the 204-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2Mc6BdVxlanElb(const L2Elb6Entry *record, void *row);

/* Converts the 204-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2Mc6BdVxlanElb(const void *row, L2Elb6Entry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 503
 *   other  the engine's code; counts 504 */
MCAST6_API uint32_t MCAST6_DB_CreateL2Mc6BdVxlanElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 505. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6BdVxlanElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2Mc6BdVxlanElb(L2Elb6Entry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written (counts 506), or the engine answered 13044 (records kind 2, counts 507)
 *   1      'record' is null; logged; counts 507
 *   other  the engine's code; logged; counts 507; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2Mc6BdVxlanElb(const L2Elb6Entry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 6)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion(const L2Elb6Entry *record);

/* Removes the record with the key of 'record'.
 *   0      removed (counts 508), or the engine answered 13044 (records kind 1, counts 509)
 *   1      'record' is null; logged; counts 509
 *   other  the engine's code; logged; counts 509; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2Mc6BdVxlanElb(const L2Elb6Entry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6BdVxlanElbEntry(Mcast6DbRes *iterator, L2Elb6Entry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator. Null when one could not be created;
 * counts
 * 510. Only the iterator over all records logs that. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over the members of the entry that 'key' (not null) names. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator(const L2McBdElbKey *key);

/* The same as MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanElbsourceIterator(const L2McBdElbKey *key);

/* Over the records of a tunnel. 'ignored' is not used. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2mcv6ElbIterByVxlanTnl(uint32_t vrId, uint64_t ignored, uint32_t vxlanByte,
                                                                uint32_t vxlanWord1);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex(uint32_t ifIndex);

/* Over the records of a bridge domain. */
MCAST6_API Mcast6DbRes *MCAST_DB_CreateL2McBdVxlanElbIteratorByBd(uint32_t vrId, uint32_t bdId);

/* Over the records of a tunnel in a bridge domain. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6VxlanElbIterByTnlVsg(uint32_t vrId, uint32_t bdId, uint32_t vxlanByte,
                                                                  uint32_t vxlanWord1);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanElbIter(void);

/* Releases an iterator with its object (counts 505). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator(Mcast6DbRes *iterator);

/* Counts. '*count' is written on success only; no pointer may be null. Nothing is recorded.
 *   0      done
 *   1      a step failed; logged with the engine's code */

/* The records that match 'key'. */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6BdVxlanElbCountByKey(const Mcast6DbKeyDesc *descriptor, const void *key,
                                                           uint32_t *count);

/* The records of a tunnel in a bridge domain. */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6BdVxlanElbCountByTnlVsg(const L2McBdVxlanVsgKey *key, uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
