// l3mc6_mvpn_tnl_subelb: the MVPN tunnel members of layer-3 entries that are bound to an interface.
// As the model table, with KPIs for the outcomes; failed setters of a write are not logged.
#include "mcast6_db/l3mc6_mvpn_tnl_subelb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l3mc6_mvpn_tnl_subelb.h"

namespace mcast6::l3mc6_mvpn_tnl_subelb {

using E = L3McMvpnTnlElbEntry;

constexpr Counter kCreated{478, "objects created"};
constexpr Counter kReleased{479, "objects released"};
constexpr Kpi kWritten{218, "writes"};
constexpr Kpi kWriteFailed{219, "writes failed"};
constexpr Kpi kDeleted{220, "deletes"};
constexpr Kpi kDeleteFailed{221, "deletes failed"};
constexpr Kpi kCreateFailed{222, "object creations failed"};
constexpr Kpi kIterFailed{223, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 29;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3McMvpnTnlSubElbObject,
                                               MCAST6_DB_ReleaseL3McMvpnTnlSubElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_mvpn_tnl_subelb_obj, db_release_l3mc6_mvpn_tnl_subelb_object,
                                         db_set_l3mc6_mvpn_tnl_subelb_all_fields};
    static constexpr auto set = MCAST6_DB_SetL3McMvpnTnlSubElb;
    static constexpr auto get = MCAST6_DB_GetL3McMvpnTnlSubElb;

    using Row = mcast6::Row<168,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::vrfId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::outIfIndex>,
        Copy    < 44, &E::subKeyWord>,
        Copy    < 48, &E::l2IfIndex>,
        Copy    < 52, &E::subWord1>,
        Copy    < 56, &E::subWord2>,
        Copy    < 60, &E::subWord3>,
        Copy    < 64, &E::subByte1>,
        Copy    < 65, &E::subByte2>,
        Copy    < 66, &E::subByte3>,
        Gap     < 67, 1>,
        Copy    < 68, &E::memberAttr1>,
        Copy    < 72, &E::memberAttr2>,
        Copy    < 80, &E::memberAttr3>,
        Copy    < 84, &E::appSrcPid>,
        Copy    < 88, &E::smoothVersion>,
        Copy    < 92, &E::tunnelData>,
        Copy    <108, &E::svcCtxHighPrio>,
        Copy    <136, &E::svcCtxNormalPrio>,
        Copy    <148, &E::serviceStatus>,
        Copy    <150, &E::errCode>,
        Now     <152, &E::timeStampCreate>,
        Now     <160, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::entryType, 20>, GetWrites<&E::addrType, 2>, GetWrites<&E::kindWord, 5>>;

    using Primary = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr, &E::outIfIndex, &E::subKeyWord>;
    static constexpr uint32_t kByVsg       = 0x01090028;  // VR, VRF, group, source
    static constexpr uint32_t kByIfIndex   = 0x02090004;  // an interface index
    static constexpr uint32_t kByVrVrf     = 0x03090008;  // a VR and a VRF
    static constexpr uint32_t kByL2IfIndex = 0x04090004;  // a layer-2 interface index

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l3mc6_mvpn_tnl_subelb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l3mc6_mvpn_tnl_subelb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL3McMvpnTnlSubElb, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL3McMvpnTnlSubElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {
            released, logCode("MCAST6_DB_ReadL3McMvpnTnlSubElb, read l3mc6_mvpn_tnl_subelb object db failed, ret:%u."),
            record(Error::read), engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL3McMvpnTnlSubElb, l3McMvpnTnlSubElb is null."), kpi(kWriteFailed),
                         returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL3McMvpnTnlSubElb, create db object failed, ret:%u."),
                         kpi(kWriteFailed), engineCode},
        .setFailed    = {released, kpi(kWriteFailed), engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        // says "release"
        .writeFailed  = {released, logCode("MCAST6_DB_WriteL3McMvpnTnlSubElb, release db object fail, ret:%u."),
                         record(Error::write), kpi(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, elbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // says "release"
        .updateFailed = {released,
                         logCode("MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, release db object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL3McMvpnTnlSubElb, elbEntry is null."), kpi(kDeleteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL3McMvpnTnlSubElb, create db object failed, ret:%u."),
                         kpi(kDeleteFailed), engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL3McMvpnTnlSubElb, release db object fail, ret:%u."),
                         kpi(kDeleteFailed), engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL3McMvpnTnlSubElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL3McMvpnTnlSubElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
};
// clang-format on

namespace published = layout::l3mc6_mvpn_tnl_subelb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010030 && Table::Primary::agrees(published::kPrimary));
static_assert(isPublishedWord(published::kIndexes, Table::kByVsg) &&
              isPublishedWord(published::kIndexes, Table::kByIfIndex) &&
              isPublishedWord(published::kIndexes, Table::kByVrVrf) &&
              isPublishedWord(published::kIndexes, Table::kByL2IfIndex));

}  // namespace mcast6::l3mc6_mvpn_tnl_subelb

using namespace mcast6;
using namespace mcast6::l3mc6_mvpn_tnl_subelb;

int64_t MCAST6_DB_SetStructL3McMvpnTnlSubElbTimeStamp(int32_t withCreate, void* row) {
    return static_cast<int64_t>(stampRow<Table>(withCreate != 0, row));
}

void MCAST6_DB_SetL3McMvpnTnlSubElb(const L3McMvpnTnlElbEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL3McMvpnTnlSubElb(const void* row, L3McMvpnTnlElbEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL3McMvpnTnlSubElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3McMvpnTnlSubElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL3McMvpnTnlSubElb(L3McMvpnTnlElbEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL3McMvpnTnlSubElb(const L3McMvpnTnlElbEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion(const L3McMvpnTnlElbEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL3McMvpnTnlSubElb(const L3McMvpnTnlElbEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetNextL3McMvpnTnlSubElb(Mcast6DbRes* iterator, L3McMvpnTnlElbEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlSubElbIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlSubElbAllIter(void) {
    return MCAST6_DB_CreateL3McMvpnTnlSubElbIter(nullptr, nullptr);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlSubElbCreateVSGIterator(const L3McMvpnElbKey* key) {
    const auto filter = keyOf<Table::kByVsg>(key->vrId, key->vrfId, key->groupAddr, key->sourceAddr);
    return MCAST6_DB_CreateL3McMvpnTnlSubElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByIfIndex>(ifIndex);
    return MCAST6_DB_CreateL3McMvpnTnlSubElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlSubElbIterByVrVrf(uint32_t vrId, uint32_t vrfId) {
    const auto filter = keyOf<Table::kByVrVrf>(vrId, vrfId);
    return MCAST6_DB_CreateL3McMvpnTnlSubElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlSubElbIterByL2IfIndex(uint32_t ifIndex) {
    const auto filter = keyOf<Table::kByL2IfIndex>(ifIndex);
    return MCAST6_DB_CreateL3McMvpnTnlSubElbIter(&filter.descriptor, filter.bytes);
}

void MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
