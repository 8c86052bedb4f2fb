#pragma once

#include <velstd/language.h>

/// Marks a class or function of the library gxshape_io as part of its binary interface. Everything else
/// is hidden. The build defines GXSHAPE_IO_BUILDING while it compiles the library itself. On a class
/// the mark covers its members, its virtual table and its type information, so that exceptions and
/// dynamic casts work across libraries; inline members are emitted hidden wherever they are used.

#if defined(_WIN32)
#  if defined(GXSHAPE_IO_BUILDING)
#    define GXSHAPE_IO_API __declspec(dllexport)
#  else
#    define GXSHAPE_IO_API __declspec(dllimport)
#  endif
#else
#  define GXSHAPE_IO_API __attribute__((visibility("default")))
#endif
