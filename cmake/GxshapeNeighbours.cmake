# What hands shapes to other libraries and back: the headers of include/gxshape/interop that need one, tried against
# OpenCV, Boost.Geometry, Eigen, GEOS, CGAL and {fmt}.  Their headers take longer to compile than the whole library,
# so nothing here is part of a build unless asked for:
#
#   make neighbours        installs the packages of the purpose `neighbours`, builds, runs
#
# The target exists where all of these are found.

find_path(GXSHAPE_OPENCV opencv2/core.hpp PATH_SUFFIXES opencv4)
find_path(GXSHAPE_EIGEN Eigen/Core PATH_SUFFIXES eigen3)
find_path(GXSHAPE_BOOST boost/geometry.hpp)
find_path(GXSHAPE_CGAL CGAL/Polygon_with_holes_2.h)
find_path(GXSHAPE_GEOS geos_c.h)
find_path(GXSHAPE_FMT fmt/format.h)
foreach(library IN ITEMS opencv_core opencv_imgproc opencv_imgcodecs geos_c gmp mpfr)
  find_library(GXSHAPE_LIBRARY_${library} ${library})
  list(APPEND _neighbours GXSHAPE_LIBRARY_${library})
endforeach()
foreach(found IN ITEMS GXSHAPE_OPENCV GXSHAPE_EIGEN GXSHAPE_BOOST GXSHAPE_CGAL GXSHAPE_GEOS GXSHAPE_FMT ${_neighbours})
  mark_as_advanced(${found})
  if(NOT ${found})
    return()
  endif()
endforeach()
if(NOT TARGET gxshape_gxshape_io)
  return()
endif()

add_library(gxshape_neighbours INTERFACE)
target_include_directories(gxshape_neighbours SYSTEM INTERFACE
  "${GXSHAPE_OPENCV}" "${GXSHAPE_EIGEN}" "${GXSHAPE_BOOST}" "${GXSHAPE_CGAL}" "${GXSHAPE_GEOS}" "${GXSHAPE_FMT}")
target_compile_definitions(gxshape_neighbours INTERFACE FMT_HEADER_ONLY)
target_link_libraries(gxshape_neighbours INTERFACE
  ${GXSHAPE_LIBRARY_opencv_imgcodecs} ${GXSHAPE_LIBRARY_opencv_imgproc} ${GXSHAPE_LIBRARY_opencv_core}
  ${GXSHAPE_LIBRARY_geos_c} ${GXSHAPE_LIBRARY_mpfr} ${GXSHAPE_LIBRARY_gmp})

file(GLOB _sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/neighbours/*_test.cpp")
add_executable(gxshape_neighbours_tests EXCLUDE_FROM_ALL ${_sources})
gxshape_test_file_options(gxshape_neighbours_tests)
target_link_libraries(gxshape_neighbours_tests PRIVATE
  gxshape_test_support gxshape::gxshape_io gxshape_neighbours GTest::gtest_main)
# The exact numbers set the rounding direction themselves, which this flag is the promise for.
set_source_files_properties("${PROJECT_SOURCE_DIR}/tests/neighbours/cgal_test.cpp" PROPERTIES COMPILE_OPTIONS
  "$<$<CXX_COMPILER_ID:GNU>:-frounding-math>;$<$<CXX_COMPILER_ID:Clang>:-Wno-unknown-warning-option>")

add_executable(example_coins_from_image EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/examples/coins_from_image.cpp")
target_compile_options(example_coins_from_image PRIVATE ${GXSHAPE_WARNINGS})
target_link_libraries(example_coins_from_image PRIVATE gxshape::gxshape gxshape_neighbours)

add_custom_target(neighbours
  COMMAND gxshape_neighbours_tests --gtest_brief=1
  COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:example_coins_from_image>
          -DEXPECTED=${PROJECT_SOURCE_DIR}/examples/coins_from_image.expected
          -DACTUAL=${PROJECT_BINARY_DIR}/test-results/example_coins_from_image.out
          -P "${PROJECT_SOURCE_DIR}/cmake/RunExample.cmake"
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
  VERBATIM)
