// Address conversion between records (words in host order) and rows (bytes in network order): MCAST6_DB_SetAddress and
// MCAST6_DB_GetAddress as inline functions for the field maps.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "mcast6_db/types.h"
#include "mcast6_platform/host.h"

namespace mcast6 {

static_assert(std::endian::native == std::endian::little,
              "swapping the bytes of addresses and joining halves of keys rely on it");

// An address with the bytes of each word swapped. It is swapped and copied in one vector register. Integer registers
// are scarce on the hot path: a processor that starts the next lookup while it waits for a record runs out of them
// first.
struct SwappedAddress {
    using Halfwords = uint16_t __attribute__((vector_size(sizeof(Mcast6Ipv6Addr))));

    explicit SwappedAddress(const void* address) {
        memcpy(&halfwords, address, sizeof halfwords);
        halfwords = __builtin_shufflevector(halfwords, halfwords, 1, 0, 3, 2, 5, 4, 7, 6);
        halfwords = halfwords << 8 | halfwords >> 8;
    }

    Halfwords halfwords;
};

inline int setAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    const SwappedAddress swapped(source);
    return memcpy_s(destination, destinationSize, &swapped.halfwords, count);
}

inline int getAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    const int code = memcpy_s(destination, destinationSize, source, count);
    const SwappedAddress swapped(destination);
    memcpy(destination, &swapped.halfwords, sizeof swapped.halfwords);
    return code;
}

}  // namespace mcast6
