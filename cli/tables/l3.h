// What the tool's descriptions of the layer-3 tables share. All but the global configuration hold forwarding entries or members
// of them: a record begins with VR, VRF, group and source.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "cli/options/command.h"
#include "cli/tables/layer.h"
#include "cli/tables/members.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_register_elb.h"

namespace mcast6::ctl {

template <class Item>
std::vector<Item> joined(std::vector<Item> items, const std::vector<Item>& further) {
    items.insert(items.end(), further.begin(), further.end());
    return items;
}

// The columns and filters that name an entry, and those of its members' table after them.
template <class Record>
std::vector<Column<Record>> entryColumns(const std::vector<Column<Record>>& further) {
    return joined(
        {column("VR", "vrId", &Record::vrId), column("VRF", "vrfId", &Record::vrfId),
         column("SOURCE", "sourceAddr", &Record::sourceAddr), column("GROUP", "groupAddr", &Record::groupAddr)},
        further);
}

template <class Record>
std::vector<Filter<Record>> entryFilters(const std::vector<Filter<Record>>& further) {
    return joined({numberFilter("vr", "Virtual router", &Record::vrId),
                   routingTableFilter("vrf", "VRF, the routing table's number, main or default (in VR 0 without --vr)",
                                      &Record::vrfId, "vr"),
                   addressFilter("group", "Group; any or :: for the entries of all groups", &Record::groupAddr),
                   addressFilter("source", "Source; any or :: for the entries of any source", &Record::sourceAddr)},
                  further);
}

// The filters that name an entry, and further ones.
inline std::vector<std::string> ofEntry(const std::vector<std::string>& further = {}) {
    return joined({"vr", "vrf", "group", "source"}, further);
}

// Puts the key of an entry into another record that begins with it.
template <class Entry, class Record>
void nameEntry(const Entry& entry, Record& record) {
    record.vrId = entry.vrId;
    record.vrfId = entry.vrfId;
    record.groupAddr = entry.groupAddr;
    record.sourceAddr = entry.sourceAddr;
}

template <class Record, class Entry>
Record keyOf(const Entry& entry) {
    Record record{};
    nameEntry(entry, record);
    return record;
}

// Whether l3-mfib has the entry of this key. Throws Failure.
bool hasForwardingEntry(L3Mc6MfibEntry key);

// A table whose records have no smooth version: it is smoothed by deleting the members of entries that l3-mfib does not have.
template <class Record>
StoredTable tableOfMembers(const Table<Record>& table) {
    StoredTable stored = storedTable(table);
    if (table.remove == nullptr) return stored;
    stored.smooth = [&table](uint32_t) {
        return smoothStale(table, everything(table),
                           [](const Record& record) { return !hasForwardingEntry(keyOf<L3Mc6MfibEntry>(record)); });
    };
    return stored;
}

// Each stands in the file of its family; l3-mfib adds its commands itself.
StoredTable l3MfibTable();
StoredTable glbcfgTable();
StoredTables l3InterfaceTables();
StoredTables l3BridgeDomainTables();
StoredTables mvpnTables();

// For the import, which removes members there that a route does not have any more.
const Table<L3Mc6RegOifEntry>& registerElbTable();
const Table<L3Mc6ElbEntry>& l3ElbTable();
const Table<L3Mc6ElbEntryExt>& l3VlanElbTable();

// The members of forwarding entries, in the tables of a family, for one display.
using L3Members = std::vector<MemberTable<L3Mc6MfibEntry>>;
void addInterfaceMembers(const Tool& tool, L3Members& members);
void addBridgeDomainMembers(const Tool& tool, L3Members& members);
void addMvpnMembers(const Tool& tool, L3Members& members);

void addL3Mfib(Commands& commands);

}  // namespace mcast6::ctl
