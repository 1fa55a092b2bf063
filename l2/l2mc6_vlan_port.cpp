// l2mc6_vlan_port: the ports of VLANs.
// The older convention without KPIs: failures return 1. The write refuses 13044; the others accept it, and only the
// smooth-version update records it. That update leaves the smooth time unchanged, and has one message for two failures.
#include "mcast6_db/l2mc6_vlan_port.h"

#include "frame/agreement.h"
#include "frame/operations.h"
#include "mcast6_platform/tables/l2mc6_vlan_port.h"

namespace mcast6::l2mc6_vlan_port {

using E = VlanPortEntry;

constexpr Counter kCreated{21, "objects created"};
constexpr Counter kReleased{22, "objects released"};

// clang-format off
struct Table {
    using Record = E;
    static constexpr uint32_t number = 9;
    static constexpr uint32_t logId  = kLogLayer2Egress;
    static constexpr Counter counters[]{kCreated, kReleased};

    static constexpr Mcast6DbIterFuncs objects{MCAST6_DB_CreateVlanPortObject, MCAST6_DB_ReleaseVlanPortObject};
    static constexpr Accessors accessors{db_create_l2mc6_vlan_port_obj, db_release_l2mc6_vlan_port_object,
                                         db_set_l2mc6_vlan_port_all_fields};
    static constexpr auto set = MCAST6_DB_SetVlanPortItem;
    static constexpr auto get = MCAST6_DB_GetVlanPortItem;

    using Row = mcast6::Row<48,
        Copy      < 0, &E::keyId1>,
        Resized   < 4, uint16_t, &E::vlanId>,
        Copy      < 6, &E::keyId3>,
        Copy      < 8, &E::keyId4>,
        Copy      <12, &E::portAttr>,
        Copy      <16, &E::cfgWord1>,
        Copy      <20, &E::smoothVersion>,
        Copy      <24, &E::serviceStatus>,
        Copy      <28, &E::errCode>,
        KeptOrNow <32, &E::timeStampCreate>,
        Now       <40, &E::timeStampSmooth>>;
    using OnGet = mcast6::OnGet<GetWrites<&E::spare1, 0>, GetWrites<&E::spare2, 0>>;  // spare3 is not written

    using Primary = PrimaryKey<Row, &E::keyId1, &E::vlanId, &E::keyId3, &E::keyId4>;

    using UpdateSetters = FieldSetters<
        Sets    <db_set_l2mc6_vlan_port_smoothVersion, &E::smoothVersion>,
        Sets    <db_set_l2mc6_vlan_port_serviceStatus, &E::serviceStatus>,
        Sets    <db_set_l2mc6_vlan_port_errCode, &E::errCode>,
        SetsNow <db_set_l2mc6_vlan_port_timeStampSmooth>>;
    using SmoothSetters = FieldSetters<
        Sets    <db_set_l2mc6_vlan_port_smoothVersion, &E::smoothVersion>>;  // no time stamp

    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {logCode("[MCAST6 DB] vlan port create object fail, ret:%u"), returns(1)},
    };
    static constexpr ReadOutcomes onRead{
        .nullRecord   = {log("[MCAST6 DB] read vlan port fail, portEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] read vlan port fail, create object fail."), returns(1)},
        .found        = {released, returns(0)},
        .absent       = {released, returns(60)},
        .readFailed   = {released, logCode("[MCAST6 DB] read vlan port object fail, ret:%u."), returns(1)},
    };
    static constexpr WriteOutcomes onWrite{
        .nullRecord   = {log("[MCAST6 DB] write vlan port fail, portEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] write vlan port fail, create object fail."), returns(1)},
        .setFailed    = {released, returns(1)},
        .written      = {released, returns(0)},
        .code13044    = {released, logCode("[MCAST6 DB] write object fail, ret:%u."), returns(1)},  // refused
        .writeFailed  = {released, logCode("[MCAST6 DB] write object fail, ret:%u."), returns(1)},
    };
    static constexpr UpdateOutcomes onUpdate{
        .nullRecord   = {log("[MCAST6 DB] update vlan port fail, portEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] update vlan port fail, create object fail."), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] update vlan port fail, set update item fail, ret:%u."), released,
                         returns(1)},
        .updated      = {released, returns(0)},
        .code13044    = {released, returns(0)},
        .updateFailed = {released, logCode("[MCAST6 DB] update object fail, ret:%u."), record(Error::update),
                         returns(1)},
    };
    static constexpr UpdateOutcomes onSmooth{
        .nullRecord   = {log("[MCAST6 DB] update db vlan port object failed, param is null."), returns(1)},
        .createFailed = {log("[MCAST6 DB] update vlan port failed, create db object failed."), returns(1)},
        .setFailed    = {logCode("[MCAST6 DB] update vlan port failed, create db object failed. ret:%u."), released,
                         returns(1)},
        .updated      = {released, returns(0)},
        .code13044    = {released, record(Error::code13044), returns(0)},
        // the same text
        .updateFailed = {released, logCode("[MCAST6 DB] update vlan port failed, create db object failed. ret:%u."),
                         record(Error::update), returns(1)},
    };
    static constexpr RemoveOutcomes onRemove{
        .nullRecord   = {log("[MCAST6 DB] remove vlan port fail, portEntry is null"), returns(1)},
        .createFailed = {log("[MCAST6 DB] remove vlan port fail, create object fail."), returns(1)},
        .removed      = {released, returns(0)},
        .code13044    = {released, returns(0)},
        .removeFailed = {released, logCode("[MCAST6 DB] remove object fail, ret:%u."), returns(1)},
    };
    static constexpr BuildOutcomes onIter{
        .createFailed     = {log("[MCAST6 DB] create l2mc6 vlan port iter failed, create obj failed."), returnsNull},
        .rootIterFailed   = {
            logCode("[MCAST6 DB] create l2mc vlan port iter failed, create root iter failed. ret:%d"),
            record(Error::rootIter), released, returnsNull},
        .propertyFailed   = {
            released,
            logCode(
                "[MCAST6 DB] create l2mc vlan port iter failed, set l2mc vlan port root iterator property fail, ret:%d."),
            returnsNull},
        .allocationFailed = {released, log("[MCAST6 DB] create l2mc vlan port iter failed, malloc failed."),
                             record(Error::iterBuild), returnsNull},
    };
    static constexpr EntryOutcomes onEntry{
        .nullParameter = {log("[MCAST6 DB] get vlan port fail, portEntry is null"), returns(1)},
        .ended         = {returns(60)},
        // row 4, not 9
        .nextFailed    = {logCode("[MCAST6 DB] get vlan port fail, get next object entry error. ret:%d"),
                          record(Error::next, 4), returns(1)},
        .entry         = {returns(0)},
        .vanished      = {returns(60)},
        .readFailed    = {logCode("[MCAST6 DB] get vlan port fail, db_read_obj_with_buf fail, ret:%d."), returns(1)},
    };
};
// clang-format on

