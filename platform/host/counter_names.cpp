// What each counter and each indicator counts, found by its number.
//
// Three things a reader of the numbers should know: counter 0 is a real one; KPI 3 is shared by two tables; and where
// the name is "writes" or "deletes", the table decides whether a write of a present key or a removal of an absent one
// counts among them.
#include "platform/host/counter_names.h"

#include <algorithm>
#include <span>

#include "mcast6_platform/platform.h"

namespace {

using mcast6::host::CounterName;

constexpr bool ascend(std::span<const CounterName> names) {
    return std::ranges::adjacent_find(names, std::ranges::greater_equal{}, &CounterName::number) == names.end();
}
static_assert(ascend(mcast6::host::kCounterNames) && ascend(mcast6::host::kIndicatorNames));

const char* find(std::span<const CounterName> names, uint32_t number) {
    const auto found = std::ranges::lower_bound(names, number, {}, &CounterName::number);
    return found != names.end() && found->number == number ? found->text : nullptr;
}

}  // namespace

const char* mcast6_platform_counter_name(uint32_t counterId) { return find(mcast6::host::kCounterNames, counterId); }

const char* mcast6_platform_kpi_name(uint32_t kpiId) { return find(mcast6::host::kIndicatorNames, kpiId); }
