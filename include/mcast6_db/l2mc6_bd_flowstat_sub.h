/* l2mc6_bd_flowstat_sub: the flow-statistics subscriptions of bridge domains. Table number 23. */
#ifndef MCAST6_DB_L2MC6_BD_FLOWSTAT_SUB_H
#define MCAST6_DB_L2MC6_BD_FLOWSTAT_SUB_H

#include "mcast6_db/flow_stat_sub.h"
#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Converts 'record' into the 72-byte database record 'row'; both time stamps become the current time. Neither may be
 * null. */
MCAST6_API void MCAST6_DB_SetL2McBdFlowstatSub(const FlowStatSubEntry *record, void *row);

/* Converts the 72-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2McBdFlowstatSub(const void *row, FlowStatSubEntry *record);

/* Stamps the 72-byte database record 'row' with the current time: the smooth time, and the creation time when 'flag' is
 * not 0. */
MCAST6_API void MCAST6_DB_SetStructL2McBdFlowstatSubTimeStamp(uint32_t flag, void *row);

/* Writes the key word of the primary key, 0x00010028, into the descriptor's first word and the 40-byte key of 'record'
 * to 'key'. The caller zeroes the rest of the descriptor. None may be null. Returns the result of the second address's
 * copy, 0. */
MCAST6_API uint32_t MCAST6_DB_SetL2McBdFlowstatSubKey(Mcast6DbKeyDesc *descriptor, void *key,
                                                      const FlowStatSubEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 390
 *   other  the engine's code; counts 391 */
MCAST6_API uint32_t MCAST6_DB_CreateL2McBdFlowstatSubObject(uint32_t objType, uint32_t connType,
                                                            Mcast6DbHandle *object);

/* Releases an engine object; counts 392. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdFlowstatSubObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2McBdFlowstatSub(FlowStatSubEntry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0       written, or the engine answered 13044 (records kind 1); counts 394
 *   1       'record' is null; logged; counts 395
 *   110024  the table is full; not logged; counts 393, records kind 2, counts 395
 *   other   the engine's code; logged; counts 395; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2McBdFlowstatSub(const FlowStatSubEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2McBdFlowstatSubSmoothVersion(const FlowStatSubEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); counts 396
 *   1      'record' is null; logged; counts 397
 *   other  the engine's code; logged; counts 397; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2McBdFlowstatSub(const FlowStatSubEntry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; logged; a failed step records kind 9, a failed read
 *          kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2McBdFlowstatSubEntry(Mcast6DbRes *iterator, FlowStatSubEntry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2McBdFlowstatSubIterator. Null when one could not be
 * created; counts 398; logged, except by the common constructor. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdFlowstatSubIterCommon(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over the records with keyId1, srcPid and cfgWord3 of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(const FlowStatSubEntry *record);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdFlowstatSubIter(void);

/* Releases an iterator with its object (counts 392). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdFlowstatSubIterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
