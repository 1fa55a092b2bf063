// The default store: all tables in the memory of this process.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/schema/schema.h"
#include "platform/store/registry.h"
#include "platform/store/staged.h"
#include "platform/store/store.h"

namespace mcast6::store {

// An empty store for the tables of 'catalog', which must outlive it, whose batches change at most 'batchBound' records.
// Throws std::bad_alloc when there is no memory.
std::unique_ptr<Store> makeMemoryStore(std::span<const schema::Table> catalog, uint64_t batchBound = kBatchBound);

namespace memory {

// 'memory:', with the option batch=RECORDS.
const StoreKind& storeKind();

}  // namespace memory
}  // namespace mcast6::store
