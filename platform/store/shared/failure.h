// Why a call of the shared store failed, in words, for the calling thread.
#pragma once

#include "platform/store/failure.h"
#include "platform/store/store.h"

namespace mcast6::store::shared {

using store::failureText;

// Keeps the text, and returns Answer::failed.
[[gnu::cold]] inline Answer failed(const char* text) noexcept { return failure("%s", text); }

}  // namespace mcast6::store::shared
