# gxshape_library(<name> FOLDERS <dir>... ROOT <dir> [DEPENDS <library>...] [EXTRA_INCLUDES <dir>...])
#
# Makes the shared library <name>, alias gxshape::<name>, of every *.cpp in the folders, in their
# internal/ folders and in the folders of those. ROOT is the folder that its headers are included from.

function(gxshape_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "ROOT" "FOLDERS;DEPENDS;EXTRA_INCLUDES")

  set(patterns)
  foreach(folder IN LISTS arg_FOLDERS)
    list(APPEND patterns "${PROJECT_SOURCE_DIR}/${folder}/*.cpp"
                         "${PROJECT_SOURCE_DIR}/${folder}/internal/*.cpp"
                         "${PROJECT_SOURCE_DIR}/${folder}/internal/*/*.cpp")
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  if(NOT sources)
    message(WARNING "${name}: no sources yet")
    file(WRITE "${PROJECT_BINARY_DIR}/empty_${name}.cpp" "")
    set(sources "${PROJECT_BINARY_DIR}/empty_${name}.cpp")
  endif()

  add_library(${name} SHARED ${sources})
  add_library(gxshape::${name} ALIAS ${name})

  set(includes "$<INSTALL_INTERFACE:${GXSHAPE_INSTALL_INCLUDEDIR}>")
  foreach(dir IN ITEMS ${arg_ROOT} ${arg_EXTRA_INCLUDES})
    cmake_path(ABSOLUTE_PATH dir BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" NORMALIZE)
    list(APPEND includes "$<BUILD_INTERFACE:${dir}>")
  endforeach()
  target_include_directories(${name} PUBLIC ${includes})

  target_link_libraries(${name} PUBLIC ${arg_DEPENDS})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_compile_options(${name} PUBLIC ${GXSHAPE_PUBLIC_FLAGS} 
                         PRIVATE ${GXSHAPE_WARNINGS} ${GXSHAPE_LIBRARY_WARNINGS})

  string(TOUPPER ${name} macro)
  target_compile_definitions(${name} PRIVATE ${macro}_BUILDING)

  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION}
    # Below 1.0 every minor version may break binary compatibility, so it is part of the soname.
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    INSTALL_RPATH "$ORIGIN")
  if(NOT GXSHAPE_SANITIZE)
    # A symbol that nothing defines is an error of the library, not of whoever links it. (The
    # sanitizers' own symbols are defined by the program.)
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
endfunction()
