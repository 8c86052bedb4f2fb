# Builds and runs examples/consumer against a fresh install, twice:
# cmake -DBUILD= -DSOURCE= -DLIBDIR= -DCOMPILER= -DFLAGS= -P RunConsumer.cmake

cmake_minimum_required(VERSION 3.22)

set(_stage "${BUILD}/consumer")
set(_prefix "${_stage}/installed")
set(_expected "${SOURCE}/examples/consumer/expected.txt")
file(REMOVE_RECURSE "${_stage}")
file(MAKE_DIRECTORY "${_stage}/pkg-config")

function(run)
  execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    list(JOIN ARGV " " command)
    message("${out}${err}")
    message(FATAL_ERROR "${command} ended with ${result}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

function(expect_output how)
  file(READ "${_expected}" expected)
  if(NOT output STREQUAL expected)
    message(FATAL_ERROR "the consumer built with ${how} printed\n${output}instead of\n${expected}")
  endif()
  message("built with ${how}:\n${output}")
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${_prefix}")

# ---- find_package -------------------------------------------------------------------------------

run("${CMAKE_COMMAND}" -S "${SOURCE}/examples/consumer" -B "${_stage}/find_package"
    "-DCMAKE_PREFIX_PATH=${_prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}"
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_EXPORT_COMPILE_COMMANDS=ON)
run("${CMAKE_COMMAND}" --build "${_stage}/find_package")
file(READ "${_stage}/find_package/compile_commands.json" commands)
if(NOT commands MATCHES "-ffp-contract=off" OR NOT commands MATCHES "${_prefix}/include")
  message(FATAL_ERROR "the package does not hand on its flags: ${commands}")
endif()
run("${_stage}/find_package/consumer")
expect_output("find_package")

# ---- pkg-config ---------------------------------------------------------------------------------

# The installed tree is moved first: nothing in it may know where it was installed.
file(RENAME "${_prefix}" "${_stage}/moved")
set(ENV{PKG_CONFIG_PATH} "${_stage}/moved/${LIBDIR}/pkgconfig")
find_program(PKG_CONFIG pkg-config REQUIRED)
run("${PKG_CONFIG}" --cflags --libs gxshape)
separate_arguments(flags UNIX_COMMAND "${output}")
if(NOT "-ffp-contract=off" IN_LIST flags)
  message(FATAL_ERROR "pkg-config does not hand on the flags: ${flags}")
endif()
separate_arguments(build_flags UNIX_COMMAND "${FLAGS}")
run("${COMPILER}" -std=c++20 ${build_flags} "${SOURCE}/examples/consumer/main.cpp"
    -o "${_stage}/pkg-config/consumer" ${flags} "-Wl,-rpath,${_stage}/moved/${LIBDIR}")
run("${_stage}/pkg-config/consumer")
expect_output("pkg-config")
