// l2mc6_bd_vxlan_elb: the VXLAN tunnel members of bridge domain entries.
// Differs from l2mc6_bd_tag_elb on 13044: a write records it as a failed write, a smooth-version update as a failed
// update, and a removal counts it as failed; all three return 0.
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_bd_vxlan_elb.h"

namespace mcast6::l2mc6_bd_vxlan_elb {

using E = L2Elb6Entry;

constexpr Counter kCreateFailed{504, "object creations failed"};
constexpr Counter kCreated{503, "objects created"};
constexpr Counter kReleased{505, "objects released"};
constexpr Counter kWritten{506, "writes"};
constexpr Counter kWriteFailed{507, "writes failed"};
constexpr Counter kDeleted{508, "deletes"};
constexpr Counter kDeleteFailed{509, "deletes failed"};
constexpr Counter kIterFailed{510, "iterator creations failed"};

// clang-format off
// The row stores the first of vxlanWords3to6 apart from the other three, with reserved bytes around it.
template <uint16_t kOffset, size_t kFirst, uint16_t kCount>
struct Words3to6 : Place<kOffset, &E::vxlanWords3to6, uint32_t[kCount]> {
    static int set(const E& record, std::byte* row, uint64_t /*now*/) {
        memcpy(row + kOffset, &record.vxlanWords3to6[kFirst], sizeof(uint32_t) * kCount);
        return 0;
    }
    static int get(const std::byte* row, E& record) {
        memcpy(&record.vxlanWords3to6[kFirst], row + kOffset, sizeof(uint32_t) * kCount);
        return 0;
    }
};
struct FirstWord : Named<"vxlanWord3", Words3to6<56, 0, 1>> { static constexpr bool isScalar = true; };
using OtherWords = Named<"vxlanWords4to6", Words3to6<64, 1, 3>>;

struct Table {
    using Record = E;
    static constexpr uint32_t number = 30;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{
        kCreateFailed, kCreated, kReleased, kWritten, kWriteFailed, kDeleted, kDeleteFailed, kIterFailed
    };

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2Mc6BdVxlanElbObject,
                                               MCAST6_DB_ReleaseL2Mc6BdVxlanElbObject};
    static constexpr Accessors accessors{db_create_l2mc6_bd_vxlan_elb_obj, db_release_l2mc6_bd_vxlan_elb_object,
                                         db_set_l2mc6_bd_vxlan_elb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2Mc6BdVxlanElb;
    static constexpr auto get = MCAST6_DB_GetL2Mc6BdVxlanElb;

    using Row = mcast6::Row<204,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::bdId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Resized < 40, uint32_t, &E::vxlanByte>,
        Copy    < 44, &E::vxlanWord1>,
        Copy    < 48, &E::vxlanWord2>,
        Gap     < 52, 4>,
        FirstWord,
        Gap     < 60, 4>,
        OtherWords,
        Copy    < 76, &E::vxlanWord0>,
        Copy    < 80, &E::vrfId>,
        Resized < 84, uint32_t, &E::vxlanByte2>,
        Copy    < 88, &E::outIfIndex>,
        CopyToBoth < 92, &E::fwdIfType, &E::fwdIfKind>,
        Copy    < 94, &E::isSelfBoard>,
        Copy    < 95, &E::vxlanFlag>,
        Copy    < 96, &E::pathFlags>,
        Copy    <100, &E::mcId>,
        Copy    <104, &E::mcidVersion>,
        Copy    <112, &E::mfibVersion>,
        Copy    <116, &E::appSrcPid>,
        Copy    <120, &E::appVersion>,
        Copy    <124, &E::smoothVersion>,
        Copy    <128, &E::elbData1>,
        Copy    <144, &E::svcCtxHighPrio>,
        Copy    <172, &E::svcCtxNormalPrio>,
        Copy    <184, &E::serviceStatus>,
        Copy    <186, &E::errCode>,
        Now     <188, &E::timeStampCreate>,
        Now     <196, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::addrType, 2>, GetWrites<&E::domainType, 1>, GetWrites<&E::fixedWord1, 3>,
                                GetWrites<&E::fixedWord2, 9>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr, &E::vxlanByte, &E::vxlanWord1>;
    using ByEntry = SecondaryKey<Row, 1, &E::vrId, &E::bdId, &E::groupAddr, &E::sourceAddr>;
    static constexpr uint32_t kByTunnel = 0x0209000C;        // VR, vxlanByte widened, vxlanWord1
    static constexpr uint32_t kByIfIndex = 0x0409000C;       // an interface index, eight zero bytes
    static constexpr uint32_t kByBridgeDomain = 0x05090008;  // a VR and a bridge domain
    static constexpr uint32_t kByTunnelVsg = 0x06090014;  // VR, bridge domain, vxlanByte widened, vxlanWord1, kVsgMark
    static constexpr uint32_t kVsgMark = 2;

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_bd_vxlan_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l2mc6_bd_vxlan_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {dfx(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL2Mc6BdVxlanElb, l2McBdVxlanElbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL2Mc6BdVxlanElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, engineCode},
        .readFailed   = {logCode("MCAST6_DB_ReadL2Mc6BdVxlanElb, read l2mc_bd_vxlan_elb object db failed, ret:%u."),
                         record(Error::read), released, engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL2Mc6BdVxlanElb, l2McBdVxlanElb is null."), dfx(kWriteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL2Mc6BdVxlanElb, create db object failed, ret:%u."), dfx(kWriteFailed),
                         engineCode},
        .setFailed    = {released, logCode("MCAST6_DB_WriteL2Mc6BdVxlanElb, set_all_fields failed, ret:%u."),
                         dfx(kWriteFailed), engineCode},
        .written      = {released, dfx(kWritten), returns(0)},
        // recorded and counted as failed
        .code13044    = {released, record(Error::write), dfx(kWriteFailed), returns(0)},
        // says "release"; two blanks
        .writeFailed  = {released, logCode("MCAST6_DB_WriteL2Mc6BdVxlanElb, release  object fail, ret:%u."),
                         record(Error::write), dfx(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion, l2McBdVxlanElbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST_DB_UpdateL2McBdVxlanElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::update), returns(0)},  // recorded as failed
        .updateFailed = {released, logCode("MCAST_DB_UpdateL2McBdVxlanElbSmoothVersion, update object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL2Mc6BdVxlanElb, l2McBdVxlanElbEntry is null."), dfx(kDeleteFailed),
                         returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL2Mc6BdVxlanElb, create db object failed, ret:%u."),
                         dfx(kDeleteFailed), engineCode},
        .removed      = {released, dfx(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), dfx(kDeleteFailed), returns(0)},  // counted as failed
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL2Mc6BdVxlanElb, remove object fail, ret:%u."), dfx(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL2Mc6BdVxlanElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL2Mc6BdVxlanElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {dfx(kIterFailed), returnsNull},
    };
    static constexpr CountOutcomes onCount{
        .createFailed = {logCode("[GetL2Mc6BdVxlanElbCountByKey] create elb object fail, ret:%u."), returns(1)},
        .countFailed  = {logCode("[GetL2Mc6BdVxlanElbCountByKey] get elb num fail, ret:%u."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l2mc6_bd_vxlan_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010030 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::ByEntry::word == 0x01090028 && isPublished<Table::ByEntry>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByTunnel) &&
              isPublishedWord(published::kIndexes, Table::kByIfIndex) &&
              isPublishedWord(published::kIndexes, Table::kByBridgeDomain) &&
              isPublishedWord(published::kIndexes, Table::kByTunnelVsg));

}  // namespace mcast6::l2mc6_bd_vxlan_elb

using namespace mcast6;
using namespace mcast6::l2mc6_bd_vxlan_elb;

int64_t MCAST6_DB_SetStructL2Mc6BdVxlanElbTimeStamp(int32_t flag, void* row) {
    return static_cast<int64_t>(stampRow<Table>(flag != 0, row));
}

void MCAST6_DB_SetL2Mc6BdVxlanElb(const L2Elb6Entry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL2Mc6BdVxlanElb(const void* row, L2Elb6Entry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2Mc6BdVxlanElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2Mc6BdVxlanElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2Mc6BdVxlanElb(L2Elb6Entry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2Mc6BdVxlanElb(const L2Elb6Entry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion(const L2Elb6Entry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL2Mc6BdVxlanElb(const L2Elb6Entry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL2Mc6BdVxlanElbEntry(Mcast6DbRes* iterator, L2Elb6Entry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator(const L2McBdElbKey* key) {
    const auto filter = keyOf<Table::ByEntry::word>(key->vrId, key->bdId, key->groupAddr, key->sourceAddr);
    return MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanElbsourceIterator(const L2McBdElbKey* key) {
    return MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator(key);
}

Mcast6DbRes* MCAST6_DB_CreateL2mcv6ElbIterByVxlanTnl(uint32_t vrId, uint64_t /*ignored*/, uint32_t vxlanByte,
                                                     uint32_t vxlanWord1) {
    const auto filter = keyOf<Table::kByTunnel>(vrId, vxlanByte, vxlanWord1);
    return MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex, uint64_t{0});
    return MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST_DB_CreateL2McBdVxlanElbIteratorByBd(uint32_t vrId, uint32_t bdId) {
    const auto filter = keyOf<Table::kByBridgeDomain>(vrId, bdId);
    return MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6VxlanElbIterByTnlVsg(uint32_t vrId, uint32_t bdId, uint32_t vxlanByte,
                                                       uint32_t vxlanWord1) {
    const auto filter = keyOf<Table::kByTunnelVsg>(vrId, bdId, vxlanByte, vxlanWord1, Table::kVsgMark);
    return MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL2Mc6BdVxlanElbIter(void) {
    Mcast6DbRes* const iterator = MCAST6_DB_CreateL2Mc6BdVxlanElbIterator(nullptr, nullptr);
    if (iterator == nullptr) logLine(Table::logId, "CreateL2Mc6BdVxlanElbIter failed");
    return iterator;
}

void MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL2Mc6BdVxlanElbCountByKey(const Mcast6DbKeyDesc* descriptor, const void* key, uint32_t* count) {
    return countByKey<Table, Table::onCount>(descriptor, key, count);
}

uint32_t MCAST6_DB_GetL2Mc6BdVxlanElbCountByTnlVsg(const L2McBdVxlanVsgKey* key, uint32_t* count) {
    const auto filter =
        keyOf<Table::kByTunnelVsg>(key->word[0], key->word[1], key->word[2], key->word[3], Table::kVsgMark);
    return MCAST6_DB_GetL2Mc6BdVxlanElbCountByKey(&filter.descriptor, filter.bytes, count);
}
