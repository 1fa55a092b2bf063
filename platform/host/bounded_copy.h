// What memcpy_s does, for everything that provides it.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mcast6::host {

// Sizes above this are taken for negative numbers gone astray; such an area is not touched.
inline constexpr size_t kMostBytes = SIZE_MAX >> 1;

// Whether areas of this length, which is not 0, overlap at these two places.
inline bool overlap(const void* one, const void* other, size_t length) {
    const auto distance = reinterpret_cast<uintptr_t>(one) - reinterpret_cast<uintptr_t>(other);
    return distance + (length - 1) <= 2 * (length - 1);
}

// Apart from the way of a copy that is done, which so needs no stack.
[[gnu::noinline, gnu::cold]] inline int refuse(void* destination, size_t destinationSize, int error) {
    std::memset(destination, 0, destinationSize);
    return error;
}

[[gnu::always_inline]] inline int checkAndCopy(void* destination, size_t destinationSize, const void* source,
                                               size_t count) {
    if (destination == nullptr) return EINVAL;
    if (destinationSize > kMostBytes) return ERANGE;
    if (source == nullptr) return refuse(destination, destinationSize, EINVAL);
    if (count > destinationSize) return refuse(destination, destinationSize, ERANGE);
    if (count == 0) return 0;
    if (overlap(destination, source, count)) return refuse(destination, destinationSize, EINVAL);
    std::memcpy(destination, source, count);
    return 0;
}

// Apart from the copy of an address, which so needs no register but its arguments.
[[gnu::noinline]] inline int copyOfAnyLength(void* destination, size_t destinationSize, const void* source,
                                             size_t count) {
    return checkAndCopy(destination, destinationSize, source, count);
}

// Addresses are most of what is copied. With their length told, no call is needed, and half of the work.
inline int boundedCopy(void* destination, size_t destinationSize, const void* source, size_t count) {
    constexpr size_t kAddressBytes = 16;
    if (count != kAddressBytes) return copyOfAnyLength(destination, destinationSize, source, count);
    return checkAndCopy(destination, destinationSize, source, kAddressBytes);
}

}  // namespace mcast6::host
