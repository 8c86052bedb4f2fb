# Installation: libraries, headers, a CMake package and pkg-config files, in components.
#
#   core     lib/libgxshape.so.0.1, lib/libvelstd.so.0.1, …
#            include/gxshape-0.1/{velstd,velip,veldispc,cntr,gauge,ch_core,overlay,gxshape}/*.h
#            lib/cmake/gxshape/       find_package(gxshape) gives gxshape::gxshape, gxshape::velstd, …
#            lib/pkgconfig/gxshape.pc
#            share/gdb/auto-load/…    printers of gdb, beside the path of the library that they are for
#            share/gxshape/           the same for Visual Studio (natvis)
#            share/doc/gxshape/       the licence, and what it does not cover
#   io       the companion library, its headers, gxshape_io.pc;  find_package(gxshape COMPONENTS io)
#   cairo    likewise
#   tool     bin/gxshape, its man page and completion
#   python   the Python package, where GXSHAPE_PYTHON_MODULE is on
#
# `cmake --install build` installs all of them, `--component core` one.
#
# With GXSHAPE_STATIC_TOO the archives libgxshape.a … are installed beside the shared libraries, made of the same
# object files; gxshape::static stands for those of the core.
#
# Headers are found when the install runs, by cmake/InstallHeaders.cmake, which also says which of
# the internal ones go along.

include(CMakePackageConfigHelpers)

set(_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/gxshape")

# gxshape_install_libraries(<component> <library>...)
function(gxshape_install_libraries component)
  install(TARGETS ${ARGN} EXPORT gxshape-${component}-targets
          LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${component}
          ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${component}
          RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${component})
  install(EXPORT gxshape-${component}-targets NAMESPACE gxshape:: DESTINATION "${_package_dir}"
          COMPONENT ${component})
endfunction()

# gxshape_install_headers(<component> <folder>...): see InstallHeaders.cmake
function(gxshape_install_headers component)
  install(CODE "
    set(GXSHAPE_SOURCE_DIR \"${PROJECT_SOURCE_DIR}\")
    set(GXSHAPE_HEADER_FOLDERS \"${ARGN}\")
    set(GXSHAPE_INSTALL_INCLUDEDIR \"${GXSHAPE_INSTALL_INCLUDEDIR}\")
    include(\"${PROJECT_SOURCE_DIR}/cmake/InstallHeaders.cmake\")" COMPONENT ${component})
endfunction()

# The .pc files find their prefix from their own place, so an installed tree can be moved.
file(RELATIVE_PATH GXSHAPE_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" GXSHAPE_PC_TO_PREFIX "${GXSHAPE_PC_TO_PREFIX}")
string(JOIN " " GXSHAPE_PC_CFLAGS ${GXSHAPE_PUBLIC_FLAGS})
function(gxshape_install_pkg_config component name)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in" "${PROJECT_BINARY_DIR}/${name}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
          COMPONENT ${component})
endfunction()

# ---- Archives beside the shared libraries --------------------------------------------------------------

# gxshape_static_too(<library> <file> <export name> <archive or library it needs>...)
function(gxshape_static_too library file export)
  add_library(${library}_static STATIC "$<TARGET_OBJECTS:${library}>")
  set_target_properties(${library}_static PROPERTIES
    OUTPUT_NAME ${file} EXPORT_NAME ${export} LINKER_LANGUAGE CXX)
  target_include_directories(${library}_static INTERFACE "$<INSTALL_INTERFACE:${GXSHAPE_INSTALL_INCLUDEDIR}>")
  target_compile_features(${library}_static INTERFACE cxx_std_20)
  target_compile_options(${library}_static INTERFACE ${GXSHAPE_PUBLIC_FLAGS})
  target_link_libraries(${library}_static INTERFACE ${ARGN})
endfunction()

set(_core gxshape_velstd gxshape_velip gxshape_veldispc gxshape)
set(_io gxshape_gxshape_io)
set(_cairo gxshape_gxshape_cairo)
if(GXSHAPE_STATIC_TOO AND BUILD_SHARED_LIBS)
  gxshape_static_too(gxshape_velstd velstd velstd_static)
  gxshape_static_too(gxshape_velip velip velip_static gxshape_velstd_static)
  gxshape_static_too(gxshape_veldispc veldispc veldispc_static gxshape_velstd_static)
  gxshape_static_too(gxshape gxshape static gxshape_velip_static gxshape_veldispc_static)
  list(APPEND _core gxshape_velstd_static gxshape_velip_static gxshape_veldispc_static gxshape_static)
  if(TARGET gxshape_gxshape_io)
    gxshape_static_too(gxshape_gxshape_io gxshape_io gxshape_io_static gxshape_static)
    list(APPEND _io gxshape_gxshape_io_static)
  endif()
  if(TARGET gxshape_gxshape_cairo)
    gxshape_static_too(gxshape_gxshape_cairo gxshape_cairo gxshape_cairo_static gxshape_static
                       ${GXSHAPE_CAIRO_LIBRARY_LIBRARIES})
    list(APPEND _cairo gxshape_gxshape_cairo_static)
  endif()
endif()

# ---- Core ----------------------------------------------------------------------------------------------

gxshape_install_libraries(core ${_core})
gxshape_install_headers(core base/velstd base/velip base/veldispc cntr gauge ch_core overlay include/gxshape
                        include/gxshape/interop)
gxshape_install_pkg_config(core gxshape)

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/gxshape-config.cmake.in" "${PROJECT_BINARY_DIR}/gxshape-config.cmake"
  INSTALL_DESTINATION "${_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/gxshape-config-version.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/gxshape-config.cmake"
              "${PROJECT_BINARY_DIR}/gxshape-config-version.cmake"
        DESTINATION "${_package_dir}" COMPONENT core)

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/NOTICE"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/gxshape" COMPONENT core)
install(FILES "${PROJECT_SOURCE_DIR}/tools/debugger/gxshape.natvis"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/gxshape" COMPONENT core)
# gdb looks below share/gdb/auto-load for the path of the library, followed by -gdb.py. All printers go with
# libvelstd, which every program that has any of our classes loads; a static program reads the file by hand.
if(UNIX AND NOT APPLE)
  install(FILES "${PROJECT_SOURCE_DIR}/tools/debugger/gxshape_gdb.py"
          DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/gxshape" COMPONENT core)
  install(CODE "
    get_filename_component(_prefix \"\${CMAKE_INSTALL_PREFIX}\" ABSOLUTE)
    set(_place \"${CMAKE_INSTALL_DATAROOTDIR}/gdb/auto-load\${_prefix}/${CMAKE_INSTALL_LIBDIR}\")
    string(REPLACE \"//\" \"/\" _place \"\${CMAKE_INSTALL_PREFIX}/\${_place}\")
    file(INSTALL DESTINATION \"\${_place}\" TYPE FILE FILES \"${PROJECT_SOURCE_DIR}/tools/debugger/gxshape_gdb.py\"
         RENAME \"libvelstd.so.${PROJECT_VERSION}-gdb.py\")" COMPONENT core)
endif()

# ---- Companions ----------------------------------------------------------------------------------------

if(TARGET gxshape_gxshape_io)
  gxshape_install_libraries(io ${_io})
  gxshape_install_headers(io io)
  gxshape_install_pkg_config(io gxshape_io)
endif()
if(TARGET gxshape_gxshape_cairo)
  gxshape_install_libraries(cairo ${_cairo})
  gxshape_install_headers(cairo cairo)
  gxshape_install_pkg_config(cairo gxshape_cairo)
endif()
