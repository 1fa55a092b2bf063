// l2mc6_vlan_mfib: the layer-2 forwarding entries of VLANs.
// The same steps as l2mc6_bd_mfib, with its own numbers and messages, and with both mask lengths stored.
#include "mcast6_db/l2mc6_vlan_mfib.h"

#include "frame/agreement.h"
#include "l2/l2_mfib.h"
#include "mcast6_platform/tables/l2mc6_vlan_mfib.h"

uint32_t g_l2McVlanMfib6Pid;
Mcast6DbHandle g_l2Mfib6DbReadObjCache;

namespace mcast6::l2mc6_vlan_mfib {

using E = L2Mc6MfibEntry;

constexpr Counter kCreated{0, "objects created"};  // a created object counts 0, the success code
constexpr Counter kReleased{1, "objects released"};
constexpr Kpi kWritten{3, "writes"};
constexpr Kpi kWriteFailed{4, "writes failed"};
constexpr Kpi kDeleted{5, "deletes"};
constexpr Kpi kDeleteFailed{6, "deletes failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 8;
    static constexpr uint32_t logId  = kLogLayer2Mfib;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2Mfib6Object, MCAST6_DB_ReleaseL2Mfib6Object};
    static constexpr Accessors accessors{db_create_l2mc6_vlan_mfib_obj, db_release_l2mc6_vlan_mfib_object,
                                         db_set_l2mc6_vlan_mfib_all_fields};
    static constexpr auto resetObject = db_reset_l2mc6_vlan_mfib_object;
    static constexpr auto set = MCAST6_DB_SetVlanMfib6;
    static constexpr auto get = MCAST6_DB_GetVlanMfib6;

