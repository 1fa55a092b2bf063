/* The record that the two tables of layer-2 forwarding entries share. */
#ifndef MCAST6_DB_L2_MFIB_H
#define MCAST6_DB_L2_MFIB_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 144 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L2Mc6MfibEntry {
    uint32_t addrType;         /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr;  /* key */
    Mcast6Ipv6Addr sourceAddr; /* key; all zero: any source */
    uint32_t domainType;       /* not stored; reads back as 1 from the bridge domain table, as 0 from the VLAN table */
    uint32_t domainId;         /* key; bridge domain or VLAN */
    uint32_t vrId;             /* key */
    uint32_t vrfId;
    /* The VLAN table stores the mask lengths. From the bridge domain table they read back as 0; reading single fields
     * leaves them unchanged there. */
    uint8_t groupMaskLen;
    uint8_t sourceMaskLen;
    uint32_t pathFlags;
    uint32_t mcId;
    uint64_t mcidVersion;
    uint32_t mfibVersion;
    uint8_t svcCtxHighPrio[12];   /* opaque */
    uint8_t svcCtxNormalPrio[12]; /* opaque */
    uint32_t appSrcPid;           /* process that wrote the entry */
    uint32_t appVersion;
    uint32_t smoothVersion;
    uint8_t serviceStatus[2]; /* opaque */
    uint32_t hppErrCode;      /* 5: hash conflict */
    uint32_t enpErrCode;
    uint64_t timeStampCreate; /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} L2Mc6MfibEntry;

#ifdef __cplusplus
}
#endif

#endif
