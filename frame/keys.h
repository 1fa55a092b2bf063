// Keys: the descriptor that names a key and the packed bytes that go with it.
//
// A key is a list of the record's members, in the key's order. Widths and address conversion come from the field map,
// so a key cannot disagree with the row. The key word is computed from the list. Where a table declares a key it
// compares the computed word with the literal number that readers look up:
//
//     using ByGroup = SecondaryKey<Row, 5, &E::vrId, &E::vrfId, &E::groupAddr>;
//     static_assert(ByGroup::word == 0x05090018);
//
// Keys of separate values that the caller passes are made with keyOf<word>(values...).
#pragma once

#include "frame/fields.h"
#include "mcast6_db/types.h"

namespace mcast6 {

inline constexpr uint32_t kPrimaryKind = 1;
inline constexpr uint32_t kSecondaryKind = 9;

constexpr uint32_t keyWord(uint32_t number, uint32_t kind, uint32_t length) {
    return number << 24 | kind << 16 | length;
}

// A key ready for the engine. All bytes are zero before they are filled.
template <uint32_t kWord>
struct KeyBuffer {
    static constexpr size_t length = kWord & 0xFFFF;
    Mcast6DbKeyDesc descriptor{kWord, {0, 0, 0}};
    std::byte bytes[length]{};
};

// Joins two 32-bit values to one 64-bit word in registers. The caller has usually just stored them separately, and the
// lookup loads whole words. A 64-bit load from two recent 32-bit stores stalls until both have reached the cache,
// because the processor cannot forward them.
inline uint64_t joined(uint32_t first, uint32_t second) {
    asm("" : "+r"(first), "+r"(second));  // keeps compilers from loading both at once
    return first | uint64_t{second} << 32;
}

template <class... Values>
inline constexpr bool beginsWithTwoHalves = false;
template <class First, class Second, class... Rest>
inline constexpr bool beginsWithTwoHalves<First, Second, Rest...> = std::is_integral_v<First> &&
                                                                    sizeof(First) == 4 && std::is_integral_v<Second> &&
                                                                    sizeof(Second) == 4;

template <class First, class Second, class... Rest>
uint32_t putWordOfKey(uint32_t code, std::byte* place, const First& first, const Second& second, const Rest&... rest);

// Writes the values one after the other: scalars in host order, addresses in network order. Returns the code of the
// last address's copy, or 'code' if there is no address.
inline uint32_t putKey(uint32_t code, std::byte* /*place*/) { return code; }

template <class First, class... Rest>
uint32_t putKey(uint32_t code, std::byte* place, const First& first, const Rest&... rest) {
    if constexpr (beginsWithTwoHalves<First, Rest...>) {
        return putWordOfKey(code, place, first, rest...);
    } else if constexpr (std::is_same_v<First, Mcast6Ipv6Addr>) {
        code = static_cast<uint32_t>(setAddress(place, sizeof first, &first, sizeof first));
    } else {
        static_assert(std::is_integral_v<First>, "a key holds scalars and addresses");
        store(place, first);
    }
    return putKey(code, place + sizeof first, rest...);
}

template <class First, class Second, class... Rest>
uint32_t putWordOfKey(uint32_t code, std::byte* place, const First& first, const Second& second, const Rest&... rest) {
    store(place, joined(static_cast<uint32_t>(first), static_cast<uint32_t>(second)));
    return putKey(code, place + sizeof first + sizeof second, rest...);
}

// A key of these values in order, each as wide as its type.
template <uint32_t kWord, class... Values>
KeyBuffer<kWord> keyOf(const Values&... values) {
    static_assert((sizeof(Values) + ... + 0) == KeyBuffer<kWord>::length,
                  "the values do not add up to the key's length");
    KeyBuffer<kWord> key;
    putKey(0, key.bytes, values...);
    return key;
}

// A part of a key that is the same for every record.
template <class Value>
struct Constant {
    Value value;
};

template <class Row, auto kPart>
struct KeyPartOf {
    using Field = decltype(Row::template fieldOf<kPart>());
    static constexpr bool isConstant = false;
    static constexpr uint64_t constant = 0;
    static constexpr uint16_t offset = Field::offset;
    static constexpr uint16_t width = Field::width;
    static auto value(const auto& record) { return Field::stored(record); }
};
template <class Row, class Value, Constant<Value> kPart>
struct KeyPartOf<Row, kPart> {
    static constexpr bool isConstant = true;
    static constexpr uint64_t constant = kPart.value;
    static constexpr uint16_t offset = 0;
    static constexpr uint16_t width = sizeof(Value);
    static auto value(const auto& /*record*/) { return kPart.value; }
};

// A part of a key that is the low bytes of a field.
template <class Value, auto kMember>
struct LowBytes {};
template <class Row, class Value, auto kMember, LowBytes<Value, kMember> kPart>
struct KeyPartOf<Row, kPart> {
    using Field = decltype(Row::template fieldOf<kMember>());
    static constexpr bool isConstant = false;
    static constexpr uint64_t constant = 0;
    static constexpr uint16_t offset = Field::offset;
    static constexpr uint16_t width = sizeof(Value);
    static auto value(const auto& record) { return static_cast<Value>(Field::stored(record)); }
};

template <class Row, uint32_t kNumber, uint32_t kKind, auto... kParts>
struct RecordKey {
    static constexpr uint16_t length = (KeyPartOf<Row, kParts>::width + ...);
    static constexpr uint32_t word = keyWord(kNumber, kKind, length);

    // Writes the key of 'record' to 'place'. Returns the code of the last address's copy.
    static uint32_t put(std::byte* place, const auto& record) {
        return putKey(0, place, KeyPartOf<Row, kParts>::value(record)...);
    }

    static KeyBuffer<word> of(const auto& record) {
        KeyBuffer<word> key;
        put(key.bytes, record);
        return key;
    }

    // Whether a published key has this word and these parts.
    static constexpr bool agrees(const auto& published) {
        if (published.word != word || published.partCount != sizeof...(kParts)) return false;
        size_t i = 0;
        return (agreesPart<KeyPartOf<Row, kParts>>(published.parts[i++]) && ...);
    }

private:
    template <class Part>
    static constexpr bool agreesPart(const auto& published) {
        return published.isConstant == Part::isConstant && published.width == Part::width &&
               published.offset == Part::offset && published.constant == Part::constant;
    }
};

template <class Row, auto... kParts>
using PrimaryKey = RecordKey<Row, 0, kPrimaryKind, kParts...>;

template <class Row, uint32_t kNumber, auto... kParts>
using SecondaryKey = RecordKey<Row, kNumber, kSecondaryKind, kParts...>;

}  // namespace mcast6
