// l3mc6_bd_tag_elb: the bridge domain members of layer-3 entries that send tagged frames.
// As the model table, with KPIs for the outcomes; a read passes 15005 through. Some messages say "release" or "mfibv4"
// where a change failed: keep them.
#include "mcast6_db/l3mc6_bd_tag_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "l3/l3_bd_egress.h"
#include "mcast6_platform/tables/l3mc6_bd_tag_elb.h"

Mcast6DbHandle g_l3Mc6BdTagElbStatObjCache;
uint32_t g_l3Mc6BdTagElbPid;

namespace mcast6::l3mc6_bd_tag_elb {

using E = L3BdElb6Entry;

constexpr Counter kCreated{322, "objects created"};
constexpr Counter kReleased{323, "objects released"};
constexpr Kpi kWritten{188, "writes"};
constexpr Kpi kWriteFailed{189, "writes failed"};
constexpr Kpi kDeleted{190, "deletes"};
constexpr Kpi kDeleteFailed{191, "deletes failed"};
constexpr Kpi kCreateFailed{192, "object creations failed"};
constexpr Kpi kIterFailed{193, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 18;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3McBdTagElbObject, MCAST6_DB_ReleaseL3McBdTagElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_bd_tag_elb_obj, db_release_l3mc6_bd_tag_elb_object,
                                         db_set_l3mc6_bd_tag_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_bd_tag_elb_cache_object,
                                              db_reset_l3mc6_bd_tag_elb_cache_object};
    static constexpr auto set = MCAST6_DB_SetL3McBdTagElb;
    static constexpr auto get = MCAST6_DB_GetL3McBdTagElb;

