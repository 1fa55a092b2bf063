#include "platform/store/memory/table.h"

#include <bit>
#include <cstring>
#include <stdexcept>

#include "platform/schema/copy_field.h"
#include "platform/store/memory/scan.h"

namespace mcast6::store::memory {
namespace {

// Calls f(i) for every bit i of 'set'.
template <class F>
void forEachBit(uint64_t set, const F& f) {
    for (; set != 0; set &= set - 1) f(static_cast<uint32_t>(std::countr_zero(set)));
}

}  // namespace

Table::Table(const schema::Table& description, WriterGate& writerGate)
    : schema(description),
      primaryKey(description.primary),
      slabs(memory, description.recordSize, description.indexes.size()),
      pool(memory),
      primary(memory),
      gate(writerGate) {
    if (description.indexes.size() > kIndexes) throw std::length_error("too many indexes");
    for (uint32_t i = 0; i < description.indexes.size(); ++i) {
        indexes.push_back(std::make_unique<GroupIndex>(description.indexes[i], i, memory, slabs, pool));
        allIndexes |= uint64_t{1} << i;
        for (size_t field = 0; field < description.fields.size(); ++field) {
            const schema::Field& covered = description.fields[field];
            if (indexes[i]->shape().covers(covered.offset, covered.width)) indexesOf[field] |= uint64_t{1} << i;
        }
    }
    uint16_t end = 0;
    for (const schema::Field& field : description.fields) {
        if (field.offset > end) gaps.push_back({end, static_cast<uint16_t>(field.offset - end)});
        end = static_cast<uint16_t>(field.offset + field.width);
    }
    if (description.recordSize > end) gaps.push_back({end, static_cast<uint16_t>(description.recordSize - end)});
}

Answer Table::put(const std::byte* row) {
    const uint32_t hash = primaryKey.hashOf(row);
    const StepGuard guard(lock, gate);
    primary.prefetch(hash);
    IndexKeys keys;
    hashKeys(row, allIndexes, keys);
    const uint32_t place = primary.find(hash, [&](uint32_t slot) { return primaryKey.sameKey(slabs.row(slot), row); });
    if (place == SlotHash::kNone) return insert(row, hash, keys);
    if (schema.presentWrite == schema::PresentWrite::refused) return Answer::present;
    return change(primary.at(place), row, allIndexes) ? Answer::present : Answer::noMemory;
}

Answer Table::insert(const std::byte* row, uint32_t hash, IndexKeys& keys) {
    if (schema.capacity != 0 && slabs.records() >= schema.capacity) return Answer::full;
    if (add(row, hash, keys) == Slabs::kNone) return Answer::noMemory;
    moved();
    return Answer::done;
}

// Adds a record whose key is absent, and returns its slot; Slabs::kNone when there is no memory.
uint32_t Table::add(const std::byte* row, uint32_t hash, IndexKeys& keys) {
    prefetchAddition(allIndexes, keys);
    if (!slabs.reserve() || !primary.reserve(hash) || !reserveKeys(allIndexes, keys)) return Slabs::kNone;
    const uint32_t slot = slabs.take();
    store(slot, row);
    primary.insert(hash, slot);
    for (uint32_t i = 0; i < indexes.size(); ++i) indexes[i]->add(keys[i], slot);
    return slot;
}

// Hashes the keys of a row in the indexes in 'which' and prefetches their entries: one arrives while the next is
// hashed.
void Table::hashKeys(const std::byte* row, uint64_t which, IndexKeys& keys) const {
    forEachBit(which, [&](uint32_t i) {
        keys[i] = indexes[i]->lookup(row);
        indexes[i]->prefetch(keys[i]);
    });
}

void Table::prefetchAddition(uint64_t which, IndexKeys& keys) const {
    forEachBit(which, [&](uint32_t i) { indexes[i]->probe(keys[i]); });
    forEachBit(which, [&](uint32_t i) { indexes[i]->prefetchAddition(keys[i]); });
}

void Table::prefetchRemoval(uint32_t slot, uint64_t which, IndexKeys& keys) const {
    forEachBit(which, [&](uint32_t i) { indexes[i]->probe(keys[i]); });
    forEachBit(which, [&](uint32_t i) { indexes[i]->prefetchEntries(keys[i], slot); });
    forEachBit(which, [&](uint32_t i) { indexes[i]->prefetchRemoval(keys[i]); });
}

bool Table::reserveKeys(uint64_t which, IndexKeys& keys) {
    for (uint64_t rest = which; rest != 0; rest &= rest - 1) {
        const auto i = static_cast<uint32_t>(std::countr_zero(rest));
        if (indexes[i]->reserve(keys[i])) continue;
        forEachBit(which & ~rest, [&](uint32_t done) { indexes[done]->cancelReserve(keys[done]); });
        return false;
    }
    return true;
}

// Puts 'row' in the place of the record in 'slot', which moves within the indexes in 'which' whose key it changes.
bool Table::change(uint32_t slot, const std::byte* row, uint64_t which) {
    const std::byte* const present = slabs.row(slot);
    uint64_t affected = 0;
    forEachBit(which, [&](uint32_t i) {
        if (!indexes[i]->shape().sameKey(present, row)) affected |= uint64_t{1} << i;
    });
    IndexKeys keys;
    hashKeys(row, affected, keys);
    prefetchAddition(affected, keys);
    if (!reserveKeys(affected, keys)) return false;
    forEachBit(affected, [&](uint32_t i) {
        GroupIndex& index = *indexes[i];
        KeyLookup old = index.lookup(present);
        index.probe(old);
        index.remove(old, slot);
        index.find(keys[i]);
        index.add(keys[i], slot);
        index.trim();
    });
    store(slot, row);
    moved();
    return true;
}

void Table::store(uint32_t slot, const std::byte* row) {
    std::byte* const cell = slabs.row(slot);
    std::memcpy(cell, row, schema.recordSize);
    for (const Gap& gap : gaps) std::memset(cell + gap.offset, 0, gap.width);
}

void Table::overlay(std::byte* row, const std::byte* from, uint64_t fields) const {
    forEachBit(fields, [&](uint32_t i) {
        const schema::Field& field = schema.fields[i];
        schema::copyField(row + field.offset, from + field.offset, field.width);
    });
}

Answer Table::get(const std::byte* key, std::byte* row) const { return read(key, row); }

Answer Table::getShared(const std::byte* key, uint32_t hash, std::byte* row) const {
    const ReadGuard guard(lock);
    return copyOut(key, hash, row);
}

Answer Table::patch(const std::byte* key, const std::byte* row, uint64_t fields) {
    if (!primaryKey.accepts(key)) return Answer::absent;
    const uint32_t hash = primaryKey.hash(key);
    uint64_t touched = 0;
    forEachBit(fields, [&](uint32_t i) { touched |= indexesOf[i]; });
    const StepGuard guard(lock, gate);
    const uint32_t slot = find(key, hash).slot;
    if (slot == Slabs::kNone) return Answer::absent;
    if (touched == 0) {
        overlay(slabs.row(slot), row, fields);
        moved();
        return Answer::done;
    }
    std::array<std::byte, schema::kMaxRecordSize> changed;
    std::memcpy(changed.data(), slabs.row(slot), schema.recordSize);
    overlay(changed.data(), row, fields);
    return change(slot, changed.data(), touched) ? Answer::done : Answer::noMemory;
}

Answer Table::erase(const std::byte* key) {
    if (!primaryKey.accepts(key)) return Answer::absent;
    const uint32_t hash = primaryKey.hash(key);
    const StepGuard guard(lock, gate);
    const uint32_t place = primary.find(hash, [&](uint32_t slot) { return primaryKey.matches(slabs.row(slot), key); });
    if (place == SlotHash::kNone) return Answer::absent;
    remove(place, primary.at(place));
    moved();
    return Answer::done;
}

// Removes the record in 'slot', to which 'place' in the primary hash leads.
void Table::remove(uint32_t place, uint32_t slot) {
    slabs.prefetch(slot);
    slabs.prefetchPlaces(slot);
    IndexKeys keys;
    hashKeys(slabs.row(slot), allIndexes, keys);
    prefetchRemoval(slot, allIndexes, keys);
    for (uint32_t i = 0; i < indexes.size(); ++i) {
        indexes[i]->remove(keys[i], slot);
        indexes[i]->trim();
    }
    primary.erase(place);
    primary.trim();
    slabs.release(slot);
    if (slabs.records() == 0) pool.purge();
}

uint64_t Table::count() const {
    const ReadGuard guard(lock);
    return slabs.records();
}

uint64_t Table::countByKey(uint32_t index, const std::byte* key) const {
    const KeyShape& shape = indexes[index]->shape();
    if (!shape.accepts(key)) return 0;
    const uint32_t hash = shape.hash(key);
    const ReadGuard guard(lock);
    return indexes[index]->count(hash, key);
}

uint64_t Table::memoryBytes() const {
    const ReadGuard guard(lock);
    return sizeof *this + indexes.size() * sizeof(GroupIndex) + memory.bytes();
}

std::unique_ptr<Scan> Table::open(const ScanRange& range) {
    std::unique_ptr<BatchedScan> scan = BatchedScan::make(*this, range);
    if (scan != nullptr) (void)scan->restart(range.key);
    return scan;
}

}  // namespace mcast6::store::memory
