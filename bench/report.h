// The results of a run, as text and as JSON.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/measurement.h"

namespace mcast6::bench {

enum class SubjectName : uint8_t { library, engine, container };
inline constexpr size_t kSubjects = 3;
inline constexpr std::array<const char*, kSubjects> kSubjectNames{"library", "engine", "container"};

// Medians over the rounds, for one number of entries.
struct SizeResult {
    uint32_t size;
    std::array<bool, kSubjects> present;
    std::array<Findings, kSubjects> subjects;
};

struct RunResult {
    std::string set;
    std::string clock;
    uint32_t rounds;
    bool hasIdleThread;
    std::vector<SizeResult> sizes;  // ascending
};

Findings medianOf(const std::vector<Findings>& rounds);

std::string tableText(const SizeResult& result, const RunResult& run);

// How the first entry of a query and the counts depend on the number of entries and of matches.
std::string growthText(const RunResult& run);

std::string jsonText(const RunResult& run);

}  // namespace mcast6::bench
