// l3mc6_elb: the outgoing interfaces of layer-3 entries.
// The library reads and counts this table; other software writes it. Failed reads are not logged. A fast scan reuses
// the scan handle's object and root iterator.
#include "mcast6_db/l3mc6_elb.h"

#include "frame/agreement.h"
#include "frame/scan.h"
#include "mcast6_platform/tables/l3mc6_elb.h"

Mcast6DbScanHandle g_l3Elb6ScanDbHandle;
Mcast6DbHandle g_l3Elb6DbReadObjCache;

namespace mcast6::l3mc6_elb {

using E = L3Mc6ElbEntry;

constexpr Counter kCreated{239, "objects created"};
constexpr Counter kReleased{240, "objects released"};
constexpr Counter kCacheFailed{241, "cached objects not ready"};
constexpr Kpi kCreateFailed{128, "object creations failed"};
constexpr Kpi kIterFailed{129, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 16;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased, kCacheFailed};
    static constexpr Kpi indicators[]{kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3ElbObject, MCAST6_DB_ReleaseL3ElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_elb_obj, db_release_l3mc6_elb_object,
                                         db_set_l3mc6_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_elb_cache_object, db_reset_l3mc6_elb_cache_object};
    static constexpr Mcast6DbScanHandle& scan = g_l3Elb6ScanDbHandle;
    static constexpr auto ordinaryScan = MCAST6_DB_CreateL3ElbIterator;
    static constexpr auto cacheObject = MCAST6_DB_CreateL3ElbObjCache;
    static constexpr auto cacheIter = MCAST6_DB_CreateL3ElbIterCache;
    static constexpr auto get = MCAST6_DB_GetL3Elb;

    using Row = mcast6::Row<148,
        Copy      <  0, &E::vrId>,
        Copy      <  4, &E::vrfId>,
        Address   <  8, &E::groupAddr>,
        Address   < 24, &E::sourceAddr>,
        Copy      < 40, &E::outIfIndex>,
        Copy      < 44, &E::elbFlagD>,
        Resized   < 45, uint8_t, &E::elbFlagA>,
        Resized   < 46, uint16_t, &E::instId>,
        Copy      < 48, &E::elbFlagC>,
        Resized   < 49, uint8_t, &E::elbFlagB>,
        Gap       < 50, 2>,
        Resized   < 52, uint32_t, &E::elbAttrD>,
        Copy      < 56, &E::elbAttrE>,
        Copy      < 60, &E::elbAttrG>,
        Copy      < 64, &E::elbAttrA>,
        Copy      < 68, &E::elbAttrB>,
        Copy      < 76, &E::elbAttrC>,
        Copy      < 80, &E::elbHalfB>,
        Copy      < 82, &E::elbHalfA>,
        Copy      < 84, &E::elbCtxA>,
        Copy      <112, &E::elbCtxB>,
        Copy      <124, &E::elbAttrF>,
        Copy      <128, &E::elbWord>,
        KeptOrNow <132, &E::timeStampCreate>,
        Now       <140, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::entryType, 13>, GetWrites<&E::addrType, 2>, GetWrites<&E::instType, 0>,
                                GetWrites<&E::zeroWord, 0>, GetWrites<&E::zeroByte, 0>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::outIfIndex, &E::elbFlagD>;
    using ByEntry = SecondaryKey<Row, 6, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::elbFlagA>;
    static constexpr uint32_t kByMcid    = 0x01090029;  // VR, VRF, group, source, elbFlagD
    static constexpr uint32_t kByIfIndex = 0x02090004;  // an interface index

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr CacheOutcomes onCache{
        .createFailed = {dfx(kCacheFailed), engineCode},
        .resetFailed  = {dfx(kCacheFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {returns(1)},
        .createFailed = {engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {released, engineCode},
    };
    static constexpr KeyedReadOutcomes onFastRead{
        .found      = {returns(0)},
        .absent     = {engineCode},
        .readFailed = {engineCode},
    };
    static constexpr CountOutcomes onCount{
        .createFailed = {engineCode},
        .countFailed  = {engineCode},
    };
    static constexpr CacheOutcomes onCachedIter{
        .createFailed = {engineCode},
        .resetFailed  = {engineCode},
    };
    static constexpr FastScanOutcomes onFastScan{
        .objectFailed     = {record(Error::read), returnsNull},
        .iteratorFailed   = {record(Error::rootIter), returnsNull},
        .propertyFailed   = {record(Error::rootIter), returnsNull},
        .allocationFailed = {record(Error::iterBuild), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("get l3elb6 entry error. ret:%u."), record(Error::next), engineCode},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("get l3elb6 entry error, ret:%u."), record(Error::read), engineCode},  // a comma here
    };
};
// clang-format on

namespace published = layout::l3mc6_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001002D && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x06090029 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByMcid) &&
              isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l3mc6_elb

using namespace mcast6;
using namespace mcast6::l3mc6_elb;

uint32_t MCAST6_DB_SetL3Elb(const L3Mc6ElbEntry* entry, void* row) { return setRow<Table, &E::sourceAddr>(entry, row); }

uint32_t MCAST6_DB_GetL3Elb(const void* row, L3Mc6ElbEntry* entry) {
    return getRecord<Table, &E::sourceAddr>(row, entry);
}

void MCAST6_DB_SetL3ElbKey(uint32_t* keyWord, void* key, const L3Mc6ElbEntry* entry) {
    putPrimaryKey<Table>(keyWord, key, entry);
}

void MCAST6_DB_SetL3ElbCmdKey(const L3Mc6ElbEntry* entry, uint32_t* keyWord, void* key) {
    *keyWord = Table::ByEntry::word;
    Table::ByEntry::put(static_cast<std::byte*>(key), *entry);
}

uint32_t MCAST6_DB_CreateL3ElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3ElbObject(Mcast6DbHandle object) {
    if (returnedToScan(g_l3Elb6ScanDbHandle, object)) return;
    releaseObject<Table, kReleased>(object);
}

uint32_t MCAST6_DB_CreateL3ElbObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot) {
    return obtainCached<Table, Table::onCache>(objType, connType, slot, Table::cache);
}

