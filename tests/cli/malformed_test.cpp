// What is wrong with a capture is told by file, entry and reason, and the wrong entry alone is left out.
#include <gtest/gtest.h>

#include <ostream>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

constexpr const char* kGood = R"({"src":"2001:db8::1","dst":"ff0e::1","iif":"m1","multipath":[],"state":"resolved"})";
constexpr const char* kLast = R"({"src":"2001:db8::2","dst":"ff0e::2","iif":"m2","multipath":[],"state":"resolved"})";

struct Wrong {
    const char* name;
    const char* entry;   // stands between two right ones
    const char* called;  // how messages name it
    const char* reason;
    const char* fate = "refused";
};

void PrintTo(const Wrong& param, std::ostream* out) { *out << param.name; }

class WrongEntries : public testing::TestWithParam<Wrong> {};

TEST_P(WrongEntries, are_told_and_left_out) {
    const Wrong& wrong = GetParam();
    const std::string file = writeFile("routes.json", std::string("[") + kGood + "," + wrong.entry + "," + kLast + "]");
    const std::string line = "import mroute '" + file + "' --links '" + sample("small/rt.link.json") + "'\n";
    const Outcome outcome = runScript(line + "count l3-mfib\n", {"--json"});
    EXPECT_EQ(outcome.exitCode, std::string(wrong.fate) == "refused" ? kPartial : 0);
    EXPECT_EQ(outcome.err,
              "mcast6ctl: " + file + ": entry 2 (" + wrong.called + "): " + wrong.fate + ": " + wrong.reason + "\n");
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].at("read"), 3);
    EXPECT_EQ(all[0].at("new"), 2);
    EXPECT_EQ(all[0].at(wrong.fate), 1);
    EXPECT_EQ(all[1].at("count"), 2);
}

