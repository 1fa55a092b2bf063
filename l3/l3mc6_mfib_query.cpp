// Queries of l3mc6_mfib: filtered iterators and counts, each on one secondary index, and the two exported tables that
// select among them by query type. No constructor or count checks for null or records errors. A failed count is logged
// at every level that it passes, each with its own message.
#include "mcast6_db/l3mc6_mfib_query.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "l3/l3mc6_mfib_row.h"
#include "mcast6_platform/tables/l3mc6_mfib.h"

namespace mcast6::l3mc6_mfib_query {

using l3mc6_mfib::E;
using l3mc6_mfib::Row;

constexpr Kpi kIterFailed{115, "iterator creations failed"};
inline constexpr uint32_t kHashConflict = 5;  // error code
inline constexpr uint32_t kQueryTypes = 10;

struct Table {
    static constexpr uint32_t logId = kLogLayer3Query;
    static constexpr Kpi indicators[]{kIterFailed};
    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3MfibObject, MCAST6_DB_ReleaseL3MfibObject};
    static constexpr IterOutcomes onIter{.failed = {kpi(kIterFailed), returnsNull}};
    static constexpr CountOutcomes onCount{
        .createFailed = {log("create l3mc6_mfib db object fail."), engineCode},
        .countFailed = {log("query l3mc6_mfib db count fail."), engineCode},
    };
};

// clang-format off
using ByVrVrf           = SecondaryKey<Row,  3, &E::vrId, &E::vrfId>;
using BySource          = SecondaryKey<Row,  4, &E::vrId, &E::vrfId, &E::sourceAddr>;
using ByGroup           = SecondaryKey<Row,  5, &E::vrId, &E::vrfId, &E::groupAddr>;
using BySourceInterface = SecondaryKey<Row,  6, &E::vrId, &E::vrfId, &E::sourceAddr, &E::inIfIndex>;
using ByGroupInterface  = SecondaryKey<Row,  7, &E::vrId, &E::vrfId, &E::groupAddr, &E::inIfIndex>;
using ByInterface       = SecondaryKey<Row,  8, &E::vrId, &E::vrfId, &E::inIfIndex>;
using ByRegister        = SecondaryKey<Row, 12, &E::vrId, &E::vrfId, &E::regIfIndex>;
using ByRegisterGroup   = SecondaryKey<Row, 13, &E::vrId, &E::vrfId, &E::groupAddr, &E::regIfIndex>;
using ByRegisterSource  = SecondaryKey<Row, 14, &E::vrId, &E::vrfId, &E::sourceAddr, &E::regIfIndex>;
// clang-format on
constexpr uint32_t kByIfIndex = 0x02090004;  // an interface index
constexpr uint32_t kByErrCode = 0x0A090008;  // a VR and an error code

template <class Key>
constexpr bool isIndex(uint32_t word) {
    return Key::word == word && isPublished<Key>(layout::l3mc6_mfib::kIndexes);
}
static_assert(isIndex<ByVrVrf>(0x03090008) && isIndex<BySource>(0x04090018) && isIndex<ByGroup>(0x05090018) &&
              isIndex<BySourceInterface>(0x0609001C) && isIndex<ByGroupInterface>(0x0709001C) &&
              isIndex<ByInterface>(0x0809000C) && isIndex<ByRegister>(0x0C09000C) &&
              isIndex<ByRegisterGroup>(0x0D09001C) && isIndex<ByRegisterSource>(0x0E09001C));
static_assert(isPublishedWord(layout::l3mc6_mfib::kIndexes, kByIfIndex) &&
              isPublishedWord(layout::l3mc6_mfib::kIndexes, kByErrCode));

namespace {

// Iterates over the records of a key into the caller's handle; a failure is logged with the constructor's message.
template <uint32_t kWord>
uint32_t iterByKey(Mcast6DbRes* resource, const KeyBuffer<kWord>& key, const char* message) {
    const uint32_t code = MCAST6_DB_CreateL3MfibIterWithDbResCommon(resource, &key.descriptor, key.bytes);
    if (code != kOk) logLine(kLogLayer3Query, message);
    return code;
}

// The key of a VR and VRF. Callers may pass only two words, with the alignment of words, in place of a whole record.
KeyBuffer<ByVrVrf::word> vrVrfAt(const void* words) {
    uint32_t values[2];
    memcpy(values, words, sizeof values);
    return keyOf<ByVrVrf::word>(values[0], values[1]);
}

// Counts the records of a key; a failure is logged once more, with the count's message.
template <uint32_t kWord>
uint32_t countOfKey(const KeyBuffer<kWord>& key, uint32_t* count, const char* message) {
    const uint32_t code = MCAST6_DB_GetL3MfibCountByKey(&key.descriptor, key.bytes, count);
    if (code != kOk) logLine(kLogLayer3Query, message);
    return code;
}

}  // namespace

}  // namespace mcast6::l3mc6_mfib_query

