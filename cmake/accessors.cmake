# The accessors of the tables come out of the schema: mcast6accessors prints them.
#   headers   tables.h and tables/ in platform/include/mcast6_platform/, committed: `./dev accessors` rewrites them, a
#             test compares them
#   bodies    generated/accessors.cpp in the build tree, compiled into every platform

mcast6_glob(generatorSources platform/accessors/*.cpp)
if(generatorSources AND TARGET mcast6schema)
  add_executable(mcast6accessors ${generatorSources})
  target_link_libraries(mcast6accessors PRIVATE mcast6schema fmt::fmt mcast6warnings)

  set(MCAST6_ACCESSOR_BODIES ${PROJECT_BINARY_DIR}/generated/accessors.cpp)
  add_custom_command(
    OUTPUT ${MCAST6_ACCESSOR_BODIES}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/generated
    COMMAND mcast6accessors bodies ${MCAST6_ACCESSOR_BODIES}
    DEPENDS mcast6accessors
    COMMENT "Generating accessors.cpp"
    VERBATIM)
  add_custom_target(mcast6generated DEPENDS ${MCAST6_ACCESSOR_BODIES})
endif()