    // smoothVersion comes before appVersion, unlike in the record.
    using Row = mcast6::Row<128,
        Copy    <  0, &E::vrId>,
        Address <  4, &E::groupAddr>,
        Address < 20, &E::sourceAddr>,
        Named   <"vlanId", Copy<36, &E::domainId>>,
        Copy    < 40, &E::vrfId>,
        Copy    < 44, &E::groupMaskLen>,
        Copy    < 45, &E::sourceMaskLen>,
        Copy    < 46, &E::pathFlags>,
        Copy    < 50, &E::mcId>,
        Copy    < 54, &E::mcidVersion>,
        Copy    < 62, &E::mfibVersion>,
        Copy    < 66, &E::svcCtxHighPrio>,
        Copy    < 78, &E::svcCtxNormalPrio>,
        Copy    < 90, &E::appSrcPid>,
        Copy    < 94, &E::smoothVersion>,
        Copy    < 98, &E::appVersion>,
        Copy    <102, &E::serviceStatus>,
        Copy    <104, &E::hppErrCode>,
        Copy    <108, &E::enpErrCode>,
        Now     <112, &E::timeStampCreate>,
        Now     <120, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::domainType, 0>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::groupAddr, &E::sourceAddr, &E::domainId>;
    using ByDomain = SecondaryKey<Row, 2, &E::vrId, &E::domainId>;
    using ByGroup  = SecondaryKey<Row, 3, &E::vrId, &E::groupAddr, &E::domainId>;
    static constexpr uint32_t kSortedByDomain = 0x01020004;
    static constexpr uint32_t kByErrCode = 0x04090004;  // an error code

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_vlan_mfib_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_vlan_mfib_timeStampSmooth>>;
    using ContextGetters = FieldGetters<
        Gets <db_get_l2mc6_vlan_mfib_svcCtxHighPrio, &E::svcCtxHighPrio>,
        Gets <db_get_l2mc6_vlan_mfib_svcCtxNormalPrio, &E::svcCtxNormalPrio>>;
    using ItemGetters = FieldGetters<
        Gets <db_get_l2mc6_vlan_mfib_serviceStatus, &E::serviceStatus>,
        Gets <db_get_l2mc6_vlan_mfib_vlanId, &E::domainId>,
        Gets <db_get_l2mc6_vlan_mfib_vrId, &E::vrId>,
        Gets <db_get_l2mc6_vlan_mfib_vrfId, &E::vrfId>,
        Gets <db_get_l2mc6_vlan_mfib_groupMaskLen, &E::groupMaskLen>,
        Gets <db_get_l2mc6_vlan_mfib_sourceMaskLen, &E::sourceMaskLen>,
        Gets <db_get_l2mc6_vlan_mfib_pathFlags, &E::pathFlags>,
        Gets <db_get_l2mc6_vlan_mfib_mcId, &E::mcId>,
        Gets <db_get_l2mc6_vlan_mfib_mcidVersion, &E::mcidVersion>,
        Gets <db_get_l2mc6_vlan_mfib_mfibVersion, &E::mfibVersion>,
        Gets <db_get_l2mc6_vlan_mfib_appSrcPid, &E::appSrcPid>,
        Gets <db_get_l2mc6_vlan_mfib_appVersion, &E::appVersion>,
        Gets <db_get_l2mc6_vlan_mfib_smoothVersion, &E::smoothVersion>,
        Gets <db_get_l2mc6_vlan_mfib_hppErrCode, &E::hppErrCode>,
        Gets <db_get_l2mc6_vlan_mfib_enpErrCode, &E::enpErrCode>,
        Gets <db_get_l2mc6_vlan_mfib_timeStampCreate, &E::timeStampCreate>,
        Gets <db_get_l2mc6_vlan_mfib_timeStampSmooth, &E::timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] l2 mfib6 create db object failed, ret:%u."), returns(1)},
    };
    static constexpr CacheOutcomes onCache{
        .createFailed = {logCode("[MCAST6 DB] failed to create l2mfib cache object, ret:%d"), returns(1)},
        .resetFailed  = {logCode("[MCAST6 DB] failed to reset l2mfib cache object, ret:%d"), returns(1)},
    };
    static constexpr KeyedReadOutcomes onKeyedRead{
        .found      = {returns(0)},
        .absent     = {returns(60)},
        .readFailed = {logCode("[MCAST6 DB] read vlan mfib6 object db failed, ret:%u."), record(Error::read),
                       returns(1)},
    };
    static constexpr GivenObjectOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB] read vlan mfib fail, vlanMfib6Entry is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] read vlan mfib fail, create db object failed."), returns(1)},
    };
    static constexpr GivenObjectOutcomes onFastRead{
        .nullRecord   = callerGuarantees,
        .createFailed = {log("[MCAST6 DB] read vlan mfib6 perf opt failed, create db object failed."), returns(1)},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB] write vlan mfib fail, vlanMfib6Entry is null."), kpi(kWriteFailed),
                         returns(1)},
        .createFailed = {log("[MCAST6 DB] write vlan mfib fail, create db object failed."), kpi(kWriteFailed),
                         returns(1)},
        .setFailed    = {released, logCode("[MCAST6 DB] write vlan mfib fail, set_all_fields failed, ret:%u."),
                         kpi(kWriteFailed), returns(1)},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        // says "release"
        .writeFailed  = {released, kpi(kWriteFailed),
                         logCode("[MCAST6 DB] write vlan mfib fail, release object fail, ret:%u."),
                         record(Error::write), returns(1)},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB] update vlan mfib smooth version fail, vlanMfib6Entry is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] update vlan mfib smooth version fail, create db object failed."), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] set smooth version when update fail, ret:%u."), released, returns(1)},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB] update vlan mfib smooth version, release object fail, ret:%u."),
                         record(Error::update), returns(1)},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB] delete vlan mfib fail, vlanMfib6Entry is null."), kpi(kDeleteFailed),
                         returns(1)},
        .createFailed = {log("[MCAST6 DB] delete vlan mfib fail, create db object failed."), kpi(kDeleteFailed),
                         returns(1)},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, kpi(kDeleteFailed), record(Error::remove),
                         logCode("[MCAST6 DB] delete vlan mfib fail, release object fail, ret:%u."), returns(1)},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB] get vlan mfib fail, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        // says "delete"
        .readFailed    = {logCode("[MCAST6 DB] delete vlan mfib fail, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr NextItemOutcomes onNextItem{
        .nullHandle = {returns(1)},
        .ended      = {returns(60)},
        // two commas
        .nextFailed = {logCode("[MCAST6 DB] get vlan mfib6,, root iterator next fail, ret:%u."), returns(1)},
        .entry      = {returns(0)},
    };
    static constexpr BuildOutcomes onIter{
        .createFailed     = {log("[MCAST6 DB] create vlan mfib iter fail, create obj failed."), returnsNull},
        .rootIterFailed   = {logCode("[MCAST6 DB] create vlan mfib iter fail, create root iter failed, ret:%d."),
                             record(Error::rootIter), released, returnsNull},
        .propertyFailed   = {released, logCode("[MCAST6 DB] set VlanMfib6 root iterator property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {released, log("[MCAST6 DB] create vlan mfib iter fail, malloc db res failed."),
                             record(Error::iterBuild), returnsNull},
    };
    static constexpr BuildOutcomes onIterByGroup{
        .createFailed     = {record(Error::read), returnsNull},
        .rootIterFailed   = {released, returnsNull},
        .propertyFailed   = {released,
                             logCode("[MCAST6 DB] set VlanMfib6 root iterator by group addr property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {log("[MCAST6 DB] CreateL2vlan_mfib6 malloc db res failed."), record(Error::iterBuild),
                             released, returnsNull},
    };
    static constexpr BuildOutcomes onIterByDomain{
        .createFailed     = {record(Error::read), returnsNull},
        .rootIterFailed   = {released, returnsNull},
        .propertyFailed   = {released,
                             logCode("[MCAST6 DB] set VlanMfib6 root iterator by vlanId property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {log("[MCAST6 DB] CreateL2vlanmfib6IterByVlanId malloc db res failed."),
                             record(Error::iterBuild), released, returnsNull},
    };
    static constexpr SortedScanOutcomes onSortedScan{
        .statementFailed  = {released, returnsNull},
        .filterFailed     = {released, returnsNull},
        .propertyFailed   = {released,
                             logCode("[MCAST6 DB] set VlanMfib6 root iterator by filter property fail, ret:%u."),
                             returnsNull},
        .allocationFailed = {released, log("[MCAST6 DB] L2mcMfib ScanGetVlanIterSorted malloc db res failed."),
                             record(Error::iterBuild), returnsNull},
    };
    static constexpr BuildIntoOutcomes onIterByErrCode{
        .createFailed   = {record(Error::read), returns(1)},
        .rootIterFailed = {released, returns(1)},
        .propertyFailed = {released,
                           logCode("[MCAST6 DB] set VlanMfib6 root iterator by errCode property fail, ret:%d."),
                           returns(1)},
    };
    static constexpr MatchOutcomes onCountByDomain{
        .createFailed = {record(Error::read), returns(1)},
        .absent       = {released, returns(0)},
        .countFailed  = {logCode("[MCAST6 DB] db count by valnId failed, ret:%d."), record(Error::read), released,
                         returns(0)},
    };
    static constexpr ConflictOutcomes onConflicts{
        .createFailed = {record(Error::read), returns(1)},
        .countFailed  = {logCode("[MCAST6 DB] db count by valnId failed, ret:%u."), record(Error::read), returns(1)},
    };
};
// clang-format on

// The count by VLAN creates its object with the accessors, without the counters.
struct Uncounted : Table {
    static constexpr Mcast6DbIterFuncs objects{db_create_l2mc6_vlan_mfib_obj, db_release_l2mc6_vlan_mfib_object};
};

namespace published = layout::l2mc6_vlan_mfib;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010028 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByDomain::word == 0x02090008 && isPublished<Table::ByDomain>(published::kIndexes));
static_assert(Table::ByGroup::word == 0x03090018 && isPublished<Table::ByGroup>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kSortedByDomain) &&
              isPublishedWord(published::kIndexes, Table::kByErrCode));

}  // namespace mcast6::l2mc6_vlan_mfib

