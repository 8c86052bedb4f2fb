# Looks at the symbols of the libraries and of single files:
# cmake -DNM= -DCOMPILER= -DSOURCE= -DRESULTS= -DLIBRARIES=a,b,c -P CheckExports.cmake
#
#   1. A library exports its own names and what C++ makes for its own classes, and nothing else.
#   2. It exports as much as its users need: the consumer test links against it.
#   3. Without tests, the counters of computations are not there.
#   4. A compiler that is told an older language than C++20 says so.

cmake_minimum_required(VERSION 3.22)

set(_ours "(gx|gf|gn)[A-Za-z0-9_]")
set(_made_for "(vtable for|VTT for|construction vtable for|typeinfo for|typeinfo name for|virtual thunk to|non-virtual thunk to|covariant return thunk to|guard variable for)")

string(REPLACE "," ";" LIBRARIES "${LIBRARIES}")
foreach(library IN LISTS LIBRARIES)
  execute_process(COMMAND "${NM}" -DC --defined-only "${library}" OUTPUT_VARIABLE symbols
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" "," symbols "${symbols}")
  string(REPLACE "[" "(" symbols "${symbols}")
  string(REPLACE "]" ")" symbols "${symbols}")
  string(REPLACE "\n" ";" symbols "${symbols}")
  list(LENGTH symbols count)
  set(own 0)
  foreach(symbol IN LISTS symbols)
    string(REGEX REPLACE "^[0-9a-f]* +[A-Za-z] " "" name "${symbol}")
    if(name MATCHES "^(${_made_for} )?${_ours}")
      math(EXPR own "${own} + 1")
    elseif(name MATCHES "^std::optional<gx[A-Za-z_]*> gx_")
      # A function template of ours: its readable name begins with its result.
      math(EXPR own "${own} + 1")
    elseif(NOT name STREQUAL "" AND NOT name MATCHES "^operator(\\|\\||<<|[*+-])\\(.*gx")
      message(SEND_ERROR "${library} exports ${name}")
    endif()
  endforeach()
  if(own LESS 10)
    message(SEND_ERROR "${library}: only ${own} of ${count} symbols are seen to be its own")
  endif()
endforeach()

# ---- Counters --------------------------------------------------------------------------------------

foreach(how IN ITEMS "" "-DGXSHAPE_COUNTS_COMPUTATIONS")
  set(object "${RESULTS}/probe${how}.o")
  execute_process(COMMAND "${COMPILER}" -std=c++20 ${how} "-I${SOURCE}" "-I${SOURCE}/base" -c
                          "${SOURCE}/cntr/internal/memory/computation_count.cpp" -o "${object}"
                  COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${NM}" -C --defined-only "${object}" OUTPUT_VARIABLE symbols
                  COMMAND_ERROR_IS_FATAL ANY)
  if(how STREQUAL "" AND symbols MATCHES "omputation|counts")
    message(SEND_ERROR "without tests there are still counters: ${symbols}")
  elseif(NOT how STREQUAL "" AND NOT symbols MATCHES "gx_countComputation")
    message(SEND_ERROR "with tests there are no counters: ${symbols}")
  endif()
endforeach()

# ---- The language ------------------------------------------------------------------------------------

foreach(header IN ITEMS velstd/vector.h velip/edgelet.h veldispc/tablet.h cntr/contour.h gxshape/gxshape.h)
  file(WRITE "${RESULTS}/older.cpp" "#include <${header}>\n")
  execute_process(COMMAND "${COMPILER}" -std=c++17 -fsyntax-only "-I${SOURCE}" "-I${SOURCE}/base"
                          "-I${SOURCE}/include" "${RESULTS}/older.cpp"
                  RESULT_VARIABLE result ERROR_VARIABLE said OUTPUT_QUIET)
  string(REGEX MATCH "error:[^\n]*" first "${said}")
  if(result EQUAL 0 OR NOT first MATCHES "gxshape needs C\\+\\+20")
    message(SEND_ERROR "${header} compiled as C++17 does not say what is wrong first: ${first}")
  endif()
endforeach()
