// What a table's schema turns into. The text depends on schema::catalog() alone, so two runs give the same bytes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace mcast6::facts {

// 'directory'/tables.h, and 'directory'/tables/<table>.h with the accessors' prototypes and the layout.
void writeAccessorHeaders(const std::filesystem::path& directory);

// The accessors' definitions, each one call of platform/schema/accessors.h: of all tables, or of the one named 'only'.
std::string accessorBodies(std::string_view only = {});

}  // namespace mcast6::facts
