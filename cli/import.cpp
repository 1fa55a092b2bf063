#include "cli/import.h"

#include <unistd.h>

#include <cstdio>
#include <numeric>
#include <utility>

#include "cli/text.h"

namespace mcast6::ctl {
namespace {

constexpr uint64_t kTold = 50;
constexpr uint64_t kLongWork = 5000;

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

uint64_t FateCounts::sum() const { return std::accumulate(std::begin(of), std::end(of), uint64_t{0}); }

void ImportReport::tell(const std::string& entry, const std::string& reason) {
    if (++told_ <= kTold || tool_.settings.verbose) return complain(fmt::format("{}: {}: {}", file_, entry, reason));
    if (told_ == kTold + 1)
        complain(fmt::format("{}: more entries were skipped or refused; --verbose tells all", file_));
}

FateCounts ImportReport::total() const {
    FateCounts total = noVrf_;
    for (const auto& [vrfId, counts] : byVrf_) add(total, counts);
    return total;
}

void ImportReport::print(const TableChange& change) const {
    if (tool_.settings.json) return printJson(change);
    std::vector<std::string> titles{"VRF", "READ"};
    for (const FateName& name : kFateNames) titles.emplace_back(name.title);
    TextTable summary(titles);
    for (const auto& [vrfId, counts] : byVrf_) addRow(summary, std::to_string(vrfId), counts);
    if (noVrf_.sum() > 0) addRow(summary, "?", noVrf_);
    addRow(summary, "all", total());
    summary.print();
    printLine(fmt::format("{}, smooth version {}: {} held {}, holds {}", file_, change.smoothVersion, change.name,
                          counted(change.before, "entry"), change.after));
}

void ImportReport::printJson(const TableChange& change) const {
    JsonWriter json;
    json.beginObject().member("file", file_).member("table", change.databaseName);
    json.member("smoothVersion", uint64_t{change.smoothVersion});
    addMembers(json, total());
    json.member("before", change.before).member("after", change.after).beginArray("byVrf");
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
    json.endArray().endObject();
    printLine(json.take());
}

Progress::Progress(std::string what, uint64_t total)
    : what_(std::move(what)), total_(total), shown_(total >= kLongWork && isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() { clear(); }

void Progress::at(uint64_t done) {
    if (!shown_) return;
    const uint64_t percent = done * 100 / total_;
    if (percent == percentShown_) return;
    percentShown_ = percent;
    constexpr uint64_t kWidth = 40;
    const std::string bar(percent * kWidth / 100, '#');
    fmt::print(stderr, "\r{} [{:<{}}] {:3} %", what_, bar, kWidth, percent);
    std::fflush(stderr);
}

void Progress::clear() {
    if (!shown_ || percentShown_ > 100) return;
    fmt::print(stderr, "\r\x1b[K");
    percentShown_ = 101;
}

}  // namespace mcast6::ctl
