// From the store's answers, and what it throws, to the codes of the contract.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>

#include "mcast6_platform/engine.h"
#include "platform/engine/last_error.h"
#include "platform/store/store.h"

namespace mcast6::engine {

// 'absent' is what the operation says of a record that is not there.
inline uint32_t codeOf(store::Answer answer, uint32_t absent) {
    if (answer == store::Answer::done) return MCAST6_DB_OK;  // most answers, without the switch
    switch (answer) {
        case store::Answer::done:
            return MCAST6_DB_OK;
        case store::Answer::present:
            return MCAST6_DB_EXISTS_OR_ABSENT;
        case store::Answer::absent:
            return absent;
        case store::Answer::full:
            return refused(MCAST6_DB_TABLE_FULL);
        case store::Answer::end:
            return MCAST6_DB_END_OF_ITERATION;
        case store::Answer::noMemory:
            return refused(MCAST6_DB_NO_MEMORY);
        case store::Answer::tooLarge:
            return refused(MCAST6_DB_BATCH_TOO_LARGE);
        case store::Answer::lost:
            return refused(MCAST6_DB_BATCH_LOST);
        case store::Answer::failed:
            break;
    }
    return refused(MCAST6_DB_STORE_FAILED);
}

// Runs 'step', which returns a code. No exception leaves the engine.
template <class Step>
uint32_t guarded(Step step) noexcept {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return refused(MCAST6_DB_NO_MEMORY);
    } catch (...) {
        return storeThrew();
    }
}

// The key word of a key descriptor, which need not be aligned.
inline uint32_t keyWordAt(const void* keyDesc) {
    uint32_t word = 0;
    std::memcpy(&word, keyDesc, sizeof word);
    return word;
}

inline const std::byte* keyBytes(const void* key) { return static_cast<const std::byte*>(key); }

}  // namespace mcast6::engine
