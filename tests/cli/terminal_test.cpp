// What the tool gives a terminal, and what becomes of streams that are closed or full.
#include <gtest/gtest.h>

#include <ostream>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

struct Spelling {
    const char* name;
    std::string text;
    std::string shown;  // in text
    std::string json;   // the value in JSON; empty: 'text'
};

void PrintTo(const Spelling& spelling, std::ostream* out) { *out << spelling.name; }

class Spellings : public testing::TestWithParam<Spelling> {};

TEST_P(Spellings, of_texts_are_safe_to_show_and_whole_in_json) {
    const Spelling& spelling = GetParam();
    EXPECT_EQ(run({"say", "--", "a" + spelling.text + "b"}).out, "a" + spelling.shown + "b\n");
    const std::string out = run({"say", "--json", "--", spelling.text}).out;
    EXPECT_EQ(documents(out).at(0).at("text"), spelling.json.empty() ? spelling.text : spelling.json);
    // Nor does JSON command the terminal that it may be shown on.
    if (spelling.shown != spelling.text) {
        for (const char c : out) EXPECT_TRUE((c >= 0x20 && c < 0x7F) || c == '\n') << out;
    }
}

const std::string kReplaced = "\xEF\xBF\xBD";

INSTANTIATE_TEST_SUITE_P(Terminal, Spellings,
                         testing::Values(Spelling{"plain", "m1 \"\\'", "m1 \"\\'", ""},
                                         Spelling{"letters", "\xC3\xBC\xE6\x97\xA5\xF0\x9F\x8C\x90",
                                                  "\xC3\xBC\xE6\x97\xA5\xF0\x9F\x8C\x90", ""},
                                         Spelling{"escape", "\x1B[31m", "\\x1B[31m", ""},
                                         Spelling{"line_end", "x\ny\rz", "x\\x0Ay\\x0Dz", ""},
                                         Spelling{"delete_", "\x7F", "\\x7F", ""},
                                         Spelling{"c1_first", "\xC2\x80", "\\u0080", ""},
                                         Spelling{"c1_csi",
                                                  "\xC2\x9B"
                                                  "1m",
                                                  "\\u009B1m", ""},
                                         Spelling{"c1_last", "\xC2\x9F", "\\u009F", ""},
                                         Spelling{"after_c1", "\xC2\xA0", "\xC2\xA0", ""},
                                         Spelling{"arabic_letter_mark", "\xD8\x9C", "\\u061C", ""},
                                         Spelling{"marks", "\xE2\x80\x8E\xE2\x80\x8F", "\\u200E\\u200F", ""},
                                         Spelling{"separators", "\xE2\x80\xA8\xE2\x80\xA9", "\\u2028\\u2029", ""},
                                         Spelling{"overrides", "\xE2\x80\xAA\xE2\x80\xAE", "\\u202A\\u202E", ""},
                                         Spelling{"isolates", "\xE2\x81\xA6\xE2\x81\xA9", "\\u2066\\u2069", ""},
                                         Spelling{"tag", "\xF3\xA0\x81\x81", "\\U000E0041", ""},
                                         Spelling{"no_utf8", "\xFF\x80", "\\xFF\\x80", kReplaced + kReplaced},
                                         Spelling{"cut_off", "\xE2\x80", "\\xE2\\x80", kReplaced},
                                         Spelling{"too_long_a_form", "\xC0\xAF", "\\xC0\\xAF", kReplaced + kReplaced},
                                         Spelling{"raw_c1",
                                                  "\x9B"
                                                  "31m",
                                                  "\\x9B31m", kReplaced + "31m"}),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(Terminal, gets_no_control_characters_of_paths_options_stores_and_scripts) {
    const std::string evil = "\x1B[2J\xE2\x80\xAE\nmcast6ctl: x";
    const std::string shown = "\\x1B[2J\\u202E\\x0Amcast6ctl: x";
    const std::string lineOfScript = "\x1B[2J\xE2\x80\xAE";
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"import", "mroute", "/nowhere/" + evil},
                                               {"script", "/nowhere/" + evil},
                                               {"--store", evil, "stats"},
                                               {evil},
                                               {"show", evil},
                                               {"show", "l3-mfib", "--" + evil},
                                               {"show", "l3-mfib", evil},
                                               {"show", "l3-mfib", "--vrf", evil},
                                               {"count", "l3-mfib", "--iif", evil}}) {
        const Outcome outcome = run(words);
        EXPECT_NE(outcome.exitCode, 0);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(lines(outcome.err).at(0).find(shown), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.err.find('\x1B'), std::string::npos);
    }
    const Outcome echoed = runScript("\tsay " + lineOfScript + "\n\tcount  " + lineOfScript + "\n", {"--echo"});
    EXPECT_EQ(echoed.out, "\\x1B[2J\\u202E\n>  count  \\x1B[2J\\u202E\n");
    EXPECT_NE(echoed.err.find("unknown command '\\x1B[2J\\u202E' after 'count'"), std::string::npos) << echoed.err;
}

