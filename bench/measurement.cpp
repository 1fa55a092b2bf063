#include "bench/measurement.h"

#include <ctime>

namespace mcast6::bench {

std::chrono::nanoseconds timeNow(bool processorTime) {
    timespec time{};
    clock_gettime(processorTime ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace mcast6::bench
