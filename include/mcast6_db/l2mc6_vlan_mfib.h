/* l2mc6_vlan_mfib: the layer-2 forwarding entries of VLANs. Table number 8. */
#ifndef MCAST6_DB_L2MC6_VLAN_MFIB_H
#define MCAST6_DB_L2MC6_VLAN_MFIB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_mfib.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The source process id of the record that was last converted for writing, or set by
 * MCAST6_DB_SetVlanMfib6SourcePid. */
extern MCAST6_API uint32_t g_l2McVlanMfib6Pid;

/* The object of the fast read; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l2Mfib6DbReadObjCache;

/* Returns g_l2McVlanMfib6Pid. */
MCAST6_API uint32_t MCAST6_DB_GetVlanMfib6SourcePid(void);

/* Sets g_l2McVlanMfib6Pid. */
MCAST6_API void MCAST6_DB_SetVlanMfib6SourcePid(uint32_t pid);

/* Converts 'record' into the 128-byte database record 'row'; both time stamps become the current time, and the record's
 * appSrcPid becomes g_l2McVlanMfib6Pid. Neither may be null. Returns the result of the copy of serviceStatus, 0. */
MCAST6_API uint32_t MCAST6_DB_SetVlanMfib6(const L2Mc6MfibEntry *record, void *row);

/* Converts the 128-byte database record 'row' into 'record'. Neither may be null. Returns the result of the copy of
 * serviceStatus, 0. */
MCAST6_API uint32_t MCAST6_DB_GetVlanMfib6(const void *row, L2Mc6MfibEntry *record);

/* These read fields from the record at the current position of 'object'. Neither argument is checked. A member whose
 * getter fails is unchanged. */

/* Both service contexts. Returns the OR of the codes of the getters and copies. */
MCAST6_API uint32_t MCAST6_DB_GetVlanMfib6SvcCtx(Mcast6DbHandle object, L2Mc6MfibEntry *record);

/* Both addresses; addrType becomes 2, domainType 0. Returns the code of the source address's getter alone. */
MCAST6_API uint32_t MCAST6_DB_GetVlanMfib6Addr(Mcast6DbHandle object, L2Mc6MfibEntry *record);

/* All fields. Failures are logged with the OR of the codes, except those of the service contexts and of the group
 * address. A null 'record' is ignored. */
MCAST6_API void MCAST6_DB_GetVlanMfib6Item(Mcast6DbHandle object, L2Mc6MfibEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 0, the success code
 *   1      the engine failed; logged with its code */
MCAST6_API uint32_t MCAST6_DB_CreateL2Mfib6Object(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 1. */
MCAST6_API void MCAST6_DB_ReleaseL2Mfib6Object(Mcast6DbHandle object);

/* Reads the record whose key is in 'record' (not null) with an object of type 3.
 *   0      found; 'record' is filled
 *   1      the read failed; logged; records kind 0
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadVlanMfib6Entry(L2Mc6MfibEntry *record, Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or a step failed; logged; a failed read records kind 0
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadVlanMfib6(L2Mc6MfibEntry *record);

/* Ensures that '*slot' holds an object ready for use: creates one if the slot is 0, resets the one it holds otherwise.
 * Not for concurrent calls on one slot.
 *   0      done
 *   1      the engine failed; logged; the slot is unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateL2Mfib6ObjectCache(uint32_t objType, uint32_t connType, Mcast6DbHandle *slot);

/* Reads as MCAST6_DB_ReadVlanMfib6 does, with the cached object g_l2Mfib6DbReadObjCache; 'record' must not be null. One
 * thread at a time. Results are the same; an object that cannot be obtained is logged as well. */
MCAST6_API uint32_t MCAST6_DB_ReadVlanMfib6Fast(L2Mc6MfibEntry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 3
 *   1      'record' is null, or a step failed; KPI 4; logged; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteVlanMfib6(const L2Mc6MfibEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null, or a step failed; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateVlanMfib6SmoothVersion(const L2Mc6MfibEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 5
 *   1      'record' is null, or a step failed; KPI 6; logged; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteVlanMfib6(const L2Mc6MfibEntry *record);

/* Steps 'iterator' and fills 'record' with the next record, read as a whole row.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetVlanMfib6Entry(Mcast6DbRes *iterator, L2Mc6MfibEntry *record);

/* Steps 'iterator' and fills 'record' with the next record, read by MCAST6_DB_GetVlanMfib6Item; 'record' may be null.
 *   0      the iterator moved, whether or not the read succeeded
 *   1      'iterator' is null, or the step failed; a failed step is logged, nothing is recorded
 *   60     the end */
MCAST6_API uint32_t MCAST6_DB_GetNextVlanMfib6(Mcast6DbRes *iterator, L2Mc6MfibEntry *record);

/* Iterators that the caller owns and releases with MCAST6_DB_ReleaseVlanMfib6Iterator. Null when one could not be
 * created; a failed allocation records kind 8. */

/* Over all records. Failures are logged; a failed root iterator records kind 7. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanMfib6Iter(void);

/* Over the records of one VR, group and VLAN. A failed property or allocation is logged; an object that could not be
 * created is logged and records kind 0. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanMfib6IterByGrpAddr(uint32_t vrId, uint32_t vlanId,
                                                               const Mcast6Ipv6Addr *groupAddr);

/* Over the records of one VR and VLAN. Failures are reported as for the iterator before. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanMfib6IterByVlanId(uint32_t vrId, uint32_t vlanId);

/* Over all records, in the order of their VLAN. A failed property or allocation, and an object that could not be
 * created, is logged. */
MCAST6_API Mcast6DbRes *MCAST6_DB_VlanMfib6_ScanGetVlanIterSorted(void);

/* Over the records with error code 5, a hash conflict, into a handle that the caller provides; it is written on success
 * only. Release its object with MCAST6_DB_ReleaseL2Mfib6Object; the memory of the handle is the caller's.
 *   0      done
 *   1      a step failed; a failed property is logged; an object that could not be created is logged and records kind
 *          0 */
MCAST6_API uint32_t MCAST6_DB_CreateVlanMfib6IterByErrCode(Mcast6DbRes *resource);

/* Releases an iterator with its object. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseVlanMfib6Iterator(Mcast6DbRes *iterator);

/* Counts all records; '*count' (not null) is written on success only.
 *   0      done
 *   1      a step failed */
MCAST6_API uint32_t MCAST6_DB_GetVlanMfib6Count(uint32_t *count);

/* Returns the number of records of one VR and VLAN: 0 when the count fails (logged, records kind 0; 15005 does
 * neither), and 1 when no object can be created (records kind 0), which cannot be told from a count of 1. */
MCAST6_API uint32_t MCAST6_DB_VlanMfib6CountByVlanId(uint32_t vrId, uint32_t vlanId);

/* Counts the records with error code 5, a hash conflict. '*count' (not null) is 0 after a failed count.
 *   0      done
 *   1      the object could not be created ('*count' is unchanged; logged; records kind 0), or the count failed
 *          (logged, with 0 in place of 15005; records kind 0) */
MCAST6_API uint32_t MCAST6_DB_GetL2Mfib6HashConflictTotalNum(uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
