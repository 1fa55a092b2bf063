/* l2mc6_bd_tag_elb: the outgoing interfaces of bridge domains that send tagged frames. Table number 21.
 *
 * Of L2Elb6Entry the table stores: vrId, bdId, groupAddr, sourceAddr, outIfIndex, tagVid1 and tagVid2, which are the
 * key; vrfId, fwdIfExtType, fwdIfKind, isSelfBoard, elbByte1, egressAttr, pathFlags, mcId, mcidVersion, mfibVersion,
 * appSrcPid, appVersion, smoothVersion, elbWord1, elbWord2, elbData1, both service contexts, serviceStatus, errCode and
 * both time stamps. Reading sets fwdIfType to fwdIfKind, fixedWord1 to 2 and fixedWord2 to 7.
 */
#ifndef MCAST6_DB_L2MC6_BD_TAG_ELB_H
#define MCAST6_DB_L2MC6_BD_TAG_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Stamps the 180-byte database record 'row' with the current time: the smooth time, and the creation time when 'flag'
 * is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL2McBdTagElbTimeStamp(int32_t flag, void *row);

/* Converts 'record' into the 180-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2McBdTagElb(const L2Elb6Entry *record, void *row);

/* Converts the 180-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2McBdTagElb(const void *row, L2Elb6Entry *record);

/* Writes the key word of the primary key, 0x00010030, and the 48-byte key of 'record'. None may be null. */
MCAST6_API void MCAST6_DB_SetL2McBdTagElbKey(uint32_t *keyWord, void *key, const L2Elb6Entry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 336
 *   other  the engine's code; counts 335 */
MCAST6_API uint32_t MCAST6_DB_CreateL2McBdTagElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 337. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdTagElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2McBdTagElb(L2Elb6Entry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written (counts 338), or the engine answered 13044 (records kind 1, counts 339 as if it had failed)
 *   1      'record' is null; logged; counts 339
 *   other  the engine's code; logged; counts 339; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2McBdTagElb(const L2Elb6Entry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2McBdTagElbSmoothVersion(const L2Elb6Entry *record);

/* Removes the record with the key of 'record'.
 *   0      removed (counts 340), or the engine answered 13044 (records kind 1, counts 340)
 *   1      'record' is null; logged; counts 341
 *   other  the engine's code; logged; counts 341; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2McBdTagElb(const L2Elb6Entry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2McBdTagElbEntry(Mcast6DbRes *iterator, L2Elb6Entry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2BdTagElbIter. Null when one could not be created; counts
 * 342. Only the iterator over all records logs that. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdTagElbIter(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over the records with vrId, vrfId and appSrcPid of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdTagElbIterBySrcPid(const L2Elb6Entry *record);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdTagElbIterByIfindex(uint32_t ifIndex);

/* Over the members of the entry that 'key' (not null) names. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdTagElbMcidIter(const L2McBdElbKey *key);

/* The same as MCAST6_DB_CreateL2McBdTagElbMcidIter. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdTagElbSourceIter(const L2McBdElbKey *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2BdTagElbIter(void);

/* Releases an iterator with its object (counts 337). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2BdTagElbIter(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
