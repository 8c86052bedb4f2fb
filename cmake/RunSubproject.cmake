# Configures a project that takes this one in with add_subdirectory, and looks at what it is then given:
# cmake -DBUILD= -DSOURCE= -DCOMPILER= -P RunSubproject.cmake
#
# Nothing but its own source is compiled, and that only to see whether it would be, so this takes
# seconds.

cmake_minimum_required(VERSION 3.22)

set(_stage "${BUILD}/subproject")
file(REMOVE_RECURSE "${_stage}")
file(MAKE_DIRECTORY "${_stage}/source")
file(WRITE "${_stage}/source/CMakeLists.txt" "
cmake_minimum_required(VERSION 3.22)
project(around LANGUAGES CXX)
add_library(velstd INTERFACE)    # a name of its own, which must stay free
add_subdirectory(\"${SOURCE}\" gxshape)
add_library(mine mine.cpp)
target_link_libraries(mine PRIVATE gxshape::gxshape)
get_target_property(type gxshape TYPE)
file(WRITE \"\${CMAKE_BINARY_DIR}/found.txt\" \"\${type};\${CMAKE_BUILD_TYPE};\${BUILD_SHARED_LIBS}\")
")
file(WRITE "${_stage}/source/mine.cpp" "#include <gxshape/gxshape.h>
#if __has_include(<tests/support/random_shapes.h>) || __has_include(<docs/tour.md>) || __has_include(<README.md>)
#error the whole repository is on the include path
#endif
")

function(run)
  execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    list(JOIN ARGV " " command)
    message(FATAL_ERROR "${out}${err}\n${command} ended with ${result}")
  endif()
endfunction()

function(configured_as shared expected_type)
  set(folder "${_stage}/build_${shared}")
  run("${CMAKE_COMMAND}" -S "${_stage}/source" -B "${folder}" -G "Unix Makefiles"
      "-DCMAKE_CXX_COMPILER=${COMPILER}" -DBUILD_SHARED_LIBS=${shared}
      "-DCMAKE_CXX_FLAGS_RELEASE=-O3 -DMINE" -DCMAKE_BUILD_TYPE=Release -DCMAKE_EXPORT_COMPILE_COMMANDS=ON)
  file(READ "${folder}/found.txt" found)
  if(NOT found STREQUAL "${expected_type};Release;${shared}")
    message(FATAL_ERROR "with BUILD_SHARED_LIBS=${shared}: ${found}")
  endif()
  file(READ "${folder}/compile_commands.json" commands)
  if(NOT commands MATCHES "-O3 -DMINE" OR commands MATCHES "-O2|-Werror")
    message(FATAL_ERROR "the flags of the project around are not the ones in use")
  endif()
  # The project's own source, as it would be compiled.
  string(REGEX MATCH "\"command\": \"([^\"]*mine.cpp)\"" line "${commands}")
  set(line "${CMAKE_MATCH_1}")
  if(NOT line MATCHES "-ffp-contract=off")
    message(FATAL_ERROR "the flags that the headers need are not handed on: ${line}")
  endif()
  separate_arguments(line UNIX_COMMAND "${line}")
  run(${line} -fsyntax-only)
  # Nothing is installed unless asked for.
  run("${CMAKE_COMMAND}" --install "${folder}" --prefix "${folder}/installed")
  file(GLOB_RECURSE installed "${folder}/installed/*")
  if(installed)
    message(FATAL_ERROR "a project around this one would install ${installed}")
  endif()
endfunction()

configured_as(ON SHARED_LIBRARY)
configured_as(OFF STATIC_LIBRARY)

# Without a build type the project around stays without one.
run("${CMAKE_COMMAND}" -S "${_stage}/source" -B "${_stage}/build_plain" -G "Unix Makefiles"
    "-DCMAKE_CXX_COMPILER=${COMPILER}")
file(READ "${_stage}/build_plain/found.txt" found)
if(NOT found STREQUAL "STATIC_LIBRARY;;")
  message(FATAL_ERROR "where nothing is said: ${found}")
endif()
