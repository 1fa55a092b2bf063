// What became of every row of a bridge's captures, and of every layer-2 table.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/import.h"
#include "cli/commands/import_tables.h"
#include "cli/options/command.h"

namespace mcast6::ctl {

// The kinds of rows.
enum class RowKind { kBridge, kVlan, kVlanPort, kRouterPort, kGroup };
constexpr size_t kRowKinds = 5;

class BridgeReport {
public:
    BridgeReport(const Tool& tool, std::string source, uint32_t smoothVersion);

    // The fate of a row. 'row' names it, and its file, in messages.
    void imported(RowKind kind) { ++rows_[static_cast<size_t>(kind)].imported; }
    void skipped(RowKind kind, const std::string& row, const std::string& reason);
    void refused(RowKind kind, const std::string& row, const std::string& reason);

    // A refused row that is told otherwise.
    void countRefused(RowKind kind) { ++rows_[static_cast<size_t>(kind)].refused; }

    // The summary on standard output.
    void print(const kernel::TableChanges& changes) const;

    // Of all rows.
    ImportCounts total() const;

private:
    struct RowCounts {
        uint64_t imported = 0;
        uint64_t skipped = 0;
        uint64_t refused = 0;
        uint64_t sum() const { return imported + skipped + refused; }
    };

    void tell(const std::string& row, const std::string& what, const std::string& reason);
    void printText(const kernel::TableChanges& changes) const;
    void printJson(const kernel::TableChanges& changes) const;

    const Tool& tool_;
    std::string source_;
    uint32_t smoothVersion_;
    RowCounts rows_[kRowKinds];
    std::map<std::pair<RowKind, std::string>, uint64_t> skipReasons_;
    TableReport tables_;
    uint64_t told_ = 0;
};

}  // namespace mcast6::ctl