using namespace mcast6;
using namespace mcast6::l3mc6_mfib_query;

const L3MfibCreateIterFunc g_Mfib6CreatIterFunc[kQueryTypes] = {
    MCAST6_DB_CreateL3MfibIterBySrcAddr,
    MCAST6_DB_CreateL3MfibIterByGrpAddr,
    MCAST6_DB_CreateL3MfibIterByIntf,
    MCAST6_DB_CreateL3MfibIterBySrcAndIntf,
    MCAST6_DB_CreateL3MfibIterByGrpAndIntf,
    nullptr,  // L3_MFIB_QUERY_NONE
    MCAST6_DB_CreateL3MfibIterByVrAndVrf,
    MCAST6_DB_CreateL3MfibIterByRegIntf,
    MCAST6_DB_CreateL3MfibIterByRegIntfAndSrc,
    MCAST6_DB_CreateL3MfibIterByRegIntfAndGrp,
};

const L3MfibGetNumFunc g_Mfib6GetNumFunc[kQueryTypes] = {
    MCAST6_DB_GetL3MfibNumBySource,
    MCAST6_DB_GetL3MfibNumByGroup,
    MCAST6_DB_GetL3MfibNumByIntf,
    MCAST6_DB_GetL3MfibNumBySrcAndIntf,
    MCAST6_DB_GetL3MfibNumByGrpAndIntf,
    nullptr,  // L3_MFIB_QUERY_NONE
    MCAST6_DB_GetL3MfibFwdTotalNum,
    MCAST6_DB_GetL3MfibNumByRegIntf,
    MCAST6_DB_GetL3MfibNumByRegIntfAndSrc,
    MCAST6_DB_GetL3MfibNumByRegIntfAndGrp,
};

// ---- Iterators that allocate their handle

