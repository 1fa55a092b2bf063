/* l2mc6_bd_rt_vxlan_elb: the routes of bridge domains to VXLAN tunnels. Table number 32. */
#ifndef MCAST6_DB_L2MC6_BD_RT_VXLAN_ELB_H
#define MCAST6_DB_L2MC6_BD_RT_VXLAN_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 80 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L2McBdRtVxlanEntry {
    uint32_t vrId; /* key */
    uint32_t vrfId;
    uint32_t addrKind;   /* not stored; reads back as 1 */
    uint32_t rtKeyWord1; /* key */
    uint32_t rtKind;     /* not stored; reads back as 3 */
    uint32_t rtKeyValue; /* stored whole; the key holds its low 16 bits */
    uint32_t spare1;     /* neither stored nor read back */
    uint32_t rtKeyWord3; /* key, after rtKeyWord2 */
    uint32_t rtKeyWord2; /* key */
    uint32_t rtAttr;
    uint32_t spare2;    /* neither stored nor read back */
    uint32_t appSrcPid; /* process that wrote the entry */
    uint32_t smoothVersion;
    uint32_t serviceStatus;
    uint32_t errCode;
    uint32_t spare3;          /* neither stored nor read back */
    uint64_t timeStampCreate; /* seconds; kept on a write unless it is 0, then the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} L2McBdRtVxlanEntry;

/* Sets the fields of an update on an engine object. Returns 0, or the OR of the engine's codes. */
typedef uint32_t (*L2McBdRtVxlanItemSetter)(uint64_t object, const L2McBdRtVxlanEntry *record);

/* Stamps the 64-byte database record 'row': the creation time with that of 'record' or, when that is 0, the current
 * time; the smooth time with the current time. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2Mc6BdRtVxlanElbTimeStamp(void *row, const L2McBdRtVxlanEntry *record);

/* Converts 'record' into the 64-byte database record 'row'. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry *record, void *row);

/* Converts the 64-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2Mc6BdRtVxlanElb(const void *row, L2McBdRtVxlanEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 519
 *   other  the engine's code; counts 518 */
MCAST6_API uint32_t MCAST6_DB_CreateL2Mc6BdRtVxlanElbObject(uint32_t objType, uint32_t connType,
                                                            Mcast6DbHandle *object);

/* Releases an engine object; counts 520. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   60     no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2Mc6BdRtVxlanElb(L2McBdRtVxlanEntry *record);

/* Writes 'record'.
 *   0      written (counts 522), or the engine answered 13044 (records kind 1; counts 521 then 522)
 *   1      'record' is null; logged; counts 521
 *   other  the engine's code; logged; counts 521; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry *record);

/* Item setters for the updates: smoothVersion and the smooth time; or these and serviceStatus and errCode. No argument
 * is checked.
 *   0      done
 *   other  the OR of the engine's codes; every setter is called in any case */
MCAST6_API uint32_t MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbSmthItem(Mcast6DbHandle object,
                                                                 const L2McBdRtVxlanEntry *record);
MCAST6_API uint32_t MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbItem(Mcast6DbHandle object, const L2McBdRtVxlanEntry *record);

/* Updates the fields of the stored record with the key of 'record' that 'itemSetter' (not null) sets.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  what 'itemSetter' returned, or the engine's code; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper(const L2McBdRtVxlanEntry *record,
                                                          L2McBdRtVxlanItemSetter itemSetter);

/* MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper with MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbSmthItem; 'ignored' is not used. */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Mc6BdRtVxlanElbSmoothVersion(const L2McBdRtVxlanEntry *record,
                                                                   L2McBdRtVxlanItemSetter ignored);

/* MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper with MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbItem; 'ignored' is not used. */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry *record,
                                                      L2McBdRtVxlanItemSetter ignored);

/* Removes the record with the key of 'record'.
 *   0      removed (counts 524), or the engine answered 13044 (records kind 1; counts 523 then 524)
 *   1      'record' is null; logged; counts 523
 *   other  the engine's code; logged; counts 523; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed (logged); a failed step records kind 9, a failed
 *          read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry(Mcast6DbRes *iterator, L2McBdRtVxlanEntry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator. Null when one could not be
 * created; counts 525; logged, except by the common constructor. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterCommon(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over the records with vrId, vrfId and appSrcPid of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid(const L2McBdRtVxlanEntry *record);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6BdRtVxlanElbIter(void);

/* Releases an iterator with its object (counts 520). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
