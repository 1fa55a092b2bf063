// show, count, smooth and delete of the layer-2 tables, with the filters that their iterators offer.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <set>
#include <string>

#include "tests/cli/questions.h"
#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

class BridgeQuestions : public testing::TestWithParam<Question> {};

TEST_P(BridgeQuestions, are_answered_alike_by_show_and_count_through_the_best_query) {
    expectAnswered(GetParam(), importBridgeLine(GetParam().capture));
}

INSTANTIATE_TEST_SUITE_P(
    BridgeShow, BridgeQuestions,
    testing::Values(
        Question{"mfib_all", "small", "l2-bd-mfib", "walk of the whole table", 36},
        Question{"mfib_bd", "small", "l2-bd-mfib --bd br10", "VR and domain", 20},
        Question{"mfib_bd_number", "small", "l2-bd-mfib --vr 0 --bd 14", "VR and domain", 8},
        Question{"mfib_group", "small", "l2-bd-mfib --bd br30 --group ff0e::30:4", "group", 4},
        Question{"mfib_group_any_bd", "small", "l2-bd-mfib --group ff02::6a",
                 "walk of the whole table; the tool itself filters by --group", 1},
        Question{"mfib_key", "small", "l2-bd-mfib --bd br30 --group ff0e::30:4 --source 2001:db8:33::a1", "key", 1},
        Question{"mfib_key_absent", "small", "l2-bd-mfib --bd br10 --group ff0e::30:4 --source any", "key", 0},
        Question{"mfib_pid", "small", "l2-bd-mfib --pid 1", "source process", 0},
        Question{"mfib_conflicts", "small", "l2-bd-mfib --conflicts", "error code", 0},
        Question{"mfib_sorted", "medium", "l2-bd-mfib --sorted", "sorted walk", 547},
        Question{"mfib_sorted_bd", "medium", "l2-bd-mfib --sorted --bd br101",
                 "sorted walk; the tool itself filters by --bd --vr", 71},
        Question{"mfib_other_vr", "small", "l2-bd-mfib --vr 1 --bd br10", "VR and domain", 0},
        Question{"vlan_all", "vlan", "l2-vlan-mfib", "walk of the whole table", 30},
        Question{"vlan_vr_vlan", "vlan", "l2-vlan-mfib --vr br100 --vlan 10", "VR and domain", 10},
        Question{"vlan_vlan", "vlan", "l2-vlan-mfib --vlan 10",
                 "walk of the whole table; the tool itself filters by --vlan", 13},
        Question{"vlan_group", "vlan", "l2-vlan-mfib --vr br100 --vlan 10 --group ff0e::10:1", "group", 2},
        Question{"vlan_key", "vlan", "l2-vlan-mfib --vr br100 --vlan 10 --group ff0e::10:1 --source any", "key", 1},
        Question{"vlan_sorted", "vlan", "l2-vlan-mfib --sorted", "sorted walk", 30},
        Question{"vlan_conflicts", "vlan", "l2-vlan-mfib --conflicts", "error code", 0},
        Question{"elb_entry", "vlan", "l2-elb --vr br100 --vlan 10 --group ff0e::10:1 --source any", "entry", 3},
        Question{"elb_key", "vlan", "l2-elb --vr br100 --vlan 10 --group ff0e::10:1 --source any --oif t1 --tag 10",
                 "key", 1},
        Question{"elb_oif", "vlan", "l2-elb --oif a2", "outgoing interface", 4},
        Question{"elb_tag", "vlan", "l2-elb --tag 20", "walk of the whole table; the tool itself filters by --tag", 3},
        Question{"untag_entry", "small", "bd-untag-elb --bd br10 --group ff0e::10:1 --source any", "entry", 2},
        Question{"untag_oif", "small", "bd-untag-elb --oif p102", "outgoing interface", 6},
        Question{"untag_pid", "small", "bd-untag-elb --vr 0 --vrf 0 --pid 1", "source process", 0},
        Question{"untag_key", "small", "bd-untag-elb --bd br10 --group ff0e::10:1 --source any --oif p101", "key", 1},
        Question{"tag_oif", "small", "bd-tag-elb --oif p101", "outgoing interface", 0},
        Question{"vxlan_bd", "small", "bd-vxlan-elb --bd br10", "VR and bridge domain", 7},
        Question{"vxlan_tunnel", "small", "bd-vxlan-elb --vr 0 --underlay 6 --vni 5010", "tunnel", 7},
        Question{"vxlan_tunnel_bd", "small", "bd-vxlan-elb --bd br10 --underlay 6 --vni 5010",
                 "tunnel in a bridge domain", 7},
        Question{"vxlan_oif", "small", "bd-vxlan-elb --oif vx10", "outgoing interface", 7},
        Question{"vxlan_entry", "small", "bd-vxlan-elb --bd br10 --group ff0e::10:1 --source any", "entry", 1},
        Question{"tag_key_absent", "small",
                 "bd-tag-elb --bd br10 --group ff0e::1 --source any --oif p101 --tag 1 --inner-tag 0", "key", 0},
        Question{"vxlan_sub_key_absent", "small",
                 "bd-vxlan-sub-elb --bd br10 --group ff0e::1 --source any --underlay 6 --vni 1 --oif vx10", "key", 0},
        Question{"vxlan_sub_tunnel", "small",
                 "bd-vxlan-sub-elb --bd br10 --group ff0e::1 --source any --underlay 6 --vni 1", "tunnel of an entry",
                 0},
        Question{"rt_vxlan_key_absent", "small", "bd-rt-vxlan --vr 0 --bd br10 --port vx10 --vlan 0 --vni 1", "key", 0},
        Question{"vxlan_sub_bd", "small", "bd-vxlan-sub-elb --bd br10", "VR and bridge domain", 0},
        Question{"rt_walk", "small", "bd-untag-rt --bd br20",
                 "walk of the whole table; the tool itself filters by --bd", 1},
        Question{"rt_key", "small", "bd-untag-rt --vr 0 --bd br20 --port r20 --vlan 0", "key", 1},
        Question{"tag_rt", "vlan", "bd-tag-rt --tag 30", "walk of the whole table; the tool itself filters by --tag",
                 1},
        Question{"rt_vxlan", "small", "bd-rt-vxlan --vr 0 --vrf 0 --pid 1", "source process", 0},
        Question{"vlan_enable", "vlan", "vlan-enable --vlan 30",
                 "walk of the whole table; the tool itself filters by --vlan", 2},
        Question{"vlan_enable_key", "vlan", "vlan-enable --vr br200 --key2 0 --vlan 30", "key", 1},
        Question{"vlan_port", "vlan", "vlan-port --port t1",
                 "walk of the whole table; the tool itself filters by --port", 3},
        Question{"vlan_port_key", "vlan", "vlan-port --vr br100 --vlan 30 --key3 0 --port t1", "key", 1},
        Question{"mld_global", "vlan", "mld-global", "walk of the whole table", 2},
        Question{"mld_global_key", "vlan", "mld-global --vr br100 --key2 0", "key", 1},
        Question{"bd_enable", "small", "bd-enable --bd br20",
                 "walk of the whole table; the tool itself filters by --bd", 1},
        Question{"bd_flowstat", "small", "bd-flowstat --vr 0 --pid 1 --word3 0", "source process", 0},
        Question{"bd_flowstat_key", "small", "bd-flowstat --vr 0 --bd br10 --group ff0e::1 --source any", "key", 0},
        Question{"flowstat", "small", "flowstat", "walk of the whole table", 0}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(BridgeShow, sorts_by_domain) {
    const Outcome outcome = runScript(importBridgeLine("medium") + importBridgeLine("vlan") +
                                          "show l2-bd-mfib --sorted\nshow l2-vlan-mfib --sorted\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    const auto isSorted = [](const Json& entries, const char* name) {
        return std::is_sorted(entries.begin(), entries.end(),
                              [&](const Json& left, const Json& right) { return left.at(name) < right.at(name); });
    };
    EXPECT_EQ(all.at(2).at("entries").size(), 547U);
    EXPECT_TRUE(isSorted(all.at(2).at("entries"), "bdId"));
    EXPECT_EQ(all.at(3).at("entries").size(), 50U);
    EXPECT_TRUE(isSorted(all.at(3).at("entries"), "vlanId"));
}

TEST(BridgeShow, finds_what_this_process_wrote) {
    const Outcome outcome = runScript(importBridgeLine("small") + "show l2-bd-mfib\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const Json entries = documents(outcome.out).at(1).at("entries");
    std::set<uint64_t> writers;
    for (const Json& entry : entries) writers.insert(entry.at("appSrcPid").get<uint64_t>());
    ASSERT_EQ(writers.size(), 1U);
    EXPECT_GT(*writers.begin(), 0U);
}

TEST(BridgeShow, lists_members_of_all_kinds_under_their_entry) {
    const Outcome outcome =
        runScript(importBridgeLine("small") + "show l2-mfib --members --bd br10 --group ff0e::10:1\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    const auto title =
        std::find_if(all.begin(), all.end(), [](const auto& line) { return line.starts_with("VR  BD"); });
    ASSERT_EQ(std::distance(title, all.end()), 6);
    EXPECT_EQ(title[0],
              "VR  BD    VLAN  SOURCE  GROUP       VERSION  MEMBER  TABLE         WAY                           FLAGS");
    EXPECT_EQ(title[1], " 0  br10     -  ::      ff0e::10:1        0");
    const std::string margin(45, ' ');
    EXPECT_EQ((std::set<std::string>{title[2], title[3], title[4]}),
              (std::set<std::string>{margin + "p101    bd-untag-elb  untagged                      exclude",
                                     margin + "p102    bd-untag-elb  untagged                      exclude fast-leave",
                                     margin + "vx10    bd-vxlan-elb  VNI 5010 to 2001:db8:ffff::2  exclude"}));
    EXPECT_EQ(title[5], "1 entry, 3 members");
}

TEST(BridgeShow, shows_and_counts_both_kinds_of_domains) {
    const Outcome outcome =
        runScript(importBridgeLine("small") +
                      "show l2-mfib\ncount l2-mfib\ncount l2-mfib --bd br30\ncount l2-mfib --vlan 100\n"
                      "count l2-mfib --source 2001:db8:33::a1\nshow l2-mfib --vlan 200 --members\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(1).at("entries").size(), 39U);
    EXPECT_FALSE(all.at(1).at("entries").at(0).contains("members"));
    EXPECT_EQ(all.at(2).at("count"), 39);
    EXPECT_EQ(all.at(3).at("count"), 8);
    EXPECT_EQ(all.at(4).at("count"), 2);
    EXPECT_EQ(all.at(5).at("count"), 4);
    ASSERT_EQ(all.at(6).at("entries").size(), 1U);
    EXPECT_EQ(all.at(6).at("entries").at(0).at("vrName"), "br30");
    const Json& members = all.at(6).at("entries").at(0).at("members");
    ASSERT_EQ(members.size(), 1U);
    EXPECT_EQ(members.at(0).at("table"), "l2mc6_elb");
    EXPECT_EQ(members.at(0).at("outIfName"), "p306");
    EXPECT_EQ(members.at(0).at("flags"), "permanent exclude");
}

TEST(BridgeShow, names_interfaces_of_bridges_and_of_routes_apart) {
    const Outcome outcome =
        runScript(importLine("small") + importBridgeLine("small") +
                      "show l3-mfib --vrf 254 --source :: --group ::\nshow bd-untag-elb --oif p101\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(2).at("entries").at(0).at("inIfName"), "m4");
    EXPECT_EQ(all.at(3).at("entries").at(0).at("outIfName"), "p101");
}

class BridgeDeletions : public testing::TestWithParam<Deletion> {};

TEST_P(BridgeDeletions, take_one_entry_and_fail_when_there_is_none) {
    expectDeleted(GetParam(), importBridgeLine(GetParam().capture));
}

INSTANTIATE_TEST_SUITE_P(
    BridgeShow, BridgeDeletions,
    testing::Values(
        Deletion{"bd_mfib", "small", "l2-bd-mfib --bd br10 --group ff0e::10:1 --source any", 35},
        Deletion{"vlan_mfib", "small", "l2-vlan-mfib --vr br30 --vlan 100 --group ff0e::30:2 --source ::", 2},
        Deletion{"vlan_member", "vlan", "l2-elb --vr br100 --vlan 10 --group ff0e::10:1 --source :: --oif t1 --tag 10",
                 35},
        Deletion{"untagged_member", "small", "bd-untag-elb --bd br10 --group ff0e::10:1 --source :: --oif p101", 37},
        Deletion{"tunnel_member", "small",
                 "bd-vxlan-elb --bd br10 --group ff0e::10:1 --source :: --underlay 6 --vni 5010", 6},
        Deletion{"untagged_router", "small", "bd-untag-rt --bd br10 --port r10", 2},
        Deletion{"tagged_router", "vlan", "bd-tag-rt --bd br100 --port t1 --vlan 30 --tag 30", 0},
        Deletion{"global", "vlan", "mld-global --vr br100", 1},
        Deletion{"vlan_switch", "vlan", "vlan-enable --vr br100 --vlan 10", 5},
        Deletion{"vlan_port", "vlan", "vlan-port --vr br100 --vlan 30 --port t4", 8}),
    [](const auto& instance) { return std::string(instance.param.name); });

struct Subscription {
    const char* table;
    const char* domain;
    const char* queried;  // of a question by process
};

void PrintTo(const Subscription& subscription, std::ostream* out) { *out << subscription.table; }

class Subscriptions : public testing::TestWithParam<Subscription> {};

TEST_P(Subscriptions, are_set_shown_smoothed_and_deleted) {
    const std::string table = GetParam().table;
    const std::string first = table + " --vr 9 " + GetParam().domain + " 10 --group ff0e::1 --source 2001:db8::1";
    const std::string second = table + " --vr 9 " + GetParam().domain + " 11 --group ff0e::1 --source any";
    const Outcome outcome = runScript(
        "set " + first + " --pid 5 --word2 6 --word3 7 --smooth-version 1\n" + "set " + second +
            " --smooth-version 2\nshow " + first + "\ncount " + table + " --vr 9 --pid 5 --word3 7 --verbose\nsmooth " +
            table + " --version 2\ndelete " + second + "\ncount " + table + "\nset " + first + "\nset " + first + "\n",
        {"--json"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "mcast6ctl: " + table + ": query by " + GetParam().queried +
                               "\nmcast6ctl: standard input:9: " + table +
                               ": there is such a subscription; delete it first\n");
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 8U);
    ASSERT_EQ(all[2].at("entries").size(), 1U);
    const Json& entry = all[2].at("entries").at(0);
    EXPECT_EQ(entry.at("keyId1"), 9);
    EXPECT_EQ(entry.at("keyId2"), 10);
    EXPECT_EQ(entry.at("flowAddr1"), "ff0e::1");
    EXPECT_EQ(entry.at("flowAddr2"), "2001:db8::1");
    EXPECT_EQ(entry.at("srcPid"), 5);
    EXPECT_EQ(entry.at("cfgWord2"), 6);
    EXPECT_EQ(entry.at("cfgWord3"), 7);
    EXPECT_EQ(all[3].at("count"), 1);
    EXPECT_EQ(all[4].at("deleted"), 1);
    EXPECT_EQ(all[5].at("deleted"), 1);
    EXPECT_EQ(all[6].at("count"), 0);
}

INSTANTIATE_TEST_SUITE_P(BridgeShow, Subscriptions,
                         testing::Values(Subscription{"bd-flowstat", "--bd", "source process"},
                                         Subscription{
                                             "flowstat", "--vlan",
                                             "walk of the whole table; the tool itself filters by --vr --pid --word3"}),
                         [](const auto& instance) { return std::string(instance.param.table).substr(0, 2); });

// The two tables of subscriptions, and the tunnel members bound to interfaces, are filled by hosts alone.
TEST(BridgeShow, says_when_there_is_nothing) {
    for (const char* table : {"l2-mfib", "l2-bd-mfib", "l2-vlan-mfib", "l2-elb", "bd-tag-elb", "bd-untag-elb",
                              "bd-vxlan-elb", "bd-vxlan-sub-elb", "bd-tag-rt", "bd-untag-rt", "bd-rt-vxlan",
                              "vlan-enable", "vlan-port", "mld-global", "flowstat", "bd-flowstat"}) {
        EXPECT_EQ(run({"show", table}).out, "no entries\n") << table;
        EXPECT_EQ(run({"count", table}).out, "0\n") << table;
    }
    EXPECT_EQ(run({"smooth", "l2", "--version", "1"}).out, "no entries\n");
}

TEST(BridgeShow, refuses_filters_that_make_no_sense) {
    EXPECT_EQ(run({"show", "l2-elb", "--tag", "65536"}).exitCode, 2);
    EXPECT_EQ(run({"show", "l2-bd-mfib", "--vlan", "1"}).exitCode, 2);
    EXPECT_EQ(run({"show", "bd-vxlan-elb", "--underlay", "256"}).exitCode, 2);
    EXPECT_EQ(run({"show", "l2-bd-mfib", "--bd", "br10"}).exitCode, 1);
    EXPECT_EQ(run({"delete", "l2-bd-mfib", "--bd", "1"}).exitCode, 2);
}

}  // namespace
}  // namespace mcast6::ctl::test
