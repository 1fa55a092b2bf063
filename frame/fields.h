// Field maps: how a caller's record and a packed database record (a row) correspond, as a list of types.
//
// A table lists its row field by field, in row order. Both conversions, the keys and the comparison with the platform's
// published layout are derived from that one list:
//
//     using Row = mcast6::Row<68,
//         Copy     < 0, &E::keyId1>,
//         ReadsBack< 8, &E::addrType, 2>,
//         Now      <36, &E::timeStampCreate>, ...>;
//
// The compiler checks that the fields are contiguous and fill the row (unused bytes are a Gap). agrees() checks that
// names, offsets and widths match the published layout. The conversions compile to plain moves. Rows need no alignment:
// all access is through memcpy.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/address.h"
#include "mcast6_db/context.h"
#include "mcast6_platform/host.h"

namespace mcast6 {

template <class Member>
struct MemberTraits;
template <class Record_, class Type_>
struct MemberTraits<Type_ Record_::*> {
    using Record = Record_;
    using Type = Type_;
};

template <auto kMember>
using RecordOf = typename MemberTraits<decltype(kMember)>::Record;
template <auto kMember>
using TypeOf = typename MemberTraits<decltype(kMember)>::Type;

// The name of a record's member, as the compiler spells it.
template <auto kMember>
constexpr std::string_view memberName() {
    constexpr std::string_view function = __PRETTY_FUNCTION__;  // "... [with auto kMember = &Record::member; ...]"
    constexpr size_t begin = function.find("kMember = ");
    constexpr std::string_view value = function.substr(begin, function.find_first_of(";]", begin) - begin);
    return value.substr(value.rfind(':') + 1);
}

template <class Value>
void store(std::byte* place, Value value) {
    memcpy(place, &value, sizeof value);
}
template <class Value>
Value load(const std::byte* place) {
    Value value;
    memcpy(&value, place, sizeof value);
    return value;
}

// A member's value, accessed through memcpy: records with 4-byte packing hold unaligned 64-bit members.
template <auto kMember>
TypeOf<kMember> valueOf(const RecordOf<kMember>& record) {
    TypeOf<kMember> value;
    memcpy(&value, &(record.*kMember), sizeof value);
    return value;
}
template <auto kMember>
void assign(RecordOf<kMember>& record, TypeOf<kMember> value) {
    memcpy(&(record.*kMember), &value, sizeof value);
}

// The base of all fields that have a member. 'Stored_' is the type in the row.
template <uint16_t kOffset, auto kMember_, class Stored_>
struct Place {
    using Record = RecordOf<kMember_>;
    using Stored = Stored_;
    static constexpr auto kMember = kMember_;
    static constexpr uint16_t offset = kOffset;
    static constexpr uint16_t width = sizeof(Stored);
    static constexpr bool isScalar = std::is_integral_v<Stored>;
    static constexpr bool isReserved = false;
    static constexpr std::string_view name() { return memberName<kMember_>(); }
    // The value as a key stores it, except that an address is still in host order.
    static auto stored(const Record& record) { return static_cast<Stored>(valueOf<kMember_>(record)); }
};

// Stored unchanged: a scalar, or a block of bytes or words copied by memcpy_s.
template <uint16_t kOffset, auto kMember>
struct Copy : Place<kOffset, kMember, TypeOf<kMember>> {
    using Base = Place<kOffset, kMember, TypeOf<kMember>>;
    static int set(const typename Base::Record& record, std::byte* row, uint64_t /*now*/) {
        if constexpr (Base::isScalar) {
            store(row + kOffset, valueOf<kMember>(record));
            return 0;
        } else {
            return memcpy_s(row + kOffset, Base::width, &(record.*kMember), Base::width);
        }
    }
    static int get(const std::byte* row, typename Base::Record& record) {
        if constexpr (Base::isScalar) {
            assign<kMember>(record, load<typename Base::Stored>(row + kOffset));
            return 0;
        } else {
            return memcpy_s(&(record.*kMember), Base::width, row + kOffset, Base::width);
        }
    }
};

// A block of bytes or words copied by plain memcpy. Use Copy where the code of memcpy_s is reported.
template <uint16_t kOffset, auto kMember>
struct Block : Place<kOffset, kMember, TypeOf<kMember>> {
    using Base = Place<kOffset, kMember, TypeOf<kMember>>;
    static int set(const typename Base::Record& record, std::byte* row, uint64_t /*now*/) {
        memcpy(row + kOffset, &(record.*kMember), Base::width);
        return 0;
    }
    static int get(const std::byte* row, typename Base::Record& record) {
        memcpy(&(record.*kMember), row + kOffset, Base::width);
        return 0;
    }
};

// A scalar stored in another width. Both conversions truncate or zero-extend.
template <uint16_t kOffset, class Stored, auto kMember>
struct Resized : Place<kOffset, kMember, Stored> {
    using Base = Place<kOffset, kMember, Stored>;
    static int set(const typename Base::Record& record, std::byte* row, uint64_t /*now*/) {
        store(row + kOffset, Base::stored(record));
        return 0;
    }
    static int get(const std::byte* row, typename Base::Record& record) {
        assign<kMember>(record, static_cast<TypeOf<kMember>>(load<Stored>(row + kOffset)));
        return 0;
    }
};

// An address: words in host order in the record, bytes in network order in the row.
template <uint16_t kOffset, auto kMember>
struct Address : Place<kOffset, kMember, Mcast6Ipv6Addr> {
    using Base = Place<kOffset, kMember, Mcast6Ipv6Addr>;
    static int set(const typename Base::Record& record, std::byte* row, uint64_t /*now*/) {
        return setAddress(row + kOffset, Base::width, &(record.*kMember), Base::width);
    }
    static int get(const std::byte* row, typename Base::Record& record) {
        return getAddress(&(record.*kMember), Base::width, row + kOffset, Base::width);
    }
};

// A scalar that is stored unchanged but always reads back as kValue.
template <uint16_t kOffset, auto kMember, auto kValue>
struct ReadsBack : Copy<kOffset, kMember> {
    static int get(const std::byte* /*row*/, RecordOf<kMember>& record) {
        assign<kMember>(record, static_cast<TypeOf<kMember>>(kValue));
        return 0;
    }
};

// Stored from one member, read back into that member and a second one.
template <uint16_t kOffset, auto kMember, auto kAlso>
struct CopyToBoth : Copy<kOffset, kMember> {
    static int get(const std::byte* row, RecordOf<kMember>& record) {
        assign<kAlso>(record, load<TypeOf<kAlso>>(row + kOffset));
        return Copy<kOffset, kMember>::get(row, record);
    }
};

// A time stamp: the current time on every write; the caller's value is ignored.
template <uint16_t kOffset, auto kMember>
struct Now : Copy<kOffset, kMember> {
    static int set(const RecordOf<kMember>& /*record*/, std::byte* row, uint64_t now) {
        store(row + kOffset, now);
        return 0;
    }
};

// A time stamp: the caller's value, or the current time if that is 0.
template <uint16_t kOffset, auto kMember>
struct KeptOrNow : Copy<kOffset, kMember> {
    static int set(const RecordOf<kMember>& record, std::byte* row, uint64_t now) {
        const uint64_t given = valueOf<kMember>(record);
        store(row + kOffset, given != 0 ? given : now);
        return 0;
    }
};

// Bytes of the row that the conversions leave unchanged.
template <uint16_t kOffset, uint16_t kWidth>
struct Gap {
    static constexpr auto kMember = nullptr;
    static constexpr uint16_t offset = kOffset;
    static constexpr uint16_t width = kWidth;
    static constexpr bool isScalar = false;
    static constexpr bool isReserved = true;
    static constexpr std::string_view name() { return {}; }
    static int set(const auto& /*record*/, std::byte* /*row*/, uint64_t /*now*/) { return 0; }
    static int get(const std::byte* /*row*/, auto& /*record*/) { return 0; }
};

template <size_t kSize>
struct FieldName {
    char text[kSize];
    consteval FieldName(const char (&literal)[kSize]) {  // NOLINT(google-explicit-constructor)
        for (size_t i = 0; i < kSize; ++i) text[i] = literal[i];
    }
};

// A field whose database name differs from its member's name.
template <FieldName kName, class Field>
struct Named : Field {
    static constexpr std::string_view name() { return {kName.text, sizeof kName.text - 1}; }
};

template <auto kLeft, auto kRight>
constexpr bool sameMember() {
    if constexpr (std::is_same_v<decltype(kLeft), decltype(kRight)>) {
        return kLeft == kRight;
    } else {
        return false;
    }
}

template <class Field, int kBegins, int kPreviousEnds>
struct CheckPlace {
    static_assert(kBegins == kPreviousEnds, "field does not begin where the one before it ends");
    static constexpr bool value = true;
};

template <uint16_t kSize, class... Fields>
struct Row {
    static constexpr uint16_t size = kSize;

