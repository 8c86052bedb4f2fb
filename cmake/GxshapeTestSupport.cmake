# The static library gxshape_test_support, of every file in tests/support that is no test: shapes by
# name and at random, matchers, the slow and plain forms. Tests and benchmarks link it; its headers are
# included as <support/random_shapes.h>. sourceFolder() names the checkout, for
# the data files in it.

include_guard(GLOBAL)

find_package(GTest REQUIRED)
find_package(Threads REQUIRED)

file(GLOB support_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/support/*.cpp")
list(FILTER support_sources EXCLUDE REGEX "_test\\.cpp$")
if(support_sources)
  add_library(gxshape_test_support STATIC ${support_sources})
  target_compile_options(gxshape_test_support PRIVATE ${GXSHAPE_WARNINGS})
  set(scope PUBLIC)
else()
  add_library(gxshape_test_support INTERFACE)
  set(scope INTERFACE)
endif()
target_include_directories(gxshape_test_support ${scope} "${PROJECT_SOURCE_DIR}/tests")

# What a test file is compiled with beside the build type's options. The library and the slow forms are
# what a build type is about; a test file only asks them, and half its compile time went into optimising that.
set(GXSHAPE_TEST_OPTIONS "" CACHE STRING "Compiler options of the test files alone, such as -O0")

# The test framework's header costs a test file more than its own code, so it is compiled once for all.
# Only that header: a test that forgets one of its own includes is found as before. Not with ccache, which
# would take every rebuild of it for a change of all tests. A library of one empty file holds it, because a
# precompiled header serves only files with its own options.
function(gxshape_test_file_options program)
  target_compile_options(${program} PRIVATE ${GXSHAPE_WARNINGS} ${GXSHAPE_TEST_OPTIONS})
endfunction()
set(GXSHAPE_PRECOMPILE OFF)
if(support_sources AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(GXSHAPE_PRECOMPILE ON)
  file(WRITE "${PROJECT_BINARY_DIR}/test_framework.cpp.in" "// Holds the precompiled header of the tests.\n")
  configure_file("${PROJECT_BINARY_DIR}/test_framework.cpp.in" "${PROJECT_BINARY_DIR}/test_framework.cpp" COPYONLY)
  add_library(gxshape_test_framework STATIC "${PROJECT_BINARY_DIR}/test_framework.cpp")
  target_link_libraries(gxshape_test_framework PRIVATE GTest::gtest Threads::Threads gxshape::gxshape)
  gxshape_test_file_options(gxshape_test_framework)
  target_precompile_headers(gxshape_test_framework PRIVATE <gtest/gtest.h> ${GXSHAPE_PRECOMPILED})
endif()
function(gxshape_precompiled program)
  if(GXSHAPE_PRECOMPILE)
    target_precompile_headers(${program} REUSE_FROM gxshape_test_framework)
  endif()
endfunction()
if(GXSHAPE_PRECOMPILED)
  target_precompile_headers(gxshape_test_support PRIVATE ${GXSHAPE_PRECOMPILED})
endif()
set_source_files_properties("${PROJECT_SOURCE_DIR}/tests/support/source_folder.cpp" PROPERTIES
                            COMPILE_DEFINITIONS GXSHAPE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(gxshape_test_support ${scope} gxshape::gxshape GTest::gtest GTest::gmock Threads::Threads)