namespace published = layout::l2mc6_vlan_port;
static_assert(agrees<Table::Row>(published::kRecordSize, published::kFields));
static_assert(Table::Primary::word == 0x0001000C && Table::Primary::agrees(published::kPrimary));

}  // namespace mcast6::l2mc6_vlan_port

using namespace mcast6;
using namespace mcast6::l2mc6_vlan_port;

void MCAST6_DB_SetVlanPortKey(Mcast6DbKeyDesc* descriptor, void* key, const VlanPortEntry* record) {
    putPrimaryKey<Table>(&descriptor->keyWord, key, record);
}

void MCAST6_DB_SetVlanPortItem(const VlanPortEntry* record, void* row) { setRow<Table>(record, row); }

void MCAST6_DB_GetVlanPortItem(const void* row, VlanPortEntry* record) { getRecord<Table>(row, record); }

uint32_t MCAST6_DB_SetVlanPortTimeStamp(Mcast6DbHandle object, uint32_t flag) {
    return setStamps(db_set_l2mc6_vlan_port_timeStampSmooth, db_set_l2mc6_vlan_port_timeStampCreate, object, flag != 0);
}

uint32_t MCAST6_DB_CreateVlanPortObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return createObject<Table>(objType, connType, object);
}

void MCAST6_DB_ReleaseVlanPortObject(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }

uint32_t MCAST6_DB_ReadVlanPort(VlanPortEntry* record) { return readRecord<Table>(record); }

uint32_t MCAST6_DB_WriteVlanPort(const VlanPortEntry* record) { return writeRecord<Table>(record); }

uint32_t MCAST6_DB_RemoveVlanPort(const VlanPortEntry* record) { return removeRecord<Table>(record); }

uint32_t MCAST6_DB_UpdateVlanPort(const VlanPortEntry* record) {
    return updateRecord<Table, Table::onUpdate, Table::UpdateSetters>(record);
}

uint32_t MCAST6_DB_UpdateVlanPortSmoothVersion(const VlanPortEntry* record) {
    return updateRecord<Table, Table::onSmooth, Table::SmoothSetters>(record);
}

Mcast6DbRes* MCAST6_DB_CreateVlanPortIter(void) { return buildIter<Table, Table::onIter>(nullptr, nullptr); }

uint32_t MCAST6_DB_GetVlanPortEntry(Mcast6DbRes* iterator, VlanPortEntry* record) {
    return nextRecord<Table>(iterator, record);
}

void MCAST6_DB_ReleaseVlanPortIter(Mcast6DbRes* iterator) { releaseIter<Table>(iterator); }
