/* The record that the two tables of layer-2 bridge domain routes share. */
#ifndef MCAST6_DB_L2_ROUTE_H
#define MCAST6_DB_L2_ROUTE_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 80 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L2McBdRtEntry {
    uint32_t vrId; /* key */
    uint32_t vrfId;
    uint32_t addrKind;   /* not stored; reads back as 1 */
    uint32_t rtKeyWord1; /* key */
    uint32_t rtKind;     /* not stored; reads back as 2 from the tagged table, as 1 from the untagged one */
    uint32_t rtKeyValue; /* stored whole; the key holds its low 16 bits */
    uint32_t rtKeyWord2; /* key */
    uint32_t spare1[3];  /* neither stored nor read back */
    uint16_t tagVid1;    /* key of the tagged table; the untagged one neither stores it nor reads it back */
    uint16_t tagVid2;    /* as tagVid1 */
    uint32_t rtAttr;
    uint32_t smoothVersion;
    uint32_t serviceStatus;
    uint32_t errCode;
    uint32_t spare2;          /* neither stored nor read back */
    uint64_t timeStampCreate; /* seconds; kept on a write unless it is 0, then the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} L2McBdRtEntry;

/* Sets the fields of an update on an engine object. Returns 0, or the OR of the engine's codes. */
typedef uint32_t (*L2McBdRtItemSetter)(uint64_t object, const L2McBdRtEntry *record);

#ifdef __cplusplus
}
#endif

#endif
