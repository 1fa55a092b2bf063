# What `cmake --install` installs, by component:
#   runtime   the libraries
#   devel     headers, CMake package, pkg-config files, the libraries' links for linkers
#   tool      mcast6ctl
#   doc       manuals, licence, examples
# Nothing that is installed names the prefix, so an installed tree can be moved.

include(CMakePackageConfigHelpers)
set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/mcast6db)

set_target_properties(mcast6platform PROPERTIES EXPORT_NAME platform)
install(
  TARGETS mcast6db mcast6platform
  EXPORT mcast6dbTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT devel)
install(
  EXPORT mcast6dbTargets
  NAMESPACE mcast6db::
  DESTINATION ${packageDir}
  COMPONENT devel)

configure_package_config_file(cmake/mcast6dbConfig.cmake.in ${PROJECT_BINARY_DIR}/package/mcast6dbConfig.cmake
                              INSTALL_DESTINATION ${packageDir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/mcast6dbConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/package/mcast6dbConfig.cmake ${PROJECT_BINARY_DIR}/package/mcast6dbConfigVersion.cmake
  DESTINATION ${packageDir}
  COMPONENT devel)

# Directories below the prefix are named from it; others, which cannot move with it, as they are.
function(mcast6_below_prefix variable dir)
  if(IS_ABSOLUTE ${dir})
    set(${variable} ${dir} PARENT_SCOPE)
  else()
    set(${variable} "\${prefix}/${dir}" PARENT_SCOPE)
  endif()
endfunction()
mcast6_below_prefix(MCAST6_PKGCONFIG_LIBDIR ${CMAKE_INSTALL_LIBDIR})
mcast6_below_prefix(MCAST6_PKGCONFIG_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
file(RELATIVE_PATH MCAST6_PREFIX_FROM_PKGCONFIG ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" MCAST6_PREFIX_FROM_PKGCONFIG ${MCAST6_PREFIX_FROM_PKGCONFIG})

function(mcast6_install_pkgconfig name description)
  configure_file(cmake/library.pc.in ${PROJECT_BINARY_DIR}/package/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/package/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT devel)
endfunction()
mcast6_install_pkgconfig(mcast6db "IPv6 multicast tables in an object database: the operations")
mcast6_install_pkgconfig(mcast6platform "IPv6 multicast tables in an object database: engine and store")

install(
  DIRECTORY include/ platform/include/ ${MCAST6_GENERATED_INCLUDE}/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT devel
  FILES_MATCHING
  PATTERN *.h)

# The tool finds the libraries beside it, wherever both are.
file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(mcast6ctl PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
install(TARGETS mcast6ctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)

install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc)
install(
  DIRECTORY docs examples
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT doc
  FILES_MATCHING
  PATTERN *.md
  PATTERN *.c)
