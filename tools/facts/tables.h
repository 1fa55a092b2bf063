// docs/tables.md: every table with its keys and what each exit of its operations does.
#pragma once

#include <string>
#include <vector>

#include "tools/facts/module.h"

namespace mcast6::facts {

std::string tablesPage(const std::vector<Module>& all);

}  // namespace mcast6::facts
