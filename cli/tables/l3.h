// What the tool's descriptions of the layer-3 tables share. All but the global configuration hold forwarding entries or
// members of them: a record begins with VR, VRF, group and source.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "cli/options/command.h"
#include "cli/tables/layer.h"
#include "cli/tables/members.h"
#include "cli/tables/stored_table.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"
#include "kernel/apply/layer3_tables.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_register_elb.h"

namespace mcast6::ctl {

// The columns that name an entry, and those of its members' table after them.
template <class Record>
std::vector<Column<Record>> entryColumns(const std::vector<Column<Record>>& further) {
    return joined(
        {column("VR", "vrId", &Record::vrId), column("VRF", "vrfId", &Record::vrfId),
         column("SOURCE", "sourceAddr", &Record::sourceAddr), column("GROUP", "groupAddr", &Record::groupAddr)},
        further);
}

// The words of an entry in l3-mfib, and in a table of its members.
inline constexpr EntryWords<L3Mc6MfibEntry> kRouteWords{EntryKind::kRoute,          false,
                                                        &L3Mc6MfibEntry::vrId,      &L3Mc6MfibEntry::vrfId,
                                                        &L3Mc6MfibEntry::groupAddr, &L3Mc6MfibEntry::sourceAddr};

template <class Record>
EntryWords<Record> memberOfRoute() {
    return {EntryKind::kRoute, true, &Record::vrId, &Record::vrfId, &Record::groupAddr, &Record::sourceAddr};
}

template <class Record>
struct EntryFilters {
    Filter<Record> vr = numberFilter("vr", "Virtual router", &Record::vrId);
    Filter<Record> vrf = needing(
        &vr, routingTableFilter("vrf", "VRF, the routing table's number, main, default or local (in VR 0 without --vr)",
                                &Record::vrfId));
    Filter<Record> group = addressFilter("group", "Group; any or :: for the entries of all groups", &Record::groupAddr);
    Filter<Record> source =
        addressFilter("source", "Source; any or :: for the entries of any source", &Record::sourceAddr);

    EntryFilters() = default;
    EntryFilters(const EntryFilters&) = delete;
    EntryFilters& operator=(const EntryFilters&) = delete;

    // The four that name an entry, and further ones.
    Filters<Record> with(const Filters<Record>& further = {}) const {
        return joined({&vr, &vrf, &group, &source}, further);
    }
};

// One object for all tables of these records.
template <class Record>
const EntryFilters<Record>& entryFilters() {
    static const EntryFilters<Record> kFilters;
    return kFilters;
}

// Puts the key of an entry into another record that begins with it.
template <class Record, class Entry>
Record keyOf(const Entry& entry) {
    Record record{};
    record.vrId = entry.vrId;
    record.vrfId = entry.vrfId;
    record.groupAddr = entry.groupAddr;
    record.sourceAddr = entry.sourceAddr;
    return record;
}

// Whether l3-mfib has the entry of this key. Throws Failure.
bool hasForwardingEntry(L3Mc6MfibEntry key);

// A table whose records have no smooth version: it is smoothed by deleting the members of entries that l3-mfib does not
// have.
template <class Record>
StoredTable tableOfMembers(const Table<Record>& table) {
    StoredTable stored = storedTable(table);
    if (table.operations.remove == nullptr) return stored;
    stored.smooth = [&table](const Smoothing& run) {
        const auto isStale = [&](const Record& record) {
            return run.isStale(table.entry.kind, table.entry.idOf(record)) ||
                   !hasForwardingEntry(keyOf<L3Mc6MfibEntry>(record));
        };
        return smoothStale(table, select(run.tool, table, run.arguments), isStale, run.isDry);
    };
    return stored;
}

// Each stands in the file of its family; l3-mfib adds its commands itself.
StoredTable l3MfibTable();
StoredTable glbcfgTable();
StoredTables l3InterfaceTables();
StoredTables l3BridgeDomainTables();
StoredTables mvpnTables();

// The members of forwarding entries, in the tables of a family, for one display.
using L3Members = std::vector<MemberTable<L3Mc6MfibEntry>>;
void addInterfaceMembers(const Tool& tool, L3Members& members);
void addBridgeDomainMembers(const Tool& tool, L3Members& members);
void addMvpnMembers(const Tool& tool, L3Members& members);

void addL3Mfib(Commands& commands);

}  // namespace mcast6::ctl
