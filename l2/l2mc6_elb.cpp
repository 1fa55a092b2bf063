// l2mc6_elb: the outgoing interfaces of VLAN forwarding entries.
// Failures return 1. Exceptions: a read passes the engine's codes through, 15005 included, and a failed smooth-version
// update is logged and recorded but returns 0. There are two kinds of iterator creation, with different reports.
#include "mcast6_db/l2mc6_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_elb.h"

namespace mcast6::l2mc6_elb {

using E = L2Elb6Entry;

constexpr Counter kCreated{7, "objects created"};
constexpr Counter kReleased{8, "objects released"};
constexpr Kpi kWritten{27, "writes"};
constexpr Kpi kWriteFailed{28, "writes failed"};
constexpr Kpi kDeleted{29, "deletes"};
constexpr Kpi kDeleteFailed{30, "deletes failed"};

// The 16-bit VLAN is read into a zeroed word: it becomes 0 when its getter fails, where other members are unchanged.
struct GetsVlan {
    static uint32_t apply(Mcast6DbHandle object, E& record) {
        uint16_t vlanId = 0;
        const uint32_t code = db_get_l2mc6_elb_vlanId(object, &vlanId);
        assign<&E::vlanId>(record, vlanId);
        return code;
    }
};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 7;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2Elb6Object, MCAST6_DB_ReleaseL2Elb6Object};
    static constexpr Accessors accessors{db_create_l2mc6_elb_obj, db_release_l2mc6_elb_object,
                                         db_set_l2mc6_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2Elb6;
    static constexpr auto get = MCAST6_DB_GetL2Elb6;

    // fwdIfExtType comes before fwdIfType, mcidVersion and mfibVersion before mcId, unlike in the record.
    using Row = mcast6::Row<168,
        Copy    <  0, &E::vrId>,
        Resized <  4, uint16_t, &E::vlanId>,
        Copy    <  6, &E::userVlanId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::outIfIndex>,
        Copy    < 44, &E::vrfId>,
        Copy    < 48, &E::fwdIfExtType>,
        Copy    < 50, &E::fwdIfType>,
        Copy    < 52, &E::isSelfBoard>,
        Copy    < 53, &E::elbByte1>,
        Gap     < 54, 2>,
        Copy    < 56, &E::pathFlags>,
        Copy    < 60, &E::appSrcPid>,
        Copy    < 64, &E::mcidVersion>,
        Copy    < 72, &E::mfibVersion>,
        Copy    < 76, &E::mcId>,
        Copy    < 80, &E::smoothVersion>,
        Copy    < 84, &E::elbWord1>,
        Copy    < 88, &E::elbWord2>,
        Copy    < 92, &E::elbData1>,
        Copy    <108, &E::svcCtxHighPrio>,
        Copy    <136, &E::svcCtxNormalPrio>,
        Copy    <148, &E::serviceStatus>,
        Copy    <150, &E::errCode>,
        Now     <152, &E::timeStampCreate>,
        Now     <160, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::domainType, 0>, GetWrites<&E::fixedWord1, 0>,
                                GetWrites<&E::fixedWord2, 5>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::vlanId, &E::userVlanId, &E::groupAddr, &E::sourceAddr,
                               &E::outIfIndex>;
    using ByEntry = SecondaryKey<Row, 2, &E::vrId, &E::vlanId, &E::sourceAddr, &E::groupAddr>;
    static constexpr uint32_t kByIfIndex = 0x03090004;  // an interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_elb_timeStampSmooth>>;
    using FirstGetters = FieldGetters<
        Gets <db_get_l2mc6_elb_vrId, &E::vrId>,
        Gets <db_get_l2mc6_elb_vrfId, &E::vrfId>>;
    using ItemGetters = FieldGetters<
        GetsVlan,
        Gets <db_get_l2mc6_elb_userVlanId, &E::userVlanId>,
        Gets <db_get_l2mc6_elb_outIfIndex, &E::outIfIndex>,
        Gets <db_get_l2mc6_elb_fwdIfExtType, &E::fwdIfExtType>,
        Gets <db_get_l2mc6_elb_fwdIfType, &E::fwdIfType>,
        Gets <db_get_l2mc6_elb_isSelfBoard, &E::isSelfBoard>,
        Gets <db_get_l2mc6_elb_pathFlags, &E::pathFlags>,
        Gets <db_get_l2mc6_elb_appSrcPid, &E::appSrcPid>,
        Gets <db_get_l2mc6_elb_mcidVersion, &E::mcidVersion>,
        Gets <db_get_l2mc6_elb_mfibVersion, &E::mfibVersion>,
        Gets <db_get_l2mc6_elb_mcId, &E::mcId>,
        Gets <db_get_l2mc6_elb_smoothVersion, &E::smoothVersion>,
        Gets <db_get_l2mc6_elb_timeStampCreate, &E::timeStampCreate>,
        Gets <db_get_l2mc6_elb_timeStampSmooth, &E::timeStampSmooth>>;
    using ContextGetters = FieldGetters<
        Gets <db_get_l2mc6_elb_serviceStatus, &E::serviceStatus>,
        Gets <db_get_l2mc6_elb_svcCtxHighPrio, &E::svcCtxHighPrio>,
        Gets <db_get_l2mc6_elb_svcCtxNormalPrio, &E::svcCtxNormalPrio>,
        Gets <db_get_l2mc6_elb_errCode, &E::errCode>>;
    using AddressGetters = FieldGetters<
        GetsAddress <db_get_l2mc6_elb_groupAddr, &E::groupAddr>,
        GetsAddress <db_get_l2mc6_elb_sourceAddr, &E::sourceAddr>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] l2 elb6 create db object failed. ret:%u."), returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB] read elb6 failed, para is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] read elb6 failed"), returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {released, logCode("[MCAST6 DB] read elb6 object db failed, ret:%u."), record(Error::read),
                         engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB] write db elb object failed, param is null."), kpi(kWriteFailed), returns(1)},
        .createFailed = {log("[MCAST6 DB] write elb6Entry failed"), kpi(kWriteFailed), returns(1)},
        .setFailed    = {released, logCode("[MCAST6 DB] write l2elb6, set_all_fields failed, ret:%u."),
                         kpi(kWriteFailed), returns(1)},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        .writeFailed  = {released, kpi(kWriteFailed), logCode("[MCAST6 DB] write L2Elb6 db failed. ret:%u."),
                         record(Error::write), returns(1)},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB] update db elb6 object failed, param is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] update elb6 failed"), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] update elb6 failed, create db object failed. ret:%u."), released,
                         returns(1)},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // 0
        .updateFailed = {released, logCode("[MCAST6 DB] update elb6 failed, create db object failed. ret:%u."),
                         record(Error::update), returns(0)},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB] delete db elb6 object failed, param is null."), kpi(kDeleteFailed),
                         returns(1)},
        .createFailed = {log("[MCAST6 DB] delete elb6 failed"), kpi(kDeleteFailed), returns(1)},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, kpi(kDeleteFailed), record(Error::remove),
                         logCode("[MCAST6 DB] delete elb6 failed. ret:%u."), returns(1)},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB] get elb6 entry error. ret:%d"), record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB] get elb6 entry fail, ret:%d."), record(Error::read), returns(1)},
    };
    static constexpr NextItemOutcomes onNextItem{
        .nullHandle = callerGuarantees,
        .ended      = {returns(60)},
        .nextFailed = {logCode("[MCAST6 DB] get next elb6 entry fail. ret:%u"), returns(1)},
        .entry      = {returns(0)},
    };
    static constexpr BuildOutcomes onIter{
        .createFailed     = {log("[MCAST6 DB] create elb6 iter failed"), returnsNull},
        .rootIterFailed   = {logCode("[MCAST6 DB] create elb6 iter failed, create root iter failed. ret:%d"),
                             record(Error::rootIter), released, returnsNull},
        .propertyFailed   = {released, logCode("[MCAST6 DB] set l2mc elb6 root iterator property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {released, log("[MCAST6 DB] create elb6 iter failed, malloc failed."),
                             record(Error::iterBuild), returnsNull},
    };
    static constexpr BuildOutcomes onGenericIter{  // kind 8 for every step except the property
        .createFailed     = {record(Error::iterBuild), log("[MCAST6 DB] create l2mc elb obj error"), returnsNull},
        .rootIterFailed   = {released, record(Error::iterBuild),
                             logCode("[MCAST6 DB] create l2mc root iterator error, ret:%d."), returnsNull},
        .propertyFailed   = {released, logCode("[MCAST6 DB] set l2mc root iterator property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {released, record(Error::iterBuild), log("[MCAST6 DB] malloc mem failed."), returnsNull},
    };
    static constexpr BuildOutcomes onIterBySource{
        .createFailed     = {record(Error::read), returnsNull},
        .rootIterFailed   = {released, returnsNull},
        .propertyFailed   = {released,
                             logCode("[MCAST6 DB] set l2mc elb6 root iterator by source addr property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {log("[MCAST6 DB] CreateL2Elb6IterBySourceAddr malloc db res failed."),
                             record(Error::iterBuild), released, returnsNull},
    };
    static constexpr MatchOutcomes onCountBySource{
        .createFailed = {record(Error::read), returns(1)},
        .absent       = {released, returns(0)},
        .countFailed  = {logCode("[MCAST6 DB] elb6 object db count failed, ret:%d."), record(Error::read), released,
                         returns(0)},
    };
};
// clang-format on

namespace published = layout::l2mc6_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001002C && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x02090026 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByIfIndex));

}  // namespace mcast6::l2mc6_elb

