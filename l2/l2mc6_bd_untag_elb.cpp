// l2mc6_bd_untag_elb: the outgoing interfaces of bridge domains that send untagged frames.
// Differences from the model table: a read passes 15005 through, and a step with a null handle prints a debug line.
#include "mcast6_db/l2mc6_bd_untag_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_untag_elb.h"

namespace mcast6::l2mc6_bd_untag_elb {

using E = L2Elb6Entry;

constexpr Counter kCreateFailed{343, "object creations failed"};
constexpr Counter kCreated{344, "objects created"};
constexpr Counter kReleased{345, "objects released"};
constexpr Counter kWritten{346, "writes"};
constexpr Counter kWriteFailed{347, "writes failed"};
constexpr Counter kDeleted{348, "deletes"};
constexpr Counter kDeleteFailed{349, "deletes failed"};
constexpr Counter kIterFailed{350, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 22;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2McBdUntagElbObject,
                                               MCAST6_DB_ReleaseL2McBdUntagElbObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_untag_elb_obj, db_release_l2mc6_bd_untag_elb_object,
                                         db_set_l2mc6_bd_untag_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdUntagElb;
    static constexpr auto get = MCAST6_DB_GetL2McBdUntagElb;

    using Row = mcast6::Row<152,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::bdId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::outIfIndex>,
        Copy    < 44, &E::vrfId>,
        Copy    < 48, &E::fwdIfExtType>,
        CopyToBoth < 50, &E::fwdIfKind, &E::fwdIfType>,
        Copy    < 52, &E::isSelfBoard>,
        Copy    < 53, &E::elbByte1>,
        Gap     < 54, 2>,
        Copy    < 56, &E::pathFlags>,
        Copy    < 60, &E::mcId>,
        Copy    < 64, &E::egressAttr>,
        Copy    < 68, &E::mcidVersion>,
        Copy    < 76, &E::mfibVersion>,
        Copy    < 80, &E::appSrcPid>,
        Copy    < 84, &E::appVersion>,
        Copy    < 88, &E::smoothVersion>,
        Copy    < 92, &E::svcCtxHighPrio>,
        Copy    <120, &E::svcCtxNormalPrio>,
        Copy    <132, &E::serviceStatus>,
        Copy    <134, &E::errCode>,
        Now     <136, &E::timeStampCreate>,
        Now     <144, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::domainType, 1>, GetWrites<&E::fixedWord1, 1>,
                                GetWrites<&E::fixedWord2, 8>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr, &E::outIfIndex>;
    using ByEntry  = SecondaryKey<Row, 1, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr>;
    using BySrcPid = SecondaryKey<Row, 3, &E::vrId, &E::vrfId, &E::appSrcPid>;
    static constexpr uint32_t kByIfIndex = 0x02090004;  // an interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_untag_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_untag_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB]read l2 bd untag elb, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]create l2 bd untag elb db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("[MCAST6 DB]read l2 bd untag elb object db failed, ret:%u."), record(Error::read),
                         released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB]write l2 bd untag elb, para is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]write l2 bd untag elb, create db object failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .setFailed    = {released, logCode("[MCAST6 DB]write l2 bd untag elb, set all fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kWritten), returns(0)},
        // says "release"
        .writeFailed  = {released, logCode("[MCAST6 DB]write l2 bd untag elb, release db object fail, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB]upd smooth version, para is null."), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]upd smooth version, create l2 bd untag elb object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("[MCAST6 DB]l2 bd untag elb set smooth version failed, ret:%u."), released,
                         engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB]upd smooth version, upd l2 bd untag elb object failed, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB]del l2 bd untag elb, para is null."), dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("[MCAST6 DB]del l2 bd untag elb, create object failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("[MCAST6 DB]del l2 bd untag elb, remove obj db failed, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB]get l2 bd untag elb, db root iterator next failed, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB]get l2 bd untag elb, read obj failed, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_untag_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001002C && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x01090028 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(Table::BySrcPid::word == 0x0309000C && isPublished<Table::BySrcPid>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByIfIndex));

namespace {

void printNullHandle(const Mcast6Ipv6Addr& source, const Mcast6Ipv6Addr& group) {
    constexpr uint32_t kLevel = 4;
    const auto high = [](uint32_t word) { return word >> 16; };
    const auto low = [](uint32_t word) { return word & 0xFFFF; };
    const uint32_t(&s)[4] = source.word;
    const uint32_t(&g)[4] = group.word;
    MCAST6_DBG_Print(
        0, 0, kLevel,
        "[MCAST6 DB]get l2 bd untag elb entry, handle is null, src = 0x%04X:%04X:%04X:%04X:%04X:%04X:%04X:%04X, grp = 0x%04X:%04X:%04X:%04X:%04X:%04X:%04X:%04X.",
        high(s[0]), low(s[0]), high(s[1]), low(s[1]), high(s[2]), low(s[2]), high(s[3]), low(s[3]), high(g[0]),
        low(g[0]), high(g[1]), low(g[1]), high(g[2]), low(g[2]), high(g[3]), low(g[3]));
}

}  // namespace

}  // namespace mcast6::l2mc6_bd_untag_elb

using namespace mcast6;
using namespace mcast6::l2mc6_bd_untag_elb;

int64_t MCAST6_DB_SetStructL2McBdUntagElbTimeStamp(int32_t flag, void* row) {
    return static_cast<int64_t>(stampRow<Table>(flag != 0, row));
}

void MCAST6_DB_SetL2McBdUntagElb(const L2Elb6Entry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2McBdUntagElb(const void* row, L2Elb6Entry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2McBdUntagElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2McBdUntagElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2McBdUntagElb(L2Elb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2McBdUntagElb(const L2Elb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2McBdUntagElbSmoothVersion(const L2Elb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2McBdUntagElb(const L2Elb6Entry* record) { return removeRecord<Table>(record); }

// Deviates in control flow: a null handle with a record prints a debug line with the record's addresses.
uint32_t MCAST6_DB_GetL2McBdUntagElbEntry(Mcast6DbRes* iterator, L2Elb6Entry* record) {
    if (iterator == nullptr && record != nullptr) printNullHandle(record->sourceAddr, record->groupAddr);
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagElbIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagElbIterBySrcPid(const L2Elb6Entry* record) {
    const auto filter = Table::BySrcPid::of(*record);
    return MCAST6_DB_CreateL2McBdUntagElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagElbIterByIfindex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL2McBdUntagElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagElbMcidIterator(const L2McBdElbKey* key) {
    const auto filter = keyOf<Table::ByEntry::word>(key->vrId, key->bdId, key->groupAddr, key->sourceAddr);
    return MCAST6_DB_CreateL2McBdUntagElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2McBdUntagElbSourceIterator(const L2McBdElbKey* key) {
    return MCAST6_DB_CreateL2McBdUntagElbMcidIterator(key);
}

Mcast6DbRes* MCAST6_DB_CreateL2BdUntagElbIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2McBdUntagElbIterator(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "[MCAST6 DB]l2 bd untag elb create iterator failed");
    return iterator;
}

void MCAST6_DB_ReleaseL2BdUntagElbIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
