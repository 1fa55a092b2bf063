#include "platform/store/staged.h"

#include <array>
#include <cstring>
#include <functional>
#include <memory_resource>
#include <new>
#include <string_view>
#include <vector>

#include "platform/schema/copy_field.h"
#include "platform/store/failure.h"

namespace mcast6::store {
namespace {

using Row = std::array<std::byte, schema::kMaxRecordSize>;
using KeyBytes = std::array<std::byte, schema::kMaxKeyLength>;

void composeKey(const schema::Key& key, const std::byte* row, std::byte* composed) {
    for (const schema::KeyPart& part : key.parts()) {
        for (uint16_t i = 0; part.isConstant && i < part.width; ++i) {
            composed[i] = i < sizeof part.constant ? static_cast<std::byte>(part.constant >> (8 * i)) : std::byte{0};
        }
        if (!part.isConstant) std::memcpy(composed, row + part.offset, part.width);
        composed += part.width;
    }
}

void copyFields(const schema::Table& table, std::byte* to, const std::byte* from, uint64_t fields) {
    for (size_t i = 0; i < table.fields.size(); ++i) {
        const schema::Field& field = table.fields[i];
        if ((fields >> i & 1) != 0) schema::copyField(to + field.offset, from + field.offset, field.width);
    }
}

// Copies a record, with zeros in the bytes that no field names.
void copyRecord(const schema::Table& table, std::byte* to, const std::byte* from) {
    std::memset(to, 0, table.recordSize);
    copyFields(table, to, from, ~uint64_t{0});
}

// What the batch has done to one record.
struct Change {
    enum class State : uint8_t { unchanged, inserted, replaced, patched, erased };

    State state;
    bool wasPresent;  // among the committed records
    uint32_t table;
    uint64_t fields;  // patched
    std::byte* key;
    std::byte* row;  // null until one is needed

    bool isPresent() const { return state != State::erased && state != State::unchanged; }
};

class StagedTransaction final : public Transaction {
public:
    StagedTransaction(BatchTarget& of, std::span<const schema::Table> catalog, uint64_t most)
        : target(of), tables(catalog), bound(most), added(catalog.size()) {}
    ~StagedTransaction() override { StagedTransaction::abort(); }

    // Begins the batch: done, failed.
    Answer lock() {
        const Answer answer = target.lockWriters();
        isOver = answer != Answer::done;
        return answer;
    }

    Answer put(uint32_t table, const std::byte* row) override {
        return guarded([&] { return stagePut(table, row); });
    }

    Answer get(uint32_t table, const std::byte* key, std::byte* row) override {
        if (isOver) return overAlready();
        const Change* const change = find(table, key);
        if (change == nullptr) return target.readCommitted(table, key, row);
        if (!change->isPresent()) return Answer::absent;
        if (change->state != Change::State::patched) {
            std::memcpy(row, change->row, tables[table].recordSize);
            return Answer::done;
        }
        const Answer answer = target.readCommitted(table, key, row);
        if (answer == Answer::done) copyFields(tables[table], row, change->row, change->fields);
        return answer;
    }

    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        return guarded([&] { return stagePatch(table, key, row, fields); });
    }

    Answer erase(uint32_t table, const std::byte* key) override {
        return guarded([&] { return stageErase(table, key); });
    }

    Answer commit() override {
        const Answer answer = guarded([&] { return applyAll(); });
        end();
        return answer;
    }

    void abort() noexcept override { end(); }

private:
    static Answer overAlready() { return failure("the batch is over"); }

    template <class F>
    Answer guarded(const F& step) {
        if (isOver) return overAlready();
        try {
            return step();
        } catch (const std::bad_alloc&) {
            return Answer::noMemory;
        }
    }

    Answer stagePut(uint32_t table, const std::byte* row) {
        const schema::Table& described = tables[table];
        KeyBytes key;
        composeKey(described.primary, row, key.data());
        Change* const change = find(table, key.data());
        Row committed;
        const Answer before = change == nullptr     ? target.readCommitted(table, key.data(), committed.data())
                              : change->isPresent() ? Answer::done
                                                    : Answer::absent;
        if (before != Answer::done && before != Answer::absent) return before;
        const bool isPresent = before == Answer::done;
        if (isPresent && described.presentWrite == schema::PresentWrite::refused) return Answer::present;
        if (!isPresent) {
            const Answer room = checkCapacity(table);
            if (room != Answer::done) return room;
        }
        if (change == nullptr) {
            Change* const made = stage(table, key.data(), isPresent, true);
            if (made == nullptr) return Answer::tooLarge;
            set(*made, row);
        } else {
            if (change->row == nullptr) change->row = newRow(described);
            set(*change, row);
        }
        if (!isPresent) ++added[table];
        return isPresent ? Answer::present : Answer::done;
    }

    // Makes 'row' the record of a change.
    void set(Change& change, const std::byte* row) {
        copyRecord(tables[change.table], change.row, row);
        change.state = change.wasPresent ? Change::State::replaced : Change::State::inserted;
    }

    Answer stagePatch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) {
        const schema::Table& described = tables[table];
        Change* const change = find(table, key);
        if (change != nullptr) {
            if (!change->isPresent()) return Answer::absent;
            copyFields(described, change->row, row, fields);
            change->fields |= fields;
            return Answer::done;
        }
        Row committed;
        const Answer before = target.readCommitted(table, key, committed.data());
        if (before != Answer::done) return before;
        Change* const made = stage(table, key, true, true);
        if (made == nullptr) return Answer::tooLarge;
        made->state = Change::State::patched;
        made->fields = fields;
        copyFields(described, made->row, row, fields);
        return Answer::done;
    }

