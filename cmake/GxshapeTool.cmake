# The tool gxshape, its man page and its completion.  The page and the completion are printed by the tool
# itself, from the table that its help comes from.

find_path(GXSHAPE_CLI11 CLI/CLI.hpp)
if(NOT GXSHAPE_CLI11)
  message(FATAL_ERROR "the tool needs CLI11 (Debian: libcli11-dev); -DGXSHAPE_TOOL=OFF builds without it")
endif()
find_package(Threads REQUIRED)

set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/names.csv")
file(READ "${PROJECT_SOURCE_DIR}/docs/names.csv" GXSHAPE_NAMES)
configure_file("${PROJECT_SOURCE_DIR}/cmake/names.cpp.in" "${PROJECT_BINARY_DIR}/names.cpp" @ONLY)

file(GLOB _tool_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/gxshape/*.cpp")
if(NOT TARGET gxshape_gxshape_cairo)
  list(FILTER _tool_sources EXCLUDE REGEX "/sketch(_layers)?\\.cpp$")
endif()
add_executable(gxshape_tool ${_tool_sources} "${PROJECT_BINARY_DIR}/names.cpp")
set_target_properties(gxshape_tool PROPERTIES OUTPUT_NAME gxshape INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
target_compile_options(gxshape_tool PRIVATE ${GXSHAPE_WARNINGS})
target_include_directories(gxshape_tool PRIVATE "${PROJECT_SOURCE_DIR}/tools/gxshape")
target_include_directories(gxshape_tool SYSTEM PRIVATE "${GXSHAPE_CLI11}")
target_link_libraries(gxshape_tool PRIVATE gxshape::gxshape_io Threads::Threads)
if(TARGET gxshape_gxshape_cairo)
  target_link_libraries(gxshape_tool PRIVATE gxshape::gxshape_cairo)
  target_compile_definitions(gxshape_tool PRIVATE GXSHAPE_HAS_CAIRO)
endif()
set_source_files_properties("${PROJECT_SOURCE_DIR}/tools/gxshape/main.cpp" PROPERTIES
                            COMPILE_DEFINITIONS GXSHAPE_VERSION="${PROJECT_VERSION}")

add_custom_command(TARGET gxshape_tool POST_BUILD
  COMMAND gxshape_tool --man > "${PROJECT_BINARY_DIR}/gxshape.1"
  COMMAND gxshape_tool --completion > "${PROJECT_BINARY_DIR}/gxshape.bash"
  VERBATIM)

if(GXSHAPE_INSTALL)
  install(TARGETS gxshape_tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
  install(FILES "${PROJECT_BINARY_DIR}/gxshape.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tool)
  install(FILES "${PROJECT_BINARY_DIR}/gxshape.bash" DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions"
          RENAME gxshape COMPONENT tool)
endif()