    // Converts a record for writing. Returns the code of the copy of member 'kReported', or 0 if that is null.
    template <auto kReported = nullptr, class Record>
    static uint32_t set(const Record& record, std::byte* row, uint64_t now) {
        uint32_t reported = 0;
        (keepReported<kReported, Fields>(reported, Fields::set(record, row, now)), ...);
        return reported;
    }

    // Converts a row for reading. Returns as set() does.
    template <auto kReported = nullptr, class Record>
    static uint32_t get(const std::byte* __restrict row, Record& __restrict record) {
        uint32_t reported = 0;
        (keepReported<kReported, Fields>(reported, Fields::get(row, record)), ...);
        return reported;
    }

    // Calls 'visit' with each field as a null pointer of its type, in row order.
    template <class Visitor>
    static constexpr void forEach(Visitor visit) {
        (visit(static_cast<const Fields*>(nullptr)), ...);
    }

    // The field of a member.
    template <auto kMember>
    static constexpr auto fieldOf() {
        return pick<kMember, Fields...>();
    }

private:
    template <auto kReported, class Field>
    static void keepReported(uint32_t& reported, int code) {
        if constexpr (sameMember<kReported, Field::kMember>()) reported = static_cast<uint32_t>(code);
    }

    template <auto kMember, class First, class... Rest>
    static constexpr auto pick() {
        if constexpr (sameMember<kMember, First::kMember>()) {
            return First{};
        } else {
            static_assert(sizeof...(Rest) > 0, "the row has no field for this member");
            return pick<kMember, Rest...>();
        }
    }

    static consteval bool endToEnd() {
        return []<size_t... kIndex>(std::index_sequence<kIndex...>) {
            return (CheckPlace<Fields, Fields::offset, endBefore(kIndex)>::value && ...);
        }
        (std::index_sequence_for<Fields...>{});
    }

    static constexpr int endBefore(size_t index) {
        constexpr int ends[] = {0, Fields::offset + Fields::width...};
        return ends[index];
    }

    static_assert(endToEnd());
    static_assert(endBefore(sizeof...(Fields)) == kSize, "the last field does not end where the row does");
};

// A constant that reading writes into the record; the row does not hold it.
template <auto kMember, auto kValue>
struct GetWrites {
    static void get(RecordOf<kMember>& record) { assign<kMember>(record, static_cast<TypeOf<kMember>>(kValue)); }
};

template <class... Writes>
struct OnGet {
    static void get(auto& record) { (Writes::get(record), ...); }
};

}  // namespace mcast6
