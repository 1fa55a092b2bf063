// show, count, smooth and delete for every table that table.h can describe.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/output/output.h"
#include "cli/tables/layer.h"
#include "cli/tables/table.h"

namespace mcast6::ctl {

// The filters of one command, and the query that serves most of them.
template <class Record>
struct Selection {
    Record wanted{};
    const Query<Record>* query = nullptr;  // null: the whole table is walked
    Filters<Record> rest = {};             // those that the query does not take
};

// Every record of 'table'.
template <class Record>
Selection<Record> everything(const Table<Record>& table) {
    return {table.blank};
}

// Whether 'record' passes the filters that the query left over.
template <class Record>
bool passes(const Selection<Record>& selection, const Record& record) {
    return std::all_of(selection.rest.begin(), selection.rest.end(),
                       [&](const Filter<Record>* filter) { return filter->matches(record, selection.wanted); });
}

template <class Record>
bool contains(const Filters<Record>& filters, const Filter<Record>* filter) {
    return std::find(filters.begin(), filters.end(), filter) != filters.end();
}

template <class Record>
Filters<Record> givenFilters(const Table<Record>& table, const Arguments& arguments) {
    Filters<Record> given;
    for (const Filter<Record>* filter : table.filters) {
        if (arguments.has(filter->name())) given.push_back(filter);
    }
    for (size_t position = 0; position < given.size(); ++position) {
        const Filter<Record>* needed = given[position]->needs;
        if (needed != nullptr && !contains(given, needed)) given.push_back(needed);
    }
    return given;
}

// The query by the table's key.
template <class Record>
const Query<Record>& keyQuery(const Table<Record>& table) {
    return *std::find_if(table.queries.begin(), table.queries.end(),
                         [](const Query<Record>& query) { return query.isKey; });
}

// The VR whose names the options of one record use: --vr, or else 0.
template <class Record>
uint32_t routerOf(const Table<Record>& table, const Arguments& arguments) {
    return table.vrIsBridge ? 0 : arguments.number(table.vr->name(), 0);
}

// The VR whose names the given filters use. Without --vr it is the one that has all the names; where other VRs have
// names too, their interfaces of the same numbers are others, and --vr joins the filters. Throws Failure when several
// VRs have the names.
template <class Record>
uint32_t chooseRouter(const Tool& tool, const Table<Record>& table, const Arguments& arguments, Filters<Record>& given,
                      Record& wanted) {
    if (table.vrIsBridge || contains(given, table.vr)) return routerOf(table, arguments);
    const std::vector<uint32_t> known = tool.links.routers(table.layer);
    std::vector<uint32_t> routers = known;
    const Filter<Record>* named = nullptr;
    for (const Filter<Record>* filter : given) {
        const std::string& text = arguments.text(filter->name());
        if (!filter->isInterface || parseNumber(text)) continue;
        named = filter;
        std::erase_if(routers,
                      [&](uint32_t vrId) { return linksOf(tool.links, table.layer, vrId).byName(text) == nullptr; });
    }
    if (named == nullptr || routers.empty()) return 0;
    if (routers.size() > 1) throw ambiguousInterface(named->name(), arguments.text(named->name()), routers);
    if (known.size() > 1) {
        wanted.*table.operations.vrId = routers.front();
        given.push_back(table.vr);
    }
    return routers.front();
}

// The first query whose filters are all given, with values that it can answer; null: there is none.
template <class Record>
const Query<Record>* chooseQuery(const Table<Record>& table, const Filters<Record>& given, const Record& wanted) {
    const auto serves = [&](const Query<Record>& query) {
        return std::all_of(query.takes.begin(), query.takes.end(),
                           [&](const Filter<Record>* filter) { return contains(given, filter); }) &&
               (query.serves == nullptr || query.serves(wanted));
    };
    const auto found = std::find_if(table.queries.begin(), table.queries.end(), serves);
    return found == table.queries.end() ? nullptr : &*found;
}

// Whether the library counts the records of the selection, so that nothing is walked.
template <class Record>
bool isCounted(const Table<Record>& table, const Selection<Record>& selection) {
    if (!selection.rest.empty()) return false;
    return selection.query == nullptr ? table.countAll != nullptr : selection.query->count != nullptr;
}

enum class Purpose { kWalk, kCount };

// What --verbose tells of a selection.
template <class Record>
std::string describe(const Table<Record>& table, const Selection<Record>& selection, Purpose purpose) {
    const bool counts = purpose == Purpose::kCount && isCounted(table, selection);
    const std::string whole = counts ? "count of the whole table" : "walk of the whole table";
    std::string rest;
    for (const Filter<Record>* filter : selection.rest) rest += " --" + filter->name();
    return fmt::format("{}: query by {}{}{}", table.name, selection.query == nullptr ? whole : selection.query->name,
                       rest.empty() ? "" : "; the tool itself filters by", rest);
}

// The records that the given filters pick. Throws Failure.
template <class Record>
Selection<Record> select(const Tool& tool, const Table<Record>& table, const Arguments& arguments,
                         Purpose purpose = Purpose::kWalk) {
    Selection<Record> selection = everything(table);
    auto given = givenFilters(table, arguments);
    const LinkScope scope{tool.links, table.layer, chooseRouter(tool, table, arguments, given, selection.wanted)};
    for (const Filter<Record>* filter : given) {
        if (!arguments.has(filter->name())) continue;  // another one needs it, or chose it
        filter->read(selection.wanted, arguments.text(filter->name()), scope);
    }
    selection.query = chooseQuery(table, given, selection.wanted);
    for (const Filter<Record>* filter : given) {
        if (selection.query == nullptr || !contains(selection.query->takes, filter)) selection.rest.push_back(filter);
    }
    if (tool.settings.verbose) complain(describe(table, selection, purpose));
    return selection;
}

// Reads the record with the key of *record; false when there is none. Throws Failure.
template <class Record>
bool readRecord(const Table<Record>& table, Record* record) {
    const uint32_t code = table.operations.read(record);
    if (code == table.operations.absentCode) return false;
    if (code != MCAST6_DB_SUCCESS) {
        throw libraryFailure(fmt::format("reading {}", table.operations.databaseName), code);
    }
    return true;
}

// Calls 'visit' with each record of the selection. Throws Failure.
template <class Record, class Visit>
void walk(const Table<Record>& table, const Selection<Record>& selection, Visit visit) {
    const Query<Record>* query = selection.query;
    const auto& operations = table.operations;
    if (query != nullptr && query->isKey) {
        Record record = selection.wanted;
        if (readRecord(table, &record) && passes(selection, record)) visit(record);
        return;
    }
    const std::unique_ptr<Mcast6DbRes, void (*)(Mcast6DbRes*)> iterator(
        query == nullptr ? operations.openAll() : query->open(selection.wanted),
        query == nullptr ? operations.release : query->release);
    if (!iterator) throw libraryFailure(fmt::format("making an iterator over {}", operations.databaseName));
    for (;;) {
        Record record{};
        const uint32_t code = operations.step(iterator.get(), &record);
        if (code == MCAST6_DB_NO_RECORD) return;
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("walking {}", operations.databaseName), code);
        if (passes(selection, record)) visit(record);
    }
}

