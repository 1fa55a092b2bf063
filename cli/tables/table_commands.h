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
#include "cli/tables/table.h"

namespace mcast6::ctl {

// The filters of one command, and the query that serves most of them.
template <class Record>
struct Selection {
    Record wanted{};
    const Query<Record>* query = nullptr;
    std::vector<const Filter<Record>*> rest;  // those that the query does not take
};

// Whether 'record' passes the filters that the query left over.
template <class Record>
bool passes(const Selection<Record>& selection, const Record& record) {
    return std::all_of(selection.rest.begin(), selection.rest.end(),
                       [&](const Filter<Record>* filter) { return filter->matches(record, selection.wanted); });
}

template <class Record>
const Filter<Record>& filterNamed(const Table<Record>& table, const std::string& name) {
    return *std::find_if(table.filters.begin(), table.filters.end(),
                         [&](const Filter<Record>& filter) { return filter.option.name == name; });
}

template <class Record>
std::vector<const Filter<Record>*> givenFilters(const Table<Record>& table, const Arguments& arguments) {
    std::vector<const Filter<Record>*> given;
    for (const Filter<Record>& filter : table.filters) {
        if (arguments.has(filter.option.name)) given.push_back(&filter);
    }
    for (size_t position = 0; position < given.size(); ++position) {
        if (given[position]->needs == nullptr) continue;
        const Filter<Record>* needed = &filterNamed(table, given[position]->needs);
        if (std::find(given.begin(), given.end(), needed) == given.end()) given.push_back(needed);
    }
    return given;
}

template <class Record>
bool takes(const Query<Record>& query, const Filter<Record>* filter) {
    return std::find(query.takes.begin(), query.takes.end(), filter->option.name) != query.takes.end();
}

// The query by the table's key.
template <class Record>
const Query<Record>& keyQuery(const Table<Record>& table) {
    return *std::find_if(table.queries.begin(), table.queries.end(),
                         [](const Query<Record>& query) { return query.find != nullptr; });
}

// The VR whose names the options of one record use: --vr, or else 0.
template <class Record>
uint32_t routerOf(const Table<Record>& table, const Arguments& arguments) {
    return table.router == nullptr ? 0 : arguments.number("vr", 0);
}

// The VR whose names the given filters use. Without --vr it is the one that has all the names; where other VRs have names
// too, their interfaces of the same numbers are others, and --vr joins the filters. Throws Failure when several VRs have the
// names.
template <class Record>
uint32_t chooseRouter(const Tool& tool, const Table<Record>& table, const Arguments& arguments,
                      std::vector<const Filter<Record>*>& given, Record& wanted) {
    const Filter<Record>* router = &filterNamed(table, "vr");
    if (table.router == nullptr || std::find(given.begin(), given.end(), router) != given.end()) {
        return routerOf(table, arguments);
    }
    const std::vector<uint32_t> known = tool.links.routers(table.layer);
    std::vector<uint32_t> routers = known;
    const Filter<Record>* named = nullptr;
    for (const Filter<Record>* filter : given) {
        const std::string& text = arguments.text(filter->option.name);
        if (!filter->isInterface || parseNumber(text)) continue;
        named = filter;
        std::erase_if(routers,
                      [&](uint32_t vrId) { return linksOf(tool.links, table.layer, vrId).byName(text) == nullptr; });
    }
    if (named == nullptr || routers.empty()) return 0;
    if (routers.size() > 1) {
        throw ambiguousInterface(named->option.name, arguments.text(named->option.name), routers);
    }
    if (known.size() > 1) {
        wanted.*table.router = routers.front();
        given.push_back(router);
    }
    return routers.front();
}

// Chooses the first query whose filters are all given, with values that it can answer.
template <class Record>
Selection<Record> select(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    Selection<Record> selection;
    auto given = givenFilters(table, arguments);
    const LinkScope scope{tool.links, table.layer, chooseRouter(tool, table, arguments, given, selection.wanted)};
    for (const Filter<Record>* filter : given) {
        if (!arguments.has(filter->option.name)) continue;  // needed by another one, and 0
        filter->read(selection.wanted, arguments.text(filter->option.name), scope);
    }
    selection.query = &*std::find_if(table.queries.begin(), table.queries.end(), [&](const Query<Record>& query) {
        const auto served =
            std::count_if(given.begin(), given.end(), [&](const auto* filter) { return takes(query, filter); });
        return static_cast<size_t>(served) == query.takes.size() &&
               (query.serves == nullptr || query.serves(selection.wanted));
    });
    std::string rest;
    for (const Filter<Record>* filter : given) {
        if (takes(*selection.query, filter)) continue;
        selection.rest.push_back(filter);
        rest += " --" + filter->option.name;
    }
    if (tool.settings.verbose) {
        complain(fmt::format("{}: query by {}{}{}", table.name, selection.query->name,
                             rest.empty() ? "" : "; the tool itself filters by", rest));
    }
    return selection;
}

// Calls 'visit' with each record of the selection. Throws Failure.
template <class Record, class Visit>
void walk(const Table<Record>& table, const Selection<Record>& selection, Visit visit) {
    const Query<Record>& query = *selection.query;
    if (query.find != nullptr) {
        Record record = selection.wanted;
        const uint32_t code = query.find(&record);
        if (std::find(table.absentCodes.begin(), table.absentCodes.end(), code) != table.absentCodes.end()) return;
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("reading {}", table.databaseName), code);
        if (passes(selection, record)) visit(record);
        return;
    }
    const std::unique_ptr<Mcast6DbRes, void (*)(Mcast6DbRes*)> iterator(query.open(selection.wanted), query.release);
    if (!iterator) throw libraryFailure(fmt::format("making an iterator over {}", table.databaseName));
    for (;;) {
        Record record{};
        const uint32_t code = table.step(iterator.get(), &record);
        if (code == MCAST6_DB_NO_RECORD) return;
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("walking {}", table.databaseName), code);
        if (passes(selection, record)) visit(record);
    }
}

