// The layer-3 tables, those that an import fills and the others.
#include <algorithm>
#include <iterator>

#include "kernel/apply/forwarding_process.h"
#include "mcast6_db/l3mc6_bd_tag_elb.h"
#include "mcast6_db/l3mc6_bd_tnl_elb.h"
#include "mcast6_db/l3mc6_bd_untag_elb.h"
#include "mcast6_db/l3mc6_glbcfg.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mvpn_tnl_elb.h"
#include "mcast6_db/l3mc6_mvpn_tnl_subelb.h"
#include "mcast6_db/l3mc6_register_elb.h"
#include "mcast6_db/l3mc6_sub_elb.h"
#include "mcast6_db/l3mc6_vlan_elb.h"
#include "mcast6_platform/engine.h"
#include "mcast6_platform/tables/l3mc6_sub_elb.h"
#include "tests/tool/table.h"

namespace mcast6::ctl::test {
namespace {

// What forwarding entries and all of their members have.
template <class Record>
Drawn<Record> drawOfEntry(Numbers& numbers) {
    constexpr uint32_t kMain = 254;
    Drawn<Record> drawn;
    Record& record = drawn.record;
    record.vrId = numbers.below(2);
    record.vrfId = numbers.below(2) == 0 ? kMain : 100;
    drawn.tell({{"vrId", record.vrId}, {"vrfId", record.vrfId}}, {{"vr", record.vrId}, {"vrf", record.vrfId}});
    drawn.tellAddresses(numbers, "groupAddr", &Record::groupAddr, "sourceAddr", &Record::sourceAddr);
    if constexpr (requires { record.smoothVersion; }) {
        record.appSrcPid = 1 + numbers.below(2);
        record.smoothVersion = numbers.below(3);
        drawn.tell({{"appSrcPid", record.appSrcPid}, {"smoothVersion", record.smoothVersion}}, {});
    }
    return drawn;
}

std::vector<std::string> keyOfEntry(const std::vector<std::string>& further = {}) {
    std::vector<std::string> key{"vr", "vrf", "group", "source"};
    key.insert(key.end(), further.begin(), further.end());
    return key;
}

std::set<std::string> ofEntry(const std::set<std::string>& further = {}) {
    std::set<std::string> filters{"vr", "vrf", "group", "source"};
    filters.insert(further.begin(), further.end());
    return filters;
}

QueryFacts walkOfAll() { return {"walk of the whole table", {}}; }

Draft drawMfib(Numbers& numbers) {
    constexpr uint32_t kHashConflict = 5;
    auto drawn = drawOfEntry<L3Mc6MfibEntry>(numbers);
    L3Mc6MfibEntry& record = drawn.record;
    record.inIfIndex = 1 + numbers.below(3);
    record.regIfIndex = numbers.below(3);
    record.attr23 = numbers.below(3) == 0 ? kHashConflict : numbers.below(8);
    drawn.tell({{"inIfIndex", record.inIfIndex},
                {"inIfName", nullptr},
                {"regIfIndex", record.regIfIndex},
                {"regIfName", nullptr}},
               {{"iif", record.inIfIndex}, {"regif", record.regIfIndex}});
    drawn.filters["conflicts"] = record.attr23 == kHashConflict ? "" : kNotPicked;
    return draftOf(drawn, MCAST6_DB_WriteL3Mfib);
}

Draft drawGlbCfg(Numbers& numbers) {
    L3Mc6GlbCfgEntry record{};
    record.cfgKeyA = numbers.below(3);
    record.cfgKeyB = 253 + numbers.below(3);
    record.cfgKeyC = 1 + numbers.below(2);
    record.cfgWord3 = numbers.below(3);
    record.cfgWord6 = numbers.below(1000);
    record.cfgWord7 = numbers.below(1000);
    record.smoothVersion = numbers.below(3);
    const Json shown{{"cfgKeyA", record.cfgKeyA},   {"cfgKeyB", record.cfgKeyB},
                     {"cfgKeyC", record.cfgKeyC},   {"multicastRouting", record.cfgWord3 != 0},
                     {"cfgWord3", record.cfgWord3}, {"cfgWord6", record.cfgWord6},
                     {"cfgWord7", record.cfgWord7}, {"smoothVersion", record.smoothVersion}};
    const Words filters{{"vr", record.cfgKeyA}, {"vrf", record.cfgKeyB}, {"type", record.cfgKeyC}};
    return {{shown, texts(filters), record.smoothVersion}, [record](Row& row) mutable {
                const uint32_t code = MCAST6_DB_WriteGlbCfg(&record);
                row.shown["glbVersion"] = record.glbVersion;
                return code;
            }};
}

Json instanceOf(uint8_t type, uint32_t id) {
    if (type == L3_REG_INST_VLAN) return "VLAN " + std::to_string(id);
    if (type == L3_REG_INST_BRIDGE_DOMAIN) return "BD " + std::to_string(id);
    return nullptr;
}

Draft drawRegister(Numbers& numbers) {
    auto drawn = drawOfEntry<L3Mc6RegOifEntry>(numbers);
    L3Mc6RegOifEntry& record = drawn.record;
    record.outIfIndex = 1 + numbers.below(3);
    record.instType = static_cast<uint8_t>(numbers.below(3));
    record.instId = numbers.below(3);
    record.regAttrC = static_cast<uint8_t>(numbers.below(2));
    drawn.tell({{"outIfIndex", record.outIfIndex},
                {"outIfName", nullptr},
                {"instance", instanceOf(record.instType, record.instId)},
                {"instType", record.instType},
                {"instId", record.instId},
                {"regAttrC", record.regAttrC}},
               {{"oif", record.outIfIndex},
                {"inst-type", record.instType},
                {"inst-id", record.instId},
                {"attr-c", record.regAttrC}});
    return draftOf(drawn, MCAST6_DB_WriteRegistOif);
}

// What the other members have that go out by an interface.
template <class Record>
Drawn<Record> drawOfInterface(Numbers& numbers) {
    auto drawn = drawOfEntry<Record>(numbers);
    Record& record = drawn.record;
    record.outIfIndex = 1 + numbers.below(3);
    record.instId = 30 + numbers.below(2);
    record.elbFlagD = static_cast<uint8_t>(1 + numbers.below(2));
    record.elbFlagA = numbers.below(3);
    drawn.tell({{"outIfIndex", record.outIfIndex},
                {"outIfName", nullptr},
                {"instId", record.instId},
                {"elbFlagD", record.elbFlagD},
                {"elbFlagA", record.elbFlagA}},
               {{"oif", record.outIfIndex}});
    return drawn;
}

Draft drawPlain(Numbers& numbers) {
    auto drawn = drawOfInterface<L3Mc6ElbEntry>(numbers);
    drawn.tell(Json::object(), {{"flag-d", drawn.record.elbFlagD}, {"flag-a", drawn.record.elbFlagA}});
    return draftOf(drawn, kernel::writeOutgoingInterface);
}

Draft drawVlan(Numbers& numbers) {
    auto drawn = drawOfInterface<L3Mc6ElbEntryExt>(numbers);
    drawn.tell(Json::object(), {{"vlan", drawn.record.instId}});
    return draftOf(drawn, MCAST6_DB_WriteVlanElb);
}

// As the forwarding process of a device does: no operation of the library writes this table.
uint32_t writeSub(const L3Mc6ElbEntryExt* record) {
    constexpr uint32_t kWriting = 0;
    constexpr uint32_t kConnection = 0;
    uint64_t object = 0;
    uint32_t code = db_create_l3mc6_sub_elb_obj(kWriting, kConnection, &object);
    if (code != MCAST6_DB_OK) return code;
    uint8_t row[layout::l3mc6_sub_elb::kRecordSize] = {};
    MCAST6_DB_SetL3SubElb(record, row);
    code = db_set_l3mc6_sub_elb_all_fields(object, row, sizeof row);
    if (code == MCAST6_DB_OK) code = db_write_obj(object);
    db_release_l3mc6_sub_elb_object(object);
    return code == MCAST6_DB_EXISTS_OR_ABSENT ? uint32_t{MCAST6_DB_OK} : code;  // replaced
}

Draft drawSub(Numbers& numbers) {
    auto drawn = drawOfInterface<L3Mc6ElbEntryExt>(numbers);
    L3Mc6ElbEntryExt& record = drawn.record;
    record.subIfIndex = 5 + numbers.below(3);
    drawn.tell({{"subIfIndex", record.subIfIndex}, {"subIfName", nullptr}},
               {{"subif", record.subIfIndex}, {"vlan", record.instId}, {"flag-d", record.elbFlagD}});
    return draftOf(drawn, writeSub);
}

Drawn<L3BdElb6Entry> drawOfBridgeDomain(Numbers& numbers) {
    auto drawn = drawOfEntry<L3BdElb6Entry>(numbers);
    L3BdElb6Entry& record = drawn.record;
    record.bdElbAttr4 = 10 + numbers.below(2);
    record.bdElbAttr5 = 1 + numbers.below(3);
    record.bdElbAttr19 = numbers.below(2);
    drawn.tell({{"bdElbAttr4", record.bdElbAttr4},
                {"bdElbAttr4Name", nullptr},
                {"outIfIndex", record.bdElbAttr5},
                {"outIfName", nullptr},
                {"bdElbAttr5", record.bdElbAttr5},
                {"bdElbAttr19", record.bdElbAttr19}},
               {{"bd", record.bdElbAttr4},
                {"oif", record.bdElbAttr5},
                {"pid", record.appSrcPid},
                {"attr19", record.bdElbAttr19}});
    return drawn;
}

Draft drawTagged(Numbers& numbers) {
    auto drawn = drawOfBridgeDomain(numbers);
    L3BdElb6Entry& record = drawn.record;
    record.bdElbAttr7 = static_cast<uint16_t>(numbers.below(2));
    record.bdElbAttr8 = static_cast<uint16_t>(numbers.below(3));
    drawn.tell({{"bdElbAttr7", record.bdElbAttr7}, {"bdElbAttr8", record.bdElbAttr8}},
               {{"tag", record.bdElbAttr7}, {"inner-tag", record.bdElbAttr8}});
    return draftOf(drawn, MCAST6_DB_WriteL3McBdTagElb);
}

Draft drawUntagged(Numbers& numbers) { return draftOf(drawOfBridgeDomain(numbers), MCAST6_DB_WriteL3McBdUntagElb); }

Draft drawTunnel(Numbers& numbers) {
    auto drawn = drawOfBridgeDomain(numbers);
    L3BdElb6Entry& record = drawn.record;
    record.tnlAttr1 = numbers.below(3);
    record.tnlAttr2 = 7 + numbers.below(2);
    record.tnlAttr3 = static_cast<uint8_t>(4 + 2 * numbers.below(2));
    record.tnlAttr4 = numbers.below(1000);
    const bool hasRemote = numbers.below(2) == 0;
    constexpr uint8_t kRemote[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6};
    if (hasRemote) std::copy(std::begin(kRemote), std::end(kRemote), record.tnlAttr5);
    drawn.tell({{"tnlAttr1", record.tnlAttr1},
                {"tnlAttr2", record.tnlAttr2},
                {"tnlAttr2Name", nullptr},
                {"tnlAttr3", record.tnlAttr3},
                {"tnlAttr4", record.tnlAttr4},
                {"tnlAttr5", hasRemote ? Json("2001:db8:1:2:3:4:5:6") : Json()}},
               {{"tunnel", record.tnlAttr2}, {"underlay", record.tnlAttr3}, {"tunnel-key", record.tnlAttr1}});
    return draftOf(drawn, MCAST6_DB_WriteL3McBdTnlElb);
}

Draft drawMvpnTunnel(Numbers& numbers) {
    auto drawn = drawOfEntry<L3McMvpnTnlElbEntry>(numbers);
    L3McMvpnTnlElbEntry& record = drawn.record;
    record.tunnelWord1 = numbers.below(2);
    record.tunnelWord2 = numbers.below(2);
    record.tunnelWord3 = numbers.below(2);
    const uint32_t lowByte = numbers.below(2);
    record.tunnelWord4 = lowByte + 0x100 * numbers.below(3);
    record.tunnelWord5 = numbers.below(1000);
    record.tunnelWord6 = numbers.below(1000);
    record.tunnelWord7 = numbers.below(1000);
    record.tunnelWord8 = numbers.below(1000);
    record.tunnelWord9 = numbers.below(1000);
    record.serviceStatus[0] = static_cast<uint8_t>(numbers.below(0x100));
    drawn.tell({{"tunnelWord1", record.tunnelWord1},
                {"tunnelWord2", record.tunnelWord2},
                {"tunnelWord3", record.tunnelWord3},
                {"tunnelWord4", record.tunnelWord4},
                {"tunnelWord5", record.tunnelWord5},
                {"tunnelWord6", record.tunnelWord6},
                {"tunnelWord7", record.tunnelWord7},
                {"tunnelWord8", record.tunnelWord8},
                {"tunnelWord9", record.tunnelWord9},
                {"serviceStatus", record.serviceStatus[0]}},
               {{"word1", record.tunnelWord1},
                {"word2", record.tunnelWord2},
                {"word3", record.tunnelWord3},
                {"word4", lowByte},
                {"pid", record.appSrcPid}});
    return draftOf(drawn, MCAST6_DB_WriteL3McMvpnTnlElb);
}

Draft drawMvpnSub(Numbers& numbers) {
    auto drawn = drawOfEntry<L3McMvpnTnlElbEntry>(numbers);
    L3McMvpnTnlElbEntry& record = drawn.record;
    record.outIfIndex = 1 + numbers.below(3);
    record.subKeyWord = numbers.below(3);
    record.l2IfIndex = 1 + numbers.below(3);
    record.serviceStatus[0] = static_cast<uint8_t>(numbers.below(0x100));
    record.errCode[1] = static_cast<uint8_t>(numbers.below(2));
    drawn.tell({{"outIfIndex", record.outIfIndex},
                {"outIfName", nullptr},
                {"subKeyWord", record.subKeyWord},
                {"l2IfIndex", record.l2IfIndex},
                {"l2IfName", nullptr},
                {"serviceStatus", record.serviceStatus[0]},
                {"errCode", 0x100 * record.errCode[1]}},
               {{"oif", record.outIfIndex}, {"sub-key", record.subKeyWord}, {"l2if", record.l2IfIndex}});
    return draftOf(drawn, MCAST6_DB_WriteL3McMvpnTnlSubElb);
}

// The queries of the three tables in bridge domains that all of them have.
std::vector<QueryFacts> inBridgeDomain(const std::set<std::string>& key, const QueryFacts& own) {
    return {{"key", key},
            {"entry and attribute", ofEntry({"attr19"})},
            {"entry", ofEntry()},
            own,
            {"source process", {"vr", "vrf", "pid"}},
            {"VR and bridge domain", {"vr", "bd"}},
            {"outgoing interface", {"oif"}},
            walkOfAll()};
}

const Given kKeyDefaults{{"vr", "0"}, {"vrf", "254"}};
const Given kVrfNeedsVr{{"vrf", "vr"}};

// clang-format off
std::vector<TableFacts> forwardingAndInterfaces() {
    return {
        {.name = "l3-mfib", .databaseName = "l3mc6_mfib",
         .key = keyOfEntry(), .unless = kKeyDefaults, .needs = {{"vrf", "vr"}, {"conflicts", "vr"}},
         .queries = {{"key", ofEntry()},
                     {"error code", {"vr", "conflicts"}},
                     {"group and incoming interface (query type 4)", {"vr", "vrf", "group", "iif"}},
                     {"source and incoming interface (query type 3)", {"vr", "vrf", "source", "iif"}},
                     {"register interface and group (query type 9)", {"vr", "vrf", "regif", "group"}},
                     {"register interface and source (query type 8)", {"vr", "vrf", "regif", "source"}},
                     {"group (query type 1)", {"vr", "vrf", "group"}},
                     {"source (query type 0)", {"vr", "vrf", "source"}},
                     {"register interface (query type 7)", {"vr", "vrf", "regif"}},
                     {"incoming interface (query type 2)", {"vr", "vrf", "iif"}},
                     {"incoming interface in any VR and VRF", {"iif"}},
                     {"VR and VRF (query type 6)", {"vr", "vrf"}},
                     walkOfAll()},
         .draw = drawMfib, .drafts = 24, .countsAll = true},
        {.name = "glbcfg", .databaseName = "l3mc6_glbcfg",
         .key = {"vr", "vrf", "type"}, .unless = {{"vr", "0"}, {"vrf", "254"}, {"type", "2"}}, .needs = kVrfNeedsVr,
         .queries = {{"key", {"vr", "vrf", "type"}}, {"VR and VRF", {"vr", "vrf"}}, walkOfAll()},
         .draw = drawGlbCfg, .drafts = 24, .countsAll = true},
        {.name = "l3-register-elb", .databaseName = "l3mc6_register_elb",
         .key = keyOfEntry(), .unless = kKeyDefaults, .needs = kVrfNeedsVr,
         .queries = {{"entry and attribute", ofEntry({"attr-c"})}, {"key", ofEntry()},
                     {"instance", {"inst-type", "inst-id"}}, {"outgoing interface", {"oif"}}, walkOfAll()},
         .draw = drawRegister, .drafts = 40, .hasVersion = false},
        {.name = "l3-elb", .databaseName = "l3mc6_elb",
         .key = keyOfEntry({"oif", "flag-d"}), .unless = {{"vr", "0"}, {"vrf", "254"}, {"flag-d", "1"}},
         .needs = kVrfNeedsVr,
         .queries = {{"key", ofEntry({"oif", "flag-d"})}, {"entry", ofEntry({"flag-a"})},
                     {"fast scan of an entry", ofEntry({"flag-d"}), {{"flag-d", "1"}}},
                     {"outgoing interface", {"oif"}}, walkOfAll()},
         .draw = drawPlain, .drafts = 80, .hasVersion = false},
        {.name = "l3-sub-elb", .databaseName = "l3mc6_sub_elb",
         .key = keyOfEntry({"subif", "vlan", "flag-d"}), .needs = kVrfNeedsVr,
         .queries = {{"key", ofEntry({"subif", "vlan", "flag-d"})},
                     {"outgoing interface of an entry", ofEntry({"oif", "flag-d"})}, {"VLAN", {"vlan"}}, walkOfAll()},
         .draw = drawSub, .drafts = 80, .hasVersion = false, .isDeletable = false},
        {.name = "l3-vlan-elb", .databaseName = "l3mc6_vlan_elb",
         .key = keyOfEntry({"oif", "vlan"}), .unless = {{"vr", "0"}, {"vrf", "254"}, {"vlan", "0"}},
         .needs = kVrfNeedsVr,
         .queries = {{"key", ofEntry({"oif", "vlan"})}, {"VLAN of an entry", ofEntry({"vlan"})}, {"entry", ofEntry()},
                     {"outgoing interface", {"oif"}}, walkOfAll()},
         .draw = drawVlan, .drafts = 80, .hasVersion = false},
    };
}

std::vector<TableFacts> bridgeDomainsAndTunnels() {
    const Given bdNeedsVr{{"vrf", "vr"}, {"bd", "vr"}};
    const QueryFacts interfaceOfVr{"VR and outgoing interface", {"vr", "oif"}};
    return {
        {.name = "l3-bd-tag-elb", .databaseName = "l3mc6_bd_tag_elb",
         .key = keyOfEntry({"bd", "oif", "tag", "inner-tag"}),
         .unless = {{"vr", "0"}, {"vrf", "254"}, {"tag", "0"}, {"inner-tag", "0"}}, .needs = bdNeedsVr,
         .queries = inBridgeDomain(ofEntry({"bd", "oif", "tag", "inner-tag"}), interfaceOfVr),
         .draw = drawTagged, .drafts = 80, .countsFast = true},
        {.name = "l3-bd-untag-elb", .databaseName = "l3mc6_bd_untag_elb",
         .key = keyOfEntry({"bd", "oif"}), .unless = kKeyDefaults, .needs = bdNeedsVr,
         .queries = inBridgeDomain(ofEntry({"bd", "oif"}), interfaceOfVr),
         .draw = drawUntagged, .drafts = 80, .countsFast = true},
        {.name = "l3-bd-tnl-elb", .databaseName = "l3mc6_bd_tnl_elb",
         .key = keyOfEntry({"bd", "tunnel", "underlay"}), .unless = {{"vr", "0"}, {"vrf", "254"}, {"underlay", "0"}},
         .needs = bdNeedsVr,
         .queries = inBridgeDomain(ofEntry({"bd", "tunnel", "underlay"}),
                                   {"tunnel in a bridge domain", {"vr", "bd", "tunnel", "underlay"}}),
         .draw = drawTunnel, .drafts = 80, .countsFast = true},
        {.name = "mvpn-tnl-elb", .databaseName = "l3mc6_mvpn_tnl_elb",
         .key = keyOfEntry(), .unless = kKeyDefaults, .needs = kVrfNeedsVr,
         .queries = {{"key", ofEntry()}, {"tunnel", {"vr", "vrf", "word2", "word3"}},
                     {"tunnel id", {"vr", "vrf", "word2", "word4"}},
                     {"VNI", {"vr", "vrf", "word1"}}, {"source process", {"vr", "vrf", "pid"}},
                     {"VR and VRF", {"vr", "vrf"}},
                     walkOfAll()},
         .draw = drawMvpnTunnel, .drafts = 40, .countsFast = true},
        {.name = "mvpn-tnl-subelb", .databaseName = "l3mc6_mvpn_tnl_subelb",
         .key = keyOfEntry({"oif", "sub-key"}), .unless = {{"vr", "0"}, {"vrf", "254"}, {"sub-key", "0"}},
         .needs = kVrfNeedsVr,
         .queries = {{"key", ofEntry({"oif", "sub-key"})}, {"entry", ofEntry()}, {"VR and VRF", {"vr", "vrf"}},
                     {"outgoing interface", {"oif"}}, {"layer-2 interface", {"l2if"}}, walkOfAll()},
         .draw = drawMvpnSub, .drafts = 80},
    };
}
// clang-format on

}  // namespace

const std::vector<TableFacts>& l3Facts() {
    static const std::vector<TableFacts> kTables = [] {
        std::vector<TableFacts> tables = forwardingAndInterfaces();
        const std::vector<TableFacts> others = bridgeDomainsAndTunnels();
        tables.insert(tables.end(), others.begin(), others.end());
        return tables;
    }();
    return kTables;
}

}  // namespace mcast6::ctl::test
