// l3mc6_register_elb: the register interfaces of layer-3 entries.
// Records no error statistics; write, read and removal do not check for null. A removal treats 15005, not 13044, as
// success. Egress records are converted into register records and back.
#include "mcast6_db/l3mc6_register_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l3mc6_register_elb.h"

namespace mcast6::l3mc6_register_elb {

using E = L3Mc6RegOifEntry;

constexpr Counter kCreated{252, "objects created"};
constexpr Counter kReleased{253, "objects released"};
constexpr Kpi kWritten{137, "writes"};
constexpr Kpi kWriteFailed{138, "writes failed"};
constexpr Kpi kDeleted{139, "deletes"};
constexpr Kpi kDeleteFailed{140, "deletes failed"};
constexpr Kpi kCreateFailed{141, "object creations failed"};
constexpr Kpi kIterFailed{142, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;  // no table number: nothing is recorded
    static constexpr uint32_t logId = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3McRegistOifObject,
                                               MCAST6_DB_ReleaseL3McRegistOifObject};
    static constexpr Accessors accessors{db_create_l3mc6_register_elb_obj, db_release_l3mc6_register_elb_object,
                                         db_set_l3mc6_register_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetRegistItem;
    static constexpr auto get = MCAST6_DB_GetRegistData;

    using Row = mcast6::Row<128,
        Copy      <  0, &E::vrId>,
        Copy      <  4, &E::vrfId>,
        Address   <  8, &E::groupAddr>,
        Address   < 24, &E::sourceAddr>,
        Copy      < 40, &E::outIfIndex>,
        Copy      < 44, &E::regAttrA>,
        Resized   < 48, uint64_t, &E::regAttrB>,
        Copy      < 56, &E::instId>,
        Copy      < 60, &E::instType>,
        Copy      < 61, &E::regAttrC>,
        Copy      < 62, &E::regAttrD>,
        Gap       < 63, 1>,
        Copy      < 64, &E::regHalfB>,
        Copy      < 66, &E::regHalfA>,
        Copy      < 68, &E::regCtxA>,
        Copy      < 96, &E::regCtxB>,
        Copy      <108, &E::regWord>,
        KeptOrNow <112, &E::timeStampCreate>,
        Now       <120, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<>;

    using Primary    = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr>;
    using ByInstance = SecondaryKey<Row, 3, &E::instId, &E::instType>;
    static constexpr uint32_t kByIfIndex = 0x02090004;  // an interface index
    static constexpr uint32_t kByVsg = 0x04090029;      // VR, VRF, group, source, a byte

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("[MCAST6 DB] create regist read obj fail. ret:%u"), returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("[MCAST6 DB] create regist write obj fail. ret:%u"), kpi(kWriteFailed), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] set regist write obj fail. ret:%u"), released, kpi(kWriteFailed),
                         engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, kpi(kWritten), returns(0)},
        .writeFailed  = {released, logCode("[MCAST6 DB]write l3mc6 regist elb failed. ret:%u."), kpi(kWriteFailed),
                         engineCode},
    };
    static constexpr RemoveOrAbsentOutcomes onRemove{{
        .nullRecord   = callerGuarantees,
        .createFailed = {logCode("[MCAST6 DB] create regist remove obj fail. ret:%u"), kpi(kDeleteFailed), engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        // a failure
        .code13044    = {released, logCode("[MCAST6 DB] delete regist obj fail. ret:%u"), kpi(kDeleteFailed),
                         engineCode},
        .removeFailed = {released, logCode("[MCAST6 DB] delete regist obj fail. ret:%u"), kpi(kDeleteFailed),
                         engineCode},
    },  /* code15005 */ {released, kpi(kDeleted), returns(0)},  // nothing to remove
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[l3mc6 reg] get reg oif obj fail."), returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[l3mc6 reg] get reg oif entry fail, ret:%u."), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[l3mc6 reg] read reg oif object fail, ret:%u."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l3mc6_register_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010028 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByInstance::word == 0x03090005 && isPublished<Table::ByInstance>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByIfIndex) &&
              isPublishedWord(published::kIndexes, Table::kByVsg));

namespace {

// The inverse of MCAST6_DB_TransElbEntryToRegElbEntry, except that the kind of instance is passed on unchanged.
void toElbEntry(const E& record, L3Mc6ElbEntry& entry) {
    entry.vrId = record.vrId;
    entry.vrfId = record.vrfId;
    entry.groupAddr = record.groupAddr;
    entry.sourceAddr = record.sourceAddr;
    entry.elbAttrA = record.regAttrA;
    entry.elbAttrB = record.regAttrB;
    entry.instType = record.instType;
    entry.instId = record.instId;
    entry.outIfIndex = record.outIfIndex;
    memcpy_s(entry.elbCtxA, sizeof entry.elbCtxA, record.regCtxA, sizeof record.regCtxA);
    memcpy_s(entry.elbCtxB, sizeof entry.elbCtxB, record.regCtxB, sizeof record.regCtxB);
    entry.elbWord = record.regWord;
    memcpy_s(&entry.elbHalfA, sizeof entry.elbHalfA, record.regHalfA, sizeof record.regHalfA);
    memcpy_s(&entry.elbHalfB, sizeof entry.elbHalfB, record.regHalfB, sizeof record.regHalfB);
    entry.timeStampCreate = record.timeStampCreate;
    entry.timeStampSmooth = record.timeStampSmooth;
    entry.elbFlagA = record.regAttrC;
    entry.elbFlagB = record.regAttrD;
}

}  // namespace

}  // namespace mcast6::l3mc6_register_elb

