// What memcpy_s does, for everything that provides it.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mcast6::host {

// Sizes above this are taken for negative numbers gone astray; such an area is not touched.
inline constexpr size_t kMostBytes = SIZE_MAX >> 1;

inline int boundedCopy(void* destination, size_t destinationSize, const void* source, size_t count) {
    if (destination == nullptr) return EINVAL;
    if (destinationSize > kMostBytes) return ERANGE;
    const uintptr_t to = reinterpret_cast<uintptr_t>(destination);
    const uintptr_t from = reinterpret_cast<uintptr_t>(source);
    int error = 0;
    if (source == nullptr) {
        error = EINVAL;
    } else if (count > destinationSize) {
        error = ERANGE;
    } else if (count != 0 && (to > from ? to - from : from - to) < count) {
        error = EINVAL;
    }
    if (error != 0) {
        std::memset(destination, 0, destinationSize);
        return error;
    }
    if (count != 0) std::memcpy(destination, source, count);
    return 0;
}

}  // namespace mcast6::host