    Answer stageErase(uint32_t table, const std::byte* key) {
        Change* const change = find(table, key);
        if (change != nullptr) {
            if (!change->isPresent()) return Answer::absent;
            change->state = change->wasPresent ? Change::State::erased : Change::State::unchanged;
            --added[table];
            return Answer::done;
        }
        Row committed;
        const Answer before = target.readCommitted(table, key, committed.data());
        if (before != Answer::done) return before;
        Change* const made = stage(table, key, true, false);
        if (made == nullptr) return Answer::tooLarge;
        made->state = Change::State::erased;
        --added[table];
        return Answer::done;
    }

    // done, full, failed: whether one more record fits.
    Answer checkCapacity(uint32_t table) {
        const uint64_t capacity = tables[table].capacity;
        if (capacity == 0) return Answer::done;
        uint64_t records = 0;
        const Answer answer = target.countCommitted(table, records);
        if (answer != Answer::done) return answer;
        return static_cast<int64_t>(records) + added[table] < static_cast<int64_t>(capacity) ? Answer::done
                                                                                             : Answer::full;
    }

    Answer applyAll() {
        std::vector<Step> steps;
        steps.reserve(changes.size());
        for (const Change& change : changes) {
            if (change.state == Change::State::unchanged) continue;
            const bool isErased = change.state == Change::State::erased;
            steps.push_back(
                {kindOf(change.state), change.table, change.fields, change.key, isErased ? nullptr : change.row});
        }
        return target.apply(steps);
    }

    static Step::Kind kindOf(Change::State state) {
        switch (state) {
            case Change::State::inserted:
                return Step::Kind::insert;
            case Change::State::replaced:
                return Step::Kind::replace;
            case Change::State::patched:
                return Step::Kind::patch;
            default:
                return Step::Kind::erase;
        }
    }

    void end() noexcept {
        if (isOver) return;
        isOver = true;
        target.unlockWriters();
    }

    // A search in 'buckets': linear probing, at most half full. Nothing is ever removed.
    std::string_view keyView(uint32_t table, const std::byte* key) const {
        return {reinterpret_cast<const char*>(key), tables[table].primary.length()};
    }
    size_t bucketOf(uint32_t table, const std::byte* key) const {
        return (std::hash<std::string_view>()(keyView(table, key)) + table * 0x9E3779B97F4A7C15U) &
               (buckets.size() - 1);
    }

    Change* find(uint32_t table, const std::byte* key) {
        if (buckets.empty()) return nullptr;
        for (size_t bucket = bucketOf(table, key); buckets[bucket] != 0; bucket = (bucket + 1) & (buckets.size() - 1)) {
            Change& change = changes[buckets[bucket] - 1];
            if (change.table == table && keyView(table, change.key) == keyView(table, key)) return &change;
        }
        return nullptr;
    }

    void enter(uint32_t number) {
        const Change& change = changes[number];
        size_t bucket = bucketOf(change.table, change.key);
        while (buckets[bucket] != 0) bucket = (bucket + 1) & (buckets.size() - 1);
        buckets[bucket] = number + 1;
    }

    // Adds a change that does nothing yet; null when the batch is at its bound. Throws with the batch as it was.
    Change* stage(uint32_t table, const std::byte* key, bool wasPresent, bool withRow) {
        if (changes.size() >= bound) return nullptr;
        if (changes.size() == changes.capacity()) changes.reserve(changes.size() < 32 ? 64 : changes.size() * 2);
        if (buckets.size() < 2 * (changes.size() + 1)) {
            std::vector<uint32_t> larger(buckets.empty() ? 128 : buckets.size() * 2);
            buckets.swap(larger);
            for (uint32_t number = 0; number < changes.size(); ++number) enter(number);
        }
        const size_t length = tables[table].primary.length();
        auto* const kept = static_cast<std::byte*>(memory.allocate(length, 1));
        std::memcpy(kept, key, length);
        std::byte* const row = withRow ? newRow(tables[table]) : nullptr;
        changes.push_back({Change::State::unchanged, wasPresent, table, 0, kept, row});
        enter(static_cast<uint32_t>(changes.size() - 1));
        return &changes.back();
    }

    std::byte* newRow(const schema::Table& table) {
        auto* const row = static_cast<std::byte*>(memory.allocate(table.recordSize, 1));
        std::memset(row, 0, table.recordSize);
        return row;
    }

    BatchTarget& target;
    const std::span<const schema::Table> tables;
    const uint64_t bound;
    bool isOver = true;
    std::pmr::monotonic_buffer_resource memory;  // keys and rows
    std::vector<Change> changes;
    std::vector<uint32_t> buckets;  // numbers of changes, plus 1; 0 is free
    std::vector<int64_t> added;     // records that each table has gained
};

}  // namespace

Answer beginStaged(BatchTarget& target, std::span<const schema::Table> tables, uint64_t bound,
                   std::unique_ptr<Transaction>& transaction) {
    try {
        auto made = std::make_unique<StagedTransaction>(target, tables, bound);
        const Answer answer = made->lock();
        if (answer == Answer::done) transaction = std::move(made);
        return answer;
    } catch (const std::bad_alloc&) {
        return Answer::noMemory;
    }
}

}  // namespace mcast6::store
