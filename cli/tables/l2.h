// What the tool's descriptions of the layer-2 tables share, and the list of them.
//
// Linux numbers VLANs for each bridge, the tables for each virtual router. The tool therefore takes a bridge as bridge
// domain of VR 0, and as the VR of its VLANs; both numbers are the bridge's interface index. docs/bridge-import.md tells more.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/options/command.h"
#include "cli/tables/layer.h"
#include "cli/tables/members.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"
#include "mcast6_db/l2_egress.h"

namespace mcast6::ctl {

// What the tool keeps in pathFlags of a member.
enum MemberFlags : uint32_t {
    kPermanent = 1,     // static, or learned otherwise
    kBlocked = 2,       // the source is not forwarded to the port
    kStarExclude = 4,   // added because another port of the group names the source
    kIncludeMode = 8,   // filter mode include
    kExcludeMode = 16,  // filter mode exclude; neither: MLD version 1
    kFastLeave = 32,    // the port leaves without a last query
    kOffload = 64,      // in switching hardware
};

// "permanent exclude", "-"; other bits as 0xN.
std::string memberFlagsText(uint32_t flags);

// Each stands in the file of its family; bd-enable adds its commands itself.
StoredTables l2MfibTables();
StoredTables l2EgressTables();
StoredTables l2RouteTables();
StoredTables l2SwitchTables();
StoredTables l2SubscriptionTables();
StoredTable bdEnableTable();

// The tables of members: of entries of bridge domains, and of entries of VLANs.
using EgressTables = std::vector<const Table<L2Elb6Entry>*>;
const EgressTables& bridgeDomainMembers();
const EgressTables& vlanMembers();

// How a member of 'table' goes out: "untagged", "tag 10", "VNI 5010 to 2001:db8::1".
std::string memberWay(const Table<L2Elb6Entry>& table, const L2Elb6Entry& member);

// show and count of l2-mfib, which is both tables of forwarding entries.
void addL2Mfib(Commands& commands);

}  // namespace mcast6::ctl
