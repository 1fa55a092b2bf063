// What the tool knows of one table, as data: its columns, the filters of its displays and the queries that the library
// offers for them. The generic commands over it are in table_commands.h.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "cli/options/command.h"
#include "cli/output/output.h"
#include "kernel/text.h"
#include "mcast6_db/iterator.h"
#include "mcast6_db/types.h"

namespace mcast6::ctl {

template <class Record>
struct Column {
    ColumnHead head;
    std::function<Value(const Record&)> value;
};

template <class Record, class Member>
Column<Record> column(const char* title, const char* name, Member Record::*member,
                      ColumnKind kind = ColumnKind::kPlain) {
    const auto value = [member](const Record& record) -> Value {
        if constexpr (std::is_same_v<Member, Mcast6Ipv6Addr>) {
            return addressText(record.*member);
        } else if constexpr (std::is_same_v<Member, uint8_t[2]>) {
            uint16_t number = 0;
            std::memcpy(&number, record.*member, sizeof number);
            return uint64_t{number};
        } else {
            return uint64_t{record.*member};
        }
    };
    return {{title, name, kind}, value};
}

template <class Record>
Column<Record> column(const char* title, const char* name, Value (*value)(const Record&)) {
    return {{title, name}, value};
}

// Appends the version, where the record has one, and the times. The times are read where they lie, which is not always at a
// multiple of their size.
template <class Record>
std::vector<Column<Record>> withStamps(std::vector<Column<Record>> columns, uint32_t Record::*smoothVersion = nullptr) {
    if (smoothVersion != nullptr) columns.push_back(column("VERSION", "smoothVersion", smoothVersion));
    columns.push_back({{"WRITTEN (UTC)", "timeStampCreate", ColumnKind::kTime},
                       [](const Record& record) -> Value { return uint64_t{record.timeStampCreate}; }});
    columns.push_back({{"CONFIRMED (UTC)", "timeStampSmooth", ColumnKind::kTime},
                       [](const Record& record) -> Value { return uint64_t{record.timeStampSmooth}; }});
    return columns;
}

// An option of show and count: the records whose field equals the given value.
template <class Record>
struct Filter {
    OptionSpec option;
    std::function<void(Record& wanted, const std::string& text, const LinkScope& scope)> read;
    std::function<bool(const Record& record, const Record& wanted)> matches;
    bool isInterface = false;     // the text may be the name of an interface
    const char* needs = nullptr;  // a filter that is given as 0 along with this one unless it is given itself
    const char* otherwise = "0";  // of a number that names an entry to delete, unless it is given
};

template <class Record>
Filter<Record> addressFilter(const char* name, const char* help, Mcast6Ipv6Addr Record::*member) {
    const std::string option = name;
    return {
        valueOption(name, "ADDRESS", help),
        [=](Record& wanted, const std::string& text, const LinkScope&) { wanted.*member = readAddress(option, text); },
        [=](const Record& record, const Record& wanted) { return sameAddress(record.*member, wanted.*member); }};
}

template <class Record>
Filter<Record> interfaceFilter(const char* name, const char* help, uint32_t Record::*member) {
    const std::string option = name;
    return {valueOption(name, "NAME|N", help),
            [=](Record& wanted, const std::string& text, const LinkScope& scope) {
                wanted.*member = readInterface(option, text, scope);
            },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }, true};
}

// 'largest' is for a member that is wider than what the table stores of it.
template <class Record, class Member>
Filter<Record> numberFilter(const char* name, const char* help, Member Record::*member,
                            uint32_t largest = std::numeric_limits<Member>::max()) {
    const std::string option = name;
    return {valueOption(name, "N", help),
            [=](Record& wanted, const std::string& text, const LinkScope&) {
                wanted.*member = static_cast<Member>(readNumber(option, text, largest));
            },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }};
}

