#include "cli/tables/layer.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "cli/output/output.h"

namespace mcast6::ctl {
namespace {

using Smoothed = std::vector<std::pair<const StoredTable*, SmoothCounts>>;

void printSmoothed(const Smoothed& all) {
    TextTable text({"TABLE", "BEFORE", "DELETED", "AFTER"});
    for (const auto& [table, counts] : all) {
        if (counts.before == 0) continue;
        text.row(
            {table->name, std::to_string(counts.before), std::to_string(counts.deleted), std::to_string(counts.after)});
    }
    text.print();
    if (text.rows() == 0) printLine("no entries");
}

void smoothAll(const Tool& tool, const StoredTables& tables, const Arguments& arguments) {
    const uint32_t version = arguments.number("version", 0);
    Smoothed all;
    for (const StoredTable& table : tables) {
        if (table.smooth) all.emplace_back(&table, table.smooth(version));
    }
    if (!tool.settings.json) return printSmoothed(all);
    JsonWriter json;
    json.beginObject().member("version", uint64_t{version}).beginArray("tables");
    for (const auto& [table, counts] : all) {
        json.beginObject().member("table", table->databaseName).member("before", counts.before);
        json.member("deleted", counts.deleted).member("after", counts.after).endObject();
    }
    json.endArray().endObject();
    printLine(json.take());
}

void countAll(const Tool& tool, const StoredTables& tables) {
    TextTable text({"TABLE", "ENTRIES"});
    JsonWriter json;
    json.beginObject().beginArray("tables");
    for (const StoredTable& table : tables) {
        const uint64_t count = table.count();
        text.row({table.name, std::to_string(count)});
        json.beginObject().member("table", table.databaseName).member("count", count).endObject();
    }
    json.endArray().endObject();
    if (tool.settings.json) return printLine(json.take());
    text.print();
}

}  // namespace

void addLayer(Commands& commands, const char* name, const char* title, const StoredTables& (*tables)()) {
    for (const StoredTable& table : tables()) {
        if (table.addCommands) table.addCommands(commands);
    }
    commands.push_back({"count",
                        name,
                        fmt::format("Count the entries of each {} table", title),
                        {},
                        [tables](Tool& tool, const Arguments&) { countAll(tool, tables()); }});
    commands.push_back({"smooth",
                        name,
                        fmt::format("Delete the entries of all {} tables that an import did not re-stamp", title),
                        {required(valueOption("version", "N", "Delete what has a smooth version below N"))},
                        [tables](Tool& tool, const Arguments& arguments) { smoothAll(tool, tables(), arguments); }});
}

}  // namespace mcast6::ctl
