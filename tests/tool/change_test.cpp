// count --fast, smooth and delete of the filled tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tests/tool/model.h"

namespace mcast6::ctl::test {
namespace {

TEST_F(FilledTables, are_counted_fast_as_they_change) {
    size_t counted = 0;
    for (FilledTable& table : tables) {
        if (!table.facts->countsFast) continue;
        ++counted;
        while (!table.rows.empty()) {
            const Answer answer = ask("count", table.facts->name, {{"fast", ""}});
            EXPECT_EQ(answer.document, (Json{{"table", table.facts->databaseName}, {"count", table.rows.size()}}));
            EXPECT_EQ(answer.told, "");
            EXPECT_EQ(ask("delete", table.facts->name, table.keyOf(table.rows.back())).failure, "");
            table.rows.pop_back();
        }
        EXPECT_EQ(ask("count", table.facts->name, {{"fast", ""}}).document.at("count"), 0);
        EXPECT_EQ(ask("count", table.facts->name, {{"fast", ""}, {"vr", "0"}}).failure,
                  "--fast counts the whole table: it goes without --vr");
    }
    EXPECT_EQ(counted, 4U);
}

TEST_F(FilledTables, lose_the_one_record_of_a_key) {
    for (FilledTable& table : tables) {
        const TableFacts& facts = *table.facts;
        if (!facts.isDeletable) continue;
        SCOPED_TRACE(facts.name);
        while (!table.rows.empty()) {
            const Given key = table.keyOf(table.rows.back());
            // What has its usual value need not be given.
            Given given = key;
            std::erase_if(given, [&](const auto& part) {
                return facts.unless.contains(part.first) && facts.unless.at(part.first) == part.second;
            });
            Json expected{{"table", facts.databaseName}, {"deleted", 1}};
            if (facts.areEntries()) expected["membersDeleted"] = removeMembers(tables, {table.rows.back()});
            table.rows.pop_back();
            const Answer answer = ask("delete", facts.name, given);
            EXPECT_EQ(answer.document, expected) << answer.failure;
            expectAnswered(table, {});
            expectAnswered(table, key);
            EXPECT_TRUE(ask("delete", facts.name, key).failure.starts_with(facts.name + ": no entry for "));
        }
    }
    expectAll();
}

// The rows that go.
std::vector<Row> stale(const FilledTable& table, uint32_t version, const Given& filters) {
    std::vector<Row> rows = table.picked(filters);
    std::erase_if(rows, [&](const Row& row) { return row.version >= version; });
    return rows;
}

// Asks what would go, smooths and compares; returns how many went.
size_t expectSmoothed(std::vector<FilledTable>& tables, FilledTable& table, uint32_t version, const Given& filters) {
    const TableFacts& facts = *table.facts;
    const Given given = joined(filters, {{"version", std::to_string(version)}});
    const size_t before = table.picked(filters).size();
    const std::vector<Row> gone = stale(table, version, filters);
    Json expected{{"table", facts.databaseName},
                  {"version", version},
                  {"before", before},
                  {"deleted", gone.size()},
                  {"after", before - gone.size()}};
    const std::vector<FilledTable> untouched = tables;
    if (facts.areEntries()) expected["membersDeleted"] = removeMembers(tables, gone);
    Answer dry = ask("smooth", facts.name, joined(given, {{"dry-run", ""}}));
    EXPECT_EQ(differences(linesOf(dry.document.at("entries")), linesOf(gone)), "");
    dry.document.erase("entries");
    EXPECT_EQ(dry.document, joined(expected, {{"dryRun", true}})) << dry.failure;
    for (const FilledTable& other : untouched) {
        if (facts.areEntries() || other.facts == table.facts) expectAnswered(other, {});
    }
    for (const Row& row : gone) {
        table.remove([&](const Row& other) { return table.keyOf(other) == table.keyOf(row); });
    }
    const Answer answer = ask("smooth", facts.name, given);
    EXPECT_EQ(answer.document, expected) << answer.failure;
    expectAnswered(table, {});
    return gone.size();
}

TEST_F(FilledTables, are_smoothed_by_version_and_filters) {
    for (FilledTable& table : tables) {
        if (!table.facts->hasVersion) continue;
        SCOPED_TRACE(table.facts->name);
        EXPECT_EQ(expectSmoothed(tables, table, 0, {}), 0U);
        // What one filter picks, each filter in turn.
        const auto stale =
            std::find_if(table.rows.begin(), table.rows.end(), [](const Row& row) { return row.version == 0; });
        ASSERT_NE(stale, table.rows.end());
        const Given filters = stale->filters;
        EXPECT_GT(expectSmoothed(tables, table, 1, {{"vr", filters.at("vr")}}), 0U);
        for (const auto& [name, text] : filters) {
            if (text != kNotPicked) expectSmoothed(tables, table, 1, {{name, text}});
        }
        EXPECT_GT(expectSmoothed(tables, table, 2, {}), 0U);
        EXPECT_GT(expectSmoothed(tables, table, 3, {}), 0U);
        EXPECT_TRUE(table.rows.empty());
    }
    expectAll();
}

// The tables of layer 3 that smooth l3 smooths.
bool isSmoothed(const TableFacts& facts) { return facts.isOfLayer3() && (facts.hasVersion || facts.isDeletable); }

// What smooth l3 takes away from 'tables', by the rows that 'filters' pick; the entries that go take their members
// along.
Json smoothLayer(std::vector<FilledTable>& tables, uint32_t version, const Given& filters) {
    FilledTable& routes = tables.at(0);
    EXPECT_EQ(routes.facts->name, "l3-mfib");
    const std::vector<Row> gone = stale(routes, version, filters);
    const auto isOfAny = [](const Row& row, const std::vector<Row>& entries) {
        return std::any_of(entries.begin(), entries.end(), [&](const Row& entry) { return isOfEntry(row, entry); });
    };
    Json expected = Json::array();
    for (FilledTable& table : tables) {
        const TableFacts& facts = *table.facts;
        if (!isSmoothed(facts)) continue;
        const std::vector<Row> picked = table.picked(filters);
        std::set<Given> keys;
        for (const Row& row : picked) {
            const bool isMember = !facts.areEntries() && facts.name != "glbcfg";
            const bool goes = facts.hasVersion ? row.version < version : !isOfAny(row, routes.rows);
            if (goes || (isMember && isOfAny(row, gone))) keys.insert(table.keyOf(row));
        }
        table.remove([&](const Row& row) { return keys.contains(table.keyOf(row)); });
        expected.push_back({{"table", facts.databaseName},
                            {"before", picked.size()},
                            {"deleted", keys.size()},
                            {"after", picked.size() - keys.size()}});
    }
    return expected;
}

TEST_F(FilledTables, are_smoothed_with_their_layer) {
    for (const uint32_t version : {0U, 1U, 2U, 3U}) {
        const std::vector<FilledTable> untouched = tables;
        const Json expected = smoothLayer(tables, version, {});
        const Given given{{"version", std::to_string(version)}};
        const Answer dry = ask("smooth", "l3", joined(given, {{"dry-run", ""}}));
        EXPECT_EQ(dry.document, (Json{{"version", version}, {"tables", expected}, {"dryRun", true}})) << dry.failure;
        for (const FilledTable& table : untouched) expectAnswered(table, {});
        const Answer answer = ask("smooth", "l3", given);
        EXPECT_EQ(answer.document, (Json{{"version", version}, {"tables", expected}})) << answer.failure;
        expectAll();
    }
    EXPECT_TRUE(tableNamed("l3-elb").rows.empty());
    EXPECT_FALSE(tableNamed("l3-sub-elb").rows.empty());
}

TEST_F(FilledTables, are_smoothed_and_counted_by_router_and_routing_table) {
    for (const Given& filters : {Given{{"vr", "1"}}, Given{{"vrf", "main"}}, Given{{"vr", "0"}, {"vrf", "100"}}}) {
        Given picking = filters;  // as the rows have it
        if (filters.contains("vrf") && filters.at("vrf") == "main") picking["vrf"] = "254";
        Json counts = Json::array();
        for (const FilledTable& table : tables) {
            if (!table.facts->isOfLayer3()) continue;
            counts.push_back({{"table", table.facts->databaseName}, {"count", table.picked(picking).size()}});
        }
        EXPECT_EQ(ask("count", "l3", filters).document, (Json{{"tables", counts}}));
        const Json expected = smoothLayer(tables, 2, picking);
        const Answer answer = ask("smooth", "l3", joined(filters, {{"version", "2"}}));
        EXPECT_EQ(answer.document, (Json{{"version", 2}, {"tables", expected}})) << answer.failure;
        expectAll();
    }
}

TEST_F(FilledTables, keep_the_members_of_a_deleted_entry_when_asked) {
    FilledTable& routes = tableNamed("l3-mfib");
    const Given key = routes.keyOf(routes.rows.back());
    routes.rows.pop_back();
    const Answer answer = ask("delete", "l3-mfib", joined(key, {{"keep-members", ""}}));
    EXPECT_EQ(answer.document, (Json{{"table", "l3mc6_mfib"}, {"deleted", 1}, {"membersDeleted", 0}}));
    expectAll();
}

}  // namespace
}  // namespace mcast6::ctl::test
