#include "platform/store/shared/table.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace mcast6::store::shared {
namespace {

// Calls f(i) for every bit i of 'set'.
template <class F>
void forEachBit(uint64_t set, const F& f) {
    for (; set != 0; set &= set - 1) f(static_cast<uint32_t>(std::countr_zero(set)));
}

constexpr size_t aligned(size_t size) { return (size + 7) / 8 * 8; }

}  // namespace

Table::Table(Region& in, const schema::Table& description, const HashSecrets& secrets)
    : region(in),
      schema(description),
      primaryKey(description.primary, secrets),
      stride(aligned(description.recordSize)) {
    if (description.indexes.size() > kIndexes) throw std::length_error("too many indexes");
    for (uint32_t i = 0; i < description.indexes.size(); ++i) {
        shapes.push_back(std::make_unique<KeyShape>(description.indexes[i], secrets));
        allIndexes |= uint64_t{1} << i;
        for (size_t field = 0; field < description.fields.size(); ++field) {
            const schema::Field& covered = description.fields[field];
            if (shapes[i]->covers(covered.offset, covered.width)) indexesOf[field] |= uint64_t{1} << i;
        }
    }
    uint16_t end = 0;
    for (const schema::Field& field : description.fields) {
        if (field.offset > end) gaps.push_back({end, static_cast<uint16_t>(field.offset - end)});
        end = static_cast<uint16_t>(field.offset + field.width);
    }
    if (description.recordSize > end) gaps.push_back({end, static_cast<uint16_t>(description.recordSize - end)});
}

Ref Table::create() {
    at = region.take(sizeof(TableHead));
    TableHead empty{};
    empty.spareSlab = kNone;
    region.fill(&head(), &empty, sizeof empty);
    return at;
}

// The thread sanitizer is shown a copy that was made as it wants it.
inline bool Table::matches(const KeyShape& shape, const std::byte* row, const std::byte* key) const {
    if constexpr (kThreadSanitized) {
        std::array<std::byte, schema::kMaxRecordSize> copy;
        copyOut(copy.data(), row, schema.recordSize);
        return shape.matches(copy.data(), key);
    } else {
        return shape.matches(row, key);
    }
}

const std::byte* Table::find(const View& view, uint32_t hash, const std::byte* key) const {
    const RowsView cells = rows(view);
    const std::byte* found = nullptr;
    primaryView(view).find(hash, [&](uint32_t slot) {
        const std::byte* const row = cells.row(slot);
        if (!matches(primaryKey, row, key)) return false;
        found = row;
        return true;
    });
    return found;
}

uint64_t Table::countByKey(const View& view, uint32_t index, uint32_t hash, const std::byte* key) const {
    const RowsView cells = rows(view);
    uint64_t records = 0;
    indexView(view, index).find(hash, [&](uint32_t ref) {
        if (!matches(*shapes[index], cells.row(sampleOf(view, ref)), key)) return false;
        records = isSet(ref) ? SlotSet::count(view, ref & ~kSet) : 1;
        return true;
    });
    return records;
}

uint32_t Table::nextSlots(const View& view, uint32_t from, uint32_t* to, uint32_t wanted) const {
    const RowsView cells = rows(view);
    uint32_t found = 0;
    for (; found < wanted; ++found) {
        const uint32_t slot = cells.next(from);
        if (slot == kNone) break;
        to[found] = slot;
        from = slot + 1;
    }
    return found;
}

uint32_t Table::nextSlots(const View& view, uint32_t index, uint32_t hash, const std::byte* key, uint32_t from,
                          uint32_t* to, uint32_t wanted) const {
    const RowsView cells = rows(view);
    uint32_t found = 0;
    indexView(view, index).find(hash, [&](uint32_t ref) {
        if (!matches(*shapes[index], cells.row(sampleOf(view, ref)), key)) return false;
        if (isSet(ref)) {
            found = SlotSet::next(view, ref & ~kSet, from, to, wanted);
        } else if (ref >= from) {
            to[0] = ref;
            found = 1;
        }
        return true;
    });
    return found;
}

