// l3mc6_vlan_elb: the VLAN members of layer-3 entries.
// Failed creates of objects and iterators return 1, failed writes and removals the engine's code. A removal accepts
// 13044 and records nothing. Fast scans reuse the scan handle; its object counts as released when it is returned to the
// handle.
#include "mcast6_db/l3mc6_vlan_elb.h"

#include "frame/agreement.h"
#include "frame/scan.h"
#include "mcast6_platform/tables/l3mc6_vlan_elb.h"

Mcast6DbScanHandle g_l3VlanElb6ScanDbHandle;
Mcast6DbHandle g_vlanElb6DbReadObjCache;

namespace mcast6::l3mc6_vlan_elb {

using E = L3Mc6ElbEntryExt;

constexpr Counter kCreated{281, "objects created"};
constexpr Counter kReleased{282, "objects released"};
constexpr Counter kCacheCreateFailed{283, "cache object creations failed"};
constexpr Counter kCacheResetFailed{284, "cache object resets failed"};
constexpr Counter kCachedIterCreateFailed{285, "cached iterator creations failed"};
constexpr Counter kCachedIterResetFailed{286, "cached iterator resets failed"};
constexpr Kpi kCreateFailed{162, "object creations failed"};
constexpr Kpi kIterFailed{163, "iterator creations failed"};

// elbFlagD is stored as a boolean: 1 for 2, 0 for anything else; it reads back as 2 or 1.
template <uint16_t kOffset>
struct YesWhenTwo : Copy<kOffset, &E::elbFlagD> {
    static int set(const E& record, std::byte* row, uint64_t /*now*/) {
        store(row + kOffset, static_cast<uint8_t>(record.elbFlagD == 2 ? 1 : 0));
        return 0;
    }
    static int get(const std::byte* row, E& record) {
        record.elbFlagD = load<uint8_t>(row + kOffset) != 0 ? 2 : 1;
        return 0;
    }
};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 17;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{
        kCreated, kReleased, kCacheCreateFailed, kCacheResetFailed,
        kCachedIterCreateFailed, kCachedIterResetFailed};
    static constexpr Kpi indicators[]{kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateVlanElbObject, MCAST6_DB_ReleaseVlanElbStatObject};
    static constexpr Accessors accessors{db_create_l3mc6_vlan_elb_obj, db_release_l3mc6_vlan_elb_object,
                                         db_set_l3mc6_vlan_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_vlan_elb_cache_object,
                                              db_reset_l3mc6_vlan_elb_cache_object};
    static constexpr Mcast6DbScanHandle& scan = g_l3VlanElb6ScanDbHandle;
    static constexpr auto ordinaryScan = MCAST6_DB_CreateVlanElbIterator;
    static constexpr auto cacheObject = MCAST6_DB_CreateVlanElbObjCache;
    static constexpr auto cacheIter = MCAST6_DB_CreateVlanElbIterCache;
    static constexpr auto set = MCAST6_DB_SetVlanElbObj;
    static constexpr auto get = MCAST6_DB_SetVlanElbEntry;

    using Row = mcast6::Row<168,
        Copy       <  0, &E::vrId>,
        Copy       <  4, &E::vrfId>,
        Address    <  8, &E::groupAddr>,
        Address    < 24, &E::sourceAddr>,
        Copy       < 40, &E::outIfIndex>,
        Resized    < 44, uint16_t, &E::instId>,
        Copy       < 46, &E::elbAttrD>,
        Copy       < 48, &E::elbAttrA>,
        Copy       < 52, &E::elbAttrB>,
        Copy       < 60, &E::elbAttrC>,
        Copy       < 64, &E::elbAttrG>,
        YesWhenTwo < 68>,
        Resized    < 69, uint8_t, &E::elbFlagA>,
        Resized    < 70, uint8_t, &E::elbFlagB>,
        Copy       < 71, &E::vlanFlagC>,
        Copy       < 72, &E::vlanFlagA>,
        Copy       < 73, &E::vlanFlagB>,
        Copy       < 74, &E::elbFlagE>,
        Gap        < 75, 1>,
        Copy       < 76, &E::elbHalfB>,
        Copy       < 78, &E::elbHalfA>,
        Copy       < 80, &E::elbCtxA>,
        Copy       <108, &E::elbCtxB>,
        Copy       <120, &E::elbAttrF>,
        Copy       <124, &E::elbExtA>,
        Copy       <128, &E::elbExtB>,
        Copy       <132, &E::elbExtCtx>,
        Copy       <148, &E::elbWord>,
        KeptOrNow  <152, &E::timeStampCreate>,
        Now        <160, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::entryType, 15>, GetWrites<&E::addrType, 2>, GetWrites<&E::instType, 0>>;

