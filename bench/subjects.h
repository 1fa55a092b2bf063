// The three subjects that are measured side by side.
#pragma once

#include "bench/measurement.h"

namespace mcast6::bench {

// The exported operations of the library, on the platform.
void measureLibrary(const Workload& workload, const Settings& settings, Findings& findings);

// The engine of the platform as the library calls it, without the library's conversion, messages and counters.
void measureEngine(const Workload& workload, const Settings& settings, Findings& findings);

// A Boost.MultiIndex container with the same keys, all hashed.
void measureContainer(const Workload& workload, const Settings& settings, Findings& findings);

}  // namespace mcast6::bench
