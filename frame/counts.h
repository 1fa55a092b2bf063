// Counts: all records of a table, or those with a key.
#pragma once

#include "frame/operation_outcomes.h"
#include "mcast6_platform/engine.h"

namespace mcast6 {

// Receives a count from the engine. 32 bits are used; the rest is room for an engine that writes 64.
struct alignas(uint64_t) CountWord {
    uint32_t low = 0;
    uint32_t high = 0;
};

// Counts all records with an object of type 9; '*count' is written on success.
template <class Table>
uint32_t countAll(uint32_t* count) {
    Mcast6DbHandle object = 0;
    uint32_t code = Table::objects.create(kCountObject, kConnType, &object);
    if (code != kOk) return code;
    CountWord counted;
    code = db_get_table_record_count(object, &counted.low);
    Table::objects.release(object);
    if (code == kOk) *count = counted.low;
    return code;
}

// Counts the records with a key, with an object of type 9. '*count' is written on success. A failed count is reported
// after the object is released.
template <class Table, const CountOutcomes& kOn>
uint32_t countByKey(const Mcast6DbKeyDesc* descriptor, const void* key, uint32_t* count) {
    static_assert(releasesEach(0, kOn.createFailed, kOn.countFailed), "the count releases its object itself");
    Step step;
    step.code = Table::objects.create(kCountObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &CountOutcomes::createFailed>(step);
    CountWord counted;
    step.code = db_get_table_record_count_by_key(step.object, descriptor, key, &counted.low);
    Table::objects.release(step.object);
    if (step.code != kOk) return conclude<Table, kOn, &CountOutcomes::countFailed>(step);
    *count = counted.low;
    return kOk;
}

// Returns the number of records with a key. The outcomes say what it returns when the object cannot be created or the
// count fails.
template <class Table, const MatchOutcomes& kOn>
uint32_t countMatches(const Mcast6DbKeyDesc* descriptor, const void* key) {
    static_assert(releasesEach(0, kOn.createFailed) && releasesEach(1, kOn.absent, kOn.countFailed),
                  "a count: after the create every exit releases the object exactly once");
    Step step;
    step.code = Table::objects.create(kCountObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &MatchOutcomes::createFailed>(step);
    CountWord counted;
    step.code = db_get_table_record_count_by_key(step.object, descriptor, key, &counted.low);
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &MatchOutcomes::absent>(step);
    if (step.code != kOk) return conclude<Table, kOn, &MatchOutcomes::countFailed>(step);
    Table::objects.release(step.object);
    return counted.low;
}

}  // namespace mcast6
