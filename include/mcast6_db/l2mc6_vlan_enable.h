/* l2mc6_vlan_enable: the MLD switches of each VLAN. Table number 14; only a failed iterator step is recorded. There is
 * no update. */
#ifndef MCAST6_DB_L2MC6_VLAN_ENABLE_H
#define MCAST6_DB_L2MC6_VLAN_ENABLE_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The caller's record, 80 bytes. Unless said otherwise a member is stored, and read back as stored. */
typedef struct L2VlanEnableEntry {
    uint32_t keyId1; /* key */
    uint32_t keyId2; /* key */
    uint32_t spare1; /* not stored; a step of an iterator sets it to 0, a read leaves it */
    uint32_t vlanId; /* key; the low 16 bits are stored */
    uint16_t vlanAttr;
    uint32_t cfgWord1;
    uint32_t cfgWord2;
    uint32_t cfgWord3;
    uint32_t cfgWord4;
    uint32_t cfgWord5;
    uint8_t serviceStatus[2];
    uint8_t errCode[2];
    uint64_t timeStampCreate; /* seconds; kept on a write unless it is 0, then the time of the write */
    uint64_t timeStampSmooth; /* seconds; the time of the last write */
    uint32_t l2mcEnable;
    uint8_t attrC[12];
} L2VlanEnableEntry;

/* Writes the key word of the primary key, 0x0001000A, into the descriptor's first word and the 10-byte key of 'record'
 * to 'key'. The caller zeroes the rest of the descriptor. None may be null. */
MCAST6_API void MCAST6_DB_SetMldVlanKey(Mcast6DbKeyDesc *descriptor, void *key, const L2VlanEnableEntry *record);

/* Converts 'record' into the 68-byte database record 'row'. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL2VlanEnableCfg(const L2VlanEnableEntry *record, void *row);

/* Converts the 68-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetVlanEnableCfg(const void *row, L2VlanEnableEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 43
 *   1      the engine failed; logged with its code */
MCAST6_API uint32_t MCAST6_DB_CreateL2VlanEnableObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 44. */
MCAST6_API void MCAST6_DB_ReleaseL2VlanEnableObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null, or a step failed; logged
 *   60     no such record */
MCAST6_API uint32_t MCAST6_DB_ReadL2VlanEnableCfg(L2VlanEnableEntry *record);

/* Writes 'record'.
 *   0      written, or the engine answered 13044; KPI 65
 *   1      'record' is null, or a step failed; KPI 66; logged, except for failed setters */
MCAST6_API uint32_t MCAST6_DB_WriteL2VlanEnableCfg(const L2VlanEnableEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed; KPI 67
 *   1      'record' is null, or a step failed; the engine's 13044 (no such record) is a failure too; KPI 68; logged */
MCAST6_API uint32_t MCAST6_DB_DelL2VlanEnableCfg(const L2VlanEnableEntry *record);

/* Creates an iterator over all records, which the caller releases with MCAST6_DB_ReleaseMldVlanIter. Null when it could
 * not be created; a failed property is logged. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateMldVlanCfgIter(void);

/* Converts the 68-byte database record 'row' into 'record' as MCAST6_DB_GetVlanEnableCfg does, and sets spare1 to 0. */
MCAST6_API void MCAST6_GetMldVlanData(const void *row, L2VlanEnableEntry *record);

/* Steps 'iterator' and fills 'record' with the next record, by MCAST6_GetMldVlanData.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetMldVlanEntry(Mcast6DbRes *iterator, L2VlanEnableEntry *record);

/* Releases an iterator with its object (counts 44). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseMldVlanIter(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
