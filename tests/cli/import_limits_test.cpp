// What imports do with inputs that are damaged, endless or made to exhaust the machine, and what their end tells.
#include <gtest/gtest.h>

#include <string>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

constexpr const char* kLinks = R"([{"ifindex":1,"ifname":"m1","promiscuity":0},{"ifindex":2,"ifname":"m2"}])";
constexpr const char* kRoute = R"({"src":"2001:db8::1","dst":"ff0e::1","iif":"m1","multipath":[{"oif":"m2"}]})";

std::string importRoutes(const std::string& routes, const std::string& options = "") {
    return "import mroute '" + writeFile("routes.json", routes) + "' --links '" + writeFile("links.json", kLinks) +
           "' " + options + "\n";
}

// Little memory: what the tool may have in all, where the text would be much larger. A sanitizer reserves more address
// space than that for itself.
Outcome importWithin256MiB(const std::string& producer) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    const std::string limit;
#else
    const std::string limit = "ulimit -v 262144; ";
#endif
    return runShell(limit + producer + " | \"$CTL\" import mroute -");
}

TEST(Bombs, of_white_space_end_in_a_message) {
    const Outcome outcome = importWithin256MiB("head -c 1G /dev/zero | tr '\\0' ' ' | gzip -1");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "mcast6ctl: standard input: entry 1 and the space before it are larger than 16 MiB\n");
}

TEST(Bombs, of_lists_in_lists_end_in_a_message) {
    const Outcome outcome = importWithin256MiB("head -c 100M /dev/zero | tr '\\0' '[' | gzip -1");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "mcast6ctl: standard input: entry 1 is nested deeper than 64\n");
}

TEST(Bombs, of_one_entry_end_in_a_message) {
    for (const char* producer : {"{ printf '[{\"src\":\"'; yes | tr -d '\\n'; }", "{ printf '[['; yes '1,'; }"}) {
        const Outcome outcome = importWithin256MiB(producer);
        EXPECT_EQ(outcome.exitCode, 1) << producer;
        EXPECT_EQ(outcome.err, "mcast6ctl: standard input: entry 1 and the space before it are larger than 16 MiB\n");
    }
}

TEST(Bytes, that_are_nul_are_called_so) {
    const std::string file = writeFile("routes.json", std::string(4096, '\0'));
    const std::string reason = "not JSON: a NUL byte at line 1, column 1; the file is damaged, or no text at all\n";
    EXPECT_EQ(run({"import", "mroute", file}).err, "mcast6ctl: " + file + ": " + reason);
    const Outcome endless = run({"import", "mroute", "/dev/zero"});
    EXPECT_EQ(endless.exitCode, 1);
    EXPECT_EQ(endless.err, "mcast6ctl: /dev/zero: " + reason);
}

TEST(Bytes, that_are_nul_are_placed) {
    const std::string damaged = std::string("[\n  ") + kRoute + ",\n" + std::string(8, '\0');
    const Outcome outcome = run({"import", "mroute", writeFile("routes.json", damaged)});
    EXPECT_NE(outcome.err.find("not JSON: a NUL byte at line 3, column 1;"), std::string::npos) << outcome.err;
}

// A pipe can be read once only, and yet what is cut off brings nothing.
TEST(Pipes, are_checked_before_anything_is_imported) {
    const std::string routes = "'" + writeFile("routes.json", std::string("[") + kRoute + "," + kRoute + "]") + "'";
    const std::string links = "'" + writeFile("links.json", kLinks) + "'";
    const std::string import = " | \"$CTL\" --json import mroute - --links " + links;
    const Outcome whole = runShell("cat " + routes + import);
    EXPECT_EQ(whole.exitCode, kPartial) << whole.err;
    EXPECT_EQ(documents(whole.out).at(0).at("new"), 1);
    const Outcome compressed = runShell("gzip -c " + routes + import);
    EXPECT_EQ(documents(compressed.out).at(0).at("new"), 1) << compressed.err;
    const Outcome cut = runShell("head -c -1 " + routes + import);
    EXPECT_EQ(cut.exitCode, 1);
    EXPECT_EQ(cut.out, "");
    EXPECT_NE(cut.err.find("the text ends too early"), std::string::npos) << cut.err;
}

TEST(Messages, cut_long_values_and_tell_their_length) {
    const std::string name(70000, 'x');
    const Outcome outcome =
        runScript(importRoutes(R"([{"src":")" + name + R"(","dst":"ff0e::9","iif":")" + name + R"("}])"));
    const std::string cut = std::string(80, 'x') + "... (70000 characters)";
    EXPECT_NE(outcome.err.find("(source " + cut + ", group ff0e::9): refused: 'src' is '" + cut + "', not an IPv6"),
              std::string::npos)
        << outcome.err.substr(0, 1000);
    EXPECT_LT(outcome.err.size(), 1000U);
}

// Characters, not bytes; none is cut in two.
TEST(Messages, cut_long_values_between_characters) {
    std::string name;
    for (int each = 0; each < 90; ++each) name += "\u00e9";
    const Outcome outcome = runScript(importRoutes(R"([{"src":")" + name + R"(","dst":"ff0e::9","iif":"m1"}])"));
    EXPECT_NE(outcome.err.find("'" + name.substr(0, 160) + "... (90 characters)'"), std::string::npos) << outcome.err;
}

