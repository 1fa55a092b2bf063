// mcast6bench: measures the library, its engine and a container side by side.
//
// Every subject runs in its own process, forked from one that has used no subject, so that none inherits the heap or
// the caches of another. A round measures all subjects, so that other load on the machine affects them equally.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <new>
#include <stdexcept>
#include <thread>

#include "bench/report.h"
#include "bench/subjects.h"

namespace mcast6::bench {
namespace {

using Measure = void (*)(const Workload&, const Settings&, Findings&);
constexpr std::array<Measure, kSubjects> kMeasures{measureLibrary, measureEngine, measureContainer};

struct Options {
    std::vector<uint32_t> sizes{10'000, 100'000, 1'000'000};
    uint32_t rounds = 3;
    uint32_t leastMilliseconds = 50;
    std::string set = "shared";
    std::string clock = "wall";
    bool idleThread = false;
    std::string jsonFile;
    std::vector<std::string> operations;
    std::vector<std::string> subjects;
};

// Runs in the child. A waiting thread makes the process multi-threaded. This shows the cost of locks that a
// single-threaded process does not take.
int measure(size_t subject, const Workload& workload, const Settings& settings, Findings& findings) {
    try {
        if (settings.idleThread) std::thread([] { pause(); }).detach();
        kMeasures[subject](workload, settings, findings);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::strncpy(findings.failure.data(), error.what(), findings.failure.size() - 1);
        return EXIT_FAILURE;
    }
}

// Findings in memory shared with the child.
class SharedFindings {
public:
    SharedFindings() {
        void* const place = mmap(nullptr, sizeof(Findings), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (place == MAP_FAILED) throw std::bad_alloc();
        shared = new (place) Findings{};
    }
    SharedFindings(const SharedFindings&) = delete;
    SharedFindings& operator=(const SharedFindings&) = delete;
    ~SharedFindings() { munmap(shared, sizeof(Findings)); }

    Findings& operator*() const { return *shared; }

private:
    Findings* shared;
};

Findings measureInChild(size_t subject, const Workload& workload, const Settings& settings) {
    const SharedFindings findings;
    std::cout.flush();
    std::cerr.flush();
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
    if (child == 0) _exit(measure(subject, workload, settings, *findings));
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) throw std::runtime_error(std::string("waitpid: ") + std::strerror(errno));
    }
    const std::string name = kSubjectNames[subject];
    if (WIFSIGNALED(status)) throw std::runtime_error(name + " ended by signal " + std::to_string(WTERMSIG(status)));
    if (WEXITSTATUS(status) != EXIT_SUCCESS) throw std::runtime_error(name + ": " + (*findings).failure.data());
    return *findings;
}

void showProgress(uint32_t size, uint32_t round, uint32_t rounds, const char* subject) {
    if (isatty(STDERR_FILENO) == 0) return;
    std::fprintf(stderr, "\r%-60s\r%u entries, round %u of %u: %s ", "", size, round + 1, rounds, subject);
    std::fflush(stderr);
}

void clearProgress() {
    if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r%-60s\r", "");
}

SizeResult measureSize(uint32_t size, const Options& options, const Settings& settings,
                       const std::array<bool, kSubjects>& wanted) {
    const Workload workload = makeWorkload(options.set == "unique" ? EntrySet::unique : EntrySet::shared, size);
    std::array<std::vector<Findings>, kSubjects> rounds;
    for (uint32_t round = 0; round < options.rounds; ++round) {
        const Findings* compared = nullptr;
        for (size_t subject = 0; subject < kSubjects; ++subject) {
            if (!wanted[subject]) continue;
            showProgress(size, round, options.rounds, kSubjectNames[subject]);
            rounds[subject].push_back(measureInChild(subject, workload, settings));
            if (compared != nullptr && compared->digest != rounds[subject].back().digest) {
                throw std::runtime_error(std::string(kSubjectNames[subject]) + " holds other entries than the others");
            }
            compared = &rounds[subject].back();
        }
    }
    clearProgress();
    SizeResult result{size, wanted, {}};
    for (size_t subject = 0; subject < kSubjects; ++subject) {
        if (wanted[subject]) result.subjects[subject] = medianOf(rounds[subject]);
    }
    return result;
}

Settings settingsOf(const Options& options) {
    Settings settings{};
    settings.leastTime = std::chrono::milliseconds(options.leastMilliseconds);
    settings.processorTime = options.clock == "processor";
    settings.idleThread = options.idleThread;
    settings.wanted.fill(options.operations.empty());
    for (const Description& description : kDescriptions) {
        const auto& names = options.operations;
        if (std::find(names.begin(), names.end(), description.name) != names.end()) {
            settings.wanted[indexOf(description.operation)] = true;
        }
    }
    return settings;
}

void run(const Options& options) {
    const Settings settings = settingsOf(options);
    std::array<bool, kSubjects> wanted{};
    for (size_t subject = 0; subject < kSubjects; ++subject) {
        const auto& names = options.subjects;
        wanted[subject] = names.empty() || std::find(names.begin(), names.end(), kSubjectNames[subject]) != names.end();
    }
    RunResult results{options.set, options.clock, options.rounds, options.idleThread, {}};
    std::vector<uint32_t> sizes = options.sizes;
    std::sort(sizes.begin(), sizes.end());
    for (const uint32_t size : sizes) {
        results.sizes.push_back(measureSize(size, options, settings, wanted));
        std::cout << tableText(results.sizes.back(), results) << std::flush;
    }
    std::cout << growthText(results);
    if (options.jsonFile.empty()) return;
    std::ofstream json(options.jsonFile);
    json << jsonText(results);
    if (!json.flush()) throw std::runtime_error("cannot write " + options.jsonFile);
}

void declareOptions(CLI::App& app, Options& options) {
    std::vector<std::string> operations;
    for (const Description& description : kDescriptions) operations.emplace_back(description.name);
    const std::vector<std::string> subjects(kSubjectNames.begin(), kSubjectNames.end());
    app.add_option("--sizes", options.sizes, "Numbers of entries")->delimiter(',')->check(CLI::Range(1, 100'000'000));
    app.add_option("--repeat", options.rounds, "Rounds; results are medians over them")->check(CLI::Range(1, 1000));
    app.add_option("--set", options.set, "Entries: sources that send to many groups, or to one each")
        ->check(CLI::IsMember({"shared", "unique"}));
    app.add_option("--only", options.operations, "Measure these operations only; load and delete in any case")
        ->delimiter(',')
        ->check(CLI::IsMember(operations));
    app.add_option("--subjects", options.subjects, "Measure these subjects only")
        ->delimiter(',')
        ->check(CLI::IsMember(subjects));
    app.add_option("--clock", options.clock, "Wall-clock time, or processor time for a machine that is not idle")
        ->check(CLI::IsMember({"wall", "processor"}));
    app.add_flag("--idle-thread", options.idleThread, "Run a second, idle thread in the process");
    app.add_option("--least-time", options.leastMilliseconds, "Minimum duration of a measurement in milliseconds");
    app.add_option("--json", options.jsonFile, "Also write the results to this file");
}

}  // namespace
}  // namespace mcast6::bench

int main(int count, char** texts) {
    using namespace mcast6::bench;
    CLI::App app("Measures the library, its engine and a container side by side.", "mcast6bench");
    app.option_defaults()->always_capture_default();
    Options options;
    try {
        declareOptions(app, options);
        app.parse(count, texts);
        run(options);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mcast6bench: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
