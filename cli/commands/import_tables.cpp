#include "cli/commands/import_tables.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace mcast6::ctl {

TableReport::TableReport(const StoredTables& tables) : tables_(tables) {
    for (const StoredTable& table : tables_) before_.push_back(table.count());
}

std::vector<TableReport::Line> TableReport::lines(const kernel::TableChanges& changes) const {
    std::vector<Line> all;
    for (size_t position = 0; position < tables_.size(); ++position) {
        const StoredTable& table = tables_[position];
        Line line{&table, before_[position], {}, 0, table.count()};
        const std::string_view name = table.databaseName;
        const auto found = std::find_if(changes.begin(), changes.end(),
                                        [&](const auto& change) { return name == change.databaseName; });
        if (found != changes.end()) {
            line.fates = found->fates;
            line.removed = found->removed;
        }
        all.push_back(line);
    }
    return all;
}

void TableReport::print(const kernel::TableChanges& changes) const {
    TextTable text({"TABLE", "BEFORE", "NEW", "REPLACED", "RE-STAMPED", "REMOVED", "AFTER"});
    for (const Line& line : lines(changes)) {
        if (line.before == 0 && line.fates.sum() == 0) continue;
        text.row({line.table->name, std::to_string(line.before), std::to_string(line.fates[Fate::kNew]),
                  std::to_string(line.fates[Fate::kReplaced]), std::to_string(line.fates[Fate::kRestamped]),
                  std::to_string(line.removed), std::to_string(line.after)});
    }
    text.print();
}

void TableReport::writeJson(JsonWriter& json, const kernel::TableChanges& changes) const {
    json.beginArray("tables");
    for (const Line& line : lines(changes)) {
        json.beginObject().member("table", line.table->databaseName).member("before", line.before);
        json.member("new", line.fates[Fate::kNew]).member("replaced", line.fates[Fate::kReplaced]);
        json.member("restamped", line.fates[Fate::kRestamped]).member("removed", line.removed);
        json.member("after", line.after).endObject();
    }
    json.endArray();
}

}  // namespace mcast6::ctl
