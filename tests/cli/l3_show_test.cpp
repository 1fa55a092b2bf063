// show, count, smooth and delete of the layer-3 tables, with the filters that their iterators offer, and the members of
// routes.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/cli/questions.h"
#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

// A router whose routes go out by every kind of link.
std::string importKinds(const std::string& capture = "kinds", const std::string& options = "") {
    return "import mroute '" + sample("made/" + capture + ".rt.mroute.json") + "' --links '" +
           sample("made/kinds.rt.link.json") + "' " + options + "\n";
}

class L3Questions : public testing::TestWithParam<Question> {};

TEST_P(L3Questions, are_answered_alike_by_show_and_count_through_the_best_query) {
    expectAnswered(GetParam(), importKinds(GetParam().capture));
}

const auto kQuestionName = [](const auto& instance) { return std::string(instance.param.name); };

INSTANTIATE_TEST_SUITE_P(OfConfiguration, L3Questions,
                         testing::Values(Question{"conflicts", "kinds", "l3-mfib --conflicts", "error code", 0},
                                         Question{"all", "kinds", "glbcfg", "walk of the whole table", 1},
                                         Question{"key", "kinds", "glbcfg --vrf main --type 2", "key", 1},
                                         Question{"key_absent", "kinds", "glbcfg --vrf main --type 1", "key", 0},
                                         Question{"vrf", "kinds", "glbcfg --vr 0 --vrf 254", "VR and VRF", 1},
                                         Question{"vrf_absent", "kinds", "glbcfg --vr 1 --vrf 254", "VR and VRF", 0},
                                         Question{"type", "kinds", "glbcfg --type 2",
                                                  "walk of the whole table; the tool itself filters by --type", 1}),
                         kQuestionName);

INSTANTIATE_TEST_SUITE_P(
    OfRegisters, L3Questions,
    testing::Values(
        Question{"all", "kinds", "l3-register-elb", "walk of the whole table", 1},
        Question{"key", "kinds", "l3-register-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1", "key", 1},
        Question{"key_absent", "kinds", "l3-register-elb --vrf main --group ff0e::7:1 --source any", "key", 0},
        Question{"attribute", "kinds",
                 "l3-register-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1 --attr-c 0",
                 "entry and attribute", 1},
        Question{"attribute_absent", "kinds",
                 "l3-register-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1 --attr-c 1",
                 "entry and attribute", 0},
        Question{"instance", "kinds", "l3-register-elb --inst-type 2 --inst-id 0", "instance", 1},
        Question{"instance_absent", "kinds", "l3-register-elb --inst-type 0 --inst-id 0", "instance", 0},
        Question{"oif", "kinds", "l3-register-elb --oif pim6reg", "outgoing interface", 1},
        Question{"oif_absent", "kinds", "l3-register-elb --oif e1", "outgoing interface", 0},
        Question{"group", "kinds", "l3-register-elb --group ff0e::7:1",
                 "walk of the whole table; the tool itself filters by --group", 1}),
    kQuestionName);

