// What the modules say of their tables: numbers, counters, and what happens on every exit of their operations.
// Constants of the modules, no texts of their own; who prints them chooses the words.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "frame/outcome.h"

namespace mcast6::facts {

struct Exit {
    const char* name;  // "written"
    const Outcome* outcome;
};

struct Operation {
    const char* name;  // "write"
    bool givesHandle;  // its failures give null
    std::vector<Exit> exits;
};

// One for each module; a table may have several.
struct Module {
    std::string_view table;
    bool isNumbered = false;
    uint32_t number = 0;
    uint32_t logId = 0;
    uint32_t rowSize = 0;  // 0: the module has no field map
    std::span<const Counter> counters;
    std::span<const Kpi> indicators;
    std::vector<Operation> operations;
};

// Of every module, by table, from the sources that the build makes.
std::vector<Module> modules();

}  // namespace mcast6::facts
