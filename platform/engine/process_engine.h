// The one engine of a process, behind the C entries.
//
// A store is opened by mcast6_platform_open with a URI, or by the first object that is made, with "memory:". The engine
// is made with the first store and kept when that is closed, so that cache objects serve the next one; it is not
// destroyed when the process ends, so that calls from destructors and exit handlers still find it.
#pragma once

#include <atomic>

#include "platform/engine/engine.h"

namespace mcast6::engine {

extern std::atomic<Engine*> processEngine;

// The engine while a store is open, or null.
inline Engine* openEngine() noexcept { return processEngine.load(std::memory_order_acquire); }

// The same, with a store opened now if there is none; null when there is no memory for it.
Engine* engineOpenedIfNeeded() noexcept;

// What mcast6_platform_open, _close, _begin, _commit, _abort and _error promise.
uint32_t openStore(const char* uri) noexcept;
void closeStore() noexcept;
uint32_t beginBatch() noexcept;
uint32_t commitBatch() noexcept;
uint32_t abortBatch() noexcept;
const char* lastError() noexcept;

}  // namespace mcast6::engine
