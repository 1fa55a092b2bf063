#include "platform/engine/last_error.h"

#include <cstdarg>
#include <cstdio>

#include "mcast6_platform/engine.h"
#include "platform/engine/engine.h"

namespace mcast6::engine {
namespace {

enum class Kind : uint8_t { none, code, thrown, text };

// A fixed buffer, so that reporting a failure cannot fail.
struct LastError {
    Kind kind = Kind::none;
    uint32_t code = 0;
    char text[1024] = "";
};
thread_local LastError last;

const char* meaningOf(uint32_t code) {
    switch (code) {
        case MCAST6_DB_TABLE_FULL:
            return "the table is at its capacity";
        case MCAST6_DB_BAD_HANDLE:
            return "the handle is unknown, released, or of another kind or table, or no store is open; "
                   "handles of a store that was closed are stale, but for cache objects: make the object anew";
        case MCAST6_DB_BAD_OPERATION:
            return "the type or state of the object or iterator does not allow this call; "
                   "a cached iterator needs a key first, and again after a store was closed";
        case MCAST6_DB_BAD_LENGTH:
            return "a length is not that of the table's record, of the field or of the property";
        case MCAST6_DB_BAD_KEY:
            return "the table has no such key word or key name";
        case MCAST6_DB_BAD_PROPERTY:
            return "root iterators have no such property";
        case MCAST6_DB_BAD_ARGUMENT:
            return "an argument is null or has a value that the call does not know";
        case MCAST6_DB_NO_MEMORY:
            return "out of memory";
        case MCAST6_DB_BATCH_OPEN:
            return "this thread has a batch open: commit or abort it first";
        case MCAST6_DB_NO_BATCH:
            return "this thread has no batch open: begin one first";
        case MCAST6_DB_BATCH_GONE:
            return "the store was closed while the batch was open, and nothing of the batch was stored: begin anew";
        case MCAST6_DB_BATCH_TOO_LARGE:
            return "the batch would change more records than the store allows: commit it and begin another, "
                   "or open the store with a higher bound, as in 'memory:?batch=200000'";
        case MCAST6_DB_BATCH_LOST:
            return "another writer was first, and nothing of the batch was stored: make it again";
        default:
            return "the store failed";
    }
}

}  // namespace

uint32_t refused(uint32_t code) noexcept {
    last.kind = Kind::code;
    last.code = code;
    return code;
}

uint32_t storeThrew() noexcept {
    last.kind = Kind::thrown;
    return MCAST6_DB_STORE_FAILED;
}

void noteError(const char* format, ...) noexcept {
    va_list arguments;
    va_start(arguments, format);
    (void)std::vsnprintf(last.text, sizeof last.text, format, arguments);
    va_end(arguments);
    last.kind = Kind::text;
}

const char* lastErrorText(const Engine* open) noexcept {
    switch (last.kind) {
        case Kind::none:
            return "";
        case Kind::text:
            return last.text;
        case Kind::thrown:
            return "the store failed, and gave no reason";
        case Kind::code:
            break;
    }
    if (last.code != MCAST6_DB_STORE_FAILED) return meaningOf(last.code);
    const char* const reason = open != nullptr ? open->storeReason() : "";
    (void)std::snprintf(last.text, sizeof last.text, "the store failed%s%s", *reason != '\0' ? ": " : "", reason);
    return last.text;
}

}  // namespace mcast6::engine
