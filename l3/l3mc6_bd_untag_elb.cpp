// l3mc6_bd_untag_elb: the bridge domain members of layer-3 entries that send untagged frames.
// As l3mc6_bd_tag_elb, without tags.
#include "mcast6_db/l3mc6_bd_untag_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "l3/l3_bd_egress.h"
#include "mcast6_platform/tables/l3mc6_bd_untag_elb.h"

Mcast6DbHandle g_l3Mc6BdUnTagElbStatObjCache;

namespace mcast6::l3mc6_bd_untag_elb {

using E = L3BdElb6Entry;

constexpr Counter kCreated{324, "objects created"};
constexpr Counter kReleased{325, "objects released"};
constexpr Kpi kWritten{194, "writes"};
constexpr Kpi kWriteFailed{195, "writes failed"};
constexpr Kpi kDeleted{196, "deletes"};
constexpr Kpi kDeleteFailed{197, "deletes failed"};
constexpr Kpi kCreateFailed{198, "object creations failed"};
constexpr Kpi kIterFailed{199, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 19;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3McBdUntagElbObject,
                                               MCAST6_DB_ReleaseL3McBdUntagElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_bd_untag_elb_obj, db_release_l3mc6_bd_untag_elb_object,
                                         db_set_l3mc6_bd_untag_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_bd_untag_elb_cache_object,
                                              db_reset_l3mc6_bd_untag_elb_cache_object};
    static constexpr auto set = MCAST6_DB_SetL3McBdUntagElb;
    static constexpr auto get = MCAST6_DB_GetL3McBdUntagElb;

