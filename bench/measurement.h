// Measures all operations of one subject, in the same way for every subject.
//
// A subject provides, with 0 or more entries stored:
//     Record, Key               what is written and read back; what an entry is found by. Both made from a Seed
//     write, read, fastRead, update, erase
//                               one operation each; false when it failed
//     first(query, key, record), walk(query, key, visit), count(query, key)
//                               the first match, all matches, and how many there are
//     createObject, createIterator
//                               makes and releases one; only where kHasHandles
//     digest(record)            a number that is the same for the same entry in every subject
// Records are copied out whole.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/operations.h"
#include "bench/process_memory.h"
#include "bench/workload.h"

namespace mcast6::bench {

enum class Query : uint8_t { all, group, vrf };

struct Sample {
    double nanoseconds;  // per operation
    double allocations;  // per operation
};

// The results of a subject's process; plain memory, shared between processes.
struct Findings {
    std::array<Sample, kOperations> samples;
    std::array<bool, kOperations> measured;
    double loadedBytes;   // per entry, in addition to the process before loading
    double emptiedBytes;  // the same after deletion
    uint64_t digest;      // of all entries
    std::array<char, 200> failure;
};

struct Settings {
    std::array<bool, kOperations> wanted;
    std::chrono::nanoseconds leastTime;  // a measurement is repeated with more passes until it takes this long
    bool processorTime;                  // instead of wall-clock time
    bool idleThread;                     // in addition to the measuring thread
};

// Keeps the compiler from removing the computation of the value, and from assuming that memory is unchanged.
template <class Value>
void use(const Value& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

std::chrono::nanoseconds timeNow(bool processorTime);

template <class Subject>
class Measurement {
public:
    using Record = typename Subject::Record;
    using Key = typename Subject::Key;

    Measurement(const Workload& entries, const Settings& chosen, Findings& results)
        : workload(entries), settings(chosen), findings(results) {}

    void run() {
        prepare();
        touchFreeMemory(std::min(size() * kTouchedPerEntry, kMostTouched));
        const uint64_t before = residentBytes();
        load();
        findings.loadedBytes = bytesPerEntry(before);
        pointOperations();
        queries();
        handles();
        renew();
        erase();
        trimHeap();
        findings.emptiedBytes = bytesPerEntry(before);
    }

private:
    uint64_t size() const { return workload.seeds.size(); }

    std::vector<Key> keysAt(const std::vector<uint32_t>& positions) const {
        std::vector<Key> keys;
        keys.reserve(positions.size());
        for (const uint32_t position : positions) keys.emplace_back(Subject::key(workload.seeds[position]));
        return keys;
    }

    // Creates everything that is needed later, and writes and deletes a first entry, so that one-time memory of the
    // process is not counted for the entries.
    void prepare() {
        records.reserve(size());
        for (const Seed& seed : workload.seeds) records.push_back(Subject::record(seed));
        readKeys = keysAt(workload.readOrder);
        deleteKeys = keysAt(workload.deleteOrder);
        groupKeys = keysAt(workload.groups);
        vrfKeys = keysAt(workload.vrfs);
        const size_t sampled = std::min(size_t{kSampled}, readKeys.size());
        sampleRecords.reserve(sampled);
        for (size_t i = 0; i < sampled; ++i) sampleRecords.push_back(records[workload.readOrder[i]]);
        use(scratch);
        const Key key = Subject::key(workload.seeds[0]);
        check(subject.write(records[0]) && subject.fastRead(key, scratch) && subject.erase(key), "the first entry");
    }

    double bytesPerEntry(uint64_t before) const {
        return (static_cast<double>(residentBytes()) - static_cast<double>(before)) / static_cast<double>(size());
    }

    static void check(bool holds, const std::string& what) {
        if (!holds) throw std::runtime_error(what);
    }

    // Times 'passes' calls of 'pass'. Each performs 'operations' operations and returns how many of them failed.
    template <class Pass>
    std::chrono::nanoseconds timePasses(Operation operation, uint64_t operations, uint64_t passes, const Pass& pass) {
        const uint64_t allocationsBefore = allocationCount();
        const auto start = timeNow(settings.processorTime);
        uint64_t failures = 0;
        for (uint64_t i = 0; i < passes; ++i) failures += pass();
        const auto taken = timeNow(settings.processorTime) - start;
        const uint64_t allocations = allocationCount() - allocationsBefore;
        const char* const title = kDescriptions[indexOf(operation)].title;
        check(failures == 0, std::to_string(failures) + " operations failed: " + title);
        const double done = static_cast<double>(operations * passes);
        findings.samples[indexOf(operation)] = {static_cast<double>(taken.count()) / done,
                                                static_cast<double>(allocations) / done};
        findings.measured[indexOf(operation)] = true;
        return taken;
    }

    template <class Pass>
    void time(Operation operation, uint64_t operations, const Pass& pass) {
        if (!settings.wanted[indexOf(operation)]) return;
        for (uint64_t passes = 1; timePasses(operation, operations, passes, pass) < settings.leastTime; passes *= 4) {
        }
    }

    void load() {
        timePasses(Operation::load, size(), 1, [&] {
            uint64_t failures = 0;
            for (const Record& record : records) failures += !subject.write(record);
            return failures;
        });
        check(subject.count(Query::all, readKeys[0]) == size(), "not all entries were loaded");
    }

    void pointOperations() {
        time(Operation::rewrite, sampleRecords.size(), [&] {
            uint64_t failures = 0;
            for (const Record& record : sampleRecords) failures += !subject.write(record);
            return failures;
        });
        time(Operation::read, size(), [&] {
            uint64_t failures = 0;
            for (const Key& key : readKeys) {
                failures += !subject.read(key, scratch);
                use(scratch);
            }
            return failures;
        });
        time(Operation::fastRead, size(), [&] {
            uint64_t failures = 0;
            for (const Key& key : readKeys) {
                failures += !subject.fastRead(key, scratch);
                use(scratch);
            }
            return failures;
        });
        time(Operation::smoothUpdate, size(), [&] {
            uint64_t failures = 0;
            for (const Key& key : readKeys) failures += !subject.update(key, kSmoothVersion);
            return failures;
        });
    }

    void queries() {
        // Walked in any case, for the digest.
        time(Operation::walk, size(), [&] { return walkAll(); });
        check(walkAll() == 0, "a full walk did not return every entry once");
        const uint64_t sampled = std::min(size(), uint64_t{kSampled});
        timeQuery(Query::group, groupKeys, Operation::groupFirst, Operation::groupEntry, Operation::countGroup,
                  kRepeatedGroups, sampled);
        timeQuery(Query::vrf, vrfKeys, Operation::vrfFirst, Operation::vrfEntry, Operation::countVrf, kRepeatedVrfs,
                  size());
        time(Operation::countAll, kRepeatedAll, [&] {
            uint64_t failures = 0;
            for (int i = 0; i < kRepeatedAll; ++i) {
                use(subject);
                failures += subject.count(Query::all, readKeys[0]) != size();
            }
            return failures;
        });
    }

    // Returns, as a number of failures, whether an entry was missing or returned twice.
    uint64_t walkAll() {
        uint64_t entries = 0;
        uint64_t digest = 0;
        subject.walk(Query::all, readKeys[0], [&](const Record& record) {
            use(record);
            ++entries;
            digest += Subject::digest(record);
        });
        findings.digest = digest;
        return entries == size() ? 0 : 1;
    }

    // The counts are the number of entries that walks over the same keys must return.
    void timeQuery(Query query, const std::vector<Key>& keys, Operation first, Operation entry, Operation count,
                   int repeated, uint64_t mostWalked) {
        time(first, keys.size() * static_cast<size_t>(repeated), [&] {
            uint64_t failures = 0;
            for (int i = 0; i < repeated; ++i) {
                for (const Key& key : keys) {
                    failures += !subject.first(query, key, scratch);
                    use(scratch);
                }
            }
            return failures;
        });
        uint64_t matches = 0;
        size_t walked = 0;
        while (walked < keys.size() && matches < mostWalked) matches += subject.count(query, keys[walked++]);
        time(entry, matches, [&] {
            uint64_t entries = 0;
            for (size_t i = 0; i < walked; ++i) {
                subject.walk(query, keys[i], [&](const Record& record) {
                    use(record);
                    ++entries;
                });
            }
            return entries == matches ? uint64_t{0} : uint64_t{1};
        });
        time(count, keys.size() * static_cast<size_t>(repeated), [&] {
            uint64_t failures = 0;
            for (int i = 0; i < repeated; ++i) {
                for (const Key& key : keys) failures += subject.count(query, key) == 0;
            }
            return failures;
        });
    }

    void handles() {
        if constexpr (Subject::kHasHandles) {
            time(Operation::object, kSampled, [&] {
                uint64_t failures = 0;
                for (uint32_t i = 0; i < kSampled; ++i) failures += !subject.createObject();
                return failures;
            });
            time(Operation::iterator, kSampled, [&] {
                uint64_t failures = 0;
                for (uint32_t i = 0; i < kSampled; ++i) failures += !subject.createIterator();
                return failures;
            });
        }
    }

    void renew() {
        time(Operation::renewal, sampleRecords.size(), [&] {
            uint64_t failures = 0;
            for (size_t i = 0; i < sampleRecords.size(); ++i) {
                failures += !subject.erase(readKeys[i]);
                failures += !subject.write(sampleRecords[i]);
            }
            return failures;
        });
        check(subject.count(Query::all, readKeys[0]) == size(), "entries were lost");
    }

    void erase() {
        timePasses(Operation::erase, size(), 1, [&] {
            uint64_t failures = 0;
            for (const Key& key : deleteKeys) failures += !subject.erase(key);
            return failures;
        });
        check(subject.count(Query::all, readKeys[0]) == 0, "entries were left after deletion");
    }

    static constexpr uint32_t kSampled = 100'000;
    static constexpr uint64_t kTouchedPerEntry = 1024;  // bytes; more than any subject uses
    static constexpr uint64_t kMostTouched = uint64_t{2} << 30;
    static constexpr uint32_t kSmoothVersion = 7;
    static constexpr int kRepeatedGroups = 1;
    static constexpr int kRepeatedVrfs = 8;
    static constexpr int kRepeatedAll = 1000;

    const Workload& workload;
    const Settings& settings;
    Findings& findings;
    Subject subject;
    std::vector<Record> records;
    std::vector<Record> sampleRecords;  // of the first keys of readKeys
    std::vector<Key> readKeys;
    std::vector<Key> deleteKeys;
    std::vector<Key> groupKeys;
    std::vector<Key> vrfKeys;
    Record scratch;
};

}  // namespace mcast6::bench
