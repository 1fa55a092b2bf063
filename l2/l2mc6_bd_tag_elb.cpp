// l2mc6_bd_tag_elb: the outgoing interfaces of bridge domains that send tagged frames.
// Differences from the model table: a read passes 15005 through, and on 13044 a write counts as failed although it
// returns 0.
#include "mcast6_db/l2mc6_bd_tag_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_tag_elb.h"

namespace mcast6::l2mc6_bd_tag_elb {

using E = L2Elb6Entry;

constexpr Counter kCreateFailed{335, "object creations failed"};
constexpr Counter kCreated{336, "objects created"};
constexpr Counter kReleased{337, "objects released"};
constexpr Counter kWritten{338, "writes"};
constexpr Counter kWriteFailed{339, "writes failed"};
constexpr Counter kDeleted{340, "deletes"};
constexpr Counter kDeleteFailed{341, "deletes failed"};
constexpr Counter kIterFailed{342, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 21;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2McBdTagElbObject, MCAST6_DB_ReleaseL2McBdTagElbObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_tag_elb_obj, db_release_l2mc6_bd_tag_elb_object,
                                         db_set_l2mc6_bd_tag_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdTagElb;
    static constexpr auto get = MCAST6_DB_GetL2McBdTagElb;

    using Row = mcast6::Row<180,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::bdId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::outIfIndex>,
        Copy    < 44, &E::tagVid1>,
        Copy    < 46, &E::tagVid2>,
        Copy    < 48, &E::vrfId>,
        Copy    < 52, &E::fwdIfExtType>,
        CopyToBoth < 54, &E::fwdIfKind, &E::fwdIfType>,
        Copy    < 56, &E::isSelfBoard>,
        Copy    < 57, &E::elbByte1>,
        Gap     < 58, 2>,
        Copy    < 60, &E::egressAttr>,
        Copy    < 64, &E::pathFlags>,
        Copy    < 68, &E::mcId>,
        Copy    < 72, &E::mcidVersion>,
        Copy    < 80, &E::mfibVersion>,
        Copy    < 84, &E::appSrcPid>,
        Copy    < 88, &E::appVersion>,
        Copy    < 92, &E::smoothVersion>,
        Copy    < 96, &E::elbWord1>,
        Copy    <100, &E::elbWord2>,
        Copy    <104, &E::elbData1>,
        Copy    <120, &E::svcCtxHighPrio>,
        Copy    <148, &E::svcCtxNormalPrio>,
        Copy    <160, &E::serviceStatus>,
        Copy    <162, &E::errCode>,
        Now     <164, &E::timeStampCreate>,
        Now     <172, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::domainType, 1>, GetWrites<&E::fixedWord1, 2>,
                                GetWrites<&E::fixedWord2, 7>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr, &E::outIfIndex, &E::tagVid1,
                                &E::tagVid2>;
    using ByEntry  = SecondaryKey<Row, 1, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr>;
    using BySrcPid = SecondaryKey<Row, 3, &E::vrId, &E::vrfId, &E::appSrcPid>;
    static constexpr uint32_t kByIfIndex = 0x02090004;  // an interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_tag_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_tag_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6 DB] read l2mc bd tag elb failed, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB] create l2mc bd tag elb obj failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("[MCAST6 DB]read l2mc bd tag elb object db failed, ret:%u."), record(Error::read),
                         released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB] write l2mc bd tag elb failed, para is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB] create l2mc bd tag elb object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB] write l2mc bd tag elb, set all fields fail, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kWriteFailed), returns(0)},  // counted as failed
        .writeFailed  = {released, logCode("[MCAST6 DB], write l2mc bd tag elb object fail, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB]upd smooth version, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]upd smooth version, create l2 bd tag object failed, ret:%u."), engineCode},
        .setFailed    = {logCode("[MCAST6 DB]l2 bd tag elb, set smooth version fail, ret:%u."), released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB]upd smooth version, update l2 bd tag elb object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]delete l2 bd tag elb failed, para is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]del l2 bd tag elb, create db object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("[MCAST6 DB]del l2 bd tag elb, remove object fail, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("get l2 bd tag elb, db root iterator next failed, ret:%d."), record(Error::next),
                          returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]get l2 bd tag elb, read obj failed, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_tag_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010030 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x01090028 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(Table::BySrcPid::word == 0x0309000C && isPublished<Table::BySrcPid>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l2mc6_bd_tag_elb

using namespace mcast6;
using namespace mcast6::l2mc6_bd_tag_elb;

int64_t MCAST6_DB_SetStructL2McBdTagElbTimeStamp(int32_t flag, void* row) {
    return static_cast<int64_t>(stampRow<Table>(flag != 0, row));
}

void MCAST6_DB_SetL2McBdTagElb(const L2Elb6Entry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2McBdTagElb(const void* row, L2Elb6Entry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetL2McBdTagElbKey(uint32_t* keyWord, void* key, const L2Elb6Entry* record) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_CreateL2McBdTagElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2McBdTagElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2McBdTagElb(L2Elb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2McBdTagElb(const L2Elb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2McBdTagElbSmoothVersion(const L2Elb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2McBdTagElb(const L2Elb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2McBdTagElbEntry(Mcast6DbRes* iterator, L2Elb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagElbIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagElbIterBySrcPid(const L2Elb6Entry* record) {
    const auto filter = Table::BySrcPid::of(*record);
    return MCAST6_DB_CreateL2McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagElbIterByIfindex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL2McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagElbMcidIter(const L2McBdElbKey* key) {
    const auto filter = keyOf<Table::ByEntry::word>(key->vrId, key->bdId, key->groupAddr, key->sourceAddr);
    return MCAST6_DB_CreateL2McBdTagElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdTagElbSourceIter(const L2McBdElbKey* key) {
    return MCAST6_DB_CreateL2McBdTagElbMcidIter(key);
}

Mcast6DbRes* MCAST6_DB_CreateL2BdTagElbIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2McBdTagElbIter(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]create l2mc bd tag elb iter failed.");
    return iterator;
}

void MCAST6_DB_ReleaseL2BdTagElbIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
