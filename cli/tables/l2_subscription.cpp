// bd-flowstat and flowstat: the flow-statistics subscriptions of bridge domains and of VLANs. The tool takes keyId1 as VR,
// keyId2 as bridge domain or VLAN, flowAddr1 as group and flowAddr2 as source.
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

std::vector<Filter<E>> filtersOf(const std::vector<Filter<E>>& domain) {
    std::vector<Filter<E>> filters = domain;
    filters.push_back(addressFilter("group", "Group", &E::flowAddr1));
    filters.push_back(addressFilter("source", "Source; any or :: for any", &E::flowAddr2));
    filters.push_back(numberFilter("pid", "Process that subscribed", &E::srcPid));
    filters.push_back(numberFilter("word3", "Third configuration word", &E::cfgWord3));
    return filters;
}

// clang-format off
const Table<E> kBridgeDomains{
    .name = "bd-flowstat",
    .databaseName = "l2mc6_bd_flowstat_sub",
    .holds = "flow-statistics subscriptions of bridge domains",
    .columns = columnsOf({column("VR", "keyId1", &E::keyId1), column("BD", "keyId2", &E::keyId2, ColumnKind::kBridge)}),
    .filters = filtersOf({numberFilter("vr", "Virtual router", &E::keyId1),
                          interfaceFilter("bd", "Bridge domain, or the bridge", &E::keyId2)}),
    .queries = {
        byKey<E>({"vr", "bd", "group", "source"}, MCAST6_DB_ReadL2McBdFlowstatSub),
        {"source process", {"vr", "pid", "word3"},
         [](const E& wanted) { return MCAST6_DB_CreateL2McBdFlowstatSubIterBySrcPid(&wanted); },
         MCAST6_DB_ReleaseL2McBdFlowstatSubIterator},
        wholeTable<E>(MCAST6_DB_CreateL2McBdFlowstatSubIter, MCAST6_DB_ReleaseL2McBdFlowstatSubIterator),
    },
    .step = MCAST6_DB_GetL2McBdFlowstatSubEntry,
    .absentCodes = {MCAST6_DB_NO_SUCH_RECORD},
    .smoothVersion = &E::smoothVersion,
    .remove = MCAST6_DB_DeleteL2McBdFlowstatSub,
    .layer = Layer::kLayer2,
    .router = &E::keyId1,
};

const Table<E> kVlans{
    .name = "flowstat",
    .databaseName = "l2mc6_flowstat_sub",
    .holds = "flow-statistics subscriptions of VLANs",
    .columns = columnsOf({column("VR", "keyId1", &E::keyId1, ColumnKind::kBridge), column("VLAN", "keyId2", &E::keyId2)}),
    .filters = filtersOf({interfaceFilter("vr", "Virtual router, or the bridge", &E::keyId1),
                          numberFilter("vlan", "VLAN", &E::keyId2)}),
    .queries = {
        byKey<E>({"vr", "vlan", "group", "source"}, MCAST6_DB_ReadL2FlowStatSub),
        wholeTable<E>(MCAST6_DB_CreateL2FlowStatSubAllIter, MCAST6_DB_ReleaseL2FlowStatSubIter),
    },
    .step = MCAST6_DB_GetL2FlowStatSubEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = &E::smoothVersion,
    .remove = MCAST6_DB_RemoveL2FlowStatSub,
    .layer = Layer::kLayer2,
    .router = nullptr,
};
// clang-format on

// A subscription: the filters of the table's key name it, the other words are options of their own.
void addSubscription(Tool& tool, const Arguments& arguments, const Table<E>& table, uint32_t (*write)(const E*)) {
    E record{};
    const LinkScope scope{tool.links, table.layer, routerOf(table, arguments)};
    for (const Filter<E>& filter : table.filters) {
        const std::string& name = filter.option.name;
        if (arguments.has(name)) filter.read(record, arguments.text(name), scope);
    }
    record.cfgWord2 = arguments.number("word2", 0);
    record.smoothVersion = arguments.number("smooth-version", 0);
    E known = record;
    if (readRecord(table, &known))
        throw Failure(fmt::format("{}: there is such a subscription; delete it first", table.name));
    const uint32_t code = write(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("{}: adding a subscription", table.name), code);
    if (!tool.settings.json) return printLine(fmt::format("{}: added a subscription", table.name));
    JsonWriter json;
    json.beginObject().member("table", table.databaseName).member("new", true).endObject();
    printLine(json.take());
}

StoredTable withSet(const Table<E>& table, uint32_t (*write)(const E*)) {
    StoredTable described = storedTable(table);
    described.addCommands = [&table, write, addOthers = described.addCommands](Commands& commands) {
        addOthers(commands);
        std::vector<OptionSpec> options;
        for (const Filter<E>& filter : table.filters) {
            const bool isNumber = filter.option.placeholder == "N";
            options.push_back(isNumber ? filter.option : required(filter.option));
        }
        options.push_back(valueOption("word2", "N", "Second configuration word, 0 unless given"));
        options.push_back(valueOption("smooth-version", "N", "Smooth version, 0 unless given"));
        commands.push_back({"set", table.name, "Subscribe to the statistics of a flow", options,
                            [&table, write](Tool& tool, const Arguments& arguments) {
                                addSubscription(tool, arguments, table, write);
                            }});
    };
    return described;
}

}  // namespace

StoredTables l2SubscriptionTables() {
    return {withSet(kBridgeDomains, MCAST6_DB_WriteL2McBdFlowstatSub), withSet(kVlans, MCAST6_DB_WriteL2FlowStatSub)};
}

}  // namespace mcast6::ctl