    using Row = mcast6::Row<156,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::vrfId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::bdElbAttr4>,
        Copy    < 44, &E::bdElbAttr5>,
        ReadsBackWide <48>,
        Resized < 49, uint8_t, &E::bdElbAttr19>,
        Copy    < 50, &E::bdElbAttr18>,
        Gap     < 51, 1>,
        Copy    < 52, &E::bdElbAttr9>,
        Copy    < 56, &E::bdElbAttr10>,
        Copy    < 60, &E::bdElbAttr16>,
        Copy    < 64, &E::bdElbAttr1>,
        Copy    < 68, &E::bdElbAttr2>,
        Copy    < 76, &E::mlagRole>,
        Copy    < 77, &E::isMlagDual>,
        Copy    < 78, &E::inIfhasMlag>,
        Copy    < 80, &E::bdElbAttr3>,
        Copy    < 84, &E::appSrcPid>,
        Copy    < 88, &E::bdElbAttr14>,
        Copy    < 92, &E::smoothVersion>,
        Copy    < 96, &E::bdElbAttr11>,
        Copy    <124, &E::bdElbAttr12>,
        Copy    <132, &E::bdElbAttr13>,
        Copy    <136, &E::bdElbAttr15>,
        Copy    <138, &E::bdElbAttr17>,
        Now     <140, &E::timeStampCreate>,
        Now     <148, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::elbKind, 17>, GetWrites<&E::addrType, 2>, GetWrites<&E::fixedOne, 1>,
                                GetWrites<&E::elbSubKind, 1>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::bdElbAttr4,
                                &E::bdElbAttr5>;
    using BySrcPid = SecondaryKey<Row, 4, &E::vrId, &E::vrfId, &E::appSrcPid>;
    using ByEntry  = SecondaryKey<Row, 5, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::bdElbAttr19>;
    static constexpr uint32_t kByVsg          = 0x01090028;  // VR, VRF, group, source
    static constexpr uint32_t kByBridgeDomain = 0x02090008;  // a VR and a bridge domain
    static constexpr uint32_t kByVrInterface   = 0x03090008;  // a VR and an interface index
    static constexpr uint32_t kByIfIndex      = 0x06090004;  // an interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l3mc6_bd_untag_elb_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l3mc6_bd_untag_elb_mlagRole, &E::mlagRole>,
        Sets    <db_set_l3mc6_bd_untag_elb_isMlagDual, &E::isMlagDual>,
        Sets    <db_set_l3mc6_bd_untag_elb_inIfhasMlag, &E::inIfhasMlag>,
        SetsNow <db_set_l3mc6_bd_untag_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL3McBdUntagElb, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL3McBdUntagElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("MCAST6_DB_ReadL3McBdUntagElb, read l3mc6_bd_untag_elb object db failed, ret:%u."),
                         record(Error::read), released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL3McBdUntagElb, elbEntry is null."), kpi(kWriteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL3McBdUntagElb, create db object failed, ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("MCAST6_DB_WriteL3McBdUntagElb, set_all_fields failed, ret:%u."),
                         kpi(kWriteFailed), engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        // says "release"
        .writeFailed  = {released, logCode("MCAST6_DB_WriteL3McBdUntagElb, release db object fail, ret:%u."),
                         record(Error::write), kpi(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // says "mfibv4"
        .updateFailed = {released,
                         logCode("MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, release mfibv4 object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL3McBdUntagElb, elbEntry is null."), kpi(kDeleteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL3McBdUntagElb, create db object failed, ret:%u."),
                         kpi(kDeleteFailed), engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL3McBdUntagElb, release db object fail, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL3McBdUntagElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL3McBdUntagElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l3mc6_bd_untag_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010030 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::BySrcPid::word == 0x0409000C && isPublished<Table::BySrcPid>(published::kIndexes));
static_assert(Table::ByEntry::word == 0x05090029 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByVsg) &&
              isPublishedWord(published::kIndexes, Table::kByBridgeDomain) &&
              isPublishedWord(published::kIndexes, Table::kByVrInterface) &&
              isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l3mc6_bd_untag_elb

using namespace mcast6;
using namespace mcast6::l3mc6_bd_untag_elb;

int64_t MCAST6_DB_SetStructL3McBdUntagElbTimeStamp(int32_t withCreate, void* row) {
    return static_cast<int64_t>(stampRow<Table>(withCreate != 0, row));
}

void MCAST6_DB_SetL3McBdUntagElb(const L3BdElb6Entry* record, void* row) { setRow<Table>(record, row); }

uint32_t MCAST6_DB_GetL3McBdUntagElb(const void* row, L3BdElb6Entry* record) {
    return getRecord<Table, &E::sourceAddr>(row, record);
}

uint32_t MCAST6_DB_CreateL3McBdUntagElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3McBdUntagElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL3McBdUntagElb(L3BdElb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL3McBdUntagElb(const L3BdElb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion(const L3BdElb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL3McBdUntagElb(const L3BdElb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL3McBdUntagElbEntry(Mcast6DbRes* iterator, L3BdElb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbAllIter(void) {
    return MCAST6_DB_CreateL3McBdUntagElbIter(nullptr, nullptr);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbCreateVSGIterator(const L3BdElb6VsgKey* key) {
    const auto filter = keyOf<Table::kByVsg>(key->wordA, key->wordB, key->addrC, key->addrD);
    return MCAST6_DB_CreateL3McBdUntagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbIterBySrcPid(const L3BdElb6Entry* record) {
    const auto filter = Table::BySrcPid::of(*record);
    return MCAST6_DB_CreateL3McBdUntagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbIterByVrIdIfIndex(uint32_t vrId, uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByVrInterface>(vrId, ifIndex);
    return MCAST6_DB_CreateL3McBdUntagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbVrBdIter(uint32_t vrId, uint32_t bdId) {
    const auto filter = keyOf<Table::kByBridgeDomain>(vrId, bdId);
    return MCAST6_DB_CreateL3McBdUntagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbIfindexIter(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL3McBdUntagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McBdUntagElbMfibIter(const L3BdElb6Entry* record) {
    const auto filter = Table::ByEntry::of(*record);
    return MCAST6_DB_CreateL3McBdUntagElbIter(&filter.descriptor, filter.bytes);
}

void MCAST6_DB_ReleaseL3McBdUntagElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3McBdUntagElbCountFast(void) {
    return MCAST6_DB_GetCountFast(&Table::cache, &g_l3Mc6BdUnTagElbStatObjCache);
}
