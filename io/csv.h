/// Points as comma-separated values.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <string>
#include <string_view>

/// Which column holds what; −1 where none does.  Without a head the columns are x and y.
struct gxCsvColumns {
  int x = 0, y = 1;
  int id = -1, type = -1, part = -1, ring = -1;
  int magnitude = -1, angle = -1;  ///< of edge points; angles in 256ths of a turn from x towards y
};

/// Reads the line with the names, in any order and mixed with others ("outline" counts as "id"); quotes are taken off.
/// Throws: gxReadError "bad_syntax" where x or y is missing or a name stands twice.
GXSHAPE_IO_API gxCsvColumns gfReadCsvHead(std::string_view line);
/// Tells whether a line is one of names: its first field is no number.
GXSHAPE_IO_API bool gfIsCsvHead(std::string_view line);
/// Returns a field of a line (RFC 4180), quotes taken off; empty where the line has fewer.
GXSHAPE_IO_API std::string gfCsvField(std::string_view line, int column);

/// Reads the lines of one record, points line by line; a new value in `part` or `ring` begins a part or a
/// ring.  The column `type` says "region" (the default), "set", "open" or "points".  Edge points come with
/// both magnitude (0 to 65,535) and angle (0 to 255, 256 to the turn).
/// Throws: gxReadError with the byte in the text.
/// Cost: O(n).
GXSHAPE_IO_API void gfReadCsv(std::string_view text, const gxCsvColumns& columns, gxRecord& record,
                              const gxReadLimits& limits = {});

/// Returns the line of names that `gfAppendCsv` writes to, and appends one line a point, each with a line
/// end.  A record without points has no lines.
GXSHAPE_IO_API std::string gfCsvHead(bool withEdges);
GXSHAPE_IO_API void gfAppendCsv(const gxRecord& record, bool withEdges, std::string& out);
/// Appends a field, in quotes where it needs them.
GXSHAPE_IO_API void gfAppendCsvField(std::string_view field, std::string& out);
