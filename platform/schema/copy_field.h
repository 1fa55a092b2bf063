// Copies of one field, whose width is known from its description only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mcast6::schema {

// The usual widths take no call.
inline void copyField(void* to, const void* from, size_t width) {
    switch (width) {
        case sizeof(uint32_t):
            std::memcpy(to, from, sizeof(uint32_t));
            return;
        case sizeof(uint64_t):
            std::memcpy(to, from, sizeof(uint64_t));
            return;
        default:
            std::memcpy(to, from, width);
    }
}

}  // namespace mcast6::schema
