# docs/tables.md comes out of the modules' own descriptions: mcast6tables prints it. Each module is compiled once more, in
# a source made here, because its description is its own file's affair.

mcast6_glob(describedModules l2/l2mc6_*.cpp l3/l3mc6_*.cpp)
list(FILTER describedModules EXCLUDE REGEX "_query\\.cpp$")
if(describedModules AND TARGET mcast6platform)
  set(describedSources)
  set(declarations "")
  set(calls "")
  foreach(module ${describedModules})
    cmake_path(GET module STEM name)
    set(source ${PROJECT_BINARY_DIR}/generated/describe_${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT [[
#include "@module@"

#include "docs/generator/describe.h"

namespace mcast6::docs {
Module describe_@name@();
Module describe_@name@() { return describe<::mcast6::@name@::Table>("@name@"); }
}  // namespace mcast6::docs
]] @ONLY)
    list(APPEND describedSources ${source})
    string(APPEND declarations "Module describe_${name}();\n")
    string(APPEND calls "        describe_${name}(),\n")
  endforeach()
  set(listSource ${PROJECT_BINARY_DIR}/generated/describe_all.cpp)
  file(CONFIGURE OUTPUT ${listSource} CONTENT [[
#include "docs/generator/describe.h"

namespace mcast6::docs {
@declarations@
std::vector<Module> modules();
std::vector<Module> modules() {
    return {
@calls@    };
}
}  // namespace mcast6::docs
]] @ONLY)
  add_executable(mcast6tables docs/generator/main.cpp ${listSource} ${describedSources} frame/context.cpp
                              frame/iterator.cpp)
  target_include_directories(mcast6tables PRIVATE ${PROJECT_SOURCE_DIR} include platform/include)
  target_link_libraries(mcast6tables PRIVATE mcast6platform mcast6schema fmt::fmt mcast6warnings)
endif()
