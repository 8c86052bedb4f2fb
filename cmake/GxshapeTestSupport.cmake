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
set_source_files_properties("${PROJECT_SOURCE_DIR}/tests/support/source_folder.cpp" PROPERTIES
                            COMPILE_DEFINITIONS GXSHAPE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(gxshape_test_support ${scope} gxshape::gxshape GTest::gtest GTest::gmock Threads::Threads)
