// Named constants: the engine codes that the operations distinguish, the operations' own results, the object types.
#pragma once

#include <cstdint>

namespace mcast6 {

// Engine codes.
inline constexpr uint32_t kOk = 0;
inline constexpr uint32_t kExistsOrAbsent = 13044;  // write of a present record, update or removal of an absent one
inline constexpr uint32_t kNoSuchObject = 15005;  // no record with this key, or the record at this position was removed
inline constexpr uint32_t kEndOfIteration = 110012;
inline constexpr uint32_t kTableFull = 110024;

// Results of the operations' own.
inline constexpr uint32_t kFailed = 1;
inline constexpr uint32_t kNoRecord = 60;

enum ObjType : uint32_t {
    kWriteObject = 0,
    kUpdateObject = 1,
    kReadObject = 3,
    kRemoveObject = 4,
    kIterateObject = 5,
    kCountObject = 9
};
inline constexpr uint32_t kConnType = 0;

// Error kinds: the columns of the error statistics.
enum class Error : uint8_t {
    read = 0,
    code13044 = 1,
    write = 2,
    remove = 4,
    update = 6,
    rootIter = 7,
    iterBuild = 8,
    next = 9,
};

inline constexpr uint32_t kLogLevel = 9;

// Log ids, one per group of tables.
inline constexpr uint32_t kLogLayer2Egress = 0x0F2E100F;
inline constexpr uint32_t kLogLayer2Mfib = 0x0F2E1010;
inline constexpr uint32_t kLogConfiguration = 0x0F2E1012;
inline constexpr uint32_t kLogFlowStatistics = 0x0F2E1014;
inline constexpr uint32_t kLogLayer3 = 0x0F2E1016;
inline constexpr uint32_t kLogLayer3Query = 0x0F2E1017;

}  // namespace mcast6
