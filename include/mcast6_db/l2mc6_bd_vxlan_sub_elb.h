/* l2mc6_bd_vxlan_sub_elb: the VXLAN tunnel members of bridge domain entries that are bound to an interface. Table
 * number 31.
 *
 * Of L2Elb6Entry the table stores: vrId, bdId, groupAddr, sourceAddr, vxlanByte, vxlanWord1 and outIfIndex, which are
 * the key; vxlanWord0, vxlanWord2, vxlanWords3to6, vrfId, fwdIfType, isSelfBoard, vxlanFlag, pathFlags, mcId,
 * mcidVersion, mfibVersion, appSrcPid, appVersion, smoothVersion, elbData1, both service contexts, serviceStatus,
 * errCode and both time stamps. Reading sets fwdIfKind to fwdIfType, fixedWord1 to 8 and fixedWord2 to 10.
 */
#ifndef MCAST6_DB_L2MC6_BD_VXLAN_SUB_ELB_H
#define MCAST6_DB_L2MC6_BD_VXLAN_SUB_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Stamps the 192-byte database record 'row' with the current time: the smooth time, and the creation time when 'flag'
 * is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL2Mc6BdVxlanSubElbTimeStamp(int32_t flag, void *row);

/* Converts 'record' into the 192-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2McBdVxlanSubElb(const L2Elb6Entry *record, void *row);

/* Converts the 192-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2Mc6BdVxlanSubElb(const void *row, L2Elb6Entry *record);

/* Writes the key word of the primary key, 0x00010034, and the 52-byte key of 'record'. None may be null. */
MCAST6_API void MCAST6_DB_SetL2Mc6BdVxlanSubElbKey(uint32_t *keyWord, void *key, const L2Elb6Entry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 511
 *   other  the engine's code; counts 512 */
MCAST6_API uint32_t MCAST6_DB_CreateL2Mc6BdVxlanSubElbObject(uint32_t objType, uint32_t connType,
                                                             Mcast6DbHandle *object);

/* Releases an engine object; counts 380. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2Mc6BdVxlanSubElb(L2Elb6Entry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written (counts 513), or the engine answered 13044 (records kind 2, counts 514)
 *   1      'record' is null; logged; counts 514
 *   other  the engine's code; logged; counts 514; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2Mc6BdVxlanSubElb(const L2Elb6Entry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 6)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion(const L2Elb6Entry *record);

/* Removes the record with the key of 'record'.
 *   0      removed (counts 515), or the engine answered 13044 (records kind 1, counts 516)
 *   1      'record' is null; logged; counts 516
 *   other  the engine's code; logged; counts 516; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2Mc6BdVxlanSubElb(const L2Elb6Entry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry(Mcast6DbRes *iterator, L2Elb6Entry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator. Null when one could not be
 * created; counts
 * 517. Only the iterator over all records logs that. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over the members of the entry that 'key' (not null) names. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator(const L2McBdElbKey *key);

/* The same as MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanSubElbsourceIterator(const L2McBdElbKey *key);

/* Over the records with vrId, bdId, groupAddr, sourceAddr, vxlanByte and vxlanWord1 of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6VxlanSubElbCreateVSGIterator(const L2Elb6Entry *record);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByIfindex(uint32_t ifIndex);

/* Over the records of a bridge domain. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByBd(uint32_t vrId, uint32_t bdId);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter(void);

/* Releases an iterator with its object (counts 380). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
