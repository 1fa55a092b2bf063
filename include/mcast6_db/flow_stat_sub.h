/* The record that the two tables of flow-statistics subscriptions share. */
#ifndef MCAST6_DB_FLOW_STAT_SUB_H
#define MCAST6_DB_FLOW_STAT_SUB_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 80 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct FlowStatSubEntry {
    uint32_t addrType; /* not stored; reads back as 2 */
    uint32_t keyId1;   /* key */
    uint32_t srcPid;
    uint32_t getFlag;         /* not stored; reads back as 1 from the bridge domain table, as 0 from the other */
    uint32_t keyId2;          /* key */
    Mcast6Ipv6Addr flowAddr1; /* key */
    Mcast6Ipv6Addr flowAddr2; /* key */
    uint32_t cfgWord2;
    uint32_t cfgWord3;
    uint32_t smoothVersion;
    uint64_t timeStampCreate; /* seconds; the time of the last write, unless l2mc6_flowstat_sub is given one */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} FlowStatSubEntry;

#ifdef __cplusplus
}
#endif

#endif
