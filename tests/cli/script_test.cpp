// script, say, stats and the command line itself.
#include <gtest/gtest.h>

#include <map>
#include <ostream>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

TEST(Script, runs_its_commands_on_one_store) {
    const Outcome outcome = runScript(
        "# a comment\n\n  say 'one  two' # and another\r\nset bd-enable --bd 1 --on\n"
        "count bd-enable");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "one  two\nbd-enable: added bridge domain 1 of VR 0\n1\n");
}

TEST(Script, is_a_file_too) {
    const std::string file = writeFile("commands", "say hello\n");
    EXPECT_EQ(run({"script", file}).out, "hello\n");
}

TEST(Script, echoes_commands_but_not_what_say_says) {
    const std::string script = "say \"a b\"\ncount  bd-enable\n";
    EXPECT_EQ(runScript(script, {"--echo"}).out, "a b\n> count  bd-enable\n0\n");
    const Outcome json = runScript(script, {"--echo", "--json"});
    EXPECT_EQ(json.out, "{\"text\":\"a b\"}\n{\"table\":\"l2mc6_bd_enable\",\"count\":0}\n");
    EXPECT_EQ(json.err, "mcast6ctl: count  bd-enable\n");
}

TEST(Script, takes_options_of_one_line_for_that_line_alone) {
    EXPECT_EQ(runScript("count bd-enable --json\ncount bd-enable\n").out,
              "{\"table\":\"l2mc6_bd_enable\",\"count\":0}\n0\n");
}

struct Words {
    const char* name;
    const char* line;
    const char* said;
};

void PrintTo(const Words& words, std::ostream* out) { *out << words.name; }

class Quoting : public testing::TestWithParam<Words> {};

TEST_P(Quoting, is_the_shells) {
    const Outcome outcome = runScript(std::string("say ") + GetParam().line + "\n");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, std::string(GetParam().said) + "\n");
}

INSTANTIATE_TEST_SUITE_P(Script, Quoting,
                         testing::Values(Words{"plain", "a#b", "a#b"}, Words{"single", R"('a "b" \c')", R"(a "b" \c)"},
                                         Words{"double_", R"("a 'b' \"c\" \\ \d")", R"(a 'b' "c" \ \d)"},
                                         Words{"single_backslashes", R"('a\\b\"')", R"(a\\b\")"},
                                         Words{"joined", R"(a'b c'"d e"f)", "ab cd ef"},
                                         Words{"escaped", R"(a\ b\#)", "a b#"}, Words{"empty", "''", ""},
                                         Words{"hash", R"("#x")", "#x"}),
                         [](const auto& instance) { return std::string(instance.param.name); });

struct Fault {
    const char* name;
    const char* line;
    int exitCode;
    const char* reason;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class Faults : public testing::TestWithParam<Fault> {};

TEST_P(Faults, stop_a_script_at_their_line) {
    const std::string file = writeFile("commands", std::string("say before\n\n") + GetParam().line + "\nsay after\n");
    const Outcome outcome = run({"script", file});
    EXPECT_EQ(outcome.exitCode, GetParam().exitCode);
    EXPECT_EQ(outcome.out, "before\n");
    EXPECT_EQ(lines(outcome.err).at(0), "mcast6ctl: " + file + ":3: " + GetParam().reason);
}

TEST_P(Faults, are_counted_by_a_script_that_keeps_going) {
    const std::string file = writeFile("commands", std::string("say before\n\n") + GetParam().line + "\nsay after\n");
    const Outcome outcome = run({"script", "--keep-going", file});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "before\nafter\n");
    const std::vector<std::string> told = lines(outcome.err);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0], "mcast6ctl: " + file + ":3: " + GetParam().reason);
    EXPECT_EQ(told[1], "mcast6ctl: " + file + ": 1 of its commands failed");
}