// The number of records of the selection, without walking where the library can. Throws Failure.
template <class Record>
uint64_t countRecords(const Table<Record>& table, const Selection<Record>& selection) {
    if (selection.query->count && selection.rest.empty()) {
        uint32_t count = 0;
        const uint32_t code = selection.query->count(selection.wanted, &count);
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("counting {}", table.databaseName), code);
        return count;
    }
    uint64_t count = 0;
    walk(table, selection, [&](const Record&) { ++count; });
    return count;
}

template <class Record>
void showTable(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const Selection<Record> selection = select(tool, table, arguments);
    std::vector<ColumnHead> heads;
    for (const Column<Record>& shown : table.columns) heads.push_back(shown.head);
    RowPrinter rows(tool.settings.json, heads);
    if (tool.settings.json) rows.json().beginObject().member("table", table.databaseName).beginArray("entries");
    walk(table, selection, [&](const Record& record) {
        std::vector<Value> values;
        for (const Column<Record>& shown : table.columns) values.push_back(shown.value(record));
        rows.row(values, linksOf(tool, table, record));
    });
    if (tool.settings.json) rows.json().endArray().endObject();
    rows.finish();
    printLine(tool.settings.json ? "" : rows.rows() == 0 ? "no entries" : counted(rows.rows(), "entry"));
}

template <class Record>
uint64_t countAsAsked(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    if (!arguments.has("fast")) return countRecords(table, select(tool, table, arguments));
    const auto given = givenFilters(table, arguments);
    if (given.empty()) return table.countFast();
    throw UsageError(fmt::format("--fast counts the whole table: it goes without --{}", given.front()->option.name));
}

template <class Record>
void countTable(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const uint64_t count = countAsAsked(tool, table, arguments);
    if (!tool.settings.json) return printLine(std::to_string(count));
    JsonWriter json;
    json.beginObject().member("table", table.databaseName).member("count", count).endObject();
    printLine(json.take());
}

struct SmoothCounts {
    uint64_t before;
    uint64_t deleted;
    uint64_t after;
};

// Deletes the records of the selection that 'isStale' picks, and returns how many. Throws Failure.
template <class Record, class IsStale>
uint64_t deleteStale(const Table<Record>& table, const Selection<Record>& selection, IsStale isStale) {
    uint64_t deleted = 0;
    walk(table, selection, [&](const Record& record) {
        if (!isStale(record)) return;
        const uint32_t code = table.remove(&record);
        if (code != MCAST6_DB_SUCCESS) {
            throw libraryFailure(fmt::format("{}: after {} deletions, deleting", table.name, deleted), code);
        }
        ++deleted;
    });
    return deleted;
}

