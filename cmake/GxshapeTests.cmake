# The tests: one program for each folder under tests/, of every *_test.cpp in it.
#
#   tests/base     -> gxshape_base_tests        tests/ch_core -> gxshape_ch_core_tests
#   tests/cntr     -> gxshape_cntr_tests        tests/support -> gxshape_support_tests
#   tests/archive, tests/golden -> gxshape_archive_tests        and so on for a new folder
#
# CTest runs whole programs, not single tests: thousands of processes would cost more than the tests
# themselves. Each program writes its results as JSON, from which tools/test_totals.py counts.

include(GxshapeTestSupport)

set(GXSHAPE_TEST_RESULTS "${PROJECT_BINARY_DIR}/test-results")
file(MAKE_DIRECTORY "${GXSHAPE_TEST_RESULTS}")

file(GLOB_RECURSE all_tests CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/tests"
     "${PROJECT_SOURCE_DIR}/tests/*_test.cpp")
# These need what other libraries bring: GxshapeNeighbours.
list(FILTER all_tests EXCLUDE REGEX "^neighbours/")
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

# For the thread sanitizer the program of tests/threads has every test file that starts threads, of all
# rooms, so that one program, and what it needs, is all that has to be built.
if(GXSHAPE_SANITIZE MATCHES "thread")
  foreach(file IN LISTS all_tests)
    set(path "${PROJECT_SOURCE_DIR}/tests/${file}")
    file(STRINGS "${path}" starts REGEX "std::j?thread[ (]|<support/together\\.h>" LIMIT_COUNT 1)
    if(starts AND NOT file MATCHES "^threads/")
      list(APPEND tests_of_threads "${path}")
    endif()
  endforeach()
endif()

if(NOT GXSHAPE_IO)
  list(REMOVE_ITEM rooms io)
endif()
if(NOT TARGET gxshape_gxshape_cairo)
  list(REMOVE_ITEM rooms cairo)
