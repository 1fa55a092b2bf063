#include "bench/report.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

namespace mcast6::bench {
namespace {

constexpr size_t kLibrary = static_cast<size_t>(SubjectName::library);
constexpr size_t kContainer = static_cast<size_t>(SubjectName::container);

// The limits of independence: the cost may grow because a larger table misses caches, but not with the size of the
// table.
constexpr double kMostGrowthWithSize = 4;
constexpr double kMostGrowthWithMatches = 2;
constexpr double kLeastReturned = 0.95;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

template <class Value>
double medianValue(const std::vector<Findings>& rounds, const Value& value) {
    std::vector<double> values;
    values.reserve(rounds.size());
    for (const Findings& round : rounds) values.push_back(value(round));
    return median(std::move(values));
}

using Number = std::optional<double>;

Number nanoseconds(const SizeResult& result, size_t subject, Operation operation) {
    const Findings& findings = result.subjects[subject];
    if (!result.present[subject] || !findings.measured[indexOf(operation)]) return {};
    return findings.samples[indexOf(operation)].nanoseconds;
}

Number quotient(Number dividend, Number divisor) {
    if (!dividend || !divisor || *divisor <= 0) return {};
    return *dividend / *divisor;
}

std::string text(Number number, int digits) { return number ? fmt::format("{:.{}f}", *number, digits) : "-"; }

std::string nanosecondsText(Number number) { return text(number, number && *number < 100 ? 1 : 0); }

std::string aimText(Number ratio, double aim) {
    if (aim == 0) return "";
    if (!ratio) return fmt::format("<= {:.2f}", aim);
    return fmt::format("<= {:.2f} {}", aim, *ratio <= aim ? "met" : "MISSED");
}

// Only creating an iterator and storing a new entry may allocate.
bool mayAllocate(Operation operation) {
    switch (operation) {
        case Operation::load:
        case Operation::groupFirst:
        case Operation::groupEntry:
        case Operation::vrfFirst:
        case Operation::vrfEntry:
        case Operation::walk:
        case Operation::iterator:
            return true;
        default:
            return false;
    }
}

std::string allocationsText(const SizeResult& result, size_t subject, Operation operation) {
    if (!nanoseconds(result, subject, operation) || !allocationsAreCounted()) return "-";
    const double allocations = result.subjects[subject].samples[indexOf(operation)].allocations;
    if (allocations == 0) return "0";
    return fmt::format("{:.{}f}", allocations, allocations < 0.1 ? 6 : 2);
}

std::string operationLine(const SizeResult& result, const Description& description) {
    const Operation operation = description.operation;
    std::array<Number, kSubjects> times;
    for (size_t subject = 0; subject < kSubjects; ++subject) times[subject] = nanoseconds(result, subject, operation);
    const Number ratio = quotient(times[kLibrary], times[kContainer]);
    const std::string allocations = allocationsText(result, kLibrary, operation);
    const bool mustNot = !mayAllocate(operation) && allocations != "0" && allocations != "-";
    return fmt::format("{:<34}{:>10}{:>10}{:>12}{:>9}  {:<14}{:>10}{:>10}{}\n", description.title,
                       nanosecondsText(times[0]), nanosecondsText(times[1]), nanosecondsText(times[2]), text(ratio, 2),
                       aimText(ratio, description.aim), allocations, allocationsText(result, kContainer, operation),
                       mustNot ? "  MISSED: aim 0" : "");
}

std::string memoryLine(const SizeResult& result, const char* title, double Findings::*bytes, double aim) {
    std::array<Number, kSubjects> values;
    for (size_t subject = 0; subject < kSubjects; ++subject) {
        if (result.present[subject]) values[subject] = result.subjects[subject].*bytes;
    }
    std::string verdict;
    if (values[kLibrary] && aim > 0)
        verdict = fmt::format("<= {:.0f} {}", aim, *values[kLibrary] <= aim ? "met" : "MISSED");
    return fmt::format("{:<34}{:>10}{:>10}{:>12}{:>9}  {}\n", title, text(values[0], 0), text(values[1], 0),
                       text(values[2], 0), text(quotient(values[kLibrary], values[kContainer]), 2), verdict);
}

std::string growthLine(const char* title, Number growth, double most) {
    return fmt::format("{:<66}{:>8}  {}\n", title, growth ? fmt::format("x{:.1f}", *growth) : "-",
                       aimText(growth, most));
}

std::string sizeGrowthLine(const RunResult& run, Operation operation) {
    const SizeResult& smallest = run.sizes.front();
    const SizeResult& largest = run.sizes.back();
    const std::string title =
        fmt::format("{}, {} against {} entries", kDescriptions[indexOf(operation)].title, largest.size, smallest.size);
    return growthLine(title.c_str(),
                      quotient(nanoseconds(largest, kLibrary, operation), nanoseconds(smallest, kLibrary, operation)),
                      kMostGrowthWithSize);
}

std::string matchGrowthLine(const RunResult& run, const char* title, Operation many, Operation few) {
    const SizeResult& largest = run.sizes.back();
    return growthLine(title, quotient(nanoseconds(largest, kLibrary, many), nanoseconds(largest, kLibrary, few)),
                      kMostGrowthWithMatches);
}

nlohmann::json subjectJson(const SizeResult& result, size_t subject) {
    const Findings& findings = result.subjects[subject];
    nlohmann::json operations = nlohmann::json::object();
    for (const Description& description : kDescriptions) {
        const size_t index = indexOf(description.operation);
        if (!findings.measured[index]) continue;
        operations[description.name] = {{"nanoseconds", findings.samples[index].nanoseconds}};
        if (allocationsAreCounted()) operations[description.name]["allocations"] = findings.samples[index].allocations;
    }
    return {{"operations", operations},
            {"bytesPerEntryLoaded", findings.loadedBytes},
            {"bytesPerEntryAfterDeletion", findings.emptiedBytes}};
}

}  // namespace

Findings medianOf(const std::vector<Findings>& rounds) {
    Findings medians = rounds.front();
    for (size_t i = 0; i < kOperations; ++i) {
        medians.samples[i] = {medianValue(rounds, [i](const Findings& f) { return f.samples[i].nanoseconds; }),
                              medianValue(rounds, [i](const Findings& f) { return f.samples[i].allocations; })};
    }
    medians.loadedBytes = medianValue(rounds, [](const Findings& f) { return f.loadedBytes; });
    medians.emptiedBytes = medianValue(rounds, [](const Findings& f) { return f.emptiedBytes; });
    return medians;
}

std::string tableText(const SizeResult& result, const RunResult& run) {
    std::string out =
        fmt::format("\n{} entries, set '{}', {} time, {}median of {}: nanoseconds per operation\n", result.size,
                    run.set, run.clock, run.hasIdleThread ? "with an idle thread, " : "", run.rounds);
    out +=
        fmt::format("{:<34}{:>10}{:>10}{:>12}{:>9}  {:<14}{:>20}\n", "", "", "", "", "library/", "", "allocations of");
    out += fmt::format("{:<34}{:>10}{:>10}{:>12}{:>9}  {:<14}{:>10}{:>10}\n", "operation", "library", "engine",
                       "container", "cont.", "aim", "library", "cont.");
    for (const Description& description : kDescriptions) {
        bool measured = false;
        for (size_t subject = 0; subject < kSubjects; ++subject) {
            measured |= nanoseconds(result, subject, description.operation).has_value();
        }
        if (measured) out += operationLine(result, description);
    }
    out += memoryLine(result, "bytes per entry, loaded", &Findings::loadedBytes, kMostBytesPerEntry);
    const double mayStay = result.subjects[kLibrary].loadedBytes * (1 - kLeastReturned);
    out += memoryLine(result, "bytes per entry, after deletion", &Findings::emptiedBytes, mayStay);
    return out;
}

std::string growthText(const RunResult& run) {
    const SizeResult& largest = run.sizes.back();
    if (!largest.present[kLibrary]) return "";
    std::string out = "\nindependence of the number of entries and of matches (library)\n";
    if (run.sizes.size() > 1) {
        for (const Operation operation : {Operation::groupFirst, Operation::vrfFirst, Operation::countGroup,
                                          Operation::countVrf, Operation::countAll}) {
            out += sizeGrowthLine(run, operation);
        }
    }
    out += matchGrowthLine(run, "first entry, a quarter of the table against one group", Operation::vrfFirst,
                           Operation::groupFirst);
    out += matchGrowthLine(run, "count, a quarter of the table against one group", Operation::countVrf,
                           Operation::countGroup);
    return out;
}

std::string jsonText(const RunResult& run) {
    nlohmann::json sizes = nlohmann::json::array();
    for (const SizeResult& result : run.sizes) {
        nlohmann::json subjects = nlohmann::json::object();
        for (size_t subject = 0; subject < kSubjects; ++subject) {
            if (result.present[subject]) subjects[kSubjectNames[subject]] = subjectJson(result, subject);
        }
        sizes.push_back({{"entries", result.size}, {"subjects", subjects}});
    }
    const nlohmann::json document = {{"set", run.set},
                                     {"clock", run.clock},
                                     {"idleThread", run.hasIdleThread},
                                     {"rounds", run.rounds},
                                     {"sizes", sizes}};
    return document.dump(2) + '\n';
}

}  // namespace mcast6::bench
