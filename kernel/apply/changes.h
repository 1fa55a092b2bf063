// What applying did: the fate of each value of the model, and what changed in each table.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace mcast6::kernel {

enum class Fate : uint8_t {
    kNew,        // written; there was no such record
    kReplaced,   // written over a record that differed
    kRestamped,  // the record is as the kernel has it: only its smooth version and time are new
    kSkipped,    // valid, but the table does not hold the like
    kRefused,    // wrong
};
constexpr size_t kFates = 5;

struct FateCounts {
    std::array<uint64_t, kFates> of{};
    uint64_t& operator[](Fate fate) { return of[static_cast<size_t>(fate)]; }
    uint64_t operator[](Fate fate) const { return of[static_cast<size_t>(fate)]; }
    uint64_t sum() const {
        uint64_t all = 0;
        for (const uint64_t count : of) all += count;
        return all;
    }
};

struct TableChange {
    const void* table;         // its operations
    const char* databaseName;  // "l3mc6_mfib"
    bool heldAny;              // before the first change
    FateCounts fates;
    uint64_t removed = 0;
};
using TableChanges = std::vector<TableChange>;

}  // namespace mcast6::kernel
