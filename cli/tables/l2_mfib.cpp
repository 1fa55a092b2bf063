// l2-bd-mfib and l2-vlan-mfib: the layer-2 multicast forwarding entries of bridge domains and of VLANs; l2-mfib: both.
#include <fmt/format.h>

#include "cli/tables/l2.h"
#include "mcast6_db/l2mc6_bd_mfib.h"
#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L2Mc6MfibEntry;
constexpr uint32_t kHashConflict = 5;  // hppErrCode

// The operations of one of the two tables; all else is the same.
struct Operations {
    const char* name;
    const char* databaseName;
    const char* holds;
    uint32_t E::*router;                   // of Table
    std::vector<Column<E>> domain;         // VR, and bridge domain or VLAN
    std::vector<Filter<E>> domainFilters;  // the second names the domain
    uint32_t (*read)(E*);
    uint32_t (*step)(Mcast6DbRes*, E*);
    uint32_t (*remove)(const E*);
    Mcast6DbRes* (*openAll)();
    Mcast6DbRes* (*openSorted)();
    Mcast6DbRes* (*openGroup)(uint32_t vrId, uint32_t domainId, const Mcast6Ipv6Addr* group);
    Mcast6DbRes* (*openDomain)(uint32_t vrId, uint32_t domainId);
    Mcast6DbRes* (*openPid)(uint32_t appSrcPid);  // null: the table has no such index
    uint32_t (*openConflicts)(Mcast6DbRes*);
    void (*release)(Mcast6DbRes*);
    void (*releaseConflicts)(Mcast6DbRes*);
    uint32_t (*countAll)(uint32_t*);
    uint32_t (*countDomain)(uint32_t vrId, uint32_t domainId);
    uint32_t (*countConflicts)(uint32_t*);
};

std::vector<Column<E>> columnsOf(const Operations& own) {
    std::vector<Column<E>> columns = own.domain;
    columns.push_back(column("SOURCE", "sourceAddr", &E::sourceAddr));
    columns.push_back(column("GROUP", "groupAddr", &E::groupAddr));
    columns.push_back(column("ERROR", "hppErrCode", &E::hppErrCode));
    columns = withStamps(std::move(columns), &E::smoothVersion);
    columns.push_back(column(nullptr, "appSrcPid", &E::appSrcPid));
    columns.push_back(column(nullptr, "vrfId", &E::vrfId));
    return columns;
}

std::vector<Filter<E>> filtersOf(const Operations& own) {
    std::vector<Filter<E>> filters = own.domainFilters;
    filters.push_back(addressFilter("group", "Group", &E::groupAddr));
    filters.push_back(addressFilter("source", "Source; any or :: for the entries of any source", &E::sourceAddr));
    filters.push_back(numberFilter("pid", "Process that wrote the entry", &E::appSrcPid));
    filters.push_back({flagOption("conflicts", "The entries with error code 5, a hash conflict"),
                       [](E& wanted, const std::string&, const LinkScope&) { wanted.hppErrCode = kHashConflict; },
                       [](const E& record, const E& wanted) { return record.hppErrCode == wanted.hppErrCode; }});
    filters.push_back(askFor<E>("sorted", "In the order of bridge domains or VLANs"));
    return filters;
}

std::vector<Query<E>> queriesOf(const Operations& own) {
    const std::string domain = own.domainFilters.back().option.name;
    const auto openConflicts = [=](const E&) { return newResource(own.openConflicts); };
    const auto countDomain = [=](const E& wanted, uint32_t* count) -> uint32_t {
        *count = own.countDomain(wanted.vrId, wanted.domainId);
        return MCAST6_DB_SUCCESS;
    };
    std::vector<Query<E>> queries;
    queries.push_back(byKey<E>({"vr", domain, "group", "source"}, own.read));
    queries.push_back({"sorted walk", {"sorted"}, [=](const E&) { return own.openSorted(); }, own.release});
    queries.push_back({"group",
                       {"vr", domain, "group"},
                       [=](const E& wanted) { return own.openGroup(wanted.vrId, wanted.domainId, &wanted.groupAddr); },
                       own.release});
    queries.push_back(
        {"error code", {"conflicts"}, openConflicts, own.releaseConflicts, [=](const E&, uint32_t* count) {
             return own.countConflicts(count);
         }});
    queries.push_back({"VR and domain",
                       {"vr", domain},
                       [=](const E& wanted) { return own.openDomain(wanted.vrId, wanted.domainId); },
                       own.release,
                       countDomain});
    if (own.openPid != nullptr) {
        queries.push_back(
            {"source process", {"pid"}, [=](const E& wanted) { return own.openPid(wanted.appSrcPid); }, own.release});
    }
    queries.push_back(wholeTable<E>(own.openAll, own.release, own.countAll));
    return queries;
}