INSTANTIATE_TEST_SUITE_P(
    OfInterfaces, L3Questions,
    testing::Values(
        Question{"all", "kinds", "l3-elb", "walk of the whole table", 2},
        Question{"key", "kinds", "l3-elb --vrf main --group ff0e::7:1 --source any --oif e1 --flag-d 1", "key", 1},
        Question{"key_absent", "kinds", "l3-elb --vrf main --group ff0e::7:1 --source any --oif e1 --flag-d 0", "key",
                 0},
        Question{"entry", "kinds", "l3-elb --vrf main --group ff0e::7:1 --source any --flag-a 0", "entry", 1},
        Question{"entry_absent", "kinds", "l3-elb --vrf main --group ff0e::7:1 --source any --flag-a 1", "entry", 0},
        Question{"fast_scan", "kinds", "l3-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1 --flag-d 1",
                 "fast scan of an entry", 1},
        Question{"no_fast_scan", "kinds", "l3-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1 --flag-d 2",
                 "walk of the whole table; the tool itself filters by --vrf --group --source --flag-d --vr", 0},
        Question{"oif", "kinds", "l3-elb --oif e2", "outgoing interface", 1},
        Question{"oif_group", "kinds", "l3-elb --oif e2 --group ff0e::7:2",
                 "outgoing interface; the tool itself filters by --group", 0},
        Question{"sub_all", "kinds", "l3-sub-elb", "walk of the whole table", 0},
        Question{"sub_key", "kinds",
                 "l3-sub-elb --vrf main --group ff0e::7:1 --source any --subif e1.30 --vlan 30 --flag-d 1", "key", 0},
        Question{"sub_oif", "kinds", "l3-sub-elb --vrf main --group ff0e::7:1 --source any --oif e1 --flag-d 1",
                 "outgoing interface of an entry", 0},
        Question{"sub_vlan", "kinds", "l3-sub-elb --vlan 30", "VLAN", 0},
        Question{"vlan_all", "kinds", "l3-vlan-elb", "walk of the whole table", 3},
        Question{"vlan_key", "kinds",
                 "l3-vlan-elb --vrf main --group ff0e::7:2 --source 2001:db8:1::a1 --oif e1.30 --vlan 30", "key", 1},
        Question{"vlan_of_entry", "kinds", "l3-vlan-elb --vrf main --group ff0e::7:2 --source 2001:db8:1::a1 --vlan 30",
                 "VLAN of an entry", 1},
        Question{"vlan_of_entry_absent", "kinds",
                 "l3-vlan-elb --vrf main --group ff0e::7:2 --source 2001:db8:1::a1 --vlan 31", "VLAN of an entry", 0},
        Question{"vlan_entry", "kinds", "l3-vlan-elb --vrf main --group ff0e::7:2 --source 2001:db8:1::a1", "entry", 1},
        Question{"vlan_oif", "kinds", "l3-vlan-elb --oif e1.30", "outgoing interface", 3},
        Question{"vlan", "kinds", "l3-vlan-elb --vlan 30", "walk of the whole table; the tool itself filters by --vlan",
                 3}),
    kQuestionName);

INSTANTIATE_TEST_SUITE_P(
    OfBridgeDomains, L3Questions,
    testing::Values(
        Question{"untag_all", "kinds", "l3-bd-untag-elb", "walk of the whole table", 3},
        Question{"untag_key", "kinds",
                 "l3-bd-untag-elb --vrf main --group ff3e::7:3 --source 2001:db8:2::a2 --bd br7 --oif br7", "key", 1},
        Question{"untag_entry", "kinds", "l3-bd-untag-elb --vrf main --group ff3e::7:3 --source 2001:db8:2::a2",
                 "entry", 1},
        Question{"untag_attribute", "kinds",
                 "l3-bd-untag-elb --vrf main --group ff3e::7:3 --source 2001:db8:2::a2 --attr19 0",
                 "entry and attribute", 1},
        Question{"untag_attribute_absent", "kinds",
                 "l3-bd-untag-elb --vrf main --group ff3e::7:3 --source 2001:db8:2::a2 --attr19 1",
                 "entry and attribute", 0},
        Question{"untag_vr_oif", "kinds", "l3-bd-untag-elb --vr 0 --oif br7", "VR and outgoing interface", 3},
        Question{"untag_vr_oif_absent", "kinds", "l3-bd-untag-elb --vr 1 --oif br7", "VR and outgoing interface", 0},
        Question{"untag_bd", "kinds", "l3-bd-untag-elb --bd br7", "VR and bridge domain", 3},
        Question{"untag_bd_absent", "kinds", "l3-bd-untag-elb --bd 0", "VR and bridge domain", 0},
        Question{"untag_oif", "kinds", "l3-bd-untag-elb --oif br7", "outgoing interface", 3},
        Question{"untag_pid", "kinds", "l3-bd-untag-elb --vrf main --pid 1", "source process", 0},
        Question{"tag_all", "kinds", "l3-bd-tag-elb", "walk of the whole table", 0},
        Question{"tag_key", "kinds",
                 "l3-bd-tag-elb --vrf main --group ff3e::7:3 --source any --bd br7 --oif e1 --tag 1 --inner-tag 0",
                 "key", 0},
        Question{"tag_entry", "kinds", "l3-bd-tag-elb --vrf main --group ff3e::7:3 --source any", "entry", 0},
        Question{"tag_attribute", "kinds", "l3-bd-tag-elb --vrf main --group ff3e::7:3 --source any --attr19 0",
                 "entry and attribute", 0},
        Question{"tag_vr_oif", "kinds", "l3-bd-tag-elb --vr 0 --oif br7", "VR and outgoing interface", 0},
        Question{"tag_bd", "kinds", "l3-bd-tag-elb --bd br7", "VR and bridge domain", 0},
        Question{"tag_oif", "kinds", "l3-bd-tag-elb --oif br7", "outgoing interface", 0},
        Question{"tag_pid", "kinds", "l3-bd-tag-elb --vrf main --pid 1", "source process", 0}),
    kQuestionName);

