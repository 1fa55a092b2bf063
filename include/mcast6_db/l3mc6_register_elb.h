/* l3mc6_register_elb: the register interfaces of layer-3 entries, one for each (VR, VRF, group, source). It records no
 * error statistics. An egress record can be converted into a register record, and a register record read as an egress
 * record. */
#ifndef MCAST6_DB_L3MC6_REGISTER_ELB_H
#define MCAST6_DB_L3MC6_REGISTER_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Kinds of instance. */
enum { L3_REG_INST_VLAN = 0, L3_REG_INST_BRIDGE_DOMAIN = 1, L3_REG_INST_NONE = 2 };

/* The caller's record, 128 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L3Mc6RegOifEntry {
    uint32_t vrId;             /* key */
    uint32_t vrfId;            /* key */
    Mcast6Ipv6Addr groupAddr;  /* key */
    Mcast6Ipv6Addr sourceAddr; /* key */
    uint32_t outIfIndex;
    uint8_t host1[4]; /* neither stored nor changed */
    uint32_t regAttrA;
    uint32_t regAttrB; /* stored in 64 bits */
    uint32_t instId;   /* VLAN or bridge domain */
    uint8_t instType;  /* an L3_REG_INST_ constant */
    uint8_t regAttrC;
    uint8_t regAttrD;
    uint8_t host2; /* neither stored nor changed */
    uint8_t regHalfB[2];
    uint8_t regHalfA[2];
    uint8_t regCtxA[28]; /* opaque */
    uint8_t regCtxB[12]; /* opaque */
    uint32_t regWord;
    uint64_t timeStampCreate; /* seconds; kept on a write unless it is 0, then the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write */
} L3Mc6RegOifEntry;

/* Converts 'record' into the 128-byte database record 'row'. The byte at 63 is unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetRegistItem(const L3Mc6RegOifEntry *record, void *row);

/* Converts the 128-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetRegistData(const void *row, L3Mc6RegOifEntry *record);

/* Writes the 40-byte primary key of 'record' and its key word, 0x00010028. None may be null. */
MCAST6_API void MCAST6_DB_SetRegistKey(void *key, uint32_t *keyWord, const L3Mc6RegOifEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 252
 *   other  the engine's code; KPI 141 */
MCAST6_API uint32_t MCAST6_DB_CreateL3McRegistOifObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 253. */
MCAST6_API void MCAST6_DB_ReleaseL3McRegistOifObject(Mcast6DbHandle object);

/* Writes 'record' (not null).
 *   0      written, or the engine answered 13044; KPI 137
 *   1      the object could not be created; logged; KPI 138
 *   other  the engine's code; logged; KPI 138 */
MCAST6_API uint32_t MCAST6_DB_WriteRegistOif(const L3Mc6RegOifEntry *record);

/* Reads the record whose key is in 'record' (not null).
 *   0      found; 'record' is filled
 *   1      the object could not be created; logged
 *   60     no such record
 *   other  the engine's code; not logged */
MCAST6_API uint32_t MCAST6_DB_ReadRegistOif(L3Mc6RegOifEntry *record);

/* Removes the record with the key of 'record' (not null).
 *   0      removed, or the engine answered 15005 (nothing to remove); KPI 139
 *   other  the engine's code, 13044 included; logged; KPI 140 */
MCAST6_API uint32_t MCAST6_DB_DeleteRegistOif(const L3Mc6RegOifEntry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3mcRegOifIterator. Null when one could not be created; KPI
 * 142; not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcRegOifIterator(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcRegOifAllIterator(void);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcRegOifIfIndexIterator(uint32_t ifIndex);

/* Over the records of the instance (instId, instType) of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcRegOifVlanIterator(const L3Mc6RegOifEntry *record);

/* Over the records with vrId, vrfId, groupAddr and sourceAddr of 'entry' (not null) whose regAttrC is the low byte of
 * its elbFlagA. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3mcRegOifVSGIterator(const L3Mc6ElbEntry *entry);

/* Releases an iterator with its object. A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3mcRegOifIterator(Mcast6DbRes *iterator);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; logged
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL3mcRegOifEntry(Mcast6DbRes *iterator, L3Mc6RegOifEntry *record);

/* As MCAST6_DB_GetL3mcRegOifEntry, but fills an egress record; members of 'entry' that a register record does not hold
 * are unchanged. */
MCAST6_API uint32_t MCAST6_DB_GetL3mcRegOifEntryExt(Mcast6DbRes *iterator, L3Mc6ElbEntry *entry);

/* Converts an egress record into a register record: elbAttrB, elbFlagA and elbFlagB keep their low bits, the instance
 * follows MCAST6_DB_TransVlanAndBdInfoToInst, 'host' members are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_TransElbEntryToRegElbEntry(const L3Mc6ElbEntry *entry, L3Mc6RegOifEntry *record);

/* Sets instType and instId of 'record' from those of 'entry'; a kind that is neither VLAN nor bridge domain becomes
 * L3_REG_INST_NONE with instId 0. Neither may be null. */
MCAST6_API void MCAST6_DB_TransVlanAndBdInfoToInst(const L3Mc6ElbEntry *entry, L3Mc6RegOifEntry *record);

#ifdef __cplusplus
}
#endif

#endif
