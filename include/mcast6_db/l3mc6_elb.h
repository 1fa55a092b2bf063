/* l3mc6_elb: the outgoing interfaces of layer-3 entries. Table number 16. The library reads and counts records of this
 * table; other software writes them.
 *
 * Of L3Mc6ElbEntry the table stores: vrId, vrfId, groupAddr, sourceAddr, outIfIndex and elbFlagD, which are the key;
 * elbAttrA to elbAttrG, instId, elbCtxA, elbCtxB, elbWord, elbHalfA, elbHalfB, elbFlagA to elbFlagC and both time
 * stamps. Reading sets entryType to 13, instType, zeroWord and zeroByte to 0. */
#ifndef MCAST6_DB_L3MC6_ELB_H
#define MCAST6_DB_L3MC6_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The scan handle of the fast scans: flag, object, root iterator; all 0 until the first fast scan. */
extern MCAST6_API Mcast6DbScanHandle g_l3Elb6ScanDbHandle;

/* The object of the fast read; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l3Elb6DbReadObjCache;

/* Converts 'entry' into the 148-byte database record 'row': the creation time is kept unless it is 0, then it is the
 * current time; the smooth time is the current time. The bytes at 50 and 51 are unchanged. Neither may be null. Returns
 * the result of the source address's conversion, 0. */
MCAST6_API uint32_t MCAST6_DB_SetL3Elb(const L3Mc6ElbEntry *entry, void *row);

/* Converts the 148-byte database record 'row' into 'entry'. Neither may be null. Returns the result of the source
 * address's conversion, 0. */
MCAST6_API uint32_t MCAST6_DB_GetL3Elb(const void *row, L3Mc6ElbEntry *entry);

/* Writes the key word of the primary key, 0x0001002D, and the 45-byte key of 'entry'. None may be null. */
MCAST6_API void MCAST6_DB_SetL3ElbKey(uint32_t *keyWord, void *key, const L3Mc6ElbEntry *entry);

/* Writes the key word 0x06090029 and the 41-byte key of the members of an entry: vrId, vrfId, groupAddr, sourceAddr and
 * the low byte of elbFlagA of 'entry'. None may be null. */
MCAST6_API void MCAST6_DB_SetL3ElbCmdKey(const L3Mc6ElbEntry *entry, uint32_t *keyWord, void *key);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 239
 *   other  the engine's code; KPI 128 */
MCAST6_API uint32_t MCAST6_DB_CreateL3ElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 240. The scan handle's object is not released or counted; it becomes free for the
 * next fast scan. */
MCAST6_API void MCAST6_DB_ReleaseL3ElbObject(Mcast6DbHandle object);

/* Ensures that '*slot' holds a cached object ready for use: creates one if the slot is 0, and resets it in any case. An
 * object whose first reset fails is not kept in the slot. Not for concurrent calls on one slot.
 *   0      done
 *   other  the engine's code; counts 241; the slot is unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateL3ElbObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle *slot);

/* Reads the record whose key is in 'entry'. Nothing is logged or recorded.
 *   0      found; 'entry' is filled
 *   1      'entry' is null
 *   15005  no such record
 *   other  the engine's code */
MCAST6_API uint32_t MCAST6_DB_ReadL3Elb(L3Mc6ElbEntry *entry);

/* As MCAST6_DB_ReadL3Elb, with the cached object g_l3Elb6DbReadObjCache. One thread at a time.
 *   0      found; 'entry' is filled
 *   1      'entry' is null, or the object could not be obtained (counts 241)
 *   15005  no such record
 *   other  the engine's code */
MCAST6_API uint32_t MCAST6_DB_ReadL3ElbFast(L3Mc6ElbEntry *entry);

/* Counts the members of an entry, by the key that MCAST6_DB_SetL3ElbCmdKey makes; '*count' is written on success only.
 * Neither may be null.
 *   0      done
 *   other  the engine's code; not logged */
MCAST6_API uint32_t MCAST6_DB_GetOutIfNum(const L3Mc6ElbEntry *entry, uint32_t *count);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3ElbIterator. Null when one could not be created. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3ElbIterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3ElbAllIterator(void);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3ElbIfindexIterator(uint32_t ifIndex);

/* Over the members of an entry, by the key that MCAST6_DB_SetL3ElbCmdKey makes. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3ElbMfibIteratorExt(const L3Mc6ElbEntry *entry);

/* As MCAST6_DB_CreateL3ElbMfibIteratorExt, but into a handle that the caller provides; it is written on success only.
 * Release its object with MCAST6_DB_ReleaseL3ElbObject.
 *   0      done
 *   1      'resource' is null or a step failed; KPI 129 */
MCAST6_API uint32_t MCAST6_DB_CreateL3ElbMfibIterator(const L3Mc6ElbEntry *entry, Mcast6DbRes *resource);

/* Ensures that '*slot' holds a cached root iterator of 'object', positioned before the records of 'key': creates one
 * from 'descriptor' if the slot is 0, and resets it in any case. 'descriptor' is not used otherwise.
 *   0      done
 *   other  the engine's code; the slot is unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateL3ElbIterCache(Mcast6DbHandle object, const Mcast6DbKeyDesc *descriptor,
                                                   const void *key, Mcast6DbHandle *slot);

/* A fast scan over the records of 'key'. It uses the scan handle, or an ordinary iterator while another fast scan is in
 * progress. All fast scans use one index. One thread at a time. An object that could not be obtained records kind 0, a
 * root iterator or property kind 7, a failed allocation kind 8. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3ElbIteratorFast(const Mcast6DbKeyDesc *descriptor, const void *key);

/* A fast scan over the members of an entry whose elbFlagD is 1. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3ElbMcidIteratorFast(uint32_t vrId, uint32_t vrfId, Mcast6Ipv6Addr groupAddr,
                                                              Mcast6Ipv6Addr sourceAddr);

/* Releases an iterator, its object by MCAST6_DB_ReleaseL3ElbObject. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3ElbIterator(Mcast6DbRes *iterator);

/* Steps 'iterator' and fills 'entry' with the next record.
 *   0      a record
 *   1      'iterator' or 'entry' is null
 *   60     the end, or the record was removed in the meantime
 *   other  the engine's code; logged; a failed step records kind 9, a failed read kind 0 */
MCAST6_API uint32_t MCAST6_DB_GetL3ElbEntry(Mcast6DbRes *iterator, L3Mc6ElbEntry *entry);

#ifdef __cplusplus
}
#endif

#endif