INSTANTIATE_TEST_SUITE_P(
    Script, Faults,
    testing::Values(
        Fault{"unknown_command", "shov l3-mfib", 2, "unknown command 'shov'"},
        Fault{"unknown_table", "show l4-mfib", 2, "unknown command 'l4-mfib' after 'show'"},
        Fault{"no_table", "show", 2, "no command is given after 'show'"},
        Fault{"unknown_option", "show l3-mfib --vfr 1", 2, "unknown option '--vfr' after 'l3-mfib'"},
        Fault{"unexpected_word", "show l3-mfib all", 2, "unexpected 'all' after 'l3-mfib'"},
        Fault{"missing_option", "smooth l3-mfib", 2, "--version is required"},
        Fault{"bad_address", "count l3-mfib --group ff0e::g", 2, "--group: 'ff0e::g' is not an IPv6 address"},
        Fault{"bad_number", "count l3-mfib --vr -1", 2, "--vr: '-1' is not a number from 0 to 4294967295"},
        Fault{"number_too_large", "count l3-mfib --vr 4294967296", 2,
              "--vr: '4294967296' is not a number from 0 to 4294967295"},
        Fault{"bad_vrf", "count l3-mfib --vrf blue", 2, "--vrf: 'blue' is neither a number nor main, default or local"},
        Fault{"open_quote", "say 'a", 2, "a quote ' is not closed"},
        Fault{"backslash_at_the_end", "say a\\", 2, "a backslash ends the line"},
        Fault{"nested", "script other", 2, "a script cannot run another one"},
        Fault{"store", "--store memory: stats", 2, "unknown option '--store' after 'stats'"},
        Fault{"absent_entry", "delete bd-enable --bd 7", 1, "bd-enable: no entry for bridge domain 7 of VR 0"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(Script, that_is_not_there_is_named) {
    const Outcome outcome = run({"script", "/nowhere/commands"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "mcast6ctl: /nowhere/commands: No such file or directory\n");
}

// The demo names its captures from the root of the tree.
TEST(Demo, imports_shows_and_smooths) {
    const Outcome outcome = run({"script", "--echo", "samples/demo.mcast6"}, "", sample(".."));
    EXPECT_EQ(outcome.exitCode, kPartial);
    for (const char* line :
         {"all    11   11         0           0        0        0\n",
          "all    12    1         0           9        2        0\n",
          "all     4    0         1           0        0        3\n", "\n11 entries, 18 members\n",
          "\n5 entries, 14 members\n", "l3-mfib              12        2     10\n",
          "l3-elb               17        5     12\n", "> count l3-mfib --vrf main --source 2001:db8:33::a1\n4\n"}) {
        EXPECT_NE(outcome.out.find(line), std::string::npos) << line;
    }
    // Two routes skipped, three refused; nothing else went wrong.
    EXPECT_EQ(lines(outcome.err).size(), 5U) << outcome.err;
}

const Json* byId(const Json& list, uint64_t id) {
    for (const Json& item : list) {
        if (item.at("id") == id) return &item;
    }
    return nullptr;
}

TEST(Stats, of_an_idle_process_are_empty) {
    const Outcome outcome = run({"stats", "--json"});
    ASSERT_EQ(outcome.exitCode, 0);
    const Json stats = documents(outcome.out).at(0);
    for (const char* list : {"errorStatistics", "counters", "kpi"}) EXPECT_EQ(stats.at(list), Json::array()) << list;
    EXPECT_EQ(stats.at("removedEntriesTold"), 0);
}

// 11 routes: one object for each write; one each for the two counts, and for the two looks into the empty table; of the
// smoothing, one for each of two deletions, two counts and two walks.
TEST(Stats, count_what_an_import_did) {
    const Outcome outcome =
        runScript(importLine("small") + "smooth l3-mfib --version 1 --vrf 100\nstats\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const Json stats = documents(outcome.out).at(2);
    EXPECT_EQ(stats.at("errorStatistics"), Json::array());
    for (const uint64_t id : {151U, 152U}) {
        ASSERT_NE(byId(stats.at("counters"), id), nullptr) << id;
        EXPECT_EQ(byId(stats.at("counters"), id)->at("count"), 11 + 2 + 2 + 6) << id;
        EXPECT_EQ(byId(stats.at("counters"), id)->at("name").get<std::string>().find("l3mc6_mfib"), 0U);
    }
    // Of every table: what was made was released.
    std::map<std::string, int64_t> unreleased;
    for (const Json& counter : stats.at("counters")) {
        const std::string name = counter.at("name");
        const bool created = name.ends_with(": objects created");
        ASSERT_TRUE(created || name.ends_with(": objects released")) << name;
        unreleased[name.substr(0, name.find(':'))] += (created ? 1 : -1) * counter.at("count").get<int64_t>();
    }
    for (const auto& [table, objects] : unreleased) EXPECT_EQ(objects, 0) << table;
    EXPECT_GT(unreleased.size(), 3U);
    const std::map<uint64_t, uint64_t> indicators{{93, 11}, {95, 2}, {137, 1}, {145, 2}};
    ASSERT_EQ(stats.at("kpi").size(), indicators.size());
    for (const auto& [id, count] : indicators) {
        ASSERT_NE(byId(stats.at("kpi"), id), nullptr) << id;
        EXPECT_EQ(byId(stats.at("kpi"), id)->at("count"), count) << id;
    }
    EXPECT_EQ(stats.at("removedEntriesTold"), 2);
    EXPECT_GT(stats.at("memoryBytes"), 11 * 208);
}

TEST(Stats, name_tables_and_kinds_and_are_reset_when_asked) {
    const std::string faulty =
        "import mroute '" + sample("made/faulty.rt.mroute.json") + "' --links '" + sample("small/rt.link.json") + "'\n";
    const Outcome outcome = runScript(importLine("small") + faulty + "stats --reset\nstats\n");
    ASSERT_EQ(outcome.exitCode, kPartial) << outcome.err;
    EXPECT_NE(outcome.out.find("NUMBER  TABLE       KIND  WHAT                                    COUNT\n"
                               "    15  l3mc6_mfib     1  record exists or is absent (tolerated)      1\n"),
              std::string::npos);
    EXPECT_NE(outcome.out.find("\n 93  l3mc6_mfib: writes attempted     12\n"), std::string::npos) << outcome.out;
    const size_t second = outcome.out.find("All of these but the memory are zero now.\n");
    ASSERT_NE(second, std::string::npos);
    const std::string after = outcome.out.substr(second);
    EXPECT_NE(after.find(
                  "Error statistics of the library: none\nDiagnostic counters: none\nKey performance indicators: none\n"
                  "Layer-3 entries told as removed: 0\nMemory of the store: "),
              std::string::npos);
}

TEST(CommandLine, tells_its_help_and_version) {
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* verb :
         {"import", "show", "count", "smooth", "set", "delete", "stats", "script", "say", "--json"}) {
        EXPECT_NE(help.out.find(verb), std::string::npos) << verb;
    }
    EXPECT_NE(run({"show", "l3-mfib", "--help"}).out.find("--regif NAME|N"), std::string::npos);
    EXPECT_EQ(run({"--version"}).out, "mcast6ctl 1.0.0\n");
}

TEST(CommandLine, answers_wrong_usage_with_2_and_changes_nothing) {
    const std::vector<std::vector<std::string>> wrong = {{},
                                                         {"frob"},
                                                         {"--frob"},
                                                         {"show", "l3-mfib", "--vrf"},
                                                         {"show", "l3-mfib", "--vrf", "1", "--vrf", "2"},
                                                         {"import", "mroute"},
                                                         {"import", "mroute", "-", "--links", "-"},
                                                         {"say", "a", "b"},
                                                         {"count", "l3-mfib", "show", "l3-mfib"}};
    for (const auto& words : wrong) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 2) << testing::PrintToString(words);
        EXPECT_EQ(outcome.out, "") << testing::PrintToString(words);
        EXPECT_EQ(lines(outcome.err).size(), 2U) << testing::PrintToString(words);
    }
}

TEST(CommandLine, takes_a_store_and_refuses_one_it_does_not_know) {
    EXPECT_EQ(run({"--store", "memory:", "count", "l3-mfib"}).out, "0\n");
    for (const char* uri : {"nonsense", "cloud://a", ""}) {
        const Outcome outcome = run({"--store", uri, "count", "l3-mfib"});
        EXPECT_EQ(outcome.exitCode, 1) << uri;
        EXPECT_EQ(outcome.out, "") << uri;
        EXPECT_EQ(outcome.err.find("mcast6ctl: --store " + std::string(uri) + ": "), 0U) << outcome.err;
    }
}

}  // namespace
}  // namespace mcast6::ctl::test
