// l3mc6_bd_tnl_elb: the bridge domain members of layer-3 entries behind tunnels.
// As l3mc6_bd_tag_elb, with tunnel attributes in place of tags and MLAG.
#include "mcast6_db/l3mc6_bd_tnl_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "l3/l3_bd_egress.h"
#include "mcast6_platform/tables/l3mc6_bd_tnl_elb.h"

Mcast6DbHandle g_l3Mc6BdTnlElbStatObjCache;
uint32_t g_l3Mc6BdTnlElbPid;

namespace mcast6::l3mc6_bd_tnl_elb {

using E = L3BdElb6Entry;

constexpr Counter kCreated{326, "objects created"};
constexpr Counter kReleased{327, "objects released"};
constexpr Kpi kWritten{200, "writes"};
constexpr Kpi kWriteFailed{201, "writes failed"};
constexpr Kpi kDeleted{202, "deletes"};
constexpr Kpi kDeleteFailed{203, "deletes failed"};
constexpr Kpi kCreateFailed{204, "object creations failed"};
constexpr Kpi kIterFailed{205, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 20;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3McBdTnlElbObject, MCAST6_DB_ReleaseL3McBdTnlElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_bd_tnl_elb_obj, db_release_l3mc6_bd_tnl_elb_object,
                                         db_set_l3mc6_bd_tnl_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_bd_tnl_elb_cache_object,
                                              db_reset_l3mc6_bd_tnl_elb_cache_object};
    static constexpr auto set = MCAST6_DB_SetL3McBdTnlElb;
    static constexpr auto get = MCAST6_DB_GetL3McBdTnlElb;

