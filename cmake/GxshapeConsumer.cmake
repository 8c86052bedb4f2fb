# The installed library, used from outside: installs to a folder of the build, then builds and runs
# examples/consumer against it, once with find_package and once with pkg-config.

set(_flags)
if(GXSHAPE_SANITIZE)
  string(APPEND _flags " -fsanitize=${GXSHAPE_SANITIZE}")
endif()
if(GXSHAPE_COVERAGE)
  string(APPEND _flags " --coverage")
endif()

add_test(NAME consumer
         COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
                 -DLIBDIR=${CMAKE_INSTALL_LIBDIR} -DCOMPILER=${CMAKE_CXX_COMPILER}
                 "-DFLAGS=${_flags}"
                 -P ${PROJECT_SOURCE_DIR}/cmake/RunConsumer.cmake)
set_tests_properties(consumer PROPERTIES TIMEOUT 600)

# The library as a part of another project, which keeps its own flags, build type and target names.
add_test(NAME subproject
         COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
                 -DCOMPILER=${CMAKE_CXX_COMPILER}
                 -P ${PROJECT_SOURCE_DIR}/cmake/RunSubproject.cmake)
set_tests_properties(subproject PROPERTIES TIMEOUT 300)
