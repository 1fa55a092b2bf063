// The walk over the one record with a primary key, or over none. It needs a keyed read of the store and nothing else,
// so it is written here once for all stores.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "platform/engine/table_facts.h"
#include "platform/store/store.h"

namespace mcast6::engine {

class PrimaryScan final : public store::Scan {
public:
    // 'key' null: the key comes by restart().
    PrimaryScan(store::Store& store, const TableFacts& facts, const std::byte* key)
        : store_(store), table_(facts.id), keyLength_(facts.table->primary.length()) {
        if (key != nullptr) (void)PrimaryScan::restart(key);
    }

    store::Answer next() override {
        if (place_ != Place::before) {
            place_ = Place::end;
            return store::Answer::end;
        }
        Row row;
        const store::Answer answer = store_.get(table_, key_.data(), row.data());
        if (answer != store::Answer::done && answer != store::Answer::absent) return answer;
        place_ = answer == store::Answer::done ? Place::onRecord : Place::end;
        return answer == store::Answer::done ? answer : store::Answer::end;
    }

    store::Answer read(std::byte* row) override {
        return place_ == Place::onRecord ? store_.get(table_, key_.data(), row) : store::Answer::absent;
    }

    store::Answer restart(const std::byte* key) override {
        std::memcpy(key_.data(), key, keyLength_);
        place_ = Place::before;
        return store::Answer::done;
    }

private:
    enum class Place : uint8_t { before, onRecord, end };
    using Row = std::array<std::byte, schema::kMaxRecordSize>;

    store::Store& store_;
    const uint32_t table_;
    const size_t keyLength_;
    std::array<std::byte, schema::kMaxKeyLength> key_{};
    Place place_ = Place::end;
};

}  // namespace mcast6::engine
