// How a table applies the steps of a batch.
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "platform/store/memory/table.h"

namespace mcast6::store::memory {

// Where the primary hash names this slot.
uint32_t Table::placeOf(uint32_t hash, uint32_t slot) const {
    return primary.find(hash, [&](uint32_t ref) { return ref == slot; });
}

bool Table::prepare(std::span<BatchStep> steps) {
    // Primary entries are prefetched so many steps ahead.
    constexpr size_t kAhead = 8;
    for (size_t i = 0; i < steps.size(); ++i) {
        steps[i].hash = primaryKey.hash(steps[i].step->key);
        primary.prefetch(steps[i].hash);
        if (i < kAhead) continue;
        if (prepareStep(steps[i - kAhead])) continue;
        undo(steps.first(i - kAhead));
        return false;
    }
    for (size_t i = steps.size() - std::min(steps.size(), kAhead); i < steps.size(); ++i) {
        if (prepareStep(steps[i])) continue;
        undo(steps.first(i));
        return false;
    }
    return true;
}

bool Table::prepareStep(BatchStep& step) {
    const Step& wanted = *step.step;
    step.standIn = Slabs::kNone;
    step.affected = 0;
    if (wanted.kind == Step::Kind::insert) {
        IndexKeys keys;
        hashKeys(wanted.row, allIndexes, keys);
        step.slot = add(wanted.row, step.hash, keys);
        return step.slot != Slabs::kNone;
    }
    step.slot = primary.at(
        primary.find(step.hash, [&](uint32_t slot) { return primaryKey.matches(slabs.row(slot), wanted.key); }));
    if (wanted.kind == Step::Kind::erase) return true;
    if (wanted.kind == Step::Kind::replace) return prepareStandIn(step, wanted.row, allIndexes);
    uint64_t touched = 0;
    for (uint64_t rest = wanted.fields; rest != 0; rest &= rest - 1) {
        touched |= indexesOf[static_cast<size_t>(std::countr_zero(rest))];
    }
    if (touched == 0) return true;
    std::array<std::byte, schema::kMaxRecordSize> changed;
    std::memcpy(changed.data(), slabs.row(step.slot), schema.recordSize);
    overlay(changed.data(), wanted.row, wanted.fields);
    return prepareStandIn(step, changed.data(), touched);
}

// Makes a stand-in for the record if it moves within any of the indexes in 'which'.
bool Table::prepareStandIn(BatchStep& step, const std::byte* row, uint64_t which) {
    const std::byte* const present = slabs.row(step.slot);
    for (uint64_t rest = which; rest != 0; rest &= rest - 1) {
        const auto i = static_cast<uint32_t>(std::countr_zero(rest));
        if (!indexes[i]->shape().sameKey(present, row)) step.affected |= uint64_t{1} << i;
    }
    if (step.affected == 0) return true;
    IndexKeys keys;
    hashKeys(row, step.affected, keys);
    prefetchAddition(step.affected, keys);
    if (!slabs.reserve() || !reserveKeys(step.affected, keys)) return false;
    step.standIn = slabs.take();
    store(step.standIn, row);
    for (uint64_t rest = step.affected; rest != 0; rest &= rest - 1) {
        const auto i = static_cast<uint32_t>(std::countr_zero(rest));
        indexes[i]->add(keys[i], step.standIn);
    }
    return true;
}

void Table::undo(std::span<const BatchStep> steps) {
    for (size_t i = steps.size(); i-- > 0;) {
        const BatchStep& step = steps[i];
        if (step.step->kind == Step::Kind::insert) {
            remove(placeOf(step.hash, step.slot), step.slot);
        } else if (step.standIn != Slabs::kNone) {
            IndexKeys keys;
            hashKeys(slabs.row(step.standIn), step.affected, keys);
            prefetchRemoval(step.standIn, step.affected, keys);
            for (uint64_t rest = step.affected; rest != 0; rest &= rest - 1) {
                GroupIndex& index = *indexes[static_cast<uint32_t>(std::countr_zero(rest))];
                index.remove(keys[static_cast<uint32_t>(std::countr_zero(rest))], step.standIn);
                index.trim();
            }
            slabs.release(step.standIn);
        }
    }
    moved();
}

void Table::finish(std::span<const BatchStep> steps) {
    // Removals come last: the room that they leave is of no use to the others, which need none.
    for (const BatchStep& step : steps) {
        if (step.step->kind != Step::Kind::erase) finishStep(step);
    }
    for (const BatchStep& step : steps) {
        if (step.step->kind == Step::Kind::erase) finishStep(step);
    }
    moved();
}

void Table::finishStep(const BatchStep& step) {
    const Step& wanted = *step.step;
    switch (wanted.kind) {
        case Step::Kind::insert:
            return;
        case Step::Kind::erase:
            return remove(placeOf(step.hash, step.slot), step.slot);
        case Step::Kind::replace:
        case Step::Kind::patch:
            if (step.standIn != Slabs::kNone) return takeStandInsPlace(step);
            if (wanted.kind == Step::Kind::replace) return store(step.slot, wanted.row);
            return overlay(slabs.row(step.slot), wanted.row, wanted.fields);
    }
}

void Table::takeStandInsPlace(const BatchStep& step) {
    const std::byte* const present = slabs.row(step.slot);
    const std::byte* const coming = slabs.row(step.standIn);
    for (uint64_t rest = step.affected; rest != 0; rest &= rest - 1) {
        GroupIndex& index = *indexes[static_cast<uint32_t>(std::countr_zero(rest))];
        KeyLookup old = index.lookup(present);
        index.probe(old);
        index.remove(old, step.slot);
        index.substitute(index.lookup(coming), step.standIn, step.slot);
        index.trim();
    }
    store(step.slot, coming);
    slabs.release(step.standIn);
}

}  // namespace mcast6::store::memory