bool Table::nextKey(const View& view, uint32_t index, const OrderKey* after, OrderKey& key) const {
    const Ref order = peek(head(view).orders[index]);
    if (order == 0) return false;
    view.expect(order, sizeof(ListHead));
    const auto isBefore = [after](const OrderKey& other) { return after != nullptr && !(*after < other); };
    return Orders::next(view, order, isBefore, &key, 1) == 1;
}

uint32_t Table::findPrimary(const std::byte* key, uint32_t hash) const {
    const View view = region.view();
    const RowsView cells = rows(view);
    return primaryView(view).find(hash, [&](uint32_t slot) { return primaryKey.matches(cells.row(slot), key); });
}

uint32_t Table::findLike(uint32_t index, uint32_t hash, const std::byte* row) const {
    const View view = region.view();
    const RowsView cells = rows(view);
    return indexView(view, index).find(hash, [&](uint32_t ref) {
        return shapes[index]->sameKey(cells.row(sampleOf(view, ref)), row);
    });
}

OrderKey Table::orderKey(uint32_t index, const std::byte* row) const {
    KeyBuffer room;
    OrderKey key;
    shapes[index]->flip(shapes[index]->of(row, room), key.bytes.data());
    return key;
}

void Table::openAll() {
    if ((head().sequence & 1) == 0) region.openSequence(head().sequence);
}

void Table::openRows() {
    if ((head().rowSequence & 1) == 0) region.openSequence(head().rowSequence);
}

void Table::close() {
    if ((head().rowSequence & 1) != 0) region.closeSequence(head().rowSequence);
    if ((head().sequence & 1) != 0) region.closeSequence(head().sequence);
}

void Table::disturb() {
    openAll();
    openRows();
    close();
}

void Table::clean(std::byte* row) const {
    for (const Gap& gap : gaps) std::memset(row + gap.offset, 0, gap.width);
}

void Table::hashKeys(const std::byte* row, uint64_t which, Lookups& keys) const {
    const View view = region.view();
    forEachBit(which, [&](uint32_t i) {
        keys[i].hash = shapes[i]->hashOf(row);
        keys[i].place = kNone;
        keys[i].larger = {};
        indexView(view, i).prefetch(keys[i].hash);
    });
}

// Each round brings what the next one reads, for all indexes, so that they wait once where the work itself would wait
// for each.
void Table::prefetchChange(uint64_t which, Lookups& keys, uint32_t slot, bool isAddition) const {
    const View view = region.view();
    const RowsView cells = rows(view);
    std::array<uint32_t, kIndexes> refs;
    forEachBit(which, [&](uint32_t i) {
        const HashView entries = indexView(view, i);
        keys[i].place = entries.probe(keys[i].hash);
        refs[i] = kNone;
        if (keys[i].place == kNone) return;
        refs[i] = entries.at(keys[i].place);
        if (isSet(refs[i])) {
            SlotSet::prefetch(view, refs[i] & ~kSet);
        } else if (isAddition) {
            shapes[i]->prefetch(cells.row(refs[i]));
        }
    });
    forEachBit(which, [&](uint32_t i) {
        if (refs[i] == kNone || !isSet(refs[i])) return;
        const Ref set = refs[i] & ~kSet;
        SlotSet::prefetchSlot(view, set, slot);
        if (isAddition) shapes[i]->prefetch(cells.row(SlotSet::sample(view, set)));
    });
}

// Where each key stands, and room for it where it is new.
void Table::findKeys(const std::byte* row, uint64_t which, Lookups& keys) {
    forEachBit(which, [&](uint32_t i) {
        if (keys[i].place != kNone) keys[i].place = findLike(i, keys[i].hash, row);
        if (keys[i].place == kNone) keys[i].larger = indexWriter(i).prepare(keys[i].hash);
    });
}

