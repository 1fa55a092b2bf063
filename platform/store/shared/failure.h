// Why a call of the shared store failed, in words, for the calling thread.
#pragma once

#include "platform/store/store.h"

namespace mcast6::store::shared {

// Keeps the text, and returns Answer::failed. The text must be a literal.
[[gnu::cold]] Answer failed(const char* text) noexcept;
const char* failureText() noexcept;  // of the thread's last failure, "" if none

}  // namespace mcast6::store::shared
