/* l2mc6_vlan_port: the ports of VLANs. Table number 9; a failed iterator step is recorded under 4. */
#ifndef MCAST6_DB_L2MC6_VLAN_PORT_H
#define MCAST6_DB_L2MC6_VLAN_PORT_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 80 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct VlanPortEntry {
    uint32_t keyId1; /* key */
    uint32_t portAttr;
    uint32_t spare1;    /* not stored; reads back as 0 */
    uint32_t vlanId;    /* key; the low 16 bits are stored */
    uint32_t spare2;    /* not stored; reads back as 0 */
    uint16_t keyId3;    /* key */
    uint32_t keyId4;    /* key */
    uint8_t spare3[16]; /* neither stored nor read back */
    uint32_t cfgWord1;
    uint32_t smoothVersion;
    uint32_t serviceStatus;
    uint32_t errCode;
    uint64_t timeStampCreate; /* seconds; kept on a write unless it is 0, then the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write or update */
} VlanPortEntry;

/* Writes the key word of the primary key, 0x0001000C, into the descriptor's first word and the 12-byte key of 'record'
 * to 'key'. The caller zeroes the rest of the descriptor. None may be null. */
MCAST6_API void MCAST6_DB_SetVlanPortKey(Mcast6DbKeyDesc *descriptor, void *key, const VlanPortEntry *record);

/* Converts 'record' into the 48-byte database record 'row'. Neither may be null. */
MCAST6_API void MCAST6_DB_SetVlanPortItem(const VlanPortEntry *record, void *row);

/* Converts the 48-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetVlanPortItem(const void *row, VlanPortEntry *record);

/* Sets the smooth time stamp of 'object' to the current time, and the creation time as well when 'flag' is not 0.
 *   0      done
 *   other  the OR of the engine's codes; a failed setter does not stop the other */
MCAST6_API uint32_t MCAST6_DB_SetVlanPortTimeStamp(Mcast6DbHandle object, uint32_t flag);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 21
 *   1      the engine failed; logged with its code */
MCAST6_API uint32_t MCAST6_DB_CreateVlanPortObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 22. */
MCAST6_API void MCAST6_DB_ReleaseVlanPortObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or a step failed; logged
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadVlanPort(VlanPortEntry *record);

/* Writes 'record'.
 *   0      written
 *   1      'record' is null, or a step failed; the engine's 13044 (present already) is a failure too; logged, except
 *          for failed setters */
MCAST6_API uint32_t MCAST6_DB_WriteVlanPort(const VlanPortEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044
 *   1      'record' is null, or a step failed; logged */
MCAST6_API uint32_t MCAST6_DB_RemoveVlanPort(const VlanPortEntry *record);

/* Sets smoothVersion, serviceStatus, errCode and the smooth time of the stored record with the key of 'record'.
 *   0      done, or the engine answered 13044
 *   1      'record' is null, or a step failed; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateVlanPort(const VlanPortEntry *record);

/* Sets the smoothVersion of the stored record with the key of 'record'; its smooth time is unchanged.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null, or a step failed; logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateVlanPortSmoothVersion(const VlanPortEntry *record);

/* Creates an iterator over all records, which the caller releases with MCAST6_DB_ReleaseVlanPortIter. Null when it
 * could not be created; logged; a failed root iterator records kind 7, a failed allocation kind 8. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateVlanPortIter(void);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; logged; a failed step records kind 9 under table 4
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetVlanPortEntry(Mcast6DbRes *iterator, VlanPortEntry *record);

/* Releases an iterator with its object (counts 22). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseVlanPortIter(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