INSTANTIATE_TEST_SUITE_P(
    OfTunnels, L3Questions,
    testing::Values(
        Question{"all", "kinds", "l3-bd-tnl-elb", "walk of the whole table", 5},
        Question{"key", "kinds",
                 "l3-bd-tnl-elb --vrf main --group ff0e::7:1 --source any --bd 0 --tunnel vx9 --underlay 6", "key", 1},
        Question{"key_absent", "kinds",
                 "l3-bd-tnl-elb --vrf main --group ff0e::7:1 --source any --bd 0 --tunnel vx9 --underlay 4", "key", 0},
        Question{"entry", "kinds", "l3-bd-tnl-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1", "entry", 3},
        Question{"attribute", "kinds", "l3-bd-tnl-elb --vrf main --group ff0e::7:1 --source 2001:db8:1::a1 --attr19 0",
                 "entry and attribute", 3},
        Question{"tunnel", "kinds", "l3-bd-tnl-elb --bd 0 --tunnel gre1 --underlay 6", "tunnel in a bridge domain", 2},
        Question{"bd", "kinds", "l3-bd-tnl-elb --bd 0", "VR and bridge domain", 5},
        Question{"bd_absent", "kinds", "l3-bd-tnl-elb --bd br7", "VR and bridge domain", 0},
        Question{"oif", "kinds", "l3-bd-tnl-elb --oif tnl1", "outgoing interface", 1},
        Question{"pid", "kinds", "l3-bd-tnl-elb --vrf main --pid 1", "source process", 0},
        Question{"tunnel_key", "kinds", "l3-bd-tnl-elb --tunnel-key 5009",
                 "walk of the whole table; the tool itself filters by --tunnel-key", 2},
        Question{"mvpn_all", "kinds", "mvpn-tnl-elb", "walk of the whole table", 0},
        Question{"mvpn_key", "kinds", "mvpn-tnl-elb --vrf main --group ff0e::7:1 --source any", "key", 0},
        Question{"mvpn_tunnel", "kinds", "mvpn-tnl-elb --vrf main --word2 1 --word3 2", "tunnel", 0},
        Question{"mvpn_tunnel_id", "kinds", "mvpn-tnl-elb --vrf main --word2 1 --word4 2", "tunnel id", 0},
        Question{"mvpn_vni", "kinds", "mvpn-tnl-elb --vrf main --word1 1", "VNI", 0},
        Question{"mvpn_pid", "kinds", "mvpn-tnl-elb --vrf main --pid 1", "source process", 0},
        Question{"mvpn_vrf", "kinds", "mvpn-tnl-elb --vrf main", "VR and VRF", 0},
        Question{"sub_all", "kinds", "mvpn-tnl-subelb", "walk of the whole table", 0},
        Question{"sub_key", "kinds", "mvpn-tnl-subelb --vrf main --group ff0e::7:1 --source any --oif e1 --sub-key 1",
                 "key", 0},
        Question{"sub_entry", "kinds", "mvpn-tnl-subelb --vrf main --group ff0e::7:1 --source any", "entry", 0},
        Question{"sub_vrf", "kinds", "mvpn-tnl-subelb --vrf main", "VR and VRF", 0},
        Question{"sub_oif", "kinds", "mvpn-tnl-subelb --oif e1", "outgoing interface", 0},
        Question{"sub_l2if", "kinds", "mvpn-tnl-subelb --l2if e1", "layer-2 interface", 0}),
    kQuestionName);

class L3Deletions : public testing::TestWithParam<Deletion> {};

TEST_P(L3Deletions, take_one_entry_and_fail_when_there_is_none) {
    expectDeleted(GetParam(), importKinds(GetParam().capture));
}

