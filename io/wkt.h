/// Shapes as well-known text.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <string>
#include <string_view>

/// Reads one geometry of well-known text into a record; number, place and id stay as they are.
///  - POLYGON and LINEARRING: a region; MULTIPOLYGON: a set; LINESTRING: an open contour;
///    POINT, MULTIPOINT: bare points; GEOMETRYCOLLECTION EMPTY: nothing
///  - a ring that does not repeat its first point is taken as closed
///  - "SRID=4326;" in front is passed over; third and fourth coordinates are dropped, and `hadMore` set
///  - NaN, inf and Infinity are numbers; letters may be large or small
/// Throws: gxReadError with the byte in the text.
/// Cost: O(n).
GXSHAPE_IO_API void gfReadWkt(std::string_view text, gxRecord& record, const gxReadLimits& limits = {});

/// Appends a record as well-known text without a line end, each number with the fewest digits that read
/// back as the same double; rings repeat their first point.  Edge points and the id have no place in it.
GXSHAPE_IO_API void gfAppendWkt(const gxRecord& record, std::string& out);
