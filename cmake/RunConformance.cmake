# Answers every request and has the answers judged:
# cmake -DPYTHON= -DANSWER= -DFOLDER= -DRESULTS= -P RunConformance.cmake
#
# A judge that knows which requests are ours to answer is tests/conformance/judge.py; where there is
# none, the plain comparison judges all of them.

cmake_minimum_required(VERSION 3.22)

set(_requests "${RESULTS}/requests.jsonl")
set(_answers "${RESULTS}/answers.jsonl")

execute_process(COMMAND ${PYTHON} -c
  "import gzip, shutil, sys; shutil.copyfileobj(gzip.open(sys.argv[1]), open(sys.argv[2], 'wb'))"
  "${FOLDER}/requests.jsonl.gz" "${_requests}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${ANSWER}" INPUT_FILE "${_requests}" OUTPUT_FILE "${_answers}"
                RESULT_VARIABLE _result)
if(NOT _result EQUAL 0)
  message(FATAL_ERROR "gxshape_answer ended with ${_result}")
endif()

set(_judge "${FOLDER}/judge.py")
if(NOT EXISTS "${_judge}")
  set(_judge "${FOLDER}/compare.py")
endif()
execute_process(COMMAND ${PYTHON} "${_judge}" "${FOLDER}/requests.jsonl.gz"
                        "${FOLDER}/answers.jsonl.gz" "${_answers}"
                OUTPUT_VARIABLE _said ERROR_VARIABLE _said RESULT_VARIABLE _result)
file(WRITE "${RESULTS}/conformance.txt" "${_said}")
message("${_said}")
if(NOT _result EQUAL 0)
  message(FATAL_ERROR "some answers differ")
endif()
