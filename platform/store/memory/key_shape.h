// How the bytes of one key lie in a row, in the form for composing, comparing and hashing: neighbouring parts of
// the record joined into runs, these cut into words, constants written out once. So a row can be hashed and compared by
// its key without that key being composed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

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

// What the hashes of keys follow from, besides the keys. Groups and sources come from the network: nobody outside shall
// be able to choose keys that collide.
struct HashSecrets {
    uint64_t seed;  // a factor: not 0
    uint64_t secret;

    static HashSecrets random();
};

class KeyShape {
public:
    // With secrets of this process, or others.
    explicit KeyShape(const schema::Key& key);
    KeyShape(const schema::Key& key, const HashSecrets& secrets);
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
    bool matches(const std::byte* row, const std::byte* key) const { return same<InKey>(row, key); }

    // Whether two rows have the same key.
    bool sameKey(const std::byte* row, const std::byte* other) const { return same<InRow>(row, other); }

    // Prefetches the bytes that matches() reads.
    void prefetch(const std::byte* row) const {
        for (size_t i = 0; i < runCount; ++i) {
            __builtin_prefetch(row + runs[i].offset);
            __builtin_prefetch(row + runs[i].offset + runs[i].width - 1);
        }
    }

    // Whether any row can have this key: its constants are those of the schema.
    bool accepts(const std::byte* key) const { return !hasConstants || hasItsConstants(key); }

    // Of a key, and of the key of a row. Constants do not count. Never 0.
    uint32_t hash(const std::byte* key) const { return hashed<InKey>(key); }
    uint32_t hashOf(const std::byte* row) const { return hashed<InRow>(row); }

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

    // Where the pieces of a key lie, in a key and in a row. In a pattern without fours the place in the key follows
    // from the number: the runs are whole words, one after the other from the key's first byte on.
    struct InKey {
        static size_t word(const KeyShape& /*shape*/, size_t i) { return i * sizeof(uint64_t); }
        static size_t piece(const Piece& piece) { return piece.at; }
    };
    struct InRow {
        static size_t word(const KeyShape& shape, size_t i) { return shape.pieces[i].offset; }
        static size_t piece(const Piece& piece) { return piece.offset; }
    };

    // Most keys have one of these patterns: so many pieces of eight bytes, then so many of four, and no constants.
    static constexpr uint32_t patternOf(size_t eights, size_t fours) {
        return static_cast<uint32_t>(eights << 8 | fours);
    }
    template <size_t kCount>
    using Numbers = std::make_index_sequence<kCount>;

    // Calls f with the numbers of the pieces of eight and of four, to be written out for each pattern; with none for
    // any other key.
    template <class F>
    auto forPattern(const F& f) const {
        if (pattern == patternOf(5, 0)) return f(Numbers<5>(), Numbers<0>());  // the primary key of most large tables
        switch (pattern) {
            case patternOf(3, 0):
                return f(Numbers<3>(), Numbers<0>());
            case patternOf(3, 1):
                return f(Numbers<3>(), Numbers<1>());
            case patternOf(1, 0):
                return f(Numbers<1>(), Numbers<0>());
            case patternOf(1, 1):
                return f(Numbers<1>(), Numbers<1>());
            case patternOf(0, 1):
                return f(Numbers<0>(), Numbers<1>());
            case patternOf(0, 2):
                return f(Numbers<0>(), Numbers<2>());
            default:
                return f(Numbers<0>(), Numbers<0>());
        }
    }

    // The pieces of a pattern, of 'kEights' and 'kFours' in all.
    template <class In, size_t kFours>
    uint64_t eight(const std::byte* from, size_t i) const {
        return load64(from + (kFours == 0 ? In::word(*this, i) : In::piece(pieces[i])));
    }
    template <class In, size_t kEights>
    uint64_t four(const std::byte* from, size_t i) const {
        return load32(from + In::piece(pieces[kEights + i]));
    }

