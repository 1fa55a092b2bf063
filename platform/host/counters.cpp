// Diagnostic counters, key performance indicators and the trap count: arrays of relaxed atomics. A counter orders
// nothing, so readers see each number whole but not several of them at one moment.
#include <sys/single_threaded.h>

#include <algorithm>
#include <array>
#include <atomic>

#include "mcast6_platform/host.h"
#include "mcast6_platform/platform.h"

namespace {

// One place for each id, and the last for all ids beyond.
using Counters = std::array<std::atomic<uint64_t>, MCAST6_PLATFORM_COUNTERS + 1>;

constinit Counters counters{};
constinit Counters indicators{};
constinit std::atomic<uint64_t> traps{0};

constexpr auto kRelaxed = std::memory_order_relaxed;

std::atomic<uint64_t>& place(Counters& of, uint32_t id) { return of[std::min<size_t>(id, MCAST6_PLATFORM_COUNTERS)]; }

// A process of one thread needs no atomic instruction, which would delay what follows until all earlier stores have
// reached the cache.
void addOne(std::atomic<uint64_t>& to) {
    if (__libc_single_threaded != 0) {
        to.store(to.load(kRelaxed) + 1, kRelaxed);
    } else {
        to.fetch_add(1, kRelaxed);
    }
}

void clear(Counters& all) {
    for (std::atomic<uint64_t>& counter : all) counter.store(0, kRelaxed);
}

}  // namespace

void MCAST6_DfxCounterInc(uint32_t counterId) { addOne(place(counters, counterId)); }

void MCAST6_KPI_AddKpiData(uint32_t kpiId) { addOne(place(indicators, kpiId)); }

void MCAST6_TRAP_DecreaseMfib6DbCnt(void) { addOne(traps); }

uint64_t mcast6_platform_counter(uint32_t counterId) { return place(counters, counterId).load(kRelaxed); }

uint64_t mcast6_platform_kpi(uint32_t kpiId) { return place(indicators, kpiId).load(kRelaxed); }

uint64_t mcast6_platform_trap_count(void) { return traps.load(kRelaxed); }

void mcast6_platform_reset_counters(void) {
    clear(counters);
    clear(indicators);
    traps.store(0, kRelaxed);
}
