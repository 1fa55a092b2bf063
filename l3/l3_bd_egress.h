// Shared by the rows of the three layer-3 bridge domain tables.
#pragma once

#include <cstddef>

#include "frame/fields.h"
#include "mcast6_db/l3_bd_egress.h"

namespace mcast6 {

// bdElbAttr6, a byte, reads back as a zero-extended 16-bit value over itself and the host byte after it.
template <uint16_t kOffset>
struct ReadsBackWide : Copy<kOffset, &L3BdElb6Entry::bdElbAttr6> {
    static int get(const std::byte* row, L3BdElb6Entry& record) {
        store(reinterpret_cast<std::byte*>(&record) + offsetof(L3BdElb6Entry, bdElbAttr6),
              uint16_t{load<uint8_t>(row + kOffset)});
        return 0;
    }
};

}  // namespace mcast6
