// show and count of l3-mfib: every combination of filters against the same question asked of the capture itself.
#include <gtest/gtest.h>

#include <fstream>
#include <ostream>
#include <set>
#include <tuple>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

// What the import of small/ prints before anything else.
constexpr size_t kImportLines = 10;

// The importer's view of a route, computed here from the capture.
struct Route {
    std::string table;
    std::string source;
    std::string group;
    std::string iif;
    std::string regif;  // "" for none

    auto key() const { return std::tie(table, source, group); }
    bool operator<(const Route& other) const { return key() < other.key(); }
};

std::vector<Route> routesOf(const std::string& folder) {
    std::ifstream file(sample(folder + "/rt.mroute.json"));
    std::vector<Route> routes;
    for (const Json& entry : Json::parse(file)) {
        Route route{entry.value("table", "254"), entry.at("src"), entry.at("dst"), entry.at("iif"), ""};
        if (route.iif == "pim6reg") route.regif = route.iif;
        for (const Json& path : entry.at("multipath")) {
            if (path.at("oif") == "pim6reg") route.regif = "pim6reg";
        }
        routes.push_back(route);
    }
    return routes;
}

// The filters of one question; an absent one is "".
struct Question {
    std::string vr, vrf, source, group, iif, regif;

    bool matches(const Route& route) const {
        const auto agrees = [](const std::string& wanted, const std::string& actual) {
            return wanted.empty() || wanted == actual;
        };
        return agrees(vr, "0") && agrees(vrf, route.table) && agrees(source, route.source) &&
               agrees(group, route.group) && agrees(iif, route.iif) && agrees(regif, route.regif);
    }

    std::string options() const {
        std::string text;
        const auto add = [&](const char* name, const std::string& value) {
            if (!value.empty()) text += std::string(" --") + name + " " + value;
        };
        add("vr", vr), add("vrf", vrf), add("source", source), add("group", group), add("iif", iif),
            add("regif", regif);
        return text;
    }
};

// All combinations of the filters that pick 'route', and some that pick nothing.
std::vector<Question> questionsAbout(const Route& route) {
    std::vector<Question> questions;
    for (unsigned mask = 0; mask < 64; ++mask) {
        Question question;
        if ((mask & 1) != 0) question.vrf = route.table;
        if ((mask & 2) != 0) question.source = route.source;
        if ((mask & 4) != 0) question.group = route.group;
        if ((mask & 8) != 0) question.iif = route.iif;
        if ((mask & 16) != 0) question.regif = "pim6reg";
        if ((mask & 32) != 0) question.vr = "0";
        questions.push_back(question);
    }
    const std::string table = route.table;
    questions.push_back({"1", table, route.source, route.group, route.iif, ""});
    questions.push_back({"", "77", "", route.group, "", ""});
    questions.push_back({"", table, "2001:db8:dead::1", "", "", ""});
    questions.push_back({"", table, "", "ff0e:dead::1", "", ""});
    questions.push_back({"9", "", "", "", "", ""});
    return questions;
}

std::set<Route> shownRoutes(const Json& document) {
    std::set<Route> shown;
    for (const Json& entry : document.at("entries")) {
        shown.insert({entry.at("vrfId").dump(), entry.at("sourceAddr"), entry.at("groupAddr"), "", ""});
    }
    EXPECT_EQ(shown.size(), document.at("entries").size()) << "an entry is shown twice";
    return shown;
}

class Filters : public testing::TestWithParam<const char*> {};

