// What an import did to the tables of a layer.
#pragma once

#include <cstdint>
#include <vector>

#include "cli/output/output.h"
#include "cli/tables/layer.h"
#include "kernel/apply/changes.h"

namespace mcast6::ctl {

class TableReport {
public:
    // Counts the records of 'tables', which outlive this, as they are before the import.
    explicit TableReport(const StoredTables& tables);

    // A table on standard output, of the tables that hold or held anything.
    void print(const kernel::TableChanges& changes) const;
    // The member "tables", of all of them.
    void writeJson(JsonWriter& json, const kernel::TableChanges& changes) const;

private:
    struct Line {
        const StoredTable* table;
        uint64_t before;
        FateCounts fates;
        uint64_t removed;
        uint64_t after;
    };
    std::vector<Line> lines(const kernel::TableChanges& changes) const;

    const StoredTables& tables_;
    std::vector<uint64_t> before_;  // as tables_
};

}  // namespace mcast6::ctl
