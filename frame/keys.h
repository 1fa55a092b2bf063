// Keys: the descriptor that names a key and the packed bytes that go with it.
//
// A key is a list of the record's members, in the key's order; widths and address conversion come from the field map, so
// that a key cannot disagree with the row. The key word is worked out from the list and compared, where a table declares
// the key, with the number that readers look up:
//
//     using ByGroup = SecondaryKey<Row, 5, &E::vrId, &E::vrfId, &E::groupAddr>;
//     static_assert(ByGroup::word == 0x05090018);
//
// Keys of single values that the caller hands in are made with keyOf<word>(values...).
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

// Puts a value at 'place': scalars in host order, addresses in network order. Gives the code of an address's copy, 0 for
// a scalar.
template <class Value>
uint32_t putKeyPart(std::byte* place, const Value& value) {
    if constexpr (std::is_same_v<Value, Mcast6Ipv6Addr>) {
        return static_cast<uint32_t>(MCAST6_DB_SetAddress(place, sizeof value, &value, sizeof value));
    } else {
        static_assert(std::is_integral_v<Value>, "a key holds scalars and addresses");
        store(place, value);
        return 0;
    }
}

// Puts the values one after the other; gives the code of the last address's copy.
template <class... Values>
uint32_t putKey(std::byte* place, const Values&... values) {
    uint32_t code = 0;
    const auto put = [&]<class Value>(const Value& value) {
        const uint32_t partCode = putKeyPart(place, value);
        if constexpr (std::is_same_v<Value, Mcast6Ipv6Addr>) code = partCode;
        place += sizeof(Value);
    };
    (put(values), ...);
    return code;
}

// A key of these values, joined in order; each is as wide as its type.
template <uint32_t kWord, class... Values>
KeyBuffer<kWord> keyOf(const Values&... values) {
    static_assert((sizeof(Values) + ... + 0) == KeyBuffer<kWord>::length,
                  "the values do not add up to the key's length");
    KeyBuffer<kWord> key;
    putKey(key.bytes, values...);
    return key;
}

// A part of a key that is the same in every record.
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

    // Writes the bytes of 'record''s key to 'place'; gives the code of the last address's copy.
    static uint32_t put(std::byte* place, const auto& record) {
        return putKey(place, KeyPartOf<Row, kParts>::value(record)...);
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
