// What the tool does with one table, whatever its records are: names, codes and operations, once for imports and
// displays alike.
// layer2_tables.h and layer3_tables.h hold one of these for each table that an import writes.
#pragma once

#include <cstdint>
#include <cstring>

#include "mcast6_db/iterator.h"

namespace mcast6::kernel {

template <class Record>
struct TableOperations {
    const char* databaseName;  // "l3mc6_mfib"

    // The record with the key of *record, into *record. 'absentCode' is its answer when there is none.
    uint32_t (*read)(Record* record);
    uint32_t absentCode;

    // Adds a record, and replaces one with the same key unless the table refuses that: see 'replace'.
    uint32_t (*write)(const Record* record);
    // Renews smooth version (where the record has one) and time of confirmation of a stored record, and nothing else.
    uint32_t (*restamp)(const Record* record);
    // Writes over a stored record; null: 'write' does. May take more than one step.
    uint32_t (*replace)(const Record* record) = nullptr;
    // Removes the record with this key.
    uint32_t (*remove)(const Record* record);

    // Puts what the kernel tells into a stored record of the same key; the host's own members stay. Returns whether
    // anything changed.
    bool (*merge)(const Record& told, Record& stored);

    uint32_t Record::*smoothVersion = nullptr;  // null: the record has none
    uint32_t Record::*appSrcPid = nullptr;      // the process that wrote it; null: the record has none
    uint32_t Record::*vrId = nullptr;           // null: the record belongs to no VR

    // All records: an iterator, null when it could not be made; its next record (MCAST6_DB_NO_RECORD at the end); its
    // end.
    Mcast6DbRes* (*openAll)();
    uint32_t (*step)(Mcast6DbRes* iterator, Record* record);
    void (*release)(Mcast6DbRes* iterator);

    // An iterator over the members of the entry that 'member' names, stepped and released as above. Null: there is
    // none, or the key of the entry is the whole key, so that 'read' finds the one member.
    Mcast6DbRes* (*openMembers)(const Record* member) = nullptr;
};

// TableOperations::merge that takes these members from what the kernel tells.
template <class Record, auto... kMembers>
bool mergeMembers([[maybe_unused]] const Record& told, [[maybe_unused]] Record& stored) {
    bool changed = false;
    [[maybe_unused]] const auto take = [&](const auto& from, auto& to) {
        changed |= std::memcmp(&from, &to, sizeof to) != 0;
        std::memcpy(&to, &from, sizeof to);
    };
    (take(told.*kMembers, stored.*kMembers), ...);
    return changed;
}

}  // namespace mcast6::kernel
