# The stores of platform/store/. Each directory there with a CMakeLists.txt is one kind, and says so by mcast6_store().

# Compile options of the platform's parts. They end up in a shared library that exports the contract alone, so calls
# inside may be bound early.
function(mcast6_platform_part part)
  target_include_directories(${part} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/platform/include)
  target_link_libraries(${part} PRIVATE mcast6warnings)
  set_target_properties(${part} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_compile_options(${part} PRIVATE -fno-semantic-interposition ${MCAST6_FAST_CALLS} ${MCAST6_LINK_TIME})
  if(MCAST6_LINK_TIME)
    # Programs that link the parts themselves, as tests do, are spared that work.
    target_link_options(${part} INTERFACE $<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:NAME>,mcast6platform>>:-fno-lto>)
  endif()
endfunction()

# mcast6_store(<kind> [MODULE] [LINK <target>...]): the kind of store whose sources lie in this directory. It defines
#   const mcast6::store::StoreKind& mcast6::store::<kind>::storeKind();
# and is compiled into the platform's library, or becomes the module mcast6db/mcast6_store_<kind>.so beside it.
function(mcast6_store kind)
  cmake_parse_arguments(PARSE_ARGV 1 arg "MODULE" "" "LINK")
  mcast6_glob(sources *.cpp)
  if(NOT arg_MODULE)
    add_library(mcast6store_${kind} STATIC ${sources})
    mcast6_platform_part(mcast6store_${kind})
    target_link_libraries(mcast6store_${kind} PUBLIC mcast6storebase ${arg_LINK})
    set_property(GLOBAL APPEND PROPERTY MCAST6_STORES ${kind})
    return()
  endif()
  set(entry ${CMAKE_CURRENT_BINARY_DIR}/module_${kind}.cpp)
  file(CONFIGURE OUTPUT ${entry} CONTENT [[
#include "platform/store/registry.h"

namespace mcast6::store::@kind@ {
const StoreKind& storeKind();
}  // namespace mcast6::store::@kind@

extern "C" __attribute__((visibility("default"))) const mcast6::store::StoreModule mcast6_store_module;
const mcast6::store::StoreModule mcast6_store_module{mcast6::store::kStoreInterface,
                                                     mcast6::store::@kind@::storeKind};
]] @ONLY)
  add_library(mcast6_store_${kind} MODULE ${sources} ${entry})
  target_include_directories(mcast6_store_${kind} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/platform/include)
  target_link_libraries(mcast6_store_${kind} PRIVATE mcast6storebase ${arg_LINK} mcast6warnings)
  # What it links of the platform stays its own: nothing in it may take the place of the platform's.
  target_link_options(mcast6_store_${kind} PRIVATE -Wl,--exclude-libs,ALL)
  set_target_properties(
    mcast6_store_${kind}
    PROPERTIES PREFIX ""
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/mcast6db)
endfunction()
