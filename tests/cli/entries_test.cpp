// Entries go with their members, in both layers; what would go is told; bridges are named in every option.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

const char* const kEntry = " --bd br10 --group ff0e::10:1 --source any";

std::map<std::string, uint64_t> countsOf(const Json& document) {
    std::map<std::string, uint64_t> counts;
    for (const Json& table : document.at("tables")) counts[table.at("table")] = table.at("count");
    return counts;
}

TEST(Entries, of_layer_2_are_deleted_with_their_members) {
    for (const char* table : {"l2-mfib", "l2-bd-mfib"}) {
        const Outcome outcome = runScript(importBridgeLine("small") + "show l2-mfib --members" + kEntry +
                                              "\ncount l2\ndelete " + table + kEntry + "\ncount l2\n",
                                          {"--json"});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        const std::vector<Json> all = documents(outcome.out);
        const Json& members = all.at(1).at("entries").at(0).at("members");
        ASSERT_EQ(members.size(), 3U);
        std::map<std::string, uint64_t> expected = countsOf(all.at(2));
        --expected.at("l2mc6_bd_mfib");
        for (const Json& member : members) --expected.at(member.at("table"));
        EXPECT_EQ(all.at(3), (Json{{"table", "l2mc6_bd_mfib"}, {"deleted", 1}, {"membersDeleted", 3}}));
        EXPECT_EQ(countsOf(all.at(4)), expected);
    }
}

