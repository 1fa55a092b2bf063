#include "cli/commands/import_tables.h"

#include <algorithm>

#include "cli/output/output.h"

namespace mcast6::ctl {

TableChanges::TableChanges(const StoredTables& tables) : tables_(tables) {
    for (const StoredTable& table : tables_) before_.push_back(table.count());
}

std::vector<TableChanges::Change> TableChanges::changes() const {
    std::vector<Change> all;
    for (size_t position = 0; position < tables_.size(); ++position) {
        const StoredTable& table = tables_[position];
        const auto found = of_.find(table.databaseName);
        all.push_back({&table, before_[position], found == of_.end() ? Counts{} : found->second, table.count()});
    }
    return all;
}

void TableChanges::print() const {
    TextTable text({"TABLE", "BEFORE", "NEW", "REPLACED", "RE-STAMPED", "REMOVED", "AFTER"});
    for (const Change& change : changes()) {
        const FateCounts& fates = change.counts.fates;
        if (change.before == 0 && fates.sum() == 0) continue;
        text.row({change.table->name, std::to_string(change.before), std::to_string(fates[Fate::kNew]),
                  std::to_string(fates[Fate::kReplaced]), std::to_string(fates[Fate::kRestamped]),
                  std::to_string(change.counts.removed), std::to_string(change.after)});
    }
    text.print();
}

void TableChanges::writeJson(JsonWriter& json) const {
    json.beginArray("tables");
    for (const Change& change : changes()) {
        const FateCounts& fates = change.counts.fates;
        json.beginObject().member("table", change.table->databaseName).member("before", change.before);
        json.member("new", fates[Fate::kNew]).member("replaced", fates[Fate::kReplaced]);
        json.member("restamped", fates[Fate::kRestamped]).member("removed", change.counts.removed);
        json.member("after", change.after).endObject();
    }
    json.endArray();
}

}  // namespace mcast6::ctl
