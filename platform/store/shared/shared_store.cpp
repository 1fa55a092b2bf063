#include "platform/store/shared/shared_store.h"

#include <array>
#include <cstring>
#include <new>

#include "platform/store/fingerprint.h"
#include "platform/store/shared/look.h"
#include "platform/store/shared/scan.h"

namespace mcast6::store::shared {

std::unique_ptr<SharedStore> SharedStore::open(const FileOptions& options, std::span<const schema::Table> catalog,
                                               std::string& reason) {
    if (catalog.size() > kTables) {
        reason = "too many tables for a shared store";
        return nullptr;
    }
    std::unique_ptr<SharedStore> store(new SharedStore(catalog));
    OpenedFile file;
    if (!file.open(options, store::fingerprint(catalog), store->region, reason)) return nullptr;
    store->attachTables();
    if (!file.isNew()) return store;
    if (!store->makeTables()) {
        reason = options.path + ": no memory for empty tables";
        return nullptr;
    }
    file.complete(store->region);
    return store;
}

std::unique_ptr<SharedStore> SharedStore::makePrivate(std::span<const schema::Table> catalog, uint64_t heapSize) {
    std::unique_ptr<SharedStore> store(new SharedStore(catalog));
    if (catalog.size() > kTables || !store->region.makePrivate(heapSize)) return nullptr;
    store->region.setSecrets(HashSecrets::random());
    store->attachTables();
    return store->makeTables() ? std::move(store) : nullptr;
}

std::unique_ptr<SharedStore> SharedStore::adopt(std::span<const schema::Table> catalog, std::byte* copy,
                                                uint64_t size) {
    std::unique_ptr<SharedStore> store(new SharedStore(catalog));
    store->region.adopt(copy, size);
    store->attachTables();
    if (store->region.recover() == Region::Lock::broken) return nullptr;
    store->settle();
    return store;
}

void SharedStore::attachTables() {
    const Header& head = region.header();
    const HashSecrets secrets{.seed = head.hashSeed, .secret = head.hashSecret};
    for (uint32_t i = 0; i < tablesOf.size(); ++i) {
        tables.push_back(std::make_unique<Table>(region, tablesOf[i], secrets));
        tables[i]->attach(head.tables[i]);
    }
}

bool SharedStore::makeTables() {
    region.begin();
    try {
        for (uint32_t i = 0; i < tables.size(); ++i) region.setTable(i, tables[i]->create());
        region.commit();
    } catch (const NoRoom&) {
        region.undo();
        return false;
    }
    return true;
}

// After a writer that died: whoever read what is undone now reads again.
void SharedStore::settle() {
    for (const std::unique_ptr<Table>& table : tables) table->disturb();
    region.declareConsistent();
}

Answer SharedStore::lockWriters() {
    if (!region.isWritable()) return failed("the store is open for reading only");
    const Region::Lock taken = region.lock();
    if (taken == Region::Lock::broken) return failed("the store's lock cannot be used any more: remove its file");
    if (taken == Region::Lock::recovered) settle();
    return Answer::done;
}

void SharedStore::unlockWriters() noexcept { region.unlock(); }

// One change of one table, whole or not at all.
template <class F>
Answer SharedStore::step(uint32_t table, const F& f) {
    if (lockWriters() != Answer::done) return Answer::failed;
    Table& changed = *tables[table];
    region.begin();
    Answer answer = Answer::failed;
    try {
        answer = f(changed);
        region.commit();
        changed.close();
    } catch (const NoRoom&) {
        answer = takeBack(changed) ? Answer::noMemory : Answer::failed;
    } catch (const std::bad_alloc&) {
        answer = takeBack(changed) ? Answer::noMemory : Answer::failed;
    } catch (const Torn&) {
        (void)takeBack(changed);
        answer = failed("the store's file is damaged: remove it");
    }
    region.giveBack();
    region.unlock();
    return answer;
}

bool SharedStore::takeBack(Table& table) {
    try {
        region.undo();
    } catch (const Torn&) {
        (void)failed("the store's file is damaged: remove it");
        return false;
    }
    table.disturb();
    return true;
}

// A change of its own: when there is no memory for it, the larger hash stays.
void SharedStore::trim(uint32_t table) {
    for (bool isLoose = true; isLoose;) {
        const Answer answer = step(table, [&](Table& changed) {
            changed.trim();
            isLoose = changed.isLoose();
            return Answer::done;
        });
        if (answer != Answer::done) return;
    }
}

Answer SharedStore::put(uint32_t table, const std::byte* row) {
    return step(table, [row](Table& changed) { return changed.put(row); });
}

Answer SharedStore::patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) {
    return step(table, [=](Table& changed) { return changed.patch(key, row, fields); });
}

Answer SharedStore::erase(uint32_t table, const std::byte* key) {
    bool isLoose = false;
    const Answer answer = step(table, [key, &isLoose](Table& changed) {
        const Answer erased = changed.erase(key);
        isLoose = erased == Answer::done && changed.isLoose();
        return erased;
    });
    if (isLoose) trim(table);
    if (answer == Answer::noMemory) return failed("no memory to keep what a failure would bring back");
    return answer;
}

Answer SharedStore::get(uint32_t table, const std::byte* key, std::byte* row) { return read(table, key, row); }

