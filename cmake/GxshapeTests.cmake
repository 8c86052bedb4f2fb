# The tests: one program for each folder under tests/, of every *_test.cpp in it.
#
#   tests/base     -> gxshape_base_tests        tests/ch_core -> gxshape_ch_core_tests
#   tests/cntr     -> gxshape_cntr_tests        tests/support -> gxshape_support_tests
#   tests/archive, tests/golden -> gxshape_archive_tests        and so on for a new folder
#
# The other files of tests/support make a static library that every test program links; its headers
# are included as <support/random_shapes.h>. A test reaches files of the checkout through the macro
# GXSHAPE_SOURCE_DIR.
#
# CTest runs whole programs, not single tests: thousands of processes would cost more than the tests
# themselves. Each program writes its results as JSON, from which tools/test_totals.py counts.

find_package(GTest REQUIRED)
find_package(Threads REQUIRED)

set(GXSHAPE_TEST_RESULTS "${PROJECT_BINARY_DIR}/test-results")
file(MAKE_DIRECTORY "${GXSHAPE_TEST_RESULTS}")

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
target_compile_definitions(gxshape_test_support ${scope} GXSHAPE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(gxshape_test_support ${scope} gxshape::gxshape GTest::gtest GTest::gmock Threads::Threads)

file(GLOB_RECURSE all_tests CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/tests"
     "${PROJECT_SOURCE_DIR}/tests/*_test.cpp")
set(rooms)
foreach(file IN LISTS all_tests)
  string(REGEX REPLACE "/.*" "" room "${file}")
  if(room STREQUAL "golden")
    set(room archive)
  endif()
  list(APPEND rooms ${room})
  list(APPEND tests_of_${room} "${PROJECT_SOURCE_DIR}/tests/${file}")
endforeach()
list(REMOVE_DUPLICATES rooms)

foreach(room IN LISTS rooms)
  set(program gxshape_${room}_tests)
  add_executable(${program} ${tests_of_${room}})
  target_compile_options(${program} PRIVATE ${GXSHAPE_WARNINGS})
  target_link_libraries(${program} PRIVATE gxshape_test_support GTest::gtest_main)
  add_test(NAME ${room}
           COMMAND ${program} --gtest_brief=1 --gtest_output=json:${GXSHAPE_TEST_RESULTS}/${room}.json)
  set_tests_properties(${room} PROPERTIES TIMEOUT 900)
endforeach()

# ---- The tools' own tests -----------------------------------------------------------------------

find_program(GXSHAPE_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(GXSHAPE_PYTHON NAMES python3 REQUIRED)
file(GLOB tool_tests CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/*_test.py")
foreach(test IN LISTS tool_tests)
  cmake_path(GET test STEM name)
  add_test(NAME tools_${name} COMMAND ${GXSHAPE_PYTHON} "${test}")
  set_tests_properties(tools_${name} PROPERTIES TIMEOUT 300)
endforeach()

include(GxshapeConformance)
include(GxshapeConsumer)
