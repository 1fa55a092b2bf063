// l3mc6_glbcfg: the layer-3 global configuration.
// Differences from the model table: a read passes 15005 through; a failed write or removal counts as failed and as
// done; all failures of the smooth-version update have one message; each record's version follows the global version
// that the common multicast database library keeps.
#include "mcast6_db/l3mc6_glbcfg.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l3mc6_glbcfg.h"

namespace mcast6::l3mc6_glbcfg {

using E = L3Mc6GlbCfgEntry;

constexpr Counter kCreated{33, "objects created"};
constexpr Counter kReleased{34, "objects released"};
constexpr Kpi kWritten{145, "writes"};
constexpr Kpi kWriteFailed{146, "writes failed"};
constexpr Kpi kDeleted{147, "deletes"};
constexpr Kpi kDeleteFailed{148, "deletes failed"};
constexpr Kpi kCreateFailed{159, "object creations failed"};
constexpr Kpi kIterFailed{160, "iterator creations failed"};

// A time stamp from its own reading of the clock.
template <uint16_t kOffset, auto kMember>
struct ReadsClock : Copy<kOffset, kMember> {
    static int set(const E& /*record*/, std::byte* row, uint64_t /*now*/) {
        store(row + kOffset, static_cast<uint64_t>(MCAST6_DB_GetSysTime()));
        return 0;
    }
};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 0;
    static constexpr uint32_t logId  = kLogConfiguration;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateGlbCfgObject, MCAST6_DB_ReleaseGlbCfgObject};
    static constexpr Accessors accessors{db_create_l3mc6_glbcfg_obj, db_release_l3mc6_glbcfg_object,
                                         db_set_l3mc6_glbcfg_all_fields};
    static constexpr auto set = MCAST6_DB_SetGlbCfg;
    static constexpr auto get = MCAST6_DB_GetGlbCfg;

    using Row = mcast6::Row<48,
        Copy       < 0, &E::cfgKeyA>,
        Copy       < 4, &E::cfgKeyB>,
        Copy       < 8, &E::cfgKeyC>,
        Copy       <12, &E::cfgWord3>,
        Copy       <16, &E::smoothVersion>,
        Copy       <20, &E::glbVersion>,
        Copy       <24, &E::cfgWord6>,
        Copy       <28, &E::cfgWord7>,
        ReadsClock <32, &E::timeStampCreate>,
        ReadsClock <40, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<>;

    using Primary = PrimaryKey<Row, &E::cfgKeyA, &E::cfgKeyB, &E::cfgKeyC>;
    using ByHash  = SecondaryKey<Row, 1, &E::cfgKeyA, &E::cfgKeyB>;

    using SmoothSetters = FieldSetters<
        Sets <db_set_l3mc6_glbcfg_smoothVersion, &E::smoothVersion>>;  // no time stamp

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB]read global enable cfg failed, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]read global enable cfg failed, create db object failed. ret:%u."),
                         engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("[MCAST6 DB]read global enable cfg object db failed, ret:%u."), record(Error::read),
                         released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB]write db global enable cfg object failed, param is null."), kpi(kWriteFailed),
                         returns(1)},
        .createFailed = {logCode("[MCAST6 DB]write global enable cfg failed, create db object failed. ret:%u."),
                         kpi(kWriteFailed), engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB]WriteGlbCfg, set_all_fields failed. ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        // both counters
        .writeFailed  = {released, kpi(kWriteFailed), logCode("[MCAST6 DB]write global enable cfg failed. ret:%u."),
                         record(Error::write), kpi(kWritten), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{  // one message for three failures
        .nullRecord   = {log("[MCAST6 DB]Update db global enable cfg object failed, param is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]Update global enable cfg failed, create db object failed. ret:%u."),
                         engineCode},
        .setFailed    = {logCode("[MCAST6 DB]Update global enable cfg failed, create db object failed. ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released,
                         logCode("[MCAST6 DB]Update global enable cfg failed, create db object failed. ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]Delete db global enable cfg object failed, param is null."),
                         kpi(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]Delete global enable cfg failed, create db object failed. ret:%u."),
                         kpi(kDeleteFailed), engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        // both counters
        .removeFailed = {released, kpi(kDeleteFailed), record(Error::remove),
                         logCode("[MCAST6 DB]Delete global enable cfg failed. ret:%u."), kpi(kDeleted), engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB]get global cfg entry error. ret:%d"), record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]get global cfg entry fail, ret:%d."), record(Error::read), returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
    static constexpr MatchOutcomes onHashCount{
        .createFailed = {logCode("[MCAST6 DB]get global num, create object fail. ret:%u"), returns(0)},
        .absent       = {logCode("[MCAST6 DB]get global num, get count by key fail. ret:%u"), released, returns(0)},
        .countFailed  = {logCode("[MCAST6 DB]get global num, get count by key fail. ret:%u"), released, returns(0)},
    };
};
// clang-format on

namespace published = layout::l3mc6_glbcfg;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001000C && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByHash::word == 0x01090008 && isPublished<Table::ByHash>(published::kIndexes));

// The version record of the common library.
struct GlobalVersion {
    uint32_t key[3];
    uint32_t unused1[2];
    uint32_t version;
    uint32_t unused2[4];
};
static_assert(sizeof(GlobalVersion) == 40);

namespace {

GlobalVersion globalVersionOf(const E& record) { return {{record.cfgKeyA, record.cfgKeyB, record.cfgKeyC}, {}, 0, {}}; }

}  // namespace

}  // namespace mcast6::l3mc6_glbcfg

