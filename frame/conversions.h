// Conversions between records and rows, time stamps and primary keys, derived from a table's field map.
#pragma once

#include "frame/keys.h"

namespace mcast6 {

// A zeroed buffer for a row. It is cleared in chunks by separate statements, because compilers turn a loop or a memset
// into a string instruction, which would cost as much as the rest of the conversion.
template <size_t kSize>
struct RowBuffer {
    RowBuffer() { clear(std::make_index_sequence<sizeof(RowBuffer) / sizeof(Chunk)>()); }

    std::byte* data() { return bytes; }
    static constexpr uint32_t size = kSize;

private:
    using Chunk = unsigned char __attribute__((vector_size(16)));

    template <size_t... kIndex>
    void clear(std::index_sequence<kIndex...> /*chunks*/) {
        constexpr Chunk zeros{};
        (memcpy(bytes + kIndex * sizeof zeros, &zeros, sizeof zeros), ...);
    }

    alignas(Chunk) std::byte bytes[(kSize + sizeof(Chunk) - 1) / sizeof(Chunk) * sizeof(Chunk)];
};

template <class Table>
using RowOf = RowBuffer<Table::Row::size>;

template <class Table, auto kReported = nullptr>
uint32_t setRow(const typename Table::Record* record, void* row) {
    return Table::Row::template set<kReported>(*record, static_cast<std::byte*>(row),
                                               static_cast<uint64_t>(MCAST6_DB_GetSysTime()));
}

template <class Table, auto kReported = nullptr>
uint32_t getRecord(const void* row, typename Table::Record* record) {
    const uint32_t reported = Table::Row::template get<kReported>(static_cast<const std::byte*>(row), *record);
    Table::OnGet::get(*record);
    return reported;
}

// Stamps a row with the current time and returns it. Sets the smooth time always, the creation time if 'withCreate'.
template <class Table>
uint64_t stampRow(bool withCreate, void* row) {
    using Record = typename Table::Record;
    using Create = decltype(Table::Row::template fieldOf<&Record::timeStampCreate>());
    using Smooth = decltype(Table::Row::template fieldOf<&Record::timeStampSmooth>());
    const auto now = static_cast<uint64_t>(MCAST6_DB_GetSysTime());
    store(static_cast<std::byte*>(row) + Smooth::offset, now);
    if (withCreate) store(static_cast<std::byte*>(row) + Create::offset, now);
    return now;
}

// Stamps a row from a record as a conversion does; the field map may keep the record's creation time.
template <class Table>
void stampRowFrom(const typename Table::Record* record, void* row) {
    using Record = typename Table::Record;
    const auto now = static_cast<uint64_t>(MCAST6_DB_GetSysTime());
    auto* const bytes = static_cast<std::byte*>(row);
    decltype(Table::Row::template fieldOf<&Record::timeStampCreate>())::set(*record, bytes, now);
    decltype(Table::Row::template fieldOf<&Record::timeStampSmooth>())::set(*record, bytes, now);
}

// Returns the code of the last address's copy.
template <class Table>
uint32_t putPrimaryKey(uint32_t* keyWord, void* key, const typename Table::Record* record) {
    *keyWord = Table::Primary::word;
    return Table::Primary::put(static_cast<std::byte*>(key), *record);
}

}  // namespace mcast6
