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

Query<E> byType(const char* name, uint32_t queryType, std::vector<std::string> takes) {
    const auto open = [=](const E& wanted) {
        return newResource(
            [&](Mcast6DbRes* resource) { return MCAST6_DB_CreateL3MfibFwdIter(resource, queryType, &wanted); });
    };
    const auto count = [=](const E& wanted, uint32_t* matches) {
        return MCAST6_DB_GetL3MfibFwdMatchNum(&wanted, matches, queryType);
    };
    return {fmt::format("{} (query type {})", name, queryType), std::move(takes), open,
            releaseResource<MCAST6_DB_ReleaseL3MfibObject>, count};
}

Query<E> byErrorCode() {
    const auto open = [](const E& wanted) {
        return newResource(
            [&](Mcast6DbRes* resource) { return MCAST6_DB_CreateL3MfibIterByErrCode(wanted.vrId, resource); });
    };
    return {
        "error code",
        {"vr", "conflicts"},
        open,
        releaseResource<MCAST6_DB_ReleaseL3MfibObject>,
        [](const E& wanted, uint32_t* count) { return MCAST6_DB_GetL3MfibHashConflictTotalNum(wanted.vrId, count); }};
}

Filter<E> conflictFilter() {
    return {flagOption("conflicts", "The entries with error code 5, a hash conflict (in VR 0 without --vr)"),
            [](E& wanted, const std::string&, const LinkScope&) { wanted.attr23 = kHashConflict; },
            [](const E& record, const E& wanted) { return record.attr23 == wanted.attr23; }, false, "vr"};
}

// clang-format off
const Table<E> kTable{
    .name = "l3-mfib",
    .databaseName = "l3mc6_mfib",
    .holds = "layer-3 multicast forwarding entries",
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
    .filters = {
        numberFilter("vr", "Virtual router", &E::vrId),
        routingTableFilter("vrf", "VRF, the routing table's number, main or default (in VR 0 without --vr)", &E::vrfId, "vr"),
        addressFilter("group", "Group; any or :: for the entries of all groups", &E::groupAddr),
        addressFilter("source", "Source; any or :: for the entries of any source", &E::sourceAddr),
        interfaceFilter("iif", "Incoming interface", &E::inIfIndex),
        interfaceFilter("regif", "Register interface", &E::regIfIndex),
        conflictFilter(),
    },
    .queries = {
        {"key", {"vr", "vrf", "group", "source"}, nullptr, nullptr, nullptr, MCAST6_DB_ReadL3Mfib},
        byErrorCode(),
        byType("group and incoming interface", L3_MFIB_QUERY_GROUP_INTERFACE, {"vr", "vrf", "group", "iif"}),
        byType("source and incoming interface", L3_MFIB_QUERY_SOURCE_INTERFACE, {"vr", "vrf", "source", "iif"}),
        byType("register interface and group", L3_MFIB_QUERY_REG_INTERFACE_GROUP, {"vr", "vrf", "regif", "group"}),
        byType("register interface and source", L3_MFIB_QUERY_REG_INTERFACE_SOURCE, {"vr", "vrf", "regif", "source"}),
        byType("group", L3_MFIB_QUERY_GROUP, {"vr", "vrf", "group"}),
        byType("source", L3_MFIB_QUERY_SOURCE, {"vr", "vrf", "source"}),
        byType("register interface", L3_MFIB_QUERY_REG_INTERFACE, {"vr", "vrf", "regif"}),
        byType("incoming interface", L3_MFIB_QUERY_INTERFACE, {"vr", "vrf", "iif"}),
        {"incoming interface in any VR and VRF", {"iif"},
         [](const E& wanted) { return MCAST6_DB_CreateL3MfibIterByIfIndex(wanted.inIfIndex); },
         MCAST6_DB_ReleaseL3MfibIter},
        byType("VR and VRF", L3_MFIB_QUERY_VR_VRF, {"vr", "vrf"}),
        {"walk of the whole table", {},
         [](const E&) { return MCAST6_DB_CreateL3MfibIter(); }, MCAST6_DB_ReleaseL3MfibIter,
         [](const E&, uint32_t* count) { return MCAST6_DB_GetL3MfibCnt(count); }},
    },
    .step = MCAST6_DB_GetL3MfibEntry,
    .absentCodes = {MCAST6_DB_NO_SUCH_RECORD},
    .smoothVersion = &E::smoothVersion,
    .remove = MCAST6_DB_DeleteL3Mfib,
    .layer = Layer::kLayer3,
    .router = &E::vrId,
};
// clang-format on

void deleteEntry(Tool& tool, const Arguments& arguments) {
    E key{};
    key.vrId = arguments.number("vr", 0);
    key.vrfId = arguments.routingTable("vrf", kMainTable);
    key.groupAddr = readAddress("group", arguments.text("group"));
    key.sourceAddr = readAddress("source", arguments.text("source"));
    deleteRecord(tool, kTable, key,
                 fmt::format("source {}, group {} in VR {}, VRF {}", addressText(key.sourceAddr),
                             addressText(key.groupAddr), key.vrId, key.vrfId));
}

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
    EntryTitles titles{{}, {"MEMBER", "TABLE", "WAY"}, kTable.databaseName};
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
    commands.push_back(
        {"delete",
         kTable.name,
         "Delete one forwarding entry",
         {required(valueOption("group", "ADDRESS", "Group; any or ::")),
          required(valueOption("source", "ADDRESS", "Source; any or ::")),
          valueOption("vr", "N", "Virtual router, 0 unless given"), valueOption("vrf", "N", "VRF, main unless given")},
         deleteEntry});
}

}  // namespace mcast6::ctl
