/* l2mc6_querier: the MLD querier elected in each bridge domain. Table number 12. */
#ifndef MCAST6_DB_L2MC6_QUERIER_H
#define MCAST6_DB_L2MC6_QUERIER_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 56 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L2Mc6QuerierEntry {
    uint32_t vrId;     /* key */
    uint32_t bdId;     /* key */
    uint32_t addrType; /* not stored; reads back as 2 */
    Mcast6Ipv6Addr querierAddr;
    uint32_t ifIndex;
    uint32_t version; /* the low 8 bits are stored */
    uint32_t smoothVersion;
    uint64_t timeStampCreate; /* seconds; 0: the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} L2Mc6QuerierEntry;

/* Converts 'record' into the 52-byte database record 'row', and back. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2Mc6Querier(const L2Mc6QuerierEntry *record, void *row);
MCAST6_API void MCAST6_DB_GetL2Mc6Querier(const void *row, L2Mc6QuerierEntry *record);

/* Makes an engine object, which the caller releases.
 *   0      done; counts 600
 *   1      failed; logged */
MCAST6_API uint32_t MCAST6_DB_CreateL2Mc6QuerierObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 601. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6QuerierObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or a step failed; a failed read is logged and records kind 0
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadL2Mc6Querier(L2Mc6QuerierEntry *record);

/* Writes 'record'.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 300
 *   1      'record' is null, or a step failed; KPI 301; a failed write is logged and records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2Mc6Querier(const L2Mc6QuerierEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044
 *   1      'record' is null, or a step failed; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2Mc6QuerierSmoothVersion(const L2Mc6QuerierEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044; KPI 302
 *   1      'record' is null, or a step failed; KPI 303; a failed removal is logged and records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2Mc6Querier(const L2Mc6QuerierEntry *record);

/* Make an iterator over all records, and over those of one interface. The caller owns the handle. Null when it could
 * not be made; logged. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6QuerierIter(void);
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2Mc6QuerierIterByIfIndex(uint32_t ifIndex);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      a parameter is null, or a step failed; a failed step is logged and records kind 9
 *   60     the end, or the record vanished meanwhile */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6QuerierEntry(Mcast6DbRes *iterator, L2Mc6QuerierEntry *record);

/* Releases an iterator with its object. Null: nothing happens. */
MCAST6_API void MCAST6_DB_ReleaseL2Mc6QuerierIter(Mcast6DbRes *iterator);

/* Counts all records; '*count' (not null) is written on success.
 *   0      done
 *   other  1 when the object could not be made, else the engine's code */
MCAST6_API uint32_t MCAST6_DB_GetL2Mc6QuerierCount(uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
