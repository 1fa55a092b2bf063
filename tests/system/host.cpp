#include "tests/system/host.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "mcast6_db.h"
#include "mcast6_platform/platform.h"
#include "tests/support/process_state.h"

namespace {

int64_t now = 1'000;
std::vector<std::string> lines;

__attribute__((format(printf, 3, 4))) void keepLine(uint32_t, uint32_t, const char* format, ...) {
    char text[400];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    lines.emplace_back(text);
}

void* allocate(uint64_t size) { return std::malloc(size); }

}  // namespace

// In place of the C library's, for the whole program.
extern "C" time_t time(time_t* seconds) noexcept {
    if (seconds != nullptr) *seconds = now;
    return now;
}

namespace mcast6::tests {

void setTime(int64_t seconds) { now = seconds; }

void SystemTest::SetUp() {
    mcast6_platform_close();
    mcast6_platform_reset_counters();
    forgetProcessState();
    const Mcast6DbMemCallback hooks{allocate, std::free};
    MCAST6_DB_InitMem(&hooks);
    const Mcast6DbContext context{keepLine};
    ASSERT_EQ(0u, MCAST6_DB_RegCallBack(&context));
    lines.clear();
    setTime(1'000);
}

void SystemTest::TearDown() {
    mcast6_platform_close();
    forgetProcessState();
}

const std::vector<std::string>& SystemTest::logLines() { return lines; }

uint64_t SystemTest::errors() {
    uint64_t sum = 0;
    for (const auto& row : g_mcast6DbErrStat) {
        for (const uint64_t count : row) sum += count;
    }
    return sum;
}

}  // namespace mcast6::tests