    // Compares the key of a row with that in 'other'.
    template <class In>
    bool same(const std::byte* row, const std::byte* other) const {
        const auto compare = [&]<size_t... kEight, size_t... kFour>(std::index_sequence<kEight...>,
                                                                    std::index_sequence<kFour...>) {
            constexpr size_t kEights = sizeof...(kEight);
            constexpr size_t kFours = sizeof...(kFour);
            if constexpr (kEights + kFours == 0) return samePieces<In>(row, other);
            return ((eight<InRow, kFours>(row, kEight) == eight<In, kFours>(other, kEight)) && ...) &&
                   ((four<InRow, kEights>(row, kFour) == four<In, kEights>(other, kFour)) && ...);
        };
        return forPattern(compare);
    }

    template <class In>
    bool samePieces(const std::byte* row, const std::byte* other) const {
        const Piece* piece = pieces.data();
        for (; piece != foursBegin; ++piece) {
            if (load64(row + piece->offset) != load64(other + In::piece(*piece))) return false;
        }
        for (; piece != onesBegin; ++piece) {
            if (load32(row + piece->offset) != load32(other + In::piece(*piece))) return false;
        }
        for (; piece != piecesEnd; ++piece) {
            if (row[piece->offset] != other[In::piece(*piece)]) return false;
        }
        return true;
    }

    // The halves of a product, folded.
    static uint64_t folded(uint64_t left, uint64_t right) {
        __extension__ using Wide = unsigned __int128;
        const Wide product = static_cast<Wide>(left) * right;
        return static_cast<uint64_t>(product >> 64) ^ static_cast<uint64_t>(product);
    }

    // One word or two on top of what was mixed before. Both factors are blinded: one that is 0 would silence the other.
    uint64_t mixed(uint64_t before, uint64_t first, uint64_t second = 0) const {
        return folded(secret ^ first, before ^ second);
    }

    template <class In>
    uint32_t hashed(const std::byte* from) const {
        const auto mix = [&]<size_t... kEight, size_t... kFour>(std::index_sequence<kEight...>,
                                                                std::index_sequence<kFour...>) {
            constexpr size_t kEights = sizeof...(kEight);
            constexpr size_t kFours = sizeof...(kFour);
            if constexpr (kEights + kFours == 0) return spread(mixedPieces<In>(from));
            const uint64_t product =
                mixedWords(seed, eight<In, kFours>(from, kEight)..., four<In, kEights>(from, kFour)...);
            return kEights < 5 ? spread(product) : product;  // three times folded, with the end of an address
        };
        return static_cast<uint32_t>(forPattern(mix) >> 32) | 1;  // never 0; places follow from the upper bits
    }

    // Small numbers leave the upper bits of one product to the luck of the secrets.
    uint64_t spread(uint64_t mix) const { return folded(mix, seed); }

    // All words on top of 'before', by twos.
    uint64_t mixedWords(uint64_t before) const { return before; }
    uint64_t mixedWords(uint64_t before, uint64_t word) const { return mixed(before, word); }
    template <class... Words>
    uint64_t mixedWords(uint64_t before, uint64_t first, uint64_t second, Words... others) const {
        return mixedWords(mixed(before, first, second), others...);
    }

    template <class In>
    uint64_t mixedPieces(const std::byte* from) const {
        uint64_t mix = seed;
        const Piece* piece = pieces.data();
        for (; piece != foursBegin; ++piece) mix = mixed(mix, load64(from + In::piece(*piece)));
        for (; piece != onesBegin; ++piece) mix = mixed(mix, load32(from + In::piece(*piece)));
        for (; piece != piecesEnd; ++piece) mix = mixed(mix, std::to_integer<uint64_t>(from[In::piece(*piece)]));
        return mix;
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
    uint32_t pattern = 0;  // of a key without constants and single bytes; else 0
    const uint64_t seed;
    const uint64_t secret;
};

}  // namespace mcast6::store::memory