TEST_P(Filters, show_and_count_what_the_capture_has) {
    const std::vector<Route> routes = routesOf(GetParam());
    std::vector<Question> questions;
    const size_t stride = routes.size() < 20 ? 1 : routes.size() / 10;
    for (size_t position = 0; position < routes.size(); position += stride) {
        for (const Question& question : questionsAbout(routes[position])) questions.push_back(question);
    }
    std::string script = importLine(GetParam());
    for (const Question& question : questions) {
        script += "show l3-mfib" + question.options() + "\ncount l3-mfib" + question.options() + "\n";
    }
    const Outcome outcome = runScript(script, {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 1 + 2 * questions.size());
    for (size_t position = 0; position < questions.size(); ++position) {
        const Question& question = questions[position];
        std::set<Route> expected;
        for (const Route& route : routes) {
            if (question.matches(route)) expected.insert({route.table, route.source, route.group, "", ""});
        }
        const std::set<Route> shown = shownRoutes(all[1 + 2 * position]);
        EXPECT_FALSE(shown < expected || expected < shown) << question.options();
        EXPECT_EQ(all[2 + 2 * position].at("count"), expected.size()) << question.options();
    }
}

INSTANTIATE_TEST_SUITE_P(Show, Filters, testing::Values("small", "medium"),
                         [](const auto& instance) { return std::string(instance.param); });

struct Choice {
    const char* name;
    const char* options;
    const char* told;
};

void PrintTo(const Choice& choice, std::ostream* out) { *out << choice.name; }

class Choices : public testing::TestWithParam<Choice> {};

// The most selective query serves; what it does not take is filtered by the tool. --verbose tells.
TEST_P(Choices, of_the_query) {
    for (const char* verb : {"show", "count"}) {
        const Outcome outcome =
            runScript(importLine("small") + verb + " l3-mfib " + GetParam().options + "\n", {"--verbose"});
        EXPECT_EQ(outcome.exitCode, 0);
        const bool isCount = std::string(verb) == "count" && std::string(GetParam().options).empty();
        const std::string told = isCount ? "count of the whole table" : GetParam().told;
        EXPECT_EQ(outcome.err, "mcast6ctl: l3-mfib: query by " + told + "\n");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Show, Choices,
    testing::Values(
        Choice{"source", "--vrf 254 --source ::", "source (query type 0)"},
        Choice{"group", "--vr 0 --vrf 254 --group ff0e::1", "group (query type 1)"},
        Choice{"iif", "--vrf 254 --iif m1", "incoming interface (query type 2)"},
        Choice{"source_iif", "--vrf 254 --iif m1 --source ::1", "source and incoming interface (query type 3)"},
        Choice{"group_iif", "--vrf 254 --iif m1 --group ::", "group and incoming interface (query type 4)"},
        Choice{"vrf", "--vrf 254", "VR and VRF (query type 6)"},
        Choice{"regif", "--vrf 254 --regif 8", "register interface (query type 7)"},
        Choice{"regif_source", "--vrf 254 --regif 8 --source ::1", "register interface and source (query type 8)"},
        Choice{"regif_group", "--vrf 254 --regif 8 --group ::", "register interface and group (query type 9)"},
        Choice{"key", "--vrf 254 --source ::1 --group ::", "key"},
        Choice{"key_iif", "--vrf 254 --source ::1 --group :: --iif 2", "key; the tool itself filters by --iif"},
        Choice{"group_iif_regif", "--vrf 254 --group :: --iif 2 --regif 8",
               "group and incoming interface (query type 4); the tool itself filters by --regif"},
        Choice{"iif_regif", "--vrf 254 --iif 2 --regif 8",
               "register interface (query type 7); the tool itself filters by --iif"},
        Choice{"iif_anywhere", "--iif m1", "incoming interface in any VR and VRF"},
        Choice{"iif_group_anywhere",
               "--iif m1 --group ::", "incoming interface in any VR and VRF; the tool itself filters by --group"},
        Choice{"group_anywhere", "--group ::", "walk of the whole table; the tool itself filters by --group"},
        Choice{"vr", "--vr 0", "walk of the whole table; the tool itself filters by --vr"},
        Choice{"nothing", "", "walk of the whole table"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(Show, aligns_its_columns_and_names_interfaces) {
    const Outcome outcome =
        runScript(importLine("small", "--smooth-version 12") + "show l3-mfib --vrf 254 --regif pim6reg\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    ASSERT_EQ(all.size(), kImportLines + 4);
    const std::string* const shown = &all[kImportLines];
    EXPECT_TRUE(shown[0].starts_with(
        "VR  VRF  SOURCE           GROUP       IIF      REGIF    VERSION  WRITTEN (UTC)        CONFIRMED (UTC)"));
    EXPECT_TRUE(shown[1].starts_with(" 0  254  2001:db8:10::1   ff0e::10:9  m1       pim6reg       12  20"))
        << shown[1];
    EXPECT_TRUE(shown[2].starts_with(" 0  254  2001:db8:77::77  ff0e::10:8  pim6reg  pim6reg       12  20"))
        << shown[2];
    EXPECT_EQ(shown[3], "2 entries");
}

TEST(Show, says_when_there_is_nothing) {
    EXPECT_EQ(run({"show", "l3-mfib"}).out, "no entries\n");
    EXPECT_EQ(run({"show", "l3-mfib", "--json"}).out, "{\"table\":\"l3mc6_mfib\",\"entries\":[]}\n");
    EXPECT_EQ(run({"count", "l3-mfib"}).out, "0\n");
}

TEST(Show, has_stable_members_in_json) {
    const Outcome outcome =
        runScript(importLine("small") + "show l3-mfib --vrf 254 --source :: --group ::\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    Json document = documents(outcome.out).at(1);
    ASSERT_EQ(document.at("entries").size(), 1U);
    Json& entry = document.at("entries").at(0);
    for (const char* varying : {"timeStampCreate", "timeStampSmooth", "appSrcPid"}) {
        EXPECT_GT(entry.at(varying), 0) << varying;
        entry.erase(varying);
    }
    const Json expected = {{"table", "l3mc6_mfib"},
                           {"entries",
                            {{{"vrId", 0},
                              {"vrfId", 254},
                              {"sourceAddr", "::"},
                              {"groupAddr", "::"},
                              {"inIfIndex", 5},
                              {"inIfName", "m4"},
                              {"regIfIndex", 0},
                              {"regIfName", nullptr},
                              {"smoothVersion", 0}}}}};
    EXPECT_EQ(document, expected);
}

TEST(Show, takes_an_interface_by_number_and_refuses_an_unknown_name) {
    const Outcome outcome = runScript(importLine("small") + "count l3-mfib --iif 6\ncount l3-mfib --iif m5\n");
    EXPECT_EQ(lines(outcome.out).at(kImportLines), "1");
    EXPECT_EQ(lines(outcome.out).at(kImportLines + 1), "1");
    const Outcome unknown = runScript(importLine("small") + "count l3-mfib --iif m7\n");
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err, "mcast6ctl: standard input:2: --iif: the imported link list has no interface 'm7'\n");
    const Outcome without = run({"count", "l3-mfib", "--regif", "pim6reg"});
    EXPECT_EQ(without.exitCode, 1);
    EXPECT_EQ(
        without.err,
        "mcast6ctl: --regif: no link list was imported that tells the index of 'pim6reg'; give the interface's number\n");
}

TEST(Delete, removes_one_entry_and_refuses_an_absent_one) {
    const Outcome outcome =
        runScript(importLine("small") +
                  "delete l3-mfib --source any --group any\ncount l3-mfib\n"
                  "delete l3-mfib --source 2001:db8:55::a1 --group ff0e::10:1 --vrf 100\ncount l3-mfib\n"
                  "delete l3-mfib --source any --group any\n");
    EXPECT_EQ(outcome.exitCode, 1);
    const std::vector<std::string> all = lines(outcome.out);
    ASSERT_EQ(all.size(), kImportLines + 4);
    EXPECT_EQ(all[kImportLines], "l3-mfib: deleted source ::, group :: in VR 0, VRF 254 and its 2 members");
    EXPECT_EQ(all[kImportLines + 1], "10");
    EXPECT_EQ(all[kImportLines + 3], "9");
    EXPECT_EQ(outcome.err, "mcast6ctl: standard input:6: l3-mfib: no entry for source ::, group :: in VR 0, VRF 254\n");
}

TEST(BdEnable, is_set_shown_counted_smoothed_and_deleted) {
    const Outcome outcome = runScript(
        "set bd-enable --bd 10 --on\nset bd-enable --bd 20 --vr 3 --off --mld-version 1 --smooth-version 5\n"
        "show bd-enable\ncount bd-enable\ncount bd-enable --bd 20\ncount bd-enable --vr 3 --bd 20\n"
        "set bd-enable --bd 10 --off\nshow bd-enable --vr 0 --bd 10\nsmooth bd-enable --version 5\n"
        "delete bd-enable --vr 3 --bd 20\ncount bd-enable\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 11U);
    EXPECT_EQ(all[0].at("new"), true);
    ASSERT_EQ(all[2].at("entries").size(), 2U);
    std::set<std::string> rows;
    for (const Json& entry : all[2].at("entries")) {
        rows.insert(entry.at("keyId1").dump() + " " + entry.at("keyId2").dump() + " " + entry.at("l2mcEnable").dump() +
                    " " + entry.at("mldVersion").dump() + " " + entry.at("smoothVersion").dump());
    }
    EXPECT_EQ(rows, (std::set<std::string>{"0 10 true 2 0", "3 20 false 1 5"}));
    EXPECT_EQ(all[3].at("count"), 2);
    EXPECT_EQ(all[4].at("count"), 1);
    EXPECT_EQ(all[5].at("count"), 1);
    EXPECT_EQ(all[6].at("new"), false);
    ASSERT_EQ(all[7].at("entries").size(), 1U);
    EXPECT_EQ(all[7].at("entries").at(0).at("l2mcEnable"), false);
    EXPECT_EQ(all[7].at("entries").at(0).at("mldVersion"), 2);
    EXPECT_EQ(all[8].at("deleted"), 1);
    EXPECT_EQ(all[10].at("count"), 0);
}

TEST(BdEnable, refuses_what_makes_no_sense) {
    EXPECT_EQ(run({"set", "bd-enable", "--bd", "1"}).err.find("mcast6ctl: give one of --on and --off\n"), 0U);
    EXPECT_EQ(run({"set", "bd-enable", "--bd", "1", "--on", "--off"}).exitCode, 2);
    const Outcome version = run({"set", "bd-enable", "--bd", "1", "--on", "--mld-version", "3"});
    EXPECT_EQ(version.exitCode, 2);
    EXPECT_EQ(lines(version.err).at(0), "mcast6ctl: --mld-version: '3' is neither 1 nor 2");
    const Outcome absent = run({"delete", "bd-enable", "--bd", "1"});
    EXPECT_EQ(absent.exitCode, 1);
    EXPECT_EQ(absent.err, "mcast6ctl: bd-enable: no entry for bridge domain 1 of VR 0\n");
}

}  // namespace
}  // namespace mcast6::ctl::test
