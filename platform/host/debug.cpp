// The debug line, to standard error.
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <new>
#include <string>

#include "mcast6_platform/host.h"
#include "mcast6_platform/platform.h"

namespace {

constinit std::atomic<uint32_t> threshold{0};

// One write for each line, so that lines of several threads do not mix.
void print(uint32_t level, const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) return;
    std::string line = "[mcast6 L" + std::to_string(level) + "] ";
    const size_t head = line.size();
    line.resize(head + static_cast<size_t>(length) + 1);
    std::vsnprintf(line.data() + head, static_cast<size_t>(length) + 1, format, arguments);
    line.pop_back();
    if (!line.ends_with('\n')) line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void MCAST6_DBG_Print(uint32_t, uint32_t, uint32_t level, const char* format, ...) {
    const uint32_t highest = threshold.load(std::memory_order_relaxed);
    if (highest == 0 || level > highest || format == nullptr) return;
    va_list arguments;
    va_start(arguments, format);
    try {
        print(level, format, arguments);
    } catch (const std::bad_alloc&) {
        // A debug line is not worth more than itself.
    }
    va_end(arguments);
}

void mcast6_platform_debug(uint32_t level) { threshold.store(level, std::memory_order_relaxed); }
