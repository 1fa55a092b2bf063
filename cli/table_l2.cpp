#include "cli/table_l2.h"

#include <fmt/format.h>

#include "cli/output.h"

namespace mcast6::ctl {
namespace {

struct FlagName {
    uint32_t flag;
    const char* name;
};
constexpr FlagName kFlagNames[] = {
    {kPermanent, "permanent"},      {kIncludeMode, "include"},  {kExcludeMode, "exclude"}, {kBlocked, "blocked"},
    {kStarExclude, "star-exclude"}, {kFastLeave, "fast-leave"}, {kOffload, "offload"},
};

void printSmoothed(const std::vector<std::pair<const L2Table*, SmoothCounts>>& all) {
    TextTable text({"TABLE", "BEFORE", "DELETED", "AFTER"});
    for (const auto& [table, counts] : all) {
        if (counts.before == 0) continue;
        text.row(
            {table->name, std::to_string(counts.before), std::to_string(counts.deleted), std::to_string(counts.after)});
    }
    text.print();
    if (text.rows() == 0) printLine("no entries");
}

void smoothAll(Tool& tool, const Arguments& arguments) {
    const uint32_t version = arguments.number("version", 0);
    std::vector<std::pair<const L2Table*, SmoothCounts>> all;
    for (const L2Table& table : l2Tables()) all.emplace_back(&table, table.smooth(version));
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

void countAll(Tool& tool, const Arguments&) {
    TextTable text({"TABLE", "ENTRIES"});
    JsonWriter json;
    json.beginObject().beginArray("tables");
    for (const L2Table& table : l2Tables()) {
        const uint64_t count = table.count();
        text.row({table.name, std::to_string(count)});
        json.beginObject().member("table", table.databaseName).member("count", count).endObject();
    }
    json.endArray().endObject();
    if (tool.settings.json) return printLine(json.take());
    text.print();
}

}  // namespace

std::string memberFlagsText(uint32_t flags) {
    std::string text;
    const auto add = [&](const std::string& word) { text += (text.empty() ? "" : " ") + word; };
    for (const FlagName& known : kFlagNames) {
        if ((flags & known.flag) == 0) continue;
        add(known.name);
        flags &= ~known.flag;
    }
    if (flags != 0) add(fmt::format("0x{:X}", flags));
    return text.empty() ? "-" : text;
}

const L2Tables& l2Tables() {
    static const L2Tables kTables = [] {
        L2Tables tables;
        for (const L2Tables& family :
             {l2MfibTables(), l2EgressTables(), l2RouteTables(), l2SwitchTables(), l2SubscriptionTables()}) {
            tables.insert(tables.end(), family.begin(), family.end());
        }
        tables.push_back(bdEnableTable());
        return tables;
    }();
    return kTables;
}

void addL2Tables(Commands& commands) {
    addL2Mfib(commands);
    for (const L2Table& table : l2Tables()) {
        if (table.addCommands) table.addCommands(commands);
    }
    commands.push_back({"count", "l2", "Count the entries of each layer-2 table", {}, countAll});
    commands.push_back({"smooth",
                        "l2",
                        "Delete the entries of all layer-2 tables that an import did not re-stamp",
                        {required(valueOption("version", "N", "Delete what has a smooth version below N"))},
                        smoothAll});
}

}  // namespace mcast6::ctl