INSTANTIATE_TEST_SUITE_P(
    OfEach, L3Deletions,
    testing::Values(
        Deletion{"global", "kinds", "glbcfg", 0},
        Deletion{"register", "kinds", "l3-register-elb --group ff0e::7:1 --source 2001:db8:1::a1", 0},
        Deletion{"plain", "kinds", "l3-elb --group ff0e::7:1 --source any --oif e1", 1},
        Deletion{"vlan", "kinds",
                 "l3-vlan-elb --vrf 254 --group ff0e::7:4 --source 2001:db8:3::a3 --oif e1.30 --vlan 30", 2},
        Deletion{"bridge", "kinds", "l3-bd-untag-elb --group ff3e::7:3 --source 2001:db8:2::a2 --bd br7 --oif br7", 2},
        Deletion{"tunnel", "kinds",
                 "l3-bd-tnl-elb --group ff3e::7:3 --source 2001:db8:2::a2 --bd 0 --tunnel gre1 --underlay 6", 4}),
    kQuestionName);

constexpr const char* kTables[] = {"l3-mfib",       "glbcfg",       "l3-register-elb", "l3-elb",
                                   "l3-sub-elb",    "l3-vlan-elb",  "l3-bd-tag-elb",   "l3-bd-untag-elb",
                                   "l3-bd-tnl-elb", "mvpn-tnl-elb", "mvpn-tnl-subelb"};

TEST(L3Show, says_when_there_is_nothing) {
    for (const char* table : kTables) {
        EXPECT_EQ(run({"show", table}).out, "no entries\n") << table;
        EXPECT_EQ(run({"count", table}).out, "0\n") << table;
    }
    EXPECT_EQ(run({"show", "l3-mfib", "--members"}).out, "no entries\n");
    EXPECT_EQ(run({"show", "l3-mfib", "--members", "--json"}).out, "{\"table\":\"l3mc6_mfib\",\"entries\":[]}\n");
    EXPECT_EQ(run({"smooth", "l3", "--version", "1"}).out, "no entries\n");
}

