/// The language that the headers are written in, checked before the compiler stumbles over it.
#pragma once

#if defined(_MSVC_LANG)
#  if _MSVC_LANG < 202002L
#    error "gxshape needs C++20: compile with /std:c++20 or later"
#  endif
#elif __cplusplus < 202002L
#  error "gxshape needs C++20: compile with -std=c++20 or later"
#endif
