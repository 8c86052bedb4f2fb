# Installation: libraries, headers, a CMake package and a pkg-config file.
#
#   lib/libgxshape.so.0.1, lib/libvelstd.so.0.1, ...
#   include/gxshape-0.1/{velstd,velip,veldispc,cntr,gauge,ch_core,overlay,gxshape}/*.h
#   lib/cmake/gxshape/            find_package(gxshape) gives gxshape::gxshape, gxshape::velstd, ...
#   lib/pkgconfig/gxshape.pc
#   share/doc/gxshape/            the licence, and what it does not cover
#
# Headers are found when the install runs, by cmake/InstallHeaders.cmake, which also says which of
# the internal ones go along.

include(CMakePackageConfigHelpers)

set(_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/gxshape")
set(_libraries gxshape_velstd gxshape_velip gxshape_veldispc gxshape)
if(GXSHAPE_IO)
  list(APPEND _libraries gxshape_gxshape_io)
endif()
if(TARGET gxshape_gxshape_cairo)
  list(APPEND _libraries gxshape_gxshape_cairo)
  set(_with_cairo ON)
endif()
install(TARGETS ${_libraries} EXPORT gxshape-targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(EXPORT gxshape-targets NAMESPACE gxshape:: DESTINATION "${_package_dir}")

install(CODE "
  set(GXSHAPE_SOURCE_DIR \"${PROJECT_SOURCE_DIR}\")
  set(GXSHAPE_IO ${GXSHAPE_IO})
  set(GXSHAPE_CAIRO ${_with_cairo})
  set(GXSHAPE_INSTALL_INCLUDEDIR \"${GXSHAPE_INSTALL_INCLUDEDIR}\")
  include(\"${PROJECT_SOURCE_DIR}/cmake/InstallHeaders.cmake\")")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/gxshape-config.cmake.in" "${PROJECT_BINARY_DIR}/gxshape-config.cmake"
  INSTALL_DESTINATION "${_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/gxshape-config-version.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/gxshape-config.cmake"
              "${PROJECT_BINARY_DIR}/gxshape-config-version.cmake"
        DESTINATION "${_package_dir}")

# The .pc file finds its prefix from its own place, so an installed tree can be moved.
file(RELATIVE_PATH GXSHAPE_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" GXSHAPE_PC_TO_PREFIX "${GXSHAPE_PC_TO_PREFIX}")
string(JOIN " " GXSHAPE_PC_CFLAGS ${GXSHAPE_PUBLIC_FLAGS})
configure_file("${PROJECT_SOURCE_DIR}/cmake/gxshape.pc.in" "${PROJECT_BINARY_DIR}/gxshape.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/gxshape.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/NOTICE"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/gxshape")
