// The layer-2 tables that no capture fills.
#include <algorithm>
#include <iterator>

#include "mcast6_db/l2mc6_bd_flowstat_sub.h"
#include "mcast6_db/l2mc6_bd_tag_elb.h"
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"
#include "mcast6_db/l2mc6_flowstat_sub.h"
#include "tests/tool/table.h"

namespace mcast6::ctl::test {
namespace {

struct Flags {
    uint32_t bits;
    const char* words;
};
constexpr Flags kFlags[] = {
    {0, "-"}, {1, "permanent"}, {2 | 8, "include blocked"}, {16 | 64 | 0x100, "exclude offload 0x100"}};

// What all tables of members have.
Drawn<L2Elb6Entry> drawMember(Numbers& numbers) {
    Drawn<L2Elb6Entry> drawn;
    L2Elb6Entry& record = drawn.record;
    const Flags& flags = kFlags[numbers.below(std::size(kFlags))];
    record.vrId = numbers.below(2);
    record.vrfId = numbers.below(2);
    record.bdId = 10 + numbers.below(2);
    record.outIfIndex = 1 + numbers.below(3);
    record.pathFlags = flags.bits;
    record.appSrcPid = 1 + numbers.below(2);
    record.smoothVersion = numbers.below(3);
    record.errCode[0] = static_cast<uint8_t>(numbers.below(2));
    drawn.tellAddresses(numbers, "groupAddr", &L2Elb6Entry::groupAddr, "sourceAddr", &L2Elb6Entry::sourceAddr);
    drawn.tell({{"vrId", record.vrId},
                {"vrfId", record.vrfId},
                {"bdId", record.bdId},
                {"bdName", nullptr},
                {"outIfIndex", record.outIfIndex},
                {"outIfName", nullptr},
                {"flags", flags.words},
                {"pathFlags", flags.bits},
                {"appSrcPid", record.appSrcPid},
                {"smoothVersion", record.smoothVersion},
                {"errCode", record.errCode[0]}},
               {{"vr", record.vrId},
                {"vrf", record.vrfId},
                {"bd", record.bdId},
                {"oif", record.outIfIndex},
                {"pid", record.appSrcPid}});
    return drawn;
}

Draft drawTagged(Numbers& numbers) {
    auto drawn = drawMember(numbers);
    L2Elb6Entry& record = drawn.record;
    record.elbByte1 = static_cast<uint8_t>(numbers.below(0x100));
    record.tagVid1 = static_cast<uint16_t>(numbers.below(2));
    record.tagVid2 = static_cast<uint16_t>(numbers.below(3));
    drawn.tell({{"protocol", record.elbByte1}, {"tagVid1", record.tagVid1}, {"tagVid2", record.tagVid2}},
               {{"tag", record.tagVid1}, {"inner-tag", record.tagVid2}});
    return draftOf(drawn, MCAST6_DB_WriteL2McBdTagElb);
}

Draft drawVxlanSub(Numbers& numbers) {
    auto drawn = drawMember(numbers);
    L2Elb6Entry& record = drawn.record;
    record.vxlanByte = static_cast<uint8_t>(4 + 2 * numbers.below(2));
    record.vxlanWord1 = 5000 + numbers.below(2);
    record.vxlanWord2 = numbers.below(1000);
    record.vxlanFlag = static_cast<uint8_t>(numbers.below(0x100));
    constexpr uint32_t kRemote[4] = {0x20010DB8, 0x00010002, 0x00030004, 0x00050006};
    std::copy(std::begin(kRemote), std::end(kRemote), record.vxlanWords3to6);
    drawn.tell({{"protocol", record.vxlanFlag},
                {"underlay", record.vxlanByte},
                {"vni", record.vxlanWord1},
                {"remoteAddr", "2001:db8:1:2:3:4:5:6"},
                {"udpPort", record.vxlanWord2}},
               {{"underlay", record.vxlanByte}, {"vni", record.vxlanWord1}});
    return draftOf(drawn, MCAST6_DB_WriteL2Mc6BdVxlanSubElb);
}

// 'domain' is the filter by keyId2, 'named' the member that tells the bridge's name.
Drawn<FlowStatSubEntry> drawSubscription(Numbers& numbers, const char* domain, const char* named) {
    Drawn<FlowStatSubEntry> drawn;
    FlowStatSubEntry& record = drawn.record;
    record.keyId1 = numbers.below(3);
    record.keyId2 = 10 + numbers.below(3);
    record.srcPid = 1 + numbers.below(2);
    record.cfgWord2 = numbers.below(1000);
    record.cfgWord3 = numbers.below(2);
    record.smoothVersion = numbers.below(3);
    drawn.tellAddresses(numbers, "flowAddr1", &FlowStatSubEntry::flowAddr1, "flowAddr2", &FlowStatSubEntry::flowAddr2);
    drawn.tell({{"keyId1", record.keyId1},
                {"keyId2", record.keyId2},
                {named, nullptr},
                {"srcPid", record.srcPid},
                {"cfgWord2", record.cfgWord2},
                {"cfgWord3", record.cfgWord3},
                {"smoothVersion", record.smoothVersion}},
               {{"vr", record.keyId1}, {domain, record.keyId2}, {"pid", record.srcPid}, {"word3", record.cfgWord3}});
    return drawn;
}

Draft drawOfBridgeDomain(Numbers& numbers) {
    return draftOf(drawSubscription(numbers, "bd", "keyId2Name"), MCAST6_DB_WriteL2McBdFlowstatSub);
}

Draft drawOfVlan(Numbers& numbers) {
    return draftOf(drawSubscription(numbers, "vlan", "keyId1Name"), MCAST6_DB_WriteL2FlowStatSub);
}

}  // namespace

// clang-format off
const std::vector<TableFacts>& l2Facts() {
    static const std::vector<TableFacts> kTables{
        {.name = "bd-tag-elb", .databaseName = "l2mc6_bd_tag_elb",
         .key = {"vr", "bd", "group", "source", "oif", "tag", "inner-tag"},
         .unless = {{"vr", "0"}, {"tag", "0"}, {"inner-tag", "0"}}, .needs = {{"bd", "vr"}},
         .queries = {{"key", {"vr", "bd", "group", "source", "oif", "tag", "inner-tag"}},
                     {"entry", {"vr", "bd", "group", "source"}}, {"source process", {"vr", "vrf", "pid"}},
                     {"outgoing interface", {"oif"}}, {"walk of the whole table", {}}},
         .draw = drawTagged, .drafts = 80},
        {.name = "bd-vxlan-sub-elb", .databaseName = "l2mc6_bd_vxlan_sub_elb",
         .key = {"vr", "bd", "group", "source", "underlay", "vni", "oif"},
         .unless = {{"vr", "0"}, {"underlay", "0"}, {"vni", "0"}}, .needs = {{"bd", "vr"}},
         .queries = {{"key", {"vr", "bd", "group", "source", "underlay", "vni", "oif"}},
                     {"tunnel of an entry", {"vr", "bd", "group", "source", "underlay", "vni"}},
                     {"entry", {"vr", "bd", "group", "source"}}, {"VR and bridge domain", {"vr", "bd"}},
                     {"outgoing interface", {"oif"}}, {"walk of the whole table", {}}},
         .draw = drawVxlanSub, .drafts = 80},
        {.name = "bd-flowstat", .databaseName = "l2mc6_bd_flowstat_sub",
         .key = {"vr", "bd", "group", "source"}, .unless = {{"vr", "0"}},
         .queries = {{"key", {"vr", "bd", "group", "source"}}, {"source process", {"vr", "pid", "word3"}},
                     {"walk of the whole table", {}}},
         .draw = drawOfBridgeDomain, .drafts = 40},
        {.name = "flowstat", .databaseName = "l2mc6_flowstat_sub",
         .key = {"vr", "vlan", "group", "source"}, .unless = {{"vlan", "0"}},
         .queries = {{"key", {"vr", "vlan", "group", "source"}}, {"walk of the whole table", {}}},
         .draw = drawOfVlan, .drafts = 40, .replaces = false},
    };
    return kTables;
}
// clang-format on

}  // namespace mcast6::ctl::test
