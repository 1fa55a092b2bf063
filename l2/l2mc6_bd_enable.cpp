// l2mc6_bd_enable: the layer-2 multicast switch of each bridge domain.
// The model table: it has all standard operations in their simplest form. Its only deviation is the configuration
// update, at the end.
#include "mcast6_db/l2mc6_bd_enable.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_enable.h"

namespace mcast6::l2mc6_bd_enable {

using E = L2McBdEnableEntry;

constexpr Counter kCreated{452, "objects created"};
constexpr Counter kCreateFailed{453, "object creations failed"};
constexpr Counter kReleased{454, "objects released"};
constexpr Counter kWritten{455, "writes"};
constexpr Counter kWriteFailed{456, "writes failed"};
constexpr Counter kDeleted{457, "deletes"};
constexpr Counter kDeleteFailed{458, "deletes failed"};
constexpr Counter kIterFailed{459, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 26;
    static constexpr uint32_t logId  = kLogConfiguration;
    static constexpr Counter counters[]{
        kCreated, kCreateFailed, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2McBdEnableObject, MCAST6_DB_ReleaseL2McBdEnableObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_enable_obj, db_release_l2mc6_bd_enable_object,
                                         db_set_l2mc6_bd_enable_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdEnable;
    static constexpr auto get = MCAST6_DB_GetL2McBdEnable;

    using Row = mcast6::Row<68,
        Copy      < 0, &E::keyId1>,
        Copy      < 4, &E::keyId2>,
        ReadsBack < 8, &E::addrType, 2>,
        Copy      <12, &E::attrA>,
        Copy      <16, &E::pathFlags>,
        Copy      <20, &E::mldVersion>,
        Copy      <24, &E::attrB>,
        Copy      <28, &E::smoothVersion>,
        Copy      <32, &E::serviceStatus>,
        Copy      <34, &E::errCode>,
        Now       <36, &E::timeStampCreate>,
        Now       <44, &E::timeStampSmooth>,
        Copy      <52, &E::l2mcEnable>,
        Copy      <56, &E::attrC>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::getFlag, 1>>;  // spare1 is neither stored nor written

    using Primary = PrimaryKey<Row, &E::keyId1, &E::keyId2, &E::addrType>;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_enable_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_enable_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB]read l2 bd enable, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]read l2 bd enable, create object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released, logCode("[MCAST6 DB]read l2 bd enable, read object failed, ret:%u."),
                         record(Error::read), engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB]write l2 bd enable, para is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]write l2 bd enable, create object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB]write l2 bd enable, set all fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kWritten), returns(0)},
        .writeFailed  = {released, logCode("[MCAST6 DB]write l2 bd enable, write object failed, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB]update l2 bd enable smoothing version, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]update l2 bd enable smoothing version, create object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("[MCAST6 DB]update l2 bd enable smoothing version, set field failed, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released,
                         logCode("[MCAST6 DB]update l2 bd enable smoothing version, update object failed, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]del l2 bd enable, para is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]del l2 bd enable, create object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("[MCAST6 DB]del l2 bd enable, remove object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[MCAST6 DB]get l2 bd enable entry, para is null."), returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB]get l2 bd enable entry, db root iterator next failed, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]get l2 bd enable entry, read obj failed, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), log("[MCAST6 DB]create l2 bd enable iter failed."), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_enable;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001000C && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_bd_enable

using namespace mcast6;
using namespace mcast6::l2mc6_bd_enable;

void MCAST6_DB_SetL2McBdEnable(const L2McBdEnableEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2McBdEnable(const void* row, L2McBdEnableEntry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetStructMldBdTimeStamp(uint32_t flag, void* row) { stampRow<Table>(flag != 0, row); }

uint32_t MCAST6_DB_SetMldBdTimeStamp(Mcast6DbHandle object, uint32_t flag) {
    return setStamps(db_set_l2mc6_bd_enable_timeStampSmooth, db_set_l2mc6_bd_enable_timeStampCreate, object, flag != 0);
}

uint32_t MCAST6_DB_CreateL2McBdEnableObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2McBdEnableObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2McBdEnable(L2McBdEnableEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2McBdEnable(const L2McBdEnableEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2McBdEnableSmoothVersion(const L2McBdEnableEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2McBdEnable(const L2McBdEnableEntry* record) { return removeRecord<Table>(record); }

Mcast6DbRes* MCAST6_DB_CreateL2McBdEnableIter(void) { return createIter<Table, Table::onIter>(nullptr, nullptr); }

uint32_t MCAST6_DB_GetL2McBdEnableEntry(Mcast6DbRes* iterator, L2McBdEnableEntry* record) {
    return nextRecord<Table>(iterator, record);
}

void MCAST6_DB_ReleaseL2McBdEnableIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_SetBdEnableUpdateData(Mcast6DbHandle object, const L2McBdEnableEntry* record) {
    using UpdateSetters = FieldSetters<Sets<db_set_l2mc6_bd_enable_mldVersion, &E::mldVersion>,
                                       Sets<db_set_l2mc6_bd_enable_l2mcEnable, &E::l2mcEnable>,
                                       Sets<db_set_l2mc6_bd_enable_serviceStatus, &E::serviceStatus>,
                                       Sets<db_set_l2mc6_bd_enable_errCode, &E::errCode>,
                                       Sets<db_set_l2mc6_bd_enable_smoothVersion, &E::smoothVersion>,
                                       Sets<db_set_l2mc6_bd_enable_pathFlags, &E::pathFlags>>;
    uint32_t code = UpdateSetters::apply(object, *record);
    code |= MCAST6_DB_SetMldBdTimeStamp(object, 0);
    if (code != kOk) logLine(Table::logId, "[MCAST6 DB]update l2 bd enable data, set field failed, ret:%u.", code);
    return code;
}

// Deviates in control flow: a failed setter is logged but does not stop the update, and the result is the OR of all
// codes. No code is tolerated, no error is recorded, and only the object is counted.
uint32_t MCAST6_DB_UpdateL2BdEnableCfg(const L2McBdEnableEntry* record) {
    if (record == nullptr) {
        logLine(Table::logId, "[MCAST6 DB]update l2 bd enable, para is null.");
        return kFailed;
    }
    Mcast6DbHandle object = 0;
    uint32_t code = Table::objects.create(kUpdateObject, kConnType, &object);
    if (code != kOk) {
        logLine(Table::logId, "[MCAST6 DB]update l2 bd enable, create object failed. ret:%u.", code);
        return code;
    }
    const auto key = Table::Primary::of(*record);
    code = MCAST6_DB_SetBdEnableUpdateData(object, record);
    code |= db_update_obj(object, &key.descriptor, key.bytes);
    Table::objects.release(object);
    if (code != kOk) logLine(Table::logId, "[MCAST6 DB]update l2 bd enable, update object failed, ret:%u.", code);
    return code;
}
