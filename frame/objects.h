// Engine objects: created and released for one operation, or created once and cached.
#pragma once

#include "frame/operation_outcomes.h"

namespace mcast6 {

template <class Table>
uint32_t createObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    static_assert(releasesEach(0, Table::onCreate.created, Table::onCreate.failed), "onCreate: releases nothing");
    const uint32_t code = Table::accessors.create(objType, connType, object);
    const Step step{.code = code, .objType = objType, .connType = connType};
    if (code != kOk) return conclude<Table, Table::onCreate, &CreateOutcomes::failed>(step);
    return conclude<Table, Table::onCreate, &CreateOutcomes::created>(step);
}

template <class Table, const Counter& kCounter>
void releaseObject(Mcast6DbHandle object) {
    Table::accessors.release(object);
    countOne<Table, kCounter>();
}

// Ensures that '*slot' holds a cached object, and resets it.
template <class Table, const CacheOutcomes& kOn>
uint32_t obtainCached(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot, const Mcast6DbCacheFuncs& funcs) {
    static_assert(releasesEach(0, kOn.createFailed, kOn.resetFailed), "cached objects are never released");
    Mcast6DbHandle object = *slot;
    Step step{.objType = objType, .connType = connType};
    if (object == 0) {
        step.code = funcs.create(objType, connType, &object);
        if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::createFailed>(step);
    }
    step.code = funcs.reset(object);
    if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::resetFailed>(step);
    *slot = object;
    return kOk;
}

}  // namespace mcast6