Table<E> tableOf(const Operations& own) {
    return {.name = own.name,
            .databaseName = own.databaseName,
            .holds = own.holds,
            .columns = columnsOf(own),
            .filters = filtersOf(own),
            .queries = queriesOf(own),
            .step = own.step,
            .absentCodes = {MCAST6_DB_NO_RECORD},
            .smoothVersion = &E::smoothVersion,
            .remove = own.remove,
            .layer = Layer::kLayer2,
            .router = own.router};
}

// clang-format off
const Table<E> kBridgeDomains = tableOf({
    .name = "l2-bd-mfib",
    .databaseName = "l2mc6_bd_mfib",
    .holds = "layer-2 forwarding entries of bridge domains",
    .router = &E::vrId,
    .domain = {column("VR", "vrId", &E::vrId), column("BD", "bdId", &E::domainId, ColumnKind::kBridge)},
    .domainFilters = {numberFilter("vr", "Virtual router", &E::vrId),
                      needing("vr", interfaceFilter("bd", "Bridge domain, or the bridge (in VR 0 without --vr)", &E::domainId))},
    .read = MCAST6_DB_ReadL2BdMfib6,
    .step = MCAST6_DB_GetL2BdMfib6Entry,
    .remove = MCAST6_DB_DeleteL2BdMfib6,
    .openAll = MCAST6_DB_CreateL2BdMfib6Iter,
    .openSorted = MCAST6_DB_l2BdMfib6_ScanGetBdIterSorted,
    .openGroup = MCAST6_DB_Createl2BdMfib6IterByGrpAddr,
    .openDomain = MCAST6_DB_CreateL2BdMfib6IterByBdId,
    .openPid = MCAST6_DB_CreateL2BdMfib6IterBySrcPid,
    .openConflicts = MCAST6_DB_CreateL2BdMfib6IterByErrCode,
    .release = MCAST6_DB_ReleaseL2BdMfib6Iterator,
    .releaseConflicts = releaseResource<MCAST6_DB_ReleaseL2BdMfib6Object>,
    .countAll = MCAST6_DB_GetL2BdMfib6Count,
    .countDomain = MCAST6_DB_L2BdMfib6CountByBdId,
    .countConflicts = MCAST6_DB_GetL2BdMfib6HashConflictTotalNum,
});

const Table<E> kVlans = tableOf({
    .name = "l2-vlan-mfib",
    .databaseName = "l2mc6_vlan_mfib",
    .holds = "layer-2 forwarding entries of VLANs",
    .router = nullptr,
    .domain = {column("VR", "vrId", &E::vrId, ColumnKind::kBridge), column("VLAN", "vlanId", &E::domainId)},
    .domainFilters = {interfaceFilter("vr", "Virtual router, or the bridge", &E::vrId),
                      numberFilter("vlan", "VLAN", &E::domainId)},
    .read = MCAST6_DB_ReadVlanMfib6,
    .step = MCAST6_DB_GetVlanMfib6Entry,
    .remove = MCAST6_DB_DeleteVlanMfib6,
    .openAll = MCAST6_DB_CreateVlanMfib6Iter,
    .openSorted = MCAST6_DB_VlanMfib6_ScanGetVlanIterSorted,
    .openGroup = MCAST6_DB_CreateVlanMfib6IterByGrpAddr,
    .openDomain = MCAST6_DB_CreateVlanMfib6IterByVlanId,
    .openPid = nullptr,
    .openConflicts = MCAST6_DB_CreateVlanMfib6IterByErrCode,
    .release = MCAST6_DB_ReleaseVlanMfib6Iterator,
    .releaseConflicts = releaseResource<MCAST6_DB_ReleaseL2Mfib6Object>,
    .countAll = MCAST6_DB_GetVlanMfib6Count,
    .countDomain = MCAST6_DB_VlanMfib6CountByVlanId,
    .countConflicts = MCAST6_DB_GetL2Mfib6HashConflictTotalNum,
});
// clang-format on

