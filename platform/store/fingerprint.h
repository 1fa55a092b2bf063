// One number for a whole schema. A store that outlives a process keeps it, and is opened again only with the same one.
#pragma once

#include <cstdint>
#include <span>

#include "platform/schema/schema.h"

namespace mcast6::store {

// Depends on all that a store is built from: the order of the tables, their names, record sizes, fields, keys, indexes,
// capacities, and how they answer a present key. Does not depend on the compiler, and stays the same between releases
// as long as the schema does.
uint64_t fingerprint(std::span<const schema::Table> tables);

}  // namespace mcast6::store
