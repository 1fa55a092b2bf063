// l3mc6_sub_elb: the sub-interface members of layer-3 entries.
// The library reads this table; other software writes it. Errors of an iterator are recorded under the number of
// l3mc6_elb. A release checks the scan handle, although no fast scan here fills it.
#include "mcast6_db/l3mc6_sub_elb.h"

#include "frame/agreement.h"
#include "frame/scan.h"
#include "mcast6_platform/tables/l3mc6_sub_elb.h"

Mcast6DbScanHandle g_l3SubElb6ScanDbHandle;
Mcast6DbHandle g_l3SubElb6DbReadObjCache;
uint32_t g_subElb6DbIsLimit;

namespace mcast6::l3mc6_sub_elb {

using E = L3Mc6ElbEntryExt;

constexpr Counter kCreated{246, "objects created"};
constexpr Counter kReleased{247, "objects released"};
constexpr Counter kCacheCreateFailed{248, "cache object creations failed"};
constexpr Counter kCacheResetFailed{249, "cache object resets failed"};
constexpr Kpi kCreateFailed{135, "object creations failed"};
constexpr Kpi kIterFailed{136, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 16;  // that of l3mc6_elb
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased, kCacheCreateFailed, kCacheResetFailed};
    static constexpr Kpi indicators[]{kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3SubElbObject, MCAST6_DB_ReleaseL3SubElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_sub_elb_obj, db_release_l3mc6_sub_elb_object,
                                         db_set_l3mc6_sub_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_sub_elb_cache_object,
                                              db_reset_l3mc6_sub_elb_cache_object};
    static constexpr auto get = MCAST6_DB_GetL3SubElb;

    using Row = mcast6::Row<172,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::vrfId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::subIfIndex>,
        Resized < 44, uint16_t, &E::instId>,
        Copy    < 46, &E::elbFlagD>,
        Resized < 47, uint8_t, &E::elbFlagA>,
        Resized < 48, uint8_t, &E::elbFlagB>,
        Gap     < 49, 3>,
        Copy    < 52, &E::outIfIndex>,
        Resized < 56, uint32_t, &E::elbAttrD>,
        Copy    < 60, &E::elbAttrA>,
        Copy    < 64, &E::elbAttrB>,
        Copy    < 72, &E::elbAttrC>,
        Copy    < 76, &E::elbAttrG>,
        Copy    < 80, &E::elbHalfB>,
        Copy    < 82, &E::elbHalfA>,
        Copy    < 84, &E::elbCtxA>,
        Copy    <112, &E::elbCtxB>,
        Gap     <124, 4>,
        Copy    <128, &E::elbExtA>,
        Copy    <132, &E::elbExtB>,
        Copy    <136, &E::elbExtCtx>,
        Copy    <152, &E::elbWord>,
        Now     <156, &E::timeStampCreate>,
        Now     <164, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::entryType, 14>, GetWrites<&E::addrType, 2>, GetWrites<&E::instType, 0>,
                                GetWrites<&E::zeroWord, 0>>;

    using Primary   = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::subIfIndex, &E::instId,
                                 &E::elbFlagD>;
    using ByMembers = SecondaryKey<Row, 1, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::outIfIndex,
                                   &E::elbFlagD>;
    static constexpr uint32_t kByVlan = 0x02090002;  // a 16-bit VLAN id

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr CacheOutcomes onCache{
        .createFailed = {dfx(kCacheCreateFailed),
                         logObject("Failed to create l3subelb6 cache object, objType:%u, connType:%u, ret:%u"),
                         engineCode},
        .resetFailed  = {dfx(kCacheResetFailed),
                         logObject("Failed to reset l3subelb6 cache object, objType:%u, connType:%u, ret:%u"),
                         engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("read l3mc6 sub enable failed, para is null."), returns(1)},
        .createFailed = {logCode("read l3mc6 elb sub failed, create db object failed. ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {released, engineCode},
    };
    static constexpr GivenObjectOutcomes onFastRead{
        .nullRecord   = {log("read l3mc6 sub enable failed, para is null."), returns(1)},
        .createFailed = {logCode("read l3mc6 elb sub failed, create db object failed. ret:%u."), returns(1)},
    };
    static constexpr KeyedReadOutcomes onKeyedRead{
        .found      = {returns(0)},
        .absent     = {engineCode},
        .readFailed = {engineCode},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("get l3mc6 sub elb entry error. ret:%u."), record(Error::next), engineCode},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        // a comma here
        .readFailed    = {logCode("get l3mc6 sub elb entry error, ret:%u."), record(Error::read), engineCode},
    };
};
// clang-format on

namespace published = layout::l3mc6_sub_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001002F && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByMembers::word == 0x0109002D && isPublished<Table::ByMembers>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByVlan));

}  // namespace mcast6::l3mc6_sub_elb

using namespace mcast6;
using namespace mcast6::l3mc6_sub_elb;

void MCAST6_DB_SetL3SubElb(const L3Mc6ElbEntryExt* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL3SubElb(const void* row, L3Mc6ElbEntryExt* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetL3SubElbKey(uint32_t* keyWord, void* key, const L3Mc6ElbEntryExt* record) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_CreateL3SubElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3SubElbObject(Mcast6DbHandle object) {
    if (!returnedToScan(g_l3SubElb6ScanDbHandle, object)) Table::accessors.release(object);
    countOne<Table, kReleased>();  // in either case
}

uint32_t MCAST6_DB_CreateL3SubElbObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot) {
    return obtainCached<Table, Table::onCache>(objType, connType, slot, Table::cache);
}

uint32_t MCAST6_DB_ReadL3SubElb(L3Mc6ElbEntryExt* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_ReadL3SubElbFast(L3Mc6ElbEntryExt* record) {
    if (record == nullptr) return conclude<Table, Table::onFastRead, &GivenObjectOutcomes::nullRecord>({});
    const uint32_t code = MCAST6_DB_CreateL3SubElbObjCache(kReadObject, kConnType, &g_l3SubElb6DbReadObjCache);
    if (code != kOk) return conclude<Table, Table::onFastRead, &GivenObjectOutcomes::createFailed>({.code = code});
    return keyedRead<Table, Table::onKeyedRead>(record, g_l3SubElb6DbReadObjCache);
}

Mcast6DbRes* MCAST6_DB_CreateL3SubElbIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3SubElbAllIterator(void) { return MCAST6_DB_CreateL3SubElbIterator(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL3mcVlanScanIterater(uint16_t vlanId) {
    const auto key = keyOf<Table::kByVlan>(vlanId);
    return MCAST6_DB_CreateL3SubElbIterator(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3mcVlanAllMemIterator(const L3Mc6ElbEntryExt* record) {
    const auto key = Table::ByMembers::of(*record);
    return MCAST6_DB_CreateL3SubElbIterator(&key.descriptor, key.bytes);
}

void MCAST6_DB_ReleaseL3SubElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3SubElbEntry(Mcast6DbRes* iterator, L3Mc6ElbEntryExt* record) {
    return nextRecord<Table>(iterator, record);
}
