// What every import shares: the fate of each entry of a capture, how it is told and added up, and the one rule by which an
// entry meets the record that is stored already.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/output/output.h"
#include "kernel/apply/table_operations.h"
#include "kernel/capture/link_table.h"

namespace mcast6::ctl {

enum class Fate {
    kNew,        // written; there was no such record
    kReplaced,   // written over a record that differed
    kRestamped,  // the record is as the capture has it: only its smooth version and time are new
    kSkipped,    // valid, but the table does not hold the like
    kRefused,    // wrong; told on standard error
};
constexpr size_t kFates = 5;

struct FateCounts {
    uint64_t of[kFates] = {};
    uint64_t& operator[](Fate fate) { return of[static_cast<size_t>(fate)]; }
    uint64_t operator[](Fate fate) const { return of[static_cast<size_t>(fate)]; }
    uint64_t sum() const;
};

// The smooth version and the process that an import's records get.
struct Stamp {
    uint32_t smoothVersion;
    uint32_t pid;

    template <class Record>
    void put(const kernel::TableOperations<Record>& table, Record& record) const {
        if (table.smoothVersion != nullptr) record.*table.smoothVersion = smoothVersion;
        if (table.appSrcPid != nullptr) record.*table.appSrcPid = pid;
    }
};

// Brings 'captured' into the table. Throws Failure when the library fails; nothing was changed then, unless 'replace' takes
// more than one step.
template <class Record>
Fate importRecord(const kernel::TableOperations<Record>& table, Record captured, const Stamp& stamp) {
    stamp.put(table, captured);
    Record record = captured;
    const uint32_t found = table.read(&record);
    const auto doing = [&](const char* what) { return fmt::format("{} its record of {}", what, table.databaseName); };
    if (found == table.absentCode) {
        const uint32_t code = table.write(&captured);
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure(doing("writing"), code);
        return Fate::kNew;
    }
    if (found != MCAST6_DB_SUCCESS) throw libraryFailure(doing("reading"), found);
    const bool changed = table.merge(captured, record);
    stamp.put(table, record);
    const auto replace = table.replace != nullptr ? table.replace : table.write;
    const uint32_t code = changed ? replace(&record) : table.restamp(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(doing(changed ? "replacing" : "re-stamping"), code);
    return changed ? Fate::kReplaced : Fate::kRestamped;
}

// What displays and filters need of a link list.
std::vector<LinkName> namesOf(const LinkTable& links);

// A bar on standard error, when that is a terminal and the work is long.
class Progress {
public:
    Progress(std::string what, uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void at(uint64_t done);
    // Before anything else is printed.
    void clear();

private:
    std::string what_;
    uint64_t total_;
    uint64_t percentShown_ = 101;
    bool shown_;
};

}  // namespace mcast6::ctl
