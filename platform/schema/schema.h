// What the platform knows of a table: its fields, its keys, and how it answers the cases in which tables differ.
//
// A table is described once, as constant data, in platform/schema/<table>.h, and listed in catalog.cpp. Everything
// else follows from the description: the accessors and the published layout are generated from it, the engine checks
// every call against it, and the stores build their indexes from it. Engine and stores hold no code for single tables.
//
// A record is packed: fields lie at their offsets, scalars in host order, and bytes that no field names are reserved
// and zero. A key is a list of parts, each a run of record bytes or a constant, joined without padding. A description
// that contradicts itself (fields that overlap, an unknown name in a key, a key word with another length) does
// not compile.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace mcast6::schema {

enum class FieldKind : uint8_t { scalar, bytes };

struct Field {
    std::string_view name;
    uint16_t offset;
    uint16_t width;  // bytes; 1, 2, 4 or 8 for a scalar
    FieldKind kind;
};

// A run of bytes of a key: 'width' bytes of the record from 'offset', or the low 'width' bytes of 'constant'.
struct KeyPart {
    bool isConstant;
    bool isScalar;  // compared as a number where an order is asked for; bytes compare one by one
    uint16_t offset;
    uint16_t width;
    uint64_t constant;
};

inline constexpr size_t kMaxKeyParts = 8;
inline constexpr size_t kMaxKeyLength = 64;
inline constexpr size_t kMaxRecordSize = 256;
inline constexpr size_t kMaxFields = 64;  // a set of fields fits one 64-bit word

// Kinds of key, bits 16 to 23 of a key word.
enum class KeyKind : uint8_t { primary = 1, sorted = 2, secondary = 9 };

struct Key {
    uint32_t word;  // length in bits 0-15, kind in bits 16-23, index number in bits 24-31
    uint8_t partCount;
    std::array<KeyPart, kMaxKeyParts> partSlots;
    std::string_view conditionName;  // sorted keys only: the name that a statement's condition gives

    constexpr uint16_t length() const { return static_cast<uint16_t>(word & 0xFFFF); }
    constexpr KeyKind kind() const { return static_cast<KeyKind>((word >> 16) & 0xFF); }
    constexpr uint8_t number() const { return static_cast<uint8_t>(word >> 24); }
    constexpr std::span<const KeyPart> parts() const { return {partSlots.data(), partCount}; }
};

// What a write does when the key is present already. The answer is 13044 either way.
enum class PresentWrite : uint8_t { replaces, refused };

struct Table {
    std::string_view name;
    uint16_t recordSize;
    std::span<const Field> fields;  // by ascending offset
    Key primary;
    std::span<const Key> indexes;  // secondary and sorted keys, by ascending index number
    uint32_t absentRemoval;        // engine code that answers the removal of an absent key
    PresentWrite presentWrite;
    uint64_t capacity;  // most records the table holds; 0 is no limit
};

// Declared, never defined. Descriptions are evaluated at compile time, so a wrong one fails at one of these calls, and
// the compiler prints its name, which is the broken rule.
void key_names_a_field_that_the_table_does_not_have();
void key_parts_must_add_up_to_the_length_in_the_key_word();
void key_takes_more_bytes_than_the_field_has();
void fields_must_ascend_without_overlap_inside_the_record();

constexpr Field u8(std::string_view name, uint16_t offset) { return {name, offset, 1, FieldKind::scalar}; }
constexpr Field u16(std::string_view name, uint16_t offset) { return {name, offset, 2, FieldKind::scalar}; }
constexpr Field u32(std::string_view name, uint16_t offset) { return {name, offset, 4, FieldKind::scalar}; }
constexpr Field u64(std::string_view name, uint16_t offset) { return {name, offset, 8, FieldKind::scalar}; }
constexpr Field bytes(std::string_view name, uint16_t offset, uint16_t width) {
    return {name, offset, width, FieldKind::bytes};
}
// An IPv6 address, 16 bytes in network order.
constexpr Field address(std::string_view name, uint16_t offset) { return bytes(name, offset, 16); }

// How a key is written down: field names, low bytes of a field, and constants.
struct KeyItem {
    std::string_view field;  // empty: a constant
    uint16_t width;          // 0: the whole field
    uint64_t constant;

    constexpr KeyItem(const char* name) : field(name), width(0), constant(0) {}
    constexpr KeyItem(std::string_view name, uint16_t lowBytes, uint64_t value)
        : field(name), width(lowBytes), constant(value) {}
};
constexpr KeyItem lowBytes(const char* field, uint16_t width) { return {field, width, 0}; }
constexpr KeyItem constant(uint64_t value, uint16_t width) { return {std::string_view{}, width, value}; }
constexpr KeyItem zeros(uint16_t width) { return constant(0, width); }

constexpr const Field& fieldNamed(std::span<const Field> fields, std::string_view name) {
    for (const Field& field : fields) {
        if (field.name == name) return field;
    }
    key_names_a_field_that_the_table_does_not_have();
    return fields[0];
}

constexpr KeyPart resolve(std::span<const Field> fields, const KeyItem& item) {
    if (item.field.empty()) return {true, true, 0, item.width, item.constant};
    const Field& field = fieldNamed(fields, item.field);
    if (item.width > field.width) key_takes_more_bytes_than_the_field_has();
    return {false, field.kind == FieldKind::scalar, field.offset, item.width != 0 ? item.width : field.width, 0};
}

template <class... Items>
constexpr Key key(std::span<const Field> fields, uint32_t word, Items... items) {
    static_assert(sizeof...(Items) <= kMaxKeyParts);
    Key result{word, static_cast<uint8_t>(sizeof...(Items)), {resolve(fields, KeyItem(items))...}, {}};
    size_t length = 0;
    for (const KeyPart& part : result.parts()) length += part.width;
    if (length != result.length() || length > kMaxKeyLength) key_parts_must_add_up_to_the_length_in_the_key_word();
    return result;
}

// A key that a statement can walk in order; its condition names it 'conditionName'.
template <class... Items>
constexpr Key sortedKey(std::span<const Field> fields, uint32_t word, std::string_view conditionName, Items... items) {
    Key result = key(fields, word, items...);
    result.conditionName = conditionName;
    return result;
}

consteval Table checked(Table table) {
    size_t end = 0;
    for (const Field& field : table.fields) {
        if (field.offset < end) fields_must_ascend_without_overlap_inside_the_record();
        end = field.offset + size_t{field.width};
    }
    if (end > table.recordSize || table.recordSize > kMaxRecordSize || table.fields.size() > kMaxFields) {
        fields_must_ascend_without_overlap_inside_the_record();
    }
    return table;
}

}  // namespace mcast6::schema
