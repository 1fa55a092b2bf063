/* l3mc6_mfib: the layer-3 multicast forwarding entries, one for each (VR, VRF, group, source). Table number 15.
 * Iterators and counts by query are in l3mc6_mfib_query.h. */
#ifndef MCAST6_DB_L3MC6_MFIB_H
#define MCAST6_DB_L3MC6_MFIB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 256 bytes. Unless said otherwise a member is stored, and read back as stored; the members named
 * 'attr' hold the host's forwarding attributes, which the library only copies. Members named 'host' are neither stored
 * nor changed. */
typedef struct L3Mc6MfibEntry {
    uint32_t vrId;            /* key */
    uint32_t vrfId;           /* key */
    uint32_t addrType;        /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr; /* key */
    /* key; all zero means any source by the host's convention; keys are compared literally */
    Mcast6Ipv6Addr sourceAddr;
    uint8_t attr1;
    uint8_t attr2;
    uint16_t attr3;
    uint32_t attr4;
    uint32_t inIfIndex;  /* incoming interface */
    uint32_t regIfIndex; /* register interface */
    uint32_t attr7;
    uint8_t host1;
    uint8_t attr8;
    uint32_t attr9; /* the low 16 bits are stored */
    uint32_t attr10;
    uint32_t attr11;
    uint32_t attr12;
    uint32_t host2;
    uint32_t attr13;
    uint32_t host3;
    uint8_t attr14[8];
    uint32_t attr15;
    uint32_t attr16;
    uint32_t host4;
    uint8_t mcStatSvcCtx[36]; /* statistics service context, opaque */
    uint32_t attr17[3];
    uint32_t attr18[3];
    uint32_t attr19[3];
    uint32_t appSrcPid; /* process that wrote the entry */
    uint32_t attr20;
    uint32_t smoothVersion;
    uint16_t attr21;
    uint16_t attr22;
    uint32_t attr23;
    uint32_t attr24;
    uint32_t host5;
    uint64_t timeStampCreate; /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
    uint8_t hostTail[24];
} L3Mc6MfibEntry;

/* The source process id of the record that was last converted for writing, or set by MCAST6_DB_SetL3MfibSourcePid. */
extern MCAST6_API uint32_t g_l3Mfib6Pid;

/* The object of the fast read; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l3Mfib6DbReadObjCache;

/* For the host's use; the library neither reads nor writes it. */
extern MCAST6_API Mcast6DbHandle g_l3Mfib6DbStatObjCache;

/* Returns g_l3Mfib6Pid. */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibSourcePid(void);

/* Sets g_l3Mfib6Pid without synchronisation. Converting and writing records set it too; the last value stays. */
MCAST6_API void MCAST6_DB_SetL3MfibSourcePid(uint32_t pid);

/* Converts 'record' into the 208-byte database record 'row'; both time stamps become the current time, and the record's
 * appSrcPid becomes g_l3Mfib6Pid. The reserved byte 60 is unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL3MainMfib(const L3Mc6MfibEntry *record, void *row);

/* The same as MCAST6_DB_SetL3MainMfib. */
MCAST6_API void MCAST6_DB_SetL3Mfib(const L3Mc6MfibEntry *record, void *row);

/* Converts the 208-byte database record 'row' into 'record'. Neither may be null. Returns the result of the source
 * address's conversion, 0. */
MCAST6_API uint32_t MCAST6_DB_GetL3MainMfib(const void *row, L3Mc6MfibEntry *record);

/* The same as MCAST6_DB_GetL3MainMfib. */
MCAST6_API uint32_t MCAST6_DB_GetL3Mfib(const void *row, L3Mc6MfibEntry *record);

/* Writes the key word of the primary key, 0x00010028, and the 40-byte key of 'record'. None may be null. */
MCAST6_API void MCAST6_DB_SetL3MfibKey(uint32_t *keyWord, void *key, const L3Mc6MfibEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 151
 *   other  the engine's code; KPI 114 */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object, none when it is 0; counts 152 in any case. */
MCAST6_API void MCAST6_DB_ReleaseL3MfibObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record' (not null) with an object of type 3.
 *   0      found; 'record' is filled
 *   15005  no such record
 *   other  the engine's code; logged; records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL3MfibEntry(L3Mc6MfibEntry *record, Mcast6DbHandle object);

/* Reads the record whose key is in 'record' (not null).
 *   0      found; 'record' is filled
 *   15005  no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL3Mfib(L3Mc6MfibEntry *record);

/* Ensures that '*slot' holds a cached object ready for use: creates one if the slot is 0, and resets it in any case. An
 * object whose first reset fails is not kept in the slot. Not for concurrent calls on one slot.
 *   0      done
 *   other  the engine's code; creating it failed (counts 153) or resetting it (counts 154); logged; the slot is
 *          unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateL3MfibObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle *slot);

/* Reads as MCAST6_DB_ReadL3Mfib does, with the cached object g_l3Mfib6DbReadObjCache: after the first call no object is
 * created or released. One thread at a time. Results are the same; a cached object that cannot be obtained is logged as
 * well. */
MCAST6_API uint32_t MCAST6_DB_ReadL3MfibFast(L3Mc6MfibEntry *record);

/* The same as MCAST6_DB_ReadL3MfibFast. */
MCAST6_API uint32_t MCAST6_DB_ReadL3MfibFastTemp(L3Mc6MfibEntry *record);

/* Writes 'record' (not null), in place of one with the same key; both time stamps become the current time, and the
 * record's appSrcPid becomes g_l3Mfib6Pid.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 93
 *   other  the engine's code; logged; KPI 94; a failed write records kind 2, and then KPI 93 too */
MCAST6_API uint32_t MCAST6_DB_WriteL3Mfib(const L3Mc6MfibEntry *record);

/* Re-stamps the stored record with the key of 'record' (not null): its smoothVersion, and the current time as its
 * smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL3MfibSmoothVersion(const L3Mc6MfibEntry *record);

/* Sets the statistics service context (36 bytes of 'record') and the smooth time of the stored record.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of two for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL3MfibMcStatSvcCtx(const L3Mc6MfibEntry *record);

/* Removes the record with the key of 'record' (not null).
 *   0      removed, and MCAST6_TRAP_DecreaseMfib6DbCnt of the host is called; or the engine answered 13044 (records
 *          kind 1, the host function is not called); KPI 95
 *   other  the engine's code; logged; KPI 96; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL3Mfib(const L3Mc6MfibEntry *record);

/* Steps 'iterator' and fills 'record' with the next record. Neither may be null. The iterator stays valid.
 *   0      a record
 *   60     the end, or the record was removed in the meantime
 *   other  the engine's code; logged; a failed step records kind 9, a failed read kind 0 */
MCAST6_API uint32_t MCAST6_DB_GetL3MfibEntry(Mcast6DbRes *iterator, L3Mc6MfibEntry *record);

/* Steps 'iterator' and fills 'record' with the next record. Neither may be null. At the end, and when the step fails,
 * the handle's object is released and set to 0; the caller still releases the handle itself. Records nothing.
 *   0      a record
 *   60     the end
 *   other  the engine's code; logged. A failed read (15005 included) fills 'record' from an empty database record and
 *          keeps the object */
MCAST6_API uint32_t MCAST6_DB_GetNextL3Mfib(Mcast6DbRes *iterator, L3Mc6MfibEntry *record);

#ifdef __cplusplus
}
#endif

#endif
