// The tables of a layer, without their records' types: what counts and smooths them together.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "cli/options/command.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"

namespace mcast6::ctl {

struct StoredTable {
    const char* name;
    const char* databaseName;
    std::function<uint64_t()> count;
    std::function<SmoothCounts(uint32_t version)> smooth;  // empty: nothing in it can be smoothed
    std::function<void(Commands&)> addCommands;            // empty: the table's own file adds them
};
using StoredTables = std::vector<StoredTable>;

// All tables of a layer, in the order in which they are counted and smoothed.
const StoredTables& l2Tables();
const StoredTables& l3Tables();

// Every record of 'table'.
template <class Record>
Selection<Record> everything(const Table<Record>& table) {
    return {{}, &table.queries.back(), {}};
}

// 'table' lives as long as what is made of it.
template <class Record>
StoredTable storedTable(const Table<Record>& table) {
    StoredTable any{table.name,
                    table.databaseName,
                    [&table] { return countRecords(table, everything(table)); },
                    {},
                    [&table](Commands& commands) {
                        addTableCommands(commands, table);
                        addDelete(commands, table);
                    }};
    if (table.smoothVersion != nullptr) {
        any.smooth = [&table](uint32_t version) { return smoothRecords(table, everything(table), version); };
    }
    return any;
}

// The commands of each table, and count and smooth of all of them. 'name' is typed ("l2"), 'title' stands in help texts.
void addLayer(Commands& commands, const char* name, const char* title, const StoredTables& (*tables)());

}  // namespace mcast6::ctl
