/* l3mc6_bd_tag_elb: the bridge domain members of layer-3 entries that send tagged frames. Table number 18.
 *
 * Of L3BdElb6Entry the table stores: vrId, vrfId, groupAddr, sourceAddr, bdElbAttr4, bdElbAttr5, bdElbAttr7 and
 * bdElbAttr8, which are the key; the other members named 'bdElbAttr', appSrcPid, smoothVersion, mlagRole, isMlagDual,
 * inIfhasMlag and both time stamps. Reading sets elbKind to 18 and elbSubKind to 2.
 */
#ifndef MCAST6_DB_L3MC6_BD_TAG_ELB_H
#define MCAST6_DB_L3MC6_BD_TAG_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_bd_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The object of the fast count; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l3Mc6BdTagElbStatObjCache;

/* A source process id that the host sets; the library neither reads nor writes it. */
extern MCAST6_API uint32_t g_l3Mc6BdTagElbPid;

/* Stamps the 160-byte database record 'row' with the current time: the smooth time, and the creation time when
 * 'withCreate' is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL3McBdTtagElbTimeStamp(int32_t withCreate, void *row);

/* Converts 'record' into the 160-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL3McBdTagElb(const L3BdElb6Entry *record, void *row);

/* Converts the 160-byte database record 'row' into 'record'. Neither may be null. Returns the result of the source
 * address's conversion, 0. */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTagElb(const void *row, L3BdElb6Entry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 322
 *   other  the engine's code; KPI 192 */
MCAST6_API uint32_t MCAST6_DB_CreateL3McBdTagElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 323. */
MCAST6_API void MCAST6_DB_ReleaseL3McBdTagElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL3McBdTagElb(L3BdElb6Entry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 188
 *   1      'record' is null; logged; KPI 189
 *   other  the engine's code; KPI 189; logged; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL3McBdTagElb(const L3BdElb6Entry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, mlagRole, isMlagDual and inIfhasMlag, and
 * the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of several for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL3McBdTagElbSmoothVersion(const L3BdElb6Entry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 190
 *   1      'record' is null; logged; KPI 191
 *   other  the engine's code; logged; KPI 191; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL3McBdTagElb(const L3BdElb6Entry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTagElbEntry(Mcast6DbRes *iterator, L3BdElb6Entry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3McBdTagElbIterator. Null when one could not be created;
 * KPI 193; not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbIter(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbAllIter(void);

/* Over the members of the entry that 'key' (not null) names. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbCreateVSGIterator(const L3BdElb6VsgKey *key);

/* Over the records with vrId, vrfId and appSrcPid of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbIterBySrcPid(const L3BdElb6Entry *record);

/* Over the records of an outgoing interface of a VR. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbIterByVrIdIfIndex(uint32_t vrId, uint32_t ifIndex);

/* Over the records of a bridge domain. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbVrBdIter(uint32_t vrId, uint32_t bdId);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbIterByIfIndex(uint32_t ifIndex);

/* Over the records with vrId, vrfId, groupAddr, sourceAddr and the low byte of bdElbAttr19 of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTagElbMfibIter(const L3BdElb6Entry *record);

/* Releases an iterator with its object (counts 323). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3McBdTagElbIterator(Mcast6DbRes *iterator);

/* Returns the number of records, counted through a cached object; 0 on any failure as well. One thread at a time. */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTagElbCountFast(void);

#ifdef __cplusplus
}
#endif

#endif
