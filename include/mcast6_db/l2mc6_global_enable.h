/* l2mc6_global_enable: the global MLD switches. Table number 3; only a failed iterator allocation is recorded. */
#ifndef MCAST6_DB_L2MC6_GLOBAL_ENABLE_H
#define MCAST6_DB_L2MC6_GLOBAL_ENABLE_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 40 bytes. Every member is stored, and read back as stored. */
typedef struct MldGlobalEntry {
    uint32_t keyId1; /* key */
    uint32_t keyId2; /* key */
    uint32_t cfgWord1;
    uint32_t smoothVersion;
    uint8_t serviceStatus[2];
    uint8_t errCode[2];
    uint64_t timeStampCreate; /* seconds; kept on a write unless it is 0, then the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} MldGlobalEntry;

/* Converts 'record' into the 36-byte database record 'row'. Neither may be null. */
MCAST6_API void MCAST6_DB_SetMldGlbItem(const MldGlobalEntry *record, void *row);

/* Converts the 36-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetMldGlbItem(const void *row, MldGlobalEntry *record);

/* Writes the key word of the primary key, 0x00010008, into the descriptor's first word and the 8-byte key of 'record'
 * to 'key'. The caller zeroes the rest of the descriptor. None may be null. */
MCAST6_API void MCAST6_DB_SetMldGlbKey(Mcast6DbKeyDesc *descriptor, void *key, const MldGlobalEntry *record);

/* Sets the smooth time stamp of 'object' to the current time, and the creation time as well when 'flag' is not 0.
 *   0      done
 *   other  the OR of the engine's codes; a failed setter does not stop the other */
MCAST6_API uint32_t MCAST6_DB_SetMldGlbTimeStamp(Mcast6DbHandle object, uint32_t flag);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 37
 *   1      the engine failed; logged with its code */
MCAST6_API uint32_t MCAST6_DB_CreateMldGlobalObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 38. */
MCAST6_API void MCAST6_DB_ReleaseMldGlobalObject(Mcast6DbHandle object);

/* Writes 'record'.
 *   0      written; KPI 49
 *   1      'record' is null, or a step failed; the engine's 13044 (present already) is a failure too; KPI 50; only a
 *          failed write (and a failed create) is logged */
MCAST6_API uint32_t MCAST6_DB_WriteMldGlobal(const MldGlobalEntry *record);

/* Sets serviceStatus, smoothVersion, errCode and the smooth time of the stored record with the key of 'record'.
 *   0      done, or the engine answered 13044; KPI 49
 *   1      'record' is null, or a step failed; KPI 50; failed setters and a failed update are logged */
MCAST6_API uint32_t MCAST6_DB_UpdateMldGlobal(const MldGlobalEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion, and the current time as its smooth time.
 *   0      done, or the engine answered 13044; KPI 49
 *   1      'record' is null, or a step failed; KPI 50; logged */
MCAST6_API uint32_t MCAST6_DB_UpdateMldGlobalSmoothVersion(const MldGlobalEntry *record);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or a step failed; a failed read is logged
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadMldGlobal(MldGlobalEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044; KPI 51
 *   1      'record' is null, or a step failed; KPI 52; a failed removal is logged */
MCAST6_API uint32_t MCAST6_DB_RemoveMldGlobal(const MldGlobalEntry *record);

/* Creates an iterator over all records, which the caller releases with MCAST6_DB_ReleaseMldGlbCfgIter. Null when it
 * could not be created: a failed property is logged, a failed allocation is logged and recorded as kind 8. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateMldGlbCfgIter(void);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetMldGlbEntry(Mcast6DbRes *iterator, MldGlobalEntry *record);

/* Releases an iterator with its object (counts 38). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseMldGlbCfgIter(Mcast6DbRes *iterator);

/* Counts all records; '*count' (not null) is written on success only.
 *   0      done
 *   1      the object could not be created
 *   other  the engine's code; not logged */
MCAST6_API uint32_t MCAST6_DB_GetMldGlbCfgCount(uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
