#include "platform/store/memory/key_shape.h"

#include <algorithm>
#include <bit>
#include <random>

namespace mcast6::store::memory {
namespace {

const HashSecrets& ofProcess() {
    static const HashSecrets secrets = HashSecrets::random();
    return secrets;
}

}  // namespace

HashSecrets HashSecrets::random() {
    std::random_device device;
    const auto word = [&] { return uint64_t{device()} << 32 | device(); };
    const uint64_t seed = word() | 1;
    return {.seed = seed, .secret = word()};
}

KeyShape::KeyShape(const schema::Key& description) : KeyShape(description, ofProcess()) {}

KeyShape::KeyShape(const schema::Key& description, const HashSecrets& secrets)
    : schemaKey(&description), keyLength(description.length()), seed(secrets.seed), secret(secrets.secret) {
    uint16_t at = 0;
    for (const schema::KeyPart& part : description.parts()) {
        if (part.isConstant) {
            hasConstants = true;
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
    cutRuns();
}

void KeyShape::cutRuns() {
    Piece* next = pieces.data();
    std::array<uint16_t, schema::kMaxKeyParts> done{};  // bytes of each run
    const auto cut = [&](uint16_t width) {
        for (size_t i = 0; i < runCount; ++i) {
            for (; done[i] + width <= runs[i].width; done[i] = static_cast<uint16_t>(done[i] + width)) {
                *next++ = {static_cast<uint16_t>(runs[i].offset + done[i]),
                           static_cast<uint16_t>(runs[i].at + done[i])};
            }
        }
        return next;
    };
    foursBegin = cut(8);
    onesBegin = cut(4);
    piecesEnd = cut(1);
    if (!hasConstants && onesBegin == piecesEnd) {
        pattern =
            patternOf(static_cast<size_t>(foursBegin - pieces.data()), static_cast<size_t>(onesBegin - foursBegin));
    }
}

bool KeyShape::hasItsConstants(const std::byte* given) const {
    size_t at = 0;
    for (const schema::KeyPart& part : schemaKey->parts()) {
        if (part.isConstant && std::memcmp(given + at, constants.data() + at, part.width) != 0) return false;
        at += part.width;
    }
    return true;
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
