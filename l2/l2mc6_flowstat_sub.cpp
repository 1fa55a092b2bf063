// l2mc6_flowstat_sub: the flow-statistics subscriptions outside bridge domains.
// The older convention in part: a failed create returns 1; engine codes of the read, the write and the update are
// passed through. A write returns every code, 13044 too, and logs all but a full table.
#include "mcast6_db/l2mc6_flowstat_sub.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_flowstat_sub.h"

namespace mcast6::l2mc6_flowstat_sub {

using E = FlowStatSubEntry;

constexpr Counter kCreated{14, "objects created"};
constexpr Counter kReleased{15, "objects released"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 10;
    static constexpr uint32_t logId  = kLogFlowStatistics;
    static constexpr Counter counters[]{kCreated, kReleased};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateFlowStatObject, MCAST6_DB_ReleaseFlowStatObject};
    static constexpr Accessors accessors{db_create_l2mc6_flowstat_sub_obj, db_release_l2mc6_flowstat_sub_object,
                                         db_set_l2mc6_flowstat_sub_all_fields};
    static void set(const E* record, void* row) { MCAST6_DB_SetL2FlowStatSubItem(row, record); }
    static constexpr auto get = MCAST6_DB_GetL2FlowStatSubItem;

    using Row = mcast6::Row<72,
        Copy      < 0, &E::keyId1>,
        Copy      < 4, &E::keyId2>,
        Address   < 8, &E::flowAddr1>,
        Address   <24, &E::flowAddr2>,
        Copy      <40, &E::srcPid>,
        Copy      <44, &E::cfgWord2>,
        Copy      <48, &E::cfgWord3>,
        Copy      <52, &E::smoothVersion>,
        KeptOrNow <56, &E::timeStampCreate>,
        Now       <64, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::getFlag, 0>>;

    using Primary = PrimaryKey<Row, &E::keyId1, &E::keyId2, &E::flowAddr1, &E::flowAddr2>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_flowstat_sub_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_flowstat_sub_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] flow stat create object fail, ret:%u"), returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB] read flowstat fail, flowEntry is null"), returns(1)},
        .createFailed = {logCode("[MCAST6 DB] read flowstat fail, create object fail, ret:%u"), returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released, logCode("[MCAST6 DB] read object fail, ret:%u."), engineCode},
    };
    static constexpr LimitedWriteOutcomes onWrite{{
        .nullRecord   = {log("[MCAST6 DB] write flowstat fail, flowEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] write flowstat fail, create object fail."), returns(1)},
        .setFailed    = {released, logCode("[MCAST6 DB] set_fall_fields failed, ret:%u"), engineCode},  // sic
        .written      = {released, returns(0)},
        .code13044    = {logCode("[MCAST6 DB] write object fail, ret:%u."), released, engineCode},  // returned
        .writeFailed  = {logCode("[MCAST6 DB] write object fail, ret:%u."), released, engineCode},
    },  /* tableFull */ {released, engineCode},
    };
    static constexpr UpdateOutcomes onUpdate{
        .nullRecord   = {log("[MCAST6 DB] update flowstat fail, flowEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] update flowstat object fail, create object fail."), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] set update item fail, ret:%u."), released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB] update object fail, ret:%u."), record(Error::update),
                         engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB] remove flowstat fail, flowEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] remove flowstat object fail, create object fail."), returns(1)},
        .removed      = {released, returns(0)},
        .code13044    = {released, returns(0)},
        .removeFailed = {released, logCode("[MCAST6 DB] remove object fail, ret:%u."), returns(1)},
    };
    static constexpr BuildOutcomes onIter{
        .createFailed     = {log("[MCAST6 DB] create l2mc flow stat iter failed, create obj failed."), returnsNull},
        .rootIterFailed   = {
            logCode("[MCAST6 DB] create l2mc flow stat iter failed, create root iter failed. ret:%d"),
            record(Error::rootIter), released, returnsNull},
        .propertyFailed   = {logCode("[MCAST6 DB] set l2mc flow stat root iterator property fail, ret:%d."), released,
                             returnsNull},
        .allocationFailed = {log("[MCAST6 DB] create l2mc flow stat iter failed, malloc failed."),
                             record(Error::iterBuild), released, returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[MCAST6 DB] get flowstat fail, flowEntry is null"), returns(1)},
        .ended         = {returns(60)},
        // row 4, not 10
        .nextFailed    = {logCode("[MCAST6 DB] get flowstat fail, get next entry error. ret:%d"),
                          record(Error::next, 4), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB] get flowstat fail, db_read_obj_with_buf fail, ret:%d."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l2mc6_flowstat_sub;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010028 && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_flowstat_sub

using namespace mcast6;
using namespace mcast6::l2mc6_flowstat_sub;

void MCAST6_DB_SetL2FlowStatSubItem(void* row, const FlowStatSubEntry* record) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2FlowStatSubItem(const void* row, FlowStatSubEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_SetL2FlowStatSubKey(Mcast6DbKeyDesc* descriptor, void* key, const FlowStatSubEntry* record) {
    return putPrimaryKey<Table>(&descriptor->keyWord, key, record);
}

uint32_t MCAST6_DB_SetL2FlowStatSubTimeStamp(Mcast6DbHandle object, uint32_t flag) {
    return setStamps(db_set_l2mc6_flowstat_sub_timeStampSmooth, db_set_l2mc6_flowstat_sub_timeStampCreate, object,
                     flag != 0);
}

uint32_t MCAST6_DB_CreateFlowStatObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseFlowStatObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2FlowStatSub(FlowStatSubEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2FlowStatSub(const FlowStatSubEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_RemoveL2FlowStatSub(const FlowStatSubEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2FlowStatSub(const FlowStatSubEntry* record) {
    return updateRecord<Table, Table::onUpdate, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_GetL2FlowStatSubEntry(Mcast6DbRes* iterator, FlowStatSubEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2FlowStatSubIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return buildIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2FlowStatSubAllIter(void) { return MCAST6_DB_CreateL2FlowStatSubIter(nullptr, nullptr); }

void MCAST6_DB_ReleaseL2FlowStatSubIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
