// What the tool knows of one table, as data: its columns, the filters of its displays and the queries that the library
// offers for them. What imports use of a table as well, its operations, comes from kernel/apply. Filters are objects
// that tables and queries refer to, so that a wrong name does not compile; wiringFaults() finds what the compiler
// cannot. The generic commands over a table are in table_commands.h.
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
#include "cli/tables/entry_id.h"
#include "kernel/apply/table_operations.h"
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

// Appends the version, where the record has one, and the times. The times are read where they lie, which is not always
// at a multiple of their size.
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
    bool isInterface = false;         // the text may be the name of an interface
    const char* otherwise = nullptr;  // in commands on one record, unless it is given; null: it must be given
    const Filter* needs = nullptr;    // a filter that is 0 along with this one unless it is given itself

    const std::string& name() const { return option.name; }
};

template <class Record>
using Filters = std::vector<const Filter<Record>*>;

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
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }, false, "0"};
}

template <class Record>
Filter<Record> routingTableFilter(const char* name, const char* help, uint32_t Record::*member) {
    const std::string option = name;
    return {valueOption(name, "NAME|N", help),
            [=](Record& wanted, const std::string& text, const LinkScope&) {
                wanted.*member = readRoutingTable(option, text);
            },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }, false,
            "main"};
}

// A flag that stands for a value of a field.
template <class Record, class Member>
Filter<Record> valueFilter(const char* name, const char* help, Member Record::*member, Member value) {
    return {flagOption(name, help),
            [=](Record& wanted, const std::string&, const LinkScope&) { wanted.*member = value; },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }};
}

// An option that is no filter but asks for a query, for instance --sorted.
template <class Record>
Filter<Record> askFor(const char* name, const char* help) {
    return {flagOption(name, help), [](Record&, const std::string&, const LinkScope&) {},
            [](const Record&, const Record&) { return true; }};
}

// 'filter', and the one that it needs.
template <class Record>
Filter<Record> needing(const Filter<Record>* needs, Filter<Record> filter) {
    filter.needs = needs;
    return filter;
}

// 'filter', which is 'otherwise' in commands on one record unless it is given.
template <class Record>
Filter<Record> usually(const char* otherwise, Filter<Record> filter) {
    filter.otherwise = otherwise;
    return filter;
}

template <class Item>
std::vector<Item> joined(std::vector<Item> items, const std::vector<Item>& further) {
    items.insert(items.end(), further.begin(), further.end());
    return items;
}

// A way to the records of some filters; the tool itself applies the filters that a query does not take. The key finds
// one record by the table's operation; the others have 'open' and 'release', and 'count' where the library counts
// without walking.
template <class Record>
struct Query {
    std::string name;
    Filters<Record> takes;
    std::function<Mcast6DbRes*(const Record& wanted)> open{};  // null when it failed
    void (*release)(Mcast6DbRes* iterator) = nullptr;
    std::function<uint32_t(const Record& wanted, uint32_t* count)> count{};
    bool isKey = false;
    bool findsMembers = false;                       // of one entry
    bool (*serves)(const Record& wanted) = nullptr;  // whether it can answer with these values; null: with any
};

template <class Record>
Query<Record> byKey(Filters<Record> takes) {
    return {.name = "key", .takes = std::move(takes), .isKey = true};
}

// The key of a table that has one member for each entry.
template <class Record>
Query<Record> byKeyOfEntry(Filters<Record> takes) {
    return {.name = "key", .takes = std::move(takes), .isKey = true, .findsMembers = true};
}

// The members of one entry.
template <class Record, class Open>
Query<Record> byEntry(Filters<Record> takes, Open open, void (*release)(Mcast6DbRes*)) {
    return {.name = "entry", .takes = std::move(takes), .open = open, .release = release, .findsMembers = true};
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
    const char* name;   // "l3-mfib", as typed
    const char* holds;  // what its records are, for help texts
    // Names, codes and functions. Those that display and deletion need not, such as 'write', may be null; so may
    // 'remove': then there is no command delete.
    kernel::TableOperations<Record> operations;
    EntryWords<Record> entry = {};
    std::vector<Column<Record>> columns;
    Filters<Record> filters;
    std::vector<Query<Record>> queries;  // most selective first, the key among them; where none serves, all is walked
    Layer layer;                         // whose imports bring the names of interfaces
    const Filter<Record>* vr;            // the filter by VR
    bool vrIsBridge = false;             // the VR is the number of a bridge: VR 0 has its name, and those of its ports
    // Of the whole table without a walk: the count of show and count, and the one of count --fast; null: there is none.
    uint32_t (*countAll)(uint32_t* count) = nullptr;
    uint32_t (*countFast)() = nullptr;
    Record blank = {};                                      // what a key has besides its filters
    std::string (*nameOf)(const Record& record) = nullptr;  // a record in messages; null: by the filters of its key
    // Besides the entry, the query for its members wants a value of this member, which may be any of a byte; null: it
    // finds them all at once.
    uint32_t Record::*memberByte = nullptr;
};

// The names of the interfaces in 'record'.
template <class Record>
const RouterLinks& linksOf(const Tool& tool, const Table<Record>& table, const Record& record) {
    return linksOf(tool.links, table.layer, table.vrIsBridge ? 0 : record.*table.operations.vrId);
}

}  // namespace mcast6::ctl