// The same with the numbers of records before and after.
template <class Record, class IsStale>
SmoothCounts smoothStale(const Table<Record>& table, const Selection<Record>& selection, IsStale isStale) {
    const uint64_t before = countRecords(table, selection);
    const uint64_t deleted = deleteStale(table, selection, isStale);
    return {before, deleted, countRecords(table, selection)};
}

// Deletes what an import with version N left with an older one.
template <class Record>
SmoothCounts smoothRecords(const Table<Record>& table, const Selection<Record>& selection, uint32_t version) {
    return smoothStale(table, selection, [&](const Record& record) { return record.*table.smoothVersion < version; });
}

template <class Record>
void smoothTable(const Tool& tool, const Table<Record>& table, const Arguments& arguments) {
    const uint32_t version = arguments.number("version", 0);
    const auto [before, deleted, after] = smoothRecords(table, select(tool, table, arguments), version);
    if (!tool.settings.json) {
        return printLine(fmt::format("{} before, {} with a version older than {} deleted, {} after",
                                     counted(before, "entry"), deleted, version, after));
    }
    JsonWriter json;
    json.beginObject().member("table", table.databaseName).member("version", uint64_t{version});
    json.member("before", before).member("deleted", deleted).member("after", after).endObject();
    printLine(json.take());
}

// Reads the one record of the selection's key; false when there is none. Throws Failure.
template <class Record>
bool readRecord(const Table<Record>& table, Record* record) {
    const uint32_t code = keyQuery(table).find(record);
    if (std::find(table.absentCodes.begin(), table.absentCodes.end(), code) != table.absentCodes.end()) return false;
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("reading {}", table.databaseName), code);
    return true;
}

// Deletes the record with the key of 'record', which 'name' tells in messages; a record that is not there is a failure.
template <class Record>
void deleteRecord(const Tool& tool, const Table<Record>& table, Record record, const std::string& name) {
    if (!readRecord(table, &record)) throw Failure(fmt::format("{}: no entry for {}", table.name, name));
    const uint32_t code = table.remove(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("{}: deleting {}", table.name, name), code);
    if (!tool.settings.json) return printLine(fmt::format("{}: deleted {}", table.name, name));
    JsonWriter json;
    json.beginObject().member("table", table.databaseName).member("deleted", uint64_t{1}).endObject();
    printLine(json.take());
}

template <class Record>
std::vector<OptionSpec> filterOptions(const Table<Record>& table) {
    std::vector<OptionSpec> options;
    for (const Filter<Record>& filter : table.filters) options.push_back(filter.option);
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
    if (table.smoothVersion == nullptr) return;
    options = filterOptions(table);
    options.insert(options.begin(), required(valueOption("version", "N", "Delete what has a smooth version below N")));
    commands.push_back({"smooth", table.name, fmt::format("Delete {} that an import did not re-stamp", table.holds),
                        options,
                        [&table](Tool& tool, const Arguments& arguments) { smoothTable(tool, table, arguments); }});
}

// show, count and smooth.
template <class Record>
void addTableCommands(Commands& commands, const Table<Record>& table) {
    commands.push_back({"show", table.name, fmt::format("Show {}", table.holds), filterOptions(table),
                        [&table](Tool& tool, const Arguments& arguments) { showTable(tool, table, arguments); }});
    addCountAndSmooth(commands, table);
}

// delete, where the table has it, with the filters of the table's key as options. Numbers need not be given, addresses and
// interfaces must be.
template <class Record>
void addDelete(Commands& commands, const Table<Record>& table) {
    if (table.remove == nullptr) return;
    const Query<Record>& key = keyQuery(table);
    std::vector<OptionSpec> options;
    for (const std::string& name : key.takes) {
        const OptionSpec& option = filterNamed(table, name).option;
        options.push_back(option.placeholder == "N" ? option : required(option));
    }
    const auto run = [&table, &key](Tool& tool, const Arguments& arguments) {
        const LinkScope scope{tool.links, table.layer, routerOf(table, arguments)};
        Record wanted{};
        std::string called;
        for (const std::string& name : key.takes) {
            const Filter<Record>& filter = filterNamed(table, name);
            const std::string text = arguments.has(name) ? arguments.text(name) : filter.otherwise;
            filter.read(wanted, text, scope);
            called += fmt::format("{}{} {}", called.empty() ? "" : ", ", name, text);
        }
        deleteRecord(tool, table, wanted, called);
    };
    commands.push_back({"delete", table.name, "Delete the entry of one key", options, run});
}

}  // namespace mcast6::ctl