using namespace mcast6;
using namespace mcast6::l2mc6_vlan_mfib;

uint32_t MCAST6_DB_GetVlanMfib6SourcePid(void) { return g_l2McVlanMfib6Pid; }

void MCAST6_DB_SetVlanMfib6SourcePid(uint32_t pid) { g_l2McVlanMfib6Pid = pid; }

uint32_t MCAST6_DB_SetVlanMfib6(const L2Mc6MfibEntry* record, void* row) {
    const uint32_t code = setRow<Table, &E::serviceStatus>(record, row);
    MCAST6_DB_SetVlanMfib6SourcePid(record->appSrcPid);
    return code;
}

uint32_t MCAST6_DB_GetVlanMfib6(const void* row, L2Mc6MfibEntry* record) {
    return getRecord<Table, &E::serviceStatus>(row, record);
}

uint32_t MCAST6_DB_GetVlanMfib6SvcCtx(Mcast6DbHandle object, L2Mc6MfibEntry* record) {
    return Table::ContextGetters::apply(object, *record);
}

uint32_t MCAST6_DB_GetVlanMfib6Addr(Mcast6DbHandle object, L2Mc6MfibEntry* record) {
    record->addrType = 2;
    record->domainType = 0;
    GetsAddress<db_get_l2mc6_vlan_mfib_groupAddr, &E::groupAddr>::apply(object, *record);
    return GetsAddress<db_get_l2mc6_vlan_mfib_sourceAddr, &E::sourceAddr>::apply(object, *record);
}