    using Primary      = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::outIfIndex,
                                    &E::instId>;
    using ByEntry      = SecondaryKey<Row, 1, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr>;
    using ByEntryVlan  = SecondaryKey<Row, 3, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::instId>;
    static constexpr uint32_t kByIfIndex = 0x02090004;  // an interface index

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), returns(1)},
    };
    static constexpr CacheOutcomes onCache{
        .createFailed = {dfx(kCacheCreateFailed),
                         logObject("Failed to create vlanelb6 cache object, objType:%d, connType:%d, ret:%d"),
                         returns(1)},
        .resetFailed  = {dfx(kCacheResetFailed),
                         logObject("Failed to reset vlanelb6 cache object, objType:%d, connType:%d, ret:%d"),
                         returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("Failed to create l3mc6 vlan elb db object. ret:%u."), returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {logCode("Failed to read l3mc6 vlan elb db object. ret:%u."), record(Error::read), released,
                         returns(1)},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("Failed to write l3mc6 vlan elb db, entry is null."), returns(1)},
        .createFailed = {logCode("Failed to create l3mc6 write vlan elb db iter. ret:%u."), returns(1)},
        .setFailed    = {logCode("Failed to set l3mc6 vlan elb field. ret:%u."), released, engineCode},
        .written      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .writeFailed  = {released, logCode("Failed to write l3mc6 vlan elb db. ret:%u."), record(Error::write),
                         engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("Failed to remove l3mc6 vlan elb db, entry is null."), returns(1)},
        .createFailed = {logCode("Failed to create l3mc6 remove vlan elb db iter. ret:%u."), returns(1)},
        .removed      = {released, returns(0)},
        .code13044    = {released, returns(0)},
        .removeFailed = {logCode("Failed to remove l3mc6 vlan elb db. ret:%u."), released, engineCode},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
    static constexpr IterOutcomes onScanIter{
        .failed = {kpi(kIterFailed), log("create l3mc6 vlan elb scan iter failed."), returns(1)},
    };
    static constexpr CacheOutcomes onCachedIter{
        .createFailed = {dfx(kCachedIterCreateFailed),
                         logCode("Failed to create l3mc6 vlanelb cache root iter, ret:%d."), returns(1)},
        .resetFailed  = {dfx(kCachedIterResetFailed), logCode("Failed to reset l3mc6 vlanelb itercache, ret:%d."),
                         returns(1)},
    };
    static constexpr FastScanOutcomes onFastScan{
        .objectFailed     = {record(Error::iterBuild), log("Failed to create l3mc6 vlan elb db object."), returnsNull},
        .iteratorFailed   = {log("Failed to create l3mc6 vlan elb iter."), record(Error::iterBuild), returnsNull},
        .propertyFailed   = {log("set l3mc6 vlan elb root iterator property fail."), returnsNull},
        .allocationFailed = {log("Failed to malloc ipv6 vlan elb db res."), record(Error::iterBuild), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = callerGuarantees,
        .ended         = {returns(60)},
        .nextFailed    = {logCode("Failed to iterator next l3mc6 vlan elb. ret=%d."), record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("Failed to read l3mc vlan elb with buf. ret:%d."), record(Error::read), returns(1)},
    };
};
// clang-format on

namespace published = layout::l3mc6_vlan_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001002E && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x01090028 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(Table::ByEntryVlan::word == 0x0309002A && isPublished<Table::ByEntryVlan>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l3mc6_vlan_elb

using namespace mcast6;
using namespace mcast6::l3mc6_vlan_elb;

void MCAST6_DB_SetVlanElbObj(const L3Mc6ElbEntryExt* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_SetVlanElbEntry(const void* row, L3Mc6ElbEntryExt* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetVlanElbKey(const L3Mc6ElbEntryExt* record, uint32_t* keyWord, void* key) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_CreateVlanElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseVlanElbStatObject(Mcast6DbHandle object) {
    if (!returnedToScan(g_l3VlanElb6ScanDbHandle, object)) Table::accessors.release(object);
    countOne<Table, kReleased>();  // in either case
}

uint32_t MCAST6_DB_CreateVlanElbObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot) {
    return obtainCached<Table, Table::onCache>(objType, connType, slot, Table::cache);
}

uint32_t MCAST6_DB_ReadVlanElb(L3Mc6ElbEntryExt* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteVlanElb(const L3Mc6ElbEntryExt* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_RemoveVlanElb(const L3Mc6ElbEntryExt* record) { return removeRecord<Table>(record); }

Mcast6DbRes* MCAST6_DB_CreateVlanElbIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateVlanElbAllIterator(void) { return MCAST6_DB_CreateVlanElbIterator(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateVlanElbOutIfIterator(uint32_t ifIndex) {
    const auto key = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateVlanElbIterator(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateVlanElbMfibIterator(const L3Mc6MfibEntry* entry, uint32_t fast) {
    const auto key = keyOf<Table::ByEntry::word>(entry->vrId, entry->vrfId, entry->groupAddr, entry->sourceAddr);
    if (fast != 0) return MCAST6_DB_CreateVlanElbIteratorFast(&key.descriptor, key.bytes);
    return MCAST6_DB_CreateVlanElbIterator(&key.descriptor, key.bytes);
}

uint32_t MCAST6_DB_CreateVlanElbScanIterator(const L3Mc6ElbEntryExt* record, Mcast6DbRes* resource) {
    const auto key = Table::ByEntryVlan::of(*record);
    const uint32_t code = MCAST6_DB_CreateIterCommonWithDbRes(resource, &Table::objects, &key.descriptor, key.bytes);
    return code == kOk ? kOk : conclude<Table, Table::onScanIter, &IterOutcomes::failed>({});
}

uint32_t MCAST6_DB_CreateVlanElbIterCache(Mcast6DbHandle object, const Mcast6DbKeyDesc* descriptor, const void* key,
                                          Mcast6DbHandle* slot) {
    return obtainCachedIter<Table, Table::onCachedIter>(object, descriptor, key, slot);
}

Mcast6DbRes* MCAST6_DB_CreateVlanElbIteratorFast(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return fastScan<Table, Table::onFastScan>(descriptor, key);
}

void MCAST6_DB_ReleaseVlanElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetVlanElbEntry(Mcast6DbRes* iterator, L3Mc6ElbEntryExt* record) {
    return nextRecord<Table>(iterator, record);
}
