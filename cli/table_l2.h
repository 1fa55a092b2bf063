// What the tool's descriptions of the layer-2 tables share, and the list of them.
//
// Linux numbers VLANs for each bridge, the tables for each virtual router. The tool therefore takes a bridge as bridge
// domain of VR 0, and as the VR of its VLANs; both numbers are the bridge's interface index. docs/bridge-import.md tells more.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/table.h"
#include "cli/table_commands.h"
#include "mcast6_db/l2_egress.h"

namespace mcast6::ctl {

// What the tool keeps in pathFlags of a member.
enum MemberFlags : uint32_t {
    kPermanent = 1,     // static, or learned otherwise
    kBlocked = 2,       // the source is not forwarded to the port
    kStarExclude = 4,   // added because another port of the group names the source
    kIncludeMode = 8,   // filter mode include
    kExcludeMode = 16,  // filter mode exclude; neither: MLD version 1
    kFastLeave = 32,    // the port leaves without a last query
    kOffload = 64,      // in switching hardware
};

// "permanent exclude", "-"; other bits as 0xN.
std::string memberFlagsText(uint32_t flags);

// Appends what every layer-2 record has: version and times. The members are read where they lie, which is not always at a
// multiple of their size.
template <class Record>
std::vector<Column<Record>> withStamps(std::vector<Column<Record>> columns, uint32_t Record::*smoothVersion) {
    columns.push_back(column("VERSION", "smoothVersion", smoothVersion));
    columns.push_back({{"WRITTEN (UTC)", "timeStampCreate", ColumnKind::kTime},
                       [](const Record& record) -> Value { return uint64_t{record.timeStampCreate}; }});
    columns.push_back({{"CONFIRMED (UTC)", "timeStampSmooth", ColumnKind::kTime},
                       [](const Record& record) -> Value { return uint64_t{record.timeStampSmooth}; }});
    return columns;
}

// An option that is no filter but asks for a query, for instance --sorted.
template <class Record>
Filter<Record> askFor(const char* name, const char* help) {
    return {flagOption(name, help), [](Record&, const std::string&, const LinkTable&) {},
            [](const Record&, const Record&) { return true; }};
}

// The query that takes no filter.
template <class Record>
Query<Record> wholeTable(Mcast6DbRes* (*open)(), void (*release)(Mcast6DbRes*),
                         uint32_t (*count)(uint32_t*) = nullptr) {
    Query<Record> query{"walk of the whole table", {}, [open](const Record&) { return open(); }, release};
    if (count != nullptr) query.count = [count](const Record&, uint32_t* records) { return count(records); };
    return query;
}

template <class Record>
Query<Record> byKey(std::vector<std::string> takes, uint32_t (*read)(Record*)) {
    return {"key", std::move(takes), {}, nullptr, {}, read};
}

// A table without its record's type.
struct L2Table {
    const char* name;
    const char* databaseName;
    std::function<uint64_t()> count;
    std::function<SmoothCounts(uint32_t version)> smooth;
    std::function<void(Commands&)> addCommands;
};

// delete, with the filters of the table's key as options. Numbers are 0 unless given, addresses and domains are required.
template <class Record>
void addDelete(Commands& commands, const Table<Record>& table) {
    const Query<Record>& key = table.queries.front();
    std::vector<OptionSpec> options;
    for (const std::string& name : key.takes) {
        const OptionSpec& option = filterNamed(table, name).option;
        options.push_back(option.placeholder == "N" ? option : required(option));
    }
    const auto run = [&table, &key](Tool& tool, const Arguments& arguments) {
        Record wanted{};
        std::string called;
        for (const std::string& name : key.takes) {
            const std::string text = arguments.has(name) ? arguments.text(name) : "0";
            filterNamed(table, name).read(wanted, text, tool.*table.links);
            called += fmt::format("{}{} {}", called.empty() ? "" : ", ", name, text);
        }
        deleteRecord(tool, table, wanted, called);
    };
    commands.push_back({"delete", table.name, "Delete the entry of one key", options, run});
}

template <class Record>
L2Table l2Table(const Table<Record>& table) {
    const auto everything = [&table] { return Selection<Record>{{}, &table.queries.back(), {}}; };
    return {table.name, table.databaseName, [&table, everything] { return countRecords(table, everything()); },
            [&table, everything](uint32_t version) { return smoothRecords(table, everything(), version); },
            [&table](Commands& commands) {
                addTableCommands(commands, table);
                addDelete(commands, table);
            }};
}

// Each stands in the file of its family; bd-enable adds its commands itself.
using L2Tables = std::vector<L2Table>;
L2Tables l2MfibTables();
L2Tables l2EgressTables();
L2Tables l2RouteTables();
L2Tables l2SwitchTables();
L2Tables l2SubscriptionTables();
L2Table bdEnableTable();

// All of them, bd-enable included.
const L2Tables& l2Tables();

// The tables of members: of entries of bridge domains, and of entries of VLANs.
using EgressTables = std::vector<const Table<L2Elb6Entry>*>;
const EgressTables& bridgeDomainMembers();
const EgressTables& vlanMembers();

// The name of the query that finds the members of one entry; takes VR, domain, group and source.
constexpr const char* kMembersOfEntry = "entry";

// How a member of 'table' goes out: "untagged", "tag 10", "VNI 5010 to 2001:db8::1".
std::string memberWay(const Table<L2Elb6Entry>& table, const L2Elb6Entry& member);

// show and count of l2-mfib, which is both tables of forwarding entries.
void addL2Mfib(Commands& commands);

}  // namespace mcast6::ctl
