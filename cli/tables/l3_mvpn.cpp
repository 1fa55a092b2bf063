// mvpn-tnl-elb and mvpn-tnl-subelb: the MVPN tunnel members of layer-3 forwarding entries, and those that are bound to an
// interface. One record serves both tables. The library names tunnelWord1 a VNI, tunnelWord2 with tunnelWord3 a tunnel and
// tunnelWord2 with the low byte of tunnelWord4 a tunnel id; the tool goes no further.
#include <fmt/format.h>

#include "cli/tables/l3.h"
#include "mcast6_db/l3mc6_mvpn_tnl_elb.h"
#include "mcast6_db/l3mc6_mvpn_tnl_subelb.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L3McMvpnTnlElbEntry;
constexpr uint32_t kLowByte = 0xFF;

std::vector<Column<E>> withRest(const std::vector<Column<E>>& columns) {
    return joined(withStamps(columns, &E::smoothVersion),
                  {column(nullptr, "serviceStatus", &E::serviceStatus), column(nullptr, "appSrcPid", &E::appSrcPid)});
}

Filter<E> lowByteFilter() {
    Filter<E> filter = numberFilter("word4", "Low byte of tunnelWord4", &E::tunnelWord4, kLowByte);
    filter.matches = [](const E& record, const E& wanted) {
        return (record.tunnelWord4 & kLowByte) == wanted.tunnelWord4;
    };
    return filter;
}

uint32_t countOfTunnel(const E& wanted, uint32_t* count) {
    const L3McMvpnVsgKey key{{wanted.vrId, wanted.vrfId, wanted.tunnelWord2, wanted.tunnelWord3}};
    return MCAST6_DB_GetL3McBdMvpnTnlElbCountByTnlVsg(&key, count);
}

Mcast6DbRes* openTunnel(const E& wanted) {
    return MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlVsg(wanted.vrId, wanted.vrfId, wanted.tunnelWord2,
                                                      wanted.tunnelWord3);
}

Mcast6DbRes* openTunnelId(const E& wanted) {
    return MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlId(wanted.vrId, wanted.vrfId, wanted.tunnelWord2,
                                                     static_cast<uint8_t>(wanted.tunnelWord4));
}

Mcast6DbRes* openVni(const E& wanted) {
    return MCAST6_DB_CreateL3McMvpnTnlElbIterByVniId(wanted.vrId, wanted.vrfId, wanted.tunnelWord1);
}

Mcast6DbRes* openMembers(const E& wanted) {
    const auto key = keyOf<L3McMvpnElbKey>(wanted);
    return MCAST6_DB_CreateL3McMvpnTnlSubElbCreateVSGIterator(&key);
}

