# The examples: every examples/*.cpp is a program of its own, and every examples/demo/*.cpp is part
# of gxshape_demo. Each example runs as a test; where examples/<name>.expected exists, its printed
# output must be that, character by character.

file(GLOB example_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/examples/*.cpp")
# This one needs OpenCV: GxshapeNeighbours.
list(FILTER example_sources EXCLUDE REGEX "/coins_from_image\\.cpp$")
file(GLOB expected_outputs CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/examples/*.expected")
foreach(source IN LISTS example_sources)
  cmake_path(GET source STEM name)
  add_executable(example_${name} "${source}")
  target_compile_options(example_${name} PRIVATE ${GXSHAPE_WARNINGS})
  target_link_libraries(example_${name} PRIVATE gxshape::gxshape)
  if(GXSHAPE_TESTS)
    add_test(NAME example_${name}
             COMMAND ${CMAKE_COMMAND}
                     -DPROGRAM=$<TARGET_FILE:example_${name}>
                     -DEXPECTED=${PROJECT_SOURCE_DIR}/examples/${name}.expected
                     -DACTUAL=${PROJECT_BINARY_DIR}/test-results/example_${name}.out
                     -P ${PROJECT_SOURCE_DIR}/cmake/RunExample.cmake
             WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
    set_tests_properties(example_${name} PROPERTIES TIMEOUT 120)
  endif()
endforeach()

file(GLOB demo_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/examples/demo/*.cpp")
if(demo_sources)
  add_executable(gxshape_demo ${demo_sources})
  target_compile_options(gxshape_demo PRIVATE ${GXSHAPE_WARNINGS})
  target_include_directories(gxshape_demo PRIVATE "${PROJECT_SOURCE_DIR}/examples/demo")
  target_link_libraries(gxshape_demo PRIVATE gxshape::gxshape)
  if(GXSHAPE_TESTS)
    add_test(NAME demo COMMAND gxshape_demo "${PROJECT_SOURCE_DIR}/examples/data"
                                            "${PROJECT_BINARY_DIR}/test-results/demo")
    set_tests_properties(demo PROPERTIES TIMEOUT 300)
  endif()
endif()