void Table::add(uint32_t index, const Lookup& key, uint32_t slot, const std::byte* row) {
    HashWriter entries = indexWriter(index);
    if (key.place == kNone) {
        entries.adopt(key.larger);
        entries.insert(key.hash, slot);
        if (!isSorted(index)) return;
        const Ref& order = head().orders[index];
        const Ref present = order != 0 ? order : Orders::make(region, 4);
        const Ref now = Orders::insert(region, present, orderKey(index, row), 0);
        if (now != order) region.set(order, now);
        return;
    }
    const uint32_t ref = indexView(region.view(), index).at(key.place);
    const Ref now =
        isSet(ref) ? SlotSet::insert(region, ref & ~kSet, slot, slotsEnd()) : SlotSet::make(region, ref, slot);
    if ((now | kSet) != ref) entries.setRef(key.place, now | kSet);
}

void Table::remove(uint32_t index, uint32_t hash, uint32_t slot, const std::byte* row) {
    const View view = region.view();
    const HashView entries = indexView(view, index);
    // The record is in the index: where one entry has the hash it is the key's, and no record need be looked at.
    uint32_t place = entries.probe(hash);
    if (place != kNone && entries.hashAt(place + 1) == hash) place = findLike(index, hash, row);
    if (place == kNone) throw Torn{};
    const uint32_t ref = entries.at(place);
    HashWriter writer = indexWriter(index);
    if (!isSet(ref)) {
        writer.erase(place);
        if (!isSorted(index)) return;
        const Ref& order = head().orders[index];
        const Ref now = Orders::erase(region, order, orderKey(index, row));
        if (view.at<ListHead>(now).count == 0) {
            Orders::drop(region, now);
            region.set(order, 0);
        } else if (now != order) {
            region.set(order, now);
        }
        return;
    }
    const Ref set = SlotSet::erase(region, ref & ~kSet, slot);
    if (SlotSet::count(view, set) == 1) {
        uint32_t last = 0;
        if (SlotSet::next(view, set, 0, &last, 1) != 1) throw Torn{};
        SlotSet::drop(region, set);
        writer.setRef(place, last);
    } else if ((set | kSet) != ref) {
        writer.setRef(place, set | kSet);
    }
}

Answer Table::put(const std::byte* row) {
    const uint32_t hash = primaryKey.hashOf(row);
    const View view = region.view();
    const RowsView cells = rows(view);
    const uint32_t place =
        primaryView(view).find(hash, [&](uint32_t slot) { return primaryKey.sameKey(cells.row(slot), row); });
    if (place == kNone) return insert(row, hash);
    if (schema.presentWrite == schema::PresentWrite::refused) return Answer::present;
    std::array<std::byte, schema::kMaxRecordSize> cleaned;
    std::memcpy(cleaned.data(), row, schema.recordSize);
    clean(cleaned.data());
    change(primaryView(view).at(place), cleaned.data(), allIndexes);
    return Answer::present;
}

Answer Table::insert(const std::byte* given, uint32_t hash) {
    if (schema.capacity != 0 && head().records >= schema.capacity) return Answer::full;
    std::array<std::byte, schema::kMaxRecordSize> row;
    std::memcpy(row.data(), given, schema.recordSize);
    clean(row.data());
    Lookups keys;
    hashKeys(row.data(), allIndexes, keys);
    RowsWriter cells = rowsWriter();
    const uint32_t slot = cells.prepare();
    prefetchChange(allIndexes, keys, slot, true);
    findKeys(row.data(), allIndexes, keys);
    HashWriter primary(region, head().primary);
    const OtherArray larger = primary.prepare(hash);
    openAll();
    for (uint32_t i = 0; i < shapes.size(); ++i) add(i, keys[i], slot, row.data());
    openRows();
    region.write(cells.row(slot), row.data(), schema.recordSize);
    cells.take(slot);
    primary.adopt(larger);
    primary.insert(hash, slot);
    return Answer::done;
}

