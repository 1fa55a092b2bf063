/* The records that the three tables of layer-3 bridge domain members share. */
#ifndef MCAST6_DB_L3_BD_EGRESS_H
#define MCAST6_DB_L3_BD_EGRESS_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#pragma pack(push, 4)

/* The caller's record, 280 bytes, packed to 4: an outgoing interface or tunnel of a layer-3 entry in a bridge domain.
 * Each table stores some of the members; the header of the table says which. The members named 'bdElbAttr' and
 * 'tnlAttr' hold the host's attributes, which the library only copies. No table stores or changes the members named
 * 'host'. */
typedef struct L3BdElb6Entry {
    uint32_t elbKind; /* not stored; a constant of the table when read */
    uint32_t vrId;
    uint32_t vrfId;
    uint32_t addrType; /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr;
    Mcast6Ipv6Addr sourceAddr; /* all zero: any source */
    uint32_t bdElbAttr1;
    uint8_t host1[4];
    uint64_t bdElbAttr2;
    uint32_t bdElbAttr3;
    uint32_t fixedOne;   /* not stored; reads back as 1 */
    uint32_t bdElbAttr4; /* the bridge domain */
    uint32_t bdElbAttr5; /* the outgoing interface */
    uint8_t host2[4];
    uint8_t bdElbAttr6; /* reads back as 16 bits, which overwrites the next byte too */
    uint8_t host3[7];
    uint32_t elbSubKind; /* not stored; a constant of the table when read */
    uint16_t bdElbAttr7;
    uint16_t bdElbAttr8;
    uint8_t host4[4];
    uint32_t tnlAttr1;
    uint32_t tnlAttr2;
    uint8_t host5[2];
    uint8_t tnlAttr3;
    uint8_t host6;
    uint32_t tnlAttr4;
    uint32_t bdElbAttr9;
    uint32_t bdElbAttr10;
    uint8_t host7[12];
    uint8_t tnlAttr5[16];    /* opaque */
    uint8_t bdElbAttr11[28]; /* opaque */
    uint8_t host8[28];
    uint64_t bdElbAttr12;
    uint32_t bdElbAttr13;
    uint32_t appSrcPid; /* process that wrote the entry */
    uint32_t bdElbAttr14;
    uint32_t smoothVersion;
    uint8_t mlagRole;
    uint8_t isMlagDual;
    uint16_t inIfhasMlag;
    uint16_t bdElbAttr15;
    uint8_t host9[2];
    uint32_t bdElbAttr16;
    uint16_t bdElbAttr17;
    uint8_t host10[6];
    uint64_t timeStampCreate; /* seconds; the time of the last write, the caller's value is ignored */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
    uint8_t host11;
    uint8_t tnlAttr6;
    uint8_t host12;
    uint8_t bdElbAttr18;
    uint32_t bdElbAttr19; /* the low byte is stored */
} L3BdElb6Entry;

#pragma pack(pop)

/* Names a forwarding entry, whose members an iterator walks: VR, VRF, group and source. 40 bytes. */
typedef struct L3BdElb6VsgKey {
    uint32_t wordA;
    uint32_t wordB;
    Mcast6Ipv6Addr addrC;
    Mcast6Ipv6Addr addrD;
} L3BdElb6VsgKey;

#ifdef __cplusplus
}
#endif

#endif
