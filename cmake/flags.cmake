# Compiler flags, in one place: warnings, sanitizers, and what the library's own code is compiled with.

# mcast6warnings: linked by every target whose sources live in this tree.
add_library(mcast6warnings INTERFACE)
target_compile_options(
  mcast6warnings
  INTERFACE
    -Wall
    -Wextra
    -Wconversion
    -Wshadow
    -Werror
    # A definition that drifts from its prototype is a silent overload unless the compiler asks for a declaration.
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wmissing-declarations>
    $<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wmissing-prototypes>
    $<$<COMPILE_LANGUAGE:C>:-Wmissing-prototypes>
    $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>)

set(MCAST6_SANITIZE "" CACHE STRING "Sanitizers for everything that is compiled, as -fsanitize takes them")
if(MCAST6_SANITIZE)
  add_compile_options(-fsanitize=${MCAST6_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${MCAST6_SANITIZE})
  # g++ 12 sees uninitialised variables in instrumented code where there are none; the plain builds keep the warning.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_SANITIZED "-O1 -g1")
set(CMAKE_CXX_FLAGS_SANITIZED "-O1 -g1")

# For code that runs for a moment: it takes half the time to compile when it is hardly optimised. g++ is quicker when it
# drops what is never used than when it emits all; sanitizers and clang are quickest without any optimisation.
set(MCAST6_QUICK_COMPILE -O0)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND NOT MCAST6_SANITIZE)
  set(MCAST6_QUICK_COMPILE -Og)
endif()

# Calls that leave a shared library go straight to where they lead, without a stub of the linker's on the way.
set(MCAST6_FAST_CALLS -fno-plt)

# The platform's library is optimised as a whole when it is linked: an operation of the engine comes through four source
# files, and is one function then. The objects hold code too, which is what all others link.
set(MCAST6_LINK_TIME "")
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_BUILD_TYPE STREQUAL Release)
  set(MCAST6_LINK_TIME -flto=auto -ffat-lto-objects)
endif()
