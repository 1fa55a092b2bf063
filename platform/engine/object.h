// What the handles of the engine name.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/engine/handle_table.h"
#include "platform/engine/table_facts.h"
#include "platform/store/store.h"

namespace mcast6::engine {

enum class ObjType : uint8_t { write = 0, update = 1, read = 3, remove = 4, iterate = 5, count = 9 };

struct Object;

// A root iterator. It is linked into its object's list and goes with the object.
struct Iterator : HandleSlot {
    enum class Place : uint8_t {
        unset,     // a cached iterator that has no key yet, or none since its store was closed
        before,    // before the first record
        onRecord,  // stepped onto a record, which may be gone by now
        end,
    };

    Object* owner = nullptr;
    Iterator* nextOfOwner = nullptr;
    std::unique_ptr<store::Scan> scan;  // null: a cached iterator whose store was closed since
    uint32_t keyWord = 0;               // of a cached iterator
    Place place = Place::before;
    bool isCached = false;
};

struct Statement {
    enum class State : uint8_t { none, begun, conditioned };

    State state = State::none;
    bool isRestricted = false;  // to the records with 'value'
    uint32_t index = 0;
    std::array<std::byte, schema::kMaxKeyLength> value;
};

// An object. 'row' holds, of the fields in 'fieldsSet', what was set (types write and update); the record that was read
// (type read, once 'hasRead', which a cache object never has); the fields that the getters fetched (type iterate).
struct alignas(128) Object : HandleSlot {
    const TableFacts* facts = nullptr;
    uint64_t fieldsSet = 0;
    Iterator* iterators = nullptr;
    Iterator* lastStepped = nullptr;
    ObjType type = ObjType::write;
    bool isCache = false;
    bool hasRead = false;
    alignas(64) std::array<std::byte, schema::kMaxRecordSize> row;  // aligned to cache lines
    Statement statement;
};
static_assert(std::has_single_bit(sizeof(Object)), "so that finding one by its slot is a shift");

}  // namespace mcast6::engine
