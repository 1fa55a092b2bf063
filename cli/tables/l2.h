// What the tool's descriptions of the layer-2 tables share, and the list of them.
//
// Linux numbers VLANs for each bridge, the tables for each virtual router. The tool therefore takes a bridge as bridge
// domain of VR 0, and as the VR of its VLANs; both numbers are the bridge's interface index. docs/bridge-import.md
// tells more.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/options/command.h"
#include "cli/tables/layer.h"
#include "cli/tables/members.h"
#include "cli/tables/stored_table.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"
#include "kernel/apply/layer2_tables.h"
#include "kernel/apply/layer2_words.h"
#include "mcast6_db/l2_egress.h"

namespace mcast6::ctl {

// The VR of bridges, and of the names that their import brings.
constexpr uint32_t kBridgeRouter = 0;

using enum kernel::MemberFlags;

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
