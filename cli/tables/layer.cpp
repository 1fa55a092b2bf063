#include "cli/tables/layer.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <utility>

#include "cli/output/output.h"
#include "cli/tables/table_commands.h"

namespace mcast6::ctl {
namespace {

using Smoothed = std::vector<std::pair<const StoredTable*, SmoothCounts>>;

void printSmoothed(const Smoothed& all, bool isDry) {
    TextTable text({"TABLE", "BEFORE", isDry ? "WOULD GO" : "DELETED", "AFTER"});
    for (const auto& [table, counts] : all) {
        if (counts.before == 0) continue;
        text.row(
            {table->name, std::to_string(counts.before), std::to_string(counts.deleted), std::to_string(counts.after)});
    }
    text.print();
    if (text.rows() == 0) printLine("no entries");
}

// Smooths those tables that have entries, or those that have none.
void smoothThose(const StoredTables& tables, bool areEntries, const Smoothing& run,
                 std::vector<std::optional<SmoothCounts>>& counts) {
    for (size_t place = 0; place < tables.size(); ++place) {
        const StoredTable& table = tables[place];
        if ((table.collect != nullptr) != areEntries || !table.smooth || !table.takesRouter(run.arguments)) continue;
        counts[place] = table.smooth(run);
    }
}

// Members go before their entries: a failure leaves none without an entry.
Smoothed smoothTables(const StoredTables& tables, Smoothing& run) {
    for (const StoredTable& table : tables) {
        if (table.collect && table.takesRouter(run.arguments)) table.collect(run);
    }
    std::vector<std::optional<SmoothCounts>> counts(tables.size());
    smoothThose(tables, false, run, counts);
    smoothThose(tables, true, run, counts);
    Smoothed all;
    for (size_t place = 0; place < tables.size(); ++place) {
        if (counts[place]) all.emplace_back(&tables[place], *counts[place]);
    }
    return all;
}

void smoothAll(const Tool& tool, const StoredTables& tables, const Arguments& arguments) {
    Smoothing run = smoothing(tool, arguments);
    const Smoothed all = smoothTables(tables, run);
    if (!tool.settings.json) return printSmoothed(all, run.isDry);
    JsonWriter json;
    json.beginObject().member("version", uint64_t{run.version}).beginArray("tables");
    for (const auto& [table, counts] : all) {
        json.beginObject().member("table", table->databaseName).member("before", counts.before);
        json.member("deleted", counts.deleted).member("after", counts.after).endObject();
    }
    json.endArray();
    if (run.isDry) json.member("dryRun", true);
    json.endObject();
    printLine(json.take());
}

void countAll(const Tool& tool, const StoredTables& tables, const Arguments& arguments) {
    TextTable text({"TABLE", "ENTRIES"});
    JsonWriter json;
    json.beginObject().beginArray("tables");
    for (const StoredTable& table : tables) {
        if (!table.takesRouter(arguments)) continue;
        const uint64_t count = table.countPicked(tool, arguments);
        text.row({table.name, std::to_string(count)});
        json.beginObject().member("table", table.databaseName).member("count", count).endObject();
    }
    json.endArray().endObject();
    if (tool.settings.json) return printLine(json.take());
    text.print();
}

// Sums what 'each' gives for the tables of members of the entries of one kind.
template <class Each>
uint64_t sumOfMembers(Layer layer, EntryKind kind, Each each) {
    uint64_t sum = 0;
    for (const StoredTable& table : tablesOf(layer)) {
        if (table.isMember && table.entry == kind && table.deleteMembers) sum += each(table);
    }
    return sum;
}

}  // namespace

bool Smoothing::isStale(EntryKind kind, const EntryId& id) const {
    const auto found = stale.find(kind);
    return found != stale.end() && found->second.contains(id);
}

Smoothing smoothing(const Tool& tool, const Arguments& arguments) {
    return {tool, arguments, arguments.number("version", 0), arguments.has("dry-run")};
}

const StoredTables& tablesOf(Layer layer) { return layer == Layer::kLayer2 ? l2Tables() : l3Tables(); }

uint64_t smoothMembers(Layer layer, EntryKind kind, const Smoothing& smoothing) {
    const auto stale = smoothing.stale.find(kind);
    if (stale == smoothing.stale.end() || stale->second.empty()) return 0;
    return sumOfMembers(layer, kind, [&](const StoredTable& table) { return table.smoothMembers(smoothing); });
}

uint64_t deleteMembers(Layer layer, EntryKind kind, const EntryId& id) {
    return sumOfMembers(layer, kind, [&](const StoredTable& table) { return table.deleteMembers(id); });
}

std::string membersText(uint64_t members, const char* whose) {
    return members == 0 ? "" : fmt::format(" and {} {}", whose, counted(members, "member"));
}

OptionSpec versionOption() { return required(valueOption("version", "N", "Delete what has a smooth version below N")); }

OptionSpec dryRunOption() { return flagOption("dry-run", "Tell what would be deleted, and delete nothing"); }

OptionSpec keepMembersOption() { return flagOption("keep-members", "Leave the members of the entry in their tables"); }

void addLayer(Commands& commands, Layer layer, const char* name, const char* title,
              const std::vector<OptionSpec>& filters) {
    for (const StoredTable& table : tablesOf(layer)) {
        if (table.addCommands) table.addCommands(commands);
    }
    commands.push_back(
        {"count", name, fmt::format("Count the entries of each {} table", title), filters,
         [layer](Tool& tool, const Arguments& arguments) { countAll(tool, tablesOf(layer), arguments); }});
    commands.push_back(
        {"smooth", name, fmt::format("Delete the entries of all {} tables that an import did not re-stamp", title),
         joined({versionOption(), dryRunOption()}, filters),
         [layer](Tool& tool, const Arguments& arguments) { smoothAll(tool, tablesOf(layer), arguments); }});
}

}  // namespace mcast6::ctl
