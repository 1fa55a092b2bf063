// l2mc6_bd_untag_rt: the routes of bridge domains to untagged interfaces.
// As l2mc6_bd_tag_rt, without tags.
#include "mcast6_db/l2mc6_bd_untag_rt.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_untag_rt.h"

namespace mcast6::l2mc6_bd_untag_rt {

using E = L2McBdRtEntry;

constexpr Counter kCreateFailed{413, "object creations failed"};
constexpr Counter kCreated{412, "objects created"};
constexpr Counter kReleased{414, "objects released"};
constexpr Counter kWritten{415, "writes"};
constexpr Counter kWriteFailed{416, "writes failed"};
constexpr Counter kDeleted{417, "deletes"};
constexpr Counter kDeleteFailed{418, "deletes failed"};
constexpr Counter kIterFailed{419, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 25;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2McBdUntagRtObject,
                                               MCAST6_DB_ReleaseL2McBdUntagRtObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_untag_rt_obj, db_release_l2mc6_bd_untag_rt_object,
                                         db_set_l2mc6_bd_untag_rt_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdUntagRt;
    static constexpr auto get = MCAST6_DB_GetL2McBdUntagRt;

    using Row = mcast6::Row<52,
        Copy      < 0, &E::vrId>,
        Copy      < 4, &E::rtKeyWord1>,
        Copy      < 8, &E::rtKeyWord2>,
        Copy      <12, &E::rtKeyValue>,
        Copy      <16, &E::vrfId>,
        Copy      <20, &E::rtAttr>,
        Copy      <24, &E::smoothVersion>,
        Copy      <28, &E::serviceStatus>,
        Copy      <32, &E::errCode>,
        KeptOrNow <36, &E::timeStampCreate>,
        Now       <44, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrKind, 1>, GetWrites<&E::rtKind, 1>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::rtKeyWord1, &E::rtKeyWord2, LowBytes<uint16_t, &E::rtKeyValue>{}>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_untag_rt_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_untag_rt_timeStampSmooth>>;
    using AllSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_untag_rt_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l2mc6_bd_untag_rt_serviceStatus, &E::serviceStatus>,
        Sets    <db_set_l2mc6_bd_untag_rt_errCode, &E::errCode>,
        SetsNow <db_set_l2mc6_bd_untag_rt_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB]read l2 bd untag rt, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]read l2 bd untag rt, create object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {logCode("[MCAST6 DB]read l2 bd untag rt, read object failed, ret:%u."), record(Error::read),
                         released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB]write l2 bd untag rt, para is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]write l2 bd untag rt, create object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB]write l2 bd untag rt, set all fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kWritten), returns(0)},
        .writeFailed  = {released, logCode("[MCAST6 DB]write l2 bd untag rt, write object failed, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onUpdate{
        .nullRecord   = {log("[MCAST6 DB]l2 bd untag rt upd oper, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]l2 bd untag rt upd oper, create object failed, ret:%u."), engineCode},
        .setFailed    = {logCode("[MCAST6 DB]l2 bd untag rt upd oper, set object failed, ret:%u."), released,
                         engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB]l2 bd untag rt upd oper, update object failed, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]del l2 bd untag rt, para is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]del l2 bd untag rt, create object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("[MCAST6 DB]del l2 bd untag rt, remove object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[MCAST6 DB]l2 bd untag rt get entry, para is null."), returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB]l2 bd untag rt get entry, db root iterator next failed, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]l2 bd untag rt get entry, read obj failed, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_untag_rt;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001000E && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_bd_untag_rt

using namespace mcast6;
using namespace mcast6::l2mc6_bd_untag_rt;

void MCAST6_DB_SetL2McBdUntagRtTimeStamp(void* row, const L2McBdRtEntry* record) { stampRowFrom<Table>(record, row); }

void MCAST6_DB_SetL2McBdUntagRt(const L2McBdRtEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2McBdUntagRt(const void* row, L2McBdRtEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2McBdUntagRtObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2McBdUntagRtObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2McBdUntagRt(L2McBdRtEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2McBdUntagRt(const L2McBdRtEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_SetUpdateL2McBdUntagRtSmthItem(Mcast6DbHandle object, const L2McBdRtEntry* record) {
    return Table::SmoothSetters::apply(object, *record);
}

uint32_t MCAST6_DB_SetUpdateL2McBdUntagRtItem(Mcast6DbHandle object, const L2McBdRtEntry* record) {
    return Table::AllSetters::apply(object, *record);
}

uint32_t MCAST6_DB_UpdateL2McBdUntagRtOper(const L2McBdRtEntry* record, L2McBdRtItemSetter itemSetter) {
    return updateRecordWith<Table, Table::onUpdate>(record, itemSetter);
}

uint32_t MCAST6_DB_UpdateL2McBdUntagRtSmoothVersion(const L2McBdRtEntry* record, L2McBdRtItemSetter /*ignored*/) {
    return MCAST6_DB_UpdateL2McBdUntagRtOper(record, MCAST6_DB_SetUpdateL2McBdUntagRtSmthItem);
}

uint32_t MCAST6_DB_UpdateL2McBdUntagRt(const L2McBdRtEntry* record, L2McBdRtItemSetter /*ignored*/) {
    return MCAST6_DB_UpdateL2McBdUntagRtOper(record, MCAST6_DB_SetUpdateL2McBdUntagRtItem);
}

uint32_t MCAST6_DB_DeleteL2McBdUntagRt(const L2McBdRtEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2McBdUntagRtEntry(Mcast6DbRes* iterator, L2McBdRtEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagRtIterCommon(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagRtIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2McBdUntagRtIterCommon(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]l2 bd untag rt, create all iter failed");
    return iterator;
}

void MCAST6_DB_ReleaseL2McBdUntagRtIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