// Puts 'row' in the place of the record in 'slot', which moves within the indexes in 'which' whose key it changes.
void Table::change(uint32_t slot, const std::byte* row, uint64_t which) {
    const std::byte* const present = rows(region.view()).row(slot);
    uint64_t affected = 0;
    forEachBit(which, [&](uint32_t i) {
        if (!shapes[i]->sameKey(present, row)) affected |= uint64_t{1} << i;
    });
    Lookups keys;
    hashKeys(row, affected, keys);
    prefetchChange(affected, keys, slot, true);
    openAll();
    forEachBit(affected, [&](uint32_t i) {
        remove(i, shapes[i]->hashOf(present), slot, present);
        keys[i].place = findLike(i, keys[i].hash, row);
        if (keys[i].place == kNone) keys[i].larger = indexWriter(i).prepare(keys[i].hash);
        add(i, keys[i], slot, row);
    });
    openRows();
    region.write(present, row, schema.recordSize);
}

Answer Table::patch(const std::byte* key, const std::byte* from, uint64_t fields) {
    if (!primaryKey.accepts(key)) return Answer::absent;
    const uint32_t place = findPrimary(key, primaryKey.hash(key));
    if (place == kNone) return Answer::absent;
    const uint32_t slot = primaryView(region.view()).at(place);
    const std::byte* const row = rows(region.view()).row(slot);
    uint64_t touched = 0;
    forEachBit(fields, [&](uint32_t i) { touched |= indexesOf[i]; });
    if (touched == 0) {
        openAll();
        openRows();
        forEachBit(fields, [&](uint32_t i) {
            const schema::Field& field = schema.fields[i];
            region.write(row + field.offset, from + field.offset, field.width);
        });
        return Answer::done;
    }
    std::array<std::byte, schema::kMaxRecordSize> changed;
    std::memcpy(changed.data(), row, schema.recordSize);
    forEachBit(fields, [&](uint32_t i) {
        const schema::Field& field = schema.fields[i];
        std::memcpy(changed.data() + field.offset, from + field.offset, field.width);
    });
    change(slot, changed.data(), touched);
    return Answer::done;
}

Answer Table::erase(const std::byte* key) {
    if (!primaryKey.accepts(key)) return Answer::absent;
    const uint32_t hash = primaryKey.hash(key);
    const uint32_t place = findPrimary(key, hash);
    if (place == kNone) return Answer::absent;
    const View view = region.view();
    const uint32_t slot = primaryView(view).at(place);
    const std::byte* const row = rows(view).row(slot);
    rows(view).prefetch(slot);
    Lookups keys;
    hashKeys(row, allIndexes, keys);
    prefetchChange(allIndexes, keys, slot, false);
    openAll();
    for (uint32_t i = 0; i < shapes.size(); ++i) remove(i, keys[i].hash, slot, row);
    openRows();
    HashWriter(region, head().primary).erase(place);
    rowsWriter().release(slot);
    return Answer::done;
}

bool Table::isLoose() {
    for (uint32_t i = 0; i <= shapes.size(); ++i) {
        if (writerOf(i).isLoose()) return true;
    }
    return false;
}

void Table::trim() {
    for (uint32_t i = 0; i <= shapes.size(); ++i) {
        HashWriter entries = writerOf(i);
        if (!entries.isLoose()) continue;
        const OtherArray smaller = entries.prepareSmaller();
        openAll();
        openRows();
        entries.adopt(smaller);
        return;
    }
}

