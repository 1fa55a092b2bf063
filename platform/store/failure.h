// Why a call of a store failed, in words.
//
// The calls of a store return an Answer, which costs nothing. The reason of a failure is a text of the calling thread,
// written only when a call fails and read by Store::reason().
#pragma once

#include "platform/store/answer.h"

namespace mcast6::store {

// Sets the calling thread's text, as printf does, and returns Answer::failed:
//     return failure("the map is full: %zu of %zu bytes", used, size);
[[gnu::cold, gnu::format(printf, 1, 2)]] Answer failure(const char* format, ...) noexcept;

// What the thread's last failure() said, "" if there was none. Valid until its next one.
const char* failureText() noexcept;

}  // namespace mcast6::store
