// l3mc6_mvpn_tnl_elb: the MVPN tunnel members of layer-3 entries.
// As the model table, with KPIs for the outcomes; failed setters of a write are not logged.
#include "mcast6_db/l3mc6_mvpn_tnl_elb.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l3mc6_mvpn_tnl_elb.h"

Mcast6DbHandle g_l3Mc6MvpnTnlElbStatObjCache;
uint32_t g_l3Mc6MvpnTnlElbPid;

namespace mcast6::l3mc6_mvpn_tnl_elb {

using E = L3McMvpnTnlElbEntry;

constexpr Counter kCreated{476, "objects created"};
constexpr Counter kReleased{477, "objects released"};
constexpr Kpi kWritten{212, "writes"};
constexpr Kpi kWriteFailed{213, "writes failed"};
constexpr Kpi kDeleted{214, "deletes"};
constexpr Kpi kDeleteFailed{215, "deletes failed"};
constexpr Kpi kCreateFailed{216, "object creations failed"};
constexpr Kpi kIterFailed{217, "iterator creations failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 28;
    static constexpr uint32_t logId  = kLogLayer3;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed, kCreateFailed, kIterFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL3McMvpnTnlElbObject,
                                               MCAST6_DB_ReleaseL3McMvpnTnlElbObject};
    static constexpr Accessors accessors{db_create_l3mc6_mvpn_tnl_elb_obj, db_release_l3mc6_mvpn_tnl_elb_object,
                                         db_set_l3mc6_mvpn_tnl_elb_all_fields};
    static constexpr Mcast6DbCacheFuncs cache{db_create_l3mc6_mvpn_tnl_elb_cache_object,
                                              db_reset_l3mc6_mvpn_tnl_elb_cache_object};
    static constexpr auto set = MCAST6_DB_SetL3McMvpnTnlElb;
    static constexpr auto get = MCAST6_DB_GetL3McMvpnTnlElb;

    using Row = mcast6::Row<142,
        Copy    <  0, &E::vrId>,
        Copy    <  4, &E::vrfId>,
        Address <  8, &E::groupAddr>,
        Address < 24, &E::sourceAddr>,
        Copy    < 40, &E::tunnelWord1>,
        Copy    < 44, &E::tunnelWord2>,
        Copy    < 48, &E::tunnelWord3>,
        Copy    < 52, &E::tunnelWord4>,
        Copy    < 56, &E::tunnelWord5>,
        Copy    < 60, &E::tunnelWord6>,
        Copy    < 64, &E::tunnelWord7>,
        Copy    < 68, &E::tunnelWord8>,
        Copy    < 72, &E::tunnelWord9>,
        Gap     < 76, 4>,
        Copy    < 80, &E::memberAttr1>,
        Copy    < 84, &E::memberAttr2>,
        Copy    < 92, &E::memberAttr3>,
        Copy    < 96, &E::appSrcPid>,
        Copy    <100, &E::appVersion>,
        Copy    <104, &E::smoothVersion>,
        Copy    <108, &E::tunnelData>,
        Copy    <124, &E::serviceStatus>,
        Now     <126, &E::timeStampCreate>,
        Now     <134, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::entryType, 20>, GetWrites<&E::addrType, 2>, GetWrites<&E::kindWord, 5>>;

    using Primary  = PrimaryKey<Row, &E::vrId, &E::vrfId, &E::groupAddr, &E::sourceAddr>;
    using BySrcPid = SecondaryKey<Row, 2, &E::vrId, &E::vrfId, &E::appSrcPid>;
    static constexpr uint32_t kByVni       = 0x0109000C;  // VR, VRF, tunnelWord1
    static constexpr uint32_t kByTunnelVsg = 0x03090010;  // VR, VRF, tunnelWord2, tunnelWord3
    static constexpr uint32_t kByTunnelId  = 0x0409000D;  // VR, VRF, tunnelWord2, low byte of tunnelWord4
    static constexpr uint32_t kByVrf       = 0x05090008;  // a VR and a VRF