// The number of records of the selection, without walking where the library can. Throws Failure.
template <class Record>
uint64_t countRecords(const Table<Record>& table, const Selection<Record>& selection) {
    if (isCounted(table, selection)) {
        uint32_t count = 0;
        const uint32_t code =
            selection.query == nullptr ? table.countAll(&count) : selection.query->count(selection.wanted, &count);
        if (code != MCAST6_DB_SUCCESS) {
            throw libraryFailure(fmt::format("counting {}", table.operations.databaseName), code);
        }
        return count;
    }
    uint64_t count = 0;
    walk(table, selection, [&](const Record&) { ++count; });
    return count;
}

// Prints records as show does.
template <class Record>
class RecordPrinter {
public:
    RecordPrinter(const Tool& tool, const Table<Record>& table)
        : tool_(tool), table_(table), rows_(tool.settings.json, headsOf(table)) {}

    void record(const Record& record) {
        values_.clear();
        for (const Column<Record>& shown : table_.columns) values_.push_back(shown.value(record));
        rows_.row(values_, linksOf(tool_, table_, record));
    }

    RowPrinter& rows() { return rows_; }

private:
    static std::vector<ColumnHead> headsOf(const Table<Record>& table) {
        std::vector<ColumnHead> heads;
        for (const Column<Record>& shown : table.columns) heads.push_back(shown.head);
        return heads;
    }

    const Tool& tool_;
    const Table<Record>& table_;
    RowPrinter rows_;
    std::vector<Value> values_;
};

template <class Record>
void showTable(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const Selection<Record> selection = select(tool, table, arguments);
    RecordPrinter<Record> printer(tool, table);
    RowPrinter& rows = printer.rows();
    if (tool.settings.json) {
        rows.json().beginObject().member("table", table.operations.databaseName).beginArray("entries");
    }
    walk(table, selection, [&](const Record& record) { printer.record(record); });
    if (tool.settings.json) rows.json().endArray().endObject();
    rows.finish();
    printLine(tool.settings.json ? "" : rows.rows() == 0 ? "no entries" : counted(rows.rows(), "entry"));
}