// Those tables that have all filters that were given: with --bd there is no question of VLANs.
std::vector<const Table<E>*> tablesOf(const Arguments& arguments) {
    std::vector<const Table<E>*> tables;
    if (!arguments.has("vlan")) tables.push_back(&kBridgeDomains);
    if (!arguments.has("bd")) tables.push_back(&kVlans);
    return tables;
}

void nameEntry(const E& entry, L2Elb6Entry& member) {
    member.vrId = entry.vrId;
    member.bdId = entry.domainId;
    member.groupAddr = entry.groupAddr;
    member.sourceAddr = entry.sourceAddr;
}

std::vector<MemberTable<E>> membersOf(const Tool& tool, const EgressTables& tables) {
    std::vector<MemberTable<E>> members;
    for (const Table<L2Elb6Entry>* table : tables) {
        const auto way = [table](const L2Elb6Entry& member) -> std::vector<std::string> {
            return {memberWay(*table, member), memberFlagsText(member.pathFlags)};
        };
        members.push_back(memberTable<E, L2Elb6Entry>(tool, *table, membersByQuery(*table, nameEntry),
                                                      {&L2Elb6Entry::outIfIndex, way}));
    }
    return members;
}

EntrySource<E> sourceOf(const Tool& tool, const Table<E>& table) {
    const bool isVlan = &table == &kVlans;
    const auto cells = [=, &tool, &table](const E& entry) -> std::vector<std::string> {
        const RouterLinks& links = linksOf(tool, table, entry);
        const auto number = [&links](uint32_t id, bool isBridge) {
            const ColumnHead head{"", "id", isBridge ? ColumnKind::kBridge : ColumnKind::kPlain};
            return cellText(head, uint64_t{id}, links);
        };
        return {number(entry.vrId, isVlan),
                isVlan ? "-" : number(entry.domainId, true),
                isVlan ? number(entry.domainId, false) : "-",
                addressText(entry.sourceAddr),
                addressText(entry.groupAddr),
                std::to_string(entry.smoothVersion)};
    };
    return {table, cells, membersOf(tool, isVlan ? vlanMembers() : bridgeDomainMembers())};
}

void showBoth(Tool& tool, const Arguments& arguments) {
    EntryTitles titles{{"VR", "BD", "VLAN", "SOURCE", "GROUP", "VERSION"}, {}};
    if (arguments.has("members")) titles.member = {"MEMBER", "TABLE", "WAY", "FLAGS"};
    std::vector<EntrySource<E>> sources;
    for (const Table<E>* table : tablesOf(arguments)) sources.push_back(sourceOf(tool, *table));
    showEntries(tool, arguments, titles, sources);
}

void countBoth(Tool& tool, const Arguments& arguments) {
    uint64_t count = 0;
    for (const Table<E>* table : tablesOf(arguments)) count += countRecords(*table, select(tool, *table, arguments));
    if (!tool.settings.json) return printLine(std::to_string(count));
    JsonWriter json;
    json.beginObject().member("table", "l2mc6_bd_mfib, l2mc6_vlan_mfib").member("count", count).endObject();
    printLine(json.take());
}

}  // namespace

StoredTables l2MfibTables() { return {storedTable(kBridgeDomains), storedTable(kVlans)}; }

void addL2Mfib(Commands& commands) {
    std::vector<OptionSpec> filters = filterOptions(kVlans);
    filters.push_back(filterNamed(kBridgeDomains, "bd").option);
    commands.push_back(
        {"count", "l2-mfib", "Count layer-2 forwarding entries of bridge domains and VLANs", filters, countBoth});
    filters.push_back(flagOption("members", "The egress members under each entry"));
    commands.push_back(
        {"show", "l2-mfib", "Show layer-2 forwarding entries of bridge domains and VLANs", filters, showBoth});
}

}  // namespace mcast6::ctl
