// bd-flowstat and flowstat: the flow-statistics subscriptions of bridge domains and of VLANs. The tool takes keyId1 as
// VR, keyId2 as bridge domain or VLAN, flowAddr1 as group and flowAddr2 as source.
#include <fmt/format.h>

#include "cli/tables/l2.h"
#include "mcast6_db/l2mc6_bd_flowstat_sub.h"
#include "mcast6_db/l2mc6_flowstat_sub.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = FlowStatSubEntry;

std::vector<Column<E>> columnsOf(const std::vector<Column<E>>& domain) {
    std::vector<Column<E>> columns = domain;
    columns.push_back(column("SOURCE", "flowAddr2", &E::flowAddr2));
    columns.push_back(column("GROUP", "flowAddr1", &E::flowAddr1));
    columns.push_back(column("PROCESS", "srcPid", &E::srcPid));
    columns.push_back(column("WORD 2", "cfgWord2", &E::cfgWord2));
    columns.push_back(column("WORD 3", "cfgWord3", &E::cfgWord3));
    return withStamps(std::move(columns), &E::smoothVersion);
}

const Filter<E> kVr = numberFilter("vr", "Virtual router", &E::keyId1);
const Filter<E> kBridge = interfaceFilter("vr", "Virtual router, or the bridge", &E::keyId1);
const Filter<E> kBd = interfaceFilter("bd", "Bridge domain, or the bridge", &E::keyId2);
const Filter<E> kVlan = numberFilter("vlan", "VLAN", &E::keyId2);
const Filter<E> kGroup = addressFilter("group", "Group", &E::flowAddr1);
const Filter<E> kSource = addressFilter("source", "Source; any or :: for any", &E::flowAddr2);
const Filter<E> kPid = numberFilter("pid", "Process that subscribed", &E::srcPid);
const Filter<E> kWord3 = numberFilter("word3", "Third configuration word", &E::cfgWord3);

// clang-format off
const Table<E> kBridgeDomains{
    .name = "bd-flowstat",
    .holds = "flow-statistics subscriptions of bridge domains",
    .operations = {
        .databaseName = "l2mc6_bd_flowstat_sub",
        .read = MCAST6_DB_ReadL2McBdFlowstatSub,
        .absentCode = MCAST6_DB_NO_SUCH_RECORD,
        .write = MCAST6_DB_WriteL2McBdFlowstatSub,
        .restamp = nullptr,
        .remove = MCAST6_DB_DeleteL2McBdFlowstatSub,
        .merge = nullptr,
        .smoothVersion = &E::smoothVersion,
        .vrId = &E::keyId1,
        .openAll = MCAST6_DB_CreateL2McBdFlowstatSubIter,
        .step = MCAST6_DB_GetL2McBdFlowstatSubEntry,
        .release = MCAST6_DB_ReleaseL2McBdFlowstatSubIterator,
    },
    .columns = columnsOf({column("VR", "keyId1", &E::keyId1), column("BD", "keyId2", &E::keyId2, ColumnKind::kBridge)}),
    .filters = {&kVr, &kBd, &kGroup, &kSource, &kPid, &kWord3},
    .queries = {
        byKey<E>({&kVr, &kBd, &kGroup, &kSource}),
        {"source process", {&kVr, &kPid, &kWord3},
         [](const E& wanted) { return MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(&wanted); },
         MCAST6_DB_ReleaseL2McBdFlowstatSubIterator},
    },
    .layer = Layer::kLayer2,
    .vr = &kVr,
};

const Table<E> kVlans{
    .name = "flowstat",
    .holds = "flow-statistics subscriptions of VLANs",
    .operations = {
        .databaseName = "l2mc6_flowstat_sub",
        .read = MCAST6_DB_ReadL2FlowStatSub,
        .absentCode = MCAST6_DB_NO_RECORD,
        .write = MCAST6_DB_WriteL2FlowStatSub,
        .restamp = nullptr,
        .remove = MCAST6_DB_RemoveL2FlowStatSub,
        .merge = nullptr,
        .smoothVersion = &E::smoothVersion,
        .vrId = &E::keyId1,
        .openAll = MCAST6_DB_CreateL2FlowStatSubAllIter,
        .step = MCAST6_DB_GetL2FlowStatSubEntry,
        .release = MCAST6_DB_ReleaseL2FlowStatSubIter,
    },
    .columns = columnsOf({column("VR", "keyId1", &E::keyId1, ColumnKind::kBridge),
                          column("VLAN", "keyId2", &E::keyId2)}),
    .filters = {&kBridge, &kVlan, &kGroup, &kSource, &kPid, &kWord3},
    .queries = {byKey<E>({&kBridge, &kVlan, &kGroup, &kSource})},
    .layer = Layer::kLayer2,
    .vr = &kBridge,
    .vrIsBridge = true,
};
// clang-format on

// A subscription: the filters of the table's key name it, the other words are options of their own.
void addSubscription(Tool& tool, const Arguments& arguments, const Table<E>& table) {
    E record{};
    const LinkScope scope{tool.links, table.layer, routerOf(table, arguments)};
    for (const Filter<E>* filter : table.filters) {
        if (arguments.has(filter->name())) filter->read(record, arguments.text(filter->name()), scope);
    }
    record.cfgWord2 = arguments.number("word2", 0);
    record.smoothVersion = arguments.number("smooth-version", 0);
    E known = record;
    if (readRecord(table, &known))
        throw Failure(fmt::format("{}: there is such a subscription; delete it first", table.name));
    const uint32_t code = table.operations.write(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("{}: adding a subscription", table.name), code);
    if (!tool.settings.json) return printLine(fmt::format("{}: added a subscription", table.name));
    JsonWriter json;
    json.beginObject().member("table", table.operations.databaseName).member("new", true).endObject();
    printLine(json.take());
}

StoredTable withSet(const Table<E>& table) {
    StoredTable described = storedTable(table);
    described.addCommands = [&table, addOthers = described.addCommands](Commands& commands) {
        addOthers(commands);
        std::vector<OptionSpec> options;
        for (const Filter<E>* filter : table.filters) {
            options.push_back(filter->otherwise != nullptr ? filter->option : required(filter->option));
        }
        options.push_back(valueOption("word2", "N", "Second configuration word, 0 unless given"));
        options.push_back(valueOption("smooth-version", "N", "Smooth version, 0 unless given"));
        commands.push_back(
            {"set", table.name, "Subscribe to the statistics of a flow", options,
             [&table](Tool& tool, const Arguments& arguments) { addSubscription(tool, arguments, table); }});
    };
    return described;
}

}  // namespace

StoredTables l2SubscriptionTables() { return {withSet(kBridgeDomains), withSet(kVlans)}; }

}  // namespace mcast6::ctl
