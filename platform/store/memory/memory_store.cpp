#include "platform/store/memory/memory_store.h"

#include <memory>
#include <vector>

#include "platform/store/memory/table.h"

namespace mcast6::store {
namespace {

class MemoryStore final : public Store {
public:
    explicit MemoryStore(std::span<const schema::Table> catalog) {
        for (const schema::Table& table : catalog) tables.push_back(std::make_unique<memory::Table>(table));
    }

    Answer put(uint32_t table, const std::byte* row) override { return tables[table]->put(row); }

    Answer get(uint32_t table, const std::byte* key, std::byte* row) override { return tables[table]->get(key, row); }

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

    uint64_t memory() const override {
        uint64_t bytes = 0;
        for (const std::unique_ptr<memory::Table>& table : tables) bytes += table->memoryBytes();
        return bytes;
    }

private:
    std::vector<std::unique_ptr<memory::Table>> tables;
};

}  // namespace

std::unique_ptr<Store> makeMemoryStore(std::span<const schema::Table> catalog) {
    return std::make_unique<MemoryStore>(catalog);
}

}  // namespace mcast6::store
