// Addresses on their way between records, which hold words in host order, and rows, which hold bytes in network order:
// what MCAST6_DB_SetAddress and MCAST6_DB_GetAddress do, for the conversions to take in whole.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "mcast6_db/types.h"
#include "mcast6_platform/host.h"

namespace mcast6 {

static_assert(std::endian::native == std::endian::little, "turning words, and joining halves of keys, relies on it");

// An address with the bytes of each word in the other order. It is turned in one vector register, as which it is also
// copied: a processor that begins the next search while a record is on its way from memory runs out of integer registers
// first.
struct TurnedAddress {
    using Halfwords = uint16_t __attribute__((vector_size(sizeof(Mcast6Ipv6Addr))));

    explicit TurnedAddress(const void* address) {
        memcpy(&halfwords, address, sizeof halfwords);
        halfwords = __builtin_shufflevector(halfwords, halfwords, 1, 0, 3, 2, 5, 4, 7, 6);
        halfwords = halfwords << 8 | halfwords >> 8;
    }

    Halfwords halfwords;
};

inline int setAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    const TurnedAddress turned(source);
    return memcpy_s(destination, destinationSize, &turned.halfwords, count);
}

inline int getAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    const int code = memcpy_s(destination, destinationSize, source, count);
    const TurnedAddress turned(destination);
    memcpy(destination, &turned.halfwords, sizeof turned.halfwords);
    return code;
}

}  // namespace mcast6
