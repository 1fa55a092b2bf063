/* l3mc6_sub_elb: the sub-interface members of layer-3 entries. Failed iterator steps and reads are recorded under table
 * number 16, that of l3mc6_elb; nothing else is recorded. The library reads records of this table; other software
 * writes them.
 *
 * Of L3Mc6ElbEntryExt the table stores: vrId, vrfId, groupAddr, sourceAddr, subIfIndex, instId and elbFlagD, which are
 * the key; outIfIndex, elbAttrA to elbAttrD, elbAttrG, elbCtxA, elbCtxB, elbExtA, elbExtB, elbExtCtx, elbWord,
 * elbHalfA, elbHalfB, elbFlagA, elbFlagB and both time stamps. Reading sets entryType to 14, instType and zeroWord to
 * 0. */
#ifndef MCAST6_DB_L3MC6_SUB_ELB_H
#define MCAST6_DB_L3MC6_SUB_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A scan handle. The library checks it when an object is released, but makes no fast scans of this table. */
extern MCAST6_API Mcast6DbScanHandle g_l3SubElb6ScanDbHandle;

/* The object of the fast read; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l3SubElb6DbReadObjCache;

/* For the host's use; the library neither reads nor writes it. */
extern MCAST6_API uint32_t g_subElb6DbIsLimit;

/* Converts 'record' into the 172-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL3SubElb(const L3Mc6ElbEntryExt *record, void *row);

/* Converts the 172-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL3SubElb(const void *row, L3Mc6ElbEntryExt *record);

/* Writes the key word of the primary key, 0x0001002F, and the 47-byte key of 'record'. None may be null. */
MCAST6_API void MCAST6_DB_SetL3SubElbKey(uint32_t *keyWord, void *key, const L3Mc6ElbEntryExt *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 246
 *   other  the engine's code; KPI 135 */
MCAST6_API uint32_t MCAST6_DB_CreateL3SubElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object, or frees the scan handle's object for the next fast scan; counts 247 either way. */
MCAST6_API void MCAST6_DB_ReleaseL3SubElbObject(Mcast6DbHandle object);

/* Ensures that '*slot' holds a cached object ready for use: creates one if the slot is 0, and resets it in any case. An
 * object whose first reset fails is not kept in the slot. Not for concurrent calls on one slot.
 *   0      done
 *   other  the engine's code; creating it failed (counts 248) or resetting it (counts 249); logged; the slot is
 *          unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateL3SubElbObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle *slot);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; only an object that could not be created is logged */
MCAST6_API uint32_t MCAST6_DB_ReadL3SubElb(L3Mc6ElbEntryExt *record);

/* As MCAST6_DB_ReadL3SubElb, with the cached object g_l3SubElb6DbReadObjCache. One thread at a time.
 *   0      found; 'record' is filled
 *   1      'record' is null, or the object could not be obtained; logged
 *   15005  no such record
 *   other  the engine's code */
MCAST6_API uint32_t MCAST6_DB_ReadL3SubElbFast(L3Mc6ElbEntryExt *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3SubElbIterator. Null when one could not be created; KPI
 * 136; not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3SubElbIterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3SubElbAllIterator(void);

/* Over the records of a VLAN. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcVlanScanIterater(uint16_t vlanId);

/* Over the records with vrId, vrfId, groupAddr, sourceAddr, outIfIndex and elbFlagD of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcVlanAllMemIterator(const L3Mc6ElbEntryExt *record);

/* Releases an iterator, its object by MCAST6_DB_ReleaseL3SubElbObject. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3SubElbIterator(Mcast6DbRes *iterator);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null
 *   60     the end, or the record was removed in the meantime
 *   other  the engine's code; logged; a failed step records kind 9, a failed read kind 0 */
MCAST6_API uint32_t MCAST6_DB_GetL3SubElbEntry(Mcast6DbRes *iterator, L3Mc6ElbEntryExt *record);

#ifdef __cplusplus
}
#endif

#endif
