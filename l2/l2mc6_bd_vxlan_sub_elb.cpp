// l2mc6_bd_vxlan_sub_elb: the VXLAN tunnel members of bridge domain entries that are bound to an interface.
// Differs from l2mc6_bd_tag_elb on 13044: a write records it as a failed write, a smooth-version update as a failed
// update, and a removal counts it as failed; all three return 0. The release counts 380.
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_vxlan_sub_elb.h"

namespace mcast6::l2mc6_bd_vxlan_sub_elb {

using E = L2Elb6Entry;

constexpr Counter kCreateFailed{512, "object creations failed"};
constexpr Counter kCreated{511, "objects created"};
constexpr Counter kReleased{380, "objects released"};  // not in sequence with the others
constexpr Counter kWritten{513, "writes"};
constexpr Counter kWriteFailed{514, "writes failed"};
constexpr Counter kDeleted{515, "deletes"};
constexpr Counter kDeleteFailed{516, "deletes failed"};
constexpr Counter kIterFailed{517, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 31;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2Mc6BdVxlanSubElbObject,
                                               MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_vxlan_sub_elb_obj, db_release_l2mc6_bd_vxlan_sub_elb_object,
                                         db_set_l2mc6_bd_vxlan_sub_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2McBdVxlanSubElb;
    static constexpr auto get = MCAST6_DB_GetL2Mc6BdVxlanSubElb;

    using Row = mcast6::Row<192,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::bdId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Resized < 40, uint32_t, &E::vxlanByte>,
        Copy    < 44, &E::vxlanWord1>,
        Copy    < 48, &E::outIfIndex>,
        Copy    < 52, &E::vxlanWord2>,
        Copy    < 56, &E::vxlanWords3to6>,
        Copy    < 72, &E::vxlanWord0>,
        Copy    < 76, &E::vrfId>,
        CopyToBoth < 80, &E::fwdIfType, &E::fwdIfKind>,
        Copy    < 82, &E::isSelfBoard>,
        Copy    < 83, &E::vxlanFlag>,
        Copy    < 84, &E::pathFlags>,
        Copy    < 88, &E::mcId>,
        Copy    < 92, &E::mcidVersion>,
        Copy    <100, &E::mfibVersion>,
        Copy    <104, &E::appSrcPid>,
        Copy    <108, &E::appVersion>,
        Copy    <112, &E::smoothVersion>,
        Copy    <116, &E::elbData1>,
        Copy    <132, &E::svcCtxHighPrio>,
        Copy    <160, &E::svcCtxNormalPrio>,
        Copy    <172, &E::serviceStatus>,
        Copy    <174, &E::errCode>,
        Now     <176, &E::timeStampCreate>,
        Now     <184, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::domainType, 1>, GetWrites<&E::fixedWord1, 8>,
                                GetWrites<&E::fixedWord2, 10>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr, &E::vxlanByte, &E::vxlanWord1,
                               &E::outIfIndex>;
    using ByEntry = SecondaryKey<Row, 1, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr>;
    using ByVsg   = SecondaryKey<Row, 2, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr, &E::vxlanByte,
                                 &E::vxlanWord1>;
    static constexpr uint32_t kByIfIndex = 0x03090004;       // an interface index
    static constexpr uint32_t kByBridgeDomain = 0x04090008;  // a VR and a bridge domain

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_vxlan_sub_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_vxlan_sub_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL2McBdVxlanSubElb, l2Mc6BdVxlanSubElbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL2McBdVxlanSubElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("MCAST6_DB_ReadL2Mc6BdVxlanSubElb, read object db failed, ret:%u."),
                         record(Error::read), released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("write l2mc6_bd_vxlan_sub_elb, l2Mc6BdVxlanSubElb is null."), dfx(kWriteFailed),
                         returns(1)},
        .createFailed = {logCode("write l2mc6_bd_vxlan_sub_elb, create db object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("write l2mc_bd_vxlan_sub_elb, set_all_fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        // recorded and counted as failed
        .code13044    = {released, record(Error::write), dfx(kWriteFailed), returns(0)},
        // says "release"
        .writeFailed  = {released, logCode("write l2mc6_bd_vxlan_sub_elb, release l2mc object fail, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion, l2Mc6BdVxlanSubElbEntry is null."),
                         returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST_DB_UpdateL2McBdVxlanSubElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::update), returns(0)},  // recorded as failed
        .updateFailed = {released,
                         logCode("MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion, release object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, l2Mc6BdVxlanSubElbEntry is null."),
                         dfx(kDeleteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, create db object failed, ret:%u."),
                         dfx(kDeleteFailed), engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleteFailed), returns(0)},  // counted as failed
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, release object fail, ret:%u."),
                         dfx(kDeleteFailed), engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_Getl2Mc6BdVxlanSubElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_Getl2Mc6BdVxlanSubElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_vxlan_sub_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010034 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x01090028 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(Table::ByVsg::word == 0x02090030 && isPublished<Table::ByVsg>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByIfIndex) &&
              isPublishedWord(published::kIndexes, Table::kByBridgeDomain));

}  // namespace mcast6::l2mc6_bd_vxlan_sub_elb

using namespace mcast6;
using namespace mcast6::l2mc6_bd_vxlan_sub_elb;

int64_t MCAST6_DB_SetStructL2Mc6BdVxlanSubElbTimeStamp(int32_t flag, void* row) {
    return static_cast<int64_t>(stampRow<Table>(flag != 0, row));
}

void MCAST6_DB_SetL2McBdVxlanSubElb(const L2Elb6Entry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2Mc6BdVxlanSubElb(const void* row, L2Elb6Entry* record) { getRecord<Table>(row, record); }

void MCAST6_DB_SetL2Mc6BdVxlanSubElbKey(uint32_t* keyWord, void* key, const L2Elb6Entry* record) {
    putPrimaryKey<Table>(keyWord, key, record);
}

uint32_t MCAST6_DB_CreateL2Mc6BdVxlanSubElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2Mc6BdVxlanSubElb(L2Elb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2Mc6BdVxlanSubElb(const L2Elb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion(const L2Elb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2Mc6BdVxlanSubElb(const L2Elb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry(Mcast6DbRes* iterator, L2Elb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator(const L2McBdElbKey* key) {
    const auto filter = keyOf<Table::ByEntry::word>(key->vrId, key->bdId, key->groupAddr, key->sourceAddr);
    return MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanSubElbsourceIterator(const L2McBdElbKey* key) {
    return MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator(key);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6VxlanSubElbCreateVSGIterator(const L2Elb6Entry* record) {
    const auto filter = Table::ByVsg::of(*record);
    return MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByIfindex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByBd(uint32_t vrId, uint32_t bdId) {
    const auto filter = keyOf<Table::kByBridgeDomain>(vrId, bdId);
    return MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter failed");
    return iterator;
}

void MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
