// A growing set of small numbers that finds its next member quickly.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory_resource>
#include <vector>

namespace mcast6::store::memory {

inline constexpr uint32_t kNoBit = UINT32_MAX;

// The first bit set at or after 'from' in 'count' words, or kNoBit.
inline uint32_t firstBit(const uint64_t* words, size_t count, uint32_t from) {
    size_t word = from / 64;
    if (word >= count) return kNoBit;
    uint64_t rest = words[word] & (~uint64_t{0} << (from % 64));
    while (rest == 0) {
        if (++word == count) return kNoBit;
        rest = words[word];
    }
    return static_cast<uint32_t>(word * 64) + static_cast<uint32_t>(std::countr_zero(rest));
}

class BitSet {
public:
    explicit BitSet(std::pmr::memory_resource* memory) : words(memory) {}

    // Makes room for the numbers below 'size'; throws std::bad_alloc.
    void reach(size_t size) {
        if (words.size() * 64 < size) words.resize((size + 63) / 64);
    }

    void set(uint32_t bit) {
        words[bit / 64] |= uint64_t{1} << (bit % 64);
        lowest = std::min(lowest, bit / 64);
    }
    void clear(uint32_t bit) {
        words[bit / 64] &= ~(uint64_t{1} << (bit % 64));
        while (lowest < words.size() && words[lowest] == 0) ++lowest;
    }
    uint32_t first(uint32_t from = 0) const {
        return firstBit(words.data(), words.size(), std::max(from, lowest * 64));
    }

private:
    uint32_t lowest = 0;  // the words before this one are zero
    std::pmr::vector<uint64_t> words;
};

}  // namespace mcast6::store::memory
