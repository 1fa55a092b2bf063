// What an import did to the tables that it filled.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "cli/commands/import.h"
#include "cli/tables/layer.h"

namespace mcast6::ctl {

class TableChanges {
public:
    // Counts the records of 'tables', which outlive this, as they are before the import.
    explicit TableChanges(const StoredTables& tables);

    // The fate of a record in the table of this name, "l2mc6_elb".
    void count(const char* databaseName, Fate fate) { ++of_[databaseName].fates[fate]; }
    void countRemoved(const char* databaseName, uint64_t records) { of_[databaseName].removed += records; }

    // A table on standard output, of the tables that hold or held anything.
    void print() const;
    // The member "tables", of all of them.
    void writeJson(JsonWriter& json) const;

private:
    struct Counts {
        FateCounts fates;
        uint64_t removed = 0;
    };
    struct Change {
        const StoredTable* table;
        uint64_t before;
        Counts counts;
        uint64_t after;
    };
    std::vector<Change> changes() const;

    const StoredTables& tables_;
    std::vector<uint64_t> before_;  // as tables_
    std::map<std::string, Counts> of_;
};

}  // namespace mcast6::ctl
