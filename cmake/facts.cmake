# What follows from facts that stand elsewhere, printed by two programs of tools/facts/ (see its README).
#   mcast6declared    from schemas and exported headers; made first, for the modules need what it prints
#   mcast6described   from the modules' descriptions

set(MCAST6_GENERATED ${PROJECT_BINARY_DIR}/generated)

add_library(mcast6facts STATIC tools/facts/accessors.cpp tools/facts/exports.cpp tools/facts/output.cpp)
target_include_directories(mcast6facts PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(mcast6facts PUBLIC mcast6schema fmt::fmt PRIVATE mcast6warnings)

add_executable(mcast6declared tools/facts/declared.cpp)
target_link_libraries(mcast6declared PRIVATE mcast6facts mcast6warnings)

# The bodies of the accessors, compiled into every platform.
set(MCAST6_ACCESSOR_BODIES ${MCAST6_GENERATED}/accessors.cpp)
add_custom_command(
  OUTPUT ${MCAST6_ACCESSOR_BODIES}
  COMMAND mcast6declared bodies ${MCAST6_ACCESSOR_BODIES}
  DEPENDS mcast6declared
  COMMENT "Generating accessors.cpp"
  VERBATIM)
add_custom_target(mcast6generated DEPENDS ${MCAST6_ACCESSOR_BODIES})

# The version script of the library: what its headers declare, and nothing else.
set(MCAST6_EXPORT_MAP ${MCAST6_GENERATED}/exports.map)
mcast6_glob(declaringHeaders include/*.h include/*/*.h)
add_custom_command(
  OUTPUT ${MCAST6_EXPORT_MAP}
  COMMAND mcast6declared exports ${MCAST6_EXPORT_MAP} ${PROJECT_SOURCE_DIR}/include
  DEPENDS mcast6declared ${declaringHeaders}
  COMMENT "Generating exports.map"
  VERBATIM)
add_custom_target(mcast6exports DEPENDS ${MCAST6_EXPORT_MAP})

# Each module is compiled once more, in a source made here, because its description is its own file's affair. A module
# <table>_query adds to its table.
mcast6_glob(describedModules l2/l2mc6_*.cpp l3/l3mc6_*.cpp)
set(describedSources)
set(declarations "")
set(calls "")
foreach(module ${describedModules})
  cmake_path(GET module STEM name)
  string(REGEX REPLACE "_query$" "" table ${name})
  set(source ${MCAST6_GENERATED}/describe_${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT [[
#include "@module@"

#include "tools/facts/describe.h"

namespace mcast6::facts {
Module describe_@name@();
Module describe_@name@() { return describe<::mcast6::@name@::Table>("@table@"); }
}  // namespace mcast6::facts
]] @ONLY)
  list(APPEND describedSources ${source})
  string(APPEND declarations "Module describe_${name}();\n")
  string(APPEND calls "describe_${name}(), ")
endforeach()
file(CONFIGURE OUTPUT ${MCAST6_GENERATED}/describe_all.cpp CONTENT [[
#include "tools/facts/module.h"

namespace mcast6::facts {
@declarations@
Module describeFrame();
std::vector<Module> modules() { return {@calls@describeFrame()}; }
}  // namespace mcast6::facts
]] @ONLY)
add_executable(mcast6described tools/facts/described.cpp tools/facts/names.cpp tools/facts/tables.cpp
                               tools/facts/describe_frame.cpp frame/context.cpp
                               ${MCAST6_GENERATED}/describe_all.cpp ${describedSources})
target_include_directories(mcast6described PRIVATE ${PROJECT_SOURCE_DIR} include platform/include)
# It runs for a moment, and the modules compile in two thirds of the time.
target_compile_options(mcast6described PRIVATE -O0)
target_link_libraries(mcast6described PRIVATE mcast6facts mcast6platform mcast6warnings)