uint32_t MCAST6_DB_ReadL3Elb(L3Mc6ElbEntry* entry) { return readRecord<Table>(entry); }

uint32_t MCAST6_DB_ReadL3ElbFast(L3Mc6ElbEntry* entry) {
    if (entry == nullptr) return kFailed;
    if (MCAST6_DB_CreateL3ElbObjCache(kReadObject, kConnType, &g_l3Elb6DbReadObjCache) != kOk) return kFailed;
    return keyedRead<Table, Table::onFastRead>(entry, g_l3Elb6DbReadObjCache);
}

uint32_t MCAST6_DB_GetOutIfNum(const L3Mc6ElbEntry* entry, uint32_t* count) {
    const auto key = Table::ByEntry::of(*entry);
    return countByKey<Table, Table::onCount>(&key.descriptor, key.bytes, count);
}

Mcast6DbRes* MCAST6_DB_CreateL3ElbIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return MCAST6_DB_CreateIterCommon(&Table::objects, descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3ElbAllIterator(void) { return MCAST6_DB_CreateL3ElbIterator(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL3ElbIfindexIterator(uint32_t ifIndex) {
    const auto key = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL3ElbIterator(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3ElbMfibIteratorExt(const L3Mc6ElbEntry* entry) {
    const auto key = Table::ByEntry::of(*entry);
    return MCAST6_DB_CreateL3ElbIterator(&key.descriptor, key.bytes);
}

uint32_t MCAST6_DB_CreateL3ElbMfibIterator(const L3Mc6ElbEntry* entry, Mcast6DbRes* resource) {
    const auto key = Table::ByEntry::of(*entry);
    const uint32_t code = MCAST6_DB_CreateIterCommonWithDbRes(resource, &Table::objects, &key.descriptor, key.bytes);
    if (code != kOk) countOne<Table, kIterFailed>();
    return code;
}

uint32_t MCAST6_DB_CreateL3ElbIterCache(Mcast6DbHandle object, const Mcast6DbKeyDesc* descriptor, const void* key,
                                        Mcast6DbHandle* slot) {
    return obtainCachedIter<Table, Table::onCachedIter>(object, descriptor, key, slot);
}

Mcast6DbRes* MCAST6_DB_CreateL3ElbIteratorFast(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return fastScan<Table, Table::onFastScan>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3ElbMcidIteratorFast(uint32_t vrId, uint32_t vrfId, Mcast6Ipv6Addr groupAddr,
                                                   Mcast6Ipv6Addr sourceAddr) {
    constexpr uint8_t kPlainMember = 1;
    const auto key = keyOf<Table::kByMcid>(vrId, vrfId, groupAddr, sourceAddr, kPlainMember);
    return MCAST6_DB_CreateL3ElbIteratorFast(&key.descriptor, key.bytes);
}

void MCAST6_DB_ReleaseL3ElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3ElbEntry(Mcast6DbRes* iterator, L3Mc6ElbEntry* entry) {
    return nextRecord<Table>(iterator, entry);
}
