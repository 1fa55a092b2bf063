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

TEST(Script, ends_at_quit_or_exit) {
    for (const char* word : {"quit", "exit", "  quit  # done"}) {
        const Outcome outcome = runScript(std::string("say a\n") + word + "\nsay b\n");
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_EQ(outcome.out, "a\n");
    }
}

TEST(Script, may_begin_with_a_byte_order_mark) { EXPECT_EQ(runScript("\xEF\xBB\xBFsay a\n").out, "a\n"); }

TEST(Script, runs_a_last_line_without_an_end_and_lines_longer_than_a_block) {
    const std::string text(200000, 'x');
    EXPECT_EQ(runScript("say a\nsay " + text).out, "a\n" + text + "\n");
}

TEST(Script, that_is_none_is_refused) {
    const Outcome endless = run({"script", "/dev/zero"});
    EXPECT_EQ(endless.exitCode, 1);
    EXPECT_EQ(endless.err, "mcast6ctl: /dev/zero: a line is longer than 1048576 bytes: this is no script\n");
    EXPECT_EQ(run({"script", "/"}).err, "mcast6ctl: /: Is a directory\n");
    const std::string file = writeFile("commands.gz", "\x1f\x8b\x08 and more\n");
    EXPECT_EQ(
        run({"script", file}).err,
        "mcast6ctl: " + file + ":1: the script is compressed; give `zcat FILE | mcast6ctl script -` what it holds\n");
}

