// Why the thread's last failed call of the platform failed. Noting it costs a failing call two stores; the text is made
// when somebody asks.
#pragma once

#include <cstdint>

namespace mcast6::engine {

class Engine;

// Notes the code for the calling thread and returns it. What it means is told by lastErrorText().
[[gnu::cold, gnu::noinline]] uint32_t refused(uint32_t code) noexcept;

// The same for MCAST6_DB_STORE_FAILED where the store threw, so that it has no reason to give.
[[gnu::cold, gnu::noinline]] uint32_t storeThrew() noexcept;

// Notes a whole text instead, as printf does.
[[gnu::cold, gnu::format(printf, 1, 2)]] void noteError(const char* format, ...) noexcept;

// "" when no call of the thread has failed. The reason of a store's failure comes from 'open', which may be null.
const char* lastErrorText(const Engine* open) noexcept;

}  // namespace mcast6::engine
