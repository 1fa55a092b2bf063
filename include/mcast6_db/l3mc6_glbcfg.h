/* l3mc6_glbcfg: the layer-3 global configuration. Table number 0.
 *
 * Each record carries a version that follows the global version of its key, which IPv4 and IPv6 share and which the
 * host's common multicast database library keeps: a write stamps the record with the next version, a delete first
 * advances the global one. */
#ifndef MCAST6_DB_L3MC6_GLBCFG_H
#define MCAST6_DB_L3MC6_GLBCFG_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 48 bytes, with the layout of the database record. Every member is stored, and read back as
 * stored. */
typedef struct L3Mc6GlbCfgEntry {
    uint32_t cfgKeyA; /* key */
    uint32_t cfgKeyB; /* key */
    uint32_t cfgKeyC; /* key */
    uint32_t cfgWord3;
    uint32_t smoothVersion;
    uint32_t glbVersion; /* a write sets it, in the caller's record too */
    uint32_t cfgWord6;
    uint32_t cfgWord7;
    uint64_t timeStampCreate; /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth; /* seconds; the time of the last write */
} L3Mc6GlbCfgEntry;

/* Creates an engine object, which the caller releases.
 *   0      done; counts 33
 *   other  the engine's code; KPI 159 */
MCAST6_API uint32_t MCAST6_DB_CreateGlbCfgObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 34. */
MCAST6_API void MCAST6_DB_ReleaseGlbCfgObject(Mcast6DbHandle object);

/* Converts 'record' into the 48-byte database record 'row'; both time stamps become the current time, from two readings
 * of the clock. Neither may be null. */
MCAST6_API void MCAST6_DB_SetGlbCfg(const L3Mc6GlbCfgEntry *record, void *row);

/* Converts the 48-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetGlbCfg(const void *row, L3Mc6GlbCfgEntry *record);

/* Writes the 12-byte primary key of 'record' and its key word, 0x0001000C. None may be null. */
MCAST6_API void MCAST6_DB_SetGlbCfgPriKey(const L3Mc6GlbCfgEntry *record, void *key, uint32_t *keyWord);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadGlbCfg(L3Mc6GlbCfgEntry *record);

/* Stamps 'record' with the next global version, which 'record' keeps whatever the result, and writes it.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 145
 *   1      'record' is null; logged; KPI 146
 *   other  the engine's code; KPI 146; logged; a failed write records kind 2, and then KPI 145 too */
MCAST6_API uint32_t MCAST6_DB_WriteGlbCfg(L3Mc6GlbCfgEntry *record);

/* Sets the smoothVersion of the stored record with the key of 'record'; no time stamp.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateGlbCfgSmoothVersion(const L3Mc6GlbCfgEntry *record);

/* Advances the global version of the key of 'record' and removes the record. The version stays advanced when the
 * removal fails.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 147
 *   1      'record' is null, or the version could not be advanced; logged; KPI 148
 *   other  the engine's code; KPI 148; logged; a failed removal records kind 4, and then KPI 147 too */
MCAST6_API uint32_t MCAST6_DB_DeleteGlbCfg(const L3Mc6GlbCfgEntry *record);

/* Sets glbVersion of 'record' (not null) to the global version of its key plus 1, or to 1 when that cannot be read. The
 * global version is unchanged. Returns 0. */
MCAST6_API uint32_t MCAST6_DB_SetGlbVerion(L3Mc6GlbCfgEntry *record);

/* Adds 1 to the global version of the key of 'record' (not null); when it cannot be read, glbVersion of 'record' is
 * written. Returns the code of the common library's update or write. */
MCAST6_API uint32_t MCAST6_DB_ProcessGlbVersion(const L3Mc6GlbCfgEntry *record);

/* Returns the glbVersion of the stored record with this key: 1 when there is none (15005), 0 when it cannot be read. */
MCAST6_API uint32_t MCAST6_DB_GetGlbVerFromGlbCfg(uint32_t cfgKeyA, uint32_t cfgKeyB, uint32_t cfgKeyC);

/* Iterators that the caller releases with MCAST6_DB_ReleaseGlbCfgIterator. Null when one could not be created; KPI 160.
 * Only the iterator over all records logs that. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateGlbCfgIterCommon(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateGlbCfgIter(void);

/* Over the records with these first two words of the key. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateGlbCfgIteratorByHashKey(uint32_t cfgKeyA, uint32_t cfgKeyB);

/* Releases an iterator with its object. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseGlbCfgIterator(Mcast6DbRes *iterator);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetGlbCfgEntry(Mcast6DbRes *iterator, L3Mc6GlbCfgEntry *record);

/* Returns the number of records with these first two words of the key; 0 on any failure as well, which is logged. */
MCAST6_API uint32_t MCAST6_DB_GetGlbCfgNum(uint32_t cfgKeyA, uint32_t cfgKeyB);

/* Counts all records; '*count' (not null) is written on success only.
 *   0      done
 *   other  the engine's code; not logged */
MCAST6_API uint32_t MCAST6_DB_GetGlbCfgCount(uint32_t *count);

#ifdef __cplusplus
}
#endif

#endif
