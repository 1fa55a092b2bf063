// l2mc6_bd_tag_rt: the routes of bridge domains to tagged interfaces.
// As the model table, with an update through an item setter in place of the smooth-version update.
#include "mcast6_db/l2mc6_bd_tag_rt.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_tag_rt.h"

namespace mcast6::l2mc6_bd_tag_rt {

using E = L2McBdRtEntry;

constexpr Counter kCreateFailed{405, "object creations failed"};
constexpr Counter kCreated{404, "objects created"};
constexpr Counter kReleased{406, "objects released"};
constexpr Counter kWritten{407, "writes"};
constexpr Counter kWriteFailed{408, "writes failed"};
constexpr Counter kDeleted{409, "deletes"};
constexpr Counter kDeleteFailed{410, "deletes failed"};
constexpr Counter kIterFailed{411, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 24;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2McBdTagRtObject, MCAST6_DB_ReleaseL2McBdTagRtObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_tag_rt_obj, db_release_l2mc6_bd_tag_rt_object,
                                         db_set_l2mc6_bd_tag_rt_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdTagRt;
    static constexpr auto get = MCAST6_DB_GetL2McBdTagRt;

    using Row = mcast6::Row<56,
        Copy      < 0, &E::vrId>,
        Copy      < 4, &E::rtKeyWord1>,
        Copy      < 8, &E::rtKeyWord2>,
        Copy      <12, &E::tagVid1>,
        Copy      <14, &E::tagVid2>,
        Copy      <16, &E::rtKeyValue>,
        Copy      <20, &E::vrfId>,
        Copy      <24, &E::rtAttr>,
        Copy      <28, &E::smoothVersion>,
        Copy      <32, &E::serviceStatus>,
        Copy      <36, &E::errCode>,
        KeptOrNow <40, &E::timeStampCreate>,
        Now       <48, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrKind, 1>, GetWrites<&E::rtKind, 2>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::rtKeyWord1, &E::rtKeyWord2, &E::tagVid1, &E::tagVid2,
                               LowBytes<uint16_t, &E::rtKeyValue>{}>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_tag_rt_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_tag_rt_timeStampSmooth>>;
    using AllSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_tag_rt_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l2mc6_bd_tag_rt_serviceStatus, &E::serviceStatus>,
        Sets    <db_set_l2mc6_bd_tag_rt_errCode, &E::errCode>,
        SetsNow <db_set_l2mc6_bd_tag_rt_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB]read l2 bd tag rt, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]read l2 bd tag rt, create object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {logCode("[MCAST6 DB]read l2 bd tag rt, read object db failed, ret:%u."), record(Error::read),
                         released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB]write l2 bd tag rt, para is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]write l2v6 bd tag rt, create object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB]write l2v6 bd tag rt, set_all_fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kWritten), returns(0)},
        .writeFailed  = {released, logCode("[MCAST6 DB]write l2 bd tag rt, write object failed, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onUpdate{
        .nullRecord   = {log("[MCAST6 DB]l2 bd tag rt upd oper, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]l2 bd tag rt upd oper, create object failed, ret:%u."), engineCode},
        .setFailed    = {logCode("[MCAST6 DB]l2 bd tag rt upd oper, set fields failed, ret:%u."), released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB]l2 bd tag rt upd oper, update object failed, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]del l2 bd tag rt, para is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]del l2 bd tag rt, create object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("[MCAST6 DB]del l2 bd tag rt, remove object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[MCAST6 DB]l2 bd tag rt get entry, para is null."), returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB]l2 bd tag rt get entry, db root iterator next failed, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]l2 bd tag rt get entry, read obj failed, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_tag_rt;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010012 && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_bd_tag_rt

using namespace mcast6;
using namespace mcast6::l2mc6_bd_tag_rt;

void MCAST6_DB_SetL2McBdTagRtTimeStamp(void* row, const L2McBdRtEntry* record) { stampRowFrom<Table>(record, row); }

void MCAST6_DB_SetL2McBdTagRt(const L2McBdRtEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2McBdTagRt(const void* row, L2McBdRtEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2McBdTagRtObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2McBdTagRtObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2McBdTagRt(L2McBdRtEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2McBdTagRt(const L2McBdRtEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_SetUpdateL2McBdTagRtSmthItem(Mcast6DbHandle object, const L2McBdRtEntry* record) {
    return Table::SmoothSetters::apply(object, *record);
}

uint32_t MCAST6_DB_SetUpdateL2McBdTagRtItem(Mcast6DbHandle object, const L2McBdRtEntry* record) {
    return Table::AllSetters::apply(object, *record);
}

uint32_t MCAST6_DB_UpdateL2McBdTagRtOper(const L2McBdRtEntry* record, L2McBdRtItemSetter itemSetter) {
    return updateRecordWith<Table, Table::onUpdate>(record, itemSetter);
}

uint32_t MCAST6_DB_UpdateL2McBdTagRtSmoothVersion(const L2McBdRtEntry* record, L2McBdRtItemSetter /*ignored*/) {
    return MCAST6_DB_UpdateL2McBdTagRtOper(record, MCAST6_DB_SetUpdateL2McBdTagRtSmthItem);
}

uint32_t MCAST6_DB_UpdateL2McBdTagRt(const L2McBdRtEntry* record, L2McBdRtItemSetter /*ignored*/) {
    return MCAST6_DB_UpdateL2McBdTagRtOper(record, MCAST6_DB_SetUpdateL2McBdTagRtItem);
}

uint32_t MCAST6_DB_DeleteL2McBdTagRt(const L2McBdRtEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2McBdTagRtEntry(Mcast6DbRes* iterator, L2McBdRtEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagRtIterCommon(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagRtIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2McBdTagRtIterCommon(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]l2 bd tag rt, create all iter failed.");
    return iterator;
}

void MCAST6_DB_ReleaseL2McBdTagRtIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
