// import bridge: every row of every capture is accounted for, and the tables hold what the capture has.
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <set>
#include <string>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

struct Rows {
    uint64_t read, imported, skipped;
};

struct Expected {
    const char* name;
    const char* folder;
    const char* prefix;
    std::map<std::string, Rows> rows;             // nothing is refused
    std::map<std::string, uint64_t> skipReasons;  // of groups
    std::map<std::string, uint64_t> tables;       // those that hold anything
};

void PrintTo(const Expected& expected, std::ostream* out) { *out << expected.name; }

constexpr const char* kOfBridge = "joined by the bridge itself";
constexpr const char* kOfVxlan = "a row of a VXLAN device's own, whose far ends the capture does not have";

const Expected kExpected[] = {
    {"small_switch",
     "small",
     "sw",
     {{"bridges", {3, 3, 0}},
      {"vlans", {0, 0, 0}},
      {"vlanPorts", {0, 0, 0}},
      {"routerPorts", {3, 3, 0}},
      {"groups", {60, 48, 12}}},
     {{kOfBridge, 6}, {kOfVxlan, 4}, {"an IPv4 group", 1}, {"a MAC address group", 1}},
     {{"l2mc6_bd_mfib", 36},
      {"l2mc6_vlan_mfib", 3},
      {"l2mc6_elb", 3},
      {"l2mc6_bd_untag_elb", 38},
      {"l2mc6_bd_vxlan_elb", 7},
      {"l2mc6_bd_untag_rt", 3},
      {"l2mc6_bd_enable", 3}}},
    {"small_tunnel_end",
     "small",
     "pe",
     {{"bridges", {1, 1, 0}},
      {"vlans", {0, 0, 0}},
      {"vlanPorts", {0, 0, 0}},
      {"routerPorts", {1, 1, 0}},
      {"groups", {23, 21, 2}}},
     {{kOfBridge, 2}},
     {{"l2mc6_bd_mfib", 20},
      {"l2mc6_bd_untag_elb", 5},
      {"l2mc6_bd_vxlan_elb", 16},
      {"l2mc6_bd_rt_vxlan_elb", 1},
      {"l2mc6_bd_enable", 1}}},
    {"medium_switch",
     "medium",
     "sw",
     {{"bridges", {8, 8, 0}},
      {"vlans", {0, 0, 0}},
      {"vlanPorts", {0, 0, 0}},
      {"routerPorts", {4, 4, 0}},
      {"groups", {915, 879, 36}}},
     {{kOfBridge, 16}, {kOfVxlan, 20}},
     {{"l2mc6_bd_mfib", 547},
      {"l2mc6_vlan_mfib", 20},
      {"l2mc6_elb", 20},
      {"l2mc6_bd_untag_elb", 848},
      {"l2mc6_bd_vxlan_elb", 11},
      {"l2mc6_bd_untag_rt", 4},
      {"l2mc6_bd_enable", 8}}},
    {"medium_tunnel_end",
     "medium",
     "pe",
     {{"bridges", {1, 1, 0}},
      {"vlans", {0, 0, 0}},
      {"vlanPorts", {0, 0, 0}},
      {"routerPorts", {1, 1, 0}},
      {"groups", {65, 63, 2}}},
     {{kOfBridge, 2}},
     {{"l2mc6_bd_mfib", 55},
      {"l2mc6_bd_untag_elb", 9},
      {"l2mc6_bd_vxlan_elb", 54},
      {"l2mc6_bd_rt_vxlan_elb", 1},
      {"l2mc6_bd_enable", 1}}},
    {"large_switch",
     "large",
     "sw",
     {{"bridges", {33, 33, 0}},
      {"vlans", {0, 0, 0}},
      {"vlanPorts", {0, 0, 0}},
      {"routerPorts", {0, 0, 0}},
      {"groups", {46021, 43955, 2066}}},
     {{kOfBridge, 66}, {kOfVxlan, 2000}},
     {{"l2mc6_bd_mfib", 7720},
      {"l2mc6_vlan_mfib", 480},
      {"l2mc6_elb", 480},
      {"l2mc6_bd_untag_elb", 43475},
      {"l2mc6_bd_enable", 33}}},
    {"vlan_switch",
     "vlan",
     "sw",
     {{"bridges", {2, 2, 0}},
      {"vlans", {6, 6, 0}},
      {"vlanPorts", {15, 9, 6}},
      {"routerPorts", {2, 2, 0}},
      {"groups", {36, 36, 0}}},
     {},
     {{"l2mc6_vlan_mfib", 30},
      {"l2mc6_elb", 36},
      {"l2mc6_bd_untag_rt", 1},
      {"l2mc6_bd_tag_rt", 1},
      {"l2mc6_global_enable", 2},
      {"l2mc6_vlan_enable", 6},
      {"l2mc6_vlan_port", 9},
      {"l2mc6_bd_enable", 2}}},
};