void MCAST6_DB_GetVlanMfib6Item(Mcast6DbHandle object, L2Mc6MfibEntry* record) {
    if (record == nullptr) return;
    MCAST6_DB_GetVlanMfib6SvcCtx(object, record);
    uint32_t code = MCAST6_DB_GetVlanMfib6Addr(object, record);
    code |= Table::ItemGetters::apply(object, *record);
    if (code != kOk) logLine(Table::logId, "[MCAST6 DB] get vlan mfib item fail, ret:%u.", code);
}

uint32_t MCAST6_DB_CreateL2Mfib6Object(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2Mfib6Object(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadVlanMfib6Entry(L2Mc6MfibEntry* record, Mcast6DbHandle object) {
    return keyedRead<Table, Table::onKeyedRead>(record, object);
}

uint32_t MCAST6_DB_ReadVlanMfib6(L2Mc6MfibEntry* record) {
    return readWithOwnObject<Table, Table::onRead, Table::onKeyedRead>(record);
}

uint32_t MCAST6_DB_CreateL2Mfib6ObjectCache(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot) {
    return obtainKept<Table, Table::onCache>(objType, connType, slot);
}

uint32_t MCAST6_DB_ReadVlanMfib6Fast(L2Mc6MfibEntry* record) {
    if (MCAST6_DB_CreateL2Mfib6ObjectCache(kReadObject, kConnType, &g_l2Mfib6DbReadObjCache) != kOk) {
        return conclude<Table, Table::onFastRead, &GivenObjectOutcomes::createFailed>({});
    }
    return MCAST6_DB_ReadVlanMfib6Entry(record, g_l2Mfib6DbReadObjCache);
}

uint32_t MCAST6_DB_WriteVlanMfib6(const L2Mc6MfibEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateVlanMfib6SmoothVersion(const L2Mc6MfibEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteVlanMfib6(const L2Mc6MfibEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetVlanMfib6Entry(Mcast6DbRes* iterator, L2Mc6MfibEntry* record) {
    return nextRecord<Table>(iterator, record);
}

uint32_t MCAST6_DB_GetNextVlanMfib6(Mcast6DbRes* iterator, L2Mc6MfibEntry* record) {
    return nextItem<Table, Table::onNextItem>(iterator, record, MCAST6_DB_GetVlanMfib6Item);
}

Mcast6DbRes* MCAST6_DB_CreateVlanMfib6Iter(void) { return buildIter<Table, Table::onIter>(nullptr, nullptr); }

Mcast6DbRes* MCAST6_DB_CreateVlanMfib6IterByGrpAddr(uint32_t vrId, uint32_t vlanId, const Mcast6Ipv6Addr* groupAddr) {
    const auto key = keyOf<Table::ByGroup::word>(vrId, *groupAddr, vlanId);
    return buildIter<Table, Table::onIterByGroup>(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateVlanMfib6IterByVlanId(uint32_t vrId, uint32_t vlanId) {
    const auto key = keyOf<Table::ByDomain::word>(vrId, vlanId);
    return buildIter<Table, Table::onIterByDomain>(&key.descriptor, key.bytes);
}

Mcast6DbRes* MCAST6_DB_VlanMfib6_ScanGetVlanIterSorted(void) {
    return sortedScan<Table, Table::onSortedScan>("vlanId_local_key", Table::kSortedByDomain);
}

uint32_t MCAST6_DB_CreateVlanMfib6IterByErrCode(Mcast6DbRes* resource) {
    const auto key = keyOf<Table::kByErrCode>(kHashConflict);
    return buildIterInto<Table, Table::onIterByErrCode>(*resource, &key.descriptor, key.bytes);
}

void MCAST6_DB_ReleaseVlanMfib6Iterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetVlanMfib6Count(uint32_t* count) { return countAll<Table>(count) == kOk ? kOk : kFailed; }

uint32_t MCAST6_DB_VlanMfib6CountByVlanId(uint32_t vrId, uint32_t vlanId) {
    const auto key = keyOf<Table::ByDomain::word>(vrId, vlanId);
    return countMatches<Uncounted, Table::onCountByDomain>(&key.descriptor, key.bytes);
}

uint32_t MCAST6_DB_GetL2Mfib6HashConflictTotalNum(uint32_t* count) {
    return countConflicts<Table, Table::onConflicts>(count);
}
