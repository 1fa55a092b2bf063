/* The records that the tables of layer-3 egress members share. */
#ifndef MCAST6_DB_L3_EGRESS_H
#define MCAST6_DB_L3_EGRESS_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 288 bytes: an outgoing interface of a layer-3 entry. Members named 'host' are neither stored nor
 * changed. */
typedef struct L3Mc6ElbEntry {
    uint32_t entryType; /* not stored; a constant of the table when read */
    uint32_t vrId;
    uint32_t vrfId;
    uint32_t addrType; /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr;
    Mcast6Ipv6Addr sourceAddr; /* all zero: any source */
    uint32_t elbAttrA;
    uint64_t elbAttrB;
    uint32_t elbAttrC;
    uint32_t instType; /* not stored; reads back as 0, a VLAN. 1 is a bridge domain */
    uint32_t instId;   /* the low 16 bits are stored */
    uint32_t outIfIndex;
    uint8_t host1[4];
    uint16_t elbAttrD;
    uint32_t elbAttrE;
    uint32_t zeroWord; /* not stored; reads back as 0 where the table says so */
    uint8_t host2[60];
    uint8_t elbCtxA[28]; /* opaque */
    uint8_t host3[28];
    uint8_t elbCtxB[12]; /* opaque */
    uint32_t elbAttrF;
    uint8_t host4[4];
    uint32_t elbWord;
    uint8_t host5[4];
    uint16_t elbHalfA;
    uint32_t elbAttrG;
    uint16_t elbHalfB;
    uint64_t timeStampCreate; /* seconds */
    uint64_t timeStampSmooth; /* seconds */
    uint8_t elbFlagC;
    uint8_t elbFlagD;
    uint8_t zeroByte; /* not stored; reads back as 0 where the table says so */
    uint8_t host6;
    uint32_t elbFlagA; /* the low byte is stored */
    uint32_t elbFlagB; /* the low byte is stored */
} L3Mc6ElbEntry;

/* The extended record, 296 bytes: the members of L3Mc6ElbEntry at the same offsets, further members in place of its
 * 'host' bytes, and two words at the end. */
typedef struct L3Mc6ElbEntryExt {
    uint32_t entryType; /* not stored; a constant of the table when read */
    uint32_t vrId;
    uint32_t vrfId;
    uint32_t addrType; /* not stored; reads back as 2 */
    Mcast6Ipv6Addr groupAddr;
    Mcast6Ipv6Addr sourceAddr; /* all zero: any source */
    uint32_t elbAttrA;
    uint64_t elbAttrB;
    uint32_t elbAttrC;
    uint32_t instType; /* not stored; reads back as 0, a VLAN */
    uint32_t instId;   /* VLAN; the low 16 bits are stored */
    uint32_t outIfIndex;
    uint32_t subIfIndex; /* sub-interface */
    uint16_t elbAttrD;
    uint32_t elbAttrE;
    uint32_t zeroWord; /* not stored; reads back as 0 from l3mc6_sub_elb */
    uint8_t host1[44];
    uint8_t elbExtCtx[16]; /* opaque */
    uint8_t elbCtxA[28];   /* opaque */
    uint8_t host2[28];
    uint8_t elbCtxB[12]; /* opaque */
    uint32_t elbAttrF;
    uint8_t host3[4];
    uint32_t elbWord;
    uint8_t vlanFlagA;
    uint8_t vlanFlagB;
    uint8_t vlanFlagC;
    uint8_t host4;
    uint16_t elbHalfA;
    uint32_t elbAttrG;
    uint16_t elbHalfB;
    uint64_t timeStampCreate; /* seconds */
    uint64_t timeStampSmooth; /* seconds */
    uint8_t elbFlagC;
    uint8_t elbFlagD;
    uint8_t host5;
    uint8_t elbFlagE;
    uint32_t elbFlagA; /* the low byte is stored */
    uint32_t elbFlagB; /* the low byte is stored */
    uint32_t host6;
    uint32_t elbExtA;
    uint32_t elbExtB;
} L3Mc6ElbEntryExt;

#ifdef __cplusplus
}
#endif

#endif