    using Row = mcast6::Row<160,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::vrfId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::bdElbAttr4>,
        Copy    < 44, &E::bdElbAttr5>,
        Copy    < 48, &E::bdElbAttr7>,
        Copy    < 50, &E::bdElbAttr8>,
        ReadsBackWide <52>,
        Resized < 53, uint8_t, &E::bdElbAttr19>,
        Copy    < 54, &E::bdElbAttr18>,
        Gap     < 55, 1>,
        Copy    < 56, &E::bdElbAttr9>,
        Copy    < 60, &E::bdElbAttr10>,
        Copy    < 64, &E::bdElbAttr16>,
        Copy    < 68, &E::bdElbAttr1>,
        Copy    < 72, &E::bdElbAttr2>,
        Copy    < 80, &E::bdElbAttr3>,
        Copy    < 84, &E::appSrcPid>,
        Copy    < 88, &E::bdElbAttr14>,
        Copy    < 92, &E::smoothVersion>,
        Copy    < 96, &E::mlagRole>,
        Copy    < 97, &E::isMlagDual>,
        Copy    < 98, &E::inIfhasMlag>,
        Copy    <100, &E::bdElbAttr11>,
        Copy    <128, &E::bdElbAttr12>,
        Copy    <136, &E::bdElbAttr13>,
        Copy    <140, &E::bdElbAttr15>,
        Copy    <142, &E::bdElbAttr17>,
        Now     <144, &E::timeStampCreate>,
        Now     <152, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::elbKind, 18>, GetWrites<&E::addrType, 2>, GetWrites<&E::fixedOne, 1>,
                                GetWrites<&E::elbSubKind, 2>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::bdElbAttr4, &E::bdElbAttr5,
                                &E::bdElbAttr7, &E::bdElbAttr8>;
    using BySrcPid = SecondaryKey<Row, 4, &E::vrId, &E::vrfId, &E::appSrcPid>;
    using ByEntry  = SecondaryKey<Row, 5, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::bdElbAttr19>;
    static constexpr uint32_t kByVsg          = 0x01090028;  // VR, VRF, group, source
    static constexpr uint32_t kByBridgeDomain = 0x02090008;  // a VR and a bridge domain
    static constexpr uint32_t kByVrInterface   = 0x03090008;  // a VR and an interface index
    static constexpr uint32_t kByIfIndex      = 0x06090004;  // an interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l3mc6_bd_tag_elb_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l3mc6_bd_tag_elb_mlagRole, &E::mlagRole>,
        Sets    <db_set_l3mc6_bd_tag_elb_isMlagDual, &E::isMlagDual>,
        Sets    <db_set_l3mc6_bd_tag_elb_inIfhasMlag, &E::inIfhasMlag>,
        SetsNow <db_set_l3mc6_bd_tag_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL3McBdTagElb, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL3McBdTagElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("MCAST6_DB_ReadL3McBdTagElb, read l3mc6_bd_tag_elb object db failed, ret:%u."),
                         record(Error::read), released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL3McBdTagElb, l3McBdTagElb is null."), kpi(kWriteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL3McBdTagElb, create db object failed, ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("MCAST6_DB_WriteL3McBdTagElb, set_all_fields failed, ret:%u."),
                         kpi(kWriteFailed), engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        // says "release"
        .writeFailed  = {released, logCode("MCAST6_DB_WriteL3McBdTagElb, release db object fail, ret:%u."),
                         record(Error::write), kpi(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // says "mfibv4"
        .updateFailed = {released,
                         logCode("MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, release mfibv4 object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL3McBdTagElb, elbEntry is null."), kpi(kDeleteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL3McBdTagElb, create db object failed, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL3McBdTagElb, release db object fail, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL3McBdTagElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL3McBdTagElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l3mc6_bd_tag_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010034 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::BySrcPid::word == 0x0409000C && isPublished<Table::BySrcPid>(published::kIndexes));
static_assert(Table::ByEntry::word == 0x05090029 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByVsg) &&
              isPublishedWord(published::kIndexes, Table::kByBridgeDomain) &&
              isPublishedWord(published::kIndexes, Table::kByVrInterface) &&
              isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l3mc6_bd_tag_elb

using namespace mcast6;
using namespace mcast6::l3mc6_bd_tag_elb;

int64_t MCAST6_DB_SetStructL3McBdTtagElbTimeStamp(int32_t withCreate, void* row) {
    return static_cast<int64_t>(stampRow<Table>(withCreate != 0, row));
}

void MCAST6_DB_SetL3McBdTagElb(const L3BdElb6Entry* record, void* row) { setRow<Table>(record, row); }

uint32_t MCAST6_DB_GetL3McBdTagElb(const void* row, L3BdElb6Entry* record) {
    return getRecord<Table, &E::sourceAddr>(row, record);
}

uint32_t MCAST6_DB_CreateL3McBdTagElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3McBdTagElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL3McBdTagElb(L3BdElb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL3McBdTagElb(const L3BdElb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL3McBdTagElbSmoothVersion(const L3BdElb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL3McBdTagElb(const L3BdElb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL3McBdTagElbEntry(Mcast6DbRes* iterator, L3BdElb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbAllIter(void) { return MCAST6_DB_CreateL3McBdTagElbIter(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbCreateVSGIterator(const L3BdElb6VsgKey* key) {
    const auto filter = keyOf<Table::kByVsg>(key->wordA, key->wordB, key->addrC, key->addrD);
    return MCAST6_DB_CreateL3McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbIterBySrcPid(const L3BdElb6Entry* record) {
    const auto filter = Table::BySrcPid::of(*record);
    return MCAST6_DB_CreateL3McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbIterByVrIdIfIndex(uint32_t vrId, uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByVrInterface>(vrId, ifIndex);
    return MCAST6_DB_CreateL3McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbVrBdIter(uint32_t vrId, uint32_t bdId) {
    const auto filter = keyOf<Table::kByBridgeDomain>(vrId, bdId);
    return MCAST6_DB_CreateL3McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbIterByIfIndex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL3McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdTagElbMfibIter(const L3BdElb6Entry* record) {
    const auto filter = Table::ByEntry::of(*record);
    return MCAST6_DB_CreateL3McBdTagElbIter(&filter.descriptor, filter.bytes);
}

void MCAST6_DB_ReleaseL3McBdTagElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3McBdTagElbCountFast(void) {
    return MCAST6_DB_GetCountFast(&Table::cache, &g_l3Mc6BdTagElbStatObjCache);
}
