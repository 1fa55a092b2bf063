#include "cli/commands/import_bridge_report.h"

#include <fmt/format.h>

#include "cli/tables/layer.h"

namespace mcast6::ctl {
namespace {

constexpr uint64_t kTold = 50;

struct KindName {
    const char* title;
    const char* member;
};
constexpr KindName kKindNames[kRowKinds] = {
    {"bridges", "bridges"},          {"VLANs", "vlans"},   {"ports of VLANs", "vlanPorts"},
    {"router ports", "routerPorts"}, {"groups", "groups"},
};

}  // namespace

BridgeReport::BridgeReport(const Tool& tool, std::string source, uint32_t smoothVersion)
    : tool_(tool), source_(std::move(source)), smoothVersion_(smoothVersion), tables_(l2Tables()) {}

// Skipped rows are ordinary: the summary has their reasons.
void BridgeReport::skipped(RowKind kind, const std::string& row, const std::string& reason) {
    ++rows_[static_cast<size_t>(kind)].skipped;
    ++skipReasons_[{kind, reason}];
    if (tool_.settings.verbose) tell(row, "skipped", reason);
}

void BridgeReport::refused(RowKind kind, const std::string& row, const std::string& reason) {
    countRefused(kind);
    if (++told_ <= kTold || tool_.settings.verbose) return tell(row, "refused", reason);
    if (told_ == kTold + 1) complain(fmt::format("{}: more rows were refused; --verbose tells all", source_));
}

void BridgeReport::tell(const std::string& row, const std::string& what, const std::string& reason) {
    complain(fmt::format("{}: {}: {}", row, what, reason));
}

ImportCounts BridgeReport::total() const {
    ImportCounts total;
    for (const RowCounts& counts : rows_) {
        total.read += counts.sum();
        total.imported += counts.imported;
        total.refused += counts.refused;
    }
    return total;
}

void BridgeReport::print(const kernel::TableChanges& changes) const {
    tool_.settings.json ? printJson(changes) : printText(changes);
}

void BridgeReport::printText(const kernel::TableChanges& changes) const {
    TextTable rows({"ROWS", "READ", "IMPORTED", "SKIPPED", "REFUSED"});
    for (size_t kind = 0; kind < kRowKinds; ++kind) {
        const RowCounts& counts = rows_[kind];
        rows.row({kKindNames[kind].title, std::to_string(counts.sum()), std::to_string(counts.imported),
                  std::to_string(counts.skipped), std::to_string(counts.refused)});
    }
    rows.print();
    for (const auto& [what, count] : skipReasons_) {
        printLine(
            fmt::format("{} skipped: {} ({})", kKindNames[static_cast<size_t>(what.first)].title, what.second, count));
    }
    tables_.print(changes);
    printLine(fmt::format("{}, smooth version {}", source_, smoothVersion_));
}

void BridgeReport::printJson(const kernel::TableChanges& changes) const {
    JsonWriter json;
    json.beginObject().member("source", source_).member("smoothVersion", uint64_t{smoothVersion_}).beginArray("rows");
    for (size_t kind = 0; kind < kRowKinds; ++kind) {
        const RowCounts& counts = rows_[kind];
        json.beginObject().member("of", kKindNames[kind].member).member("read", counts.sum());
        json.member("imported", counts.imported).member("skipped", counts.skipped).member("refused", counts.refused);
        json.endObject();
    }
    json.endArray().beginArray("skipped");
    for (const auto& [what, count] : skipReasons_) {
        json.beginObject().member("of", kKindNames[static_cast<size_t>(what.first)].member);
        json.member("reason", what.second).member("count", count).endObject();
    }
    json.endArray();
    tables_.writeJson(json, changes);
    json.endObject();
    printLine(json.take());
}

}  // namespace mcast6::ctl
