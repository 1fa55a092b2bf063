# The version is project()'s, in CMakeLists.txt. Headers, the tool, package files and the libraries' file names have
# it from there.
math(EXPR MCAST6_VERSION_NUMBER
     "${PROJECT_VERSION_MAJOR} * 10000 + ${PROJECT_VERSION_MINOR} * 100 + ${PROJECT_VERSION_PATCH}")
set(MCAST6_GENERATED_INCLUDE ${PROJECT_BINARY_DIR}/include)
configure_file(include/mcast6_db/version.h.in ${MCAST6_GENERATED_INCLUDE}/mcast6_db/version.h @ONLY)
