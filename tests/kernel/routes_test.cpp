// Routes applied to the tables: what they ask the engine for, and what they leave there.
#include "kernel/apply/routes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "kernel/apply/layer3_tables.h"
#include "kernel/capture/route_numbers.h"
#include "platform/schema/catalog.h"
#include "platform/store/memory/memory_store.h"
#include "tests/platform/embedded_engine.h"
#include "tests/platform/recorder.h"

namespace mcast6::kernel {
namespace {

using recording::Recorder;

// The engine lives as long as the process, as the library's cached objects do; a test takes groups of its own.
class RouteTablesTest : public testing::Test {
protected:
    RouteTablesTest() {
        static engine::Engine engine(store::makeMemoryStore(schema::catalog()), schema::catalog());
        static recording::EmbeddedEngine behind(engine);
        static const bool kReady = (platform.reset(), platform.forwardTo(&behind), true);
        EXPECT_TRUE(kReady);
        for (uint32_t index : {1U, 2U, 3U}) put(index, "");
        put(4, "vlan");
        empty(kL3Mc6Mfib);
        empty(kL3Mc6Elb);
        empty(kL3Mc6VlanElb);
        platform.takeTrace();
    }

    void put(uint32_t index, const std::string& kind) {
        Link link;
        link.index = index;
        link.name = "m" + std::to_string(index);
        link.kind = kind;
        link.vlanId = kind == "vlan" ? 7 : 0;
        links.put(link);
    }

    template <class Record>
    static void empty(const TableOperations<Record>& table) {
        for (const Record& record : all(table)) EXPECT_EQ(table.remove(&record), 0U);
    }

    template <class Record>
    static std::vector<Record> all(const TableOperations<Record>& table) {
        std::vector<Record> records;
        Walk<Record> walk(table, table.openAll());
        for (Record record{}; walk.next(&record);) records.push_back(record);
        return records;
    }

    static Route route(uint32_t group, const std::vector<uint32_t>& outgoing) {
        Route route;
        route.table = 254;
        route.group.word[0] = 0xFF0E0000;
        route.group.word[3] = group;
        route.inIfIndex = 1;
        route.outIfIndexes = outgoing;
        return route;
    }

    // The engine's calls since the last time.
    std::vector<std::string> calls() {
        std::vector<std::string> lines = platform.takeTrace();
        const auto isNone = [](const std::string& line) {
            const auto begins = [&](const char* word) { return line.starts_with(word); };
            return begins("dfx") || begins("kpi") || begins("time") || begins("memcpy") || begins("log");
        };
        lines.erase(std::remove_if(lines.begin(), lines.end(), isNone), lines.end());
        return lines;
    }

    static size_t counted(const std::vector<std::string>& lines, const std::string& word) {
        return static_cast<size_t>(std::count_if(
            lines.begin(), lines.end(), [&](const std::string& line) { return line.find(word) != std::string::npos; }));
    }

