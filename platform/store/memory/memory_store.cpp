#include "platform/store/memory/memory_store.h"

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "platform/store/memory/table.h"

namespace mcast6::store {
namespace {

class MemoryStore final : public Store, private BatchTarget {
public:
    MemoryStore(std::span<const schema::Table> tablesOf, uint64_t mostInBatch)
        : catalog(tablesOf), batchBound(mostInBatch) {
        for (const schema::Table& table : catalog) tables.push_back(std::make_unique<memory::Table>(table, gate));
    }

    Answer put(uint32_t table, const std::byte* row) override { return tables[table]->put(row); }

    Answer get(uint32_t table, const std::byte* key, std::byte* row) override { return tables[table]->read(key, row); }

    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        return tables[table]->patch(key, row, fields);
    }

    Answer erase(uint32_t table, const std::byte* key) override { return tables[table]->erase(key); }

    Answer count(uint32_t table, uint64_t& records) override {
        records = tables[table]->count();
        return Answer::done;
    }

    Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override {
        records = tables[table]->countByKey(index, key);
        return Answer::done;
    }

    Answer open(uint32_t table, const ScanRange& range, std::unique_ptr<Scan>& scan) override {
        scan = tables[table]->open(range);
        return scan != nullptr ? Answer::done : Answer::noMemory;
    }

    Answer begin(std::unique_ptr<Transaction>& transaction) override {
        return beginStaged(*this, catalog, batchBound, transaction);
    }

    uint64_t memory() const override {
        uint64_t bytes = 0;
        for (const std::unique_ptr<memory::Table>& table : tables) bytes += table->memoryBytes();
        return bytes;
    }

private:
    using BatchStep = memory::Table::BatchStep;

    // The steps of one table.
    struct Share {
        memory::Table* table;
        std::span<BatchStep> steps;
    };

    Answer lockWriters() override {
        gate.close();
        return Answer::done;
    }
    void unlockWriters() noexcept override { gate.open(); }
    Answer readCommitted(uint32_t table, const std::byte* key, std::byte* row) override {
        return tables[table]->get(key, row);
    }
    Answer countCommitted(uint32_t table, uint64_t& records) override { return count(table, records); }

    Answer apply(std::span<const Step> steps) override {
        std::vector<const Step*> order;
        for (const Step& step : steps) order.push_back(&step);
        std::stable_sort(order.begin(), order.end(), [](const Step* a, const Step* b) { return a->table < b->table; });
        std::vector<BatchStep> work;
        for (const Step* const step : order) work.push_back({step, 0, 0, 0, 0});
        std::vector<Share> shares;
        for (size_t first = 0, last = 0; first < work.size(); first = last) {
            const uint32_t table = work[first].step->table;
            while (last < work.size() && work[last].step->table == table) ++last;
            shares.push_back({tables[table].get(), std::span(work).subspan(first, last - first)});
        }
        return applyShares(shares);
    }

    // All tables are locked before any is changed, by ascending number, and until the last one has been changed.
    static Answer applyShares(std::span<const Share> shares) {
        const bool isAlone = memory::isAlone();
        if (!isAlone) std::for_each(shares.begin(), shares.end(), [](const Share& s) { s.table->batchLock().lock(); });
        size_t prepared = 0;
        while (prepared < shares.size() && shares[prepared].table->prepare(shares[prepared].steps)) ++prepared;
        const bool isDone = prepared == shares.size();
        for (const Share& share : shares.first(prepared)) {
            isDone ? share.table->finish(share.steps) : share.table->undo(share.steps);
        }
        if (!isAlone)
            std::for_each(shares.begin(), shares.end(), [](const Share& s) { s.table->batchLock().unlock(); });
        return isDone ? Answer::done : Answer::noMemory;
    }

    const std::span<const schema::Table> catalog;
    const uint64_t batchBound;
    memory::WriterGate gate;
    std::vector<std::unique_ptr<memory::Table>> tables;
};

std::unique_ptr<Store> openMemory(const Uri& uri, std::span<const schema::Table> tables, std::string& reason) {
    if (!uri.path.empty()) {
        reason = "nothing but options may follow 'memory:'";
        return nullptr;
    }
    OptionReader options(uri);
    const uint64_t bound = options.number("batch", kBatchBound, 1, 10'000'000);
    return options.finish(reason) ? makeMemoryStore(tables, bound) : nullptr;
}

constexpr StoreKind kMemory{"memory", openMemory};

}  // namespace

std::unique_ptr<Store> makeMemoryStore(std::span<const schema::Table> catalog, uint64_t batchBound) {
    return std::make_unique<MemoryStore>(catalog, batchBound);
}

const StoreKind& memory::storeKind() { return kMemory; }

}  // namespace mcast6::store