// 'filter', and the one that it needs.
template <class Record>
Filter<Record> needing(const char* needs, Filter<Record> filter) {
    filter.needs = needs;
    return filter;
}

template <class Record>
Filter<Record> routingTableFilter(const char* name, const char* help, uint32_t Record::*member, const char* needs) {
    const std::string option = name;
    return {valueOption(name, "N", help),
            [=](Record& wanted, const std::string& text, const LinkScope&) {
                wanted.*member = readRoutingTable(option, text);
            },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; },
            false,
            needs,
            "main"};
}

// An option that is no filter but asks for a query, for instance --sorted.
template <class Record>
Filter<Record> askFor(const char* name, const char* help) {
    return {flagOption(name, help), [](Record&, const std::string&, const LinkScope&) {},
            [](const Record&, const Record&) { return true; }};
}

// A way to the records of some filters; the tool itself applies the filters that a query does not take. A query that
// finds the one record of a key has only 'find'; the others have 'open' and 'release', and 'count' where the library
// counts without walking.
template <class Record>
struct Query {
    std::string name;
    std::vector<std::string> takes;                            // names of filters
    std::function<Mcast6DbRes*(const Record& wanted)> open{};  // null when it failed
    void (*release)(Mcast6DbRes* iterator) = nullptr;
    std::function<uint32_t(const Record& wanted, uint32_t* count)> count{};
    uint32_t (*find)(Record* record) = nullptr;
    bool (*serves)(const Record& wanted) = nullptr;  // whether it can answer with these values; null: with any
};

// The query that takes no filter.
template <class Record>
Query<Record> wholeTable(Mcast6DbRes* (*open)(), void (*release)(Mcast6DbRes*),
                         uint32_t (*count)(uint32_t*) = nullptr) {
    Query<Record> query{"walk of the whole table", {}, [open](const Record&) { return open(); }, release};
    if (count != nullptr) query.count = [count](const Record&, uint32_t* records) { return count(records); };
    return query;
}

template <class Record>
Query<Record> byKey(std::vector<std::string> takes, uint32_t (*read)(Record*)) {
    return {"key", std::move(takes), {}, nullptr, {}, read};
}

// For iterators whose handle is the caller's memory. Null when 'open', which fills one, answers a failure.
template <class Open>
Mcast6DbRes* newResource(Open open) {
    auto resource = std::make_unique<Mcast6DbRes>();
    return open(resource.get()) == MCAST6_DB_SUCCESS ? resource.release() : nullptr;
}

template <void (*kReleaseObject)(Mcast6DbHandle)>
void releaseResource(Mcast6DbRes* resource) {
    if (resource == nullptr) return;
    kReleaseObject(resource->object);
    delete resource;
}

template <class Record>
struct Table {
    const char* name;          // "l3-mfib", as typed
    const char* databaseName;  // "l3mc6_mfib"
    const char* holds;         // what its records are, for help texts
    std::vector<Column<Record>> columns;
    std::vector<Filter<Record>> filters;
    std::vector<Query<Record>> queries;  // most selective first; the last takes no filter
    uint32_t (*step)(Mcast6DbRes* iterator, Record* record);
    std::vector<uint32_t> absentCodes;         // what 'find' answers when there is no such record
    uint32_t Record::*smoothVersion;           // null: the record has none, and the table no command smooth
    uint32_t (*remove)(const Record* record);  // null: there is no such operation, and no command delete
    Layer layer;                               // whose imports bring the names of interfaces
    uint32_t Record::*router;                  // the VR whose names a record has; null: those of VR 0
    uint32_t (*countFast)() = nullptr;         // of the whole table; null: it has none, and count no --fast
};

// The names of the interfaces in 'record'.
template <class Record>
const RouterLinks& linksOf(const Tool& tool, const Table<Record>& table, const Record& record) {
    return linksOf(tool.links, table.layer, table.router == nullptr ? 0 : record.*table.router);
}

}  // namespace mcast6::ctl
