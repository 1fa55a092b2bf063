// What is wrong with a bridge's captures is told by file, row and reason, and the wrong row alone is left out.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

constexpr const char* kLinks =
    R"([{"ifindex":1,"ifname":"br","linkinfo":{"info_kind":"bridge","info_data":{"mcast_snooping":1}}},)"
    R"({"ifindex":2,"ifname":"p","master":"br"},{"ifindex":3,"ifname":"q","master":"br"},)"
    R"({"ifindex":4,"ifname":"stray"}])";
constexpr const char* kGood = R"({"dev":"br","port":"p","grp":"ff0e::1","state":"temp","flags":[]})";
constexpr const char* kLast = R"({"dev":"br","port":"q","grp":"ff0e::2","state":"temp","flags":[]})";

std::string importGroups(const std::string& groups, const std::string& options = "") {
    return "import bridge --links '" + writeFile("links.json", kLinks) + "' --mdb '" + writeFile("mdb.json", groups) +
           "' " + options + "\n";
}

struct Wrong {
    const char* name;
    const char* row;  // stands between two right ones
    const char* called;
    const char* reason;
};

void PrintTo(const Wrong& wrong, std::ostream* out) { *out << wrong.name; }

class WrongGroups : public testing::TestWithParam<Wrong> {
protected:
    static std::string line(const std::string& options = "") {
        return importGroups(
            std::string(R"([{"mdb":[)") + kGood + "," + GetParam().row + "," + kLast + R"(],"router":{}}])", options);
    }
    // Without the file's path before it.
    static std::string told() {
        return std::string("group row 2 (") + GetParam().called + "): refused: " + GetParam().reason;
    }
};

TEST_P(WrongGroups, are_told_and_left_out) {
    const Outcome outcome = runScript(line() + "count bd-untag-elb\n", {"--json"});
    EXPECT_EQ(outcome.exitCode, kPartial);
    EXPECT_TRUE(outcome.err.starts_with("mcast6ctl: /")) << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("/mdb.json: " + told() + "\n")) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(only(all[0].at("rows"), "of", "groups"),
              (Json{{"of", "groups"}, {"read", 3}, {"imported", 2}, {"skipped", 0}, {"refused", 1}}));
    EXPECT_EQ(all[1].at("count"), 2);
}