Answer SharedStore::read(uint32_t table, const std::byte* key, std::byte* row) {
    const Table& from = *tables[table];
    if (!from.primaryShape().accepts(key)) return Answer::absent;
    const uint32_t hash = from.primaryShape().hash(key);
    const size_t size = from.description().recordSize;
    std::array<std::byte, schema::kMaxRecordSize> copy;  // nobody sees a row that was read in vain
    bool isFound = false;
    Glance glance{from.rowSequence(), 0};
    const Answer answer = look(glance, [&](const View& view) {
        const std::byte* const found = from.find(view, hash, key);
        isFound = found != nullptr;
        if (isFound) copyOut(copy.data(), found, size);
    });
    if (answer != Answer::done) return answer;
    if (!isFound) return Answer::absent;
    std::memcpy(row, copy.data(), size);
    return Answer::done;
}

Answer SharedStore::count(uint32_t table, uint64_t& records) {
    const Table& from = *tables[table];
    uint64_t counted = 0;
    Glance glance{from.sequence(), 0};
    const Answer answer = look(glance, [&](const View& view) { counted = from.count(view); });
    if (answer == Answer::done) records = counted;
    return answer;
}

Answer SharedStore::countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) {
    const Table& from = *tables[table];
    uint64_t counted = 0;
    if (from.shape(index).accepts(key)) {
        const uint32_t hash = from.shape(index).hash(key);
        Glance glance{from.sequence(), 0};
        const Answer answer =
            look(glance, [&](const View& view) { counted = from.countByKey(view, index, hash, key); });
        if (answer != Answer::done) return answer;
    }
    records = counted;
    return Answer::done;
}

Answer SharedStore::open(uint32_t table, const ScanRange& range, std::unique_ptr<Scan>& scan) {
    std::unique_ptr<SharedScan> made = SharedScan::make(*this, table, range);
    if (made == nullptr) return Answer::noMemory;
    const Answer answer = made->restart(range.key);
    scan = std::move(made);
    return answer;
}

uint64_t SharedStore::memory() const {
    const Header& head = region.header();
    return kLogAt + peek(head.logBacked) + peek(head.heapUsed) - peek(head.freeBytes);
}

Answer SharedStore::begin(std::unique_ptr<Transaction>& transaction) {
    return beginStaged(*this, tablesOf, kBatchBound, transaction);
}

Answer SharedStore::readCommitted(uint32_t table, const std::byte* key, std::byte* row) {
    return read(table, key, row);
}

Answer SharedStore::countCommitted(uint32_t table, uint64_t& records) { return SharedStore::count(table, records); }

Answer SharedStore::apply(std::span<const Step> steps) {
    region.begin();
    Answer outcome = Answer::done;
    try {
        // Removals first: they make the room that a table with a limit may need.
        for (const Step& one : steps) {
            if (one.kind == Step::Kind::erase) take(one);
        }
        for (const Step& one : steps) {
            if (one.kind != Step::Kind::erase) take(one);
        }
        region.commit();
        for (const Step& one : steps) tables[one.table]->close();
    } catch (const NoRoom&) {
        outcome = takeBack(steps) ? Answer::noMemory : Answer::failed;
    } catch (const std::bad_alloc&) {
        outcome = takeBack(steps) ? Answer::noMemory : Answer::failed;
    } catch (const Torn&) {
        (void)takeBack(steps);
        outcome = failed("the store's file is damaged: remove it");
    }
    region.giveBack();
    return outcome;
}

void SharedStore::take(const Step& one) {
    Table& table = *tables[one.table];
    switch (one.kind) {
        case Step::Kind::replace:
            // Where a table refuses to replace, the record goes before it comes again.
            if (table.description().presentWrite == schema::PresentWrite::refused) (void)table.erase(one.key);
            (void)table.put(one.row);
            return;
        case Step::Kind::insert:
            (void)table.put(one.row);
            return;
        case Step::Kind::patch:
            (void)table.patch(one.key, one.row, one.fields);
            return;
        case Step::Kind::erase:
            (void)table.erase(one.key);
    }
}

bool SharedStore::takeBack(std::span<const Step> steps) {
    try {
        region.undo();
    } catch (const Torn&) {
        (void)failed("the store's file is damaged: remove it");
        return false;
    }
    for (const Step& one : steps) tables[one.table]->disturb();
    return true;
}

std::string SharedStore::check() {
    if (!region.isWritable()) return "a check needs the right to write: it keeps writers off meanwhile";
    if (lockWriters() != Answer::done) return failureText();
    std::string wrong;
    try {
        wrong = checkHeld();
    } catch (const Torn&) {
        wrong = "a reference leads out of the file";
    }
    region.unlock();
    return wrong;
}

std::string SharedStore::checkHeld() const {
    const View view = region.view();
    const Header& head = region.header();
    if (head.logUsed != 0) return "a change that was not ended";
    uint64_t bytes = kUnit;
    for (const std::unique_ptr<Table>& table : tables) {
        const std::string wrong = table->check(view, bytes);
        if (!wrong.empty()) return std::string(table->description().name) + ": " + wrong;
    }
    uint64_t free = 0;
    for (uint32_t sizeClass = 0; sizeClass < kSizeClasses; ++sizeClass) {
        for (Ref block = head.freeBlocks[sizeClass]; block != 0; block = view.at<FreeBlock>(block).next) {
            view.expect(block, Region::sizeOfClass(sizeClass));
            free += Region::sizeOfClass(sizeClass);
            if (free > head.heapUsed) return "a list of free blocks that has no end";
        }
    }
    if (free != head.freeBytes) return "the count of free bytes";
    if (bytes + free != head.heapUsed) {
        return std::to_string(head.heapUsed) + " bytes of heap: " + std::to_string(bytes) + " found in use and " +
               std::to_string(free) + " free";
    }
    return {};
}

}  // namespace mcast6::store::shared
