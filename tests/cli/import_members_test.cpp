// import mroute: the outgoing interfaces of every route, each in the table of its kind of link.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

constexpr const char* kMemberTables[] = {"l3mc6_elb", "l3mc6_vlan_elb", "l3mc6_bd_untag_elb", "l3mc6_bd_tnl_elb",
                                         "l3mc6_register_elb"};

std::string kindsLine(const std::string& capture, const std::string& options) {
    return "import mroute '" + sample("made/" + capture + ".rt.mroute.json") + "' --links '" +
           sample("made/kinds.rt.link.json") + "' " + options + "\n";
}

struct Capture {
    const char* folder;
    uint64_t vrfs;
    uint64_t outgoing;
    uint64_t registering;  // of these, by the register interface
};

void PrintTo(const Capture& capture, std::ostream* out) { *out << capture.folder; }

class MemberCaptures : public testing::TestWithParam<Capture> {};

TEST_P(MemberCaptures, account_for_every_outgoing_interface) {
    const Capture& capture = GetParam();
    const Outcome outcome =
        runScript(importLine(capture.folder, "--smooth-version 1") + importLine(capture.folder, "--smooth-version 2") +
                      "count l3-elb\ncount l3-register-elb\ncount glbcfg\n",
                  {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    const std::map<std::string, uint64_t> expected{{"l3mc6_elb", capture.outgoing - capture.registering},
                                                   {"l3mc6_register_elb", capture.registering},
                                                   {"l3mc6_glbcfg", capture.vrfs}};
    for (const auto& [table, records] : expected) {
        EXPECT_EQ(only(all.at(0).at("tables"), "table", table), (Json{{"table", table},
                                                                      {"before", 0},
                                                                      {"new", records},
                                                                      {"replaced", 0},
                                                                      {"restamped", 0},
                                                                      {"removed", 0},
                                                                      {"after", records}}));
        EXPECT_EQ(only(all.at(1).at("tables"), "table", table), (Json{{"table", table},
                                                                      {"before", records},
                                                                      {"new", 0},
                                                                      {"replaced", 0},
                                                                      {"restamped", records},
                                                                      {"removed", 0},
                                                                      {"after", records}}));
    }
    uint64_t members = 0;
    for (const char* table : kMemberTables) {
        members += only(all.at(0).at("tables"), "table", table).at("new").get<uint64_t>();
    }
    EXPECT_EQ(members, capture.outgoing);
    EXPECT_EQ(all.at(0).at("outgoingInterfaces"), capture.outgoing);
    EXPECT_EQ(all.at(2).at("count"), capture.outgoing - capture.registering);
    EXPECT_EQ(all.at(3).at("count"), capture.registering);
    EXPECT_EQ(all.at(4).at("count"), capture.vrfs);
}

INSTANTIATE_TEST_SUITE_P(Import, MemberCaptures,
                         testing::Values(Capture{"small", 2, 18, 1}, Capture{"medium", 2, 4075, 14},
                                         Capture{"large", 3, 89990, 240}),
                         [](const auto& instance) { return std::string(instance.param.folder); });

using Interfaces = std::set<std::string>;

std::string routeKey(const std::string& table, const Json& source, const Json& group) {
    return table + " " + source.get<std::string>() + " " + group.get<std::string>();
}

// By the capture itself, for each route.
std::map<std::string, Interfaces> capturedMembers(const std::string& folder) {
    std::map<std::string, Interfaces> members;
    std::ifstream file(sample(folder + "/rt.mroute.json"));
    for (const Json& route : Json::parse(file)) {
        Interfaces& of = members[routeKey(route.value("table", "254"), route.at("src"), route.at("dst"))];
        for (const Json& path : route.at("multipath")) of.insert(path.at("oif").get<std::string>());
    }
    return members;
}

TEST(ImportedMembers, are_those_of_the_capture_route_by_route) {
    for (const char* folder : {"small", "medium"}) {
        const Outcome outcome = runScript(importLine(folder) + "show l3-elb\nshow l3-register-elb\n", {"--json"});
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        const std::vector<Json> all = documents(outcome.out);
        std::map<std::string, Interfaces> imported;
        for (const size_t table : {1U, 2U}) {
            for (const Json& member : all.at(table).at("entries")) {
                const std::string key =
                    routeKey(member.at("vrfId").dump(), member.at("sourceAddr"), member.at("groupAddr"));
                const bool isFirst = imported[key].insert(member.at("outIfName").get<std::string>()).second;
                EXPECT_TRUE(isFirst) << member;
            }
        }
        std::map<std::string, Interfaces> captured = capturedMembers(folder);
        std::erase_if(captured, [](const auto& route) { return route.second.empty(); });
        EXPECT_EQ(imported, captured) << folder;
    }
}

// The members of the first route of made/kinds, one of every kind.
TEST(ImportedMembers, go_to_the_table_of_their_kind_of_link) {
    const Outcome outcome = runScript(kindsLine("kinds", "--smooth-version 7") +
                                          "show l3-elb\nshow l3-vlan-elb\nshow l3-bd-untag-elb\nshow l3-bd-tnl-elb\n"
                                          "show l3-register-elb\nshow glbcfg\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(0).at("new"), 5);
    EXPECT_EQ(all.at(0).at("outgoingInterfaces"), 14);
    const auto ofRoute = [&](size_t shown) {
        Json members = Json::array();
        for (const Json& member : all.at(shown).at("entries")) {
            if (member.at("groupAddr") == "ff0e::7:1" && member.at("sourceAddr") == "2001:db8:1::a1") {
                members.push_back(member);
            }
        }
        return members;
    };
    const auto expect = [](const Json& member, const Json& expected) {
        for (const auto& [name, value] : expected.items()) EXPECT_EQ(member.at(name), value) << name << member;
    };
    ASSERT_EQ(ofRoute(1).size(), 1U);
    expect(ofRoute(1).at(0), {{"vrId", 0}, {"vrfId", 254}, {"outIfName", "e2"}, {"outIfIndex", 5}});
    ASSERT_EQ(ofRoute(2).size(), 1U);
    expect(ofRoute(2).at(0), {{"outIfName", "e1.30"}, {"outIfIndex", 7}, {"instId", 30}});
    ASSERT_EQ(ofRoute(3).size(), 1U);
    expect(ofRoute(3).at(0), {{"bdElbAttr4", 12}, {"bdElbAttr5", 12}, {"outIfName", "br7"}, {"smoothVersion", 7}});
    ASSERT_EQ(ofRoute(4).size(), 3U);
    const auto expectTunnel = [&](const char* name, uint64_t index, uint64_t key, const char* remote, uint64_t port) {
        expect(only(ofRoute(4), "outIfName", name), {{"tnlAttr2", index},
                                                     {"bdElbAttr4", 0},
                                                     {"tnlAttr1", key},
                                                     {"tnlAttr3", 6},
                                                     {"tnlAttr5", remote},
                                                     {"tnlAttr4", port},
                                                     {"smoothVersion", 7}});
    };
    expectTunnel("gre1", 9, 7, "2001:db8:ffff::2", 0);
    expectTunnel("tnl1", 11, 0, "2001:db8:ffff::3", 0);
    expectTunnel("vx9", 13, 5009, "2001:db8:ffff::9", 4789);
    ASSERT_EQ(ofRoute(5).size(), 1U);
    expect(ofRoute(5).at(0), {{"outIfName", "pim6reg"}, {"outIfIndex", 14}});
    ASSERT_EQ(all.at(6).at("entries").size(), 1U);
    expect(
        all.at(6).at("entries").at(0),
        {{"cfgKeyA", 0}, {"cfgKeyB", 254}, {"cfgKeyC", 2}, {"cfgWord3", 1}, {"glbVersion", 1}, {"smoothVersion", 7}});
}

// In the later capture the first route lost a VLAN device and a tunnel, the second one gained a bridge, and the
// any-source route is gone.
TEST(ReimportedMembers, follow_the_capture) {
    const Outcome outcome = runScript(kindsLine("kinds", "--smooth-version 1") +
                                          kindsLine("kinds-later", "--smooth-version 2") + "smooth l3 --version 2\n" +
                                          "count l3-elb\ncount l3-vlan-elb\ncount l3-bd-untag-elb\n"
                                          "count l3-bd-tnl-elb\ncount l3-register-elb\ncount l3-mfib\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    const auto change = [&](const char* table) { return only(all.at(1).at("tables"), "table", table); };
    // What has no smooth version is removed with the import of its route, the rest when it is smoothed.
    EXPECT_EQ(change("l3mc6_vlan_elb").at("removed"), 1);
    EXPECT_EQ(change("l3mc6_vlan_elb").at("after"), 2);
    EXPECT_EQ(change("l3mc6_bd_untag_elb").at("new"), 1);
    EXPECT_EQ(change("l3mc6_bd_tnl_elb").at("after"), 5);
    const auto smoothed = [&](const char* table) { return only(all.at(2).at("tables"), "table", table); };
    EXPECT_EQ(smoothed("l3mc6_mfib").at("deleted"), 1);
    EXPECT_EQ(smoothed("l3mc6_elb").at("deleted"), 1);         // e1 of the any-source route
    EXPECT_EQ(smoothed("l3mc6_bd_tnl_elb").at("deleted"), 2);  // tnl1 of the first route, vx9 of the any-source one
    const std::vector<uint64_t> counts{1, 2, 4, 3, 1, 4};
    for (size_t table = 0; table < counts.size(); ++table) {
        EXPECT_EQ(all.at(3 + table).at("count"), counts[table]) << table;
    }
}

TEST(ReimportedMembers, of_a_route_that_stopped_registering_leave_the_register_table) {
    const auto line = [](const char* name, const char* outgoing) {
        const std::string file =
            writeFile(name, std::string(R"([{"src":"::1","dst":"ff0e::1","iif":"m1","multipath":[{"oif":")") +
                                outgoing + "\"}]}]");
        return "import mroute '" + file + "' --links '" + sample("small/rt.link.json") + "'\n";
    };
    const Outcome outcome = runScript(
        line("registering.json", "pim6reg") + line("plain.json", "m2") + "count l3-register-elb\nshow l3-elb\n",
        {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(only(all.at(1).at("tables"), "table", "l3mc6_register_elb").at("removed"), 1);
    EXPECT_EQ(all.at(2).at("count"), 0);
    ASSERT_EQ(all.at(3).at("entries").size(), 1U);
    EXPECT_EQ(all.at(3).at("entries").at(0).at("outIfName"), "m2");
}

TEST(ReimportedMembers, leave_other_routes_and_other_virtual_routers_alone) {
    const Outcome outcome = runScript(kindsLine("kinds", "--vr 1") + kindsLine("kinds", "") +
                                          kindsLine("kinds-later", "") + "count l3-elb --vr 1\ncount l3-vlan-elb\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    EXPECT_EQ(all.at(3).at("count"), 2);
    EXPECT_EQ(all.at(4).at("count"), 5);  // 3 in VR 1, 2 in VR 0
}

TEST(GlobalConfiguration, is_made_for_every_vrf_once_and_restamped_later) {
    const Outcome outcome = runScript(importLine("small", "--smooth-version 1 --vr 3") +
                                          importLine("small", "--smooth-version 2 --vr 3") + "show glbcfg\n",
                                      {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const Json shown = documents(outcome.out).at(2);
    ASSERT_EQ(shown.at("entries").size(), 2U);
    for (const uint64_t vrf : {100U, 254U}) {
        const Json entry = only(shown.at("entries"), "cfgKeyB", vrf);
        EXPECT_EQ(entry.at("cfgKeyA"), 3);
        EXPECT_EQ(entry.at("smoothVersion"), 2);
        EXPECT_EQ(entry.at("glbVersion"), 1);  // re-stamping is no new version
    }
}

}  // namespace
}  // namespace mcast6::ctl::test
