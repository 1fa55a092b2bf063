// l2mc6_global_enable: the global MLD switches.
// The older convention: failures return 1, never the engine's code; KPIs instead of counters; some steps fail without a
// log. A write refuses 13044; updates and removal accept it and record nothing.
#include "mcast6_db/l2mc6_global_enable.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_global_enable.h"

namespace mcast6::l2mc6_global_enable {

using E = MldGlobalEntry;

constexpr Counter kCreated{37, "objects created"};
constexpr Counter kReleased{38, "objects released"};
constexpr Kpi kChanged{49, "writes and updates"};
constexpr Kpi kChangeFailed{50, "writes and updates failed"};
constexpr Kpi kRemoved{51, "deletes"};
constexpr Kpi kRemoveFailed{52, "deletes failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 3;
    static constexpr uint32_t logId  = kLogConfiguration;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kChanged, kChangeFailed, kRemoved, kRemoveFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateMldGlobalObject, MCAST6_DB_ReleaseMldGlobalObject};
    static constexpr Accessors accessors{db_create_l2mc6_global_enable_obj, db_release_l2mc6_global_enable_object,
                                         db_set_l2mc6_global_enable_all_fields};
    static constexpr auto set = MCAST6_DB_SetMldGlbItem;
    static constexpr auto get = MCAST6_DB_GetMldGlbItem;

    using Row = mcast6::Row<36,
        Copy      < 0, &E::keyId1>,
        Copy      < 4, &E::keyId2>,
        Copy      < 8, &E::cfgWord1>,
        Copy      <12, &E::smoothVersion>,
        Copy      <16, &E::serviceStatus>,
        Copy      <18, &E::errCode>,
        KeptOrNow <20, &E::timeStampCreate>,
        Now       <28, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<>;

    using Primary = PrimaryKey<Row, &E::keyId1, &E::keyId2>;

    using UpdateSetters = FieldSetters<
        Sets    <db_set_l2mc6_global_enable_serviceStatus, &E::serviceStatus>,
        Sets    <db_set_l2mc6_global_enable_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l2mc6_global_enable_errCode, &E::errCode>,
        SetsNow <db_set_l2mc6_global_enable_timeStampSmooth>>;
    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_global_enable_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_global_enable_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] mld global enable create object fail, ret:%u."), returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {returns(1)},
        .createFailed = {returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released, logCode("[MCAST6 DB] read object fail, ret:%u."), returns(1)},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {kpi(kChangeFailed), returns(1)},
        .createFailed = {kpi(kChangeFailed), returns(1)},
        .setFailed    = {released, kpi(kChangeFailed), returns(1)},
        .written      = {released, kpi(kChanged), returns(0)},
        // refused
        .code13044    = {logCode("[MCAST6 DB] write object fail, ret:%u."), released, kpi(kChangeFailed), returns(1)},
        .writeFailed  = {logCode("[MCAST6 DB] write object fail, ret:%u."), released, kpi(kChangeFailed), returns(1)},
    };
    static constexpr UpdateOutcomes onUpdate{
        .nullRecord   = {kpi(kChangeFailed), returns(1)},
        .createFailed = {kpi(kChangeFailed), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] set update item fail, ret:%u."), released, kpi(kChangeFailed),
                         returns(1)},
        .updated      = {released, kpi(kChanged), returns(0)},
        .code13044    = {released, kpi(kChanged), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB] update object fail, ret:%u."), kpi(kChangeFailed), returns(1)},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {kpi(kChangeFailed), log("[MCAST6 DB] mld glb enable smoothversion data is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] mld glb enable smoothversion create object fail."), kpi(kChangeFailed),
                         returns(1)},
        .setFailed    = {released, kpi(kChangeFailed),
                         logCode("[MCAST6 DB] mld glb enable smoothversion set update item fail, ret:%u."), returns(1)},
        .updated      = {released, kpi(kChanged), returns(0)},
        .code13044    = {released, kpi(kChanged), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB] update mld glb enable smooth version fail, ret:%u."),
                         kpi(kChangeFailed), returns(1)},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {kpi(kRemoveFailed), returns(1)},
        .createFailed = {kpi(kRemoveFailed), returns(1)},
        .removed      = {released, kpi(kRemoved), returns(0)},
        .code13044    = {released, kpi(kRemoved), returns(0)},
        .removeFailed = {released, kpi(kRemoveFailed), logCode("[MCAST6 DB] remove object fail, ret:%u."), returns(1)},
    };
    static constexpr BuildOutcomes onIter{
        .createFailed     = {returnsNull},
        .rootIterFailed   = {released, returnsNull},
        .propertyFailed   = {released, logCode("[MCAST6 DB] set mldGlb cfg root iterator property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {released, record(Error::iterBuild),
                             log("[MCAST6 DB] create MldGlb cfg iterator error. malloc mem failed."), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB] get mld global cfg iterator error. ret:%d"), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB] get mld global cfg db entry fail, ret:%d."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l2mc6_global_enable;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010008 && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_global_enable

using namespace mcast6;
using namespace mcast6::l2mc6_global_enable;

void MCAST6_DB_SetMldGlbItem(const MldGlobalEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetMldGlbItem(const void* row, MldGlobalEntry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetMldGlbKey(Mcast6DbKeyDesc* descriptor, void* key, const MldGlobalEntry* record) {
    putPrimaryKey<Table>(&descriptor->keyWord, key, record);
}

uint32_t MCAST6_DB_SetMldGlbTimeStamp(Mcast6DbHandle object, uint32_t flag) {
    return setStamps(db_set_l2mc6_global_enable_timeStampSmooth, db_set_l2mc6_global_enable_timeStampCreate, object,
                     flag != 0);
}

uint32_t MCAST6_DB_CreateMldGlobalObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseMldGlobalObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_WriteMldGlobal(const MldGlobalEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateMldGlobal(const MldGlobalEntry* record) {
    return updateRecord<Table, Table::onUpdate, Table::UpdateSetters>(record);
}

uint32_t MCAST6_DB_UpdateMldGlobalSmoothVersion(const MldGlobalEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_ReadMldGlobal(MldGlobalEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_RemoveMldGlobal(const MldGlobalEntry* record) { return removeRecord<Table>(record); }

Mcast6DbRes* MCAST6_DB_CreateMldGlbCfgIter(void) { return buildIter<Table, Table::onIter>(nullptr, nullptr); }

uint32_t MCAST6_DB_GetMldGlbEntry(Mcast6DbRes* iterator, MldGlobalEntry* record) {
    return nextRecord<Table>(iterator, record);
}

void MCAST6_DB_ReleaseMldGlbCfgIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetMldGlbCfgCount(uint32_t* count) { return countAll<Table>(count); }
