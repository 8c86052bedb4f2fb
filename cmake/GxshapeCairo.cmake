# The companion library gxshape_cairo: a drawing surface that makes PNG, SVG and PDF.  It stands beside the
# core like gxshape_io, and is left out, with a word, where Cairo is not installed.

find_package(PkgConfig)
if(PkgConfig_FOUND)
  pkg_check_modules(GXSHAPE_CAIRO_LIBRARY cairo>=1.16 cairo-png cairo-svg cairo-pdf)
endif()
if(NOT GXSHAPE_CAIRO_LIBRARY_FOUND)
  message(STATUS "no Cairo (Debian: libcairo2-dev): gxshape_cairo and the tool's pictures are left out")
  return()
endif()

gxshape_library(gxshape_cairo FOLDERS cairo ROOT . DEPENDS gxshape)
set_target_properties(gxshape_gxshape_cairo PROPERTIES EXPORT_NAME gxshape_cairo)
target_include_directories(gxshape_gxshape_cairo SYSTEM PRIVATE ${GXSHAPE_CAIRO_LIBRARY_INCLUDE_DIRS})
target_link_libraries(gxshape_gxshape_cairo PRIVATE ${GXSHAPE_CAIRO_LIBRARY_LINK_LIBRARIES})
