/* l2mc6_flowstat_sub: the flow-statistics subscriptions outside bridge domains. Table number 10; a failed iterator step
 * is recorded under 4. */
#ifndef MCAST6_DB_L2MC6_FLOWSTAT_SUB_H
#define MCAST6_DB_L2MC6_FLOWSTAT_SUB_H

#include "mcast6_db/flow_stat_sub.h"
#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Converts 'record' into the 72-byte database record 'row' (the row comes first here). The smooth time becomes the
 * current time, the creation time too unless 'record' holds one. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2FlowStatSubItem(void *row, const FlowStatSubEntry *record);

/* Converts the 72-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2FlowStatSubItem(const void *row, FlowStatSubEntry *record);

/* Writes the key word of the primary key, 0x00010028, into the descriptor's first word and the 40-byte key of 'record'
 * to 'key'. The caller zeroes the rest of the descriptor. None may be null. Returns the result of the second address's
 * copy, 0. */
MCAST6_API uint32_t MCAST6_DB_SetL2FlowStatSubKey(Mcast6DbKeyDesc *descriptor, void *key,
                                                  const FlowStatSubEntry *record);

/* Sets the smooth time stamp of 'object' to the current time, and the creation time as well when 'flag' is not 0.
 *   0      done
 *   other  the OR of the engine's codes; a failed setter does not stop the other */
MCAST6_API uint32_t MCAST6_DB_SetL2FlowStatSubTimeStamp(Mcast6DbHandle object, uint32_t flag);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 14
 *   1      the engine failed; logged with its code */
MCAST6_API uint32_t MCAST6_DB_CreateFlowStatObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 15. */
MCAST6_API void MCAST6_DB_ReleaseFlowStatObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or the object could not be created; logged
 *   60     no such record
 *   other  the engine's code; logged */
MCAST6_API uint32_t MCAST6_DB_ReadL2FlowStatSub(FlowStatSubEntry *record);

/* Writes 'record'.
 *   0       written
 *   1       'record' is null, or the object could not be created; logged
 *   110024  the table is full; not logged
 *   other   the engine's code, 13044 (present already) included; logged */
MCAST6_API uint32_t MCAST6_DB_WriteL2FlowStatSub(const FlowStatSubEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044
 *   1      'record' is null, or a step failed; logged */
MCAST6_API uint32_t MCAST6_DB_RemoveL2FlowStatSub(const FlowStatSubEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044
 *   1      'record' is null, or the object could not be created; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2FlowStatSub(const FlowStatSubEntry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; logged; a failed step records kind 9 under table 4
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2FlowStatSubEntry(Mcast6DbRes *iterator, FlowStatSubEntry *record);

/* Creates an iterator over the records that match 'key' (all when both are null), which the caller releases with
 * MCAST6_DB_ReleaseL2FlowStatSubIter. Null when it could not be created; logged; a failed root iterator records kind 7,
 * a failed allocation kind 8. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2FlowStatSubIter(const Mcast6DbKeyDesc *descriptor, const void *key);

/* As MCAST6_DB_CreateL2FlowStatSubIter, over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2FlowStatSubAllIter(void);

/* Releases an iterator with its object (counts 15). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2FlowStatSubIter(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
