// How the tool uses those words of the switch tables whose meaning is the host's.
#pragma once

#include <cstdint>

#include "mcast6_db/l2mc6_global_enable.h"
#include "mcast6_db/l2mc6_vlan_enable.h"
#include "mcast6_db/l2mc6_vlan_port.h"

namespace mcast6::ctl {

// Of l2mc6_vlan_enable, which has no smooth version of its own: the fifth word lies where the switch of a bridge domain has
// its smooth version.
constexpr uint32_t L2VlanEnableEntry::*kVlanMldVersion = &L2VlanEnableEntry::cfgWord3;
constexpr uint32_t L2VlanEnableEntry::*kVlanQuerier = &L2VlanEnableEntry::cfgWord4;
constexpr uint32_t L2VlanEnableEntry::*kVlanSmoothVersion = &L2VlanEnableEntry::cfgWord5;

// Of portAttr in l2mc6_vlan_port.
enum VlanPortFlags : uint32_t {
    kUntaggedPort = 1,  // datagrams of the VLAN leave the port untagged
    kPvidPort = 2,      // untagged datagrams that enter the port belong to the VLAN
};

}  // namespace mcast6::ctl
