/* l3mc6_bd_tnl_elb: the bridge domain members of layer-3 entries behind tunnels. Table number 20.
 *
 * Of L3BdElb6Entry the table stores: vrId, vrfId, groupAddr, sourceAddr, bdElbAttr4, tnlAttr2 and tnlAttr3, which are
 * the key; the other members named 'tnlAttr' and 'bdElbAttr' but bdElbAttr7 to bdElbAttr10 and bdElbAttr18, appSrcPid,
 * smoothVersion and both time stamps. Reading sets elbKind to 19 and elbSubKind to 3.
 */
#ifndef MCAST6_DB_L3MC6_BD_TNL_ELB_H
#define MCAST6_DB_L3MC6_BD_TNL_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_bd_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The object of the fast count; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l3Mc6BdTnlElbStatObjCache;

/* A source process id that the host sets; the library only reads it. */
extern MCAST6_API uint32_t g_l3Mc6BdTnlElbPid;

/* Stamps the 172-byte database record 'row' with the current time: the smooth time, and the creation time when
 * 'withCreate' is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL3McBdTnlElbTimeStamp(int32_t withCreate, void *row);

/* Converts 'record' into the 172-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL3McBdTnlElb(const L3BdElb6Entry *record, void *row);

/* Converts the 172-byte database record 'row' into 'record'. Neither may be null. Returns the result of the source
 * address's conversion, 0. */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTnlElb(const void *row, L3BdElb6Entry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 326
 *   other  the engine's code; KPI 204 */
MCAST6_API uint32_t MCAST6_DB_CreateL3McBdTnlElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 327. */
MCAST6_API void MCAST6_DB_ReleaseL3McBdTnlElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL3McBdTnlElb(L3BdElb6Entry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 200
 *   1      'record' is null; logged; KPI 201
 *   other  the engine's code; KPI 201; logged; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL3McBdTnlElb(const L3BdElb6Entry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion and the
 * current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of several for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion(const L3BdElb6Entry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 202
 *   1      'record' is null; logged; KPI 203
 *   other  the engine's code; logged; KPI 203; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL3McBdTnlElb(const L3BdElb6Entry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTnlElbEntry(Mcast6DbRes *iterator, L3BdElb6Entry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3McBdTnlElbIterator. Null when one could not be created;
 * KPI 205; not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbIter(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbAllIter(void);

/* Over the members of the entry that 'key' (not null) names. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbCreateVSGIterator(const L3BdElb6VsgKey *key);

/* Over the records with vrId, vrfId and appSrcPid of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbIterBySrcPid(const L3BdElb6Entry *record);

/* Over the records of a tunnel in a bridge domain. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbIterByVrTnlInfo(uint32_t vrId, uint32_t bdId, uint32_t tnlAttr2,
                                                                    uint8_t tnlAttr3);

/* Over the records of a bridge domain. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbVrBdIter(uint32_t vrId, uint32_t bdId);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbIterByIfIndex(uint32_t ifIndex);

/* Over the records with vrId, vrfId, groupAddr, sourceAddr and the low byte of bdElbAttr19 of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McBdTnlElbMfibIter(const L3BdElb6Entry *record);

/* Releases an iterator with its object (counts 327). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3McBdTnlElbIterator(Mcast6DbRes *iterator);

/* Returns the number of records, counted through a cached object; 0 on any failure as well. One thread at a time. */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTnlElbCountFast(void);

/* Counts the records that match 'key'; '*count' is written on success only. No pointer may be null. Nothing is
 * recorded.
 *   0      done
 *   1      a step failed; logged with the engine's code */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTnlElbCountByKey(const Mcast6DbKeyDesc *descriptor, const void *key,
                                                        uint32_t *count);

/* Returns g_l3Mc6BdTnlElbPid. */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdTnlElbSourcePid(void);

#ifdef __cplusplus
}
#endif

#endif
