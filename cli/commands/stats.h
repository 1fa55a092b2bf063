// What the error statistics call their rows and columns.
#pragma once

#include <cstdint>
#include <string>

namespace mcast6::ctl {

constexpr uint32_t kTableNumbers = 33;
constexpr uint32_t kErrorKinds = 10;

// "l3mc6_mfib"; null for a number that no table records.
const char* tableName(uint32_t tableNumber);

// "write failed"
const char* errorKindName(uint32_t errorKind);

}  // namespace mcast6::ctl
