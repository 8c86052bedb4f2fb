# Runs one example and compares what it prints: cmake -DPROGRAM= -DEXPECTED= -DACTUAL= -P RunExample.cmake

cmake_minimum_required(VERSION 3.22)

execute_process(COMMAND "${PROGRAM}" OUTPUT_FILE "${ACTUAL}" RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}")
endif()
if(EXISTS "${EXPECTED}")
  execute_process(COMMAND diff -u "${EXPECTED}" "${ACTUAL}" RESULT_VARIABLE differs)
  if(NOT differs EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} does not print ${EXPECTED}")
  endif()
endif()