TEST(Script, on_standard_input_leaves_none_of_it_to_an_import) {
    const Outcome outcome = runScript("import mroute - --links x\n[]\n");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(lines(outcome.err).at(0),
              "mcast6ctl: standard input:1: standard input is the script, so that nothing else can be read from it: "
              "name a file");
    const std::string file = writeFile("commands", "import mroute -\nsay done\n");
    EXPECT_EQ(lines(run({"script", file}, "[]").out).back(), "done");
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
        Fault{"unknown_command", "shov l3-mfib", 2, "unknown command 'shov'; did you mean 'show'?"},
        Fault{"unknown_table", "show l4-mfib", 2,
              "unknown command 'l4-mfib' after 'show'; did you mean 'l3-mfib' or 'l2-mfib'?"},
        Fault{"no_table", "import", 2, "no command is given after 'import'; there stands one of mroute, bridge"},
        Fault{"unknown_option", "show l3-mfib --vfr 1", 2,
              "unknown option '--vfr' after 'show l3-mfib'; did you mean '--vr' or '--vrf'?"},
        Fault{"unexpected_word", "show l3-mfib all", 2, "unexpected 'all' after 'show l3-mfib'"},
        Fault{"missing_option", "smooth l3-mfib", 2,
              "--version is required by 'smooth l3-mfib': --version N, Delete what has a smooth version below N"},
        Fault{"bad_address", "count l3-mfib --group ff0e::g", 2, "--group: 'ff0e::g' is not an IPv6 address"},
        Fault{"bad_number", "count l3-mfib --vr -1", 2, "--vr: '-1' is not a number from 0 to 4294967295"},
        Fault{"number_too_large", "count l3-mfib --vr 4294967296", 2,
              "--vr: '4294967296' is not a number from 0 to 4294967295"},
        Fault{"bad_vrf", "count l3-mfib --vrf blue", 2, "--vrf: 'blue' is neither a number nor main, default or local"},
        Fault{"open_quote", "say 'a", 2, "a quote ' is not closed"},
        Fault{"backslash_at_the_end", "say a\\", 2, "a backslash ends the line"},
        Fault{"nested", "script other", 2, "a script cannot run another one"},
        Fault{"nested_after_an_option", "--json script other", 2, "a script cannot run another one"},
        Fault{"store", "--store memory: stats", 2,
              "unknown option '--store': it is one of the whole process, not of a line of a script"},
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

TEST(Stats, explain_a_counter_of_releases_that_is_above_that_of_creations) {
    const std::string note =
        "more released than created, and none missing: a fast scan uses an object that the library keeps; making it is "
        "not counted, giving it back after each scan is counted as a release";
    // The VLAN members of one entry are found by a fast scan.
    const std::string script = "count l3-vlan-elb --vr 0 --vrf 0 --group ff0e::1 --source any\nstats\n";
    const Json stats = documents(runScript(script, {"--json"}).out).at(1);
    for (const Json& counter : stats.at("counters")) {
        const bool noted = counter.at("name") == "l3mc6_vlan_elb: objects released";
        EXPECT_EQ(counter.at("note"), noted ? Json(note) : Json()) << counter;
    }
    const std::string text = runScript(script).out;
    EXPECT_NE(text.find("l3mc6_vlan_elb: objects released (*) "), std::string::npos) << text;
    EXPECT_NE(text.find("\n(*) " + note + "\n"), std::string::npos) << text;
    EXPECT_EQ(runScript("count l3-mfib\nstats\n").out.find("(*)"), std::string::npos);
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

// Whether the parser knows one command, as for these words, or all of them.
TEST(CommandLine, tells_the_same_help_wherever_it_is_asked) {
    const std::vector<std::string> commands = {"show l3-mfib", "import mroute", "set bd-enable", "stats", "script"};
    for (const std::string& command : commands) {
        const Outcome line = runScript(command + " --help\n");
        EXPECT_EQ(line.exitCode, 0) << command;
        EXPECT_GT(lines(line.out).size(), 4U) << command;
        EXPECT_EQ(runScript("--verbose " + command + " --help\n").out, line.out) << command;
        EXPECT_EQ(runScript("help " + command + "\n").out, line.out) << command;
    }
    EXPECT_EQ(run({"help"}).out, run({"--help"}).out);
}

// A parser is kept for the lines to come: nothing of a line, wrong ones included, may stay in it.
TEST(CommandLine, of_a_line_knows_nothing_of_the_line_before) {
    const Outcome outcome = runScript(
        "set bd-enable --bd 1 --on --json\nset bd-enable --bd 2 --off\nset bd-enable --bd 3\n"
        "set bd-enable --frob 1 --on\ncount bd-enable --bd 1\ncount bd-enable\ncount bd-enable --json=false\n",
        {"--keep-going"});
    EXPECT_EQ(outcome.out,
              "{\"table\":\"l2mc6_bd_enable\",\"new\":true}\nbd-enable: added bridge domain 2 of VR 0\n1\n2\n2\n");
    const std::vector<std::string> told = lines(outcome.err);
    ASSERT_EQ(told.size(), 3U) << outcome.err;
    EXPECT_EQ(told[0], "mcast6ctl: standard input:3: give one of --on and --off");
    EXPECT_EQ(told[1], "mcast6ctl: standard input:4: unknown option '--frob' after 'set bd-enable'");
}

struct Slip {
    const char* name;
    std::vector<std::string> words;
    const char* told;  // all of it, or its start when it ends in "..."
};

void PrintTo(const Slip& slip, std::ostream* out) { *out << slip.name; }

class Slips : public testing::TestWithParam<Slip> {};

TEST_P(Slips, are_told_with_what_was_expected_where) {
    const Outcome outcome = run(GetParam().words);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    const std::string expected = std::string("mcast6ctl: ") + GetParam().told;
    const std::string told = lines(outcome.err).at(0);
    if (!expected.ends_with("...")) {
        EXPECT_EQ(told, expected);
    } else {
        EXPECT_EQ(told.substr(0, expected.size() - 3), expected.substr(0, expected.size() - 3));
    }
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, Slips,
    testing::Values(
        Slip{"nothing", {}, "no command is given; the commands are import, show, count, smooth, ..."},
        Slip{"short_option", {"-j", "show", "l3-mfib"}, "unknown option '-j' before a command; did you mean '--json'?"},
        Slip{"one_dash",
             {"show", "l3-mfib", "-vrf", "1"},
             "unknown option '-vrf' after 'show l3-mfib'; did you mean '--vrf'?"},
        Slip{"option_of_the_process",
             {"--stroe", "memory:", "stats"},
             "unknown option '--stroe' before a command; did you mean '--store'?"},
        Slip{"option_too_early",
             {"--vrf", "1", "show", "l3-mfib"},
             "option '--vrf' stands too early: it comes after the whole command"},
        Slip{"option_between",
             {"show", "--vrf", "1", "l3-mfib"},
             "option '--vrf' stands too early: it comes after the whole command"},
        Slip{"nothing_like_it", {"show", "l3-mfib", "--q"}, "unknown option '--q' after 'show l3-mfib'"},
        Slip{"swapped", {"l3-mfib", "show"}, "unknown command 'l3-mfib'; the words are swapped: 'show l3-mfib'"},
        Slip{"only_an_object", {"mroute", "show"}, "unknown command 'mroute'; did you mean 'import mroute'?"},
        Slip{"object_of_another_verb",
             {"show", "mroute"},
             "unknown command 'mroute' after 'show'; 'mroute' goes after import"},
        Slip{"letters_swapped", {"conut", "l3"}, "unknown command 'conut'; did you mean 'count'?"},
        Slip{"beginning", {"imp", "mroute"}, "unknown command 'imp'; did you mean 'import'?"},
        Slip{"letter_missing", {"show", "l3-elv"}, "unknown command 'l3-elv' after 'show'; did you mean 'l3-elb'?"},
        Slip{"capitals", {"SHOW", "l3-mfib"}, "unknown command 'SHOW'; did you mean 'show'?"},
        Slip{"name_of_the_database",
             {"show", "l3mc6_mfib"},
             "unknown command 'l3mc6_mfib' after 'show'; did you mean 'l3-mfib'?"},
        Slip{"one_word_in_quotes",
             {"show l3-mfib"},
             "unknown command 'show l3-mfib'; give its words without quotes around all"},
        Slip{"unlike_any", {"frobnicate"}, "unknown command 'frobnicate'; the commands are import, show, ..."},
        Slip{"no_value", {"show", "l3-mfib", "--vrf"}, "--vrf needs a value after it: --vrf ..."},
        Slip{"option_as_value",
             {"show", "l3-mfib", "--group", "--json"},
             "--group needs a value after it: --group ADDRESS"},
        Slip{"empty_value", {"show", "l3-mfib", "--vrf="}, "--vrf needs a value after it: --vrf ..."},
        Slip{"no_store", {"--store"}, "--store needs a value after it: --store URI"},
        Slip{"value_of_a_flag", {"stats", "--reset=maybe"}, "--reset takes no value"},
        Slip{"value_of_a_setting", {"stats", "--json=maybe"}, "--json takes no value"},
        Slip{"twice", {"show", "l3-mfib", "--vrf", "1", "--vrf", "2"}, "--vrf is given twice"},
        Slip{"no_file", {"import", "mroute", "--strict"}, "FILE is missing after 'import mroute': ..."},
        Slip{"text_with_a_dash",
             {"say", "-x"},
             "unknown option '-x' after 'say'; a text that begins with - stands after --"},
        Slip{"version_and_more", {"--version", "stats"}, "--version goes without a command"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(CommandLine, takes_a_text_that_begins_with_a_dash_after_two) { EXPECT_EQ(run({"say", "--", "-x"}).out, "-x\n"); }

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

TEST(Store, of_a_process_that_imported_nothing_is_hinted_at) {
    const std::string hint =
        "mcast6ctl: the store memory: lives in one process, and nothing was imported in this one: run the import and this "
        "command in one `mcast6ctl script -`\n";
    for (const char* verb : {"show", "count"}) {
        EXPECT_EQ(run({verb, "l3-mfib"}).err, hint) << verb;
        EXPECT_EQ(run({verb, "l3-mfib", "--json"}).err, hint) << verb;
    }
    EXPECT_EQ(run({"smooth", "l3", "--version", "1"}).err, hint);
    EXPECT_EQ(runScript("show l3-mfib\nshow l2-mfib\n").err, hint);
    EXPECT_EQ(runScript(importLine("small") + "show l3-mfib\nshow l2-mfib\n").err, "");
    EXPECT_EQ(runScript("set bd-enable --bd 1 --on\nshow l3-mfib\n").err, "");
    EXPECT_EQ(run({"stats"}).err, "");
    EXPECT_EQ(run({"show", "l3-mfib", "--help"}).err, "");
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
