// l3-mfib: the layer-3 multicast forwarding entries.
#include <fmt/format.h>

#include "cli/options/command.h"
#include "cli/tables/l3.h"
#include "kernel/text.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L3Mc6MfibEntry;
constexpr uint32_t kHashConflict = 5;  // attr23, the error code

Query<E> byType(const char* name, uint32_t queryType, const Filters<E>& takes) {
    const auto open = [=](const E& wanted) {
        return newResource(
            [&](Mcast6DbRes* resource) { return MCAST6_DB_CreateL3MfibFwdIter(resource, queryType, &wanted); });
    };
    const auto count = [=](const E& wanted, uint32_t* matches) {
        return MCAST6_DB_GetL3MfibFwdMatchNum(&wanted, matches, queryType);
    };
    return {fmt::format("{} (query type {})", name, queryType), takes, open,
            releaseResource<MCAST6_DB_ReleaseL3MfibObject>, count};
}

uint32_t countConflicts(const E& wanted, uint32_t* count) {
    return MCAST6_DB_GetL3MfibHashConflictTotalNum(wanted.vrId, count);
}

Mcast6DbRes* openConflicts(const E& wanted) {
    return newResource(
        [&](Mcast6DbRes* resource) { return MCAST6_DB_CreateL3MfibIterByErrCode(wanted.vrId, resource); });
}

std::string nameOf(const E& entry) {
    return fmt::format("source {}, group {} in VR {}, VRF {}", addressText(entry.sourceAddr),
                       addressText(entry.groupAddr), entry.vrId, entry.vrfId);
}

const Filter<E>& kVr = entryFilters<E>().vr;
const Filter<E>& kVrf = entryFilters<E>().vrf;
const Filter<E>& kGroup = entryFilters<E>().group;
const Filter<E>& kSource = entryFilters<E>().source;
const Filter<E> kIif = interfaceFilter("iif", "Incoming interface", &E::inIfIndex);
const Filter<E> kRegif = interfaceFilter("regif", "Register interface", &E::regIfIndex);
const Filter<E> kConflicts =
    needing(&kVr, valueFilter("conflicts", "The entries with error code 5, a hash conflict (in VR 0 without --vr)",
                              &E::attr23, kHashConflict));

// clang-format off
const Table<E> kTable{
    .name = "l3-mfib",
    .holds = "layer-3 multicast forwarding entries",
    .operations = kernel::kL3Mc6Mfib,
    .entry = kRouteWords,
    .columns = {
        column("VR", "vrId", &E::vrId),
        column("VRF", "vrfId", &E::vrfId),
        column("SOURCE", "sourceAddr", &E::sourceAddr),
        column("GROUP", "groupAddr", &E::groupAddr),
        column("IIF", "inIfIndex", &E::inIfIndex, ColumnKind::kInterface),
        column("REGIF", "regIfIndex", &E::regIfIndex, ColumnKind::kInterface),
        column("VERSION", "smoothVersion", &E::smoothVersion),
        column("WRITTEN (UTC)", "timeStampCreate", &E::timeStampCreate, ColumnKind::kTime),
        column("CONFIRMED (UTC)", "timeStampSmooth", &E::timeStampSmooth, ColumnKind::kTime),
        column(nullptr, "appSrcPid", &E::appSrcPid),
    },
    .filters = {&kVr, &kVrf, &kGroup, &kSource, &kIif, &kRegif, &kConflicts},
    .queries = {
        byKey<E>({&kVr, &kVrf, &kGroup, &kSource}),
        {"error code", {&kVr, &kConflicts}, openConflicts, releaseResource<MCAST6_DB_ReleaseL3MfibObject>,
         countConflicts},
        byType("group and incoming interface", L3_MFIB_QUERY_GROUP_INTERFACE, {&kVr, &kVrf, &kGroup, &kIif}),
        byType("source and incoming interface", L3_MFIB_QUERY_SOURCE_INTERFACE, {&kVr, &kVrf, &kSource, &kIif}),
        byType("register interface and group", L3_MFIB_QUERY_REG_INTERFACE_GROUP, {&kVr, &kVrf, &kRegif, &kGroup}),
        byType("register interface and source", L3_MFIB_QUERY_REG_INTERFACE_SOURCE, {&kVr, &kVrf, &kRegif, &kSource}),
        byType("group", L3_MFIB_QUERY_GROUP, {&kVr, &kVrf, &kGroup}),
        byType("source", L3_MFIB_QUERY_SOURCE, {&kVr, &kVrf, &kSource}),
        byType("register interface", L3_MFIB_QUERY_REG_INTERFACE, {&kVr, &kVrf, &kRegif}),
        byType("incoming interface", L3_MFIB_QUERY_INTERFACE, {&kVr, &kVrf, &kIif}),
        {"incoming interface in any VR and VRF", {&kIif},
         [](const E& wanted) { return MCAST6_DB_CreateL3MfibIterByIfIndex(wanted.inIfIndex); },
         MCAST6_DB_ReleaseL3MfibIter},
        byType("VR and VRF", L3_MFIB_QUERY_VR_VRF, {&kVr, &kVrf}),
    },
    .layer = Layer::kLayer3,
    .vr = &kVr,
    .countAll = MCAST6_DB_GetL3MfibCnt,
    .nameOf = nameOf,
};
// clang-format on

// The columns of the table, without the times: a line of members has no room for them.
std::vector<const Column<E>*> columnsBesideMembers() {
    std::vector<const Column<E>*> columns;
    for (const Column<E>& shown : kTable.columns) {
        if (shown.head.title != nullptr && shown.head.kind != ColumnKind::kTime) columns.push_back(&shown);
    }
    return columns;
}

void showWithMembers(const Tool& tool, const Arguments& arguments) {
    const auto columns = columnsBesideMembers();
    const auto cells = [&](const E& entry) {
        std::vector<std::string> texts;
        const RouterLinks& links = linksOf(tool, kTable, entry);
        for (const Column<E>* shown : columns) texts.push_back(cellText(shown->head, shown->value(entry), links));
        return texts;
    };
    EntryTitles titles{{}, {"MEMBER", "TABLE", "WAY"}, kTable.operations.databaseName};
    for (const Column<E>* shown : columns) titles.entry.emplace_back(shown->head.title);
    L3Members members;
    addInterfaceMembers(tool, members);
    addBridgeDomainMembers(tool, members);
    addMvpnMembers(tool, members);
    showEntries<E>(tool, arguments, titles, {{kTable, cells, members}});
}

void showAsAsked(Tool& tool, const Arguments& arguments) {
    arguments.has("members") ? showWithMembers(tool, arguments) : showTable(tool, kTable, arguments);
}

}  // namespace

StoredTable l3MfibTable() {
    StoredTable table = storedTable(kTable);
    table.addCommands = nullptr;
    return table;
}

void addL3Mfib(Commands& commands) {
    std::vector<OptionSpec> options = filterOptions(kTable);
    options.push_back(flagOption("members", "The egress members of all kinds under each entry"));
    commands.push_back({"show", kTable.name, fmt::format("Show {}", kTable.holds), options, showAsAsked});
    addCountAndSmooth(commands, kTable);
    addDelete(commands, kTable);
}

}  // namespace mcast6::ctl
