// Lists of field setters, which fill an object for an update, and of field getters, which read a record field by field.
// A list is processed in order and to the end, even after a failure; the codes are ORed.
#pragma once

#include <type_traits>

#include "frame/codes.h"
#include "frame/fields.h"
#include "mcast6_db/iterator.h"

namespace mcast6 {

template <auto kSetter, auto kMember>
struct Sets {
    static uint32_t apply(Mcast6DbHandle object, const RecordOf<kMember>& record) {
        if constexpr (std::is_invocable_v<decltype(kSetter), Mcast6DbHandle, const void*, uint32_t>) {
            return kSetter(object, &(record.*kMember), sizeof(TypeOf<kMember>));
        } else {
            return kSetter(object, valueOf<kMember>(record));
        }
    }
};

template <auto kSetter>
struct SetsNow {
    static uint32_t apply(Mcast6DbHandle object, const auto& /*record*/) {
        return kSetter(object, static_cast<uint64_t>(MCAST6_DB_GetSysTime()));
    }
};

// Sets the smooth time stamp of an object to the current time, and the creation time too if 'withCreate'.
template <class Setter>
uint32_t setStamps(Setter setSmooth, Setter setCreate, Mcast6DbHandle object, bool withCreate) {
    const auto now = static_cast<uint64_t>(MCAST6_DB_GetSysTime());
    uint32_t code = setSmooth(object, now);
    if (withCreate) code |= setCreate(object, now);
    return code;
}

template <class... Setters>
struct FieldSetters {
    static uint32_t apply(Mcast6DbHandle object, const auto& record) {
        uint32_t code = kOk;
        ((code |= Setters::apply(object, record)), ...);
        return code;
    }
};

// A getter that fails leaves its member unchanged.

// A scalar, or bytes: as many as the engine reports, up to the member's width. The copy's code is included in the
// result.
template <auto kGetter, auto kMember>
struct Gets {
    using Stored = TypeOf<kMember>;
    static uint32_t apply(Mcast6DbHandle object, RecordOf<kMember>& record) {
        if constexpr (std::is_integral_v<Stored>) {
            Stored value{};
            const uint32_t code = kGetter(object, &value);
            if (code == kOk) assign<kMember>(record, value);
            return code;
        } else {
            void* bytes = nullptr;
            uint32_t length = 0;
            const uint32_t code = kGetter(object, &bytes, &length);
            if (code != kOk) return code;
            return static_cast<uint32_t>(memcpy_s(&(record.*kMember), sizeof(Stored), bytes, length));
        }
    }
};

// An address. The result is the getter's code only.
template <auto kGetter, auto kMember>
struct GetsAddress {
    static uint32_t apply(Mcast6DbHandle object, RecordOf<kMember>& record) {
        void* bytes = nullptr;
        uint32_t length = 0;
        const uint32_t code = kGetter(object, &bytes, &length);
        if (code == kOk) getAddress(&(record.*kMember), sizeof(Mcast6Ipv6Addr), bytes, length);
        return code;
    }
};

template <class... Getters>
struct FieldGetters {
    static uint32_t apply(Mcast6DbHandle object, auto& record) {
        uint32_t code = kOk;
        ((code |= Getters::apply(object, record)), ...);
        return code;
    }
};

}  // namespace mcast6
