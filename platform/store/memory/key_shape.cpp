#include "platform/store/memory/key_shape.h"

#include <algorithm>
#include <bit>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace mcast6::store::memory {
namespace {

// Groups and sources come from the network: nobody outside shall be able to choose keys that collide.
XXH64_hash_t seed() {
    static const XXH64_hash_t value = [] {
        const int here = 0;
        const void* const address = &here;  // differs from run to run
        return XXH3_64bits(&address, sizeof address);
    }();
    return value;
}

const XXH64_hash_t kSeed = seed();

}  // namespace

KeyShape::KeyShape(const schema::Key& description) : schemaKey(&description), keyLength(description.length()) {
    uint16_t at = 0;
    for (const schema::KeyPart& part : description.parts()) {
        if (part.isConstant) {
            for (uint16_t i = 0; i < part.width && i < sizeof part.constant; ++i) {
                constants[at + size_t{i}] = static_cast<std::byte>(part.constant >> (8 * i));
            }
        } else if (runCount > 0 && runs[runCount - 1].offset + runs[runCount - 1].width == part.offset &&
                   runs[runCount - 1].at + runs[runCount - 1].width == at) {
            runs[runCount - 1].width = static_cast<uint16_t>(runs[runCount - 1].width + part.width);
        } else {
            runs[runCount++] = {part.offset, at, part.width};
        }
        at = static_cast<uint16_t>(at + part.width);
    }
    isOneRun = runCount == 1 && runs[0].width == keyLength;
}

bool KeyShape::accepts(const std::byte* given) const {
    size_t at = 0;
    for (const schema::KeyPart& part : schemaKey->parts()) {
        if (part.isConstant && !sameBytes(given + at, constants.data() + at, part.width)) return false;
        at += part.width;
    }
    return true;
}

uint32_t KeyShape::hash(const std::byte* given) const {
    const uint64_t wide = XXH3_64bits_withSeed(given, keyLength, kSeed);
    const uint32_t folded = static_cast<uint32_t>(wide >> 32);
    return folded != 0 ? folded : 1;
}

void KeyShape::flip(const std::byte* given, std::byte* flipped) const {
    std::memcpy(flipped, given, keyLength);
    if constexpr (std::endian::native == std::endian::big) return;
    size_t at = 0;
    for (const schema::KeyPart& part : schemaKey->parts()) {
        if (part.isScalar) std::reverse(flipped + at, flipped + at + part.width);
        at += part.width;
    }
}

bool KeyShape::covers(size_t offset, size_t width) const {
    return std::any_of(runs.begin(), runs.begin() + static_cast<ptrdiff_t>(runCount), [&](const Run& run) {
        return offset < size_t{run.offset} + run.width && run.offset < offset + width;
    });
}

}  // namespace mcast6::store::memory
