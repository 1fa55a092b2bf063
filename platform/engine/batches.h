// The batches that threads have open, as a store in front of the store.
//
// While any batch is open, the engine sends reads by key and changes here: those of a thread with a batch go to its
// transaction, those of all others to the store behind. While none is open the engine calls the store itself, so that
// batches cost nothing where nobody uses them.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>

#include "platform/store/store.h"

namespace mcast6::engine {

class Batches final : public store::Store {
public:
    // 'front' is whom the engine calls for reads by key and for changes: this while a batch is open, else 'store'.
    Batches(store::Store& store, std::atomic<store::Store*>& front);

    // The calling thread's batch. Codes: see mcast6_platform_begin and its siblings.
    uint32_t beginBatch();
    uint32_t commitBatch();
    uint32_t abortBatch();

    // Cold, so that the compiler takes the store behind for the likely one, and inlines its reads.
    [[gnu::cold]] store::Answer put(uint32_t table, const std::byte* row) override;
    [[gnu::cold]] store::Answer get(uint32_t table, const std::byte* key, std::byte* row) override;
    [[gnu::cold]] store::Answer patch(uint32_t table, const std::byte* key, const std::byte* row,
                                      uint64_t fields) override;
    [[gnu::cold]] store::Answer erase(uint32_t table, const std::byte* key) override;

    // What is committed.
    store::Answer count(uint32_t table, uint64_t& records) override { return store_.count(table, records); }
    store::Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override {
        return store_.countByKey(table, index, key, records);
    }
    store::Answer open(uint32_t table, const store::ScanRange& range, std::unique_ptr<store::Scan>& scan) override {
        return store_.open(table, range, scan);
    }
    store::Answer begin(std::unique_ptr<store::Transaction>& transaction) override { return store_.begin(transaction); }
    uint64_t memory() const override { return store_.memory(); }
    const char* reason() const noexcept override { return store_.reason(); }

private:
    using OpenBatches = std::unordered_map<std::thread::id, std::unique_ptr<store::Transaction>>;

    store::Transaction* own();
    std::unique_ptr<store::Transaction> takeOwn();

    store::Store& store_;
    const uint64_t serial_;  // tells the stores of a process apart
    std::atomic<store::Store*>& front_;
    std::mutex mutex_;
    OpenBatches open_;
};

}  // namespace mcast6::engine