TEST_P(WrongEntries, stop_a_strict_import_if_they_are_refused) {
    const Wrong& wrong = GetParam();
    const bool refused = std::string(wrong.fate) == "refused";
    const std::string file = writeFile("routes.json", std::string("[") + kGood + "," + wrong.entry + "," + kLast + "]");
    const std::string line = "import mroute '" + file + "' --links '" + sample("small/rt.link.json") + "' --strict\n";
    const Outcome outcome = runScript(line + "count l3-mfib\n", {"--json", "--keep-going"});
    EXPECT_EQ(outcome.exitCode, refused ? 1 : 0);
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1].at("count"), refused ? 1 : 2);
    if (!refused) return;
    EXPECT_EQ(lines(outcome.err).at(0), "mcast6ctl: standard input:1: " + file + ": entry 2 (" + wrong.called +
                                            "): refused: " + wrong.reason + "; stopped there (--strict)");
    EXPECT_EQ(all[0].at("read"), 2);
    EXPECT_EQ(all[0].at("new"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Import, WrongEntries,
    testing::Values(
        Wrong{"number", "17", "source ?, group ?", "of type number, not an object"},
        Wrong{"null", "null", "source ?, group ?", "of type null, not an object"},
        Wrong{"list", "[]", "source ?, group ?", "of type array, not an object"},
        Wrong{"empty", "{}", "source ?, group ?", "'src' is missing"},
        Wrong{"no_source", R"({"dst":"ff0e::9","iif":"m1"})", "source ?, group ff0e::9", "'src' is missing"},
        Wrong{"no_group", R"({"src":"::","iif":"m1"})", "source ::, group ?", "'dst' is missing"},
        Wrong{"no_interface", R"({"src":"::","dst":"ff0e::9"})", "source ::, group ff0e::9", "'iif' is missing"},
        Wrong{"source_of_another_type", R"({"src":1,"dst":"ff0e::9","iif":"m1"})", "source ?, group ff0e::9",
              "'src' is of type number, not a string"},
        Wrong{"group_of_another_type", R"({"src":"::","dst":["ff0e::9"],"iif":"m1"})", "source ::, group ?",
              "'dst' is of type array, not a string"},
        Wrong{"interface_of_another_type", R"({"src":"::","dst":"ff0e::9","iif":2})", "source ::, group ff0e::9",
              "'iif' is of type number, not a string"},
        Wrong{"source_no_address", R"({"src":"h1","dst":"ff0e::9","iif":"m1"})", "source h1, group ff0e::9",
              "'src' is 'h1', not an IPv6 address"},
        Wrong{"source_ipv4", R"({"src":"192.0.2.1","dst":"ff0e::9","iif":"m1"})", "source 192.0.2.1, group ff0e::9",
              "'src' is '192.0.2.1', not an IPv6 address"},
        Wrong{"source_with_scope", R"({"src":"fe80::1%m1","dst":"ff0e::9","iif":"m1"})",
              "source fe80::1%m1, group ff0e::9", "'src' is 'fe80::1%m1', not an IPv6 address"},
        Wrong{"control_characters", R"({"src":"::\u0000","dst":"\u001b[1mff0e::9","iif":"m1"})",
              "source ::\\x00, group \\x1B[1mff0e::9", "'src' is '::\\x00', not an IPv6 address"},
        Wrong{"source_multicast", R"({"src":"ff0e::8","dst":"ff0e::9","iif":"m1"})", "source ff0e::8, group ff0e::9",
              "the source ff0e::8 is a multicast address"},
        Wrong{"group_ipv4", R"({"src":"::","dst":"239.1.1.1","iif":"m1"})", "source ::, group 239.1.1.1",
              "'dst' is '239.1.1.1', not an IPv6 address"},
        Wrong{"group_unicast", R"({"src":"::","dst":"2001:db8::9","iif":"m1"})", "source ::, group 2001:db8::9",
              "the group 2001:db8::9 is not a multicast address"},
        Wrong{"group_all_but_multicast", R"({"src":"::","dst":"fe00::9","iif":"m1"})", "source ::, group fe00::9",
              "the group fe00::9 is not a multicast address"},
        Wrong{"unknown_interface", R"({"src":"::","dst":"ff0e::9","iif":"m7"})", "source ::, group ff0e::9",
              "'iif' is the interface 'm7', which the link list does not have"},
        Wrong{"unknown_outgoing_interface",
              R"({"src":"::","dst":"ff0e::9","iif":"m1","multipath":[{"oif":"m2"},{"oif":"m7"}]})",
              "source ::, group ff0e::9",
              "'multipath' 2: 'oif' is the interface 'm7', which the link list does not have"},
        Wrong{"outgoing_interface_twice",
              R"({"src":"::","dst":"ff0e::9","iif":"m1","multipath":[{"oif":"m2"},{"oif":"m3"},{"oif":"m2"}]})",
              "source ::, group ff0e::9", "'multipath' 3: the interface 'm2' is there twice"},
        Wrong{"outgoing_interfaces_of_another_type", R"({"src":"::","dst":"ff0e::9","iif":"m1","multipath":"m2"})",
              "source ::, group ff0e::9", "'multipath' is of type string, not a list"},
        Wrong{"outgoing_interface_without_name", R"({"src":"::","dst":"ff0e::9","iif":"m1","multipath":[{"ttl":1}]})",
              "source ::, group ff0e::9", "'multipath' 1: 'oif' is missing"},
        Wrong{"outgoing_interface_bare", R"({"src":"::","dst":"ff0e::9","iif":"m1","multipath":["m2"]})",
              "source ::, group ff0e::9", "'multipath' 1: of type string, not an object"},
        Wrong{"unknown_table", R"({"src":"::","dst":"ff0e::9","iif":"m1","table":"blue"})", "source ::, group ff0e::9",
              "'table' is 'blue', neither a number nor main, default or local"},
        Wrong{"table_too_large", R"({"src":"::","dst":"ff0e::9","iif":"m1","table":4294967296})",
              "source ::, group ff0e::9", "'table' is 4294967296, not a number from 0 to 4294967295"},
        Wrong{"table_negative", R"({"src":"::","dst":"ff0e::9","iif":"m1","table":-1})", "source ::, group ff0e::9",
              "'table' is -1, not a number from 0 to 4294967295"},
        Wrong{"table_of_another_type", R"({"src":"::","dst":"ff0e::9","iif":"m1","table":true})",
              "source ::, group ff0e::9", "'table' is of type boolean, not a number"},
        Wrong{"unknown_state", R"({"src":"::","dst":"ff0e::9","iif":"m1","state":"odd"})", "source ::, group ff0e::9",
              "'state' is 'odd', neither resolved nor unresolved"},
        Wrong{"state_of_another_type", R"({"src":"::","dst":"ff0e::9","iif":"m1","state":1})",
              "source ::, group ff0e::9", "'state' is of type number, not a string"},
        Wrong{"duplicate", R"({"src":"2001:db8::1","dst":"ff0e:0::1","iif":"m2","table":"main"})",
              "source 2001:db8::1, group ff0e:0::1", "entry 1 has the same table, source and group"},
        Wrong{"unresolved", R"({"src":"2001:db8::9","dst":"ff0e::9","iif":"unresolved","state":"unresolved"})",
              "source 2001:db8::9, group ff0e::9", "the route is unresolved", "skipped"},
        Wrong{"lost_its_interface", R"({"src":"2001:db8::9","dst":"ff0e::9","iif":"unresolved","state":"resolved"})",
              "source 2001:db8::9, group ff0e::9", "the route has no incoming interface", "skipped"}),
    [](const auto& instance) { return std::string(instance.param.name); });

// Right, though unusual.
TEST(Entries, in_all_forms_of_the_kernel_are_taken) {
    const std::string routes = writeFile("routes.json", R"([
        {"src":"::","dst":"::","iif":"m1"},
        {"src":"2001:db8::1","dst":"::","iif":"m1"},
        {"src":"::","dst":"ff02::1","iif":"m1","table":"main"},
        {"src":"::","dst":"ff02::1","iif":"m1","table":"default"},
        {"src":"::","dst":"ff02::1","iif":"m1","table":"255"},
        {"src":"::","dst":"ff02::1","iif":"m1","table":4294967295},
        {"src":"::ffff:192.0.2.1","dst":"ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff","iif":"m1","multipath":[]}
    ])");
    const Outcome outcome = runScript("import mroute '" + routes + "' --links '" + sample("small/rt.link.json") +
                                          "' --strict\ncount l3-mfib --vrf main\ncount l3-mfib --vrf default\n"
                                          "count l3-mfib --vrf local\ncount l3-mfib --vrf 4294967295\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(0).at("new"), 7);
    EXPECT_EQ(all.at(1).at("count"), 4);
    for (size_t position : {2U, 3U, 4U}) EXPECT_EQ(all.at(position).at("count"), 1) << position;
}

struct Unreadable {
    const char* name;
    std::string content;
    std::string reason;  // all of it, or its start when it ends in "..."
};

void PrintTo(const Unreadable& param, std::ostream* out) { *out << param.name; }

class UnreadableFiles : public testing::TestWithParam<Unreadable> {};

TEST_P(UnreadableFiles, import_nothing) {
    const Unreadable& unreadable = GetParam();
    const std::string file = writeFile("routes.json", unreadable.content);
    const std::string line = "import mroute '" + file + "' --links '" + sample("small/rt.link.json") + "'\n";
    const Outcome outcome = runScript(line + "count l3-mfib\n", {"--keep-going"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "0\n");
    const std::string expected = "mcast6ctl: standard input:1: " + file + ": " + unreadable.reason;
    const std::string told = lines(outcome.err).at(0);
    EXPECT_TRUE(expected.ends_with("...") ? told.starts_with(expected.substr(0, expected.size() - 3))
                                          : told == expected)
        << told;
}

const std::string kHalf = std::string("[") + kGood + "," + kLast;

INSTANTIATE_TEST_SUITE_P(
    Import, UnreadableFiles,
    testing::Values(
        Unreadable{"empty", "", "empty, not JSON"}, Unreadable{"blank", " \n", "empty, not JSON"},
        Unreadable{"cut_off", kHalf, "not valid JSON: parse error at line 1, column 167: ..."},
        Unreadable{"garbage_after_routes", kHalf + "]x", "not valid JSON: parse error at line 1, column 168: ..."},
        Unreadable{"text", "(2001:db8::1,ff0e::1) Iif: m1", "not valid JSON: parse error at line 1, column 1: ..."},
        Unreadable{"comma_too_many", kHalf + ",]", "not valid JSON: parse error at line 1, column 168: ..."},
        Unreadable{"no_utf8", "[{\"src\":\"\xff\"}]", "not valid JSON: parse error at line 1, column 10: ..."},
        Unreadable{"object", kGood, "not a list of routes: the whole is of type object"},
        Unreadable{"number", "5", "not a list of routes: the whole is of type number"},
        Unreadable{"no_gzip", std::string("\x1f\x8b") + "nonsense", "the compressed data is damaged"},
        Unreadable{"gzip_cut_off", std::string("\x1f\x8b\x08\0\0\0\0\0\0\x03", 10),
                   "the compressed data ends too early"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(Files, that_are_not_there_are_named) {
    const Outcome outcome = run({"import", "mroute", "/nowhere/routes.json"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "mcast6ctl: /nowhere/routes.json: No such file or directory\n");
}

TEST(Files, that_are_directories_are_refused) {
    const Outcome outcome = run({"import", "mroute", "/"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "mcast6ctl: /: Is a directory\n");
}

TEST(Files, without_routes_bring_nothing_and_say_so) {
    const std::string file = writeFile("routes.json", "[ ]");
    const Outcome outcome = run({"import", "mroute", file, "--json"});
    EXPECT_EQ(outcome.exitCode, kNothing);
    EXPECT_EQ(outcome.err, "mcast6ctl: " + file + ": there is nothing to import\n");
    EXPECT_EQ(documents(outcome.out).at(0).at("read"), 0);
}

TEST(Links, are_asked_for_when_a_route_names_an_interface) {
    const std::string file = writeFile("routes.json", std::string("[") + kGood + "]");
    const Outcome outcome = run({"import", "mroute", file});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "mcast6ctl: " + file +
                  ": entry 1 (source 2001:db8::1, group ff0e::1): names the interface m1; give the captured "
                  "link list with --links FILE\n");
}

TEST(Links, are_not_needed_when_no_route_names_an_interface) {
    const std::string file =
        writeFile("routes.json", R"([{"src":"2001:db8::9","dst":"ff0e::9","iif":"unresolved","state":"unresolved"}])");
    const Outcome outcome = run({"import", "mroute", file, "--json"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(documents(outcome.out).at(0).at("skipped"), 1);
}

struct WrongLinks {
    const char* name;
    const char* content;
    const char* reason;
};

void PrintTo(const WrongLinks& param, std::ostream* out) { *out << param.name; }

class WrongLinkLists : public testing::TestWithParam<WrongLinks> {};

TEST_P(WrongLinkLists, import_nothing) {
    const std::string routes = writeFile("routes.json", std::string("[") + kGood + "]");
    const std::string links = writeFile("links.json", GetParam().content);
    const Outcome outcome =
        runScript("import mroute '" + routes + "' --links '" + links + "'\ncount l3-mfib\n", {"--keep-going"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "0\n");
    EXPECT_EQ(lines(outcome.err).at(0), "mcast6ctl: standard input:1: " + links + ": " + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Import, WrongLinkLists,
    testing::Values(
        WrongLinks{"object", "{}", "not a list of links: the whole is of type object"},
        WrongLinks{"no_index", R"([{"ifname":"m1"}])", "link 1: 'ifindex' is missing"},
        WrongLinks{"no_name", R"([{},{"ifindex":2}])", "link 2: 'ifname' is missing"},
        WrongLinks{"index_zero", R"([{"ifindex":0,"ifname":"m1"}])", "link 1: 'ifindex' is 0"},
        WrongLinks{"index_text", R"([{"ifindex":"2","ifname":"m1"}])",
                   "link 1: 'ifindex' is of type string, not a number"},
        WrongLinks{"index_fraction", R"([{"ifindex":2.5,"ifname":"m1"}])",
                   "link 1: 'ifindex' is 2.5, not a number from 0 to 4294967295"},
        WrongLinks{"same_name", R"([{"ifindex":2,"ifname":"m1"},{"ifindex":3,"ifname":"m1"}])",
                   "link 2 (m1): a link before it has the same name"},
        WrongLinks{"same_index", R"([{"ifindex":2,"ifname":"m1"},{"ifindex":2,"ifname":"m2"}])",
                   "link 2 (m2): link m1 has the same index 2"},
        WrongLinks{"kind_of_another_type", R"([{"ifindex":2,"ifname":"m1","linkinfo":{"info_kind":7}}])",
                   "link 1: 'info_kind' is of type number, not a string"},
        WrongLinks{"link_info_of_another_type", R"([{"ifindex":2,"ifname":"m1","linkinfo":"vlan"}])",
                   "link 1: 'linkinfo' is of type string, not an object"},
        WrongLinks{"vlan_without_number", R"([{"ifindex":2,"ifname":"m1","linkinfo":{"info_kind":"vlan"}}])",
                   "link 1: 'id' is missing"},
        WrongLinks{"vlan_too_large",
                   R"([{"ifindex":2,"ifname":"m1","linkinfo":{"info_kind":"vlan","info_data":{"id":4095}}}])",
                   "link 1: 'id' is 4095, not a VLAN from 0 to 4094"},
        WrongLinks{"tunnel_to_no_address",
                   R"([{"ifindex":2,"ifname":"m1","linkinfo":{"info_kind":"ip6tnl","info_data":{"remote":"h1"}}}])",
                   "link 1: 'remote' is 'h1', not an address"},
        WrongLinks{"tunnel_key",
                   R"([{"ifindex":2,"ifname":"m1","linkinfo":{"info_kind":"ip6gre","info_data":{"okey":"0.0.7"}}}])",
                   "link 1: 'okey' is '0.0.7', not a number"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(Refusals, are_told_one_by_one_up_to_fifty_unless_all_are_asked_for) {
    std::string routes = "[";
    for (int entry = 0; entry < 60; ++entry) routes += entry == 0 ? "0" : ",0";
    const std::string file = writeFile("routes.json", routes + "]");
    const Outcome some = run({"import", "mroute", file});
    EXPECT_EQ(some.exitCode, kNothing);
    ASSERT_EQ(lines(some.err).size(), 51U);
    EXPECT_EQ(lines(some.err).back(),
              "mcast6ctl: " + file + ": more entries were skipped or refused; --verbose tells all");
    EXPECT_EQ(lines(run({"import", "mroute", file, "--verbose"}).err).size(), 60U);
}

}  // namespace
}  // namespace mcast6::ctl::test
