#include "platform/schema/catalog.h"

#include <iterator>

#include "platform/schema/global_version.h"
#include "platform/schema/l2mc6_bd_enable.h"
#include "platform/schema/l2mc6_bd_flowstat_sub.h"
#include "platform/schema/l2mc6_bd_mfib.h"
#include "platform/schema/l2mc6_bd_rt_vxlan_elb.h"
#include "platform/schema/l2mc6_bd_tag_elb.h"
#include "platform/schema/l2mc6_bd_tag_rt.h"
#include "platform/schema/l2mc6_bd_untag_elb.h"
#include "platform/schema/l2mc6_bd_untag_rt.h"
#include "platform/schema/l2mc6_bd_vxlan_elb.h"
#include "platform/schema/l2mc6_bd_vxlan_sub_elb.h"
#include "platform/schema/l2mc6_elb.h"
#include "platform/schema/l2mc6_flowstat_sub.h"
#include "platform/schema/l2mc6_global_enable.h"
#include "platform/schema/l2mc6_vlan_enable.h"
#include "platform/schema/l2mc6_vlan_mfib.h"
#include "platform/schema/l2mc6_vlan_port.h"
#include "platform/schema/l3mc6_bd_tag_elb.h"
#include "platform/schema/l3mc6_bd_tnl_elb.h"
#include "platform/schema/l3mc6_bd_untag_elb.h"
#include "platform/schema/l3mc6_elb.h"
#include "platform/schema/l3mc6_glbcfg.h"
#include "platform/schema/l3mc6_mfib.h"
#include "platform/schema/l3mc6_mvpn_tnl_elb.h"
#include "platform/schema/l3mc6_mvpn_tnl_subelb.h"
#include "platform/schema/l3mc6_register_elb.h"
#include "platform/schema/l3mc6_sub_elb.h"
#include "platform/schema/l3mc6_vlan_elb.h"
#include "platform/schema/link_name.h"

namespace mcast6::schema {

namespace {

constexpr Table kCatalog[] = {
    l2mc6_global_enable::kTable,
    l2mc6_bd_enable::kTable,
    l2mc6_vlan_enable::kTable,
    l2mc6_vlan_port::kTable,
    l2mc6_bd_flowstat_sub::kTable,
    l2mc6_flowstat_sub::kTable,
    l2mc6_bd_mfib::kTable,
    l2mc6_vlan_mfib::kTable,
    l2mc6_elb::kTable,
    l2mc6_bd_tag_elb::kTable,
    l2mc6_bd_untag_elb::kTable,
    l2mc6_bd_tag_rt::kTable,
    l2mc6_bd_untag_rt::kTable,
    l2mc6_bd_vxlan_elb::kTable,
    l2mc6_bd_vxlan_sub_elb::kTable,
    l2mc6_bd_rt_vxlan_elb::kTable,
    l3mc6_mfib::kTable,
    l3mc6_glbcfg::kTable,
    l3mc6_register_elb::kTable,
    l3mc6_elb::kTable,
    l3mc6_sub_elb::kTable,
    l3mc6_vlan_elb::kTable,
    l3mc6_bd_tag_elb::kTable,
    l3mc6_bd_untag_elb::kTable,
    l3mc6_bd_tnl_elb::kTable,
    l3mc6_mvpn_tnl_elb::kTable,
    l3mc6_mvpn_tnl_subelb::kTable,
    // The platform's own.
    global_version::kTable,
    link_name::kTable,
};
constexpr uint32_t kLibraryTables = static_cast<uint32_t>(std::size(kCatalog)) - 2;
static_assert(kCatalog[kLibraryTables].name == "global_version" && kCatalog[kLibraryTables + 1].name == "link_name");

}  // namespace

std::span<const Table> catalog() { return storeCatalog().first(kLibraryTables); }

std::span<const Table> storeCatalog() { return kCatalog; }

uint32_t globalVersionTable() { return kLibraryTables; }

uint32_t linkNameTable() { return kLibraryTables + 1; }

std::optional<uint32_t> tableNamed(std::string_view name) {
    const std::span<const Table> tables = catalog();
    for (uint32_t id = 0; id < tables.size(); ++id) {
        if (tables[id].name == name) return id;
    }
    return std::nullopt;
}

}  // namespace mcast6::schema
