// What the compiler cannot see of a table's description: that its filters, queries and operations belong together.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "cli/tables/table.h"

namespace mcast6::ctl {

// What is wrong with the description, a line each; none when all is well.
template <class Record>
std::vector<std::string> wiringFaults(const Table<Record>& table) {
    std::vector<std::string> faults;
    const auto expect = [&](bool holds, const std::string& fault) {
        if (!holds) faults.push_back(fmt::format("{}: {}", table.name, fault));
    };
    const auto has = [&](const Filter<Record>* filter) {
        return std::find(table.filters.begin(), table.filters.end(), filter) != table.filters.end();
    };
    const auto& operations = table.operations;
    expect(operations.databaseName != nullptr && operations.read != nullptr && operations.openAll != nullptr &&
               operations.step != nullptr && operations.release != nullptr,
           "an operation of every table is missing");
    expect(operations.vrId != nullptr, "no member holds the VR");
    expect(has(table.vr), "the filter by VR is not one of the table's");
    std::set<std::string> names;
    for (const Filter<Record>* filter : table.filters) {
        expect(names.insert(filter->name()).second, "two filters are named --" + filter->name());
        expect(filter->needs == nullptr || has(filter->needs), "not there: what is needed by --" + filter->name());
    }
    size_t keys = 0;
    for (const Query<Record>& query : table.queries) {
        const std::set<const Filter<Record>*> taken(query.takes.begin(), query.takes.end());
        expect(!query.takes.empty() && taken.size() == query.takes.size(), "wrong number of filters: " + query.name);
        for (const Filter<Record>* filter : query.takes) {
            expect(has(filter), fmt::format("--{} is not one of its filters: {}", filter->name(), query.name));
        }
        const bool canOpen = query.open != nullptr && query.release != nullptr;
        expect(query.isKey ? !query.open && !query.count : canOpen, "is neither the key nor opened: " + query.name);
        expect(!query.findsMembers || table.entry.isMember, "finds members of no entry: " + query.name);
        keys += query.isKey ? 1 : 0;
    }
    expect(keys == 1, fmt::format("there are {} keys", keys));
    const auto& entry = table.entry;
    expect(entry.kind == EntryKind::kNone || (entry.vrId == operations.vrId && entry.domain != nullptr &&
                                              entry.group != nullptr && entry.source != nullptr),
           "the words of the entry are incomplete");
    const auto findsMembers = [](const Query<Record>& query) { return query.findsMembers; };
    const auto members = std::count_if(table.queries.begin(), table.queries.end(), findsMembers);
    // A table that nothing can be removed from needs none.
    expect(members == (entry.isMember && operations.remove != nullptr ? 1 : 0),
           fmt::format("{} queries find members", members));
    return faults;
}

}  // namespace mcast6::ctl
