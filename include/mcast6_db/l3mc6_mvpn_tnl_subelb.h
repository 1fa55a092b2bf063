/* l3mc6_mvpn_tnl_subelb: the MVPN tunnel members of layer-3 entries that are bound to an interface. Table number 29.
 *
 * Of L3McMvpnTnlElbEntry the table stores: vrId, vrfId, groupAddr, sourceAddr, outIfIndex and subKeyWord, which are the
 * key; l2IfIndex, subWord1 to subWord3, subByte1 to subByte3, memberAttr1 to memberAttr3, appSrcPid, smoothVersion,
 * tunnelData, both service contexts, serviceStatus, errCode and both time stamps.
 */
#ifndef MCAST6_DB_L3MC6_MVPN_TNL_SUBELB_H
#define MCAST6_DB_L3MC6_MVPN_TNL_SUBELB_H

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3_mvpn_egress.h"
#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Stamps the 168-byte database record 'row' with the current time: the smooth time, and the creation time when
 * 'withCreate' is not 0. Returns the time. */
MCAST6_API int64_t MCAST6_DB_SetStructL3McMvpnTnlSubElbTimeStamp(int32_t withCreate, void *row);

/* Converts 'record' into the 168-byte database record 'row'; both time stamps become the current time. Reserved bytes
 * are unchanged. Neither may be null. */
MCAST6_API void MCAST6_DB_SetL3McMvpnTnlSubElb(const L3McMvpnTnlElbEntry *record, void *row);

/* Converts the 168-byte database record 'row' into 'record'. Neither may be null. */
MCAST6_API void MCAST6_DB_GetL3McMvpnTnlSubElb(const void *row, L3McMvpnTnlElbEntry *record);

/* Creates an engine object, which the caller releases.
 *   0      done; counts 478
 *   other  the engine's code; KPI 222 */
MCAST6_API uint32_t MCAST6_DB_CreateL3McMvpnTnlSubElbObject(uint32_t objType, uint32_t connType,
                                                            Mcast6DbHandle *object);

/* Releases an engine object; counts 479. */
MCAST6_API void MCAST6_DB_ReleaseL3McMvpnTnlSubElbObject(Mcast6DbHandle object);

/* Reads the record whose key is in 'record'.
 *   0      found; 'record' is filled
 *   1      'record' is null; logged
 *   60     no such record
 *   other  the engine's code; logged; a failed read records kind 0 */
MCAST6_API uint32_t MCAST6_DB_ReadL3McMvpnTnlSubElb(L3McMvpnTnlElbEntry *record);

/* Writes 'record'; both time stamps become the current time.
 *   0      written, or the engine answered 13044 (records kind 1); KPI 218
 *   1      'record' is null; logged; KPI 219
 *   other  the engine's code; KPI 219; logged, except for failed setters; a failed write records kind 2 */
MCAST6_API uint32_t MCAST6_DB_WriteL3McMvpnTnlSubElb(const L3McMvpnTnlElbEntry *record);

/* Re-stamps the stored record with the key of 'record': its smoothVersion and the
 * current time as its smooth time.
 *   0      done, or the engine answered 13044 (records kind 1)
 *   1      'record' is null; logged
 *   other  the engine's code (the OR of several for failed setters); logged; a failed update records kind 6 */
MCAST6_API uint32_t MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion(const L3McMvpnTnlElbEntry *record);

/* Removes the record with the key of 'record'.
 *   0      removed, or the engine answered 13044 (records kind 1); KPI 220
 *   1      'record' is null; logged; KPI 221
 *   other  the engine's code; logged; KPI 221; a failed removal records kind 4 */
MCAST6_API uint32_t MCAST6_DB_DeleteL3McMvpnTnlSubElb(const L3McMvpnTnlElbEntry *record);

/* Steps 'iterator' and fills 'record' with the next record.
 *   0      a record
 *   1      'iterator' or 'record' is null, or the engine failed; the engine's failures are logged; a failed step
 *          records kind 9, a failed read kind 0
 *   60     the end, or the record was removed in the meantime */
MCAST6_API uint32_t MCAST6_DB_GetNextL3McMvpnTnlSubElb(Mcast6DbRes *iterator, L3McMvpnTnlElbEntry *record);

/* Iterators that the caller releases with MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator. Null when one could not be
 * created; KPI 223; not logged. */

/* Over the records that match 'key', or over all when both are null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlSubElbIter(const Mcast6DbKeyDesc *descriptor, const void *key);

/* Over all records. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlSubElbAllIter(void);

/* Over the members of the entry that 'key' (not null) names. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlSubElbCreateVSGIterator(const L3McMvpnElbKey *key);

/* Over the records of an outgoing interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(uint32_t ifIndex);

/* Over the records of a VR and VRF. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlSubElbIterByVrVrf(uint32_t vrId, uint32_t vrfId);

/* Over the records of a layer-2 interface. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateL3McMvpnTnlSubElbIterByL2IfIndex(uint32_t ifIndex);

/* Releases an iterator with its object (counts 479). A null iterator is ignored. */
MCAST6_API void MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator(Mcast6DbRes *iterator);

#ifdef __cplusplus
}
#endif

#endif
