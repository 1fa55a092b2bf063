/* l2mc6_bd_untag_rt: the routes of bridge domains to untagged interfaces. Table number 25. */
#ifndef MCAST6_DB_L2MC6_BD_UNTAG_RT_H
#define MCAST6_DB_L2MC6_BD_UNTAG_RT_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_route.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Stamps the 52-byte database record 'row': the creation time with that of 'record' or, when that is 0, the current
 * time; the smooth time with the current time. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2McBdUntagRtTimeStamp(void *row, const L2McBdRtEntry *record);

/* Converts 'record' into the 52-byte database record 'row'. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2McBdUntagRt(const L2McBdRtEntry *record, void *row);

/* Converts the 52-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2McBdUntagRt(const void *row, L2McBdRtEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 412
 *   other  the engine's code; counts 413 */
MCAST6_API uint32_t MCAST6_DB_CreateL2McBdUntagRtObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 414. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdUntagRtObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   60     no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2McBdUntagRt(L2McBdRtEntry *record);

/* Writes 'record'.
 *   0      written (counts 415), or the engine answered 13044 (records kind 1; counts 415)
 *   1      'record' is null; logged; counts 416
 *   other  the engine's code; logged; counts 416; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2McBdUntagRt(const L2McBdRtEntry *record);

/* Item setters for the updates: smoothVersion and the smooth time; or these and serviceStatus and errCode. No argument
 * is checked.
 *   0      done
 *   other  the OR of the engine's codes; every setter is called in any case */
MCAST6_API uint32_t MCAST6_DB_SetUpdateL2McBdUntagRtSmthItem(Mcast6DbHandle object, const L2McBdRtEntry *record);
MCAST6_API uint32_t MCAST6_DB_SetUpdateL2McBdUntagRtItem(Mcast6DbHandle object, const L2McBdRtEntry *record);

/* Updates the fields of the stored record with the key of 'record' that 'itemSetter' (not null) sets.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  what 'itemSetter' returned, or the engine's code; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2McBdUntagRtOper(const L2McBdRtEntry *record, L2McBdRtItemSetter itemSetter);

/* MCAST6_DB_UpdateL2McBdUntagRtOper with MCAST6_DB_SetUpdateL2McBdUntagRtSmthItem; 'ignored' is not used. */
MCAST6_API uint32_t MCAST6_DB_UpdateL2McBdUntagRtSmoothVersion(const L2McBdRtEntry *record, L2McBdRtItemSetter ignored);

/* MCAST6_DB_UpdateL2McBdUntagRtOper with MCAST6_DB_SetUpdateL2McBdUntagRtItem; 'ignored' is not used. */
MCAST6_API uint32_t MCAST6_DB_UpdateL2McBdUntagRt(const L2McBdRtEntry *record, L2McBdRtItemSetter ignored);

/* Removes the record with the key of 'record'.
 *   0      removed (counts 417), or the engine answered 13044 (records kind 1; counts 417)
 *   1      'record' is null; logged; counts 418
 *   other  the engine's code; logged; counts 418; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2McBdUntagRt(const L2McBdRtEntry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null (logged), or the engine failed (logged); a failed step records kind 9, a
 *          failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2McBdUntagRtEntry(Mcast6DbRes *iterator, L2McBdRtEntry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2McBdUntagRtIterator. Null when one could not be created;
 * counts 419; logged, except by the common constructor. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdUntagRtIterCommon(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdUntagRtIter(void);

/* Releases an iterator with its object (counts 414). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdUntagRtIterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
