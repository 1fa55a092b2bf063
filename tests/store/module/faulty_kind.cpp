// 'faulty:', a store module for tests: the memory store with a fault at the n-th call.
//   fault=failed|noMemory|delay|stop   which fault; none if left out
//   nth=N                              at which call, 1 if left out
//   lasting                            and at every call after it
#include "platform/store/memory/memory_store.h"
#include "platform/store/registry.h"
#include "tests/store/faulty.h"

namespace mcast6::store::faulty {

const StoreKind& storeKind();

namespace {

// A process has one store open at a time.
test::FaultPlan plan;

std::unique_ptr<Store> open(const Uri& uri, std::span<const schema::Table> tables, std::string& reason) {
    OptionReader options(uri);
    const std::string name = options.text("fault", "none");
    const uint64_t nth = options.number("nth", 1, 1, UINT64_MAX);
    const bool isLasting = options.flag("lasting");
    if (!options.finish(reason)) return nullptr;
    for (const auto& [known, fault] : {std::pair("none", test::Fault::none), std::pair("failed", test::Fault::failed),
                                       std::pair("noMemory", test::Fault::noMemory),
                                       std::pair("delay", test::Fault::delay), std::pair("stop", test::Fault::stop)}) {
        if (name != known) continue;
        plan.arm(fault, nth, isLasting);
        return std::make_unique<test::FaultyStore>(makeMemoryStore(tables), plan);
    }
    reason = "option 'fault': '" + name + "' is none of none, failed, noMemory, delay, stop";
    return nullptr;
}

constexpr StoreKind kFaulty{"faulty", open};

}  // namespace

const StoreKind& storeKind() { return kFaulty; }

}  // namespace mcast6::store::faulty
