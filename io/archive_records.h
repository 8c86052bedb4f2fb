/// Records of the library's archives.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <functional>
#include <string>
#include <string_view>

/// Hands each object of an archive to `take` as a record, in order: a contour, a region, a set, edge
/// points too.  The label, where it is not 0, becomes the id; islands in holes become parts.
/// Throws: gxReadError with the number of the object and the byte in the file, after the objects before it
/// were handed over; what `take` throws.
GXSHAPE_IO_API void gfReadArchive(std::string_view file,
                                  const std::function<void(const gxRecord&)>& take);

/// Appends a record as a frame of an archive: an open contour and bare points as a contour, edge points of
/// a single ring as an edge contour, of several rings without magnitudes and angles.  A whole number from 1 to 4,294,967,295 as id becomes the label, of a set none; other ids have
/// no place.
GXSHAPE_IO_API void gfAppendArchive(const gxRecord& record, std::string& out);