template <class Record>
uint64_t countPicked(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    return countRecords(table, select(tool, table, arguments, Purpose::kCount));
}

template <class Record>
uint64_t countAsAsked(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    if (!arguments.has("fast")) return countPicked(tool, table, arguments);
    const auto given = givenFilters(table, arguments);
    if (given.empty()) return table.countFast();
    throw UsageError(fmt::format("--fast counts the whole table: it goes without --{}", given.front()->name()));
}

template <class Record>
void countTable(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const uint64_t count = countAsAsked(tool, table, arguments);
    if (!tool.settings.json) return printLine(std::to_string(count));
    JsonWriter json;
    json.beginObject().member("table", table.operations.databaseName).member("count", count).endObject();
    printLine(json.take());
}

// Removes a record. 'doing' tells in messages what.
template <class Record>
void removeRecord(const Table<Record>& table, const Record& record, const std::string& doing) {
    const uint32_t code = table.operations.remove(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("{}: {}", table.name, doing), code);
}

// Deletes the records of the selection that 'isStale' picks, and returns how many; a dry run only counts them. Throws
// Failure.
template <class Record, class IsStale>
uint64_t deleteStale(const Table<Record>& table, const Selection<Record>& selection, IsStale isStale,
                     bool isDry = false) {
    uint64_t deleted = 0;
    walk(table, selection, [&](const Record& record) {
        if (!isStale(record)) return;
        if (!isDry) removeRecord(table, record, fmt::format("after {} deletions, deleting", deleted));
        ++deleted;
    });
    return deleted;
}

// The same with the numbers of records before and after.
template <class Record, class IsStale>
SmoothCounts smoothStale(const Table<Record>& table, const Selection<Record>& selection, IsStale isStale, bool isDry) {
    const uint64_t before = countRecords(table, selection);
    const uint64_t deleted = deleteStale(table, selection, isStale, isDry);
    return {before, deleted, isDry ? before - deleted : countRecords(table, selection)};
}

// Whether an import with the smoothing's version left the record with an older one.
template <class Record>
bool isOlder(const Table<Record>& table, const Record& record, const Smoothing& smoothing) {
    return table.operations.smoothVersion != nullptr && record.*table.operations.smoothVersion < smoothing.version;
}

// Adds the stale entries of the selection to the smoothing.
template <class Record>
void collectStale(const Table<Record>& table, const Selection<Record>& selection, Smoothing& smoothing) {
    EntryIds& stale = smoothing.stale[table.entry.kind];
    walk(table, selection, [&](const Record& record) {
        if (isOlder(table, record, smoothing)) stale.insert(table.entry.idOf(record));
    });
}

// A dry run shows what would go.
template <class Record>
void printStale(const Table<Record>& table, const Selection<Record>& selection, const Smoothing& smoothing,
                RecordPrinter<Record>& printer) {
    walk(table, selection, [&](const Record& record) {
        if (isOlder(table, record, smoothing)) printer.record(record);
    });
}

// " and its 3 members", "": what follows the name of an entry, or of several, that is deleted.
std::string membersText(uint64_t members, const char* whose);

template <class Record>
void smoothTable(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const Selection<Record> selection = select(tool, table, arguments);
    Smoothing run = smoothing(tool, arguments);
    RecordPrinter<Record> printer(tool, table);
    if (tool.settings.json) printer.rows().json().beginObject().member("table", table.operations.databaseName);
    if (run.isDry) {
        if (tool.settings.json) printer.rows().json().beginArray("entries");
        printStale(table, selection, run, printer);
        if (tool.settings.json) printer.rows().json().endArray();
    }
    // Members go before their entry: a failure leaves none without it.
    uint64_t members = 0;
    if (table.entry.areEntries()) {
        collectStale(table, selection, run);
        members = smoothMembers(table.layer, table.entry.kind, run);
    }
    const auto isStale = [&](const Record& record) { return isOlder(table, record, run); };
    const auto [before, deleted, after] = smoothStale(table, selection, isStale, run.isDry);
    if (!tool.settings.json) {
        printer.rows().finish();
        return printLine(fmt::format("{} before, {} with a version older than {}{}{} deleted, {} after",
                                     counted(before, "entry"), deleted, run.version, membersText(members, "their"),
                                     run.isDry ? " would be" : "", after));
    }
    JsonWriter& json = printer.rows().json();
    json.member("version", uint64_t{run.version});
    json.member("before", before).member("deleted", deleted).member("after", after);
    if (table.entry.areEntries()) json.member("membersDeleted", members);
    if (run.isDry) json.member("dryRun", true);
    json.endObject();
    printer.rows().finish();
    printLine("");
}

