# gxshape_library(<name> FOLDERS <dir>... ROOT <dir> [DEPENDS <library>...] [EXTRA_INCLUDES <dir>...])
#
# Makes the library <name>, shared or static as BUILD_SHARED_LIBS says, of every *.cpp in the folders, in
# their internal/ folders and in the folders of those. ROOT is the folder that its headers are included
# from.
#
# The target is gxshape_<name> (gxshape itself keeps its name), so that it cannot meet a target of a
# project around this one; inside and outside it is linked as gxshape::<name>. The file keeps the short
# name: lib<name>.so.

function(gxshape_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "ROOT" "FOLDERS;DEPENDS;EXTRA_INCLUDES")

  set(patterns)
  foreach(folder IN LISTS arg_FOLDERS)
    list(APPEND patterns "${PROJECT_SOURCE_DIR}/${folder}/*.cpp"
                         "${PROJECT_SOURCE_DIR}/${folder}/internal/*.cpp"
                         "${PROJECT_SOURCE_DIR}/${folder}/internal/*/*.cpp")
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})

  set(library ${name})
  if(NOT name STREQUAL "gxshape")
    set(library gxshape_${name})
  endif()
  add_library(${library} ${sources})
  add_library(gxshape::${name} ALIAS ${library})

  set(includes "$<INSTALL_INTERFACE:${GXSHAPE_INSTALL_INCLUDEDIR}>")
  set(roots)
  foreach(dir IN ITEMS ${arg_ROOT} ${arg_EXTRA_INCLUDES})
    cmake_path(ABSOLUTE_PATH dir BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" NORMALIZE)
    list(APPEND roots "${dir}")
  endforeach()
  target_include_directories(${library} PRIVATE ${roots})
  if(PROJECT_IS_TOP_LEVEL)
    list(TRANSFORM roots REPLACE "(.+)" "$<BUILD_INTERFACE:\\1>" OUTPUT_VARIABLE visible)
  else()
    # To a project around this one the folders of headers are visible, and not all that lies beside them.
    gxshape_staged_includes("${arg_FOLDERS}" staged)
    set(visible "$<BUILD_INTERFACE:${staged}>")
  endif()
  target_include_directories(${library} INTERFACE ${includes} ${visible})

  list(TRANSFORM arg_DEPENDS PREPEND "gxshape::" OUTPUT_VARIABLE depends)
  target_link_libraries(${library} PUBLIC ${depends})
  target_compile_features(${library} PUBLIC cxx_std_20)
  if(GXSHAPE_PRECOMPILED)
    target_precompile_headers(${library} PRIVATE ${GXSHAPE_PRECOMPILED})
  endif()
  target_compile_options(${library} PUBLIC ${GXSHAPE_PUBLIC_FLAGS} 
                         PRIVATE ${GXSHAPE_WARNINGS} ${GXSHAPE_LIBRARY_WARNINGS})

  string(TOUPPER ${name} macro)
  target_compile_definitions(${library} PRIVATE ${macro}_BUILDING)

  set_target_properties(${library} PROPERTIES
    OUTPUT_NAME ${name}
    EXPORT_NAME ${name}
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    # Below 1.0 every minor version may break binary compatibility, so it is part of the soname.
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    INSTALL_RPATH "$ORIGIN")
  get_target_property(type ${library} TYPE)
  if(type STREQUAL "SHARED_LIBRARY" AND NOT GXSHAPE_SANITIZE)
    # A symbol that nothing defines is an error of the library, not of whoever links it. (The
    # sanitizers' own symbols are defined by the program.)
    target_link_options(${library} PRIVATE LINKER:--no-undefined)
    if(UNIX AND NOT APPLE)
      # (Sanitizers compare their own symbols across libraries, which this would hide from them.)
      set(exports "${PROJECT_SOURCE_DIR}/cmake/exports.map")
      target_link_options(${library} PRIVATE "LINKER:--version-script=${exports}")
      set_target_properties(${library} PROPERTIES LINK_DEPENDS "${exports}")
    endif()
  endif()
endfunction()

# gxshape_staged_includes(<folders> <variable>)
#
# Makes the folder include/ of the build, with a link to each folder of headers, and names it in the
# variable.

function(gxshape_staged_includes folders variable)
  set(stage "${PROJECT_BINARY_DIR}/include")
  file(MAKE_DIRECTORY "${stage}")
  foreach(folder IN LISTS folders)
    cmake_path(GET folder FILENAME name)
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${folder}" "${stage}/${name}" SYMBOLIC)
  endforeach()
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/include/gxshape" "${stage}/gxshape" SYMBOLIC)
  set(${variable} "${stage}" PARENT_SCOPE)
endfunction()
