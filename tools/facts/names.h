// What each counter and each indicator counts, in words for who reads the numbers: "<table>: <event>".
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tools/facts/module.h"

namespace mcast6::facts {

using Names = std::map<uint32_t, std::string>;  // by number

// A number that several tables count in names them all; they must agree on the event.
Names counterNames(const std::vector<Module>& all);
Names indicatorNames(const std::vector<Module>& all);

// platform/host/counter_names.h.
std::string namesHeader(const std::vector<Module>& all);

}  // namespace mcast6::facts
