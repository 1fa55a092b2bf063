// l2mc6_querier: the MLD querier elected in each bridge domain.
// Deviates from the model table: every failure returns 1, writes and deletes count KPI, null records are not logged.
#include "mcast6_db/l2mc6_querier.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_querier.h"

namespace mcast6::l2mc6_querier {

using E = L2Mc6QuerierEntry;

constexpr Counter kCreated{600, "objects created"};
constexpr Counter kReleased{601, "objects released"};
constexpr Kpi kWritten{300, "writes"};
constexpr Kpi kWriteFailed{301, "writes failed"};
constexpr Kpi kDeleted{302, "deletes"};
constexpr Kpi kDeleteFailed{303, "deletes failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 12;
    static constexpr uint32_t logId  = kLogConfiguration;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2Mc6QuerierObject, MCAST6_DB_ReleaseL2Mc6QuerierObject};
    static constexpr Accessors accessors{db_create_l2mc6_querier_obj, db_release_l2mc6_querier_object,
                                         db_set_l2mc6_querier_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2Mc6Querier;
    static constexpr auto get = MCAST6_DB_GetL2Mc6Querier;

    using Row = mcast6::Row<52,
        Copy      < 0, &E::vrId>,
        Copy      < 4, &E::bdId>,
        Address   < 8, &E::querierAddr>,
        Copy      <24, &E::ifIndex>,
        Resized   <28, uint8_t, &E::version>,
        Gap       <29, 3>,
        Copy      <32, &E::smoothVersion>,
        KeptOrNow <36, &E::timeStampCreate>,
        Now       <44, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::bdId>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_querier_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_querier_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] querier create object fail, ret:%u."), returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {returns(1)},
        .createFailed = {returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released, logCode("[MCAST6 DB] querier read object fail, ret:%u."), record(Error::read),
                         returns(1)},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {kpi(kWriteFailed), returns(1)},
        .createFailed = {kpi(kWriteFailed), returns(1)},
        .setFailed    = {released, kpi(kWriteFailed), returns(1)},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        .writeFailed  = {logCode("[MCAST6 DB] querier write object fail, ret:%u."), released, record(Error::write),
                         kpi(kWriteFailed), returns(1)},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB] querier smooth version, para is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] querier smooth version, create object fail."), returns(1)},
        .setFailed    = {released, logCode("[MCAST6 DB] querier smooth version, set field fail, ret:%u."), returns(1)},
        .updated      = {released, returns(0)},
        .code13044    = {released, returns(0)},  // not recorded
        .updateFailed = {released, logCode("[MCAST6 DB] querier smooth version, update object fail, ret:%u."),
                         record(Error::update), returns(1)},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {kpi(kDeleteFailed), returns(1)},
        .createFailed = {kpi(kDeleteFailed), returns(1)},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, kpi(kDeleted), returns(0)},  // not recorded
        .removeFailed = {released, kpi(kDeleteFailed), logCode("[MCAST6 DB] querier remove object fail, ret:%u."),
                         record(Error::remove), returns(1)},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB] querier get entry, next fail, ret:%d."), record(Error::next),
                          returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {log("[MCAST6 DB] querier create iter fail."), returnsNull},
    };
};
// clang-format on

using ByIfIndex = SecondaryKey<Table::Row, 2, &E::ifIndex>;

namespace published = layout::l2mc6_querier;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010008 && Table::Primary::agrees(published::kPrimary));
static_assert(ByIfIndex::word == 0x02090004 && isPublished<ByIfIndex>(published::kIndexes));

}  // namespace mcast6::l2mc6_querier

using namespace mcast6;
using namespace mcast6::l2mc6_querier;

void MCAST6_DB_SetL2Mc6Querier(const L2Mc6QuerierEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2Mc6Querier(const void* row, L2Mc6QuerierEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2Mc6QuerierObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2Mc6QuerierObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2Mc6Querier(L2Mc6QuerierEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2Mc6Querier(const L2Mc6QuerierEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2Mc6QuerierSmoothVersion(const L2Mc6QuerierEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2Mc6Querier(const L2Mc6QuerierEntry* record) { return removeRecord<Table>(record); }

Mcast6DbRes* MCAST6_DB_CreateL2Mc6QuerierIter(void) { return createIter<Table, Table::onIter>(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL2Mc6QuerierIterByIfIndex(uint32_t ifIndex) {
    const auto key = keyOf<ByIfIndex::word>(ifIndex);
    return createIter<Table, Table::onIter>(&key.descriptor, key.bytes);
}

uint32_t MCAST6_DB_GetL2Mc6QuerierEntry(Mcast6DbRes* iterator, L2Mc6QuerierEntry* record) {
    return nextRecord<Table>(iterator, record);
}

void MCAST6_DB_ReleaseL2Mc6QuerierIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL2Mc6QuerierCount(uint32_t* count) { return countAll<Table>(count); }
