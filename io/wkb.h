/// Shapes as well-known binary, also in hexadecimal digits.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <span>
#include <string>
#include <string_view>

/// Reads one geometry of well-known binary, of either byte order, with what GEOS adds (Z, M, a reference
/// system) and what ISO adds (types from 1000 on); kinds as in `gfReadWkt`.  Bytes behind it are refused.
/// Throws: gxReadError with the byte in the text; a count that the bytes cannot hold is "truncated", and
/// nothing is reserved for it.
/// Cost: O(n).
GXSHAPE_IO_API void gfReadWkb(std::span<const unsigned char> bytes, gxRecord& record,
                              const gxReadLimits& limits = {});
/// The same from hexadecimal digits; the byte of an error is that of the digit.
GXSHAPE_IO_API void gfReadWkbHex(std::string_view digits, gxRecord& record,
                                 const gxReadLimits& limits = {});

/// Append a record as little-endian well-known binary, or its digits in upper case.
GXSHAPE_IO_API void gfAppendWkb(const gxRecord& record, std::string& out);
GXSHAPE_IO_API void gfAppendWkbHex(const gxRecord& record, std::string& out);