// Deletes the record with the key of 'record', which 'name' tells in messages; a record that is not there is a failure.
// The members of an entry go first, unless they are kept.
template <class Record>
void deleteRecord(const Tool& tool, const Table<Record>& table, Record record, const std::string& name,
                  bool keepsMembers) {
    if (!readRecord(table, &record)) throw Failure(fmt::format("{}: no entry for {}", table.name, name));
    uint64_t members = 0;
    if (table.entry.areEntries() && !keepsMembers) {
        members = deleteMembers(table.layer, table.entry.kind, table.entry.idOf(record));
    }
    removeRecord(table, record, "deleting " + name);
    if (!tool.settings.json) {
        return printLine(fmt::format("{}: deleted {}{}", table.name, name, membersText(members, "its")));
    }
    JsonWriter json;
    json.beginObject().member("table", table.operations.databaseName).member("deleted", uint64_t{1});
    if (table.entry.areEntries()) json.member("membersDeleted", members);
    json.endObject();
    printLine(json.take());
}

// A record with the key that is given: what is not has its usual value.
template <class Record>
Record readKey(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const LinkScope scope{tool.links, table.layer, routerOf(table, arguments)};
    Record key = table.blank;
    for (const Filter<Record>* filter : keyQuery(table).takes) {
        filter->read(key, arguments.has(filter->name()) ? arguments.text(filter->name()) : filter->otherwise, scope);
    }
    return key;
}

template <class Record>
std::string nameOfKey(const Table<Record>& table, const Record& key, const Arguments& arguments) {
    if (table.nameOf != nullptr) return table.nameOf(key);
    std::string name;
    for (const Filter<Record>* filter : keyQuery(table).takes) {
        name += fmt::format("{}{} {}", name.empty() ? "" : ", ", filter->name(),
                            arguments.has(filter->name()) ? arguments.text(filter->name()) : filter->otherwise);
    }
    return name;
}

template <class Record>
std::vector<OptionSpec> filterOptions(const Table<Record>& table) {
    std::vector<OptionSpec> options;
    for (const Filter<Record>* filter : table.filters) options.push_back(filter->option);
    return options;
}

// The filters of the table's key as options, those without a usual value required.
template <class Record>
std::vector<OptionSpec> keyOptions(const Table<Record>& table) {
    std::vector<OptionSpec> options;
    for (const Filter<Record>* filter : keyQuery(table).takes) {
        options.push_back(filter->otherwise != nullptr ? filter->option : required(filter->option));
    }
    return options;
}

// count and, where records have versions, smooth of 'table', which lives as long as the commands.
template <class Record>
void addCountAndSmooth(Commands& commands, const Table<Record>& table) {
    std::vector<OptionSpec> options = filterOptions(table);
    if (table.countFast != nullptr) {
        options.push_back(flagOption("fast", "The whole table, through the library's cached object; without filters"));
    }
    commands.push_back({"count", table.name, fmt::format("Count {}", table.holds), options,
                        [&table](Tool& tool, const Arguments& arguments) { countTable(tool, table, arguments); }});
    if (table.operations.smoothVersion == nullptr) return;
    commands.push_back({"smooth", table.name,
                        fmt::format("Delete {} that an import did not re-stamp{}", table.holds,
                                    table.entry.areEntries() ? ", and their members" : ""),
                        joined({versionOption(), dryRunOption()}, filterOptions(table)),
                        [&table](Tool& tool, const Arguments& arguments) { smoothTable(tool, table, arguments); }});
}

// show, count and smooth.
template <class Record>
void addTableCommands(Commands& commands, const Table<Record>& table) {
    commands.push_back({"show", table.name, fmt::format("Show {}", table.holds), filterOptions(table),
                        [&table](Tool& tool, const Arguments& arguments) { showTable(tool, table, arguments); }});
    addCountAndSmooth(commands, table);
}

template <class Record>
void deleteByKey(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const Record key = readKey(tool, table, arguments);
    deleteRecord(tool, table, key, nameOfKey(table, key, arguments), arguments.has("keep-members"));
}

OptionSpec keepMembersOption();

// delete, where the table has it.
template <class Record>
void addDelete(Commands& commands, const Table<Record>& table) {
    if (table.operations.remove == nullptr) return;
    std::vector<OptionSpec> options = keyOptions(table);
    if (table.entry.areEntries()) options.push_back(keepMembersOption());
    commands.push_back(
        {"delete", table.name,
         table.entry.areEntries() ? "Delete the entry of one key, and its members" : "Delete the entry of one key",
         options, [&table](Tool& tool, const Arguments& arguments) { deleteByKey(tool, table, arguments); }});
}

}  // namespace mcast6::ctl