using namespace mcast6;
using namespace mcast6::l2mc6_elb;

uint32_t MCAST6_DB_SetL2Elb6(const L2Elb6Entry* record, void* row) { return setRow<Table, &E::elbData1>(record, row); }

void MCAST6_DB_GetL2Elb6(const void* row, L2Elb6Entry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetL2Elb6Key(uint32_t* keyWord, void* key, const L2Elb6Entry* record) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_GetL2Elb6CtxItem(Mcast6DbHandle object, L2Elb6Entry* record) {
    return Table::ContextGetters::apply(object, *record);
}

uint32_t MCAST6_DB_GetL2Elb6AddrItem(Mcast6DbHandle object, L2Elb6Entry* record) {
    return Table::AddressGetters::apply(object, *record);
}

void MCAST6_DB_GetL2Elb6Item(Mcast6DbHandle object, L2Elb6Entry* record) {
    if (record == nullptr) return;
    uint32_t code = Table::FirstGetters::apply(object, *record);
    Table::OnGet::get(*record);
    code |= Table::ItemGetters::apply(object, *record);
    code |= MCAST6_DB_GetL2Elb6CtxItem(object, record);
    code |= MCAST6_DB_GetL2Elb6AddrItem(object, record);
    if (code != kOk) logLine(Table::logId, "[MCAST6 DB] get mcast6 elb6 fail, ret:%u.", code);
}

uint32_t MCAST6_DB_CreateL2Elb6Object(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2Elb6Object(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2Elb6(L2Elb6Entry* record) { return readRecord<Table, Conversion::afterRelease>(record); }

uint32_t MCAST6_DB_WriteL2Elb6(const L2Elb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2Elb6SmoothVersion(const L2Elb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2Elb6(const L2Elb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2Elb6Entry(Mcast6DbRes* iterator, L2Elb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

uint32_t MCAST6_DB_GetNextL2Elb6(Mcast6DbRes* iterator, L2Elb6Entry* record) {
    return nextItem<Table, Table::onNextItem>(iterator, record, MCAST6_DB_GetL2Elb6Item);
}

Mcast6DbRes* MCAST6_DB_CreateL2Elb6Iter(void) { return buildIter<Table, Table::onIter>(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL2Elb6Iterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return buildIter<Table, Table::onGenericIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2Elb6AllIterator(void) { return MCAST6_DB_CreateL2Elb6Iterator(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateL2Elb6IterByIfindex(uint32_t ifIndex) {
    const auto key = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL2Elb6Iterator(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Elb6IterByMcid(const L2Elb6McidKey* key) {
    const auto entry =
        keyOf<Table::ByEntry::word>(key->keyWord0, static_cast<uint16_t>(key->keyWord1), key->keyAddr1, key->keyAddr0);
    return MCAST6_DB_CreateL2Elb6Iterator(&entry.descriptor, entry.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Elb6IterBySrcAddr(uint32_t vrId, uint16_t vlanId, const Mcast6Ipv6Addr* sourceAddr,
                                                 const Mcast6Ipv6Addr* groupAddr) {
    const auto key = keyOf<Table::ByEntry::word>(vrId, vlanId, *sourceAddr, *groupAddr);
    return buildIter<Table, Table::onIterBySource>(&key.descriptor, key.bytes);
}

uint32_t MCAST6_DB_L2Elb6CountBySource(uint32_t vrId, uint16_t vlanId, const Mcast6Ipv6Addr* sourceAddr,
                                       const Mcast6Ipv6Addr* groupAddr) {
    const auto key = keyOf<Table::ByEntry::word>(vrId, vlanId, *sourceAddr, *groupAddr);
    return countMatches<Table, Table::onCountBySource>(&key.descriptor, key.bytes);
}

void MCAST6_DB_ReleaseL2Elb6Iterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