class BridgeCaptures : public testing::TestWithParam<Expected> {
protected:
    static std::string line(const std::string& options = "") {
        return importBridgeLine(GetParam().folder, std::string("--prefix ") + GetParam().prefix + " " + options);
    }
};

TEST_P(BridgeCaptures, are_imported_completely) {
    const Expected& expected = GetParam();
    const Outcome outcome = runScript(line("--strict") + "count l2\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 2U);
    ASSERT_EQ(all[0].at("rows").size(), expected.rows.size());
    for (const auto& [kind, rows] : expected.rows) {
        const Json counts = {
            {"of", kind}, {"read", rows.read}, {"imported", rows.imported}, {"skipped", rows.skipped}, {"refused", 0}};
        EXPECT_EQ(only(all[0].at("rows"), "of", kind), counts);
    }
    std::map<std::string, uint64_t> reasons;
    for (const Json& skipped : all[0].at("skipped")) {
        if (skipped.at("of") == "groups") reasons[skipped.at("reason")] = skipped.at("count");
    }
    EXPECT_EQ(reasons, expected.skipReasons);
    ASSERT_EQ(all[0].at("tables").size(), 16U);
    ASSERT_EQ(all[1].at("tables").size(), 16U);
    for (const Json& counted : all[1].at("tables")) {
        const auto found = expected.tables.find(counted.at("table"));
        const uint64_t count = found == expected.tables.end() ? 0 : found->second;
        EXPECT_EQ(counted.at("count"), count) << counted;
        const Json change = only(all[0].at("tables"), "table", counted.at("table"));
        EXPECT_EQ(change.at("before"), 0);
        EXPECT_EQ(change.at("new"), count) << change;
        EXPECT_EQ(change.at("after"), count) << change;
    }
}

TEST_P(BridgeCaptures, are_restamped_when_they_come_again) {
    const Outcome outcome = runScript(
        line("--smooth-version 1") + line("--smooth-version 2") + "smooth l2 --version 2\nsmooth l2 --version 3\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 4U);
    for (const auto& [table, count] : GetParam().tables) {
        const Json again = only(all[1].at("tables"), "table", table);
        EXPECT_EQ(again, (Json{{"table", table},
                               {"before", count},
                               {"new", 0},
                               {"replaced", 0},
                               {"restamped", count},
                               {"removed", 0},
                               {"after", count}}));
        EXPECT_EQ(only(all[2].at("tables"), "table", table),
                  (Json{{"table", table}, {"before", count}, {"deleted", 0}, {"after", count}}));
        EXPECT_EQ(only(all[3].at("tables"), "table", table),
                  (Json{{"table", table}, {"before", count}, {"deleted", count}, {"after", 0}}));
    }
}

INSTANTIATE_TEST_SUITE_P(BridgeImport, BridgeCaptures, testing::ValuesIn(kExpected),
                         [](const auto& instance) { return std::string(instance.param.name); });

// What the medium capture says, asked of the file itself: every row on a port is a member, with its interface.
std::set<std::string> membersOfCapture(const std::string& folder) {
    std::map<std::string, Json> links;
    for (const Json& link : Json::parse(readFile(sample(folder + "/sw.link.json")))) links[link.at("ifname")] = link;
    std::set<std::string> members;
    const Json capture = Json::parse(readFile(sample(folder + "/sw.mdb.json")));
    for (const Json& row : capture.at(0).at("mdb")) {
        const std::string group = row.at("grp");
        if (!group.starts_with("ff") || row.at("port") == row.at("dev")) continue;
        if (links.at(row.at("dev")).at("linkinfo").at("info_kind") != "bridge") continue;
        members.insert(row.at("dev").get<std::string>() + " " + std::to_string(row.value("vid", 0)) + " " + group +
                       " " + row.value("src", "::") + " " + row.at("port").get<std::string>());
    }
    return members;
}

std::set<std::string> membersShown(const Json& entries) {
    std::set<std::string> members;
    for (const Json& entry : entries) {
        const bool isVlan = entry.at("table") == "l2mc6_vlan_mfib";
        const std::string bridge = isVlan ? entry.at("vrName") : entry.at("bdName");
        const std::string vlan = isVlan ? entry.at("vlanId").dump() : "0";
        for (const Json& member : entry.at("members")) {
            const std::string text = bridge + " " + vlan + " " + entry.at("groupAddr").get<std::string>() + " " +
                                     entry.at("sourceAddr").get<std::string>() + " " +
                                     member.at("outIfName").get<std::string>();
            EXPECT_TRUE(members.insert(text).second) << "shown twice: " << text;
        }
    }
    return members;
}

class Members : public testing::TestWithParam<const char*> {};

TEST_P(Members, are_the_ports_of_the_capture) {
    const Outcome outcome = runScript(importBridgeLine(GetParam()) + "show l2-mfib --members\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(membersShown(documents(outcome.out).at(1).at("entries")), membersOfCapture(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(BridgeImport, Members, testing::Values("small", "medium", "vlan"),
                         [](const auto& instance) { return std::string(instance.param); });

TEST(BridgeImport, replaces_what_changed_and_leaves_what_vanished_to_smooth) {
    const std::string later = "import bridge --mdb '" + sample("made/later.sw.mdb.json") + "' --links '" +
                              sample("small/sw.link.json") + "' --bridge-links '" +
                              sample("small/sw.bridge-link.json") + "' --smooth-version 2\n";
    const Outcome outcome = runScript(importBridgeLine("small", "--smooth-version 1") + later +
                                          "smooth l2 --version 2\nshow bd-untag-elb --group ff0e::20:2\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 4U);
    const auto change = [&](const char* table) { return only(all[1].at("tables"), "table", table); };
    EXPECT_EQ(change("l2mc6_bd_mfib"), (Json{{"table", "l2mc6_bd_mfib"},
                                             {"before", 36},
                                             {"new", 1},
                                             {"replaced", 0},
                                             {"restamped", 35},
                                             {"removed", 0},
                                             {"after", 37}}));
    EXPECT_EQ(change("l2mc6_bd_untag_elb"), (Json{{"table", "l2mc6_bd_untag_elb"},
                                                  {"before", 38},
                                                  {"new", 1},
                                                  {"replaced", 1},
                                                  {"restamped", 34},
                                                  {"removed", 0},
                                                  {"after", 39}}));
    const auto smoothed = [&](const char* table) { return only(all[2].at("tables"), "table", table); };
    EXPECT_EQ(smoothed("l2mc6_bd_mfib"),
              (Json{{"table", "l2mc6_bd_mfib"}, {"before", 37}, {"deleted", 1}, {"after", 36}}));
    EXPECT_EQ(smoothed("l2mc6_bd_untag_elb"),
              (Json{{"table", "l2mc6_bd_untag_elb"}, {"before", 39}, {"deleted", 3}, {"after", 36}}));
    EXPECT_EQ(smoothed("l2mc6_bd_untag_rt"),
              (Json{{"table", "l2mc6_bd_untag_rt"}, {"before", 3}, {"deleted", 1}, {"after", 2}}));
    ASSERT_EQ(all[3].at("entries").size(), 1U);
    EXPECT_EQ(all[3].at("entries").at(0).at("flags"), "permanent");
    EXPECT_EQ(all[3].at("entries").at(0).at("protocol"), 4);
}

constexpr const char* kBridge = R"({"ifindex":9,"ifname":"br","linkinfo":{"info_kind":"bridge",)"
                                R"("info_data":{"mcast_snooping":1,"vlan_filtering":%FILTERS%,)"
                                R"("mcast_vlan_snooping":1,"mcast_mld_version":2}}})";

std::string bridge(bool filters) {
    std::string text = kBridge;
    return text.replace(text.find("%FILTERS%"), 9, filters ? "1" : "0");
}

std::string port(int index, const std::string& name, const std::string& more = "") {
    return R"({"ifindex":)" + std::to_string(index) + R"(,"ifname":")" + name + R"(","master":"br")" + more + "}";
}

std::string groupRow(const std::string& portName, const std::string& more = "") {
    return R"({"dev":"br","port":")" + portName + R"(","grp":"ff0e::1","state":"temp","flags":[])" + more + "}";
}

// Files of one import, and the line that imports them.
std::string importOf(const std::string& links, const std::string& groups, const std::string& routers,
                     const std::string& vlans = "[]", const std::string& switches = "[]",
                     const std::string& options = "") {
    return "import bridge --links '" + writeFile("links.json", "[" + links + "]") + "' --mdb '" +
           writeFile("mdb.json", R"([{"mdb":[)" + groups + R"(],"router":{)" + routers + "}}]") + "' --vlans '" +
           writeFile("vlans.json", vlans) + "' --vlan-globals '" + writeFile("switches.json", switches) + "' " +
           options + "\n";
}

TEST(BridgeImport, tells_tagged_members_and_router_ports_from_untagged_ones) {
    const std::string links =
        bridge(false) + "," + port(2, "plain") + "," +
        R"({"ifindex":3,"ifname":"e.5","master":"br","link":"e","linkinfo":{"info_kind":"vlan","info_data":{"id":5}}},)"
        R"({"ifindex":4,"ifname":"e.5.6","master":"br","link":"e.5",)"
        R"("linkinfo":{"info_kind":"vlan","info_data":{"id":6}}},)" +
        port(5, "one") + "," + port(6, "several") + "," + port(7, "both");
    const std::string vlans =
        R"([{"ifname":"one","vlans":[{"vlan":70}]},{"ifname":"several","vlans":[{"vlan":10,"vlanEnd":12}]},)"
        R"({"ifname":"both","vlans":[{"vlan":8},{"vlan":9,"flags":["PVID","Egress Untagged"]}]}])";
    std::string groups, routers;
    for (const char* name : {"plain", "e.5", "e.5.6", "one", "several", "both"}) {
        groups += (groups.empty() ? "" : ",") + groupRow(name);
        routers += std::string(routers.empty() ? "" : ",") + R"({"port":")" + name + R"(","type":"temp"})";
    }
    const Outcome outcome =
        runScript(importOf(links, groups, R"("br":[)" + routers + "]", vlans) +
                      "show bd-tag-elb\nshow bd-untag-elb\nshow bd-tag-rt\nshow bd-untag-rt\nshow vlan-port\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    const auto tagsIn = [](const Json& document, const char* name) {
        std::set<std::string> tags;
        for (const Json& entry : document.at("entries")) {
            tags.insert(
                entry.at(name).get<std::string>() +
                (entry.contains("tagVid1") ? " " + entry.at("tagVid1").dump() + " " + entry.at("tagVid2").dump() : ""));
        }
        return tags;
    };
    const std::set<std::string> tagged{"e.5 5 0", "e.5.6 5 6", "one 70 0", "several 0 0"};
    const std::set<std::string> untagged{"both", "plain"};
    EXPECT_EQ(tagsIn(all.at(1), "outIfName"), tagged);
    EXPECT_EQ(tagsIn(all.at(2), "outIfName"), untagged);
    EXPECT_EQ(tagsIn(all.at(3), "portIfName"), tagged);
    EXPECT_EQ(tagsIn(all.at(4), "portIfName"), untagged);
    EXPECT_EQ(all.at(4).at("entries").at(0).at("kind"), "learned");
    EXPECT_EQ(all.at(5).at("entries").size(), 6U);  // 70; 10, 11, 12; 8, 9
}

TEST(BridgeImport, keeps_the_same_group_in_the_same_VLAN_of_two_bridges_apart) {
    const Outcome outcome = runScript(importBridgeLine("vlan") +
                                          "show l2-vlan-mfib --vlan 10 --group ff0e::10:1 --source any\n"
                                          "show l2-elb --vr br200 --vlan 10 --group ff0e::10:1 --source any\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.at(1).at("entries").size(), 2U);
    only(all.at(1).at("entries"), "vrName", "br100");
    only(all.at(1).at("entries"), "vrName", "br200");
    ASSERT_EQ(all.at(2).at("entries").size(), 1U);
    EXPECT_EQ(all.at(2).at("entries").at(0).at("outIfName"), "b5");
}

TEST(BridgeImport, takes_router_ports_of_VLANs_from_the_ports_when_nothing_else_tells_them) {
    const std::string vlans = R"([{"ifname":"p","vlans":[{"vlan":10,"mcast_router":2},{"vlan":11,"mcast_router":1}]}])";
    const Outcome outcome = runScript(
        importOf(bridge(true) + "," + port(2, "p"), "", "", vlans) + "show bd-tag-rt\nshow mld-global\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.at(1).at("entries").size(), 1U);
    const Json& router = all.at(1).at("entries").at(0);
    EXPECT_EQ(router.at("bdName"), "br");
    EXPECT_EQ(router.at("portIfName"), "p");
    EXPECT_EQ(router.at("vlanId"), 10);
    EXPECT_EQ(router.at("tagVid1"), 10);
    EXPECT_EQ(router.at("kind"), "permanent");
    EXPECT_EQ(all.at(2).at("entries").at(0).at("enabled"), true);
}

// A changed switch or port cannot be written over: the tables refuse that, and the import replaces the record.
TEST(BridgeImport, replaces_switches_and_ports_of_VLANs) {
    const std::string links = bridge(true) + "," + port(2, "p");
    std::string off = links;
    off.replace(off.find(R"("mcast_vlan_snooping":1)"), 23, R"("mcast_vlan_snooping":0)");
    const auto vlans = [](const char* flags) {
        return std::string(R"([{"ifname":"p","vlans":[{"vlan":10,"flags":[)") + flags + "]}]}]";
    };
    const auto switches = [](int snooping) {
        return R"([{"ifname":"br","vlans":[{"vlan":10,"mcast_snooping":)" + std::to_string(snooping) + "}]}]";
    };
    // Both lines name the same files, so that each import is a process line of its own.
    std::string script = importOf(links, "", "", vlans(""), switches(1));
    const Outcome first = runScript(script + "show mld-global\nshow vlan-port\nshow vlan-enable\n", {"--json"});
    ASSERT_EQ(first.exitCode, 0) << first.err;
    EXPECT_EQ(documents(first.out).at(2).at("entries").at(0).at("egress"), "tagged");
    const std::string secondLinks = writeFile("links2.json", "[" + off + "]");
    const std::string secondVlans = writeFile("vlans2.json", vlans(R"("PVID","Egress Untagged")"));
    const std::string secondSwitches = writeFile("switches2.json", switches(0));
    script = importOf(links, "", "", vlans(""), switches(1), "--smooth-version 1") + "import bridge --links '" +
             secondLinks + "' --mdb '" + writeFile("mdb.json", R"([{"mdb":[],"router":{}}])") + "' --vlans '" +
             secondVlans + "' --vlan-globals '" + secondSwitches +
             "' --smooth-version 2\nshow mld-global\nshow vlan-port\nshow vlan-enable\n";
    const Outcome outcome = runScript(script, {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    for (const char* table : {"l2mc6_global_enable", "l2mc6_vlan_port", "l2mc6_vlan_enable"}) {
        EXPECT_EQ(only(all.at(1).at("tables"), "table", table), (Json{{"table", table},
                                                                      {"before", 1},
                                                                      {"new", 0},
                                                                      {"replaced", 1},
                                                                      {"restamped", 0},
                                                                      {"removed", 0},
                                                                      {"after", 1}}));
    }
    EXPECT_EQ(all.at(2).at("entries").at(0).at("enabled"), false);
    EXPECT_EQ(all.at(3).at("entries").at(0).at("egress"), "untagged");
    EXPECT_EQ(all.at(3).at("entries").at(0).at("pvid"), true);
    EXPECT_EQ(all.at(4).at("entries").at(0).at("l2mcEnable"), false);
    for (size_t position = 2; position < 5; ++position) {
        EXPECT_EQ(all.at(position).at("entries").at(0).at("smoothVersion"), 2);
    }
}

}  // namespace
}  // namespace mcast6::ctl::test