TEST(Entries, of_vlans_are_deleted_by_the_name_of_their_bridge) {
    const Outcome listed = runScript(importBridgeLine("vlan") + "show l2-vlan-mfib\n", {"--json"});
    ASSERT_EQ(listed.exitCode, 0) << listed.err;
    const Json entry = documents(listed.out).at(1).at("entries").at(0);
    const std::string key = " --vr " + entry.at("vrName").get<std::string>() + " --vlan " + entry.at("vlanId").dump() +
                            " --group " + entry.at("groupAddr").get<std::string>() + " --source " +
                            entry.at("sourceAddr").get<std::string>();
    const Outcome outcome =
        runScript(importBridgeLine("vlan") + "count l2-mfib" + key + "\ncount l2-elb" + key + "\ndelete l2-mfib" + key +
                      "\ncount l2-mfib" + key + "\ncount l2-elb" + key + "\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(1).at("count"), 1);
    EXPECT_GT(all.at(2).at("count"), 0);
    EXPECT_EQ(all.at(3).at("membersDeleted"), all.at(2).at("count"));
    EXPECT_EQ(all.at(4).at("count"), 0);
    EXPECT_EQ(all.at(5).at("count"), 0);
}

TEST(Entries, keep_their_members_when_asked) {
    const Outcome outcome = runScript(importBridgeLine("small") + "count bd-untag-elb\ndelete l2-mfib" + kEntry +
                                      " --keep-members\ncount bd-untag-elb\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    ASSERT_GE(all.size(), 3U);
    EXPECT_EQ(all[all.size() - 2], "l2-bd-mfib: deleted vr 0, bd br10, group ff0e::10:1, source any");
    EXPECT_EQ(all[all.size() - 1], all[all.size() - 3]);
}

TEST(Entries, name_what_they_belong_to) {
    const Outcome none = run({"delete", "l2-mfib", "--group", "ff0e::1", "--source", "any"});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(lines(none.err).at(0), "mcast6ctl: give one of --bd and --vlan");
    const Outcome noBridge = run({"delete", "l2-mfib", "--group", "ff0e::1", "--source", "any", "--vlan", "5"});
    EXPECT_EQ(noBridge.exitCode, 2);
    EXPECT_EQ(lines(noBridge.err).at(0), "mcast6ctl: --vlan goes with --vr, which names the bridge");
}

TEST(Entries, of_layer_2_are_smoothed_with_their_members_and_a_dry_run_changes_nothing) {
    const std::string smooth = "smooth l2-bd-mfib --version 2 --bd br10";
    const Outcome outcome = runScript(importBridgeLine("small", "--smooth-version 1") + "count l2\n" + smooth +
                                          " --dry-run\ncount l2\n" + smooth +
                                          "\nshow l2-mfib --bd br10\ncount bd-untag-elb --bd br10\n"
                                          "count bd-untag-elb --bd br30\nsmooth l2 --version 2 --vr 5\ncount l2\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(2).at("entries").size(), 20U);
    all.at(2).erase("entries");
    EXPECT_EQ(all.at(2).at("dryRun"), true);
    all.at(2).erase("dryRun");
    EXPECT_EQ(all.at(2), all.at(4));
    EXPECT_EQ(all.at(3), all.at(1));
    EXPECT_EQ(all.at(4).at("deleted"), 20);
    EXPECT_GT(all.at(4).at("membersDeleted"), 20);
    EXPECT_TRUE(all.at(5).at("entries").empty());
    EXPECT_EQ(all.at(6).at("count"), 0);
    EXPECT_GT(all.at(7).at("count"), 0);
    // Another VR has nothing to smooth.
    for (const Json& table : all.at(8).at("tables")) EXPECT_EQ(table.at("before"), 0) << table;
    EXPECT_EQ(countsOf(all.at(9)).at("l2mc6_bd_mfib"), countsOf(all.at(1)).at("l2mc6_bd_mfib") - 20);
}

TEST(Entries, that_would_go_are_shown) {
    const Outcome outcome = runScript(importLine("small", "--smooth-version 1") +
                                      "smooth l3-mfib --version 2 --vrf 100 --dry-run\nsmooth l3 --version 2 --vrf 100 "
                                      "--dry-run\nsmooth l3-mfib --version 2 --vrf 100\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("\n 0  100  2001:db8:55::a1  ff0e::10:1    m5       -        1  "), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find(
                  "2 entries before, 2 with a version older than 2 and their 2 members would be deleted, 0 after\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("TABLE    BEFORE  WOULD GO  AFTER\nl3-mfib       2         2      0\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(
        outcome.out.find("2 entries before, 2 with a version older than 2 and their 2 members deleted, 0 after\n"),
        std::string::npos);
}

TEST(Entries, of_one_router_are_counted_and_smoothed_alone) {
    const Outcome outcome =
        runScript(importLine("small", "--smooth-version 1") + importLine("small", "--smooth-version 1 --vr 1") +
                      "smooth l3 --version 2 --vr 1\ncount l3 --vr 1\ncount l3 --vr 0\ncount l3 --vr 0 --vrf 100\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    for (const auto& [table, count] : countsOf(all.at(3))) EXPECT_EQ(count, 0U) << table;
    EXPECT_EQ(countsOf(all.at(4)).at("l3mc6_mfib"), 11U);
    EXPECT_EQ(countsOf(all.at(4)).at("l3mc6_elb"), 17U);
    EXPECT_EQ(countsOf(all.at(5)).at("l3mc6_mfib"), 2U);
}

TEST(Entries, of_a_bridge_are_counted_by_its_name) {
    const Outcome outcome = runScript(importBridgeLine("vlan") + "show mld-global\ncount l2\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> first = documents(outcome.out);
    const Json bridge = first.at(1).at("entries").at(0);
    const std::string name = bridge.at("keyId1Name");
    const Outcome named = runScript(importBridgeLine("vlan") + "count l2 --vr " + name + "\ncount l2-mfib --vr " +
                                        name + "\ncount l2-vlan-mfib --vr " + bridge.at("keyId1").dump() + "\n",
                                    {"--json"});
    ASSERT_EQ(named.exitCode, 0) << named.err;
    const std::vector<Json> all = documents(named.out);
    const auto counts = countsOf(all.at(1));
    EXPECT_FALSE(counts.contains("l2mc6_bd_mfib"));
    EXPECT_EQ(counts.at("l2mc6_global_enable"), 1U);
    EXPECT_GT(counts.at("l2mc6_vlan_mfib"), 0U);
    EXPECT_EQ(all.at(2).at("count"), counts.at("l2mc6_vlan_mfib"));
    EXPECT_EQ(all.at(3).at("count"), counts.at("l2mc6_vlan_mfib"));
}

TEST(Names, of_bridges_and_routing_tables_are_taken_where_their_numbers_are) {
    const Outcome outcome = runScript(importBridgeLine("small") +
                                          "set bd-enable --bd br10 --off\nshow bd-enable --bd br10\n"
                                          "delete bd-enable --bd br10\ncount bd-enable --bd br10\n"
                                          "set bd-flowstat --bd br20 --group ff0e::1 --source any\n"
                                          "count bd-flowstat --bd br20\ncount bd-untag-elb --vrf main\n"
                                          "count bd-untag-rt --vrf default\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(1).at("new"), false);
    EXPECT_EQ(all.at(2).at("entries").at(0).at("l2mcEnable"), false);
    EXPECT_EQ(all.at(3).at("deleted"), 1);
    EXPECT_EQ(all.at(4).at("count"), 0);
    EXPECT_EQ(all.at(6).at("count"), 1);
    const Outcome unknown = run({"set", "bd-enable", "--bd", "br10", "--on"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err,
              "mcast6ctl: --bd: no link list was imported that tells the index of 'br10'; give the interface's "
              "number\n");
}

}  // namespace
}  // namespace mcast6::ctl::test
