// The frame's own counters, which belong to no table.
#include "frame/iterator.cpp"  // NOLINT(bugprone-suspicious-include): as the generated sources include modules
#include "tools/facts/describe.h"

namespace mcast6::facts {

Module describeFrame();
Module describeFrame() { return describe<Cache>("object cache"); }

}  // namespace mcast6::facts
