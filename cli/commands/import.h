// What every import shares: the fate of each entry of a capture, how it is told and added up, and the one rule by which an
// entry meets the record that is stored already.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/output/output.h"

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

// Takes these members from the capture and leaves the host's own. Returns whether anything changed.
template <class Record, auto... kMembers>
bool mergeMembers([[maybe_unused]] const Record& captured, [[maybe_unused]] Record& stored) {
    bool changed = false;
    [[maybe_unused]] const auto take = [&](const auto& from, auto& to) {
        changed |= std::memcmp(&from, &to, sizeof to) != 0;
        std::memcpy(&to, &from, sizeof to);
    };
    (take(captured.*kMembers, stored.*kMembers), ...);
    return changed;
}

// The operations of a table that an import uses.
template <class Record>
struct ImportTable {
    const char* databaseName;
    uint32_t (*read)(Record*);
    uint32_t absentCode;  // what 'read' answers when there is no such record
    uint32_t (*write)(const Record*);
    uint32_t (*restamp)(const Record*);
    // Puts what the capture tells into a record of the same key, and leaves the rest. Returns whether anything changed.
    bool (*merge)(const Record& captured, Record& stored);
    uint32_t Record::*smoothVersion = nullptr;     // null: the record has none
    uint32_t Record::*appSrcPid = nullptr;         // the same
    uint32_t (*replace)(const Record*) = nullptr;  // null: 'write' replaces
};

// The smooth version and the process that an import's records get.
struct Stamp {
    uint32_t smoothVersion;
    uint32_t pid;

    template <class Record>
    void put(const ImportTable<Record>& table, Record& record) const {
        if (table.smoothVersion != nullptr) record.*table.smoothVersion = smoothVersion;
        if (table.appSrcPid != nullptr) record.*table.appSrcPid = pid;
    }
};

// Brings 'captured' into the table. Throws Failure when the library fails; nothing was changed then, unless 'replace' takes
// more than one step.
template <class Record>
Fate importRecord(const ImportTable<Record>& table, Record captured, const Stamp& stamp) {
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
