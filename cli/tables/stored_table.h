// A table of a layer, made of its description.
#pragma once

#include <cstdint>
#include <vector>

#include "cli/tables/layer.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"
#include "cli/tables/wiring.h"
#include "kernel/text.h"

namespace mcast6::ctl {

// The query that finds the members of one entry; null: the table has none.
template <class Record>
const Query<Record>* membersQuery(const Table<Record>& table) {
    const auto found = std::find_if(table.queries.begin(), table.queries.end(),
                                    [](const Query<Record>& query) { return query.findsMembers; });
    return found == table.queries.end() ? nullptr : &*found;
}

// Deletes the members of one entry, and returns how many.
template <class Record>
uint64_t deleteMembersOf(const Table<Record>& table, const EntryId& entry) {
    constexpr uint32_t kBytes = 256;
    Selection<Record> members{table.blank, membersQuery(table)};
    table.entry.put(entry, members.wanted);
    uint64_t deleted = 0;
    for (uint32_t byte = 0; byte < (table.memberByte == nullptr ? 1 : kBytes); ++byte) {
        if (table.memberByte != nullptr) members.wanted.*table.memberByte = byte;
        deleted += deleteStale(table, members, [](const Record&) { return true; });
    }
    return deleted;
}

// The parts of a table that smooth and delete need, where its records have smooth versions or belong to entries.
template <class Record>
void addSmoothing(StoredTable& stored, const Table<Record>& table) {
    if (table.operations.remove == nullptr) return;
    if (table.entry.areEntries()) {
        stored.collect = [&table](Smoothing& run) { collectStale(table, select(run.tool, table, run.arguments), run); };
    }
    if (table.operations.smoothVersion != nullptr) {
        stored.smooth = [&table](const Smoothing& run) {
            const auto isStale = [&](const Record& record) {
                return isOlder(table, record, run) ||
                       (table.entry.isMember && run.isStale(table.entry.kind, table.entry.idOf(record)));
            };
            return smoothStale(table, select(run.tool, table, run.arguments), isStale, run.isDry);
        };
    }
    if (!table.entry.isMember) return;
    stored.smoothMembers = [&table](const Smoothing& run) {
        const auto isStale = [&](const Record& record) {
            return run.isStale(table.entry.kind, table.entry.idOf(record));
        };
        return deleteStale(table, everything(table), isStale, run.isDry);
    };
    stored.deleteMembers = [&table](const EntryId& entry) { return deleteMembersOf(table, entry); };
}

// 'table' lives as long as what is made of it.
template <class Record>
StoredTable storedTable(const Table<Record>& table) {
    StoredTable stored{};
    stored.name = table.name;
    stored.databaseName = table.operations.databaseName;
    stored.entry = table.entry.kind;
    stored.isMember = table.entry.isMember;
    stored.count = [&table] { return countRecords(table, everything(table)); };
    stored.takesRouter = [&table](const Arguments& arguments) {
        const std::string& name = table.vr->name();
        return !arguments.has(name) || table.vr->isInterface || parseNumber(arguments.text(name));
    };
    stored.countPicked = [&table](const Tool& tool, const Arguments& arguments) {
        return countPicked(tool, table, arguments);
    };
    stored.addCommands = [&table](Commands& commands) {
        addTableCommands(commands, table);
        addDelete(commands, table);
    };
    stored.wiringFaults = [&table] { return wiringFaults(table); };
    addSmoothing(stored, table);
    return stored;
}

}  // namespace mcast6::ctl
