#include "platform/store/shared/failure.h"

namespace mcast6::store::shared {
namespace {

thread_local const char* g_text = "";

}  // namespace

Answer failed(const char* text) noexcept {
    g_text = text;
    return Answer::failed;
}

const char* failureText() noexcept { return g_text; }

}  // namespace mcast6::store::shared
