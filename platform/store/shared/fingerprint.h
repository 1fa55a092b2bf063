// One number of all that a file takes for granted of the tables in it.
#pragma once

#include <cstdint>
#include <span>

#include "platform/schema/schema.h"

namespace mcast6::store::shared {

uint64_t fingerprintOf(std::span<const schema::Table> tables);

}  // namespace mcast6::store::shared
