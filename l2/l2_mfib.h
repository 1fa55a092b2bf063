// Shared by the two layer-2 forwarding tables: a cached object for the fast read that is reset with the plain calls,
// the scan sorted by domain, and the hash-conflict count.
#pragma once

#include "frame/operations.h"

namespace mcast6 {

inline constexpr uint32_t kHashConflict = 5;  // error code

struct SortedScanOutcomes {
    Outcome statementFailed;
    Outcome filterFailed;
    Outcome propertyFailed;
    Outcome allocationFailed;
};

struct ConflictOutcomes {
    Outcome createFailed;
    Outcome countFailed;
};

// Ensures that '*slot' holds an object ready for use. A new object is not reset before its first use.
template <class Table, const CacheOutcomes& kOn>
uint32_t obtainKept(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot) {
    Step step{.objType = objType, .connType = connType};
    if (*slot != 0) {
        step.code = Table::resetObject(*slot, objType);
        return step.code == kOk ? kOk : conclude<Table, kOn, &CacheOutcomes::resetFailed>(step);
    }
    step.code = Table::accessors.create(objType, connType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::createFailed>(step);
    *slot = step.object;
    return kOk;
}

// Begins a statement on 'object' that walks all records in the order of a key.
inline uint32_t sortBy(Mcast6DbHandle object, const char* keyName, uint32_t keyWord) {
    constexpr uint32_t kStatement = 2;
    constexpr uint32_t kOrderedByKey = 3;
    uint32_t code = db_create_stmt(object, kStatement, nullptr, 0);
    code |= db_append_stmt_condition(object, keyName, kOrderedByKey, 0, nullptr, 0, &keyWord, nullptr, 0);
    return code;
}

// Iterates over all records in the order of a key. The statement calls are made even if no object could be created.
template <class Table, const SortedScanOutcomes& kOn>
Mcast6DbRes* sortedScan(const char* keyName, uint32_t keyWord) {
    static_assert(releasesEach(1, kOn.statementFailed, kOn.filterFailed, kOn.propertyFailed),
                  "a sorted scan: every failure releases the object exactly once");
    Step step;
    step.code = Table::objects.create(kIterateObject, kConnType, &step.object);
    step.code |= sortBy(step.object, keyName, keyWord);
    if (step.code != kOk) return concludeNull<Table, kOn, &SortedScanOutcomes::statementFailed>(step);

    Mcast6DbHandle rootIter = 0;
    step.code = db_create_root_iterator_by_filter(step.object, &rootIter);
    if (step.code != kOk) return concludeNull<Table, kOn, &SortedScanOutcomes::filterFailed>(step);
    step.code = setOneRecordPerStep(rootIter);
    if (step.code != kOk) return concludeNull<Table, kOn, &SortedScanOutcomes::propertyFailed>(step);
    return allocateIter<Table, kOn>({step.object, rootIter});
}

// Counts the records with the error code of a hash conflict. '*count' is written if an object was created: 0 after a
// failed count, whose message shows 0 in place of 15005.
template <class Table, const ConflictOutcomes& kOn>
uint32_t countConflicts(uint32_t* count) {
    static_assert(releasesEach(0, kOn.createFailed, kOn.countFailed), "the count releases the object itself");
    Step step;
    step.code = Table::objects.create(kCountObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &ConflictOutcomes::createFailed>(step);

    const auto key = keyOf<Table::kByErrCode>(kHashConflict);
    CountWord counted;
    uint32_t result = kOk;
    step.code = db_get_table_record_count_by_key(step.object, &key.descriptor, key.bytes, &counted.low);
    if (step.code != kOk) {
        if (step.code == kNoSuchObject) step.code = 0;
        result = conclude<Table, kOn, &ConflictOutcomes::countFailed>(step);
        counted.low = 0;
    }
    Table::objects.release(step.object);
    *count = counted.low;
    return result;
}

}  // namespace mcast6
