// What every import shares: the fate of each entry of a capture, how it is told and added up, and the one rule by which an
// entry meets the record that is stored already.
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <map>
#include <string>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/output.h"

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

// What an import did to a table as a whole.
struct TableChange {
    const char* name;          // "l3-mfib"
    const char* databaseName;  // "l3mc6_mfib"
    uint32_t smoothVersion;
    uint64_t before;  // numbers of records
    uint64_t after;
};

// The fates of one capture, added up by VRF.
class ImportReport {
public:
    ImportReport(const Tool& tool, std::string file) : tool_(tool), file_(std::move(file)) {}

    void count(uint32_t vrfId, Fate fate) { ++byVrf_[vrfId][fate]; }
    // An entry whose VRF could not be read.
    void count(Fate fate) { ++noVrf_[fate]; }

    // A line about one entry on standard error; of many, the first ones only unless --verbose.
    void tell(const std::string& entry, const std::string& reason);

    bool empty() const { return total().sum() == 0; }

    // The summary on standard output.
    void print(const TableChange& change) const;

private:
    FateCounts total() const;
    void printJson(const TableChange& change) const;

    const Tool& tool_;
    std::string file_;
    std::map<uint32_t, FateCounts> byVrf_;
    FateCounts noVrf_;
    uint64_t told_ = 0;
};

// The operations of a table that an import uses.
template <class Record>
struct ImportTable {
    uint32_t (*read)(Record*);
    uint32_t absentCode;  // what 'read' answers when there is no such record
    uint32_t (*write)(const Record*);
    uint32_t (*restamp)(const Record*);
    // Puts what the capture tells into a record of the same key, and leaves the rest. Returns whether anything changed.
    bool (*merge)(const Record& captured, Record& stored);
    uint32_t Record::*smoothVersion;
    uint32_t Record::*appSrcPid = nullptr;         // null: the record has none
    uint32_t (*replace)(const Record*) = nullptr;  // null: 'write' replaces
};

// Brings 'captured' into the table. Throws Failure when the library fails; nothing was changed then, unless 'replace' takes
// more than one step.
template <class Record>
Fate importRecord(const ImportTable<Record>& table, const Record& captured) {
    Record record = captured;
    const uint32_t found = table.read(&record);
    if (found == table.absentCode) {
        const uint32_t code = table.write(&captured);
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure("writing it", code);
        return Fate::kNew;
    }
    if (found != MCAST6_DB_SUCCESS) throw libraryFailure("reading it", found);
    const bool changed = table.merge(captured, record);
    record.*table.smoothVersion = captured.*table.smoothVersion;
    if (table.appSrcPid != nullptr) record.*table.appSrcPid = captured.*table.appSrcPid;
    const auto replace = table.replace != nullptr ? table.replace : table.write;
    const uint32_t code = changed ? replace(&record) : table.restamp(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(changed ? "replacing it" : "re-stamping it", code);
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
