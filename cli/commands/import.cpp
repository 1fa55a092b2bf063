#include "cli/commands/import.h"

#include <unistd.h>

#include <cstdio>
#include <numeric>
#include <utility>

#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

constexpr uint64_t kLongWork = 5000;

}  // namespace

uint64_t FateCounts::sum() const { return std::accumulate(std::begin(of), std::end(of), uint64_t{0}); }

std::vector<LinkName> namesOf(const LinkTable& links) {
    std::vector<LinkName> names;
    for (const auto& [name, link] : links.all()) names.push_back({link.index, name, link.kind == "bridge"});
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
