// show and count of every filled table, by all their filters and queries.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tool/model.h"

namespace mcast6::ctl::test {
namespace {

std::vector<TableFacts> allFacts() {
    std::vector<TableFacts> all = l3Facts();
    all.insert(all.end(), l2Facts().begin(), l2Facts().end());
    return all;
}

const auto kTableName = [](const auto& instance) {
    std::string name = instance.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
};

class EachTable : public FilledTables, public testing::WithParamInterface<TableFacts> {
protected:
    FilledTable& table() { return tableNamed(GetParam().name); }
};

TEST_P(EachTable, has_the_filters_of_its_records) {
    const std::string& name = GetParam().name;
    std::set<std::string> filters = table().filters();
    std::set<std::string> shown = filters;
    if (name == "l3-mfib") shown.insert("members");
    EXPECT_EQ(optionsOf("show", name), shown);
    std::set<std::string> counted = filters;
    if (GetParam().countsFast) counted.insert("fast");
    EXPECT_EQ(optionsOf("count", name), counted);
    filters.insert({"version", "dry-run"});
    EXPECT_EQ(optionsOf("smooth", name), GetParam().hasVersion ? filters : std::set<std::string>());
    std::set<std::string> key(GetParam().key.begin(), GetParam().key.end());
    if (GetParam().areEntries()) key.insert("keep-members");
    EXPECT_EQ(optionsOf("delete", name), GetParam().isDeletable ? key : std::set<std::string>());
}

TEST_P(EachTable, answers_by_no_filter_and_by_each_alone) {
    const FilledTable& filled = table();
    ASSERT_GE(filled.rows.size(), 10U);
    expectAnswered(filled, {});
    for (const std::string& filter : filled.filters()) {
        bool divides = false;
        for (const std::string& text : filled.textsOf(filter)) {
            const Given given{{filter, text}};
            const size_t found = filled.picked(given).size();
            divides = divides || (found > 0 && found < filled.rows.size());
            expectAnswered(filled, given);
        }
        EXPECT_TRUE(divides) << "--" << filter << " picks all records or none";
    }
}

TEST_P(EachTable, answers_by_each_pair_of_filters) {
    const FilledTable& filled = table();
    const std::set<std::string> filters = filled.filters();
    for (auto first = filters.begin(); first != filters.end(); ++first) {
        for (auto second = std::next(first); second != filters.end(); ++second) {
            for (const std::string& firstText : filled.textsOf(*first)) {
                for (const std::string& secondText : filled.textsOf(*second)) {
                    expectAnswered(filled, {{*first, firstText}, {*second, secondText}});
                }
            }
        }
    }
}

// The filters that were given, and those that come along with them.
std::set<std::string> withNeeded(const TableFacts& facts, const Given& given) {
    std::set<std::string> names;
    for (const auto& [name, text] : given) {
        names.insert(name);
        if (facts.needs.contains(name)) names.insert(facts.needs.at(name));
    }
    return names;
}

std::string textAfter(const std::string& text, const std::string& mark) {
    const size_t place = text.find(mark);
    return place == std::string::npos ? "" : text.substr(place + mark.size());
}

std::set<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// What was told names a query of the table, all of whose filters were given, and leaves the others to the tool. Returns
// the query's name.
std::string expectTold(const TableFacts& facts, const Given& given, const std::string& told) {
    const std::string start = "mcast6ctl: " + facts.name + ": query by ";
    const std::string rest = "; the tool itself filters by ";
    EXPECT_TRUE(told.starts_with(start) && told.ends_with("\n")) << told;
    const std::string query = textAfter(told.substr(0, std::min(told.find(rest), told.size() - 1)), start);
    const auto known = std::find_if(facts.queries.begin(), facts.queries.end(),
                                    [&](const QueryFacts& other) { return other.name == query; });
    if (known == facts.queries.end()) {
        ADD_FAILURE() << "unknown query: " << told;
        return query;
    }
    std::set<std::string> left;
    for (const std::string& name : withNeeded(facts, given)) {
        if (!known->takes.contains(name)) left.insert("--" + name);
    }
    EXPECT_EQ(wordsOf(textAfter(told, rest)), left) << told;
    for (const std::string& name : known->takes) {
        EXPECT_TRUE(withNeeded(facts, given).contains(name)) << "without --" << name << ": " << told;
    }
    return query;
}

// The filters of 'names' with the texts of 'row', without the flags that do not pick it.
Given givenBy(const Row& row, const std::set<std::string>& names) {
    Given given;
    for (const std::string& name : names) {
        if (row.filters.at(name) != kNotPicked) given[name] = row.filters.at(name);
    }
    return given;
}

bool serves(const QueryFacts& query, const Given& given) {
    return std::all_of(query.only.begin(), query.only.end(),
                       [&](const auto& value) { return given.at(value.first) == value.second; });
}

TEST_P(EachTable, answers_by_each_query_of_the_library) {
    const FilledTable& filled = table();
    for (const QueryFacts& query : GetParam().queries) {
        const std::string told = "mcast6ctl: " + GetParam().name + ": query by " + query.name + "\n";
        size_t chosen = 0;
        for (const Row& row : filled.rows) {
            Given given = givenBy(row, query.takes);
            if (given.size() != query.takes.size()) continue;  // a flag would not pick the record
            const std::string answer = expectAnswered(filled, given);
            if (!serves(query, given)) {
                EXPECT_NE(answer, told);
                continue;
            }
            EXPECT_EQ(answer, told);
            if (++chosen; given.empty()) break;
            // For what differs from the record in one filter, each in its turn, and may be there or not.
            const auto changed = std::next(given.begin(), static_cast<ptrdiff_t>(chosen % given.size()));
            if (changed->second.empty() || query.only.contains(changed->first)) continue;
            const std::set<std::string> texts = filled.textsOf(changed->first);
            const auto next = texts.upper_bound(changed->second);
            changed->second = next == texts.end() ? *texts.begin() : *next;
            EXPECT_EQ(expectAnswered(filled, given), told);
        }
        EXPECT_GT(chosen, 0U) << query.name;
    }
}

TEST_P(EachTable, answers_by_any_filters_together) {
    const FilledTable& filled = table();
    const std::set<std::string> filters = filled.filters();
    std::set<std::string> chosen;
    Numbers numbers(99);
    size_t found = 0;
    for (int question = 0; question < 300; ++question) {
        const Row& row = filled.rows[numbers.below(static_cast<uint32_t>(filled.rows.size()))];
        std::set<std::string> names;
        std::copy_if(filters.begin(), filters.end(), std::inserter(names, names.end()),
                     [&](const std::string&) { return numbers.below(2) == 0; });
        const Given given = givenBy(row, names);
        found += filled.picked(given).empty() ? 0 : 1;
        chosen.insert(expectTold(GetParam(), given, expectAnswered(filled, given)));
    }
    EXPECT_GT(found, 100U);
    EXPECT_GT(chosen.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Filled, EachTable, testing::ValuesIn(allFacts()), kTableName);

TEST_F(FilledTables, are_all_that_a_layer_has) {
    const Json counts = ask("count", "l3", {}).document;
    Json expected = Json::array();
    for (const FilledTable& table : tables) {
        if (table.facts->isOfLayer3())
            expected.push_back({{"table", table.facts->databaseName}, {"count", table.rows.size()}});
    }
    EXPECT_EQ(counts, (Json{{"tables", expected}}));
}

// The rows of all tables that show tells as members of 'entry': of l3-elb those with elbFlagA 0.
Lines membersOf(const std::vector<FilledTable>& tables, const Row& entry) {
    Lines members;
    for (const FilledTable& table : tables) {
        const std::string& name = table.facts->name;
        if (!table.facts->isOfLayer3() || name == "l3-mfib" || name == "glbcfg") continue;
        for (const Row& row : table.rows) {
            if (!isOfEntry(row, entry) || (name == "l3-elb" && row.filters.at("flag-a") != "0")) continue;
            members.insert(joined(row.shown, {{"table", table.facts->databaseName}}).dump());
        }
    }
    return members;
}

TEST_F(FilledTables, show_the_members_of_each_route) {
    const FilledTable& routes = tableNamed("l3-mfib");
    for (const Given& given : {Given{}, Given{{"vr", "1"}, {"group", "ff0e::1"}}, routes.keyOf(routes.rows.at(3))}) {
        const Answer answer = ask("show", "l3-mfib", joined(given, {{"members", ""}}));
        ASSERT_EQ(answer.failure, "");
        Json entries = answer.document.at("entries");
        std::map<std::string, Lines> shown;
        for (Json& entry : entries) {
            const Json members = entry.at("members");
            entry.erase("members");
            const Lines line = linesOf(Json::array({entry}));
            shown[*line.begin()] = linesOf(members);
        }
        std::map<std::string, Lines> expected;
        for (const Row& row : routes.picked(given)) expected[row.shown.dump()] = membersOf(tables, row);
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(shown.size(), expected.size());
        for (const auto& [route, members] : expected) {
            ASSERT_TRUE(shown.contains(route)) << route;
            EXPECT_EQ(differences(shown.at(route), members), "") << route;
        }
    }
}

TEST_F(FilledTables, have_members_of_every_kind) {
    const FilledTable& routes = tableNamed("l3-mfib");
    std::set<std::string> kinds;
    for (const Row& route : routes.rows) {
        for (const std::string& line : membersOf(tables, route)) kinds.insert(Json::parse(line).at("table"));
    }
    EXPECT_EQ(kinds.size(), l3Facts().size() - 2);
}

}  // namespace
}  // namespace mcast6::ctl::test
