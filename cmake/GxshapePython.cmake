# The Python package gxshape: the extension module _gxshape and, beside it in build/<preset>/python/gxshape,
# links to the package's files, so that PYTHONPATH=build/<preset>/python has the whole.
#
# The module is linked of the very object files that the libraries are made of: nothing is compiled twice,
# and it needs none of the shared libraries, so the same file goes into a wheel. It exports its entry
# point alone: another gxshape in the process shares nothing with it.

find_program(GXSHAPE_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(GXSHAPE_PYTHON3 NAMES python3 REQUIRED)
set(Python_EXECUTABLE "${GXSHAPE_PYTHON3}")
find_package(Python 3.9 REQUIRED COMPONENTS Interpreter Development.Module)
find_path(GXSHAPE_PYBIND11 pybind11/pybind11.h REQUIRED)
find_package(Threads REQUIRED)

file(GLOB _binding_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/python/binding/*.cpp")
set(_cores gxshape_velstd gxshape_velip gxshape_veldispc gxshape gxshape_gxshape_io)
set(_objects)
foreach(core IN LISTS _cores)
  list(APPEND _objects $<TARGET_OBJECTS:${core}>)
endforeach()
Python_add_library(gxshape_python MODULE ${_binding_sources} ${_objects})

set(GXSHAPE_PYTHON_PACKAGE "${PROJECT_BINARY_DIR}/python/gxshape")
set_target_properties(gxshape_python PROPERTIES
  OUTPUT_NAME _gxshape
  SUFFIX ".${Python_SOABI}.so"
  PREFIX ""
  LIBRARY_OUTPUT_DIRECTORY "${GXSHAPE_PYTHON_PACKAGE}")
target_include_directories(gxshape_python PRIVATE
  "${PROJECT_SOURCE_DIR}/base" "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")
target_include_directories(gxshape_python SYSTEM PRIVATE "${GXSHAPE_PYBIND11}")
# The headers have to be read as the object files were compiled.
target_compile_definitions(gxshape_python PRIVATE
  "$<TARGET_PROPERTY:gxshape,INTERFACE_COMPILE_DEFINITIONS>")
target_compile_options(gxshape_python PRIVATE ${GXSHAPE_PUBLIC_FLAGS} ${GXSHAPE_WARNINGS})
# Most of the time goes into the headers, and little code here is hot: the work is done by the libraries.
target_precompile_headers(gxshape_python PRIVATE "${PROJECT_SOURCE_DIR}/python/binding/binding.h")
target_link_libraries(gxshape_python PRIVATE Threads::Threads)
if(NOT GXSHAPE_SANITIZE)
  set(_exports "${PROJECT_SOURCE_DIR}/python/binding/exports.map")
  target_link_options(gxshape_python PRIVATE "LINKER:--version-script=${_exports}")
  set_target_properties(gxshape_python PROPERTIES LINK_DEPENDS "${_exports}")
endif()

file(MAKE_DIRECTORY "${GXSHAPE_PYTHON_PACKAGE}")
file(GLOB _package_files CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/python/gxshape"
     "${PROJECT_SOURCE_DIR}/python/gxshape/*.py" "${PROJECT_SOURCE_DIR}/python/gxshape/*.pyi"
     "${PROJECT_SOURCE_DIR}/python/gxshape/py.typed")
foreach(file IN LISTS _package_files)
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/python/gxshape/${file}" "${GXSHAPE_PYTHON_PACKAGE}/${file}" SYMBOLIC)
endforeach()
# docs/names.csv is the one list of measures; the package reads its copy.
file(CREATE_LINK "${PROJECT_SOURCE_DIR}/docs/names.csv" "${GXSHAPE_PYTHON_PACKAGE}/names.csv" SYMBOLIC)

# ---- Installation ----------------------------------------------------------------------------------

# Where the interpreter looks below the prefix; a package builder gives its own place.
set(GXSHAPE_PYTHON_DIR "lib/python${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}/site-packages" CACHE STRING
    "Where the Python package is installed, below the prefix")
if(GXSHAPE_INSTALL)
  install(TARGETS gxshape_python LIBRARY DESTINATION "${GXSHAPE_PYTHON_DIR}/gxshape" COMPONENT python)
  list(TRANSFORM _package_files PREPEND "${PROJECT_SOURCE_DIR}/python/gxshape/" OUTPUT_VARIABLE _installed_files)
  install(FILES ${_installed_files} "${PROJECT_SOURCE_DIR}/docs/names.csv"
          DESTINATION "${GXSHAPE_PYTHON_DIR}/gxshape" COMPONENT python)
endif()

# ---- Tests -----------------------------------------------------------------------------------------

if(GXSHAPE_TESTS AND NOT GXSHAPE_SANITIZE AND NOT GXSHAPE_COVERAGE)
  add_test(NAME python
           COMMAND ${GXSHAPE_PYTHON3} -m pytest -q -p no:cacheprovider "${PROJECT_SOURCE_DIR}/python/tests")
  set(_environment "PYTHONPATH=${PROJECT_BINARY_DIR}/python" "PYTHONDONTWRITEBYTECODE=1"
      "GXSHAPE_BUILD=${PROJECT_BINARY_DIR}"
      "GXSHAPE_TEST_RESULTS=${PROJECT_BINARY_DIR}/test-results/python.json")
  if(TARGET gxshape_tool)
    list(APPEND _environment "GXSHAPE_TOOL=$<TARGET_FILE:gxshape_tool>")
  endif()
  set_tests_properties(python PROPERTIES COST 100 ENVIRONMENT "${_environment}")
endif()
