// Displays of forwarding entries with their egress members under them, whatever tables hold the members.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/options/command.h"
#include "cli/output/output.h"
#include "cli/tables/stored_table.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"

namespace mcast6::ctl {

// Lines: an entry, and its members under it.
class EntryText {
public:
    // No titles of members: there are none in this display.
    EntryText(const std::vector<std::string>& entryTitles, const std::vector<std::string>& memberTitles);
    void entry(std::vector<std::string> cells);
    void member(const std::vector<std::string>& cells);
    void print() const;

private:
    size_t entryColumns_;
    size_t memberColumns_;
    TextTable lines_;
    uint64_t entries_ = 0;
    uint64_t members_ = 0;
};

// A table of members of entries of one kind, without the type of its record. Made for one display.
template <class Entry>
struct MemberTable {
    std::function<void(const Entry&, EntryText&)> addLines;
    std::function<void(const Entry&, JsonWriter&)> addObjects;
};

// Calls 'visit' with each member of 'entry'.
template <class Entry, class Record>
using MemberWalk = std::function<void(const Entry& entry, const std::function<void(const Record&)>& visit)>;

// The members that a query of 'table' finds, for entries of 'entries'.
template <class Entry, class Record>
MemberWalk<Entry, Record> membersByQuery(const EntryWords<Entry>& entries, const Table<Record>& table) {
    return [&entries, &table](const Entry& entry, const std::function<void(const Record&)>& visit) {
        Selection<Record> selection{table.blank, membersQuery(table)};
        table.entry.put(entries.idOf(entry), selection.wanted);
        walk(table, selection, visit);
    };
}

// How a line tells a member.
template <class Record>
struct MemberCells {
    uint32_t Record::*outIfIndex;                                // null: the record has none
    std::function<std::vector<std::string>(const Record&)> way;  // what follows MEMBER and TABLE
};

template <class Record>
void writeRecord(const Tool& tool, JsonWriter& json, const Table<Record>& table, const Record& record) {
    const RouterLinks& links = linksOf(tool, table, record);
    for (const Column<Record>& shown : table.columns) writeMember(json, shown.head, shown.value(record), links);
}

// 'tool' and 'table' outlive it.
template <class Entry, class Record>
MemberTable<Entry> memberTable(const Tool& tool, const Table<Record>& table, MemberWalk<Entry, Record> walkMembers,
                               MemberCells<Record> told) {
    const auto addLines = [&tool, &table, walkMembers, told](const Entry& entry, EntryText& text) {
        walkMembers(entry, [&](const Record& member) {
            const ColumnHead head{"", "outIfIndex", ColumnKind::kInterface};
            const uint64_t index = told.outIfIndex == nullptr ? 0 : member.*told.outIfIndex;
            std::vector<std::string> cells = told.way(member);
            cells.insert(cells.begin(), {cellText(head, index, linksOf(tool, table, member)), table.name});
            text.member(cells);
        });
    };
    const auto addObjects = [&tool, &table, walkMembers](const Entry& entry, JsonWriter& json) {
        walkMembers(entry, [&](const Record& member) {
            json.beginObject().member("table", table.operations.databaseName);
            writeRecord(tool, json, table, member);
            json.endObject();
        });
    };
    return {addLines, addObjects};
}

// Entries of one table, in a display that may show several.
template <class Entry>
struct EntrySource {
    const Table<Entry>& table;
    std::function<std::vector<std::string>(const Entry&)> cells;
    std::vector<MemberTable<Entry>> members;
};

// What a display has, besides its entries.
struct EntryTitles {
    std::vector<std::string> entry;
    std::vector<std::string> member;     // empty: the display has no members
    const char* databaseName = nullptr;  // of all entries, in JSON; null: each tells its own
};

template <class Entry>
void showEntriesAsJson(const Tool& tool, const Arguments& arguments, const EntryTitles& titles,
                       const std::vector<EntrySource<Entry>>& sources) {
    JsonWriter json;
    json.beginObject();
    if (titles.databaseName != nullptr) json.member("table", titles.databaseName);
    json.beginArray("entries");
    for (const EntrySource<Entry>& source : sources) {
        walk(source.table, select(tool, source.table, arguments), [&](const Entry& entry) {
            json.beginObject();
            if (titles.databaseName == nullptr) json.member("table", source.table.operations.databaseName);
            writeRecord(tool, json, source.table, entry);
            if (!titles.member.empty()) {
                json.beginArray("members");
                for (const MemberTable<Entry>& members : source.members) members.addObjects(entry, json);
                json.endArray();
            }
            json.endObject();
            print(json.take());
        });
    }
    json.endArray().endObject();
    printLine(json.take());
}

template <class Entry>
void showEntries(const Tool& tool, const Arguments& arguments, const EntryTitles& titles,
                 const std::vector<EntrySource<Entry>>& sources) {
    if (tool.settings.json) return showEntriesAsJson(tool, arguments, titles, sources);
    EntryText text(titles.entry, titles.member);
    for (const EntrySource<Entry>& source : sources) {
        walk(source.table, select(tool, source.table, arguments), [&](const Entry& entry) {
            text.entry(source.cells(entry));
            if (titles.member.empty()) return;
            for (const MemberTable<Entry>& members : source.members) members.addLines(entry, text);
        });
    }
    text.print();
}

}  // namespace mcast6::ctl
