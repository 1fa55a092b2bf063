#include "platform/store/failure.h"

#include <cstdarg>
#include <cstdio>

namespace mcast6::store {
namespace {

// A fixed buffer, so that reporting a failure cannot fail.
thread_local char text[512] = "";

}  // namespace

Answer failure(const char* format, ...) noexcept {
    va_list arguments;
    va_start(arguments, format);
    (void)std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return Answer::failed;
}

const char* failureText() noexcept { return text; }

}  // namespace mcast6::store
