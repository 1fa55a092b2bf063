// import mroute against real captures: every route arrives, once, with its interfaces.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <ostream>
#include <set>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

struct Capture {
    const char* folder;
    uint64_t routes;
    std::map<uint64_t, uint64_t> byTable;
    uint64_t anySource;
    uint64_t register_;  // routes that come in or go out by the register interface
};

void PrintTo(const Capture& capture, std::ostream* out) { *out << capture.folder; }

class Captures : public testing::TestWithParam<Capture> {};

TEST_P(Captures, are_imported_completely) {
    const Capture& capture = GetParam();
    const Outcome outcome = runScript(importLine(capture.folder) + "count l3-mfib\nshow l3-mfib\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 3U);

    const Json& summary = all[0];
    EXPECT_EQ(summary.at("read"), capture.routes);
    EXPECT_EQ(summary.at("new"), capture.routes);
    const Json change = only(summary.at("tables"), "table", "l3mc6_mfib");
    EXPECT_EQ(change.at("before"), 0);
    EXPECT_EQ(change.at("new"), capture.routes);
    EXPECT_EQ(change.at("after"), capture.routes);
    for (const char* none : {"replaced", "restamped", "skipped", "refused"}) EXPECT_EQ(summary.at(none), 0) << none;
    std::map<uint64_t, uint64_t> newByTable;
    for (const Json& vrf : summary.at("byVrf")) newByTable[vrf.at("vrfId")] = vrf.at("new");
    EXPECT_EQ(newByTable, capture.byTable);

    EXPECT_EQ(all[1].at("count"), capture.routes);
    std::map<uint64_t, uint64_t> shownByTable;
    std::set<std::string> keys;
    uint64_t anySource = 0;
    uint64_t registered = 0;
    for (const Json& entry : all[2].at("entries")) {
        ++shownByTable[entry.at("vrfId")];
        anySource += entry.at("sourceAddr") == "::" ? 1 : 0;
        registered += entry.at("regIfIndex") != 0 ? 1 : 0;
        keys.insert(entry.at("vrfId").dump() + entry.at("sourceAddr").dump() + entry.at("groupAddr").dump());
        EXPECT_EQ(entry.at("vrId"), 0);
        EXPECT_NE(entry.at("inIfIndex"), 0);
    }
    EXPECT_EQ(shownByTable, capture.byTable);
    EXPECT_EQ(keys.size(), capture.routes);
    EXPECT_EQ(anySource, capture.anySource);
    EXPECT_EQ(registered, capture.register_);
}

INSTANTIATE_TEST_SUITE_P(Import, Captures,
                         testing::Values(Capture{"small", 11, {{254, 9}, {100, 2}}, 2, 2},
                                         Capture{"medium", 1000, {{254, 700}, {100, 300}}, 24, 14},
                                         Capture{"large", 20000, {{254, 12000}, {100, 6000}, {200, 2000}}, 500, 240}),
                         [](const auto& instance) { return std::string(instance.param.folder); });

// The interfaces of each route of the capture, by the capture's own link list.
TEST(Import, keeps_the_incoming_and_the_register_interface_of_every_route) {
    for (const char* folder : {"small", "medium"}) {
        std::map<std::string, uint64_t> indexOf;
        std::ifstream linkFile(sample(std::string(folder) + "/rt.link.json"));
        for (const Json& link : Json::parse(linkFile)) indexOf[link.at("ifname")] = link.at("ifindex");
        std::map<std::string, Json> expected;
        std::ifstream routeFile(sample(std::string(folder) + "/rt.mroute.json"));
        for (const Json& route : Json::parse(routeFile)) {
            bool registers = route.at("iif") == "pim6reg";
            for (const Json& path : route.at("multipath")) registers = registers || path.at("oif") == "pim6reg";
            const std::string key = route.value("table", "254") + " " + route.at("src").get<std::string>() + " " +
                                    route.at("dst").get<std::string>();
            expected[key] = {indexOf.at(route.at("iif")), route.at("iif"), registers ? indexOf.at("pim6reg") : 0};
        }
        const Outcome outcome = runScript(importLine(folder) + "show l3-mfib\n", {"--json"});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        std::map<std::string, Json> shown;
        const Json document = documents(outcome.out).at(1);
        for (const Json& entry : document.at("entries")) {
            const std::string key = entry.at("vrfId").dump() + " " + entry.at("sourceAddr").get<std::string>() + " " +
                                    entry.at("groupAddr").get<std::string>();
            shown[key] = {entry.at("inIfIndex"), entry.at("inIfName"), entry.at("regIfIndex")};
        }
        EXPECT_EQ(shown, expected) << folder;
    }
}

TEST(Import, takes_the_capture_from_standard_input_plain_or_compressed) {
    for (const char* name : {"small/rt.mroute.json", "large/rt.mroute.json.gz"}) {
        std::ifstream file(sample(name), std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        const bool large = std::string(name).starts_with("large");
        const std::string links = sample(large ? "large/rt.link.json.gz" : "small/rt.link.json");
        const Outcome outcome = run({"import", "mroute", "-", "--links", links, "--json"}, bytes);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        const Json summary = documents(outcome.out).at(0);
        EXPECT_EQ(summary.at("file"), "standard input");
        EXPECT_EQ(summary.at("new"), large ? 20000 : 11);
    }
}

TEST(Import, tells_its_summary_as_a_table_by_vrf) {
    const Outcome outcome = runScript(importLine("small", "--smooth-version 3"));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    ASSERT_EQ(all.size(), 10U);
    EXPECT_EQ(all[0], "VRF  READ  NEW  REPLACED  RE-STAMPED  SKIPPED  REFUSED");
    EXPECT_EQ(all[1], "100     2    2         0           0        0        0");
    EXPECT_EQ(all[2], "254     9    9         0           0        0        0");
    EXPECT_EQ(all[3], "all    11   11         0           0        0        0");
    EXPECT_EQ(all[4], "TABLE            BEFORE  NEW  REPLACED  RE-STAMPED  REMOVED  AFTER");
    EXPECT_EQ(all[5], "l3-mfib               0   11         0           0        0     11");
    EXPECT_EQ(all[6], "glbcfg                0    2         0           0        0      2");
    EXPECT_EQ(all[7], "l3-register-elb       0    1         0           0        0      1");
    EXPECT_EQ(all[8], "l3-elb                0   17         0           0        0     17");
    EXPECT_EQ(all[9],
              sample("small/rt.mroute.json") + ", smooth version 3: 18 outgoing interfaces of the routes imported");
}

TEST(Import, puts_all_entries_into_the_virtual_router_that_is_given) {
    const Outcome outcome = runScript(importLine("small", "--vr 7") + importLine("small") +
                                          "count l3-mfib --vr 7\ncount l3-mfib --vr 7 --vrf 100\ncount l3-mfib\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(2).at("count"), 11);
    EXPECT_EQ(all.at(3).at("count"), 2);
    EXPECT_EQ(all.at(4).at("count"), 22);
}

TEST(Import, skips_an_unresolved_route_and_says_so) {
    const std::string file = sample("small/events.unresolved.rt.mroute.json");
    const Outcome outcome =
        run({"import", "mroute", file, "--links", sample("small/rt.link.json"), "--strict", "--json"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err,
              "mcast6ctl: " + file +
                  ": entry 10 (source 2001:db8:20::ff, group ff0e::ee:7): skipped: the route is unresolved\n");
    const Json summary = documents(outcome.out).at(0);
    EXPECT_EQ(summary.at("read"), 12);
    EXPECT_EQ(summary.at("new"), 11);
    EXPECT_EQ(summary.at("skipped"), 1);
    EXPECT_EQ(summary.at("refused"), 0);
}

// The later capture has the same routes but for two that lost their incoming interface, and one that is new.
TEST(Reimport, restamps_what_is_kept_and_smoothing_deletes_what_vanished) {
    const std::string later = "import mroute '" + sample("small/events.after.rt.mroute.json") + "' --links '" +
                              sample("small/rt.link.json") + "' --smooth-version 2\n";
    const Outcome outcome = runScript(
        importLine("small", "--smooth-version 1") + later + "show l3-mfib\nsmooth l3-mfib --version 2\nshow l3-mfib\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    const Json& summary = all.at(1);
    EXPECT_EQ(summary.at("read"), 12);
    EXPECT_EQ(summary.at("new"), 1);
    EXPECT_EQ(summary.at("restamped"), 9);
    EXPECT_EQ(summary.at("replaced"), 0);
    EXPECT_EQ(summary.at("skipped"), 2);
    EXPECT_EQ(only(summary.at("tables"), "table", "l3mc6_mfib"), (Json{{"table", "l3mc6_mfib"},
                                                                       {"before", 11},
                                                                       {"new", 1},
                                                                       {"replaced", 0},
                                                                       {"restamped", 9},
                                                                       {"removed", 0},
                                                                       {"after", 12}}));
    std::map<uint64_t, uint64_t> versions;
    for (const Json& entry : all.at(2).at("entries")) ++versions[entry.at("smoothVersion")];
    EXPECT_EQ(versions, (std::map<uint64_t, uint64_t>{{1, 2}, {2, 10}}));
    const Json smoothed = {{"table", "l3mc6_mfib"}, {"version", 2}, {"before", 12},
                           {"deleted", 2},          {"after", 10},  {"membersDeleted", 5}};
    EXPECT_EQ(all.at(3), smoothed);
    std::set<std::string> left;
    for (const Json& entry : all.at(4).at("entries")) {
        EXPECT_EQ(entry.at("smoothVersion"), 2);
        left.insert(entry.at("sourceAddr").get<std::string>() + " " + entry.at("groupAddr").get<std::string>());
    }
    EXPECT_FALSE(left.contains("2001:db8:44::a1 ff0e::10:1"));
    EXPECT_FALSE(left.contains(":: ::"));
    EXPECT_TRUE(left.contains("2001:db8:20::ff ff0e::ee:7"));
}

TEST(Reimport, writes_an_entry_whose_interface_changed_and_the_library_counts_it) {
    const std::string faulty = "import mroute '" + sample("made/faulty.rt.mroute.json") + "' --links '" +
                               sample("small/rt.link.json") + "' --smooth-version 2\n";
    const Outcome outcome = runScript(
        importLine("small", "--smooth-version 1") + faulty + "show l3-mfib --vrf 254 --group ff0e::99:1\nstats\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, kPartial) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(1).at("replaced"), 1);
    EXPECT_EQ(all.at(1).at("refused"), 3);
    EXPECT_EQ(only(all.at(1).at("tables"), "table", "l3mc6_mfib").at("after"), 11);
    ASSERT_EQ(all.at(2).at("entries").size(), 1U);
    EXPECT_EQ(all.at(2).at("entries").at(0).at("inIfName"), "m2");
    EXPECT_EQ(all.at(2).at("entries").at(0).at("smoothVersion"), 2);
    const Json tolerated = all.at(3).at("errorStatistics");
    ASSERT_EQ(tolerated.size(), 1U);
    EXPECT_EQ(tolerated.at(0).at("table"), "l3mc6_mfib");
    EXPECT_EQ(tolerated.at(0).at("kind"), 1);
    EXPECT_EQ(tolerated.at(0).at("count"), 1);
}

TEST(Reimport, follows_the_register_interface) {
    const auto line = [](const char* name, const char* outgoing) {
        const std::string file =
            writeFile(name, std::string(R"([{"src":"::1","dst":"ff0e::1","iif":"m1","multipath":[{"oif":")") +
                                outgoing + "\"}]}]");
        return "import mroute '" + file + "' --links '" + sample("small/rt.link.json") + "'\nshow l3-mfib\n";
    };
    const Outcome outcome = runScript(
        line("plain.json", "m2") + line("registering.json", "pim6reg") + line("plain.json", "m3"), {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    for (const auto& [position, regIfIndex] : std::map<size_t, uint64_t>{{1, 0}, {3, 8}, {5, 0}}) {
        EXPECT_EQ(all.at(position).at("entries").at(0).at("regIfIndex"), regIfIndex) << position;
    }
    EXPECT_EQ(all.at(2).at("replaced"), 1);
    EXPECT_EQ(all.at(4).at("replaced"), 1);
}

TEST(Reimport, of_the_same_large_capture_only_restamps) {
    const Outcome outcome =
        runScript(importLine("large", "--smooth-version 1") + importLine("large", "--smooth-version 2") +
                      "smooth l3-mfib --version 2\nsmooth l3-mfib --version 3 --vrf 200\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(1).at("restamped"), 20000);
    EXPECT_EQ(all.at(1).at("new"), 0);
    EXPECT_EQ(all.at(2).at("deleted"), 0);
    EXPECT_EQ(all.at(2).at("after"), 20000);
    // A filter limits what is smoothed, and its counts.
    EXPECT_EQ(all.at(3).at("before"), 2000);
    EXPECT_EQ(all.at(3).at("deleted"), 2000);
    EXPECT_EQ(all.at(3).at("after"), 0);
}

}  // namespace
}  // namespace mcast6::ctl::test
