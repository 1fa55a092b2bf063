// count --fast, smooth and delete of the filled tables.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

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
            table.rows.pop_back();
            const Answer answer = ask("delete", facts.name, given);
            EXPECT_EQ(answer.document, (Json{{"table", facts.databaseName}, {"deleted", 1}})) << answer.failure;
            expectAnswered(table, {});
            expectAnswered(table, key);
            EXPECT_TRUE(ask("delete", facts.name, key).failure.starts_with(facts.name + ": no entry for "));
        }
    }
    expectAll();
}

// Smooths and compares; returns how many went.
size_t expectSmoothed(FilledTable& table, uint32_t version, const Given& filters) {
    const TableFacts& facts = *table.facts;
    const size_t before = table.picked(filters).size();
    std::vector<Row> stale = table.picked(filters);
    std::erase_if(stale, [&](const Row& row) { return row.version >= version; });
    for (const Row& row : stale) {
        table.remove([&](const Row& other) { return table.keyOf(other) == table.keyOf(row); });
    }
    const Answer answer = ask("smooth", facts.name, joined(filters, {{"version", std::to_string(version)}}));
    EXPECT_EQ(answer.document, (Json{{"table", facts.databaseName},
                                     {"version", version},
                                     {"before", before},
                                     {"deleted", stale.size()},
                                     {"after", before - stale.size()}}))
        << answer.failure;
    expectAnswered(table, {});
    return stale.size();
}

TEST_F(FilledTables, are_smoothed_by_version_and_filters) {
    for (FilledTable& table : tables) {
        if (!table.facts->hasVersion) continue;
        SCOPED_TRACE(table.facts->name);
        EXPECT_EQ(expectSmoothed(table, 0, {}), 0U);
        // What one filter picks, each filter in turn.
        const auto stale =
            std::find_if(table.rows.begin(), table.rows.end(), [](const Row& row) { return row.version == 0; });
        ASSERT_NE(stale, table.rows.end());
        const Given filters = stale->filters;
        EXPECT_GT(expectSmoothed(table, 1, {{"vr", filters.at("vr")}}), 0U);
        for (const auto& [name, text] : filters) {
            if (text != kNotPicked) expectSmoothed(table, 1, {{name, text}});
        }
        EXPECT_GT(expectSmoothed(table, 2, {}), 0U);
        EXPECT_GT(expectSmoothed(table, 3, {}), 0U);
        EXPECT_TRUE(table.rows.empty());
    }
    expectAll();
}

TEST_F(FilledTables, are_smoothed_with_their_layer) {
    const FilledTable& routes = tableNamed("l3-mfib");
    for (const uint32_t version : {0U, 2U, 3U}) {
        size_t orphans = 0;
        Json expected = Json::array();
        for (FilledTable& table : tables) {
            if (!table.facts->isOfLayer3() || (!table.facts->hasVersion && !table.facts->isDeletable)) continue;
            const size_t before = table.rows.size();
            const size_t deleted = table.remove([&](const Row& row) {
                if (table.facts->hasVersion) return row.version < version;
                return std::none_of(routes.rows.begin(), routes.rows.end(),
                                    [&](const Row& route) { return isOfEntry(row, route); });
            });
            orphans += table.facts->hasVersion ? 0 : deleted;
            expected.push_back({{"table", table.facts->databaseName},
                                {"before", before},
                                {"deleted", deleted},
                                {"after", table.rows.size()}});
        }
        const Answer answer = ask("smooth", "l3", {{"version", std::to_string(version)}});
        EXPECT_EQ(answer.document, (Json{{"version", version}, {"tables", expected}})) << answer.failure;
        EXPECT_GT(orphans, 0U);
        expectAll();
    }
    EXPECT_TRUE(tableNamed("l3-elb").rows.empty());
    EXPECT_FALSE(tableNamed("l3-sub-elb").rows.empty());
}

}  // namespace
}  // namespace mcast6::ctl::test
