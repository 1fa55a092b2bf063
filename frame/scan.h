// Fast scans: iterators that reuse one process-wide object and root iterator instead of creating their own.
//
// A scan handle holds the cached pair and a flag. The first fast scan creates the pair, and every fast scan resets it.
// While a fast scan is in progress (the flag is set) a second one gets an ordinary iterator. Releasing the cached
// object only clears the flag, so the release operation of such a table checks for it first. The root iterator keeps
// the index it was created on: all fast scans of a table use keys of one index. The flag is a plain word: a host runs
// the fast scans of one table from one thread.
#pragma once

#include "frame/operations.h"

namespace mcast6 {

struct FastScanOutcomes {
    Outcome objectFailed;
    Outcome iteratorFailed;
    Outcome propertyFailed;
    Outcome allocationFailed;
};

// If 'object' is the scan handle's, marks the handle as free and returns true. Object 0 and an empty handle also match.
inline bool returnedToScan(Mcast6DbScanHandle& scan, Mcast6DbHandle object) {
    if (object != scan.object) return false;
    scan.inUse = 0;
    return true;
}

// Ensures that '*slot' holds a cached root iterator, positioned before the records of 'key': creates one if the slot is
// 0, and resets it in any case. One whose first reset fails is not kept in the slot.
template <class Table, const CacheOutcomes& kOn>
uint32_t obtainCachedIter(Mcast6DbHandle object, const Mcast6DbKeyDesc* descriptor, const void* key,
                          Mcast6DbHandle* slot) {
    Mcast6DbHandle rootIter = *slot;
    Step step;
    if (rootIter == 0) {
        step.code = db_create_cache_root_iter(object, descriptor, &rootIter);
        if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::createFailed>(step);
    }
    step.code = db_reset_cache_root_iter(rootIter, key);
    if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::resetFailed>(step);
    *slot = rootIter;
    return kOk;
}

// Returns an iterator on the table's scan handle, or an ordinary one while that is in use.
template <class Table, const FastScanOutcomes& kOn>
Mcast6DbRes* fastScan(const Mcast6DbKeyDesc* descriptor, const void* key) {
    static_assert(releasesEach(0, kOn.objectFailed, kOn.iteratorFailed, kOn.propertyFailed, kOn.allocationFailed),
                  "a fast scan keeps its object");
    Mcast6DbScanHandle& scan = Table::scan;
    if (scan.inUse != 0) return Table::ordinaryScan(descriptor, key);

    Step step;
    step.code = Table::cacheObject(kIterateObject, kConnType, &scan.object);
    if (step.code != kOk) return concludeNull<Table, kOn, &FastScanOutcomes::objectFailed>(step);
    step.code = Table::cacheIter(scan.object, descriptor, key, &scan.rootIter);
    if (step.code != kOk) return concludeNull<Table, kOn, &FastScanOutcomes::iteratorFailed>(step);
    step.code = setOneRecordPerStep(scan.rootIter);
    if (step.code != kOk) return concludeNull<Table, kOn, &FastScanOutcomes::propertyFailed>(step);

    auto* const iterator = static_cast<Mcast6DbRes*>(MCAST6_DB_Malloc(sizeof(Mcast6DbRes)));
    if (iterator == nullptr) return concludeNull<Table, kOn, &FastScanOutcomes::allocationFailed>(step);
    scan.inUse = 1;
    *iterator = {scan.object, scan.rootIter};
    return iterator;
}

}  // namespace mcast6
