// The one rule by which what the kernel tells meets the record that is stored already, over any table.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "kernel/apply/changes.h"
#include "kernel/apply/table_operations.h"
#include "kernel/error.h"
#include "mcast6_platform/engine.h"

namespace mcast6::kernel {

// An iterator of a table, released with it. Throws TableError when there is none.
template <class Record>
class Walk {
public:
    Walk(const TableOperations<Record>& table, Mcast6DbRes* iterator) : table_(table), iterator_(iterator) {
        if (iterator == nullptr) throw TableError(std::string("making an iterator over ") + table.databaseName);
    }
    ~Walk() { table_.release(iterator_); }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    // The next record; false at the end.
    bool next(Record* record) {
        const uint32_t code = table_.step(iterator_, record);
        if (code == MCAST6_DB_NO_RECORD) return false;
        if (code != MCAST6_DB_SUCCESS) throw TableError(std::string("walking ") + table_.databaseName, code);
        return true;
    }

private:
    const TableOperations<Record>& table_;
    Mcast6DbRes* iterator_;
};

// Brings records into tables under one smooth version and in the name of one process, and counts what became of them.
class Applier {
public:
    explicit Applier(uint32_t smoothVersion);

    // Whether a record with a key may be stored already: it is not read when it can't.
    enum class Stored : uint8_t { kMaybe, kNo };

    // Throws TableError when the library fails; nothing was changed then, unless 'replace' takes more than one step.
    template <class Record>
    Fate bring(const TableOperations<Record>& table, Record told, Stored stored = Stored::kMaybe);

    // Removes the members of the entry that 'entry' names for which 'isGone' holds.
    template <class Record, class IsGone>
    void removeMembers(const TableOperations<Record>& table, const Record& entry, IsGone isGone);

    // Whether the table held any record before this began to bring some; whether it may hold any now.
    template <class Record>
    bool heldAny(const TableOperations<Record>& table) {
        return changeOf(table).heldAny;
    }
    template <class Record>
    bool mayHoldAny(const TableOperations<Record>& table) {
        const TableChange& change = changeOf(table);
        return change.heldAny || change.fates[Fate::kNew] > 0;
    }

    TableChanges changes() const { return {changes_.begin(), changes_.end()}; }

private:
    template <class Record>
    TableChange& changeOf(const TableOperations<Record>& table);

    template <class Record>
    void stamp(const TableOperations<Record>& table, Record& record) const {
        if (table.smoothVersion != nullptr) record.*table.smoothVersion = smoothVersion_;
        if (table.appSrcPid != nullptr) record.*table.appSrcPid = pid_;
    }

    template <class Record>
    static void check(const TableOperations<Record>& table, const char* doing, uint32_t code) {
        if (code == MCAST6_DB_SUCCESS) return;
        throw TableError(std::string(doing) + " its record of " + table.databaseName, code);
    }

    uint32_t smoothVersion_;
    uint32_t pid_;
    std::deque<TableChange> changes_;  // a reference into it stays
};

template <class Record>
TableChange& Applier::changeOf(const TableOperations<Record>& table) {
    for (TableChange& change : changes_) {
        if (change.table == &table) return change;
    }
    Record ignored;
    const bool holdsAny = Walk<Record>(table, table.openAll()).next(&ignored);
    return changes_.emplace_back(TableChange{&table, table.databaseName, holdsAny, {}, 0});
}

template <class Record>
Fate Applier::bring(const TableOperations<Record>& table, Record told, Stored stored) {
    TableChange& change = changeOf(table);
    stamp(table, told);
    if (stored == Stored::kMaybe) {
        Record record = told;
        const uint32_t found = table.read(&record);
        if (found != table.absentCode) {
            check(table, "reading", found);
            const bool changed = table.merge(told, record);
            stamp(table, record);
            const auto replace = table.replace != nullptr ? table.replace : table.write;
            check(table, changed ? "replacing" : "re-stamping", changed ? replace(&record) : table.restamp(&record));
            const Fate fate = changed ? Fate::kReplaced : Fate::kRestamped;
            ++change.fates[fate];
            return fate;
        }
    }
    check(table, "writing", table.write(&told));
    ++change.fates[Fate::kNew];
    return Fate::kNew;
}

template <class Record, class IsGone>
void Applier::removeMembers(const TableOperations<Record>& table, const Record& entry, IsGone isGone) {
    const auto remove = [&](const Record& member) {
        if (!isGone(member)) return;
        check(table, "removing", table.remove(&member));
        ++changeOf(table).removed;
    };
    if (table.openMembers == nullptr) {
        Record member = entry;
        const uint32_t code = table.read(&member);
        if (code == table.absentCode) return;
        check(table, "reading", code);
        return remove(member);
    }
    Walk<Record> members(table, table.openMembers(&entry));
    for (Record member{}; members.next(&member); member = Record{}) remove(member);
}

}  // namespace mcast6::kernel