using namespace mcast6;
using namespace mcast6::l3mc6_glbcfg;

uint32_t MCAST6_DB_CreateGlbCfgObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseGlbCfgObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

void MCAST6_DB_SetGlbCfg(const L3Mc6GlbCfgEntry* record, void* row) {
    Table::Row::set(*record, static_cast<std::byte*>(row), 0);  // the stamps read the clock themselves
}

void MCAST6_DB_GetGlbCfg(const void* row, L3Mc6GlbCfgEntry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetGlbCfgPriKey(const L3Mc6GlbCfgEntry* record, void* key, uint32_t* keyWord) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_ReadGlbCfg(L3Mc6GlbCfgEntry* record) { return readRecord<Table>(record); }

// Deviates in control flow: after the create and before the conversion the record gets the next global version.
uint32_t MCAST6_DB_WriteGlbCfg(L3Mc6GlbCfgEntry* record) {
    if (record == nullptr) return conclude<Table, Table::onWrite, &WriteOutcomes::nullRecord>({});
    Step step;
    step.code = Table::objects.create(kWriteObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, Table::onWrite, &WriteOutcomes::createFailed>(step);
    MCAST6_DB_SetGlbVerion(record);
    return writeOn<Table, Table::onWrite>(step.object, record);
}

uint32_t MCAST6_DB_UpdateGlbCfgSmoothVersion(const L3Mc6GlbCfgEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

// Deviates in control flow: the global version is advanced first; if that fails the removal ends.
uint32_t MCAST6_DB_DeleteGlbCfg(const L3Mc6GlbCfgEntry* record) {
    if (record == nullptr) return conclude<Table, Table::onRemove, &RemoveOutcomes::nullRecord>({});
    const uint32_t code = MCAST6_DB_ProcessGlbVersion(record);
    if (code != kOk) {
        logLine(Table::logId,
                "[MCAST6 DB]Delete db global cfg object failed, write or update glb version failed. ret:%u", code);
        countOne<Table, kDeleteFailed>();
        return kFailed;
    }
    return removeRecord<Table>(record);
}

uint32_t MCAST6_DB_SetGlbVerion(L3Mc6GlbCfgEntry* record) {
    GlobalVersion global = globalVersionOf(*record);
    record->glbVersion = MCAST_DB_ReadGlbVersion(&global) == kOk ? global.version + 1 : 1;
    return kOk;
}

uint32_t MCAST6_DB_ProcessGlbVersion(const L3Mc6GlbCfgEntry* record) {
    GlobalVersion global = globalVersionOf(*record);
    if (MCAST_DB_ReadGlbVersion(&global) != kOk) {
        global.version = record->glbVersion;
        return MCAST_DB_WriteGlbVersion(&global);
    }
    ++global.version;
    return MCAST_DB_UpdateGlbVersion(&global);
}

uint32_t MCAST6_DB_GetGlbVerFromGlbCfg(uint32_t cfgKeyA, uint32_t cfgKeyB, uint32_t cfgKeyC) {
    constexpr uint32_t kOfMissingRecord = 1;
    constexpr uint32_t kOfFailure = 0;
    L3Mc6GlbCfgEntry record{};
    record.cfgKeyA = cfgKeyA;
    record.cfgKeyB = cfgKeyB;
    record.cfgKeyC = cfgKeyC;
    const uint32_t code = MCAST6_DB_ReadGlbCfg(&record);
    if (code == kNoSuchObject) return kOfMissingRecord;
    return code == kOk ? record.glbVersion : kOfFailure;
}

Mcast6DbRes* MCAST6_DB_CreateGlbCfgIterCommon(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateGlbCfgIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateGlbCfgIterCommon(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]create glb cfg iter failed");
    return iterator;
}

Mcast6DbRes* MCAST6_DB_CreateGlbCfgIteratorByHashKey(uint32_t cfgKeyA, uint32_t cfgKeyB) {
    const auto key = keyOf<Table::ByHash::word>(cfgKeyA, cfgKeyB);
    return MCAST6_DB_CreateGlbCfgIterCommon(&key.descriptor, key.bytes);
}

void MCAST6_DB_ReleaseGlbCfgIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetGlbCfgEntry(Mcast6DbRes* iterator, L3Mc6GlbCfgEntry* record) {
    return nextRecord<Table>(iterator, record);
}

uint32_t MCAST6_DB_GetGlbCfgNum(uint32_t cfgKeyA, uint32_t cfgKeyB) {
    const auto key = keyOf<Table::ByHash::word>(cfgKeyA, cfgKeyB);
    return countMatches<Table, Table::onHashCount>(&key.descriptor, key.bytes);
}

uint32_t MCAST6_DB_GetGlbCfgCount(uint32_t* count) { return countAll<Table>(count); }
