// A second store behind the same interface: one std::map for each table, everything by linear search under one lock.
// It shows that the engine needs nothing of a store but the interface, and it is small enough to be trusted by reading.
//
// A scan's position is a place in the scan's order: the key value where that order is sorted, then the primary key.
#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <semaphore>
#include <span>
#include <string>
#include <vector>

#include "platform/store/staged.h"
#include "platform/store/store.h"

namespace mcast6::testing {

using Bytes = std::string;

inline Bytes bytesOf(const std::byte* begin, size_t count) {
    return Bytes(reinterpret_cast<const char*>(begin), count);
}

// The key of a row, as callers compose it.
inline Bytes keyOf(const schema::Key& key, const std::byte* row) {
    Bytes bytes;
    for (const schema::KeyPart& part : key.parts()) {
        const std::byte* from = row + part.offset;
        if (part.isConstant) from = reinterpret_cast<const std::byte*>(&part.constant);
        bytes += bytesOf(from, part.width);
    }
    return bytes;
}

// Key bytes so turned that their byte order is the order of the key: numbers with their highest byte first.
inline Bytes ordered(const schema::Key& key, Bytes bytes) {
    auto begin = bytes.begin();
    for (const schema::KeyPart& part : key.parts()) {
        if (part.isScalar) std::reverse(begin, begin + part.width);
        begin += part.width;
    }
    return bytes;
}

class MapStore final : public store::Store, private store::BatchTarget {
public:
    explicit MapStore(std::span<const schema::Table> tables) : tables_(tables), rows_(tables.size()) {}

    store::Answer put(uint32_t table, const std::byte* row) override {
        const WriterTurn turn(writers_);
        const std::lock_guard lock(mutex_);
        const schema::Table& described = tables_[table];
        const Bytes key = keyOf(described.primary, row);
        const bool isPresent = rows_[table].count(key) != 0;
        if (isPresent && described.presentWrite == schema::PresentWrite::refused) return store::Answer::present;
        const bool isFull = described.capacity != 0 && rows_[table].size() >= described.capacity;
        if (!isPresent && isFull) return store::Answer::full;
        rows_[table][key] = bytesOf(row, described.recordSize);
        return isPresent ? store::Answer::present : store::Answer::done;
    }

    store::Answer get(uint32_t table, const std::byte* key, std::byte* row) override {
        const std::lock_guard lock(mutex_);
        return copy(table, bytesOf(key, tables_[table].primary.length()), row);
    }

    store::Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        const WriterTurn turn(writers_);
        const std::lock_guard lock(mutex_);
        const auto found = rows_[table].find(bytesOf(key, tables_[table].primary.length()));
        if (found == rows_[table].end()) return store::Answer::absent;
        overlay(tables_[table], found->second, row, fields);
        return store::Answer::done;
    }

    store::Answer erase(uint32_t table, const std::byte* key) override {
        const WriterTurn turn(writers_);
        const std::lock_guard lock(mutex_);
        const Bytes bytes = bytesOf(key, tables_[table].primary.length());
        return rows_[table].erase(bytes) != 0 ? store::Answer::done : store::Answer::absent;
    }

    store::Answer count(uint32_t table, uint64_t& records) override {
        const std::lock_guard lock(mutex_);
        records = rows_[table].size();
        return store::Answer::done;
    }

    store::Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override {
        const std::lock_guard lock(mutex_);
        const schema::Key& described = tables_[table].indexes[index];
        const Bytes wanted = bytesOf(key, described.length());
        records = 0;
        for (const auto& [primary, row] : rows_[table]) {
            if (keyOf(described, rowOf(row)) == wanted) ++records;
        }
        return store::Answer::done;
    }

    store::Answer open(uint32_t table, const store::ScanRange& range, std::unique_ptr<store::Scan>& scan) override {
        scan = std::make_unique<MapScan>(*this, table, range);
        return store::Answer::done;
    }

    store::Answer begin(std::unique_ptr<store::Transaction>& transaction) override {
        return store::beginStaged(*this, tables_, kBatchBound, transaction);
    }

    // The most records that a batch changes.
    static constexpr uint64_t kBatchBound = 1000;

    uint64_t memory() const override {
        const std::lock_guard lock(mutex_);
        uint64_t bytes = 0;
        for (const auto& rows : rows_) {
            for (const auto& [key, row] : rows) bytes += key.size() + row.size();
        }
        return bytes;
    }

private:
    using Rows = std::map<Bytes, Bytes>;

