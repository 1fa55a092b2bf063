// What the layer-2 tables' words mean whose meaning is the host's. Displays read them as imports write them.
#pragma once

#include <cstdint>

#include "mcast6_db/l2mc6_vlan_enable.h"

namespace mcast6::kernel {

// Of pathFlags of a member.
enum MemberFlags : uint32_t {
    kPermanent = 1,     // static, or learned otherwise
    kBlocked = 2,       // the source is not forwarded to the port
    kStarExclude = 4,   // added because another port of the group names the source
    kIncludeMode = 8,   // filter mode include
    kExcludeMode = 16,  // filter mode exclude; neither: MLD version 1
    kFastLeave = 32,    // the port leaves without a last query
    kOffload = 64,      // in switching hardware
};

// Of l2mc6_vlan_enable, which has no smooth version of its own: the fifth word lies where the switch of a bridge domain
// has its smooth version.
inline constexpr uint32_t L2VlanEnableEntry::*kVlanMldVersion = &L2VlanEnableEntry::cfgWord3;
inline constexpr uint32_t L2VlanEnableEntry::*kVlanQuerier = &L2VlanEnableEntry::cfgWord4;
inline constexpr uint32_t L2VlanEnableEntry::*kVlanSmoothVersion = &L2VlanEnableEntry::cfgWord5;

// Of portAttr in l2mc6_vlan_port.
enum VlanPortFlags : uint32_t {
    kUntaggedPort = 1,  // datagrams of the VLAN leave the port untagged
    kPvidPort = 2,      // untagged datagrams that enter the port belong to the VLAN
};

}  // namespace mcast6::kernel
