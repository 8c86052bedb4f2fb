#pragma once

#include <velstd/language.h>

/// Marks a class or function of the library gxshape_cairo as part of its binary interface. Everything else
/// is hidden. The build defines GXSHAPE_CAIRO_BUILDING while it compiles the library itself.

#if defined(_WIN32)
#  if defined(GXSHAPE_CAIRO_BUILDING)
#    define GXSHAPE_CAIRO_API __declspec(dllexport)
#  else
#    define GXSHAPE_CAIRO_API __declspec(dllimport)
#  endif
#else
#  define GXSHAPE_CAIRO_API __attribute__((visibility("default")))
#endif
