// Operations on iterators: create, step, release.
#pragma once

#include "frame/conversions.h"
#include "frame/operation_outcomes.h"
#include "mcast6_platform/engine.h"

namespace mcast6 {

// Applies the outcome of a failed creation and returns a null handle.
template <class Table, const auto& kOn, auto kExit>
Mcast6DbRes* concludeNull(const Step& step) {
    conclude<Table, kOn, kExit>(step);
    return nullptr;
}

template <class Table, const IterOutcomes& kOn>
Mcast6DbRes* createIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    static_assert(releasesEach(0, kOn.failed), "a failed iterator leaves no object");
    Mcast6DbRes* const iterator = MCAST6_DB_CreateIterCommon(&Table::objects, descriptor, key);
    if (iterator == nullptr) conclude<Table, kOn, &IterOutcomes::failed>({});
    return iterator;
}

// Sets the property that every root iterator gets: one record per step.
inline uint32_t setOneRecordPerStep(Mcast6DbHandle rootIter) {
    constexpr uint32_t kRecordsPerStep = 0;
    constexpr uint32_t kOne = 1;
    return db_set_root_iterator_property(rootIter, kRecordsPerStep, &kOne, sizeof kOne);
}

// As MCAST6_DB_CreateIterCommonWithDbRes, with an outcome for each step. 'built' is written on success only.
template <class Table, const auto& kOn>
uint32_t buildIterInto(Mcast6DbRes& built, const Mcast6DbKeyDesc* descriptor, const void* key) {
    using On = std::remove_cvref_t<decltype(kOn)>;
    static_assert(releasesEach(0, kOn.createFailed) && releasesEach(1, kOn.rootIterFailed, kOn.propertyFailed),
                  "a built iterator: after the create every failure releases the object exactly once");
    Step step;
    step.code = Table::objects.create(kIterateObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &On::createFailed>(step);

    Mcast6DbHandle rootIter = 0;
    step.code = db_create_root_iter(step.object, descriptor, key, &rootIter);
    if (step.code != kOk) return conclude<Table, kOn, &On::rootIterFailed>(step);
    step.code = setOneRecordPerStep(rootIter);
    if (step.code != kOk) return conclude<Table, kOn, &On::propertyFailed>(step);
    built = {step.object, rootIter};
    return kOk;
}

// Copies an iterator into a handle from the memory hook. Returns null if there is no memory.
template <class Table, const auto& kOn>
Mcast6DbRes* allocateIter(const Mcast6DbRes& built) {
    using On = std::remove_cvref_t<decltype(kOn)>;
    static_assert(releasesEach(1, kOn.allocationFailed), "a failed allocation releases the object exactly once");
    auto* const iterator = static_cast<Mcast6DbRes*>(MCAST6_DB_Malloc(sizeof built));
    if (iterator == nullptr) {
        conclude<Table, kOn, &On::allocationFailed>({.object = built.object});
        return nullptr;
    }
    *iterator = built;
    return iterator;
}

// As MCAST6_DB_CreateIterCommon, with an outcome for each step.
template <class Table, const BuildOutcomes& kOn>
Mcast6DbRes* buildIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    Mcast6DbRes built{};
    if (buildIterInto<Table, kOn>(built, descriptor, key) != kOk) return nullptr;
    return allocateIter<Table, kOn>(built);
}

// Reads the record at an iterator's position.
template <class Table>
uint32_t readPosition(const Mcast6DbRes& iterator, RowOf<Table>& row) {
    return db_read_obj_with_buf(iterator.object, nullptr, nullptr, row.data(), row.size);
}

// 'kGet' is given if a table converts the entries of an iterator differently from those of keyed reads.
template <class Table, const EntryOutcomes& kOn = Table::onEntry, auto kGet = Table::get>
uint32_t nextRecord(const Mcast6DbRes* iterator, typename Table::Record* record) {
    static_assert(
        releasesEach(0, kOn.nullParameter, kOn.ended, kOn.nextFailed, kOn.entry, kOn.vanished, kOn.readFailed),
        "a step keeps the iterator's object");
    if constexpr (kOn.nullParameter.isTested) {
        if (iterator == nullptr || record == nullptr) return conclude<Table, kOn, &EntryOutcomes::nullParameter>({});
    }
    Step step{.code = db_root_iterator_next(iterator->rootIter)};
    if (step.code == kEndOfIteration) return conclude<Table, kOn, &EntryOutcomes::ended>(step);
    if (step.code != kOk) return conclude<Table, kOn, &EntryOutcomes::nextFailed>(step);

    RowOf<Table> row;
    step.code = readPosition<Table>(*iterator, row);
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &EntryOutcomes::vanished>(step);
    if (step.code != kOk) return conclude<Table, kOn, &EntryOutcomes::readFailed>(step);
    kGet(row.data(), record);
    return conclude<Table, kOn, &EntryOutcomes::entry>(step);
}

// Steps an iterator and calls 'readItem' to read the record field by field from the handle's object.
template <class Table, const NextItemOutcomes& kOn, class ReadItem>
uint32_t nextItem(const Mcast6DbRes* iterator, typename Table::Record* record, ReadItem readItem) {
    static_assert(releasesEach(0, kOn.nullHandle, kOn.ended, kOn.nextFailed, kOn.entry),
                  "a step keeps the iterator's object");
    if constexpr (kOn.nullHandle.isTested) {
        if (iterator == nullptr) return conclude<Table, kOn, &NextItemOutcomes::nullHandle>({});
    }
    const Step step{.code = db_root_iterator_next(iterator->rootIter), .object = iterator->object};
    if (step.code == kEndOfIteration) return conclude<Table, kOn, &NextItemOutcomes::ended>(step);
    if (step.code != kOk) return conclude<Table, kOn, &NextItemOutcomes::nextFailed>(step);
    readItem(iterator->object, record);
    return conclude<Table, kOn, &NextItemOutcomes::entry>(step);
}

// Releases a handle and its object, which releases the root iterator.
template <class Table>
void releaseIter(Mcast6DbRes* iterator) {
    if (iterator == nullptr) return;
    Table::objects.release(iterator->object);
    MCAST6_DB_Free(iterator);
}

}  // namespace mcast6
