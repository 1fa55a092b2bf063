// The shared store: all tables in a file that every process of the device maps, or in memory of this process alone.
//
// Whoever changes something takes the one lock of the region, a robust one: when its holder dies, the next one undoes
// what it left half-done. Readers take no lock and write nothing. They read a table between two looks at its sequence
// number (view.h), and read again when it moved. A reader that does not get through waits for the lock a while. If that
// does not come either, because its holder was stopped or because the reader may not write, it looks at a copy of its
// own in which the change under way is undone.
//
// Threads: as store.h says; they are to each other what processes are. A child of fork() goes on with the same file; in
// memory of one process alone it has a copy of its own.
#pragma once

#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "platform/schema/schema.h"
#include "platform/store/shared/file.h"
#include "platform/store/shared/region.h"
#include "platform/store/shared/table.h"
#include "platform/store/staged.h"
#include "platform/store/store.h"

namespace mcast6::store::shared {

class SharedStore final : public Store, public BatchTarget {
public:
    // The tables of 'catalog', which must outlive the store, in a file. Null, with the reason: it cannot be opened.
    static std::unique_ptr<SharedStore> open(const FileOptions& options, std::span<const schema::Table> catalog,
                                             std::string& reason);

    // In memory of this process, of up to 'heapSize' bytes; null: there is none.
    static std::unique_ptr<SharedStore> makePrivate(std::span<const schema::Table> catalog, uint64_t heapSize);

    // On a copy of a file's bytes, for looking at what a change left behind. What is undone comes undone now.
    static std::unique_ptr<SharedStore> adopt(std::span<const schema::Table> catalog, std::byte* copy, uint64_t size);

    Answer put(uint32_t table, const std::byte* row) override;
    // Cold, so that the compiler goes on taking the memory store for the likely one, and inlines its reads.
    [[gnu::cold]] Answer get(uint32_t table, const std::byte* key, std::byte* row) override;
    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override;
    Answer erase(uint32_t table, const std::byte* key) override;
    Answer count(uint32_t table, uint64_t& records) override;
    Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override;
    Answer open(uint32_t table, const ScanRange& range, std::unique_ptr<Scan>& scan) override;
    Answer begin(std::unique_ptr<Transaction>& transaction) override;
    uint64_t memory() const override;

    // Takes all steps as one: done; or noMemory or failed, and nothing has changed. The caller has taken the lock.
    Answer apply(std::span<const Step> steps) override;
    Answer readCommitted(uint32_t table, const std::byte* key, std::byte* row) override;
    Answer countCommitted(uint32_t table, uint64_t& records) override;

    // Holds off every other writer, of this process and others: done, failed.
    Answer lockWriters() override;
    void unlockWriters() noexcept override;

    // Checks every index against every row and accounts for every byte of the heap. Tells what is wrong, or nothing.
    std::string check();

    // How often a process died in a change and another one undid it.
    uint64_t recoveries() const { return peek(region.header().recoveries); }

    // For tests.
    Region& regionForTests() { return region; }

private:
    friend class SharedScan;

    // A look at 'sequence' and what it guards.
    struct Glance {
        const uint64_t& sequence;
        uint64_t version;  // of what was seen; kVoid: it may have moved since
    };
    static constexpr uint64_t kVoid = UINT64_MAX;

    explicit SharedStore(std::span<const schema::Table> catalog) : tablesOf(catalog) {}

    bool makeTables();
    void attachTables();
    void settle();

    // Runs f(view) on what no writer changed meanwhile: done, or failed where the region is damaged.
    template <class F>
    Answer look(Glance& glance, const F& f);
    template <class F>
    [[gnu::noinline]] Answer lookPatiently(Glance& glance, const F& f);
    template <class F>
    bool tryLook(Glance& glance, const F& f);
    template <class F>
    bool lookBehind(const F& f);

    template <class F>
    Answer step(uint32_t table, const F& f);
    [[gnu::hot, gnu::noinline]] Answer read(uint32_t table, const std::byte* key, std::byte* row);
    void take(const Step& one);
    bool takeBack(Table& table);
    bool takeBack(std::span<const Step> steps);
    std::string checkHeld() const;
    // Gives memory back after removals.
    void trim(uint32_t table);

    std::span<const schema::Table> tablesOf;
    Region region;
    std::vector<std::unique_ptr<Table>> tables;
};

}  // namespace mcast6::store::shared
