// l2mc6_vlan_enable: the MLD switches of each VLAN.
// The older convention, as l2mc6_global_enable; here the write accepts 13044 and the removal refuses it. Entries of an
// iterator are converted differently from reads: spare1 becomes 0.
#include "mcast6_db/l2mc6_vlan_enable.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_vlan_enable.h"

namespace mcast6::l2mc6_vlan_enable {

using E = L2VlanEnableEntry;

constexpr Counter kCreated{43, "objects created"};
constexpr Counter kReleased{44, "objects released"};
constexpr Kpi kWritten{65, "writes"};
constexpr Kpi kWriteFailed{66, "writes failed"};
constexpr Kpi kDeleted{67, "deletes"};
constexpr Kpi kDeleteFailed{68, "deletes failed"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 14;
    static constexpr uint32_t logId  = kLogConfiguration;
    static constexpr Counter counters[]{kCreated, kReleased};
    static constexpr Kpi indicators[]{kWritten, kWriteFailed, kDeleted, kDeleteFailed};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateL2VlanEnableObject, MCAST6_DB_ReleaseL2VlanEnableObject};
    static constexpr Accessors accessors{db_create_l2mc6_vlan_enable_obj, db_release_l2mc6_vlan_enable_object,
                                         db_set_l2mc6_vlan_enable_all_fields};
    static constexpr auto set = MCAST6_DB_SetL2VlanEnableCfg;
    static constexpr auto get = MCAST6_DB_GetVlanEnableCfg;

    using Row = mcast6::Row<68,
        Copy      < 0, &E::keyId1>,
        Copy      < 4, &E::keyId2>,
        Resized   < 8, uint16_t, &E::vlanId>,
        Copy      <10, &E::vlanAttr>,
        Copy      <12, &E::cfgWord1>,
        Copy      <16, &E::cfgWord2>,
        Copy      <20, &E::cfgWord3>,
        Copy      <24, &E::cfgWord4>,
        Copy      <28, &E::cfgWord5>,
        Copy      <32, &E::serviceStatus>,
        Copy      <34, &E::errCode>,
        KeptOrNow <36, &E::timeStampCreate>,
        Now       <44, &E::timeStampSmooth>,
        Copy      <52, &E::l2mcEnable>,
        Copy      <56, &E::attrC>>;
    using OnGet = mcast6::OnGet<>;

    using Primary = PrimaryKey<Row, &E::keyId1, &E::keyId2, &E::vlanId>;

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] l2vlan enable create object failed. ret:%u"), returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB] read vlan enable cfg failed, para is NULL"), returns(1)},
        .createFailed = {log("[MCAST6 DB] read vlan enable cfg failed."), returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        // sic
        .readFailed   = {released, logCode("[MCAST6 DB] MCAST6_DB_Readl2mcEnableCfg read obj db failed. ret:%u"),
                         returns(1)},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB] write l2 vlan enable failed, para is NULL"), kpi(kWriteFailed), returns(1)},
        .createFailed = {kpi(kWriteFailed), returns(1)},
        .setFailed    = {released, kpi(kWriteFailed), returns(1)},
        .written      = {released, kpi(kWritten), returns(0)},
        .code13044    = {released, kpi(kWritten), returns(0)},
        .writeFailed  = {released, logCode("[MCAST6 DB] write l2 vlan enable failed, ret:%u"), kpi(kWriteFailed),
                         returns(1)},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB] delete l2 vlan enable cfg failed, para is NULL"), kpi(kDeleteFailed),
                         returns(1)},
        .createFailed = {log("[MCAST6 DB] delete l2 vlan enable cfg failed."), kpi(kDeleteFailed), returns(1)},
        .removed      = {released, kpi(kDeleted), returns(0)},
        // refused
        .code13044    = {released, kpi(kDeleteFailed),
                         logCode("[MCAST6 DB] delete l2 vlan enable fail,  Remove object failed. ret:%u"), returns(1)},
        // two blanks
        .removeFailed = {released, kpi(kDeleteFailed),
                         logCode("[MCAST6 DB] delete l2 vlan enable fail,  Remove object failed. ret:%u"), returns(1)},
    };
    static constexpr BuildOutcomes onIter{
        .createFailed     = {returnsNull},
        .rootIterFailed   = {released, returnsNull},
        .propertyFailed   = {released, logCode("[MCAST6 DB] set mldVlan root iterator property fail, ret:%d."),
                             returnsNull},
        .allocationFailed = {released, returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {returns(1)},
        .ended         = {returns(60)},
        .nextFailed    = {logCode("[MCAST6 DB] get mld vlan iterator error. ret:%d"), record(Error::next), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB] get mld vlan entry fail, ret:%d."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l2mc6_vlan_enable;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001000A && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_vlan_enable

using namespace mcast6;
using namespace mcast6::l2mc6_vlan_enable;

void MCAST6_DB_SetMldVlanKey(Mcast6DbKeyDesc* descriptor, void* key, const L2VlanEnableEntry* record) {
    putPrimaryKey<Table>(&descriptor->keyWord, key, record);
}

void MCAST6_DB_SetL2VlanEnableCfg(const L2VlanEnableEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetVlanEnableCfg(const void* row, L2VlanEnableEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_CreateL2VlanEnableObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseL2VlanEnableObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadL2VlanEnableCfg(L2VlanEnableEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteL2VlanEnableCfg(const L2VlanEnableEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_DelL2VlanEnableCfg(const L2VlanEnableEntry* record) { return removeRecord<Table>(record); }

Mcast6DbRes* MCAST6_DB_CreateMldVlanCfgIter(void) { return buildIter<Table, Table::onIter>(nullptr, nullptr); }

void MCAST6_GetMldVlanData(const void* row, L2VlanEnableEntry* record) {
    MCAST6_DB_GetVlanEnableCfg(row, record);
    record->spare1 = 0;
}

uint32_t MCAST6_DB_GetMldVlanEntry(Mcast6DbRes* iterator, L2VlanEnableEntry* record) {
    return nextRecord<Table, Table::onEntry, MCAST6_GetMldVlanData>(iterator, record);
}

void MCAST6_DB_ReleaseMldVlanIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