    using SmoothSetters = FieldSetters<
        Sets    <db_set_l3mc6_mvpn_tnl_elb_smoothVersion, &E::smoothVersion>,
        SetsNow <db_set_l3mc6_mvpn_tnl_elb_timeStampSmooth>>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), engineCode},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("MCAST6_DB_ReadL3McMvpnTnlElb, l3McMvpnTnlElbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_ReadL3McMvpnTnlElb, create db object failed, ret:%u."), engineCode},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released,
                         logCode("MCAST6_DB_ReadL3McMvpnTnlElb, read l3mc6_mvpn_tnl_elb object db failed, ret:%u."),
                         record(Error::read), engineCode},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("MCAST6_DB_WriteL3McMvpnTnlElb, l3McMvpnTnlElb is null."), kpi(kWriteFailed), returns(1)},
        .createFailed = {logCode("MCAST6_DB_WriteL3McMvpnTnlElb, create db object failed, ret:%u."), kpi(kWriteFailed),
                         engineCode},
        .setFailed    = {released, kpi(kWriteFailed), engineCode},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kWritten), returns(0)},
        .writeFailed  = {released,
                         logCode("MCAST6_DB_WriteL3McMvpnTnlElb, write l3mc6_mvpn_tnl_elb object fail, ret:%u."),
                         record(Error::write), kpi(kWriteFailed), engineCode},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, l3McMvpnTnlElbEntry is null."), returns(1)},
        .createFailed = {logCode("MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, create db object failed, ret:%u."),
                         engineCode},
        .setFailed    = {logCode("MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, set smooth version fail, ret:%u."),
                         released, engineCode},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // says "release"
        .updateFailed = {released,
                         logCode("MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, release db object fail, ret:%u."),
                         record(Error::update), engineCode},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("MCAST6_DB_DeleteL3McMvpnTnlElb, l3McMvpnTnlElbEntry is null."), kpi(kDeleteFailed),
                         returns(1)},
        .createFailed = {logCode("MCAST6_DB_DeleteL3McMvpnTnlElb, create db object failed, ret:%u."),
                         kpi(kDeleteFailed), engineCode},
        .removed      = {released, kpi(kDeleted), returns(0)},
        .code13044    = {released, record(Error::code13044), kpi(kDeleted), returns(0)},
        .removeFailed = {released, record(Error::remove),
                         logCode("MCAST6_DB_DeleteL3McMvpnTnlElb, release db object fail, ret:%u."), kpi(kDeleteFailed),
                         engineCode},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("MCAST6_DB_GetL3McMvpnTnlElbEntry, db root iterator next fail, ret:%d."),
                          record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("MCAST6_DB_GetL3McMvpnTnlElbEntry, read obj fail, ret:%d."), record(Error::read),
                          returns(1)},
    };
    static constexpr IterOutcomes onIter{
        .failed = {kpi(kIterFailed), returnsNull},
    };
    static constexpr CountOutcomes onCount{
        .createFailed = {logCode("[GetL3McMvpnTnlElbCountByKey] create elb object fail, ret:%u."), returns(1)},
        .countFailed  = {logCode("[GetL3McMvpnTnlElbCountByKey] get elb num fail, ret:%u."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l3mc6_mvpn_tnl_elb;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x00010028 && Table::Primary::agrees(published::kPrimary));
static_assert(Table::BySrcPid::word == 0x0209000C && isPublished<Table::BySrcPid>(published::kIndexes));
static_assert(isPublishedWord(published::kIndexes, Table::kByVni) &&
              isPublishedWord(published::kIndexes, Table::kByTunnelVsg) &&
              isPublishedWord(published::kIndexes, Table::kByTunnelId) &&
              isPublishedWord(published::kIndexes, Table::kByVrf));

}  // namespace mcast6::l3mc6_mvpn_tnl_elb

using namespace mcast6;
using namespace mcast6::l3mc6_mvpn_tnl_elb;

int64_t MCAST6_DB_SetStructL3McMvpnTnlElbTimeStamp(int32_t withCreate, void* row) {
    return static_cast<int64_t>(stampRow<Table>(withCreate != 0, row));
}

void MCAST6_DB_SetL3McMvpnTnlElb(const L3McMvpnTnlElbEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetL3McMvpnTnlElb(const void* row, L3McMvpnTnlElbEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL3McMvpnTnlElbObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL3McMvpnTnlElbObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL3McMvpnTnlElb(L3McMvpnTnlElbEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL3McMvpnTnlElb(const L3McMvpnTnlElbEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion(const L3McMvpnTnlElbEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

uint32_t MCAST6_DB_DeleteL3McMvpnTnlElb(const L3McMvpnTnlElbEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_GetL3McMvpnTnlElbEntry(Mcast6DbRes* iterator, L3McMvpnTnlElbEntry* record) {
    return nextRecord<Table>(iterator, record);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    return createIter<Table, Table::onIter>(descriptor, key);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbAllIter(void) {
    return MCAST6_DB_CreateL3McMvpnTnlElbIter(nullptr, nullptr);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbIterByVniId(uint32_t vrId, uint32_t vrfId, uint32_t tunnelWord1) {
    const auto filter = keyOf<Table::kByVni>(vrId, vrfId, tunnelWord1);
    return MCAST6_DB_CreateL3McMvpnTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbIterBySrcPid(const L3McMvpnTnlElbEntry* record) {
    const auto filter = Table::BySrcPid::of(*record);
    return MCAST6_DB_CreateL3McMvpnTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlVsg(uint32_t vrId, uint32_t vrfId, uint32_t tunnelWord2,
                                                        uint32_t tunnelWord3) {
    const auto filter = keyOf<Table::kByTunnelVsg>(vrId, vrfId, tunnelWord2, tunnelWord3);
    return MCAST6_DB_CreateL3McMvpnTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlId(uint32_t vrId, uint32_t vrfId, uint32_t tunnelWord2,
                                                       uint8_t tunnelWord4) {
    const auto filter = keyOf<Table::kByTunnelId>(vrId, vrfId, tunnelWord2, tunnelWord4);
    return MCAST6_DB_CreateL3McMvpnTnlElbIter(&filter.descriptor, filter.bytes);
}

Mcast6DbRes* MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(uint32_t vrId, uint32_t vrfId) {
    const auto filter = keyOf<Table::kByVrf>(vrId, vrfId);
    return MCAST6_DB_CreateL3McMvpnTnlElbIter(&filter.descriptor, filter.bytes);
}

void MCAST6_DB_ReleaseL3McMvpnTnlElbIterator(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }

uint32_t MCAST6_DB_GetL3McMvpnTnlElbCountByKey(const Mcast6DbKeyDesc* descriptor, const void* key, uint32_t* count) {
    return countByKey<Table, Table::onCount>(descriptor, key, count);
}

uint32_t MCAST6_DB_GetL3McBdMvpnTnlElbCountByTnlVsg(const L3McMvpnVsgKey* key, uint32_t* count) {
    const auto filter = keyOf<Table::kByTunnelVsg>(key->word[0], key->word[1], key->word[2], key->word[3]);
    return MCAST6_DB_GetL3McMvpnTnlElbCountByKey(&filter.descriptor, filter.bytes, count);
}

uint32_t MCAST6_DB_GetL3McMvpnTnlElbCountFast(void) {
    return MCAST6_DB_GetCountFast(&Table::cache, &g_l3Mc6MvpnTnlElbStatObjCache);
}

uint32_t MCAST6_DB_GetL3McMvpnTnlElbSourcePid(void) { return g_l3Mc6MvpnTnlElbPid; }
