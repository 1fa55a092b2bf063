/* The records that the tables of layer-2 egress members share. */
#ifndef MCAST6_DB_L2_EGRESS_H
#define MCAST6_DB_L2_EGRESS_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#pragma pack(push, 4)

/* The caller's record, 332 bytes, packed to 4: an outgoing interface or tunnel of a forwarding entry. Each table stores
 * some of the members; the header of the table says which, and which constants it writes when it reads. No table stores
 * or changes the members named 'host'. */
typedef struct L2Elb6Entry {
    uint32_t vrId;
    uint32_t vrfId;
    uint32_t addrType; /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr;
    Mcast6Ipv6Addr sourceAddr; /* all zero: any source */
    uint32_t domainType;       /* not stored; reads back as 0 from l2mc6_elb, as 1 from the bridge domain tables */
    union {
        uint32_t vlanId; /* l2mc6_elb: the low 16 bits are stored */
        uint32_t bdId;   /* bridge domain tables */
    };
    uint32_t outIfIndex;
    uint8_t host1[8];
    uint32_t mcId;
    uint32_t host2;
    uint64_t mcidVersion;
    uint32_t mfibVersion;
    uint16_t fwdIfType;
    uint16_t userVlanId;
    uint16_t fwdIfExtType;
    uint16_t fwdIfKind;
    uint32_t fixedWord1; /* not stored; a constant of the table when read */
    uint32_t fixedWord2; /* not stored; a constant of the table when read */
    uint16_t tagVid1;
    uint16_t tagVid2;
    uint32_t vxlanWord0;
    uint32_t vxlanWord1;
    uint32_t vxlanWord2;
    uint8_t vxlanByte;
    uint8_t isSelfBoard;
    uint8_t elbByte1;
    uint8_t vxlanFlag;
    uint32_t vxlanWords3to6[4];
    uint8_t vxlanByte2;
    uint8_t host3[3];
    uint32_t egressAttr;
    uint32_t pathFlags;
    uint32_t appSrcPid; /* process that wrote the entry */
    uint32_t appVersion;
    uint32_t smoothVersion;
    uint8_t elbData1[16];       /* opaque */
    uint8_t svcCtxHighPrio[28]; /* opaque */
    uint8_t host4[28];
    uint8_t svcCtxNormalPrio[12]; /* opaque */
    uint8_t serviceStatus[2];     /* opaque */
    uint8_t errCode[2];           /* opaque */
    uint64_t timeStampCreate;     /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth;     /* seconds; the time of the last write or update */
    uint8_t host5[60];
    uint32_t elbWord1;
    uint32_t elbWord2;
} L2Elb6Entry;

#pragma pack(pop)

/* Names a forwarding entry of a bridge domain, whose members an iterator walks. 48 bytes. */
typedef struct L2McBdElbKey {
    uint32_t vrId;
    uint32_t spare1;
    uint32_t bdId;
    uint32_t spare2;
    Mcast6Ipv6Addr groupAddr;
    Mcast6Ipv6Addr sourceAddr;
} L2McBdElbKey;

#ifdef __cplusplus
}
#endif

#endif
