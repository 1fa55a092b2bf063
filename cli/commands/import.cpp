#include "cli/commands/import.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "cli/output/output.h"
#include "kernel/capture/input.h"

namespace mcast6::ctl {
namespace {

constexpr uint64_t kLongWork = 5000;

}  // namespace

void tellEnd(Tool& tool, const std::string& input, const ImportCounts& counts) {
    if (counts.read == 0) {
        complain(fmt::format("{}: there is nothing to import", input));
        tool.outcome = std::max(tool.outcome, kNothing);
    } else if (counts.refused > 0) {
        tool.outcome = std::max(tool.outcome, counts.imported == 0 ? kNothing : kPartial);
    }
}

Failure failureOf(const kernel::Error& error, const std::string& before) {
    const std::string message = before + error.what();
    const auto* ofTable = dynamic_cast<const kernel::TableError*>(&error);
    if (ofTable == nullptr) return Failure(message);
    return ofTable->code() == 0 ? libraryFailure(message) : libraryFailure(message, ofTable->code());
}

void asFailure(const std::function<void()>& work) {
    try {
        work();
    } catch (const kernel::Error& error) {
        throw failureOf(error);
    }
}

void refuseOlder(const std::string& input, uint32_t smoothVersion, const std::string& where,
                 const std::optional<kernel::StoredVersion>& newer) {
    if (!newer) return;
    throw Failure(
        fmt::format("{}: not imported: smooth version {} is older than what the tables hold{} ({} has {}), so that the "
                    "next smooth would delete it; give --smooth-version {} or higher, or --force",
                    input, smoothVersion, where, newer->databaseName, newer->smoothVersion, newer->smoothVersion));
}

void warnOfMissingDetails(const std::string& path) {
    complain(
        fmt::format("{}: captured without -d, so that VLANs, bridges and tunnels in it look like plain interfaces; "
                    "capture it by `ip -j -d link`",
                    kernel::inputName(path)));
}

OptionSpec forceOption() { return flagOption("force", "Import even if the tables hold a higher smooth version"); }

std::vector<LinkName> namesOf(const LinkTable& links) {
    std::vector<LinkName> names;
    for (const Link* link : links.all()) names.push_back({link->index, link->name, link->kind == "bridge"});
    return names;
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
