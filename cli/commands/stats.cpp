// stats: what went wrong and how often, and what was done.
#include "cli/commands/stats.h"

#include <fmt/format.h>

#include <iterator>

#include "cli/options/command.h"
#include "cli/output/library_log.h"
#include "cli/output/output.h"
#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"

namespace mcast6::ctl {
namespace {

constexpr const char* kTableNames[] = {
    "l3mc6_glbcfg",
    nullptr,
    nullptr,
    "l2mc6_global_enable",
    "l2mc6_flowstat_sub, l2mc6_vlan_port (get-entry)",
    nullptr,
    nullptr,
    "l2mc6_elb",
    "l2mc6_vlan_mfib",
    "l2mc6_vlan_port",
    "l2mc6_flowstat_sub",
    nullptr,
    nullptr,
    nullptr,
    "l2mc6_vlan_enable",
    "l3mc6_mfib",
    "l3mc6_elb",
    "l3mc6_vlan_elb",
    "l3mc6_bd_tag_elb",
    "l3mc6_bd_untag_elb",
    "l3mc6_bd_tnl_elb",
    "l2mc6_bd_tag_elb",
    "l2mc6_bd_untag_elb",
    "l2mc6_bd_flowstat_sub",
    "l2mc6_bd_tag_rt",
    "l2mc6_bd_untag_rt",
    "l2mc6_bd_enable",
    "l2mc6_bd_mfib",
    "l3mc6_mvpn_tnl_elb",
    "l3mc6_mvpn_tnl_subelb",
    "l2mc6_bd_vxlan_elb",
    "l2mc6_bd_vxlan_sub_elb",
    "l2mc6_bd_rt_vxlan_elb",
};
static_assert(std::size(kTableNames) == kTableNumbers);

constexpr const char* kErrorKindNames[] = {
    "reading or counting failed",
    "record exists or is absent (tolerated)",
    "write failed",
    "(unused)",
    "removal failed",
    "(unused)",
    "update failed",
    "making a root iterator failed",
    "building an iterator failed",
    "stepping an iterator failed",
};
static_assert(std::size(kErrorKindNames) == kErrorKinds);
static_assert(std::size(g_mcast6DbErrStat) == kTableNumbers && std::size(g_mcast6DbErrStat[0]) == kErrorKinds);

Value nameOrNone(const char* name) { return name == nullptr ? Value() : Value(name); }

RowPrinter list(const Tool& tool, std::string_view member, std::vector<ColumnHead> heads) {
    RowPrinter rows(tool.settings.json, std::move(heads));
    if (tool.settings.json) rows.json().beginArray(member);
    return rows;
}

void finish(const Tool& tool, RowPrinter& rows, const char* title) {
    if (tool.settings.json) {
        rows.json().endArray();
    } else {
        printLine(rows.rows() == 0 ? fmt::format("{}: none", title) : fmt::format("{}:", title));
    }
    rows.finish();
    if (!tool.settings.json && rows.rows() > 0) printLine("");
}

void showErrors(const Tool& tool) {
    RowPrinter rows = list(
        tool, "errorStatistics",
        {{"NUMBER", "tableNumber"}, {"TABLE", "table"}, {"KIND", "kind"}, {"WHAT", "kindName"}, {"COUNT", "count"}});
    for (uint32_t number = 0; number < kTableNumbers; ++number) {
        for (uint32_t kind = 0; kind < kErrorKinds; ++kind) {
            const uint64_t count = g_mcast6DbErrStat[number][kind];
            if (count == 0) continue;
            rows.row({uint64_t{number}, nameOrNone(tableName(number)), uint64_t{kind}, errorKindName(kind), count});
        }
    }
    finish(tool, rows, "Error statistics of the library");
}

void showNumbers(const Tool& tool, const char* member, const char* title, uint64_t (*value)(uint32_t),
                 const char* (*name)(uint32_t)) {
    RowPrinter rows = list(tool, member, {{"ID", "id"}, {"WHAT", "name"}, {"COUNT", "count"}});
    for (uint32_t id = 0; id < MCAST6_PLATFORM_COUNTERS; ++id) {
        if (value(id) > 0) rows.row({uint64_t{id}, nameOrNone(name(id)), value(id)});
    }
    finish(tool, rows, title);
}

void showStats(Tool& tool, const Arguments& arguments) {
    const bool json = tool.settings.json;
    if (json) print("{");
    showErrors(tool);
    if (json) print(",");
    showNumbers(tool, "counters", "Diagnostic counters", mcast6_platform_counter, mcast6_platform_counter_name);
    if (json) print(",");
    showNumbers(tool, "kpi", "Key performance indicators", mcast6_platform_kpi, mcast6_platform_kpi_name);
    const uint64_t removed = mcast6_platform_trap_count();
    const uint64_t memory = mcast6_platform_memory();
    if (json) {
        printLine(fmt::format(",\"removedEntriesTold\":{},\"memoryBytes\":{}}}", removed, memory));
    } else {
        printLine(fmt::format("Layer-3 entries told as removed: {}", removed));
        printLine(fmt::format("Memory of the store: {} bytes", memory));
    }
    if (!arguments.has("reset")) return;
    installLibraryLog();
    mcast6_platform_reset_counters();
    if (!json) printLine("All of these but the memory are zero now.");
}

}  // namespace

const char* tableName(uint32_t tableNumber) { return kTableNames[tableNumber]; }

const char* errorKindName(uint32_t errorKind) { return kErrorKindNames[errorKind]; }

void addStats(Commands& commands) {
    commands.push_back({"stats",
                        "",
                        "Print the error statistics, counters and indicators that are not zero",
                        {flagOption("reset", "Set them to zero afterwards")},
                        showStats});
}

}  // namespace mcast6::ctl
