// What became of every entry of a capture of routes, and of every layer-3 table.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cli/commands/import.h"
#include "cli/commands/import_tables.h"
#include "cli/options/command.h"

namespace mcast6::ctl {

class RouteReport {
public:
    RouteReport(const Tool& tool, std::string file, uint32_t smoothVersion)
        : tool_(tool), file_(std::move(file)), smoothVersion_(smoothVersion) {}

    void count(uint32_t vrfId, Fate fate) { ++byVrf_[vrfId][fate]; }
    // An entry whose VRF could not be read.
    void count(Fate fate) { ++noVrf_[fate]; }
    // Outgoing interfaces of an entry that was imported.
    void countOutgoing(uint64_t interfaces) { outgoing_ += interfaces; }

    // A line about one entry on standard error; of many, the first ones only unless --verbose.
    void tell(const std::string& entry, const std::string& reason);

    bool empty() const { return total().sum() == 0; }

    // The summary on standard output.
    void print(const TableChanges& changes) const;

private:
    FateCounts total() const;
    void printText(const TableChanges& changes) const;
    void printJson(const TableChanges& changes) const;

    const Tool& tool_;
    std::string file_;
    uint32_t smoothVersion_;
    std::map<uint32_t, FateCounts> byVrf_;
    FateCounts noVrf_;
    uint64_t outgoing_ = 0;
    uint64_t told_ = 0;
};

}  // namespace mcast6::ctl
