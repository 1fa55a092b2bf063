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

const Filter<E> kVr = numberFilter("vr", "Virtual router", &E::vrId);
const Filter<E> kBd =
    needing(&kVr, interfaceFilter("bd", "Bridge domain, or the bridge (in VR 0 without --vr)", &E::domainId));
const Filter<E> kBridge = interfaceFilter("vr", "Virtual router, or the bridge", &E::vrId);
const Filter<E> kVlan = numberFilter("vlan", "VLAN", &E::domainId);
const Filter<E> kGroup = addressFilter("group", "Group", &E::groupAddr);
const Filter<E> kSource = addressFilter("source", "Source; any or :: for the entries of any source", &E::sourceAddr);
const Filter<E> kPid = numberFilter("pid", "Process that wrote the entry", &E::appSrcPid);
const Filter<E> kConflicts =
    valueFilter("conflicts", "The entries with error code 5, a hash conflict", &E::hppErrCode, kHashConflict);
const Filter<E> kSorted = askFor<E>("sorted", "In the order of bridge domains or VLANs");

EntryWords<E> wordsOf(EntryKind kind) { return {kind, false, &E::vrId, &E::domainId, &E::groupAddr, &E::sourceAddr}; }

// What one of the two tables has of its own.
struct Own {
    const char* name;
    const char* holds;
    kernel::TableOperations<E> operations;
    EntryKind kind;
    std::vector<Column<E>> domainColumns;  // VR, and bridge domain or VLAN
    const Filter<E>* vr;
    const Filter<E>* domain;
    Mcast6DbRes* (*openSorted)();
    Mcast6DbRes* (*openGroup)(uint32_t vrId, uint32_t domainId, const Mcast6Ipv6Addr* group);
    Mcast6DbRes* (*openDomain)(uint32_t vrId, uint32_t domainId);
    Mcast6DbRes* (*openPid)(uint32_t appSrcPid);  // null: the table has no such index
    uint32_t (*openConflicts)(Mcast6DbRes*);
    void (*releaseConflicts)(Mcast6DbRes*);
    uint32_t (*countAll)(uint32_t*);
    uint32_t (*countDomain)(uint32_t vrId, uint32_t domainId);
    uint32_t (*countConflicts)(uint32_t*);
};

std::vector<Column<E>> columnsOf(const Own& own) {
    std::vector<Column<E>> columns = own.domainColumns;
    columns.push_back(column("SOURCE", "sourceAddr", &E::sourceAddr));
    columns.push_back(column("GROUP", "groupAddr", &E::groupAddr));
    columns.push_back(column("ERROR", "hppErrCode", &E::hppErrCode));
    columns = withStamps(std::move(columns), &E::smoothVersion);
    columns.push_back(column(nullptr, "appSrcPid", &E::appSrcPid));
    columns.push_back(column(nullptr, "vrfId", &E::vrfId));
    return columns;
}

std::vector<Query<E>> queriesOf(const Own& own) {
    const auto release = own.operations.release;
    const auto openConflicts = [=](const E&) { return newResource(own.openConflicts); };
    const auto countDomain = [=](const E& wanted, uint32_t* count) -> uint32_t {
        *count = own.countDomain(wanted.vrId, wanted.domainId);
        return MCAST6_DB_SUCCESS;
    };
    std::vector<Query<E>> queries;
    queries.push_back(byKey<E>({own.vr, own.domain, &kGroup, &kSource}));
    queries.push_back({"sorted walk", {&kSorted}, [=](const E&) { return own.openSorted(); }, release});
    queries.push_back({"group",
                       {own.vr, own.domain, &kGroup},
                       [=](const E& wanted) { return own.openGroup(wanted.vrId, wanted.domainId, &wanted.groupAddr); },
                       release});
    queries.push_back(
        {"error code", {&kConflicts}, openConflicts, own.releaseConflicts, [=](const E&, uint32_t* count) {
             return own.countConflicts(count);
         }});
    queries.push_back({"VR and domain",
                       {own.vr, own.domain},
                       [=](const E& wanted) { return own.openDomain(wanted.vrId, wanted.domainId); },
                       release,
                       countDomain});
    if (own.openPid != nullptr) {
        queries.push_back(
            {"source process", {&kPid}, [=](const E& wanted) { return own.openPid(wanted.appSrcPid); }, release});
    }
    return queries;
}

Table<E> tableOf(const Own& own) {
    return {.name = own.name,
            .holds = own.holds,
            .operations = own.operations,
            .entry = wordsOf(own.kind),
            .columns = columnsOf(own),
            .filters = {own.vr, own.domain, &kGroup, &kSource, &kPid, &kConflicts, &kSorted},
            .queries = queriesOf(own),
            .layer = Layer::kLayer2,
            .vr = own.vr,
            .vrIsBridge = own.kind == EntryKind::kVlan,
            .countAll = own.countAll};
}