    using Row = mcast6::Row<172,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::vrfId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::bdElbAttr4>,
        Copy    < 44, &E::tnlAttr2>,
        Copy    < 48, &E::tnlAttr3>,
        Copy    < 49, &E::tnlAttr6>,
        ReadsBackWide <50>,
        Resized < 51, uint8_t, &E::bdElbAttr19>,
        Copy    < 52, &E::tnlAttr1>,
        Copy    < 56, &E::tnlAttr4>,
        Copy    < 60, &E::bdElbAttr16>,
        Copy    < 64, &E::bdElbAttr5>,
        Copy    < 68, &E::bdElbAttr1>,
        Copy    < 72, &E::bdElbAttr2>,
        Copy    < 80, &E::bdElbAttr3>,
        Copy    < 84, &E::appSrcPid>,
        Copy    < 88, &E::bdElbAttr14>,
        Copy    < 92, &E::smoothVersion>,
        Copy    < 96, &E::tnlAttr5>,
        Copy    <112, &E::bdElbAttr11>,
        Copy    <140, &E::bdElbAttr12>,
        Copy    <148, &E::bdElbAttr13>,
        Copy    <152, &E::bdElbAttr15>,
        Copy    <154, &E::bdElbAttr17>,
        Now     <156, &E::timeStampCreate>,
        Now     <164, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::elbKind, 19>, GetWrites<&E::addrType, 2>, GetWrites<&E::fixedOne, 1>,
                                GetWrites<&E::elbSubKind, 3>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::bdElbAttr4, &E::tnlAttr2,
                                &E::tnlAttr3>;
    using BySrcPid = SecondaryKey<Row, 4, &E::vrId, &E::vrfId, &E::appSrcPid>;
    using ByEntry  = SecondaryKey<Row, 5, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::bdElbAttr19>;
    static constexpr uint32_t kByVsg          = 0x01090028;  // VR, VRF, group, source
    static constexpr uint32_t kByBridgeDomain = 0x02090008;  // a VR and a bridge domain
    static constexpr uint32_t kByTunnel        = 0x0309000D;  // VR, bridge domain, tnlAttr2, tnlAttr3 (8 bits)
    static constexpr uint32_t kByIfIndex      = 0x06090004;  // an interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l3mc6_bd_tnl_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l3mc6_bd_tnl_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL3McBdTnlElb, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL3McBdTnlElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("MCAST6_DB_ReadL3McBdTnlElb, read l3mc6_bd_tnl_elb object db failed, ret:%u."),
                         record(Error::read), released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL3McBdTnlElb, elbEntry is null."), kpi(kWriteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL3McBdTnlElb, create db object failed, ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("MCAST6_DB_WriteL3McBdTnlElb, set_all_fields failed, ret:%u."),
                         kpi(kWriteFailed), engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        // says "release"
        .writeFailed  = {released, logCode("MCAST6_DB_WriteL3McBdTnlElb, release db object fail, ret:%u."),
                         record(Error::write), kpi(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // says "mfibv4"
        .updateFailed = {released,
                         logCode("MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, release mfibv4 object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL3McBdTnlElb, elbEntry is null."), kpi(kDeleteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL3McBdTnlElb, create db object failed, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL3McBdTnlElb, release db object fail, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL3McBdTnlElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL3McBdTnlElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
    static constexpr CountOutcomes onCount{
        .createFailed = {logCode("[GetL3McBdTnlElbCountByKey] create elb object fail, ret:%u."), returns(1)},
        .countFailed  = {logCode("[GetL3McBdTnlElbCountByKey] get elb num fail, ret:%u."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l3mc6_bd_tnl_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010031 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::BySrcPid::word == 0x0409000C && isPublished<Table::BySrcPid>(published::kIndexes));
static_assert(Table::ByEntry::word == 0x05090029 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByVsg) &&
              isPublishedWord(published::kIndexes, Table::kByBridgeDomain) &&
              isPublishedWord(published::kIndexes, Table::kByTunnel) &&
              isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l3mc6_bd_tnl_elb

using namespace mcast6;
using namespace mcast6::l3mc6_bd_tnl_elb;

int64_t MCAST6_DB_SetStructL3McBdTnlElbTimeStamp(int32_t withCreate, void* row) {
    return static_cast<int64_t>(stampRow<Table>(withCreate != 0, row));
}

void MCAST6_DB_SetL3McBdTnlElb(const L3BdElb6Entry* record, void* row) { setRow<Table>(record, row); }

uint32_t MCAST6_DB_GetL3McBdTnlElb(const void* row, L3BdElb6Entry* record) {
    return getRecord<Table, &E::sourceAddr>(row, record);
}

uint32_t MCAST6_DB_CreateL3McBdTnlElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3McBdTnlElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL3McBdTnlElb(L3BdElb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL3McBdTnlElb(const L3BdElb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion(const L3BdElb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL3McBdTnlElb(const L3BdElb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL3McBdTnlElbEntry(Mcast6DbRes* iterator, L3BdElb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbAllIter(void) { return MCAST6_DB_CreateL3McBdTnlElbIter(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbCreateVSGIterator(const L3BdElb6VsgKey* key) {
    const auto filter = keyOf<Table::kByVsg>(key->wordA, key->wordB, key->addrC, key->addrD);
    return MCAST6_DB_CreateL3McBdTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbIterBySrcPid(const L3BdElb6Entry* record) {
    const auto filter = Table::BySrcPid::of(*record);
    return MCAST6_DB_CreateL3McBdTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbIterByVrTnlInfo(uint32_t vrId, uint32_t bdId, uint32_t tnlAttr2,
                                                         uint8_t tnlAttr3) {
    const auto filter = keyOf<Table::kByTunnel>(vrId, bdId, tnlAttr2, tnlAttr3);
    return MCAST6_DB_CreateL3McBdTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbVrBdIter(uint32_t vrId, uint32_t bdId) {
    const auto filter = keyOf<Table::kByBridgeDomain>(vrId, bdId);
    return MCAST6_DB_CreateL3McBdTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbIterByIfIndex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL3McBdTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTnlElbMfibIter(const L3BdElb6Entry* record) {
    const auto filter = Table::ByEntry::of(*record);
    return MCAST6_DB_CreateL3McBdTnlElbIter(&filter.descriptor, filter.bytes);
}

void MCAST6_DB_ReleaseL3McBdTnlElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3McBdTnlElbCountFast(void) {
    return MCAST6_DB_GetCountFast(&Table::cache, &g_l3Mc6BdTnlElbStatObjCache);
}

uint32_t MCAST6_DB_GetL3McBdTnlElbCountByKey(const Mcast6DbKeyDesc* descriptor, const void* key, uint32_t* count) {
    return countByKey<Table, Table::onCount>(descriptor, key, count);
}

uint32_t MCAST6_DB_GetL3McBdTnlElbSourcePid(void) { return g_l3Mc6BdTnlElbPid; }
