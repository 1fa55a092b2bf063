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

// An address with the bytes of each word in the other order. It is turned in registers by halves, as which it is also
// copied and looked for: stored word by word, a half could not be loaded before it has reached the cache.
struct TurnedAddress {
    explicit TurnedAddress(const void* address) {
        memcpy(halves, address, sizeof halves);
        for (uint64_t& half : halves) half = __builtin_bswap64(half << 32 | half >> 32);
    }

    uint64_t halves[sizeof(Mcast6Ipv6Addr) / sizeof(uint64_t)];
};

inline int setAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    const TurnedAddress turned(source);
    return memcpy_s(destination, destinationSize, turned.halves, count);
}

inline int getAddress(void* destination, uint32_t destinationSize, const void* source, uint32_t count) {
    const int code = memcpy_s(destination, destinationSize, source, count);
    const TurnedAddress turned(destination);
    memcpy(destination, turned.halves, sizeof turned.halves);
    return code;
}

}  // namespace mcast6
