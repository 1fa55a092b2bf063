/* l2mc6_bd_enable: the layer-2 multicast (MLD snooping) switch of each bridge domain. Table number 26. */
#ifndef MCAST6_DB_L2MC6_BD_ENABLE_H
#define MCAST6_DB_L2MC6_BD_ENABLE_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 80 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L2McBdEnableEntry {
    uint32_t keyId1;   /* key */
    uint32_t addrType; /* key; reads back as 2 */
    uint32_t getFlag;  /* not stored; reads back as 1 */
    uint32_t keyId2;   /* key */
    uint32_t spare1;   /* neither stored nor read back */
    uint32_t attrA;
    uint32_t mldVersion;
    uint32_t attrB;
    uint32_t smoothVersion;
    uint32_t pathFlags;
    uint8_t serviceStatus[2];
    uint8_t errCode[2];
    uint64_t timeStampCreate; /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
    uint32_t l2mcEnable;
    uint8_t attrC[12];
} L2McBdEnableEntry;

/* Converts 'record' into the 68-byte database record 'row'; both time stamps become the current time. Neither may be
 * null. */
MCAST6_API void MCAST6_DB_SetL2McBdEnable(const L2McBdEnableEntry *record, void *row);

/* Converts the 68-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL2McBdEnable(const void *row, L2McBdEnableEntry *record);

/* Stamps the 68-byte database record 'row' with the current time: the smooth time, and the creation time when 'flag' is
 * not 0. */
MCAST6_API void MCAST6_DB_SetStructMldBdTimeStamp(uint32_t flag, void *row);

/* Sets the smooth time stamp of 'object' to the current time, and the creation time as well when 'flag' is not 0.
 *   0      done
 *   other  the OR of the engine's codes; a failed setter does not stop the other */
MCAST6_API uint32_t MCAST6_DB_SetMldBdTimeStamp(Mcast6DbHandle object, uint32_t flag);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 452
 *   other  the engine's code; counts 453 */
MCAST6_API uint32_t MCAST6_DB_CreateL2McBdEnableObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 454. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdEnableObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   60     no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL2McBdEnable(L2McBdEnableEntry *record);

/* Writes 'record'; both time stamps become the current time, the caller's values are ignored.
 *   0      written, or the engine answered 13044 (records kind 1); counts 455
 *   1      'record' is null; logged; counts 456
 *   other  the engine's code; logged; counts 456; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL2McBdEnable(const L2McBdEnableEntry *record);

/* Sets on 'object' the fields that MCAST6_DB_UpdateL2BdEnableCfg changes: mldVersion, l2mcEnable, serviceStatus,
 * errCode, smoothVersion, pathFlags and the smooth time stamp, in this order. Neither argument is checked.
 *   0      done
 *   other  the OR of the engine's codes, also logged; every setter is called in any case */
MCAST6_API uint32_t MCAST6_DB_SetBdEnableUpdateData(Mcast6DbHandle object, const L2McBdEnableEntry *record);

/* Updates the configuration of the stored record with the key of 'record'; the creation time is unchanged. A failed
 * setter does not stop the update. Only the object is counted, and nothing is recorded.
 *   0      done
 *   1      'record' is null; logged
 *   other  the OR of the engine's codes, 13044 (no such record) included; logged */
MCAST6_API uint32_t MCAST6_DB_UpdateL2BdEnableCfg(const L2McBdEnableEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL2McBdEnableSmoothVersion(const L2McBdEnableEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); counts 457
 *   1      'record' is null; logged; counts 458
 *   other  the engine's code; logged; counts 458; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL2McBdEnable(const L2McBdEnableEntry *record);

/* Creates an iterator over all records, which the caller releases with MCAST6_DB_ReleaseL2McBdEnableIterator. Null when
 * it could not be created; logged; counts 459. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL2McBdEnableIter(void);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; logged; a failed step records kind 9, a failed read
 *          kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL2McBdEnableEntry(Mcast6DbRes *iterator, L2McBdEnableEntry *record);

/* Releases an iterator with its object (counts 454). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL2McBdEnableIterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