using namespace mcast6;
using namespace mcast6::l3mc6_register_elb;

void MCAST6_DB_SetRegistItem(const L3Mc6RegOifEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetRegistData(const void* row, L3Mc6RegOifEntry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetRegistKey(void* key, uint32_t* keyWord, const L3Mc6RegOifEntry* record) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_CreateL3McRegistOifObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3McRegistOifObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_WriteRegistOif(const L3Mc6RegOifEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_ReadRegistOif(L3Mc6RegOifEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_DeleteRegistOif(const L3Mc6RegOifEntry* record) { return removeRecord<Table>(record); }

Mcast6DbRes* MCAST6_DB_CreateL3mcRegOifIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3mcRegOifAllIterator(void) {
    return MCAST6_DB_CreateL3mcRegOifIterator(nullptr, nullptr);
}

Mcast6DbRes* MCAST6_DB_CreateL3mcRegOifIfIndexIterator(uint32_t ifIndex) {
    const auto key = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL3mcRegOifIterator(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3mcRegOifVlanIterator(const L3Mc6RegOifEntry* record) {
    const auto key = Table::ByInstance::of(*record);
    return MCAST6_DB_CreateL3mcRegOifIterator(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3mcRegOifVSGIterator(const L3Mc6ElbEntry* entry) {
    const auto key = keyOf<Table::kByVsg>(entry->vrId, entry->vrfId, entry->groupAddr, entry->sourceAddr,
                                          static_cast<uint8_t>(entry->elbFlagA));
    return MCAST6_DB_CreateL3mcRegOifIterator(&key.descriptor, key.bytes);
}

void MCAST6_DB_ReleaseL3mcRegOifIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3mcRegOifEntry(Mcast6DbRes* iterator, L3Mc6RegOifEntry* record) {
    return nextRecord<Table>(iterator, record);
}

uint32_t MCAST6_DB_GetL3mcRegOifEntryExt(Mcast6DbRes* iterator, L3Mc6ElbEntry* entry) {
    if (iterator == nullptr || entry == nullptr)
        return conclude<Table, Table::onEntry, &EntryOutcomes::nullParameter>({});
    L3Mc6RegOifEntry record{};
    const uint32_t code = MCAST6_DB_GetL3mcRegOifEntry(iterator, &record);
    if (code == kOk) toElbEntry(record, *entry);
    return code;
}

void MCAST6_DB_TransElbEntryToRegElbEntry(const L3Mc6ElbEntry* entry, L3Mc6RegOifEntry* record) {
    record->vrId = entry->vrId;
    record->vrfId = entry->vrfId;
    record->groupAddr = entry->groupAddr;
    record->sourceAddr = entry->sourceAddr;
    record->regAttrA = entry->elbAttrA;
    record->regAttrB = static_cast<uint32_t>(entry->elbAttrB);
    MCAST6_DB_TransVlanAndBdInfoToInst(entry, record);
    record->outIfIndex = entry->outIfIndex;
    memcpy_s(record->regCtxA, sizeof record->regCtxA, entry->elbCtxA, sizeof entry->elbCtxA);
    memcpy_s(record->regCtxB, sizeof record->regCtxB, entry->elbCtxB, sizeof entry->elbCtxB);
    record->regWord = entry->elbWord;
    memcpy_s(record->regHalfA, sizeof record->regHalfA, &entry->elbHalfA, sizeof entry->elbHalfA);
    memcpy_s(record->regHalfB, sizeof record->regHalfB, &entry->elbHalfB, sizeof entry->elbHalfB);
    record->timeStampCreate = entry->timeStampCreate;
    record->timeStampSmooth = entry->timeStampSmooth;
    record->regAttrC = static_cast<uint8_t>(entry->elbFlagA);
    record->regAttrD = static_cast<uint8_t>(entry->elbFlagB);
}

void MCAST6_DB_TransVlanAndBdInfoToInst(const L3Mc6ElbEntry* entry, L3Mc6RegOifEntry* record) {
    if (entry->instType == L3_REG_INST_VLAN || entry->instType == L3_REG_INST_BRIDGE_DOMAIN) {
        record->instType = static_cast<uint8_t>(entry->instType);
        record->instId = entry->instId;
    } else {
        record->instType = L3_REG_INST_NONE;
        record->instId = 0;
    }
}
