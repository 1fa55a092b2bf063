// What the calls of a store answer.
#pragma once

#include <cstdint>

namespace mcast6::store {

enum class Answer : uint8_t {
    done,
    present,   // put: the key was there; replaced, or left alone where the table refuses that
    absent,    // get, patch, erase, Scan::read: no such record
    full,      // put: a new key, and the table is at its capacity
    end,       // Scan::next: no further record
    noMemory,  // nothing was changed
    failed,    // the store itself failed, Store::reason() says why; nothing was changed
    tooLarge,  // a step of a batch beyond the batch's bound: the step was not taken, the batch goes on without it
    lost,      // commit: a writer elsewhere was first; nothing was changed, and the batch may be made again
};

}  // namespace mcast6::store
