/// Shapes as JSON: our own lines, and GeoJSON.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <string>
#include <string_view>

/// Reads one record of JSON lines:
///
///     {"id":1,"type":"region","rings":[[[x,y],...],...]}       the first ring is the outline
///     {"id":2,"type":"set","parts":[[ring,...],...]}
///     {"id":3,"type":"open","points":[[x,y],...]}              or "type":"points"
///     {"id":4,"type":"empty"}
///
/// Edge points add "magnitudes":[...] and "angles":[...], one a point over all rings, 256 angles to the
/// turn.  Names may come in any order; without "type", "rings" makes a region, "parts" a set and "points"
/// a closed outline; "outer" and then "holes" are read as well.  `idField` names the member that holds the id,
/// "id" where it is empty.  Other names are passed over.  NaN and infinities are the strings "NaN", "Infinity"
/// and "-Infinity".
/// Throws: gxReadError with the byte in the text.
/// Cost: O(n).
GXSHAPE_IO_API void gfReadJson(std::string_view text, gxRecord& record, const gxReadLimits& limits = {},
                               std::string_view idField = {});

/// Appends a record as one line of JSON, without a line end.
GXSHAPE_IO_API void gfAppendJson(const gxRecord& record, std::string& out);

/// Appends text as a JSON string, quotes included.
GXSHAPE_IO_API void gfAppendJsonString(std::string_view text, std::string& out);

/// Reads a GeoJSON feature or bare geometry (RFC 7946); `idField` names a property that holds the id where
/// the feature has none.  Kinds as in `gfReadWkt`; a geometry of null is an empty record.
/// Throws: gxReadError with the byte in the text.
/// Cost: O(n).
GXSHAPE_IO_API void gfReadGeoJson(std::string_view text, gxRecord& record,
                                  const gxReadLimits& limits = {}, std::string_view idField = {});

/// Appends a record as a GeoJSON feature without a line end.  Edge points have no place in it.
GXSHAPE_IO_API void gfAppendGeoJson(const gxRecord& record, std::string& out);
