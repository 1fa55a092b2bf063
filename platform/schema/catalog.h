// The list of all tables. A table's position in the list is its table id inside the platform.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "platform/schema/schema.h"

namespace mcast6::schema {

std::span<const Table> catalog();

std::optional<uint32_t> tableNamed(std::string_view name);

}  // namespace mcast6::schema
