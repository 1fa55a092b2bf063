// The published layout of a table's record and keys, as constants. tables/<table>.h holds one for each table, generated
// from the platform's schema, so that whoever converts records can have the compiler compare.
#ifndef MCAST6_PLATFORM_LAYOUT_H
#define MCAST6_PLATFORM_LAYOUT_H

#include <cstdint>

namespace mcast6::layout {

struct Field {
    const char *name;
    uint16_t offset;
    uint16_t width;
    bool isScalar;
};

// A run of bytes of a key: from the record at 'offset', or 'width' low bytes of a constant.
struct KeyPart {
    bool isConstant;
    uint16_t offset;
    uint16_t width;
    uint64_t constant;
};

inline constexpr int kMaxKeyParts = 8;

struct Key {
    uint32_t word;
    uint8_t partCount;
    KeyPart parts[kMaxKeyParts];
    const char *conditionName;  // sorted keys; otherwise null
};

}  // namespace mcast6::layout

#endif
