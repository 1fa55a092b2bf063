/* l3mc6_vlan_elb: the VLAN members of layer-3 entries. Table number 17.
 *
 * Of L3Mc6ElbEntryExt the table stores: vrId, vrfId, groupAddr, sourceAddr, outIfIndex and instId, which are the key;
 * elbAttrA to elbAttrD, elbAttrF, elbAttrG, elbFlagA, elbFlagB, elbFlagE, vlanFlagA to vlanFlagC, elbCtxA, elbCtxB,
 * elbExtA, elbExtB, elbExtCtx, elbWord, elbHalfA, elbHalfB and both time stamps; and whether elbFlagD is 2: it reads
 * back as 2 or 1. Reading sets entryType to 15 and instType to 0. */
#ifndef MCAST6_DB_L3MC6_VLAN_ELB_H
#define MCAST6_DB_L3MC6_VLAN_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The scan handle of the fast scans: flag, object, root iterator; all 0 until the first fast scan. */
extern MCAST6_API Mcast6DbScanHandle g_l3VlanElb6ScanDbHandle;

/* For the host's use; the library neither reads nor writes it. */
extern MCAST6_API Mcast6DbHandle g_vlanElb6DbReadObjCache;

/* Converts 'record' into the 168-byte database record 'row': the creation time is kept unless it is 0, then it is the
 * current time; the smooth time is the current time. The byte at 75 is unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetVlanElbObj(const L3Mc6ElbEntryExt *record, void *row);

/* Converts the 168-byte database record 'row' into 'record': despite its name, for reading. Neither may be null. */
MCAST6_API void MCAST6_DB_SetVlanElbEntry(const void *row, L3Mc6ElbEntryExt *record);

/* Writes the key word of the primary key, 0x0001002E, and the 46-byte key of 'record'. None may be null. */
MCAST6_API void MCAST6_DB_SetVlanElbKey(const L3Mc6ElbEntryExt *record, uint32_t *keyWord, void *key);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 281
 *   1      the engine failed; KPI 162 */
MCAST6_API uint32_t MCAST6_DB_CreateVlanElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object, or frees the scan handle's object for the next fast scan; counts 282 either way. */
MCAST6_API void MCAST6_DB_ReleaseVlanElbStatObject(Mcast6DbHandle object);

/* Ensures that '*slot' holds a cached object ready for use: creates one if the slot is 0, and resets it in any case. An
 * object whose first reset fails is not kept in the slot. Not for concurrent calls on one slot.
 *   0      done
 *   1      creating it failed (counts 283) or resetting it (counts 284); logged; the slot is unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateVlanElbObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle *slot);

/* Reads the record whose key is in 'record' (not null).
 *   0      found; 'record' is filled
 *   1      a step failed; logged; a failed read records kind 0
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadVlanElb(L3Mc6ElbEntryExt *record);

/* Writes 'record'.
 *   0      written, or the engine answered 13044 (records kind 1)
 *   1      'record' is null, or the object could not be created; logged
 *   other  the engine's code; logged; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteVlanElb(const L3Mc6ElbEntryExt *record);

/* Removes the record with the key of 'record'. Nothing is recorded.
 *   0      removed, or the engine answered 13044
 *   1      'record' is null, or the object could not be created; logged
 *   other  the engine's code; logged */
MCAST6_API uint32_t MCAST6_DB_RemoveVlanElb(const L3Mc6ElbEntryExt *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseVlanElbIterator. Null when one could not be created; for an
 * ordinary one: KPI 163, not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanElbIterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanElbAllIterator(void);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanElbOutIfIterator(uint32_t ifIndex);

/* Over the members of a forwarding entry: vrId, vrfId, groupAddr and sourceAddr of 'entry' (not null); a fast scan when
 * 'fast' is not 0. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanElbMfibIterator(const L3Mc6MfibEntry *entry, uint32_t fast);

/* Over the members of an entry in one VLAN (vrId, vrfId, groupAddr, sourceAddr, instId of 'record'), into a handle that
 * the caller provides; it is written on success only. Release its object with MCAST6_DB_ReleaseVlanElbStatObject.
 *   0      done
 *   1      'resource' is null or a step failed; KPI 163; logged */
MCAST6_API uint32_t MCAST6_DB_CreateVlanElbScanIterator(const L3Mc6ElbEntryExt *record, Mcast6DbRes *resource);

/* Ensures that '*slot' holds a cached root iterator of 'object', positioned before the records of 'key': creates one
 * from 'descriptor' if the slot is 0, and resets it in any case. 'descriptor' is not used otherwise.
 *   0      done
 *   1      creating it failed (counts 285) or resetting it (counts 286); logged; the slot is unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateVlanElbIterCache(Mcast6DbHandle object, const Mcast6DbKeyDesc *descriptor,
                                                     const void *key, Mcast6DbHandle *slot);

/* A fast scan over the records of 'key'. It uses the scan handle, or an ordinary iterator while another fast scan is in
 * progress. All fast scans use one index. One thread at a time. A failure is logged and records kind 8; a failed
 * property is only logged. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanElbIteratorFast(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Releases an iterator, its object by MCAST6_DB_ReleaseVlanElbStatObject. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseVlanElbIterator(Mcast6DbRes *iterator);

/* Steps 'iterator' and fills 'record' with the next record. Neither may be null.
 *   0      a record
 *   1      the engine failed; logged; a failed step records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetVlanElbEntry(Mcast6DbRes *iterator, L3Mc6ElbEntryExt *record);

#ifdef __cplusplus
}
#endif

#endif