std::string Table::check(const View& view, uint64_t& bytes) const {
    view.expect(at, sizeof(TableHead));
    bytes += Region::sizeFor(sizeof(TableHead));
    const TableHead& table = head(view);
    if (((table.sequence | table.rowSequence) & 1) != 0) return "a change that was not ended";
    std::string wrong = rows(view).check(bytes);
    if (!wrong.empty()) return wrong;
    std::vector<uint32_t> live;
    for (uint32_t slot = rows(view).next(0); slot != kNone; slot = rows(view).next(slot + 1)) live.push_back(slot);
    std::vector<uint32_t> members;
    wrong = primaryView(view).check(bytes, [&](uint32_t hash, uint32_t slot) -> std::string {
        if (!rows(view).isLive(slot)) return "a primary key without a record";
        const std::byte* const row = rows(view).row(slot);
        if (primaryKey.hashOf(row) != hash) return "a primary key with another hash";
        for (const Gap& gap : gaps) {
            if (std::any_of(row + gap.offset, row + gap.offset + gap.width,
                            [](std::byte b) { return b != std::byte{}; })) {
                return "a reserved byte";
            }
        }
        KeyBuffer room;
        if (find(view, hash, primaryKey.of(row, room)) != row) return "a primary key that is there twice";
        members.push_back(slot);
        return {};
    });
    if (!wrong.empty()) return wrong;
    std::sort(members.begin(), members.end());
    if (members != live) return "a record that is not found by its primary key, or twice";
    for (uint32_t i = 0; i < shapes.size(); ++i) {
        wrong = checkIndex(view, i, live, bytes);
        if (!wrong.empty()) return "index " + std::to_string(schema.indexes[i].number()) + ": " + wrong;
    }
    return {};
}

std::string Table::checkIndex(const View& view, uint32_t index, const std::vector<uint32_t>& live,
                              uint64_t& bytes) const {
    std::vector<uint32_t> members;
    std::vector<OrderKey> keys;
    std::string wrong = indexView(view, index).check(bytes, [&](uint32_t hash, uint32_t ref) {
        const size_t before = members.size();
        std::string bad = checkMembers(view, index, hash, ref, bytes, members);
        if (bad.empty() && isSorted(index)) keys.push_back(orderKey(index, rows(view).row(members[before])));
        return bad;
    });
    if (!wrong.empty()) return wrong;
    std::sort(members.begin(), members.end());
    if (members != live) return "misses a record, or has one twice";
    if (!isSorted(index)) return {};
    std::sort(keys.begin(), keys.end());
    std::vector<OrderKey> ordered;
    const Ref order = head(view).orders[index];
    if (order != 0) {
        wrong = Orders::check(view, order, bytes, [&](const OrderKey& key) { ordered.push_back(key); });
    }
    if (wrong.empty() && keys != ordered) wrong = "the keys in order are not those of the records";
    return wrong;
}

std::string Table::checkMembers(const View& view, uint32_t index, uint32_t hash, uint32_t ref, uint64_t& bytes,
                                std::vector<uint32_t>& members) const {
    const uint32_t sample = sampleOf(view, ref);
    if (!rows(view).isLive(sample)) return "a sample without a record";
    const std::byte* const like = rows(view).row(sample);
    std::string wrong;
    bool hasSample = false;
    const auto one = [&](uint32_t slot) {
        hasSample = hasSample || slot == sample;
        members.push_back(slot);
        if (!rows(view).isLive(slot)) {
            wrong = "a slot without a record";
        } else if (!shapes[index]->sameKey(rows(view).row(slot), like) ||
                   shapes[index]->hashOf(rows(view).row(slot)) != hash) {
            wrong = "a record under the key of another";
        }
    };
    if (!isSet(ref)) {
        one(ref);
        return wrong;
    }
    std::string bad = SlotSet::check(view, ref & ~kSet, bytes, one);
    if (!bad.empty()) return bad;
    if (SlotSet::count(view, ref & ~kSet) < 2) return "a set of less than two records";
    if (!hasSample) return "a sample that is not in its set";
    return wrong;
}

}  // namespace mcast6::store::shared