endif()
set(GXSHAPE_SHORT_TO_LONG ch_core tool io memory base overlay archive gauge cntr)
foreach(room IN LISTS rooms)
  set(program gxshape_${room}_tests)
  # What the tests of a folder share lies beside them; of support/, it is a library.
  set(helpers)
  if(NOT room STREQUAL "support")
    file(GLOB helpers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/${room}/*.cpp")
    list(FILTER helpers EXCLUDE REGEX "_test\\.cpp$|cgal_judge\\.cpp$")
  endif()
  add_executable(${program} ${tests_of_${room}} ${helpers})
  target_link_libraries(${program} PRIVATE gxshape_test_support GTest::gtest_main)
  if(room STREQUAL "archive")
    # These damage byte after byte of hundreds of archives themselves: under the sanitizers the longest of all.
    target_compile_options(${program} PRIVATE ${GXSHAPE_WARNINGS})
  else()
    gxshape_test_file_options(${program})
    gxshape_precompiled(${program})
  endif()
  add_test(NAME ${room}
           COMMAND ${program} --gtest_brief=1 --gtest_output=json:${GXSHAPE_TEST_RESULTS}/${room}.json)
  # The longest begin first, so that no processor waits in the end for one that began last.
  list(FIND GXSHAPE_SHORT_TO_LONG "${room}" cost)
  set_tests_properties(${room} PROPERTIES COST ${cost})  # how long it may take, tools/run_tests says
endforeach()

set(GXSHAPE_LEAKS "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tools/lsan_suppressions.txt:print_suppressions=0")
if(TARGET gxshape_cairo_tests)
  target_link_libraries(gxshape_cairo_tests PRIVATE gxshape::gxshape_cairo)
  set_tests_properties(cairo PROPERTIES ENVIRONMENT "${GXSHAPE_LEAKS}")
endif()
if(TARGET gxshape_io_tests)
  target_link_libraries(gxshape_io_tests PRIVATE gxshape::gxshape_io)
endif()

# ---- The tools' own tests -----------------------------------------------------------------------

find_program(GXSHAPE_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(GXSHAPE_PYTHON NAMES python3 REQUIRED)
file(GLOB tool_tests CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/*_test.py")
foreach(test IN LISTS tool_tests)
  cmake_path(GET test STEM name)
  add_test(NAME tools_${name} COMMAND ${GXSHAPE_PYTHON} "${test}")
  set_tests_properties(tools_${name} PROPERTIES TIMEOUT 300)
endforeach()

if(TARGET gxshape_tool)
  # tool, tool_form, tool_draw ...: a file each
  file(GLOB session_tests CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/tool/*_test.py")
  foreach(test IN LISTS session_tests)
    cmake_path(GET test STEM name)
    string(REGEX REPLACE "_test$" "" name "tool_${name}")
    string(REGEX REPLACE "^tool_tool$" "tool" name "${name}")
    add_test(NAME ${name} COMMAND ${GXSHAPE_PYTHON} "${test}" $<TARGET_FILE:gxshape_tool>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 ENVIRONMENT "${GXSHAPE_LEAKS}")
  endforeach()
endif()

# ---- The overlay's exact judge and its corpus -----------------------------------------------------
#
# CGAL's headers are all code; one file includes them, and is compiled for the tests of the overlay only.

if(TARGET gxshape_overlay_tests)
  find_path(GXSHAPE_CGAL_INCLUDES CGAL/Arrangement_2.h REQUIRED)
  find_library(GXSHAPE_GMP gmp REQUIRED)
  find_library(GXSHAPE_MPFR mpfr REQUIRED)
  add_library(gxshape_cgal_judge OBJECT "${PROJECT_SOURCE_DIR}/tests/overlay/cgal_judge.cpp")
  target_include_directories(gxshape_cgal_judge SYSTEM PRIVATE "${GXSHAPE_CGAL_INCLUDES}")
  # The exact numbers set the rounding direction themselves, which this flag is the promise for.
  target_compile_options(gxshape_cgal_judge PRIVATE
                         $<$<CXX_COMPILER_ID:GNU>:-frounding-math> $<$<CXX_COMPILER_ID:Clang>:-Wno-unknown-warning-option>)
  if(GXSHAPE_SANITIZE)
    # Its iterators cast downwards to what is not there yet; that is not ours to find.
    target_compile_options(gxshape_cgal_judge PRIVATE -fno-sanitize=all)
  endif()
  target_link_libraries(gxshape_cgal_judge PRIVATE gxshape_test_support)
  target_sources(gxshape_overlay_tests PRIVATE "${PROJECT_SOURCE_DIR}/tests/overlay/troublemakers.cpp")
  target_link_libraries(gxshape_overlay_tests PRIVATE gxshape_cgal_judge ${GXSHAPE_GMP} ${GXSHAPE_MPFR})
endif()

# ---- What the libraries export, and what the headers say to an older compiler --------------------

if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE AND NOT GXSHAPE_SANITIZE AND NOT GXSHAPE_COVERAGE)
  add_test(NAME exports
           COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DCOMPILER=${CMAKE_CXX_COMPILER}
                   -DSOURCE=${PROJECT_SOURCE_DIR} -DRESULTS=${GXSHAPE_TEST_RESULTS}
                   "-DLIBRARIES=$<TARGET_FILE:gxshape::velstd>,$<TARGET_FILE:gxshape::velip>,$<TARGET_FILE:gxshape::veldispc>,$<TARGET_FILE:gxshape::gxshape>"
                   -P ${PROJECT_SOURCE_DIR}/cmake/CheckExports.cmake)
  set_tests_properties(exports PROPERTIES TIMEOUT 300)
endif()

# The programs of the pages, those that need no other library.
if(NOT GXSHAPE_SANITIZE AND NOT GXSHAPE_COVERAGE AND BUILD_SHARED_LIBS AND PROJECT_IS_TOP_LEVEL)
  foreach(page IN ITEMS neighbours packages)
    add_test(NAME page_${page}
             COMMAND ${GXSHAPE_PYTHON} "${PROJECT_SOURCE_DIR}/tools/doc_blocks.py" "${PROJECT_SOURCE_DIR}/docs/${page}.md"
                     --only programs --build "${PROJECT_BINARY_DIR}" --compiler "${CMAKE_CXX_COMPILER}" --without-neighbours)
    set_tests_properties(page_${page} PROPERTIES TIMEOUT 300)
  endforeach()
endif()

include(GxshapeConformance)
include(GxshapeNeighbours)
include(GxshapeConsumer)
