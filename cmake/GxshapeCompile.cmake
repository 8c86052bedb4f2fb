# How everything here is compiled. One place for each decision, with its reason.

# ---- The language ---------------------------------------------------------------------------------

# Twenty or later: a project around this one may ask for a later one.
if(NOT CMAKE_CXX_STANDARD OR CMAKE_CXX_STANDARD LESS 20)
  set(CMAKE_CXX_STANDARD 20)
endif()
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Symbols are hidden unless a class or function carries its library's export macro.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# ---- Fused multiply-add is off ----------------------------------------------------------------------
#
# A compiler may turn a*b + c into one instruction that rounds once instead of twice. That is more
# accurate for one expression and wrong for a library like this: a*d - b*c would no longer change
# its sign exactly when its arguments are exchanged, the same inline function would give different
# bits in two translation units, and a test that passes here would fail on a machine that has the
# instruction. Every result of this library is the same on every machine that rounds as IEEE 754
# says, so contraction is off in all our code, and in that of users too: our headers hold inline
# arithmetic, which is compiled with the user's flags. Hence the flag is part of the exported
# targets and of the pkg-config file. (-ffast-math and its parts are out for the same reason.)
set(GXSHAPE_PUBLIC_FLAGS -ffp-contract=off)
add_compile_options(${GXSHAPE_PUBLIC_FLAGS})

# ---- Optimisation -----------------------------------------------------------------------------------
#
# Release is the default: geometry built without optimisation is useless to whoever just typed
# `cmake -B build`. Within another project that project's build type holds, and everywhere the user's
# flags do; the presets compile with -O2, which is what the benchmarks were tuned with. No -march: a library must run on machines other than the one that built it.
# No link-time optimisation: the libraries are shared, and the hot loops lie inside one file each.

get_property(_multi GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(PROJECT_IS_TOP_LEVEL AND NOT _multi AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo" FORCE)
endif()

# ---- Warnings ---------------------------------------------------------------------------------------

set(GXSHAPE_WARNINGS
    -Wall -Wextra -Wpedantic
    -Wshadow                 # a member or outer name hidden by a local one
    -Wconversion -Wsign-conversion
    -Wold-style-cast -Wcast-align -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual
    -Wmissing-declarations   # a function that ought to be in an unnamed namespace
    -Wformat=2 -Wundef -Wextra-semi)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND GXSHAPE_WARNINGS -Wduplicated-cond -Wduplicated-branches -Wlogical-op)
  # For the libraries only: in tests it finds fault with g++'s own stream iterators.
  set(GXSHAPE_LIBRARY_WARNINGS -Wnull-dereference)
else()
  list(APPEND GXSHAPE_WARNINGS -Wunreachable-code -Wrange-loop-analysis -Wdocumentation)
endif()
if(GXSHAPE_WERROR)
  list(APPEND GXSHAPE_WARNINGS -Werror)
elseif(NOT PROJECT_IS_TOP_LEVEL)
  # The -Werror of the project around us is for its own sources: g++ -O3 finds fault with the strings and vectors
  # of its own library in ours (-Wrestrict, -Wnull-dereference).  What our headers do in its sources stays an error.
  list(APPEND GXSHAPE_WARNINGS -Wno-error)
endif()

# ---- Sanitizers and coverage ------------------------------------------------------------------------

if(GXSHAPE_SANITIZE)
  add_compile_options(-fsanitize=${GXSHAPE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${GXSHAPE_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The instrumented code confuses g++'s flow analysis; the plain builds keep these warnings.
    list(APPEND GXSHAPE_WARNINGS -Wno-maybe-uninitialized)
    set(GXSHAPE_LIBRARY_WARNINGS)
  endif()
endif()
if(GXSHAPE_COVERAGE)
  # Tests run threads: plain counters lose counts to each other, and what is left of them does not add
  # up (gcovr then ends with an error about negative counts).
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# ---- ccache, where present --------------------------------------------------------------------------

if(PROJECT_IS_TOP_LEVEL)
  find_program(GXSHAPE_CCACHE ccache)
endif()
if(GXSHAPE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${GXSHAPE_CCACHE}")
endif()

# ---- Precompiled headers ----------------------------------------------------------------------------

# Under the sanitizers half the time of compiling the library went into reading the same headers of the
# standard library (1.2 s a file with clang, 0.8 s with g++). They are compiled once for each library, in
# those builds alone, so that the release still finds a file that forgets one of its includes. Not with
# ccache, which would take every rebuild of them for a change of all files.
set(GXSHAPE_PRECOMPILED)
if(GXSHAPE_SANITIZE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(GXSHAPE_PRECOMPILED <algorithm> <array> <atomic> <cmath> <cstdint> <functional> <limits> <memory>
      <numeric> <optional> <ostream> <span> <string> <utility> <vector>)
endif()

# ---- Where things go --------------------------------------------------------------------------------

if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
endif()