// clang-format off
const Table<E> kTunnels{
    .name = "mvpn-tnl-elb",
    .databaseName = "l3mc6_mvpn_tnl_elb",
    .holds = "MVPN tunnel members of layer-3 forwarding entries",
    .columns = withRest(entryColumns<E>({
        column("WORD 1", "tunnelWord1", &E::tunnelWord1),
        column("WORD 2", "tunnelWord2", &E::tunnelWord2),
        column("WORD 3", "tunnelWord3", &E::tunnelWord3),
        column("WORD 4", "tunnelWord4", &E::tunnelWord4),
        column("WORD 5", "tunnelWord5", &E::tunnelWord5),
        column("WORD 6", "tunnelWord6", &E::tunnelWord6),
        column("WORD 7", "tunnelWord7", &E::tunnelWord7),
        column("WORD 8", "tunnelWord8", &E::tunnelWord8),
        column("WORD 9", "tunnelWord9", &E::tunnelWord9),
    })),
    .filters = entryFilters<E>({
        numberFilter("word1", "tunnelWord1, a VNI", &E::tunnelWord1),
        numberFilter("word2", "tunnelWord2", &E::tunnelWord2),
        numberFilter("word3", "tunnelWord3", &E::tunnelWord3),
        lowByteFilter(),
        numberFilter("pid", "Process that wrote the member", &E::appSrcPid),
    }),
    .queries = {
        byKey<E>(ofEntry(), MCAST6_DB_ReadL3McMvpnTnlElb),
        {"tunnel", {"vr", "vrf", "word2", "word3"}, openTunnel, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator, countOfTunnel},
        {"tunnel id", {"vr", "vrf", "word2", "word4"}, openTunnelId, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        {"VNI", {"vr", "vrf", "word1"}, openVni, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        {"source process", {"vr", "vrf", "pid"},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlElbIterBySrcPid(&wanted); },
         MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        {"VR and VRF", {"vr", "vrf"},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(wanted.vrId, wanted.vrfId); },
         MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        wholeTable<E>(MCAST6_DB_CreateL3McMvpnTnlElbAllIter, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator),
    },
    .step = MCAST6_DB_GetL3McMvpnTnlElbEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &E::smoothVersion,
    .remove = MCAST6_DB_DeleteL3McMvpnTnlElb,
    .layer = Layer::kLayer3,
    .router = &E::vrId,
    .countFast = MCAST6_DB_GetL3McMvpnTnlElbCountFast,
};

const Table<E> kSubs{
    .name = "mvpn-tnl-subelb",
    .databaseName = "l3mc6_mvpn_tnl_subelb",
    .holds = "MVPN tunnel members of layer-3 forwarding entries that are bound to an interface",
    .columns = withRest(entryColumns<E>({
        column("OIF", "outIfIndex", &E::outIfIndex, ColumnKind::kInterface),
        column("SUB KEY", "subKeyWord", &E::subKeyWord),
        column("L2 IF", "l2IfIndex", &E::l2IfIndex, ColumnKind::kInterface),
        column("ERROR", "errCode", &E::errCode),
    })),
    .filters = entryFilters<E>({
        interfaceFilter("oif", "Outgoing interface", &E::outIfIndex),
        numberFilter("sub-key", "subKeyWord", &E::subKeyWord),
        interfaceFilter("l2if", "Layer-2 interface", &E::l2IfIndex),
    }),
    .queries = {
        byKey<E>(ofEntry({"oif", "sub-key"}), MCAST6_DB_ReadL3McMvpnTnlSubElb),
        {kMembersOfEntry, ofEntry(), openMembers, MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
        {"VR and VRF", {"vr", "vrf"},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByVrVrf(wanted.vrId, wanted.vrfId); },
         MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
        {"outgoing interface", {"oif"},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(wanted.outIfIndex); },
         MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
        {"layer-2 interface", {"l2if"},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByL2IfIndex(wanted.l2IfIndex); },
         MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
        wholeTable<E>(MCAST6_DB_CreateL3McMvpnTnlSubElbAllIter, MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator),
    },
    .step = MCAST6_DB_GetNextL3McMvpnTnlSubElb,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &E::smoothVersion,
    .remove = MCAST6_DB_DeleteL3McMvpnTnlSubElb,
    .layer = Layer::kLayer3,
    .router = &E::vrId,
};
// clang-format on

}  // namespace

StoredTables mvpnTables() { return {storedTable(kTunnels), storedTable(kSubs)}; }

void addMvpnMembers(const Tool& tool, L3Members& members) {
    using Entry = L3Mc6MfibEntry;
    using Way = std::vector<std::string>;
    const auto tunnel = [](const E& member) -> Way {
        const std::string way = fmt::format("MVPN tunnel {} {}", member.tunnelWord2, member.tunnelWord3);
        return {member.tunnelWord1 == 0 ? way : fmt::format("{}, VNI {}", way, member.tunnelWord1)};
    };
    members.push_back(
        memberTable<Entry, E>(tool, kTunnels, membersByQuery<Entry, E>(kTunnels, nameEntry), {nullptr, tunnel}));
    const auto sub = [&tool](const E& member) -> Way {
        const ColumnHead head{"", "l2IfIndex", ColumnKind::kInterface};
        const RouterLinks& links = linksOf(tool, kSubs, member);
        return {fmt::format("MVPN tunnel, layer-2 interface {}", cellText(head, uint64_t{member.l2IfIndex}, links))};
    };
    members.push_back(
        memberTable<Entry, E>(tool, kSubs, membersByQuery<Entry, E>(kSubs, nameEntry), {&E::outIfIndex, sub}));
}

}  // namespace mcast6::ctl
