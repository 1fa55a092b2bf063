// l3-mfib: the layer-3 multicast forwarding entries.
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/table.h"
#include "cli/table_commands.h"
#include "cli/text.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L3Mc6MfibEntry;

void releaseResource(Mcast6DbRes* resource) {
    if (resource == nullptr) return;
    MCAST6_DB_ReleaseL3MfibObject(resource->object);
    delete resource;
}

Query<E> byType(const char* name, uint32_t queryType, std::vector<std::string> takes) {
    const auto open = [=](const E& wanted) -> Mcast6DbRes* {
        auto resource = std::make_unique<Mcast6DbRes>();
        const uint32_t code = MCAST6_DB_CreateL3MfibFwdIter(resource.get(), queryType, &wanted);
        return code == MCAST6_DB_SUCCESS ? resource.release() : nullptr;
    };
    const auto count = [=](const E& wanted, uint32_t* matches) {
        return MCAST6_DB_GetL3MfibFwdMatchNum(&wanted, matches, queryType);
    };
    return {fmt::format("{} (query type {})", name, queryType), std::move(takes), open, releaseResource, count};
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
    },
    .queries = {
        {"key", {"vr", "vrf", "group", "source"}, nullptr, nullptr, nullptr, MCAST6_DB_ReadL3Mfib},
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

}  // namespace

void addL3Mfib(Commands& commands) {
    addTableCommands(commands, kTable);
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
