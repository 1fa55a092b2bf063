// Two routers in one store: each row has the interface names of its own VR, and filters tell them apart.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

// Their interfaces have the same numbers and other names, but for pim6reg.
std::string importTwo() {
    return importLine("small") + "import mroute '" + sample("made/kinds.rt.mroute.json") + "' --links '" +
           sample("made/kinds.rt.link.json") + "' --vr 1\n";
}

// The names that 'member' and its name have in the entries, by VR.
std::map<uint32_t, std::set<std::string>> namesByRouter(const Json& entries, const char* member) {
    std::map<uint32_t, std::set<std::string>> names;
    for (const Json& entry : entries) names[entry.at("vrId")].insert(entry.at(member).dump());
    return names;
}

TEST(Routers, name_the_interfaces_of_their_own_rows) {
    const Outcome outcome = runScript(importTwo() + "show l3-mfib\nshow l3-elb\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    using Names = std::map<uint32_t, std::set<std::string>>;
    EXPECT_EQ(namesByRouter(all.at(2).at("entries"), "inIfName"),
              (Names{{0, {"\"m1\"", "\"m3\"", "\"m4\"", "\"m5\"", "\"m6\"", "\"pim6reg\""}},
                     {1, {"\"br7\"", "\"e1\"", "\"e1.30\"", "\"pim6reg\""}}}));
    EXPECT_EQ(namesByRouter(all.at(3).at("entries"), "outIfName"),
              (Names{{0, {"\"m1\"", "\"m2\"", "\"m3\"", "\"m4\"", "\"m5\"", "\"m6\""}}, {1, {"\"e1\"", "\"e2\""}}}));
}

TEST(Routers, name_the_members_under_their_own_entries) {
    const Outcome outcome = runScript(importTwo() + "show l3-mfib --members --group ff0e::7:1\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    for (const char* way : {" vx9      l3-bd-tnl-elb    tunnel vx9 to 2001:db8:ffff::9, key 5009\n",
                            " br7      l3-bd-untag-elb  bridge br7\n", " e1.30    l3-vlan-elb      VLAN 30\n"}) {
        EXPECT_NE(outcome.out.find(way), std::string::npos) << way << outcome.out;
    }
}

TEST(Routers, keep_their_names_when_one_is_imported_again) {
    const Outcome outcome =
        runScript(importTwo() + importLine("small", "--vr 1") + "count l3-mfib --vr 0 --iif m3\nshow l3-mfib --vr 1\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(3).at("count"), 5);
    // Its names are those of the later link list, as its numbers are.
    const auto names = namesByRouter(all.at(4).at("entries"), "inIfName");
    EXPECT_FALSE(names.at(1).contains("\"e1\""));
    EXPECT_TRUE(names.at(1).contains("\"m3\""));
}

TEST(Routers, are_picked_by_a_name_that_one_of_them_has) {
    const Outcome outcome = runScript(
        importTwo() + "show l3-mfib --iif e1 --verbose\nshow l3-mfib --iif m3\ncount l3-mfib --iif 7\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    using Names = std::map<uint32_t, std::set<std::string>>;
    EXPECT_EQ(namesByRouter(all.at(2).at("entries"), "inIfName"), (Names{{1, {"\"e1\""}}}));
    EXPECT_EQ(namesByRouter(all.at(3).at("entries"), "inIfName"), (Names{{0, {"\"m3\""}}}));
    EXPECT_EQ(all.at(2).at("entries").size(), 2U);
    EXPECT_EQ(all.at(3).at("entries").size(), 5U);
    EXPECT_EQ(outcome.err,
              "mcast6ctl: l3-mfib: query by incoming interface in any VR and VRF; the tool itself filters by --vr\n");
    // A number is of any VR: m6 of one router, e1.30 of the other.
    EXPECT_EQ(all.at(4).at("count"), 2);
}

struct Refusal {
    const char* name;
    const char* filters;
    const char* told;
};
void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }

class RefusedNames : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedNames, say_which_routers_have_them) {
    const Outcome outcome = runScript(importTwo() + "show l3-mfib " + GetParam().filters + "\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, std::string("mcast6ctl: standard input:3: ") + GetParam().told + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Routers, RefusedNames,
    testing::Values(
        Refusal{"of_several", "--iif pim6reg", "--iif: VRs 0 and 1 have an interface 'pim6reg': choose one by --vr"},
        Refusal{"of_another", "--vr 1 --iif m3",
                "--iif: no imported link list of VR 1 has an interface 'm3', but VR 0 has one: choose by --vr"},
        Refusal{"of_another_by_vrf", "--vrf main --iif e1",
                "--iif: no imported link list of VR 0 has an interface 'e1', but VR 1 has one: choose by --vr"},
        Refusal{"of_a_router_without_names", "--vr 2 --iif e1",
                "--iif: no imported link list of VR 2 has an interface 'e1', but VR 1 has one: choose by --vr"},
        Refusal{"of_two_routers_together", "--iif m3 --regif e1",
                "--regif: no imported link list of VR 0 has an interface 'e1', but VR 1 has one: choose by --vr"},
        Refusal{"of_none", "--iif m7", "--iif: no imported link list has an interface 'm7'"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(Routers, share_the_names_of_one_while_no_other_has_names) {
    const Outcome outcome = runScript(importLine("small") + "count l3-mfib --vr 1 --iif m3\ncount l3-mfib --iif m3\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<std::string> all = lines(outcome.out);
    ASSERT_GE(all.size(), 2U);
    EXPECT_EQ(all[all.size() - 2], "0");
    EXPECT_EQ(all[all.size() - 1], "5");
}

TEST(Routers, do_not_name_the_bridges_of_a_switch) {
    const Outcome outcome = runScript(importBridgeLine("small") + importTwo() + "count l2-bd-mfib --bd br10\n");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(lines(outcome.out).back(), "20");
}

}  // namespace
}  // namespace mcast6::ctl::test