Mcast6DbRes* MCAST6_DB_CreateL3MfibIterCommon(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3MfibIter(void) { return MCAST6_DB_CreateL3MfibIterCommon(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL3MfibIterByVrVrf(uint32_t vrId, uint32_t vrfId) {
    const auto key = keyOf<ByVrVrf::word>(vrId, vrfId);
    return MCAST6_DB_CreateL3MfibIterCommon(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3MfibIterByIfIndex(uint32_t ifIndex) {
    const auto key = keyOf<kByIfIndex>(ifIndex);
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL3MfibIterCommon(&key.descriptor, key.bytes);
    // The only message here with the log id of the record operations.
    if (iterator == nullptr) logLine(kLogLayer3, "MCAST6_DB_CreateL3MfibIteratorByIfIndex failed");
    return iterator;
}

void MCAST6_DB_ReleaseL3MfibIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

// ---- Iterators into a handle that the caller provides

uint32_t MCAST6_DB_CreateL3MfibIterWithDbResCommon(Mcast6DbRes* resource, const Mcast6DbKeyDesc* descriptor,
                                                   const void* key) {
    const uint32_t code = MCAST6_DB_CreateIterCommonWithDbRes(resource, &Table::objects, descriptor, key);
    if (code != kOk) conclude<Table, Table::onIter, &IterOutcomes::failed>({});
    return code;
}

uint32_t MCAST6_DB_CreateL3MfibIterBySrcAddr(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, BySource::of(*record), "MCAST6_DB_Create MfibIter by src addr failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByGrpAddr(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, ByGroup::of(*record), "MCAST6_DB_Create MfibIter by group failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByIntf(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, ByInterface::of(*record), "MCAST6_DB_Create MfibIter by interface failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterBySrcAndIntf(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, BySourceInterface::of(*record),
                     "MCAST6_DB_Create MfibIter by source and interface failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByGrpAndIntf(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, ByGroupInterface::of(*record),
                     "MCAST6_DB_Create MfibIter by group ip and interface failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByVrAndVrf(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, vrVrfAt(record), "MCAST6_DB_Create MfibIter by vr and vrf failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByRegIntf(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, ByRegister::of(*record), "MCAST6_DB_Create MfibIter by reg failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByRegIntfAndSrc(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, ByRegisterSource::of(*record), "MCAST6_DB_Create MfibIter by reg and src failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByRegIntfAndGrp(Mcast6DbRes* resource, const L3Mc6MfibEntry* record) {
    return iterByKey(resource, ByRegisterGroup::of(*record), "MCAST6_DB_Create MfibIter by reg and grp failed.");
}

uint32_t MCAST6_DB_CreateL3MfibIterByErrCode(uint32_t vrId, Mcast6DbRes* resource) {
    return iterByKey(resource, keyOf<kByErrCode>(vrId, kHashConflict), "MCAST6_DB_Create MfibIter by errCode failed.");
}

uint32_t MCAST6_DB_CreateL3MfibFwdIter(Mcast6DbRes* resource, uint32_t queryType, const L3Mc6MfibEntry* record) {
    if (queryType >= kQueryTypes || g_Mfib6CreatIterFunc[queryType] == nullptr) {
        logLine(kLogLayer3Query, "set queryType id fail.");
        return kFailed;
    }
    const uint32_t code = g_Mfib6CreatIterFunc[queryType](resource, record);
    if (code != kOk) logLine(kLogLayer3Query, "create iter by queryType fail, queryType: %u.", queryType);
    return code;
}

// ---- Counts

uint32_t MCAST6_DB_GetL3MfibCnt(uint32_t* count) { return countAll<Table>(count); }

uint32_t MCAST6_DB_GetL3MfibCountByKey(const Mcast6DbKeyDesc* descriptor, const void* key, uint32_t* count) {
    return countByKey<Table, Table::onCount>(descriptor, key, count);
}

uint32_t MCAST6_DB_GetL3MfibFwdTotalNum(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(vrVrfAt(record), count, "create object fail.");
}

uint32_t MCAST6_DB_GetL3MfibNumBySource(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(BySource::of(*record), count, "create object fail.");
}

uint32_t MCAST6_DB_GetL3MfibNumByGroup(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(ByGroup::of(*record), count, "create object fail.");
}

uint32_t MCAST6_DB_GetL3MfibNumByIntf(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(ByInterface::of(*record), count, "create object fail.");
}

uint32_t MCAST6_DB_GetL3MfibNumBySrcAndIntf(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(BySourceInterface::of(*record), count, "create object fail.");
}

uint32_t MCAST6_DB_GetL3MfibNumByGrpAndIntf(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(ByGroupInterface::of(*record), count, "create object fail.");
}

uint32_t MCAST6_DB_GetL3MfibNumByRegIntf(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(ByRegister::of(*record), count, "get num by reg failed.");
}

uint32_t MCAST6_DB_GetL3MfibNumByRegIntfAndSrc(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(ByRegisterSource::of(*record), count, "get num by reg and src failed.");
}

uint32_t MCAST6_DB_GetL3MfibNumByRegIntfAndGrp(const L3Mc6MfibEntry* record, uint32_t* count) {
    return countOfKey(ByRegisterGroup::of(*record), count, "get num by reg and grp failed.");
}

uint32_t MCAST6_DB_GetL3MfibHashConflictTotalNum(uint32_t vrId, uint32_t* count) {
    return countOfKey(keyOf<kByErrCode>(vrId, kHashConflict), count, "create object fail.");
}

uint32_t MCAST6_DB_QueryL3MfibCountDispatch(const L3Mc6MfibEntry* record, uint32_t* count, uint32_t queryType) {
    if (queryType >= kQueryTypes || g_Mfib6GetNumFunc[queryType] == nullptr) {
        logLine(kLogLayer3Query, "set key id fail.");
        return kFailed;
    }
    const uint32_t code = g_Mfib6GetNumFunc[queryType](record, count);
    if (code != kOk) logLine(kLogLayer3Query, "get count by key fail, keyType: %u.", queryType);
    return code;
}

uint32_t MCAST6_DB_GetL3MfibFwdMatchNum(const L3Mc6MfibEntry* record, uint32_t* count, uint32_t queryType) {
    uint32_t matches = 0;
    const uint32_t code = MCAST6_DB_QueryL3MfibCountDispatch(record, &matches, queryType);
    if (code != kOk) {
        logLine(kLogLayer3Query, "query count fail, queryType: %u.", queryType);
        return code;
    }
    *count = matches;
    return kOk;
}
