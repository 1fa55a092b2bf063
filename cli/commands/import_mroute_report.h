// What became of every entry of a capture of routes, and of every layer-3 table.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cli/commands/import_tables.h"
#include "cli/options/command.h"

namespace mcast6::ctl {

class RouteReport {
public:
    // Counts the records of the tables as they are before the import.
    RouteReport(const Tool& tool, std::string file, uint32_t smoothVersion);

    void count(uint32_t vrfId, Fate fate) { ++byVrf_[vrfId][fate]; }
    // An entry whose VRF could not be read.
    void count(Fate fate) { ++noVrf_[fate]; }
    // Outgoing interfaces of an entry that was imported.
    void countOutgoing(uint64_t interfaces) { outgoing_ += interfaces; }

    // A line about one entry on standard error; of many, the first ones only unless --verbose.
    void tell(const std::string& entry, const std::string& reason);

    bool empty() const { return total().sum() == 0; }

    // The summary on standard output.
    void print(const kernel::TableChanges& changes) const;

    // Of all entries.
    FateCounts total() const;

private:
    void printText(const kernel::TableChanges& changes) const;
    void printJson(const kernel::TableChanges& changes) const;

    const Tool& tool_;
    std::string file_;
    uint32_t smoothVersion_;
    std::map<uint32_t, FateCounts> byVrf_;
    FateCounts noVrf_;
    uint64_t outgoing_ = 0;
    uint64_t told_ = 0;
    TableReport tables_;
};

}  // namespace mcast6::ctl
