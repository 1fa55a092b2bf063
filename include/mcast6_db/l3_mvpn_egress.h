/* The records that the two tables of MVPN tunnel members share. */
#ifndef MCAST6_DB_L3_MVPN_EGRESS_H
#define MCAST6_DB_L3_MVPN_EGRESS_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 224 bytes: an MVPN tunnel member of a layer-3 entry. The members named 'memberAttr', 'tunnel'
 * and 'sub' hold the host's attributes, which the library only copies; l3mc6_mvpn_tnl_elb stores the tunnel words,
 * l3mc6_mvpn_tnl_subelb those from outIfIndex to subByte3. */
typedef struct L3McMvpnTnlElbEntry {
    uint32_t entryType;        /* not stored; reads back as 20 */
    uint32_t vrId;             /* key */
    uint32_t vrfId;            /* key */
    uint32_t addrType;         /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr;  /* key */
    Mcast6Ipv6Addr sourceAddr; /* key; all zero: any source */
    uint32_t memberAttr1;
    uint32_t kindWord; /* not stored; reads back as 5 */
    uint64_t memberAttr2;
    uint32_t memberAttr3;
    uint32_t tunnelWord1;
    uint32_t tunnelWord2;
    uint32_t tunnelWord3;
    uint32_t tunnelWord4;
    uint32_t tunnelWord5;
    uint32_t tunnelWord6;
    uint32_t tunnelWord7;
    uint32_t tunnelWord8;
    uint32_t tunnelWord9;
    uint32_t outIfIndex; /* key of l3mc6_mvpn_tnl_subelb */
    uint32_t subKeyWord; /* key of l3mc6_mvpn_tnl_subelb */
    uint32_t l2IfIndex;
    uint32_t subWord1;
    uint32_t subWord2;
    uint32_t subWord3;
    uint8_t subByte1;
    uint8_t subByte2;
    uint8_t subByte3;
    uint8_t host1;                /* neither stored nor changed */
    uint8_t tunnelData[16];       /* opaque */
    uint8_t svcCtxHighPrio[28];   /* opaque; stored by l3mc6_mvpn_tnl_subelb */
    uint8_t svcCtxNormalPrio[12]; /* opaque; stored by l3mc6_mvpn_tnl_subelb */
    uint32_t appSrcPid;           /* process that wrote the entry */
    uint32_t appVersion;          /* stored by l3mc6_mvpn_tnl_elb */
    uint32_t smoothVersion;
    uint8_t serviceStatus[2];
    uint8_t errCode[2];       /* stored by l3mc6_mvpn_tnl_subelb */
    uint64_t timeStampCreate; /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} L3McMvpnTnlElbEntry;

/* Names a forwarding entry, whose members an iterator walks. 40 bytes. */
typedef struct L3McMvpnElbKey {
    uint32_t vrId;
    uint32_t vrfId;
    Mcast6Ipv6Addr groupAddr;
    Mcast6Ipv6Addr sourceAddr;
} L3McMvpnElbKey;

#ifdef __cplusplus
}
#endif

#endif