TEST(Terminal, shows_names_of_captures_without_what_turns_the_line) {
    const std::string links = writeFile("links.json",
                                        "[{\"ifindex\":7,\"ifname\":\"\xE2\x80\xAE"
                                        "1m\"},"
                                        "{\"ifindex\":8,\"ifname\":\"\xE6\x97\xA5\"}]");
    const std::string routes = writeFile("routes.json",
                                         "[{\"src\":\"::\",\"dst\":\"ff0e::1\",\"iif\":\"\xE2\x80\xAE"
                                         "1m\"},"
                                         "{\"src\":\"::\",\"dst\":\"ff0e::2\",\"iif\":\"\xE6\x97\xA5\"}]");
    const std::string import = "import mroute '" + routes + "' --links '" + links + "'\n";
    const Outcome text = runScript(import + "show l3-mfib\n");
    EXPECT_NE(text.out.find("ff0e::1  \\u202E1m  "), std::string::npos) << text.out;
    // Two places wide, as a terminal shows it, in a column of eight.
    EXPECT_NE(text.out.find("ff0e::2  \xE6\x97\xA5" + std::string(6 + 2 + 4, ' ') + "-"), std::string::npos)
        << text.out;
    EXPECT_EQ(text.out.find("\xE2\x80\xAE"), std::string::npos);
    const Json entries = documents(runScript(import + "show l3-mfib\n", {"--json"}).out).at(1).at("entries");
    EXPECT_EQ(only(entries, "groupAddr", "ff0e::1").at("inIfName"),
              "\xE2\x80\xAE"
              "1m");
}

TEST(Streams, that_take_no_message_do_not_change_how_a_command_ends) {
    for (const char* redirection : {"2>/dev/full", "2>&-"}) {
        EXPECT_EQ(run({"frob"}, "", ".", redirection).exitCode, 2) << redirection;
        EXPECT_EQ(run({"import", "mroute", "/nowhere/x"}, "", ".", redirection).exitCode, 1) << redirection;
        const Outcome done = run({"show", "l3-mfib", "--verbose", "--log"}, "", ".", redirection);
        EXPECT_EQ(done.exitCode, 0) << redirection;
        EXPECT_EQ(done.out, "no entries\n") << redirection;
        const Outcome script = run({"script", "-", "--keep-going"}, "frob\nsay a\n", ".", redirection);
        EXPECT_EQ(script.exitCode, 1) << redirection;
        EXPECT_EQ(script.out, "a\n") << redirection;
    }
}

TEST(Streams, that_lose_output_fail_the_command) {
    const Outcome full = run({"say", "a"}, "", ".", ">/dev/full");
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_EQ(full.err, "mcast6ctl: cannot write to standard output: No space left on device\n");
    const Outcome closed = run({"say", "a"}, "", ".", ">&-");
    EXPECT_EQ(closed.exitCode, 1);
    EXPECT_EQ(closed.err, "mcast6ctl: cannot write to standard output: Bad file descriptor\n");
    // Told in the middle already, the reason is still the first one.
    const Outcome script = run({"script", "-", "--keep-going"}, "say a\nfrob\nsay b\n", ".", ">/dev/full");
    EXPECT_EQ(script.exitCode, 1);
    EXPECT_EQ(run({"script", "-"}, "", ".", "<&-").err, "mcast6ctl: standard input: Bad file descriptor\n");
}

// Files take the lowest free descriptors: output would end in the capture.
TEST(Streams, that_are_closed_do_not_become_files) {
    const std::string content = R"([{"src":"::","dst":"ff0e::1","iif":"m1"}])";
    const std::string routes = writeFile("routes.json", content);
    const std::vector<std::string> import = {"import", "mroute", routes, "--links", sample("small/rt.link.json")};
    for (const char* redirection : {"<&- >&- 2>&-", ">&- 2>&-", "<&- >&-"}) {
        EXPECT_EQ(run(import, "", ".", redirection).exitCode, 1) << redirection;
        EXPECT_EQ(readFile(routes), content);
    }
    EXPECT_EQ(run(import, "", ".", "<&- 2>&-").exitCode, 0);
}

}  // namespace
}  // namespace mcast6::ctl::test