TEST(L3Show, counts_the_whole_table_fast) {
    const Outcome outcome = runScript(importKinds() +
                                      "count l3-bd-tnl-elb --fast\ncount l3-bd-untag-elb --fast\n"
                                      "count l3-bd-tag-elb --fast\ncount mvpn-tnl-elb --fast\n"
                                      "count l3-bd-tnl-elb --fast --json\ncount l3-bd-untag-elb --fast\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    ASSERT_GE(all.size(), 6U);
    EXPECT_EQ(std::vector<std::string>(all.end() - 6, all.end()),
              (std::vector<std::string>{"5", "3", "0", "0", R"({"table":"l3mc6_bd_tnl_elb","count":5})", "3"}));
    const Outcome filtered = run({"count", "l3-bd-tnl-elb", "--fast", "--oif", "3"});
    EXPECT_EQ(filtered.exitCode, 2);
    EXPECT_EQ(lines(filtered.err).at(0), "mcast6ctl: --fast counts the whole table: it goes without --oif");
    EXPECT_EQ(run({"count", "l3-elb", "--fast"}).exitCode, 2);
}

TEST(L3Show, has_no_commands_that_the_library_has_no_operation_for) {
    for (const char* table : {"l3-register-elb", "l3-elb", "l3-sub-elb", "l3-vlan-elb"}) {
        EXPECT_EQ(run({"smooth", table, "--version", "1"}).exitCode, 2) << table;
    }
    EXPECT_EQ(run({"delete", "l3-sub-elb"}).err.find("mcast6ctl: unknown command 'l3-sub-elb' after 'delete'"), 0U);
}

TEST(L3Show, refuses_values_that_the_tables_do_not_store) {
    EXPECT_EQ(run({"show", "l3-vlan-elb", "--vlan", "65536"}).exitCode, 2);
    EXPECT_EQ(run({"show", "l3-elb", "--flag-a", "256"}).exitCode, 2);
    EXPECT_EQ(run({"show", "l3-bd-tnl-elb", "--attr19", "256"}).exitCode, 2);
    EXPECT_EQ(run({"show", "mvpn-tnl-elb", "--word4", "256"}).exitCode, 2);
}

TEST(L3Show, tells_a_tunnel_by_the_meaning_of_its_words) {
    const Outcome outcome = runScript(
        importKinds("kinds", "--smooth-version 7") + "show l3-bd-tnl-elb --tunnel-key 5009 --source any\nshow glbcfg\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    Json tunnel = all.at(1).at("entries").at(0);
    Json global = all.at(2).at("entries").at(0);
    EXPECT_GT(tunnel.at("appSrcPid"), 0);
    tunnel.erase("appSrcPid");
    for (Json* entry : {&tunnel, &global}) {
        for (const char* time : {"timeStampCreate", "timeStampSmooth"}) {
            EXPECT_GT(entry->at(time), 0) << time;
            entry->erase(time);
        }
    }
    EXPECT_EQ(tunnel, Json::parse(R"({"vrId": 0, "vrfId": 254, "sourceAddr": "::", "groupAddr": "ff0e::7:1",
        "bdElbAttr4": 0, "bdElbAttr4Name": null, "outIfIndex": 13, "outIfName": "vx9", "tnlAttr2": 13,
        "tnlAttr2Name": "vx9", "tnlAttr3": 6, "tnlAttr1": 5009, "tnlAttr5": "2001:db8:ffff::9", "tnlAttr4": 4789,
        "smoothVersion": 7, "bdElbAttr5": 13, "bdElbAttr19": 0})"));
    EXPECT_EQ(global, Json::parse(R"({"cfgKeyA": 0, "cfgKeyB": 254, "cfgKeyC": 2, "multicastRouting": true,
        "glbVersion": 1, "cfgWord3": 1, "cfgWord6": 0, "cfgWord7": 0, "smoothVersion": 7})"));
}

TEST(Members, of_every_kind_stand_under_their_route) {
    const Outcome outcome = runScript(importKinds("kinds", "--smooth-version 3") +
                                      "show l3-mfib --members --vrf main --source 2001:db8:1::a1\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    const std::vector<std::string> expected{
        "VR  VRF  SOURCE          GROUP      IIF  REGIF    VERSION  MEMBER   TABLE            WAY",
        " 0  254  2001:db8:1::a1  ff0e::7:1  e1   pim6reg        3",
        "                                                           e2       l3-elb           plain",
        "                                                           e1.30    l3-vlan-elb      VLAN 30",
        "                                                           pim6reg  l3-register-elb  register",
        "                                                           br7      l3-bd-untag-elb  bridge br7",
        "                                                           vx9      l3-bd-tnl-elb    tunnel vx9 to "
        "2001:db8:ffff::9, key 5009",
        "                                                           gre1     l3-bd-tnl-elb    tunnel gre1 to "
        "2001:db8:ffff::2, key 7",
        "                                                           tnl1     l3-bd-tnl-elb    tunnel tnl1 to "
        "2001:db8:ffff::3",
        " 0  254  2001:db8:1::a1  ff0e::7:2  e1   -              3",
        "                                                           e1.30    l3-vlan-elb      VLAN 30",
        "2 entries, 8 members"};
    ASSERT_GE(all.size(), expected.size());
    EXPECT_EQ(std::vector<std::string>(all.end() - static_cast<ptrdiff_t>(expected.size()), all.end()), expected);
}

// Routing table, source and group of a route.
using RouteKey = std::vector<std::string>;
using Outgoing = std::map<RouteKey, std::multiset<std::string>>;

Outgoing outgoingInCapture(const std::string& path) {
    std::ifstream file(path);
    Outgoing outgoing;
    for (const Json& route : Json::parse(file)) {
        auto& names = outgoing[{route.value("table", "254"), route.at("src"), route.at("dst")}];
        for (const Json& way : route.at("multipath")) names.insert(way.at("oif"));
    }
    return outgoing;
}

class MembersOfCaptures : public testing::TestWithParam<const char*> {};

TEST_P(MembersOfCaptures, are_the_outgoing_interfaces_of_each_route) {
    const std::string folder = GetParam();
    const bool isMade = folder == "kinds";
    const Outcome outcome =
        runScript((isMade ? importKinds() : importLine(folder)) +
                      "show l3-mfib --members\nshow l3-mfib --members --vrf main --regif pim6reg\ncount l3\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    Outgoing shown;
    std::map<std::string, uint64_t> byTable;
    for (const Json& entry : all.at(1).at("entries")) {
        auto& names = shown[{entry.at("vrfId").dump(), entry.at("sourceAddr"), entry.at("groupAddr")}];
        for (const Json& member : entry.at("members")) {
            names.insert(member.at("outIfName"));
            ++byTable[member.at("table")];
            for (const char* key : {"vrId", "vrfId", "sourceAddr", "groupAddr"})
                EXPECT_EQ(member.at(key), entry.at(key));
        }
    }
    const Outgoing expected =
        outgoingInCapture(sample(isMade ? "made/kinds.rt.mroute.json" : folder + "/rt.mroute.json"));
    EXPECT_EQ(shown, expected);
    for (const auto& [table, members] : byTable) {
        EXPECT_EQ(only(all.at(3).at("tables"), "table", table).at("count"), members) << table;
    }
    for (const Json& entry : all.at(2).at("entries")) {
        const RouteKey key{entry.at("vrfId").dump(), entry.at("sourceAddr"), entry.at("groupAddr")};
        EXPECT_EQ(entry.at("members").size(), expected.at(key).size());
        EXPECT_EQ(entry.at("regIfName"), "pim6reg");
    }
    EXPECT_FALSE(all.at(2).at("entries").empty());
}

INSTANTIATE_TEST_SUITE_P(Each, MembersOfCaptures, testing::Values("kinds", "small", "medium"),
                         [](const auto& instance) { return std::string(instance.param); });

std::map<std::string, uint64_t> deletions(const Json& document) {
    std::map<std::string, uint64_t> deleted;
    for (const Json& table : document.at("tables")) {
        EXPECT_EQ(table.at("before").get<uint64_t>() - table.at("deleted").get<uint64_t>(), table.at("after"));
        if (table.at("deleted") != 0) deleted[table.at("table")] = table.at("deleted");
    }
    return deleted;
}

TEST(L3Smooth, deletes_what_the_last_import_does_not_have) {
    const Outcome outcome =
        runScript(importKinds("kinds", "--smooth-version 1") + importKinds("kinds-later", "--smooth-version 2") +
                      "smooth l3 --version 2\nshow l3-mfib --members\nsmooth l3 --version 2\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    // The any-source route goes, and with it a plain member; two tunnels are of an older version.
    EXPECT_EQ(deletions(all.at(2)),
              (std::map<std::string, uint64_t>{{"l3mc6_mfib", 1}, {"l3mc6_elb", 1}, {"l3mc6_bd_tnl_elb", 2}}));
    Outgoing shown;
    for (const Json& entry : all.at(3).at("entries")) {
        auto& names = shown[{entry.at("vrfId").dump(), entry.at("sourceAddr"), entry.at("groupAddr")}];
        for (const Json& member : entry.at("members")) names.insert(member.at("outIfName"));
    }
    EXPECT_EQ(shown, outgoingInCapture(sample("made/kinds-later.rt.mroute.json")));
    EXPECT_TRUE(deletions(all.at(4)).empty());
}

TEST(L3Smooth, deletes_members_without_version_with_their_entry) {
    const Outcome outcome = runScript(
        importKinds() +
            "delete l3-mfib --group ff0e::7:1 --source 2001:db8:1::a1 --keep-members\nsmooth l3 --version 0\ncount l3\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(deletions(all.at(2)),
              (std::map<std::string, uint64_t>{{"l3mc6_register_elb", 1}, {"l3mc6_elb", 1}, {"l3mc6_vlan_elb", 1}}));
    EXPECT_EQ(only(all.at(3).at("tables"), "table", "l3mc6_bd_tnl_elb").at("count"), 5);
    EXPECT_EQ(all.at(3).at("tables").size(), std::size(kTables));
    for (const Json& table : all.at(2).at("tables")) EXPECT_NE(table.at("table"), "l3mc6_sub_elb");
}

TEST(L3Smooth, of_one_table_goes_by_version) {
    const Outcome outcome =
        runScript(importKinds("kinds", "--smooth-version 1") + importKinds("kinds-later", "--smooth-version 2") +
                      "smooth l3-bd-tnl-elb --version 2 --oif vx9\nsmooth l3-bd-tnl-elb --version 2\n"
                      "smooth glbcfg --version 3\nsmooth l3-bd-untag-elb --version 2\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(2).at("before"), 2);
    EXPECT_EQ(all.at(2).at("deleted"), 1);
    EXPECT_EQ(all.at(3).at("before"), 4);
    EXPECT_EQ(all.at(3).at("deleted"), 1);
    EXPECT_EQ(all.at(4).at("deleted"), 1);
    EXPECT_EQ(all.at(5).at("deleted"), 0);
}

}  // namespace
}  // namespace mcast6::ctl::test
