// What readers see of a region: bytes that a writer may be changing at this very moment.
//
// A reader takes no lock. It looks at a sequence number before and after, and believes what it read only when the
// number stood still. In between it may meet anything: so every reference is compared with the end of what is readable,
// every loop has a bound, and what cannot be right ends the attempt with Torn.
//
// Words that a writer may be changing are read by peek() and copied by copyOut(). Both are plain loads, except for the
// thread sanitizer, which is told that they are meant.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mcast6::store::shared {

#if defined(__SANITIZE_THREAD__)
inline constexpr bool kThreadSanitized = true;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
inline constexpr bool kThreadSanitized = true;
#else
inline constexpr bool kThreadSanitized = false;
#endif
#else
inline constexpr bool kThreadSanitized = false;
#endif

// A block of the heap, by its offset in units of 16 bytes. 0: none.
using Ref = uint32_t;
inline constexpr uint64_t kUnit = 16;

// Thrown by whoever reads what a writer was just changing, or a damaged file.
struct Torn {};

template <class T>
T peek(const T& place) {
    return std::atomic_ref<T>(const_cast<T&>(place)).load(std::memory_order_relaxed);
}

// Calls f(offset, a width of 8, 4 or 1) for the pieces of 'size' bytes that can be loaded as one from 'place'.
template <class F>
void forPieces(const void* place, size_t size, const F& f) {
    const auto address = reinterpret_cast<uintptr_t>(place);
    for (size_t at = 0; at < size;) {
        size_t width = 1;
        if ((address + at) % 8 == 0 && at + 8 <= size) {
            width = 8;
        } else if ((address + at) % 4 == 0 && at + 4 <= size) {
            width = 4;
        }
        f(at, width);
        at += width;
    }
}

template <class T>
void copyPiece(std::byte* to, const std::byte* from) {
    const T piece =
        std::atomic_ref<T>(*const_cast<T*>(reinterpret_cast<const T*>(from))).load(std::memory_order_relaxed);
    std::memcpy(to, &piece, sizeof piece);
}

template <class T>
void storePiece(std::byte* to, const std::byte* from) {
    T piece;
    std::memcpy(&piece, from, sizeof piece);
    std::atomic_ref<T>(*reinterpret_cast<T*>(to)).store(piece, std::memory_order_relaxed);
}

// Copies bytes of the region to memory of the caller.
inline void copyOut(void* to, const void* from, size_t size) {
    if constexpr (kThreadSanitized) {
        auto* const target = static_cast<std::byte*>(to);
        const auto* const source = static_cast<const std::byte*>(from);
        forPieces(from, size, [&](size_t at, size_t width) {
            if (width == 8) return copyPiece<uint64_t>(target + at, source + at);
            if (width == 4) return copyPiece<uint32_t>(target + at, source + at);
            copyPiece<uint8_t>(target + at, source + at);
        });
    } else {
        std::memcpy(to, from, size);
    }
}

// Copies bytes of the caller's memory into the region.
inline void copyIn(void* to, const void* from, size_t size) {
    if constexpr (kThreadSanitized) {
        auto* const target = static_cast<std::byte*>(to);
        const auto* const source = static_cast<const std::byte*>(from);
        forPieces(to, size, [&](size_t at, size_t width) {
            if (width == 8) return storePiece<uint64_t>(target + at, source + at);
            if (width == 4) return storePiece<uint32_t>(target + at, source + at);
            storePiece<uint8_t>(target + at, source + at);
        });
    } else {
        std::memcpy(to, from, size);
    }
}

// Keeps the loads before it before the loads after it.
inline void readBarrier() {
    // The thread sanitizer knows no fences. It needs none: it runs what it is given in order.
    if constexpr (kThreadSanitized) {
        asm volatile("" ::: "memory");
    } else {
#ifndef __SANITIZE_THREAD__
        std::atomic_thread_fence(std::memory_order_acquire);
#endif
    }
}

// The heap of a region, as far as it can be read.
class View {
public:
    View(const std::byte* heapStart, uint64_t readable) : heap(heapStart), end(readable) {}

    // Throws Torn when the region has no such bytes.
    void expect(Ref ref, uint64_t size) const {
        if (ref * kUnit + size > end) [[unlikely]]
            throw Torn{};
    }

    // Unchecked: for what was expected before, and for the writer.
    template <class T>
    const T& at(Ref ref) const {
        return *reinterpret_cast<const T*>(heap + ref * kUnit);
    }

    // The array that begins 'offset' bytes into a block.
    template <class T>
    const T* array(Ref ref, size_t offset = 0) const {
        return reinterpret_cast<const T*>(heap + ref * kUnit + offset);
    }

    void prefetch(Ref ref, size_t offset = 0) const { __builtin_prefetch(heap + ref * kUnit + offset, 1); }

private:
    const std::byte* heap;
    uint64_t end;
};

}  // namespace mcast6::store::shared
