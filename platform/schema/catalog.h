// The list of all tables. A table's position in the list is its table id inside the platform.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "platform/schema/schema.h"

namespace mcast6::schema {

// The tables of the library.
std::span<const Table> catalog();

// What a store holds: the tables of the library, then the platform's own, which have no accessors.
std::span<const Table> storeCatalog();

// The platform's own tables.
uint32_t globalVersionTable();
uint32_t linkNameTable();

// The id of a table of the library.
std::optional<uint32_t> tableNamed(std::string_view name);

}  // namespace mcast6::schema
