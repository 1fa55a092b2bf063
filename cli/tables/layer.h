// The tables of a layer, without their records' types: what counts and smooths them together.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cli/options/command.h"
#include "cli/output/link_names.h"
#include "cli/tables/entry_id.h"

namespace mcast6::ctl {

struct SmoothCounts {
    uint64_t before;
    uint64_t deleted;
    uint64_t after;
};

// One smoothing, of one table or of several.
struct Smoothing {
    const Tool& tool;
    const Arguments& arguments;  // the version, and filters
    uint32_t version;
    bool isDry;                                // nothing is deleted
    std::map<EntryKind, EntryIds> stale = {};  // the entries that go, and their members with them

    bool isStale(EntryKind kind, const EntryId& id) const;
};

// 'arguments' as given to a smooth command.
Smoothing smoothing(const Tool& tool, const Arguments& arguments);

struct StoredTable {
    const char* name;
    const char* databaseName;
    EntryKind entry;
    bool isMember;
    std::function<uint64_t()> count;  // of the whole table
    // Whether its VR can be the one of --vr: a name is that of a bridge, which some tables have in place of a VR.
    std::function<bool(const Arguments&)> takesRouter;
    std::function<uint64_t(const Tool&, const Arguments&)> countPicked;
    // Adds the stale entries to the smoothing; empty: there are no entries in it.
    std::function<void(Smoothing&)> collect;
    // Deletes what is stale. Empty: nothing in it can be smoothed.
    std::function<SmoothCounts(const Smoothing&)> smooth;
    // Deletes the members of the entries that go, and returns how many; and those of one entry. Empty: there are none,
    // or they cannot be deleted.
    std::function<uint64_t(const Smoothing&)> smoothMembers;
    std::function<uint64_t(const EntryId&)> deleteMembers;
    std::function<void(Commands&)> addCommands;
    std::function<std::vector<std::string>()> wiringFaults;
};
using StoredTables = std::vector<StoredTable>;

// All tables of a layer, in the order in which they are counted and smoothed.
const StoredTables& l2Tables();
const StoredTables& l3Tables();
const StoredTables& tablesOf(Layer layer);

// Deletes the members of the entries of one kind that go, and returns how many; and those of one entry.
uint64_t smoothMembers(Layer layer, EntryKind kind, const Smoothing& smoothing);
uint64_t deleteMembers(Layer layer, EntryKind kind, const EntryId& id);

OptionSpec versionOption();
OptionSpec dryRunOption();

// The commands of each table, and count and smooth of all of them. 'name' is typed ("l2"), 'title' stands in help
// texts, 'filters' are options that all tables have as filters.
void addLayer(Commands& commands, Layer layer, const char* name, const char* title,
              const std::vector<OptionSpec>& filters);

}  // namespace mcast6::ctl
