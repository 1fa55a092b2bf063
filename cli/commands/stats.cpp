// stats: what went wrong and how often, and what was done.
#include "cli/commands/stats.h"

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <string_view>

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

void finish(const Tool& tool, RowPrinter& rows, const char* title, const std::string& footnote = "") {
    if (tool.settings.json) {
        rows.json().endArray();
    } else {
        printLine(rows.rows() == 0 ? fmt::format("{}: none", title) : fmt::format("{}:", title));
    }
    rows.finish();
    if (!footnote.empty()) printLine(footnote);
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

constexpr std::string_view kCreated = ": objects created";
constexpr std::string_view kReleased = ": objects released";
constexpr const char* kReleasedNote =
    "more released than created, and none missing: a fast scan uses an object that the library keeps; making it is not "
    "counted, giving it back after each scan is counted as a release";

uint64_t countOfName(const std::string& name) {
    for (uint32_t id = 0; id < MCAST6_PLATFORM_COUNTERS; ++id) {
        const char* known = mcast6_platform_counter_name(id);
        if (known != nullptr && known == name) return mcast6_platform_counter(id);
    }
    return 0;
}

// What a reader of this counter should know; null: nothing.
const char* counterNote(uint32_t id) {
    const char* known = mcast6_platform_counter_name(id);
    std::string name = known == nullptr ? "" : known;
    if (!name.ends_with(kReleased)) return nullptr;
    name.replace(name.size() - kReleased.size(), kReleased.size(), kCreated);
    return mcast6_platform_counter(id) > countOfName(name) ? kReleasedNote : nullptr;
}

void showCounters(const Tool& tool) {
    RowPrinter rows = list(tool, "counters", {{"ID", "id"}, {"WHAT", "name"}, {"COUNT", "count"}, {nullptr, "note"}});
    bool noted = false;
    for (uint32_t id = 0; id < MCAST6_PLATFORM_COUNTERS; ++id) {
        const uint64_t count = mcast6_platform_counter(id);
        if (count == 0) continue;
        const char* name = mcast6_platform_counter_name(id);
        const char* note = counterNote(id);
        const bool isMarked = note != nullptr && !tool.settings.json;
        const Value called = isMarked ? Value(fmt::format("{} (*)", name)) : nameOrNone(name);
        rows.row({uint64_t{id}, called, count, nameOrNone(note)});
        noted = noted || isMarked;
    }
    finish(tool, rows, "Diagnostic counters", noted ? fmt::format("(*) {}", kReleasedNote) : "");
}

void showIndicators(const Tool& tool) {
    RowPrinter rows = list(tool, "kpi", {{"ID", "id"}, {"WHAT", "name"}, {"COUNT", "count"}});
    for (uint32_t id = 0; id < MCAST6_PLATFORM_COUNTERS; ++id) {
        const uint64_t count = mcast6_platform_kpi(id);
        if (count > 0) rows.row({uint64_t{id}, nameOrNone(mcast6_platform_kpi_name(id)), count});
    }
    finish(tool, rows, "Key performance indicators");
}

void showStats(Tool& tool, const Arguments& arguments) {
    const bool json = tool.settings.json;
    if (json) print("{");
    showErrors(tool);
    if (json) print(",");
    showCounters(tool);
    if (json) print(",");
    showIndicators(tool);
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
