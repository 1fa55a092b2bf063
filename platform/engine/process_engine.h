// The one engine of a process, behind the C entries.
//
// It is opened by mcast6_platform_open with a URI, or by the first object that is made, with "memory:". It is not
// destroyed when the process ends, so that calls from destructors and exit handlers still find it; closing frees it.
#pragma once

#include <atomic>

#include "platform/engine/engine.h"

namespace mcast6::engine {

extern std::atomic<Engine*> processEngine;

// The open engine, or null.
inline Engine* openEngine() noexcept { return processEngine.load(std::memory_order_acquire); }

// The open engine, opened now if there is none; null when there is no memory for it.
Engine* engineOpenedIfNeeded() noexcept;

// What mcast6_platform_open, _close and _error promise.
uint32_t openStore(const char* uri) noexcept;
void closeStore() noexcept;
const char* lastError() noexcept;

}  // namespace mcast6::engine
