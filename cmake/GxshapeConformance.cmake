# Conformance: a program that answers requests, and a judge that compares its answers with the right
# ones. See tests/conformance/README.md.

set(_conformance "${PROJECT_SOURCE_DIR}/tests/conformance")
file(GLOB answer_sources CONFIGURE_DEPENDS "${_conformance}/answer*.cpp")
if(answer_sources)
  find_package(nlohmann_json REQUIRED)
  add_executable(gxshape_answer ${answer_sources})
  target_compile_options(gxshape_answer PRIVATE ${GXSHAPE_WARNINGS})
  target_include_directories(gxshape_answer PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(gxshape_answer PRIVATE gxshape::gxshape nlohmann_json::nlohmann_json)
  add_test(NAME conformance
           COMMAND ${CMAKE_COMMAND} -DPYTHON=${GXSHAPE_PYTHON} -DANSWER=$<TARGET_FILE:gxshape_answer>
                   -DFOLDER=${_conformance} -DRESULTS=${GXSHAPE_TEST_RESULTS}
                   -P ${PROJECT_SOURCE_DIR}/cmake/RunConformance.cmake)
  set_tests_properties(conformance PROPERTIES TIMEOUT 900)
endif()