TEST(ExitCodes, tell_partial_and_empty_imports) {
    const std::string routes = std::string("[") + kRoute + "]";
    const std::string skipped = R"([{"src":"::","dst":"ff0e::9","iif":"unresolved","state":"unresolved"}])";
    EXPECT_EQ(runScript(importRoutes(routes)).exitCode, 0);
    EXPECT_EQ(runScript(importRoutes(skipped)).exitCode, 0);
    EXPECT_EQ(runScript(importRoutes(std::string("[7,") + kRoute + "]")).exitCode, kPartial);
    EXPECT_EQ(runScript(importRoutes("[7]")).exitCode, kNothing);
    EXPECT_EQ(runScript(importRoutes("[]")).exitCode, kNothing);
    // A script ends with what its worst import was, unless a command of it failed.
    EXPECT_EQ(runScript(importRoutes("[7]") + "count l3-mfib\n").exitCode, kNothing);
    EXPECT_EQ(runScript(importRoutes("[7]") + "count nothing\n").exitCode, 2);
}

std::string importBridge(const std::string& links, const std::string& groups, const std::string& options = "") {
    return "import bridge --links '" + writeFile("links.json", links) + "' --mdb '" + writeFile("mdb.json", groups) +
           "' " + options + "\n";
}

TEST(ExitCodes, tell_partial_and_empty_imports_of_bridges) {
    const std::string bridge = R"({"ifindex":1,"ifname":"br","linkinfo":{"info_kind":"bridge"}})";
    const std::string empty = R"([{"mdb":[],"router":{}}])";
    EXPECT_EQ(runScript(importBridge("[" + bridge + "]", empty)).exitCode, 0);
    EXPECT_EQ(runScript(importBridge("[" + bridge + "]", R"([{"mdb":[7],"router":{}}])")).exitCode, kPartial);
    EXPECT_EQ(runScript(importBridge("[]", R"([{"mdb":[7],"router":{}}])")).exitCode, kNothing);
    EXPECT_EQ(runScript(importBridge("[]", empty)).exitCode, kNothing);
}

// `bridge -j vlan show` prints it where no bridge filters VLANs.
TEST(LoneBrackets, are_an_empty_list_of_vlans) {
    const std::string links = R"([{"ifindex":1,"ifname":"br","linkinfo":{"info_kind":"bridge"}}])";
    const std::string vlans = writeFile("vlans.json", "[\n");
    for (const char* option : {"--vlans", "--vlan-globals"}) {
        const Outcome outcome =
            runScript(importBridge(links, R"([{"mdb":[],"router":{}}])", std::string(option) + " '" + vlans + "'"));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "mcast6ctl: " + vlans +
                                   ": only `[`, as `bridge` prints where no bridge filters VLANs: taken as empty\n");
    }
    EXPECT_EQ(runScript(importBridge(links, "[\n")).exitCode, 1);
    EXPECT_EQ(runScript(importRoutes("[\n")).exitCode, 1);
}

TEST(LinkLists, without_details_are_warned_of_once) {
    const std::string plain = R"([{"ifindex":1,"ifname":"m1"},{"ifindex":2,"ifname":"m2"}])";
    const std::string file = writeFile("plain.json", plain);
    const std::string warning = "mcast6ctl: " + file +
                                ": captured without -d, so that VLANs, bridges and tunnels in it look like plain "
                                "interfaces; capture it by `ip -j -d link`\n";
    const std::string routes = writeFile("routes.json", std::string("[") + kRoute + "]");
    EXPECT_EQ(run({"import", "mroute", routes, "--links", file}).err, warning);
    EXPECT_EQ(run({"import", "bridge", "--mdb", writeFile("mdb.json", R"([{"mdb":[],"router":{}}])"), "--links", file})
                  .err.substr(0, warning.size()),
              warning);
    EXPECT_EQ(runScript(importRoutes(std::string("[") + kRoute + "]")).err, "");
}

TEST(OlderVersions, are_refused_unless_forced) {
    const std::string routes = std::string("[") + kRoute + "]";
    const Outcome outcome = runScript(
        importRoutes(routes, "--smooth-version 5") + importRoutes(routes, "--smooth-version 4") +
            importRoutes(routes, "--smooth-version 4 --vr 1") + importRoutes(routes, "--smooth-version 5") +
            "show l3-mfib --vr 0\n" + importRoutes(routes, "--smooth-version 4 --force") + "show l3-mfib --vr 0\n",
        {"--json", "--keep-going"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(lines(outcome.err).at(0).find("mcast6ctl: standard input:2: "), 0U) << outcome.err;
    EXPECT_NE(
        outcome.err.find("not imported: smooth version 4 is older than what the tables hold in VR 0 (l3mc6_glbcfg "
                         "has 5), so that the next smooth would delete it; give --smooth-version 5 or higher, or "
                         "--force\n"),
        std::string::npos)
        << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 6U);
    EXPECT_EQ(all[3].at("entries").at(0).at("smoothVersion"), 5);
    EXPECT_EQ(all[5].at("entries").at(0).at("smoothVersion"), 4);
}

TEST(OlderVersions, of_bridges_are_refused_unless_forced) {
    const Outcome outcome =
        runScript(importBridgeLine("small", "--smooth-version 5") + importBridgeLine("small", "--smooth-version 4") +
                      importBridgeLine("small", "--smooth-version 4 --force"),
                  {"--json", "--keep-going"});
    EXPECT_EQ(documents(outcome.out).size(), 2U);
    EXPECT_NE(outcome.err.find("standard input:2: "), std::string::npos);
    EXPECT_NE(outcome.err.find("smooth version 4 is older than what the tables hold (l2mc6_bd_enable has 5)"),
              std::string::npos)
        << outcome.err;
}

}  // namespace
}  // namespace mcast6::ctl::test