// clang-format off
const Table<E> kBridgeDomains = tableOf({
    .name = "l2-bd-mfib",
    .holds = "layer-2 forwarding entries of bridge domains",
    .operations = kernel::kL2Mc6BdMfib,
    .kind = EntryKind::kBridgeDomain,
    .domainColumns = {column("VR", "vrId", &E::vrId), column("BD", "bdId", &E::domainId, ColumnKind::kBridge)},
    .vr = &kVr,
    .domain = &kBd,
    .openSorted = MCAST6_DB_l2BdMfib6_ScanGetBdIterSorted,
    .openGroup = MCAST6_DB_Createl2BdMfib6IterByGrpAddr,
    .openDomain = MCAST6_DB_CreateL2BdMfib6IterByBdId,
    .openPid = MCAST6_DB_CreateL2BdMfib6IterBySrcPid,
    .openConflicts = MCAST6_DB_CreateL2BdMfib6IterByErrCode,
    .releaseConflicts = releaseResource<MCAST6_DB_ReleaseL2BdMfib6Object>,
    .countAll = MCAST6_DB_GetL2BdMfib6Count,
    .countDomain = MCAST6_DB_L2BdMfib6CountByBdId,
    .countConflicts = MCAST6_DB_GetL2BdMfib6HashConflictTotalNum,
});

const Table<E> kVlans = tableOf({
    .name = "l2-vlan-mfib",
    .holds = "layer-2 forwarding entries of VLANs",
    .operations = kernel::kL2Mc6VlanMfib,
    .kind = EntryKind::kVlan,
    .domainColumns = {column("VR", "vrId", &E::vrId, ColumnKind::kBridge), column("VLAN", "vlanId", &E::domainId)},
    .vr = &kBridge,
    .domain = &kVlan,
    .openSorted = MCAST6_DB_VlanMfib6_ScanGetVlanIterSorted,
    .openGroup = MCAST6_DB_CreateVlanMfib6IterByGrpAddr,
    .openDomain = MCAST6_DB_CreateVlanMfib6IterByVlanId,
    .openPid = nullptr,
    .openConflicts = MCAST6_DB_CreateVlanMfib6IterByErrCode,
    .releaseConflicts = releaseResource<MCAST6_DB_ReleaseL2Mfib6Object>,
    .countAll = MCAST6_DB_GetVlanMfib6Count,
    .countDomain = MCAST6_DB_VlanMfib6CountByVlanId,
    .countConflicts = MCAST6_DB_GetL2Mfib6HashConflictTotalNum,
});
// clang-format on

// Those tables that have all filters that were given: with --bd there is no question of VLANs. A name in --vr is that
// of a bridge, which entries of VLANs have as their VR.
std::vector<const Table<E>*> tablesOf(const Arguments& arguments) {
    const bool isBridge = arguments.has(kVr.name()) && !parseNumber(arguments.text(kVr.name()));
    std::vector<const Table<E>*> tables;
    const bool isOfBridgeDomains = arguments.has(kBd.name());
    if (isOfBridgeDomains || (!arguments.has(kVlan.name()) && !isBridge)) tables.push_back(&kBridgeDomains);
    if (!isOfBridgeDomains) tables.push_back(&kVlans);
    return tables;
}

std::vector<MemberTable<E>> membersOf(const Tool& tool, const EntryWords<E>& entries, const EgressTables& tables) {
    std::vector<MemberTable<E>> members;
    for (const Table<L2Elb6Entry>* table : tables) {
        const auto way = [table](const L2Elb6Entry& member) -> std::vector<std::string> {
            return {memberWay(*table, member), memberFlagsText(member.pathFlags)};
        };
        members.push_back(memberTable<E, L2Elb6Entry>(tool, *table, membersByQuery(entries, *table),
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
    return {table, cells, membersOf(tool, table.entry, isVlan ? vlanMembers() : bridgeDomainMembers())};
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
    for (const Table<E>* table : tablesOf(arguments)) count += countPicked(tool, *table, arguments);
    if (!tool.settings.json) return printLine(std::to_string(count));
    JsonWriter json;
    json.beginObject().member("table", "l2mc6_bd_mfib, l2mc6_vlan_mfib").member("count", count).endObject();
    printLine(json.take());
}

void deleteOne(Tool& tool, const Arguments& arguments) {
    const bool isOfVlan = arguments.has(kVlan.name());
    if (isOfVlan == arguments.has(kBd.name())) throw UsageError("give one of --bd and --vlan");
    if (isOfVlan && !arguments.has(kBridge.name())) throw UsageError("--vlan goes with --vr, which names the bridge");
    deleteByKey(tool, isOfVlan ? kVlans : kBridgeDomains, arguments);
}

}  // namespace

StoredTables l2MfibTables() { return {storedTable(kBridgeDomains), storedTable(kVlans)}; }

void addL2Mfib(Commands& commands) {
    std::vector<OptionSpec> filters = filterOptions(kVlans);
    filters.push_back(kBd.option);
    commands.push_back(
        {"count", "l2-mfib", "Count layer-2 forwarding entries of bridge domains and VLANs", filters, countBoth});
    filters.push_back(flagOption("members", "The egress members under each entry"));
    commands.push_back(
        {"show", "l2-mfib", "Show layer-2 forwarding entries of bridge domains and VLANs", filters, showBoth});
    commands.push_back({"delete",
                        "l2-mfib",
                        "Delete one layer-2 forwarding entry, of a bridge domain or a VLAN, and its members",
                        {kBridge.option, kBd.option, kVlan.option, required(kGroup.option), required(kSource.option),
                         keepMembersOption()},
                        deleteOne});
}

}  // namespace mcast6::ctl
