#pragma once

#include <velstd/language.h>

/// Marks a class or function of the library veldispc as part of its binary interface. Everything else
/// is hidden. The build defines VELDISPC_BUILDING while it compiles the library itself. On a class
/// the mark covers its members, its virtual table and its type information, so that exceptions and
/// dynamic casts work across libraries; inline members are emitted hidden wherever they are used.

#if defined(_WIN32)
#  if defined(VELDISPC_BUILDING)
#    define VELDISPC_API __declspec(dllexport)
#  else
#    define VELDISPC_API __declspec(dllimport)
#  endif
#else
#  define VELDISPC_API __attribute__((visibility("default")))
#endif
