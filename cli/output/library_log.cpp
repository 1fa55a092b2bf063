#include "cli/output/library_log.h"

#include <fmt/format.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "cli/failure.h"
#include "cli/output/output.h"
#include "mcast6_db/context.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

constexpr size_t kLinesKept = 8;

// The callback has no argument of its own, so its state is the process's.
std::vector<std::string> keptLines;
bool printLines = false;

__attribute__((format(printf, 3, 4))) void logLine(uint32_t level, uint32_t logId, const char* format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    if (printLines) printNote(fmt::format("log level {} id 0x{:08X}: {}", level, logId, line));
    if (keptLines.size() == kLinesKept) keptLines.erase(keptLines.begin());
    keptLines.emplace_back(line);
}

const char* meaning(uint32_t code) {
    switch (code) {
        case MCAST6_DB_EXISTS_OR_ABSENT:
            return "the record exists, or does not exist";
        case MCAST6_DB_NO_SUCH_RECORD:
            return "no such record";
        case MCAST6_DB_END_OF_ITERATION:
            return "end of the iteration";
        case MCAST6_DB_TABLE_FULL:
            return "the table is full";
        case MCAST6_DB_BAD_HANDLE:
            return "stale or foreign handle";
        case MCAST6_DB_BAD_OPERATION:
            return "the object does not allow it";
        case MCAST6_DB_BAD_LENGTH:
            return "wrong length";
        case MCAST6_DB_BAD_KEY:
            return "the table has no such key";
        case MCAST6_DB_BAD_PROPERTY:
            return "unknown iterator property";
        case MCAST6_DB_BAD_ARGUMENT:
            return "bad argument";
        case MCAST6_DB_NO_MEMORY:
            return "no memory";
        case MCAST6_DB_STORE_FAILED:
            return "the store failed";
        default:
            return "failed";
    }
}

Failure withLogLines(const std::string& message) {
    std::vector<std::string> notes = takeLibraryLog();
    for (std::string& note : notes) note.insert(0, "library: ");
    return Failure(message, kFailed, std::move(notes));
}

}  // namespace

void installLibraryLog() {
    const Mcast6DbContext context{logLine};
    MCAST6_DB_RegCallBack(&context);
}

void printLibraryLog(bool print) { printLines = print; }

std::vector<std::string> takeLibraryLog() { return std::exchange(keptLines, {}); }

Failure libraryFailure(const std::string& operation, uint32_t code) {
    return withLogLines(fmt::format("{} answered {} ({})", operation, code, meaning(code)));
}

Failure libraryFailure(const std::string& operation) { return withLogLines(operation + " failed"); }

}  // namespace mcast6::ctl
