// mvpn-tnl-elb and mvpn-tnl-subelb: the MVPN tunnel members of layer-3 forwarding entries, and those that are bound to
// an interface. One record serves both tables. The library names tunnelWord1 a VNI, tunnelWord2 with tunnelWord3 a
// tunnel and tunnelWord2 with the low byte of tunnelWord4 a tunnel id; the tool goes no further.
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

const EntryFilters<E>& kOf = entryFilters<E>();
const Filter<E> kWord1 = numberFilter("word1", "tunnelWord1, a VNI", &E::tunnelWord1);
const Filter<E> kWord2 = numberFilter("word2", "tunnelWord2", &E::tunnelWord2);
const Filter<E> kWord3 = numberFilter("word3", "tunnelWord3", &E::tunnelWord3);
const Filter<E> kWord4 = lowByteFilter();
const Filter<E> kPid = numberFilter("pid", "Process that wrote the member", &E::appSrcPid);
const Filter<E> kOif = interfaceFilter("oif", "Outgoing interface", &E::outIfIndex);
const Filter<E> kSubKey = numberFilter("sub-key", "subKeyWord", &E::subKeyWord);
const Filter<E> kL2If = interfaceFilter("l2if", "Layer-2 interface", &E::l2IfIndex);

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
    .holds = "MVPN tunnel members of layer-3 forwarding entries",
    .operations = {
        .databaseName = "l3mc6_mvpn_tnl_elb",
        .read = MCAST6_DB_ReadL3McMvpnTnlElb,
        .absentCode = MCAST6_DB_NO_RECORD,
        .write = nullptr,
        .restamp = nullptr,
        .remove = MCAST6_DB_DeleteL3McMvpnTnlElb,
        .merge = nullptr,
        .smoothVersion = &E::smoothVersion,
        .appSrcPid = &E::appSrcPid,
        .vrId = &E::vrId,
        .openAll = MCAST6_DB_CreateL3McMvpnTnlElbAllIter,
        .step = MCAST6_DB_GetL3McMvpnTnlElbEntry,
        .release = MCAST6_DB_ReleaseL3McMvpnTnlElbIterator,
    },
    .entry = memberOfRoute<E>(),
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
    .filters = kOf.with({&kWord1, &kWord2, &kWord3, &kWord4, &kPid}),
    .queries = {
        byKeyOfEntry<E>(kOf.with()),
        {"tunnel", {&kOf.vr, &kOf.vrf, &kWord2, &kWord3}, openTunnel, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator,
         countOfTunnel},
        {"tunnel id", {&kOf.vr, &kOf.vrf, &kWord2, &kWord4}, openTunnelId, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        {"VNI", {&kOf.vr, &kOf.vrf, &kWord1}, openVni, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        {"source process", {&kOf.vr, &kOf.vrf, &kPid},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlElbIterBySrcPid(&wanted); },
         MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
        {"VR and VRF", {&kOf.vr, &kOf.vrf},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(wanted.vrId, wanted.vrfId); },
         MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
    },
    .layer = Layer::kLayer3,
    .vr = &kOf.vr,
    .countFast = MCAST6_DB_GetL3McMvpnTnlElbCountFast,
};

const Table<E> kSubs{
    .name = "mvpn-tnl-subelb",
    .holds = "MVPN tunnel members of layer-3 forwarding entries that are bound to an interface",
    .operations = {
        .databaseName = "l3mc6_mvpn_tnl_subelb",
        .read = MCAST6_DB_ReadL3McMvpnTnlSubElb,
        .absentCode = MCAST6_DB_NO_RECORD,
        .write = nullptr,
        .restamp = nullptr,
        .remove = MCAST6_DB_DeleteL3McMvpnTnlSubElb,
        .merge = nullptr,
        .smoothVersion = &E::smoothVersion,
        .appSrcPid = &E::appSrcPid,
        .vrId = &E::vrId,
        .openAll = MCAST6_DB_CreateL3McMvpnTnlSubElbAllIter,
        .step = MCAST6_DB_GetNextL3McMvpnTnlSubElb,
        .release = MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator,
    },
    .entry = memberOfRoute<E>(),
    .columns = withRest(entryColumns<E>({
        column("OIF", "outIfIndex", &E::outIfIndex, ColumnKind::kInterface),
        column("SUB KEY", "subKeyWord", &E::subKeyWord),
        column("L2 IF", "l2IfIndex", &E::l2IfIndex, ColumnKind::kInterface),
        column("ERROR", "errCode", &E::errCode),
    })),
    .filters = kOf.with({&kOif, &kSubKey, &kL2If}),
    .queries = {
        byKey<E>(kOf.with({&kOif, &kSubKey})),
        byEntry<E>(kOf.with(), openMembers, MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator),
        {"VR and VRF", {&kOf.vr, &kOf.vrf},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByVrVrf(wanted.vrId, wanted.vrfId); },
         MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
        {"outgoing interface", {&kOif},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(wanted.outIfIndex); },
         MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
        {"layer-2 interface", {&kL2If},
         [](const E& wanted) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByL2IfIndex(wanted.l2IfIndex); },
         MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
    },
    .layer = Layer::kLayer3,
    .vr = &kOf.vr,
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
    members.push_back(memberTable<Entry, E>(tool, kTunnels, membersByQuery(kRouteWords, kTunnels), {nullptr, tunnel}));
    const auto sub = [&tool](const E& member) -> Way {
        const ColumnHead head{"", "l2IfIndex", ColumnKind::kInterface};
        const RouterLinks& links = linksOf(tool, kSubs, member);
        return {fmt::format("MVPN tunnel, layer-2 interface {}", cellText(head, uint64_t{member.l2IfIndex}, links))};
    };
    members.push_back(memberTable<Entry, E>(tool, kSubs, membersByQuery(kRouteWords, kSubs), {&E::outIfIndex, sub}));
}

}  // namespace mcast6::ctl
