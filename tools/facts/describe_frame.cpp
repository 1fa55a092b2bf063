// The frame's own counters, which belong to no table.
#include "frame/iterator.cpp"  // NOLINT(bugprone-suspicious-include): as the sources that the build makes of the modules
#include "tools/facts/describe.h"

namespace mcast6::facts {

Module describeFrame();
Module describeFrame() { return describe<Cache>("object cache"); }

}  // namespace mcast6::facts
