// How the bytes of one key lie in a row, in the form that composing, comparing and hashing want: neighbouring parts of
// the record joined into runs, constants written out once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/schema/schema.h"

namespace mcast6::store::memory {

using KeyBuffer = std::array<std::byte, schema::kMaxKeyLength>;

inline uint64_t load64(const std::byte* from) {
    uint64_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

inline uint32_t load32(const std::byte* from) {
    uint32_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

// Keys are short, mostly a multiple of four bytes and mostly equal: cheaper in place than by a call.
inline bool sameBytes(const std::byte* a, const std::byte* b, size_t size) {
    for (; size >= 8; a += 8, b += 8, size -= 8) {
        if (load64(a) != load64(b)) return false;
    }
    if (size >= 4) {
        if (load32(a) != load32(b)) return false;
        a += 4, b += 4, size -= 4;
    }
    for (; size > 0; ++a, ++b, --size) {
        if (*a != *b) return false;
    }
    return true;
}

class KeyShape {
public:
    explicit KeyShape(const schema::Key& key);

    size_t length() const { return keyLength; }

    // The key of a row. The result lies in the row itself where the key is one run of it, else in 'room'.
    const std::byte* of(const std::byte* row, KeyBuffer& room) const {
        if (isOneRun) return row + runs[0].offset;
        room = constants;
        for (size_t i = 0; i < runCount; ++i) {
            std::memcpy(room.data() + runs[i].at, row + runs[i].offset, runs[i].width);
        }
        return room.data();
    }

    // Whether the row has this key. Constants in the key are not looked at: see accepts().
    bool matches(const std::byte* row, const std::byte* key) const {
        for (size_t i = 0; i < runCount; ++i) {
            if (!sameBytes(row + runs[i].offset, key + runs[i].at, runs[i].width)) return false;
        }
        return true;
    }

    // Has the bytes brought that matches() looks at.
    void prefetch(const std::byte* row) const {
        for (size_t i = 0; i < runCount; ++i) {
            __builtin_prefetch(row + runs[i].offset);
            __builtin_prefetch(row + runs[i].offset + runs[i].width - 1);
        }
    }

    // Whether two rows have the same key.
    bool sameKey(const std::byte* row, const std::byte* other) const {
        for (size_t i = 0; i < runCount; ++i) {
            if (!sameBytes(row + runs[i].offset, other + runs[i].offset, runs[i].width)) return false;
        }
        return true;
    }

    // Whether any row can have this key: its constants are those of the schema.
    bool accepts(const std::byte* key) const;

    // Never 0.
    uint32_t hash(const std::byte* key) const;

    // The key in a form whose bytes compare as its values do, and back: scalars lie most significant byte first.
    void flip(const std::byte* key, std::byte* flipped) const;

    // Whether the key takes in any of these bytes of the row.
    bool covers(size_t offset, size_t width) const;

private:
    struct Run {
        uint16_t offset;  // in the row
        uint16_t at;      // in the key
        uint16_t width;
    };

    const schema::Key* schemaKey;
    size_t keyLength;
    size_t runCount = 0;
    bool isOneRun = false;
    std::array<Run, schema::kMaxKeyParts> runs{};
    KeyBuffer constants{};  // and zeros elsewhere
};

}  // namespace mcast6::store::memory