    // Held by a batch from its begin to its end, and by a change meanwhile.
    class WriterTurn {
    public:
        explicit WriterTurn(std::binary_semaphore& of) : turn_(of) { turn_.acquire(); }
        WriterTurn(const WriterTurn&) = delete;
        WriterTurn& operator=(const WriterTurn&) = delete;
        ~WriterTurn() { turn_.release(); }

    private:
        std::binary_semaphore& turn_;
    };

    store::Answer lockWriters() override {
        writers_.acquire();
        return store::Answer::done;
    }
    void unlockWriters() noexcept override { writers_.release(); }
    store::Answer readCommitted(uint32_t table, const std::byte* key, std::byte* row) override {
        return get(table, key, row);
    }
    store::Answer countCommitted(uint32_t table, uint64_t& records) override { return count(table, records); }

    // On a copy of everything, which then takes the place of the original.
    store::Answer apply(std::span<const store::Step> steps) override {
        const std::lock_guard lock(mutex_);
        std::vector<Rows> changed = rows_;
        for (const store::Step& step : steps) {
            const schema::Table& table = tables_[step.table];
            const Bytes key = bytesOf(step.key, table.primary.length());
            Rows& rows = changed[step.table];
            if (step.kind == store::Step::Kind::erase) {
                rows.erase(key);
            } else if (step.kind == store::Step::Kind::patch) {
                overlay(table, rows.at(key), step.row, step.fields);
            } else {
                rows[key] = bytesOf(step.row, table.recordSize);
            }
        }
        rows_.swap(changed);
        return store::Answer::done;
    }

    static void overlay(const schema::Table& table, Bytes& row, const std::byte* from, uint64_t fields) {
        for (size_t i = 0; i < table.fields.size(); ++i) {
            const schema::Field& field = table.fields[i];
            if ((fields >> i & 1) == 0) continue;
            std::memcpy(row.data() + field.offset, from + field.offset, field.width);
        }
    }

    static const std::byte* rowOf(const Bytes& row) { return reinterpret_cast<const std::byte*>(row.data()); }

    store::Answer copy(uint32_t table, const Bytes& primary, std::byte* row) const {
        const auto found = rows_[table].find(primary);
        if (found == rows_[table].end()) return store::Answer::absent;
        std::memcpy(row, found->second.data(), found->second.size());
        return store::Answer::done;
    }

    class MapScan final : public store::Scan {
    public:
        MapScan(MapStore& store, uint32_t table, const store::ScanRange& range)
            : store_(store), table_(table), order_(range.order) {
            if (order_ != store::ScanRange::Order::table) index_ = &store.tables_[table].indexes[range.index];
            takeKey(range.key);
        }

        store::Answer next() override {
            const std::lock_guard lock(store_.mutex_);
            const std::pair<Bytes, Bytes>* best = nullptr;
            std::pair<Bytes, Bytes> candidate, nearest;
            for (const auto& [primary, row] : store_.rows_[table_]) {
                const Bytes key = index_ != nullptr ? keyOf(*index_, rowOf(row)) : Bytes();
                if (isRestricted_ && key != key_) continue;
                const bool isSorted = order_ == store::ScanRange::Order::sorted;
                candidate = {isSorted ? ordered(*index_, key) : Bytes(), primary};
                if (isPlaced_ && candidate <= position_) continue;
                if (best != nullptr && candidate > nearest) continue;
                nearest = candidate;
                best = &nearest;
            }
            if (best == nullptr) return store::Answer::end;
            position_ = nearest;
            isPlaced_ = true;
            return store::Answer::done;
        }

        store::Answer read(std::byte* row) override {
            const std::lock_guard lock(store_.mutex_);
            return isPlaced_ ? store_.copy(table_, position_.second, row) : store::Answer::absent;
        }

        store::Answer restart(const std::byte* key) override {
            isPlaced_ = false;
            takeKey(key);
            return store::Answer::done;
        }

    private:
        void takeKey(const std::byte* key) {
            isRestricted_ = key != nullptr;
            if (key != nullptr) key_ = bytesOf(key, index_->length());
        }

        MapStore& store_;
        const uint32_t table_;
        const store::ScanRange::Order order_;
        const schema::Key* index_ = nullptr;
        Bytes key_;
        std::pair<Bytes, Bytes> position_;
        bool isRestricted_ = false;
        bool isPlaced_ = false;
    };

    const std::span<const schema::Table> tables_;
    mutable std::mutex mutex_;
    std::binary_semaphore writers_{1};
    std::vector<Rows> rows_;
};

}  // namespace mcast6::testing
