// A batch: changes of several tables that become visible as one, or not at all.
//
// A step answers at once, as the same call of the store would: present, absent, full and so on, with the batch's own
// earlier steps taken into account. get() sees the batch's own steps. Counts and scans, which are calls of the store,
// show what is committed.
//
// A batch belongs to the thread that began it, and its calls come from that thread alone. Only the destructor may run
// in another thread, when the store is about to be closed. From begin to end the single-step changes of other threads
// wait, and so do their batches; readers wait at most for the commit itself. The thread itself makes no single-step
// change of the store meanwhile, and begins no second batch.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/store/answer.h"

namespace mcast6::store {

class Transaction {
public:
    Transaction() = default;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    // Ends the batch without a change, unless commit() or abort() ended it before.
    virtual ~Transaction() = default;

    // As the calls of Store with the same names. Each may answer tooLarge too, when the batch would change more records
    // than its bound allows. A step that answers full, noMemory, failed or tooLarge was not taken; the batch goes on.
    virtual Answer put(uint32_t table, const std::byte* row) = 0;
    virtual Answer get(uint32_t table, const std::byte* key, std::byte* row) = 0;
    virtual Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) = 0;
    virtual Answer erase(uint32_t table, const std::byte* key) = 0;

    // Makes every step visible as one, or changes nothing: done, noMemory, lost, failed. The batch is over either way.
    virtual Answer commit() = 0;

    // Drops every step. The batch is over.
    virtual void abort() noexcept = 0;
};

}  // namespace mcast6::store