TEST_P(WrongGroups, stop_a_strict_import) {
    const Outcome outcome = runScript(line("--strict") + "count bd-untag-elb\n", {"--json", "--keep-going"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(lines(outcome.err).at(0).ends_with("/mdb.json: " + told() + "; stopped there (--strict)"))
        << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(only(all[0].at("rows"), "of", "groups"),
              (Json{{"of", "groups"}, {"read", 2}, {"imported", 1}, {"skipped", 0}, {"refused", 1}}));
    EXPECT_EQ(all[1].at("count"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    BridgeMalformed, WrongGroups,
    testing::Values(
        Wrong{"no_object", "7", "?, port ?, group ?, source ::", "of type number, not an object"},
        Wrong{"no_device", R"({"port":"p","grp":"ff0e::3"})",
              "?, port p, group ff0e::3, source ::", "'dev' is missing"},
        Wrong{"no_port", R"({"dev":"br","grp":"ff0e::3"})",
              "br, port ?, group ff0e::3, source ::", "'port' is missing"},
        Wrong{"no_group", R"({"dev":"br","port":"p"})", "br, port p, group ?, source ::", "'grp' is missing"},
        Wrong{"group_number", R"({"dev":"br","port":"p","grp":3})",
              "br, port p, group ?, source ::", "'grp' is of type number, not a string"},
        Wrong{"group_text", R"({"dev":"br","port":"p","grp":"x"})",
              "br, port p, group x, source ::", "'grp' is 'x', not an address"},
        Wrong{"group_unicast", R"({"dev":"br","port":"p","grp":"2001:db8::1"})",
              "br, port p, group 2001:db8::1, source ::", "the group 2001:db8::1 is not a multicast address"},
        Wrong{"group_any", R"({"dev":"br","port":"p","grp":"::"})",
              "br, port p, group ::, source ::", "the group :: is not a multicast address"},
        Wrong{"source_text", R"({"dev":"br","port":"p","grp":"ff0e::3","src":"1.2.3.4"})",
              "br, port p, group ff0e::3, source 1.2.3.4", "'src' is '1.2.3.4', not an IPv6 address"},
        Wrong{"source_multicast", R"({"dev":"br","port":"p","grp":"ff0e::3","src":"ff0e::4"})",
              "br, port p, group ff0e::3, source ff0e::4", "the source ff0e::4 is a multicast address"},
        Wrong{"unknown_device", R"({"dev":"x","port":"p","grp":"ff0e::3"})",
              "x, port p, group ff0e::3, source ::", "'dev' is 'x', which the link list does not have"},
        Wrong{"no_bridge", R"({"dev":"p","port":"p","grp":"ff0e::3"})",
              "p, port p, group ff0e::3, source ::", "'dev' is 'p', which is no bridge"},
        Wrong{"unknown_port", R"({"dev":"br","port":"x","grp":"ff0e::3"})",
              "br, port x, group ff0e::3, source ::", "'port' is 'x', which the link list does not have"},
        Wrong{"foreign_port", R"({"dev":"br","port":"stray","grp":"ff0e::3"})",
              "br, port stray, group ff0e::3, source ::", "'port' is 'stray', which is no port of br"},
        Wrong{"vlan", R"({"dev":"br","port":"p","grp":"ff0e::3","vid":4095})",
              "br, port p, group ff0e::3, source ::", "'vid' is 4095, not a VLAN"},
        Wrong{"state", R"({"dev":"br","port":"p","grp":"ff0e::3","state":"gone"})",
              "br, port p, group ff0e::3, source ::", "'state' is 'gone', which is unknown"},
        Wrong{"mode", R"({"dev":"br","port":"p","grp":"ff0e::3","filter_mode":"both"})",
              "br, port p, group ff0e::3, source ::", "'filter_mode' is 'both', which is unknown"},
        Wrong{"flag", R"({"dev":"br","port":"p","grp":"ff0e::3","flags":["odd"]})",
              "br, port p, group ff0e::3, source ::", "'flags' has \"odd\", which is unknown"},
        Wrong{"flags", R"({"dev":"br","port":"p","grp":"ff0e::3","flags":"odd"})",
              "br, port p, group ff0e::3, source ::", "'flags' is of type string, not a list"},
        Wrong{"twice", kGood,
              "br, port p, group ff0e::1, source ::", "row 1 has the same bridge, VLAN, group, source and port"}),
    [](const auto& instance) { return std::string(instance.param.name); });

struct WrongFile {
    const char* name;
    const char* groups;
    const char* of;  // the kind of row that is refused
    const char* reason;
};

void PrintTo(const WrongFile& wrong, std::ostream* out) { *out << wrong.name; }

class WrongFiles : public testing::TestWithParam<WrongFile> {};

TEST_P(WrongFiles, count_as_a_refused_row) {
    const Outcome outcome = runScript(importGroups(GetParam().groups), {"--json"});
    EXPECT_EQ(outcome.exitCode, kPartial);
    EXPECT_NE(outcome.err.find(GetParam().reason), std::string::npos) << outcome.err;
    const Json rows = documents(outcome.out).at(0).at("rows");
    EXPECT_EQ(only(rows, "of", GetParam().of).at("refused"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    BridgeMalformed, WrongFiles,
    testing::Values(WrongFile{"part", "[3]", "groups", "of type number, not an object"},
                    WrongFile{"without_groups", R"([{"router":{}}])", "groups", "'mdb' is missing"},
                    WrongFile{"groups_no_list", R"([{"mdb":{}}])", "groups", "'mdb' is of type object, not a list"},
                    WrongFile{"routers", R"([{"mdb":[],"router":3}])", "routerPorts", "the ports are not a list"},
                    WrongFile{"router_bridge", R"([{"mdb":[],"router":{"x":[{"port":"p"}]}}])", "routerPorts",
                              "'bridge' is 'x', which the link list does not have"},
                    WrongFile{"router_port", R"([{"mdb":[],"router":{"br":[{"port":"stray"}]}}])", "routerPorts",
                              "'port' is 'stray', which is no port of br"},
                    WrongFile{"router_kind", R"([{"mdb":[],"router":{"br":[{"port":"p","type":"odd"}]}}])",
                              "routerPorts", "'type' is 'odd', which is unknown"},
                    WrongFile{"router_twice", R"([{"mdb":[],"router":{"br":[{"port":"p"},{"port":"p"}]}}])",
                              "routerPorts", "an entry before it is the same"}),
    [](const auto& instance) { return std::string(instance.param.name); });

class WrongVlans : public testing::TestWithParam<WrongFile> {};

TEST_P(WrongVlans, count_as_a_refused_row) {
    const bool ofPorts = std::string(GetParam().of) == "vlanPorts";
    const std::string file = writeFile("vlans.json", GetParam().groups);
    const std::string options = std::string(ofPorts ? "--vlans '" : "--vlan-globals '") + file + "'";
    const Outcome outcome = runScript(importGroups("[]", options), {"--json"});
    EXPECT_EQ(outcome.exitCode, kPartial);
    EXPECT_NE(outcome.err.find(GetParam().reason), std::string::npos) << outcome.err;
    EXPECT_EQ(only(documents(outcome.out).at(0).at("rows"), "of", GetParam().of).at("refused"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    BridgeMalformed, WrongVlans,
    testing::Values(WrongFile{"port_unknown", R"([{"ifname":"x","vlans":[{"vlan":1}]}])", "vlanPorts",
                              "'ifname' is 'x', which the link list does not have"},
                    WrongFile{"port_of_none", R"([{"ifname":"stray","vlans":[{"vlan":1}]}])", "vlanPorts",
                              "'master' is '', which the link list does not have"},
                    WrongFile{"port_without_list", R"([{"ifname":"p"}])", "vlanPorts", "'vlans' is missing"},
                    WrongFile{"port_range", R"([{"ifname":"p","vlans":[{"vlan":9,"vlanEnd":8}]}])", "vlanPorts",
                              "'vlan' is 9 to 8, not a range of VLANs"},
                    WrongFile{"switch_of_port", R"([{"ifname":"p","vlans":[{"vlan":1}]}])", "vlans",
                              "'ifname' is 'p', which is no bridge"},
                    WrongFile{"switch_without_name", R"([{"vlans":[{"vlan":1}]}])", "vlans", "'ifname' is missing"},
                    WrongFile{"switch_name", R"([{"ifname":3,"vlans":[{"vlan":1}]}])", "vlans",
                              "'ifname' is of type number, not a string"},
                    WrongFile{"switch_vlan", R"([{"ifname":"br","vlans":[{"vlan":4095}]}])", "vlans",
                              "'vlan' is 4095 to 4095, not a range of VLANs"},
                    WrongFile{"switch_routers", R"([{"ifname":"br","vlans":[{"vlan":1,"router_ports":3}]}])",
                              "routerPorts", "the ports are not a list"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(BridgeMalformed, imports_nothing_when_a_file_cannot_be_read) {
    const std::string mdb = writeFile("mdb.json", std::string(R"([{"mdb":[)") + kGood + R"(],"router":{}}])");
    const std::string links = writeFile("links.json", kLinks);
    const std::string wrong = writeFile("wrong.json", R"([{"ifindex":0,"ifname":"p"}])");
    const std::string stray = writeFile("stray.json", R"([{"ifname":"x"}])");
    for (const std::string& words :
         {"--mdb '" + mdb + "' --links /nowhere", "--mdb '" + mdb + "' --links '" + wrong + "'",
          "--mdb /nowhere --links '" + links + "'",
          "--mdb '" + mdb + "' --links '" + links + "' --bridge-links '" + stray + "'",
          "--mdb '" + mdb + "' --links '" + links + "' --vlans /nowhere", std::string("/nowhere"),
          "'" + sample("vlan") + "' --prefix pe"}) {
        const Outcome outcome =
            runScript("import bridge " + words + "\ncount l2-mfib\ncount bd-enable\n", {"--keep-going"});
        EXPECT_EQ(outcome.exitCode, 1) << words;
        EXPECT_EQ(outcome.out, "0\n0\n") << words;
    }
}

TEST(BridgeMalformed, refuses_a_wrong_command_line) {
    EXPECT_EQ(run({"import", "bridge"}).exitCode, 2);
    EXPECT_EQ(run({"import", "bridge", "--mdb", "x"}).exitCode, 2);
    EXPECT_EQ(run({"import", "bridge", sample("small"), "--mdb", "x"}).exitCode, 2);
    EXPECT_EQ(run({"import", "bridge", "--mdb", "x", "--links", "y", "--prefix", "sw"}).exitCode, 2);
}

// A bad row says so; a flood of them does not.
TEST(BridgeMalformed, tells_fifty_refused_rows_or_all) {
    std::string groups = R"([{"mdb":[0)";
    for (int row = 1; row < 60; ++row) groups += "," + std::to_string(row);
    groups += R"(],"router":{}}])";
    EXPECT_EQ(lines(runScript(importGroups(groups)).err).size(), 51U);
    EXPECT_EQ(lines(runScript(importGroups(groups, "--verbose")).err).size(), 60U);
}

}  // namespace
}  // namespace mcast6::ctl::test
