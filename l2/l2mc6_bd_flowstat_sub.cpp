// l2mc6_bd_flowstat_sub: the flow-statistics subscriptions of bridge domains.
// Differences from the model table: a read passes 15005 through, and a write to a full table is counted but not logged.
#include "mcast6_db/l2mc6_bd_flowstat_sub.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_flowstat_sub.h"

namespace mcast6::l2mc6_bd_flowstat_sub {

using E = FlowStatSubEntry;

constexpr Counter kCreated{390, "objects created"};
constexpr Counter kCreateFailed{391, "object creations failed"};
constexpr Counter kReleased{392, "objects released"};
constexpr Counter kTableFull{393, "writes refused by a full table"};
constexpr Counter kWritten{394, "writes"};
constexpr Counter kWriteFailed{395, "writes failed"};
constexpr Counter kDeleted{396, "deletes"};
constexpr Counter kDeleteFailed{397, "deletes failed"};
constexpr Counter kIterFailed{398, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 23;
    static constexpr uint32_t logId  = kLogFlowStatistics;
    static constexpr Counter counters[]{
        kCreated, kCreateFailed, kReleased, kTableFull, kWritten,
        kWriteFailed, kDeleted, kDeleteFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2McBdFlowstatSubObject,
                                               MCAST6_DB_ReleaseL2McBdFlowstatSubObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_flowstat_sub_obj, db_release_l2mc6_bd_flowstat_sub_object,
                                         db_set_l2mc6_bd_flowstat_sub_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdFlowstatSub;
    static constexpr auto get = MCAST6_DB_GetL2McBdFlowstatSub;

    using Row = mcast6::Row<72,
        Copy    < 0, &E::keyId1>,
        Copy    < 4, &E::keyId2>,
        Address < 8, &E::flowAddr1>,
        Address <24, &E::flowAddr2>,
        Copy    <40, &E::srcPid>,
        Copy    <44, &E::cfgWord2>,
        Copy    <48, &E::cfgWord3>,
        Copy    <52, &E::smoothVersion>,
        Now     <56, &E::timeStampCreate>,
        Now     <64, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::getFlag, 1>>;

    using Primary  = PrimaryKey<Row, &E::keyId1, &E::keyId2, &E::flowAddr1, &E::flowAddr2>;
    using BySrcPid = SecondaryKey<Row, 2, &E::keyId1, &E::srcPid, &E::cfgWord3>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_flowstat_sub_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_flowstat_sub_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB]read l2 bd flow stat failed, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]read l2 bd flow stat, create object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("[MCAST6 DB]read l2 bd flow stat, read object failed, ret:%u"), record(Error::read),
                         released, engineCode},
    };
    static constexpr LimitedWriteOutcomes onWrite{{
        .nullRecord   = {log("[MCAST6 DB]write l2 bd flow stat, para is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]write l2 bd flow stat, create object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB]write l2 bd flow stat, set all field failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kWritten), returns(0)},
        .writeFailed  = {released, logCode("[MCAST6 DB]write l2 bd flow stat, write object failed, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    },  /* tableFull */ {released, dfx(kTableFull), record(Error::write), dfx(kWriteFailed), engineCode},  // no log
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB]l2 bd flow stat upd version, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]l2 bd flow stat upd version, create object failed, ret:%u."), engineCode},
        .setFailed    = {logCode("[MCAST6 DB]l2 bd flow stat upd version, set smooth version failed, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB]l2 bd flow stat upd version, update object failed, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]l2 bd flow stat del, para is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]l2 bd flow stat del, create object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("[MCAST6 DB]l2 bd flow stat del, remove object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[MCAST6 DB]l2 bd flow stat get entry, para is null."), returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB]l2 bd flow stat get entry, db root iterator next failed, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]l2 bd flow stat get entry, read obj failed, ret:%d."),
                          record(Error::read), returns(1)},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_flowstat_sub;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010028 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::BySrcPid::word == 0x0209000C && isPublished<Table::BySrcPid>(published::kIndexes));

}  // namespace mcast6::l2mc6_bd_flowstat_sub

using namespace mcast6;
using namespace mcast6::l2mc6_bd_flowstat_sub;

void MCAST6_DB_SetL2McBdFlowstatSub(const FlowStatSubEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2McBdFlowstatSub(const void* row, FlowStatSubEntry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetStructL2McBdFlowstatSubTimeStamp(uint32_t flag, void* row) { stampRow<Table>(flag != 0, row); }

uint32_t MCAST6_DB_SetL2McBdFlowstatSubKey(Mcast6DbKeyDesc* descriptor, void* key, const FlowStatSubEntry* record) {
    return putPrimaryKey<Table>(&descriptor->keyWord, key, record);
}

uint32_t MCAST6_DB_CreateL2McBdFlowstatSubObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2McBdFlowstatSubObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2McBdFlowstatSub(FlowStatSubEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2McBdFlowstatSub(const FlowStatSubEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2McBdFlowstatSubSmoothVersion(const FlowStatSubEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2McBdFlowstatSub(const FlowStatSubEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2McBdFlowstatSubEntry(Mcast6DbRes* iterator, FlowStatSubEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdFlowstatSubIterCommon(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(const FlowStatSubEntry* record) {
    const auto key = Table::BySrcPid::of(*record);
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2McBdFlowstatSubIterCommon(&key.descriptor, key.bytes);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]l2 bd flow stat create iter by srcPid failed.");
    return iterator;
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdFlowstatSubIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2McBdFlowstatSubIterCommon(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]l2 bd flow stat create all iter failed.");
    return iterator;
}

void MCAST6_DB_ReleaseL2McBdFlowstatSubIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
