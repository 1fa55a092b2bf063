// l2mc6_bd_rt_vxlan_elb: the routes of bridge domains to VXLAN tunnels.
// Differs from l2mc6_bd_tag_rt on 13044: a write and a removal count it as failed and then as done. Keep the odd words
// of the messages ("release" where a write failed, "mfibv4", "dellet").
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_rt_vxlan_elb.h"

namespace mcast6::l2mc6_bd_rt_vxlan_elb {

using E = L2McBdRtVxlanEntry;

constexpr Counter kCreateFailed{518, "object creations failed"};
constexpr Counter kCreated{519, "objects created"};
constexpr Counter kReleased{520, "objects released"};
constexpr Counter kWritten{522, "writes"};
constexpr Counter kWriteFailed{521, "writes failed"};
constexpr Counter kDeleted{524, "deletes"};
constexpr Counter kDeleteFailed{523, "deletes failed"};
constexpr Counter kIterFailed{525, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 32;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2Mc6BdRtVxlanElbObject,
                                               MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_rt_vxlan_elb_obj, db_release_l2mc6_bd_rt_vxlan_elb_object,
                                         db_set_l2mc6_bd_rt_vxlan_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2Mc6BdRtVxlanElb;
    static constexpr auto get = MCAST6_DB_GetL2Mc6BdRtVxlanElb;

    using Row = mcast6::Row<64,
        Copy      < 0, &E::vrId>,
        Copy      < 4, &E::rtKeyWord1>,
        Copy      < 8, &E::rtKeyWord2>,
        Copy      <12, &E::rtKeyWord3>,
        Copy      <16, &E::rtKeyValue>,
        Copy      <20, &E::rtAttr>,
        Gap       <24, 4>,
        Copy      <28, &E::vrfId>,
        Copy      <32, &E::appSrcPid>,
        Copy      <36, &E::smoothVersion>,
        Copy      <40, &E::serviceStatus>,
        Copy      <44, &E::errCode>,
        KeptOrNow <48, &E::timeStampCreate>,
        Now       <56, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrKind, 1>, GetWrites<&E::rtKind, 3>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::rtKeyWord1, &E::rtKeyWord2, &E::rtKeyWord3,
                               LowBytes<uint16_t, &E::rtKeyValue>{}>;
    using BySrcPid = SecondaryKey<Row, 2, &E::vrId, &E::vrfId, &E::appSrcPid>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_rt_vxlan_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_rt_vxlan_elb_timeStampSmooth>>;
    using AllSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_rt_vxlan_elb_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l2mc6_bd_rt_vxlan_elb_serviceStatus, &E::serviceStatus>,
        Sets    <db_set_l2mc6_bd_rt_vxlan_elb_errCode, &E::errCode>,
        SetsNow <db_set_l2mc6_bd_rt_vxlan_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL2Mc6BdRtVxlanElb, entry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL2Mc6BdRtVxlanElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {
            logCode("MCAST_DB_ReadL2McBdRtVxlanElb, read l2mc_bd_rt_vxlan_elb object db failed, ret:%u."),
            record(Error::read), released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL2Mc6BdRtVxlanElb, entry is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL2Mc6BdRtVxlanElb, create db object failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .setFailed    = {released, logCode("MCAST6_DB_WriteL2Mc6BdRtVxlanElb, set_all_fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        // both counters
        .code13044    = {released, record(Error::code13044), dfx(kWriteFailed), dfx(kWritten), returns(0)},
        .writeFailed  = {
            released,
            logCode("MCAST6_DB_WriteL2Mc6BdRtVxlanElb, release l2mc l2mc_bd_rt_vxlan_elb object fail, ret:%u."),
            record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onUpdate{
        .nullRecord   = {log("MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper, entry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL2Mc6BdRtVxlanElb, set smooth version fail, ret:%u."), released,
                         engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("MCAST6_DB_UpdateL2Mc6BdRtVxlanElb, release mfibv4 object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL2Mc6BdRtVxlanElb, entry is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL2Mc6BdRtVxlanElb, create db object failed, ret:%u."),
                         dfx(kDeleteFailed), engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        // both counters
        .code13044    = {released, record(Error::code13044), dfx(kDeleteFailed), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL2Mc6BdRtVxlanElb, dellet rt fail, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_rt_vxlan_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010012 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::BySrcPid::word == 0x0209000C && isPublished<Table::BySrcPid>(published::kIndexes));

}  // namespace mcast6::l2mc6_bd_rt_vxlan_elb

using namespace mcast6;
using namespace mcast6::l2mc6_bd_rt_vxlan_elb;

void MCAST6_DB_SetL2Mc6BdRtVxlanElbTimeStamp(void* row, const L2McBdRtVxlanEntry* record) {
    stampRowFrom<Table>(record, row);
}

void MCAST6_DB_SetL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2Mc6BdRtVxlanElb(const void* row, L2McBdRtVxlanEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2Mc6BdRtVxlanElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2Mc6BdRtVxlanElb(L2McBdRtVxlanEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbSmthItem(Mcast6DbHandle object, const L2McBdRtVxlanEntry* record) {
    return Table::SmoothSetters::apply(object, *record);
}

uint32_t MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbItem(Mcast6DbHandle object, const L2McBdRtVxlanEntry* record) {
    return Table::AllSetters::apply(object, *record);
}

uint32_t MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper(const L2McBdRtVxlanEntry* record, L2McBdRtVxlanItemSetter itemSetter) {
    return updateRecordWith<Table, Table::onUpdate>(record, itemSetter);
}

uint32_t MCAST6_DB_UpdateL2Mc6BdRtVxlanElbSmoothVersion(const L2McBdRtVxlanEntry* record,
                                                        L2McBdRtVxlanItemSetter /*ignored*/) {
    return MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper(record, MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbSmthItem);
}

uint32_t MCAST6_DB_UpdateL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry* record, L2McBdRtVxlanItemSetter /*ignored*/) {
    return MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper(record, MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbItem);
}

uint32_t MCAST6_DB_DeleteL2Mc6BdRtVxlanElb(const L2McBdRtVxlanEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry(Mcast6DbRes* iterator, L2McBdRtVxlanEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterCommon(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid(const L2McBdRtVxlanEntry* record) {
    const auto key = Table::BySrcPid::of(*record);
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterCommon(&key.descriptor, key.bytes);
    if (iterator == nullptr) logLine(Table::logId, "MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid by src pid failed.");
    return iterator;
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdRtVxlanElbIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterCommon(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "MCAST6_DB_Create L2McBdRtVxlanElbIter failed.");
    return iterator;
}

void MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
