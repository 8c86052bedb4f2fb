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

# The test framework's header costs a test file more than its own code, so it is compiled once for all.
# Only that header: a test that forgets one of its own includes is found as before. Not with ccache, which
# would take every rebuild of it for a change of all tests.
set(GXSHAPE_PRECOMPILE OFF)
if(support_sources AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(GXSHAPE_PRECOMPILE ON)
  target_precompile_headers(gxshape_test_support PRIVATE <gtest/gtest.h>)
endif()
function(gxshape_precompiled program)
  if(GXSHAPE_PRECOMPILE)
    target_precompile_headers(${program} REUSE_FROM gxshape_test_support)
  endif()
endfunction()
set_source_files_properties("${PROJECT_SOURCE_DIR}/tests/support/source_folder.cpp" PROPERTIES
                            COMPILE_DEFINITIONS GXSHAPE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(gxshape_test_support ${scope} gxshape::gxshape GTest::gtest GTest::gmock Threads::Threads)
