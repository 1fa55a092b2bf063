// How the bytes of one key lie in a row, in the form that composing, comparing and hashing want: neighbouring parts of
// the record joined into runs, these cut into words, constants written out once. So a row can be hashed and compared by
// its key without that key being composed.
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

class KeyShape {
public:
    explicit KeyShape(const schema::Key& key);
    KeyShape(const KeyShape&) = delete;
    KeyShape& operator=(const KeyShape&) = delete;

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
        return same(row, key, [](const Piece& piece) { return piece.at; });
    }

    // Whether two rows have the same key.
    bool sameKey(const std::byte* row, const std::byte* other) const {
        return same(row, other, [](const Piece& piece) { return piece.offset; });
    }

    // Has the bytes brought that matches() looks at.
    void prefetch(const std::byte* row) const {
        for (size_t i = 0; i < runCount; ++i) {
            __builtin_prefetch(row + runs[i].offset);
            __builtin_prefetch(row + runs[i].offset + runs[i].width - 1);
        }
    }

    // Whether any row can have this key: its constants are those of the schema.
    bool accepts(const std::byte* key) const { return !hasConstants || hasItsConstants(key); }

    // Of a key, and of the key of a row. Constants do not count. Never 0.
    uint32_t hash(const std::byte* key) const {
        return hashed(key, [](const Piece& piece) { return piece.at; });
    }
    uint32_t hashOf(const std::byte* row) const {
        return hashed(row, [](const Piece& piece) { return piece.offset; });
    }

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

    // The runs cut into pieces of eight bytes, of four and of one, in this order.
    struct Piece {
        uint16_t offset;
        uint16_t at;
    };

    // Compares the pieces of a row with those that stand at(piece) in 'other'.
    template <class At>
    bool same(const std::byte* row, const std::byte* other, const At& at) const {
        const Piece* piece = pieces.data();
        for (; piece != foursBegin; ++piece) {
            if (load64(row + piece->offset) != load64(other + at(*piece))) return false;
        }
        for (; piece != onesBegin; ++piece) {
            if (load32(row + piece->offset) != load32(other + at(*piece))) return false;
        }
        for (; piece != piecesEnd; ++piece) {
            if (row[piece->offset] != other[at(*piece)]) return false;
        }
        return true;
    }

    // Each piece is mixed in by a multiplication whose halves are folded, which spreads every bit over all.
    static uint64_t mixed(uint64_t state, uint64_t word) {
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(state ^ word) * 0x9E3779B97F4A7C15U;
        return static_cast<uint64_t>(product >> 64) ^ static_cast<uint64_t>(product);
    }

    template <class At>
    uint32_t hashed(const std::byte* from, const At& at) const {
        uint64_t state = hashSeed;
        const Piece* piece = pieces.data();
        for (; piece != foursBegin; ++piece) state = mixed(state, load64(from + at(*piece)));
        for (; piece != onesBegin; ++piece) state = mixed(state, load32(from + at(*piece)));
        for (; piece != piecesEnd; ++piece) state = mixed(state, std::to_integer<uint64_t>(from[at(*piece)]));
        const auto folded = static_cast<uint32_t>(mixed(state, hashSeed >> 32) >> 32);
        return folded != 0 ? folded : 1;
    }

    bool hasItsConstants(const std::byte* key) const;
    void cutRuns();

    const schema::Key* schemaKey;
    size_t keyLength;
    size_t runCount = 0;
    bool isOneRun = false;
    bool hasConstants = false;
    std::array<Run, schema::kMaxKeyParts> runs{};
    KeyBuffer constants{};  // and zeros elsewhere
    std::array<Piece, schema::kMaxKeyLength> pieces{};
    const Piece* foursBegin = nullptr;
    const Piece* onesBegin = nullptr;
    const Piece* piecesEnd = nullptr;
    const uint64_t hashSeed;
};

}  // namespace mcast6::store::memory
