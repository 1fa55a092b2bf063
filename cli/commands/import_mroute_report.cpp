#include "cli/commands/import_mroute_report.h"

#include <fmt/format.h>

#include "cli/output/output.h"
#include "cli/tables/layer.h"

namespace mcast6::ctl {
namespace {

constexpr uint64_t kTold = 50;

struct FateName {
    Fate fate;
    const char* title;
    const char* member;
};
constexpr FateName kFateNames[kFates] = {
    {Fate::kNew, "NEW", "new"},
    {Fate::kReplaced, "REPLACED", "replaced"},
    {Fate::kRestamped, "RE-STAMPED", "restamped"},
    {Fate::kSkipped, "SKIPPED", "skipped"},
    {Fate::kRefused, "REFUSED", "refused"},
};

void addRow(TextTable& table, const std::string& label, const FateCounts& counts) {
    std::vector<std::string> cells{label, std::to_string(counts.sum())};
    for (const FateName& name : kFateNames) cells.push_back(std::to_string(counts[name.fate]));
    table.row(cells);
}

void addMembers(JsonWriter& json, const FateCounts& counts) {
    json.member("read", counts.sum());
    for (const FateName& name : kFateNames) json.member(name.member, counts[name.fate]);
}

void add(FateCounts& total, const FateCounts& counts) {
    for (size_t fate = 0; fate < kFates; ++fate) total.of[fate] += counts.of[fate];
}

}  // namespace

RouteReport::RouteReport(const Tool& tool, std::string file, uint32_t smoothVersion)
    : tool_(tool), file_(std::move(file)), smoothVersion_(smoothVersion), tables_(l3Tables()) {}

void RouteReport::tell(const std::string& entry, const std::string& reason) {
    if (++told_ <= kTold || tool_.settings.verbose) return complain(fmt::format("{}: {}: {}", file_, entry, reason));
    if (told_ == kTold + 1)
        complain(fmt::format("{}: more entries were skipped or refused; --verbose tells all", file_));
}

FateCounts RouteReport::total() const {
    FateCounts total = noVrf_;
    for (const auto& [vrfId, counts] : byVrf_) add(total, counts);
    return total;
}

void RouteReport::print(const kernel::TableChanges& changes) const {
    tool_.settings.json ? printJson(changes) : printText(changes);
}

void RouteReport::printText(const kernel::TableChanges& changes) const {
    std::vector<std::string> titles{"VRF", "READ"};
    for (const FateName& name : kFateNames) titles.emplace_back(name.title);
    TextTable routes(titles);
    for (const auto& [vrfId, counts] : byVrf_) addRow(routes, std::to_string(vrfId), counts);
    if (noVrf_.sum() > 0) addRow(routes, "?", noVrf_);
    addRow(routes, "all", total());
    routes.print();
    tables_.print(changes);
    printLine(fmt::format("{}, smooth version {}: {} of the routes imported", file_, smoothVersion_,
                          counted(outgoing_, "outgoing interface")));
}

void RouteReport::printJson(const kernel::TableChanges& changes) const {
    JsonWriter json;
    json.beginObject().member("file", file_).member("smoothVersion", uint64_t{smoothVersion_});
    addMembers(json, total());
    json.member("outgoingInterfaces", outgoing_).beginArray("byVrf");
    for (const auto& [vrfId, counts] : byVrf_) {
        json.beginObject().member("vrfId", uint64_t{vrfId});
        addMembers(json, counts);
        json.endObject();
    }
    if (noVrf_.sum() > 0) {
        json.beginObject().member("vrfId", Value());
        addMembers(json, noVrf_);
        json.endObject();
    }
    json.endArray();
    tables_.writeJson(json, changes);
    json.endObject();
    printLine(json.take());
}

}  // namespace mcast6::ctl
