/* l2mc6_elb: the outgoing interfaces of VLAN forwarding entries. Table number 7.
 *
 * Of L2Elb6Entry the table stores: vrId, vlanId, userVlanId, groupAddr, sourceAddr and outIfIndex, which are the
 * key; vrfId, fwdIfExtType, fwdIfType, isSelfBoard, elbByte1, pathFlags, appSrcPid, mcidVersion, mfibVersion, mcId,
 * smoothVersion, elbWord1, elbWord2, elbData1, both service contexts, serviceStatus, errCode and both time stamps.
 * Reading sets fixedWord1 to 0 and fixedWord2 to 5. */
#ifndef MCAST6_DB_L2MC6_ELB_H
#define MCAST6_DB_L2MC6_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The key record of MCAST6_DB_CreateL2Elb6IterByMcid, 48 bytes. */
typedef struct L2Elb6McidKey {
    uint32_t keyWord0; /* vrId */
    uint32_t spare1;
    uint32_t keyWord1; /* vlanId; the low 16 bits are used */
    uint32_t spare2;
    Mcast6Ipv6Addr keyAddr0; /* group */
    Mcast6Ipv6Addr keyAddr1; /* source */
} L2Elb6McidKey;

/* Converts 'record' into the 168-byte database record 'row'; both time stamps become the current time. The two bytes at
 * 54 are unchanged. Neither may be null. Returns the result of the copy of elbData1, 0. */
MCAST6_API uint32_t MCAST6_DB_SetL2Elb6(const L2Elb6Entry *record, void *row);

/* Converts the 168-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2Elb6(const void *row, L2Elb6Entry *record);

/* Writes the key word of the primary key, 0x0001002C, and the 44-byte key of 'record'. None may be null. */
MCAST6_API void MCAST6_DB_SetL2Elb6Key(uint32_t *keyWord, void *key, const L2Elb6Entry *record);

/* These read fields from the record at the current position of 'object'. Neither argument is checked. A member whose
 * getter fails is unchanged, except vlanId, which becomes 0. */

/* serviceStatus, both service contexts, errCode. Returns the OR of the codes of the getters and copies. */
MCAST6_API uint32_t MCAST6_DB_GetL2Elb6CtxItem(Mcast6DbHandle object, L2Elb6Entry *record);

/* Both addresses. Returns the OR of the codes of the getters. */
MCAST6_API uint32_t MCAST6_DB_GetL2Elb6AddrItem(Mcast6DbHandle object, L2Elb6Entry *record);

/* All fields except elbByte1, elbWord1, elbWord2 and elbData1, and the constants. A failure is logged with the OR of
 * the codes. A null 'record' is ignored. */
MCAST6_API void MCAST6_DB_GetL2Elb6Item(Mcast6DbHandle object, L2Elb6Entry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 7
 *   1      the engine failed; logged with its code */
MCAST6_API uint32_t MCAST6_DB_CreateL2Elb6Object(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 8. */
MCAST6_API void MCAST6_DB_ReleaseL2Elb6Object(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or the object could not be created; logged
 *   15005  no such record
 *   other  the engine's code; logged; records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2Elb6(L2Elb6Entry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 27
 *   1      'record' is null, or a step failed; KPI 28; logged; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2Elb6(const L2Elb6Entry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1), or the update failed (logged, records kind 6)
 *   1      'record' is null, or the object could not be created or set; logged */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Elb6SmoothVersion(const L2Elb6Entry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 29
 *   1      'record' is null, or a step failed; KPI 30; logged; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2Elb6(const L2Elb6Entry *record);

/* Steps 'iterator' and fills 'record' with the next record, read as a whole row.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2Elb6Entry(Mcast6DbRes *iterator, L2Elb6Entry *record);

/* Steps 'iterator' (not null) and fills 'record' with the next record, read by MCAST6_DB_GetL2Elb6Item.
 *   0      the iterator moved, whether or not the read succeeded
 *   1      the step failed; logged, nothing is recorded
 *   60     the end */
MCAST6_API uint32_t MCAST6_DB_GetNextL2Elb6(Mcast6DbRes *iterator, L2Elb6Entry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2Elb6Iterator. Null when one could not be created. */

/* Over all records. Failures are logged; a failed root iterator records kind 7, a failed allocation kind 8. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Elb6Iter(void);

/* Over the records that match 'key', or over all when both are null. Failures are logged; all but a failed property
 * record kind 8. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Elb6Iterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* MCAST6_DB_CreateL2Elb6Iterator over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Elb6AllIterator(void);

/* MCAST6_DB_CreateL2Elb6Iterator over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Elb6IterByIfindex(uint32_t ifIndex);

/* MCAST6_DB_CreateL2Elb6Iterator over the members of the entry that 'key' (not null) names. Despite its name the key
 * holds no multicast id. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Elb6IterByMcid(const L2Elb6McidKey *key);

/* Over the members of an entry. An object that could not be created is logged and records kind 0, a failed allocation
 * kind 8 (logged); a failed property is logged, a failed root iterator is not. The addresses must not be null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Elb6IterBySrcAddr(uint32_t vrId, uint16_t vlanId,
                                                            const Mcast6Ipv6Addr *sourceAddr,
                                                            const Mcast6Ipv6Addr *groupAddr);

/* Returns the number of members of an entry: 0 when the count fails (logged, records kind 0; 15005 does neither), and 1
 * when no object can be created (logged, records kind 0), which cannot be told from a count of 1. The addresses must
 * not be null. */
MCAST6_API uint32_t MCAST6_DB_L2Elb6CountBySource(uint32_t vrId, uint16_t vlanId, const Mcast6Ipv6Addr *sourceAddr,
                                                  const Mcast6Ipv6Addr *groupAddr);

/* Releases an iterator with its object (counts 8). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2Elb6Iterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
