// The default store: all tables in the memory of this process.
#pragma once

#include <memory>
#include <span>

#include "platform/schema/schema.h"
#include "platform/store/store.h"

namespace mcast6::store {

// An empty store for the tables of 'catalog', which must outlive it. Throws std::bad_alloc when there is no memory.
std::unique_ptr<Store> makeMemoryStore(std::span<const schema::Table> catalog);

}  // namespace mcast6::store
