/* l3mc6_mvpn_tnl_elb: the MVPN tunnel members of layer-3 entries. Table number 28.
 *
 * Of L3McMvpnTnlElbEntry the table stores: vrId, vrfId, groupAddr and sourceAddr, which are the key; tunnelWord1 to
 * tunnelWord9, memberAttr1 to memberAttr3, appSrcPid, appVersion, smoothVersion, tunnelData, serviceStatus and both
 * time stamps.
 */
#ifndef MCAST6_DB_L3MC6_MVPN_TNL_ELB_H
#define MCAST6_DB_L3MC6_MVPN_TNL_ELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_mvpn_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Names a tunnel: vrId, vrfId, tunnelWord2, tunnelWord3. */
typedef struct L3McMvpnVsgKey {
    uint32_t word[4];
} L3McMvpnVsgKey;

/* The object of the fast count; 0 until its first use. */
extern MCAST6_API Mcast6DbHandle g_l3Mc6MvpnTnlElbStatObjCache;

/* A source process id that the host sets; the library only reads it. */
extern MCAST6_API uint32_t g_l3Mc6MvpnTnlElbPid;

/* Stamps the 142-byte database record 'row' with the current time: the smooth time, and the creation time when
 * 'withCreate' is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL3McMvpnTnlElbTimeStamp(int32_t withCreate, void *row);

/* Converts 'record' into the 142-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL3McMvpnTnlElb(const L3McMvpnTnlElbEntry *record, void *row);

/* Converts the 142-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL3McMvpnTnlElb(const void *row, L3McMvpnTnlElbEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 476
 *   other  the engine's code; KPI 216 */
MCAST6_API uint32_t MCAST6_DB_CreateL3McMvpnTnlElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* Releases an engine object; counts 477. */
MCAST6_API void MCAST6_DB_ReleaseL3McMvpnTnlElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   60     no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL3McMvpnTnlElb(L3McMvpnTnlElbEntry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 212
 *   1      'record' is null; logged; KPI 213
 *   other  the engine's code; KPI 213; logged, except for failed setters; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL3McMvpnTnlElb(const L3McMvpnTnlElbEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion and the
 * current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of several for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion(const L3McMvpnTnlElbEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 214
 *   1      'record' is null; logged; KPI 215
 *   other  the engine's code; logged; KPI 215; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL3McMvpnTnlElb(const L3McMvpnTnlElbEntry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetL3McMvpnTnlElbEntry(Mcast6DbRes *iterator, L3McMvpnTnlElbEntry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3McMvpnTnlElbIterator. Null when one could not be created;
 * KPI 217; not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbIter(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbAllIter(void);

/* Over the records of a VNI. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbIterByVniId(uint32_t vrId, uint32_t vrfId, uint32_t tunnelWord1);

/* Over the records with vrId, vrfId and appSrcPid of 'record' (not null). */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbIterBySrcPid(const L3McMvpnTnlElbEntry *record);

/* Over the records of a tunnel. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlVsg(uint32_t vrId, uint32_t vrfId, uint32_t tunnelWord2,
                                                                   uint32_t tunnelWord3);

/* Over the records of a tunnel id; the low byte of tunnelWord4 is used. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlId(uint32_t vrId, uint32_t vrfId, uint32_t tunnelWord2,
                                                                  uint8_t tunnelWord4);

/* Over the records of a VR and VRF. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(uint32_t vrId, uint32_t vrfId);

/* Releases an iterator with its object (counts 477). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3McMvpnTnlElbIterator(Mcast6DbRes *iterator);

/* Counts. '*count' is written on success only; no pointer may be null. Nothing is recorded.
 *   0      done
 *   1      a step failed; logged with the engine's code */

/* The records that match 'key'. */
MCAST6_API uint32_t MCAST6_DB_GetL3McMvpnTnlElbCountByKey(const Mcast6DbKeyDesc *descriptor, const void *key,
                                                          uint32_t *count);

/* The records of a tunnel. */
MCAST6_API uint32_t MCAST6_DB_GetL3McBdMvpnTnlElbCountByTnlVsg(const L3McMvpnVsgKey *key, uint32_t *count);

/* Returns the number of records, counted through a cached object; 0 on any failure as well. One thread at a time. */
MCAST6_API uint32_t MCAST6_DB_GetL3McMvpnTnlElbCountFast(void);

/* Returns g_l3Mc6MvpnTnlElbPid. */
MCAST6_API uint32_t MCAST6_DB_GetL3McMvpnTnlElbSourcePid(void);

#ifdef __cplusplus
}
#endif

#endif
