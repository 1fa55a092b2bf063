// What memcpy_s does, for everything that provides it.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mcast6::host {

// Sizes above this are taken for negative numbers by mistake; such an area is not touched.
inline constexpr size_t kMostBytes = SIZE_MAX >> 1;

// Whether areas of this length, which is not 0, overlap at these two places.
inline bool overlap(const void* one, const void* other, size_t length) {
    const auto distance = reinterpret_cast<uintptr_t>(one) - reinterpret_cast<uintptr_t>(other);
    return distance + (length - 1) <= 2 * (length - 1);
}

// A function of its own, so that the hot path needs no stack.
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

// A function of its own, so that the copy of an address needs no register but its arguments.
[[gnu::noinline]] inline int copyOfAnyLength(void* destination, size_t destinationSize, const void* source,
                                             size_t count) {
    return checkAndCopy(destination, destinationSize, source, count);
}

// Most copies are addresses. With a constant length the copy is inlined, at half of the cost.
inline int boundedCopy(void* destination, size_t destinationSize, const void* source, size_t count) {
    constexpr size_t kAddressBytes = 16;
    if (count != kAddressBytes) return copyOfAnyLength(destination, destinationSize, source, count);
    return checkAndCopy(destination, destinationSize, source, kAddressBytes);
}

}  // namespace mcast6::host
