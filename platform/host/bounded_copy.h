// What memcpy_s does, for everything that provides it.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mcast6::host {

// Sizes above this are taken for negative numbers gone astray; such an area is not touched.
inline constexpr size_t kMostBytes = SIZE_MAX >> 1;

// Addresses are most of what is copied. They are moved without a call, and by halves, as which they were often stored a
// moment ago.
inline constexpr size_t kAddressBytes = 16;

inline void copyAddress(void* destination, const void* source) {
    uint64_t high;
    uint64_t low;
    std::memcpy(&high, source, sizeof high);
    std::memcpy(&low, static_cast<const char*>(source) + sizeof high, sizeof low);
    asm("" : "+r"(high), "+r"(low));  // else compilers make one move of it
    std::memcpy(destination, &high, sizeof high);
    std::memcpy(static_cast<char*>(destination) + sizeof high, &low, sizeof low);
}

// Apart from the way of a copy that is done, which so needs no stack.
[[gnu::noinline, gnu::cold]] inline int refuse(void* destination, size_t destinationSize, int error) {
    std::memset(destination, 0, destinationSize);
    return error;
}

inline int boundedCopy(void* destination, size_t destinationSize, const void* source, size_t count) {
    if (destination == nullptr) return EINVAL;
    if (destinationSize > kMostBytes) return ERANGE;
    if (source == nullptr) return refuse(destination, destinationSize, EINVAL);
    if (count > destinationSize) return refuse(destination, destinationSize, ERANGE);
    const uintptr_t to = reinterpret_cast<uintptr_t>(destination);
    const uintptr_t from = reinterpret_cast<uintptr_t>(source);
    if (count != 0 && (to > from ? to - from : from - to) < count) return refuse(destination, destinationSize, EINVAL);
    if (count == kAddressBytes) {
        copyAddress(destination, source);
    } else if (count != 0) {
        std::memcpy(destination, source, count);
    }
    return 0;
}

}  // namespace mcast6::host
