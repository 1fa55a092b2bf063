// What the tool knows of one table, as data: its columns, the filters of its displays and the queries that the library
// offers for them. The generic commands over it are in table_commands.h.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "cli/command.h"
#include "cli/output.h"
#include "cli/text.h"
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

// An option of show and count: the records whose field equals the given value.
template <class Record>
struct Filter {
    OptionSpec option;
    std::function<void(Record& wanted, const std::string& text, const LinkTable& links)> read;
    std::function<bool(const Record& record, const Record& wanted)> matches;
    const char* needs = nullptr;  // a filter that is given as 0 along with this one unless it is given itself
};

template <class Record>
Filter<Record> addressFilter(const char* name, const char* help, Mcast6Ipv6Addr Record::*member) {
    const std::string option = name;
    return {
        valueOption(name, "ADDRESS", help),
        [=](Record& wanted, const std::string& text, const LinkTable&) { wanted.*member = readAddress(option, text); },
        [=](const Record& record, const Record& wanted) { return sameAddress(record.*member, wanted.*member); }};
}

template <class Record>
Filter<Record> interfaceFilter(const char* name, const char* help, uint32_t Record::*member) {
    const std::string option = name;
    return {valueOption(name, "NAME|N", help),
            [=](Record& wanted, const std::string& text, const LinkTable& links) {
                wanted.*member = readInterface(option, text, links);
            },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }};
}

template <class Record, class Member>
Filter<Record> numberFilter(const char* name, const char* help, Member Record::*member) {
    const std::string option = name;
    return {valueOption(name, "N", help),
            [=](Record& wanted, const std::string& text, const LinkTable&) {
                wanted.*member = static_cast<Member>(readNumber(option, text, std::numeric_limits<Member>::max()));
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
            [=](Record& wanted, const std::string& text, const LinkTable&) {
                wanted.*member = readRoutingTable(option, text);
            },
            [=](const Record& record, const Record& wanted) { return record.*member == wanted.*member; }, needs};
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
};

template <class Record>
struct Table {
    const char* name;          // "l3-mfib", as typed
    const char* databaseName;  // "l3mc6_mfib"
    const char* holds;         // what its records are, for help texts
    std::vector<Column<Record>> columns;
    std::vector<Filter<Record>> filters;
    std::vector<Query<Record>> queries;  // most selective first; the last takes no filter
    uint32_t (*step)(Mcast6DbRes* iterator, Record* record);
    std::vector<uint32_t> absentCodes;  // what 'find' answers when there is no such record
    uint32_t Record::*smoothVersion;
    uint32_t (*remove)(const Record* record);
    LinkTable Tool::*links = &Tool::links;  // where interface names come from
};

}  // namespace mcast6::ctl
