// The host functions of the recording platform, and its clock.
#include "mcast6_platform/host.h"

#include <cstring>
#include <ctime>

#include "mcast6_platform/engine.h"
#include "platform/host/bounded_copy.h"
#include "tests/platform/state.h"

using namespace mcast6::recording;

namespace {

constexpr size_t kGlobalVersionLength = 40;
constexpr size_t kGlobalVersionOffset = 20;

// The answer to a call on the global version, recorded as 'verb'.
uint32_t globalVersionCall(const std::string& function, const std::string& verb, const void* record) {
    State& recorder = state();
    if (record == nullptr) recorder.noteMisuse(function + " of a null record");
    const uint32_t unscripted = record != nullptr ? MCAST6_DB_OK : MCAST6_DB_BAD_ARGUMENT;
    const uint32_t code = recorder.script.answerTo(function, true).value_or(unscripted);
    recorder.note(verb + " " + hexOf(record, kGlobalVersionLength) + (code != 0 ? " -> " + std::to_string(code) : ""));
    return code;
}

}  // namespace

extern "C" {

void MCAST6_DfxCounterInc(uint32_t counterId) {
    ++state().dfx[counterId];
    state().note("dfx " + std::to_string(counterId));
}

void MCAST6_KPI_AddKpiData(uint32_t kpiId) {
    ++state().kpi[kpiId];
    state().note("kpi " + std::to_string(kpiId));
}

void MCAST6_TRAP_DecreaseMfib6DbCnt(void) {
    ++state().traps;
    state().note("trap");
}

void MCAST6_DBG_Print(uint32_t module, uint32_t type, uint32_t level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = formatted(format, arguments);
    va_end(arguments);
    state().note("debug " + std::to_string(module) + " " + std::to_string(type) + " " + std::to_string(level) + " \"" +
                 text + "\"");
}

uint32_t MCAST_DB_ReadGlbVersion(void* record40) {
    const uint32_t code = globalVersionCall("MCAST_DB_ReadGlbVersion", "glb_read", record40);
    if (code != MCAST6_DB_OK) return code;
    auto& waiting = state().script.globalVersions;
    uint32_t version = 0;
    if (!waiting.empty()) {
        version = waiting.front();
        waiting.pop_front();
    }
    std::memcpy(static_cast<uint8_t*>(record40) + kGlobalVersionOffset, &version, sizeof version);
    return code;
}

uint32_t MCAST_DB_UpdateGlbVersion(void* record40) {
    return globalVersionCall("MCAST_DB_UpdateGlbVersion", "glb_update", record40);
}

uint32_t MCAST_DB_WriteGlbVersion(void* record40) {
    return globalVersionCall("MCAST_DB_WriteGlbVersion", "glb_write", record40);
}

int memcpy_s(void* destination, size_t destinationSize, const void* source, size_t count) {
    State& recorder = state();
    const uint32_t scripted = recorder.script.answerTo("memcpy_s", false).value_or(0);
    const int result = scripted != 0 ? static_cast<int>(scripted)
                                     : mcast6::host::boundedCopy(destination, destinationSize, source, count);
    if (recorder.tracesCopies) {
        recorder.note("memcpy_s " + std::to_string(destinationSize) + " " + std::to_string(count) +
                      (result != 0 ? " -> " + std::to_string(result) : ""));
    }
    return result;
}

// Replaces the C library's function in the whole program.
time_t time(time_t* seconds) noexcept {
    State& recorder = state();
    const int64_t now = recorder.now;
    recorder.now += recorder.clockStep;
    ++recorder.clockReadings;
    if (recorder.tracesClock) recorder.note("time");
    if (seconds != nullptr) *seconds = now;
    return now;
}

}  // extern "C"