    Recorder& platform = Recorder::instance();
    LinkTable links;
};

// An object made, its row set, written, released: for the entry and for its member, and nothing else.
TEST_F(RouteTablesTest, writeANewRouteWithoutLookingForIt) {
    RouteTables tables(links, 0, 1);
    EXPECT_EQ(tables.route(route(1, {2}), true), Fate::kNew);
    calls();
    EXPECT_EQ(tables.route(route(2, {2}), true), Fate::kNew);
    const std::vector<std::string> made = calls();
    EXPECT_EQ(made.size(), 8U) << testing::PrintToString(made);
    for (const char* word : {"create l3mc6_mfib", "create l3mc6_elb", "set_all l3mc6_mfib", "set_all l3mc6_elb",
                             "release l3mc6_mfib", "release l3mc6_elb"}) {
        EXPECT_EQ(counted(made, word), 1U) << word;
    }
    EXPECT_EQ(counted(made, "write "), 2U);
}

// A route that may have been there is read; a new one still has no member that could have vanished.
TEST_F(RouteTablesTest, lookForNoMembersOfANewEntry) {
    RouteTables tables(links, 0, 1);
    tables.route(route(1, {2}));
    calls();
    EXPECT_EQ(tables.route(route(2, {2, 3})), Fate::kNew);
    const std::vector<std::string> made = calls();
    EXPECT_EQ(counted(made, "iter"), 0U) << testing::PrintToString(made);
    EXPECT_EQ(counted(made, "read "), 1U) << testing::PrintToString(made);
}

// Of the tables of members, only the one that holds any is searched.
TEST_F(RouteTablesTest, lookForMembersOnlyWhereThereMayBeSome) {
    RouteTables(links, 0, 1).route(route(1, {2, 3}));
    RouteTables tables(links, 0, 2);
    tables.route(route(2, {2}));
    calls();
    EXPECT_EQ(tables.route(route(1, {3})), Fate::kRestamped);
    const std::vector<std::string> made = calls();
    EXPECT_EQ(counted(made, "l3mc6_vlan_elb"), 0U) << testing::PrintToString(made);
    EXPECT_EQ(counted(made, "l3mc6_register_elb"), 0U);
    EXPECT_EQ(counted(made, "remove "), 1U);
    ASSERT_EQ(all(kL3Mc6Elb).size(), 2U);
    EXPECT_EQ(tables.changes().size(), 5U);
}

// Members that were left behind when their entry was deleted do not come back with it.
TEST_F(RouteTablesTest, removeWhatAnEntryOfTheSameKeyLeft) {
    RouteTables(links, 0, 1).route(route(1, {2, 3, 4}));
    empty(kL3Mc6Mfib);
    RouteTables tables(links, 0, 1);
    EXPECT_EQ(tables.route(route(1, {3}), true), Fate::kNew);
    const auto plain = all(kL3Mc6Elb);
    ASSERT_EQ(plain.size(), 1U);
    EXPECT_EQ(plain[0].outIfIndex, 3U);
    EXPECT_EQ(all(kL3Mc6VlanElb).size(), 0U);
}

// As notifications give them: the same route again and again, with other interfaces.
TEST_F(RouteTablesTest, followARouteThatChanges) {
    RouteTables tables(links, 0, 1);
    EXPECT_EQ(tables.route(route(1, {2, 4})), Fate::kNew);
    EXPECT_EQ(tables.route(route(1, {2, 3})), Fate::kRestamped);
    EXPECT_EQ(all(kL3Mc6Elb).size(), 2U);
    EXPECT_EQ(all(kL3Mc6VlanElb).size(), 0U);
    Route moved = route(1, {});
    moved.inIfIndex = 3;
    EXPECT_EQ(tables.route(moved), Fate::kReplaced);
    EXPECT_EQ(all(kL3Mc6Elb).size(), 0U);
    ASSERT_EQ(all(kL3Mc6Mfib).size(), 1U);
    EXPECT_EQ(all(kL3Mc6Mfib)[0].inIfIndex, 3U);
}

TEST_F(RouteTablesTest, tellAnOperationThatFailed) {
    RouteTables tables(links, 0, 1);
    tables.route(route(1, {2}));
    platform.answer("db_write_obj", 120007);
    try {
        tables.route(route(2, {2}), true);
        ADD_FAILURE() << "it did not fail";
    } catch (const TableError& error) {
        EXPECT_STREQ(error.what(), "writing its record of l3mc6_mfib");
        EXPECT_EQ(error.code(), 120007U);
    }
}

TEST_F(RouteTablesTest, knowTheEntryThatHadARouteFirst) {
    RouteNumbers numbers;
    for (uint32_t number = 1; number <= 5000; ++number) {
        EXPECT_EQ(numbers.firstOf(route(number, {}), number), 0U);
    }
    for (uint32_t number = 1; number <= 5000; ++number) {
        EXPECT_EQ(numbers.firstOf(route(number, {}), 9000), number);
    }
    Route other = route(1, {});
    other.table = 100;
    EXPECT_EQ(numbers.firstOf(other, 9001), 0U);
    other.source.word[0] = 1;
    EXPECT_EQ(numbers.firstOf(other, 9002), 0U);
    EXPECT_EQ(numbers.firstOf(other, 9003), 9002U);
}

}  // namespace
}  // namespace mcast6::kernel
