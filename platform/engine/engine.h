// The engine: the contract of mcast6_platform/engine.h over a catalog of tables and a store.
//
// Three layers. The contract takes handles and pointers that may be wrong; the store (platform/store/store.h) takes
// tables, rows and keys that are right; the engine checks in between. It holds objects, root iterators and statements,
// and no records. Every call has the same steps:
//   1. the handle is looked up, the object's type and state are checked, then the arguments, then the key word;
//   2. one call of the store does the work, as one atomic step;
//   3. its answer becomes a code, and what the object remembers is changed, on success only.
// So a call that fails has changed nothing, and a second call after a failure behaves as if the first had not been.
//
// Objects and iterators live in slots of two handle tables (handle_table.h), with the row inside the slot: making and
// releasing an object takes no memory once the slots are there. An object owns its iterators, which form a list; they
// go when it is released or reset. Only an iterator's scan is made on the heap, by the store.
//
// Threads: handles are looked up without a lock and the engine has no lock of its own on any path but the growth of a
// handle table. One object, with its iterators, is used by one thread at a time; a handle that was released before the
// call is answered as stale in every thread, whoever uses its slot by then.
//
// Rules of the engine's own, beyond the contract:
//   - an update object takes no field of the primary key: its setter answers MCAST6_DB_BAD_OPERATION, and all-fields
//     leaves those fields out. A write or an update on which nothing was set answers MCAST6_DB_BAD_OPERATION;
//   - fields of a write that were not set are zero;
//   - a keyed read by a cache object fills the caller's buffer alone: its getters answer MCAST6_DB_BAD_OPERATION;
//   - a getter on an iterate object fetches its field from the record at the position, and answers 15005 when that
//     record is gone; what earlier getters fetched stays as it was;
//   - a reset drops all iterators of an object, but a cache object that is reset as such keeps its cached ones, which
//     keep their position; the getters then need a new step.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/engine/batches.h"
#include "platform/engine/handle_table.h"
#include "platform/engine/object.h"
#include "platform/engine/table_facts.h"
#include "platform/schema/schema.h"
#include "platform/store/store.h"

namespace mcast6::engine {

class Engine {
public:
    // Begins with this store. 'tables' outlives the engine. Throws std::bad_alloc.
    Engine(std::unique_ptr<store::Store> store, std::span<const schema::Table> tables);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine();

    // Changes the store, while no other thread is inside the engine. detach() aborts open batches, releases all objects
    // but cache objects, and puts those and their cached iterators into the state that they had when they were made, so
    // that their handles serve the next store. attach() throws std::bad_alloc, with nothing attached.
    void detach() noexcept;
    void attach(std::unique_ptr<store::Store> store);

    // The calling thread's batch; see mcast6_platform/platform.h.
    uint32_t begin() noexcept;
    uint32_t commit() noexcept;
    uint32_t abort() noexcept;

    // What the accessors call; see platform/schema/accessors.h.
    uint32_t createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept;
    uint32_t createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept;
    void releaseObject(uint32_t table, uint64_t object) noexcept;
    uint32_t resetObject(uint32_t table, uint64_t object, uint32_t objType) noexcept;
    uint32_t resetCacheObject(uint32_t table, uint64_t object) noexcept;
    uint32_t setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) noexcept;
    uint32_t setField(uint32_t table, uint32_t field, uint64_t object, const void* value, uint32_t length) noexcept;
    uint32_t getField(uint32_t table, uint32_t field, uint64_t object, void* value) noexcept;
    uint32_t getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes, uint32_t* length) noexcept;

    // The generic calls; see mcast6_platform/engine.h, where each is named db_...
    uint32_t write(uint64_t object) noexcept;
    uint32_t update(uint64_t object, const void* keyDesc, const void* key) noexcept;
    uint32_t remove(uint64_t object, const void* keyDesc, const void* key) noexcept;
    uint32_t read(uint64_t object, const void* keyDesc, const void* key, void* buffer, uint32_t length) noexcept;
    uint32_t count(uint64_t object, uint32_t* count) noexcept;
    uint32_t countByKey(uint64_t object, const void* keyDesc, const void* key, uint32_t* count) noexcept;

    uint32_t createRootIter(uint64_t object, const void* keyDesc, const void* key, uint64_t* rootIter) noexcept;
    uint32_t createCacheRootIter(uint64_t object, const void* keyDesc, uint64_t* rootIter) noexcept;
    uint32_t resetCacheRootIter(uint64_t rootIter, const void* key) noexcept;
    uint32_t setRootIterProperty(uint64_t rootIter, uint32_t property, const void* value, uint32_t length) noexcept;
    uint32_t next(uint64_t rootIter) noexcept;
    uint32_t createStatement(uint64_t object, uint32_t kind, const void* params, uint32_t paramCount) noexcept;
    uint32_t appendCondition(uint64_t object, const char* keyName, uint32_t kind, uint32_t reserved1,
                             const void* reserved2, uint32_t reserved3, const void* keyWord, const void* value,
                             uint32_t valueLength) noexcept;
    uint32_t createRootIterOfStatement(uint64_t object, uint64_t* rootIter) noexcept;

    // Bytes that the store takes.
    uint64_t memory() const noexcept;

    // Why the calling thread's last failed call of the store failed.
    const char* storeReason() const noexcept { return store_->reason(); }

    // The store as the calling thread sees it, its batch included, for what is kept there without objects.
    store::Store& front() const { return *front_.load(std::memory_order_relaxed); }

    // Counts the slots, used and free.
    uint64_t objectSlots() const { return objects_.slots(); }
    uint64_t iteratorSlots() const { return iterators_.slots(); }

private:
    uint32_t makeObject(uint32_t table, uint32_t objType, uint32_t connType, bool isCache, uint64_t* object) noexcept;
    Object* objectOf(uint32_t table, uint64_t object) const {
        Object* found = objects_.find(object);
        return found != nullptr && found->facts->id == table ? found : nullptr;
    }
    void dropIterators(Object& object, bool keepCached) {
        if (object.iterators != nullptr) dropListedIterators(object, keepCached);
    }
    void dropListedIterators(Object& object, bool keepCached);
    uint32_t countWithKey(const TableFacts& facts, uint32_t keyWord, const std::byte* key, uint64_t& records);
    uint32_t openByKey(const TableFacts& facts, uint32_t keyWord, const void* key, std::unique_ptr<store::Scan>& scan);
    uint32_t openRange(const TableFacts& facts, const store::ScanRange& range, std::unique_ptr<store::Scan>& scan);
    uint32_t makeIterator(Object& object, std::unique_ptr<store::Scan> scan, bool isCached, uint64_t* rootIter);
    uint32_t fetchField(uint32_t table, uint32_t field, uint64_t object, Object*& fetched);

    void detachObject(Object& object);

    // Destroyed last: the scans of the iterators use it.
    std::unique_ptr<store::Store> store_;
    std::atomic<store::Store*> front_;  // store_, or batches_ while any batch is open
    std::unique_ptr<Batches> batches_;
    std::vector<TableFacts> tables_;
    const uint32_t nonce_;
    HandleTable<Object> objects_;
    HandleTable<Iterator> iterators_;
};

}  // namespace mcast6::engine
