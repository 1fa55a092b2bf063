// l3mc6_mfib: the layer-3 multicast forwarding entries. Queries are in l3mc6_mfib_query.cpp.
// Differences from the model table: keyed reads pass 15005 through; null is not checked, except by the
// statistics-context update; the process id of the last converted record is kept; a failed write counts as an attempt
// too; one iterator step, at the end, releases its object.
#include "mcast6_db/l3mc6_mfib.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "l3/l3mc6_mfib_row.h"
#include "mcast6_platform/tables/l3mc6_mfib.h"

uint32_t g_l3Mfib6Pid;
Mcast6DbHandle g_l3Mfib6DbReadObjCache;
Mcast6DbHandle g_l3Mfib6DbStatObjCache;

namespace mcast6::l3mc6_mfib {

constexpr Counter kCreated{151, "objects created"};
constexpr Counter kReleased{152, "objects released"};
constexpr Counter kCacheCreateFailed{153, "cache object creations failed"};
constexpr Counter kCacheResetFailed{154, "cache object resets failed"};
constexpr Kpi kWriteTried{93, "writes attempted"};
constexpr Kpi kWriteFailed{94, "writes failed"};
constexpr Kpi kDeleted{95, "deletes"};
constexpr Kpi kDeleteFailed{96, "deletes failed"};
constexpr Kpi kCreateFailed{114, "object creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 15;
    static constexpr uint32_t logId  = kLogLayer3;  // the statistics and queries log under kLogLayer3Query
    static constexpr Counter counters[]{kCreated, kReleased, kCacheCreateFailed, kCacheResetFailed};
    static constexpr Kpi indicators[]{kWriteTried, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3MfibObject, MCAST6_DB_ReleaseL3MfibObject};
    static constexpr Accessors accessors{db_create_l3mc6_mfib_obj, db_release_l3mc6_mfib_object,
                                         db_set_l3mc6_mfib_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_mfib_cache_object, db_reset_l3mc6_mfib_cache_object};
    static constexpr auto set = MCAST6_DB_SetL3Mfib;
    static constexpr auto get = MCAST6_DB_GetL3Mfib;

    using Row = l3mc6_mfib::Row;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l3mc6_mfib_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l3mc6_mfib_timeStampSmooth>>;
    using StatSetters = FieldSetters<
        Sets    <db_set_l3mc6_mfib_mcStatSvcCtx, &E::mcStatSvcCtx>,
        SetsNow <db_set_l3mc6_mfib_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr CacheOutcomes onCache{
        .createFailed = {dfx(kCacheCreateFailed),
                         logObject("Failed to create l3mfib6 cache object, objType:%u, connType:%u, ret:%u"),
                         engineCode},
        .resetFailed  = {dfx(kCacheResetFailed),
                         logObject("Failed to reset l3mfib6 cache object, objType:%u, connType:%u, ret:%u"),
                         engineCode},
    };
    static constexpr KeyedReadOutcomes onKeyedRead{
        .found      = {returns(0)},
        .absent     = {engineCode},
        .readFailed = {logCode("MCAST6_DB_ReadL3Mfib, read mfib object db failed, ret:%u."), record(Error::read),
                       engineCode},
    };
    static constexpr GivenObjectOutcomes onRead{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("MCAST6_DB_ReadL3Mfib failed, create db object failed. ret:%u."), engineCode},
    };
    static constexpr GivenObjectOutcomes onFastRead{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("MCAST6_DB_ReadL3Mfib fast failed, create db object failed, ret:%u."), engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("MCAST6_DB_WriteL3Mfib, create db object failed. ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("MCAST6_DB_WriteL3Mfib, set_all_fields failed, ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .written      = {released, kpi(kWriteTried), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWriteTried), returns(0)},
        // both counters
        .writeFailed  = {released, logCode("MCAST6_DB_WriteL3Mfib failed, ret:%u."), record(Error::write),
                         kpi(kWriteFailed), kpi(kWriteTried), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("MCAST6_DB_UpdateL3MfibSmoothVersion, create db object failed, ret:%u."), engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL3MfibSmoothVersion failed, set smooth para failed, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("MCAST6_DB_UpdateL3MfibSmoothVersion, update db object failed, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr UpdateOutcomes onStat{
        .nullRecord   = {log("mcast6 update mcStatSvcCtx failed, mfibEntry param is null.", kLogLayer3Query),
                         returns(1)},
        .createFailed = {
            logCode("mcast6 update mcStatSvcCtx failed, create db object failed, ret:%u.", kLogLayer3Query),
            engineCode},
        .setFailed    = {
            logCode("mcast6 update mcStatSvcCtx failed, set mcStatCtx para failed, ret:%u.", kLogLayer3Query), released,
            engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {
            released, logCode("mcast6 update mcStatSvcCtx failed, update db object failed, ret:%u.", kLogLayer3Query),
            record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("MCAST6_DB_DeleteL3Mfib, create db object failed, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
        .removed      = {released, calls(MCAST6_TRAP_DecreaseMfib6DbCnt), kpi(kDeleted), returns(0)},
        // the host function is not called
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL3Mfib, db remove obj fail, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = callerGuarantees,
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL3MfibEntry, db root iterator next fail, ret:%u."), record(Error::next),
                          engineCode},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL3MfibEntry, db read fail, ret:%u."), record(Error::read), engineCode},
    };
};
// clang-format on

namespace published = layout::l3mc6_mfib;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010028 && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l3mc6_mfib

using namespace mcast6;
using namespace mcast6::l3mc6_mfib;

uint32_t MCAST6_DB_GetL3MfibSourcePid(void) { return g_l3Mfib6Pid; }

void MCAST6_DB_SetL3MfibSourcePid(uint32_t pid) { g_l3Mfib6Pid = pid; }

void MCAST6_DB_SetL3MainMfib(const L3Mc6MfibEntry* record, void* row) {
    setRow<Table>(record, row);
    MCAST6_DB_SetL3MfibSourcePid(record->appSrcPid);
}

void MCAST6_DB_SetL3Mfib(const L3Mc6MfibEntry* record, void* row) { MCAST6_DB_SetL3MainMfib(record, row); }

uint32_t MCAST6_DB_GetL3MainMfib(const void* row, L3Mc6MfibEntry* record) {
    return getRecord<Table, &E::sourceAddr>(row, record);
}

uint32_t MCAST6_DB_GetL3Mfib(const void* row, L3Mc6MfibEntry* record) { return MCAST6_DB_GetL3MainMfib(row, record); }

void MCAST6_DB_SetL3MfibKey(uint32_t* keyWord, void* key, const L3Mc6MfibEntry* record) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_CreateL3MfibObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3MfibObject(Mcast6DbHandle object) {
    if (object != 0) Table::accessors.release(object);
    countOne<Table, kReleased>();  // for 0 too
}

uint32_t MCAST6_DB_ReadL3MfibEntry(L3Mc6MfibEntry* record, Mcast6DbHandle object) {
    return keyedRead<Table, Table::onKeyedRead>(record, object);
}

uint32_t MCAST6_DB_ReadL3Mfib(L3Mc6MfibEntry* record) {
    return readWithOwnObject<Table, Table::onRead, Table::onKeyedRead>(record);
}

uint32_t MCAST6_DB_CreateL3MfibObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot) {
    return obtainCached<Table, Table::onCache>(objType, connType, slot, Table::cache);
}

// Inlined into one function: the forwarding path's read.
[[gnu::flatten]] uint32_t MCAST6_DB_ReadL3MfibFast(L3Mc6MfibEntry* record) {
    const uint32_t code =
        obtainCached<Table, Table::onCache>(kReadObject, kConnType, &g_l3Mfib6DbReadObjCache, Table::cache);
    if (code != kOk) return conclude<Table, Table::onFastRead, &GivenObjectOutcomes::createFailed>({.code = code});
    return keyedRead<Table, Table::onKeyedRead>(record, g_l3Mfib6DbReadObjCache);
}

uint32_t MCAST6_DB_ReadL3MfibFastTemp(L3Mc6MfibEntry* record) { return MCAST6_DB_ReadL3MfibFast(record); }

uint32_t MCAST6_DB_WriteL3Mfib(const L3Mc6MfibEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL3MfibSmoothVersion(const L3Mc6MfibEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL3Mfib(const L3Mc6MfibEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL3MfibEntry(Mcast6DbRes* iterator, L3Mc6MfibEntry* record) {
    return nextRecord<Table>(iterator, record);
}

// Deviates in control flow: the key is built after the fields are set.
uint32_t MCAST6_DB_UpdateL3MfibMcStatSvcCtx(const L3Mc6MfibEntry* record) {
    if (record == nullptr) return conclude<Table, Table::onStat, &UpdateOutcomes::nullRecord>({});
    Step step;
    step.code = Table::objects.create(kUpdateObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, Table::onStat, &UpdateOutcomes::createFailed>(step);
    step.code = Table::StatSetters::apply(step.object, *record);
    if (step.code != kOk) return conclude<Table, Table::onStat, &UpdateOutcomes::setFailed>(step);
    return updateOn<Table, Table::onStat>(step.object, Table::Primary::of(*record));
}

// Deviates in control flow: at the end and after a failed step the object is released. A failed read is logged, and the
// row, empty if nothing was read, is converted nevertheless. Nothing is recorded.
uint32_t MCAST6_DB_GetNextL3Mfib(Mcast6DbRes* iterator, L3Mc6MfibEntry* record) {
    uint32_t code = db_root_iterator_next(iterator->rootIter);
    if (code != kOk) {
        if (code != kEndOfIteration) logLine(kLogLayer3Query, "[L3MC CFG]mFib Get next ctrl fail. ret %u", code);
        Table::objects.release(iterator->object);
        iterator->object = 0;
        return code == kEndOfIteration ? kNoRecord : code;
    }
    RowOf<Table> row;
    code = readPosition<Table>(*iterator, row);
    if (code != kOk) logLine(kLogLayer3Query, "[L3MC CFG]get L3Mfib item fail, ret = %u", code);
    Table::get(row.data(), record);
    return code;
}
