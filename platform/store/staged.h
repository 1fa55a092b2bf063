// The transaction of stores that stage: written once, for every store that can apply a list of steps in one go.
//
// Steps go to a private list, and answers come from that list and from the committed records, which nobody else changes
// while the batch is open. The list holds the net effect: one step for each record that the batch changes, so a record
// that is written and removed again leaves nothing to do. commit() gives the list to the store, which applies all of it
// or nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/schema/schema.h"
#include "platform/store/answer.h"
#include "platform/store/transaction.h"

namespace mcast6::store {

// One step of a list that is applied. No two steps of a list have the same table and key.
struct Step {
    enum class Kind : uint8_t {
        insert,   // the key is absent
        replace,  // the key is present; replaces the record even in a table that refuses that to put()
        patch,    // the key is present
        erase,    // the key is present
    };

    Kind kind;
    uint32_t table;
    uint64_t fields;       // patch: the fields of 'row' to copy
    const std::byte* key;  // the primary key
    const std::byte* row;  // insert, replace: the record, with zeros in the bytes that no field names; erase: null
};

// What a store provides for staged batches.
class BatchTarget {
public:
    // Waits until no other writer is in a batch, and keeps all others out until unlockWriters(): done, failed. Readers
    // go on. unlockWriters() may come from another thread (see transaction.h).
    virtual Answer lockWriters() = 0;
    virtual void unlockWriters() noexcept = 0;

    // As get() and count() of the store.
    virtual Answer readCommitted(uint32_t table, const std::byte* key, std::byte* row) = 0;
    virtual Answer countCommitted(uint32_t table, uint64_t& records) = 0;

    // Applies all steps as one, or none: done, noMemory, lost, failed. Capacities have been checked.
    virtual Answer apply(std::span<const Step> steps) = 0;

protected:
    ~BatchTarget() = default;
};

// The most records that a batch changes where nobody says otherwise.
inline constexpr uint64_t kBatchBound = 100'000;

// Begins a batch of at most 'bound' changed records: done, noMemory, failed. 'tables' and 'target' outlive it.
Answer beginStaged(BatchTarget& target, std::span<const schema::Table> tables, uint64_t bound,
                   std::unique_ptr<Transaction>& transaction);

}  // namespace mcast6::store
