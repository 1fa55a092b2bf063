#include "platform/engine/batches.h"

#include "mcast6_platform/engine.h"
#include "platform/engine/answers.h"

namespace mcast6::engine {
namespace {

uint64_t nextSerial() {
    static std::atomic<uint64_t> given{0};
    return given.fetch_add(1, std::memory_order_relaxed) + 1;
}

// What a thread found last: its own batch, or null when it has none. Only the thread itself changes that, but for the
// end of the store, which the serial number shows.
struct Own {
    uint64_t serial = 0;
    store::Transaction* transaction = nullptr;
};
thread_local Own cached;

}  // namespace

Batches::Batches(store::Store& store, std::atomic<store::Store*>& front)
    : store_(store), serial_(nextSerial()), front_(front) {}

store::Transaction* Batches::own() {
    if (cached.serial == serial_) return cached.transaction;
    const std::lock_guard lock(mutex_);
    const OpenBatches::const_iterator found = open_.find(std::this_thread::get_id());
    cached = {serial_, found != open_.end() ? found->second.get() : nullptr};
    return cached.transaction;
}

std::unique_ptr<store::Transaction> Batches::takeOwn() {
    const std::lock_guard lock(mutex_);
    const OpenBatches::iterator found = open_.find(std::this_thread::get_id());
    cached = {serial_, nullptr};
    if (found == open_.end()) return nullptr;
    std::unique_ptr<store::Transaction> taken = std::move(found->second);
    open_.erase(found);
    if (open_.empty()) front_.store(&store_, std::memory_order_relaxed);
    return taken;
}

uint32_t Batches::beginBatch() {
    if (own() != nullptr) return refused(MCAST6_DB_BATCH_OPEN);
    // Without the mutex: this waits for the batches of other threads.
    std::unique_ptr<store::Transaction> begun;
    const uint32_t code = codeOf(store_.begin(begun), MCAST6_DB_STORE_FAILED);
    if (code != MCAST6_DB_OK) return code;
    const std::lock_guard lock(mutex_);
    store::Transaction* const transaction = begun.get();
    open_[std::this_thread::get_id()] = std::move(begun);
    cached = {serial_, transaction};
    front_.store(this, std::memory_order_relaxed);
    return MCAST6_DB_OK;
}

uint32_t Batches::commitBatch() {
    const std::unique_ptr<store::Transaction> ended = takeOwn();
    if (ended == nullptr) return refused(MCAST6_DB_NO_BATCH);
    return codeOf(ended->commit(), MCAST6_DB_STORE_FAILED);
}

uint32_t Batches::abortBatch() {
    const std::unique_ptr<store::Transaction> ended = takeOwn();
    if (ended == nullptr) return refused(MCAST6_DB_NO_BATCH);
    ended->abort();
    return MCAST6_DB_OK;
}

store::Answer Batches::put(uint32_t table, const std::byte* row) {
    store::Transaction* const batch = own();
    return batch != nullptr ? batch->put(table, row) : store_.put(table, row);
}

store::Answer Batches::get(uint32_t table, const std::byte* key, std::byte* row) {
    store::Transaction* const batch = own();
    return batch != nullptr ? batch->get(table, key, row) : store_.get(table, key, row);
}

store::Answer Batches::patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) {
    store::Transaction* const batch = own();
    return batch != nullptr ? batch->patch(table, key, row, fields) : store_.patch(table, key, row, fields);
}

store::Answer Batches::erase(uint32_t table, const std::byte* key) {
    store::Transaction* const batch = own();
    return batch != nullptr ? batch->erase(table, key) : store_.erase(table, key);
}

}  // namespace mcast6::engine
