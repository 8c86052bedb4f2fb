/// From and to GEOS by well-known binary, for geometries that come as bytes.  Needs GEOS and the companion
/// library gxshape_io; where both sides are in one process, `interop/geos.h` is the shorter way.
#pragma once

#include <gxshape/interop/geos.h>
#include <io/record.h>
#include <io/wkb.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>

/// Returns the geometry of a record's well-known binary.
/// Throws: BadParams with what GEOS said.
inline gxGeosGeometry gfToGeosByWkb(const gxGeos& geos, const gxRecord& record) {
  std::string bytes;
  gfAppendWkb(record, bytes);
  const auto free = [&geos](GEOSWKBReader* reader) { GEOSWKBReader_destroy_r(geos.context(), reader); };
  const std::unique_ptr<GEOSWKBReader, decltype(free)> reader(
      geos.check(GEOSWKBReader_create_r(geos.context()), "reader"), free);
  GEOSGeometry* made = GEOSWKBReader_read_r(
      geos.context(), reader.get(), reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  return {geos.check(made, "well-known binary"), {geos.context()}};
}

/// Reads a geometry into a record, by its well-known binary.
/// Throws: BadParams with what GEOS said; gxReadError for kinds that a record has no place for.
inline void gfFromGeosByWkb(const gxGeos& geos, const GEOSGeometry& geometry, gxRecord& record) {
  const auto free = [&geos](GEOSWKBWriter* writer) { GEOSWKBWriter_destroy_r(geos.context(), writer); };
  const std::unique_ptr<GEOSWKBWriter, decltype(free)> writer(
      geos.check(GEOSWKBWriter_create_r(geos.context()), "writer"), free);
  std::size_t size = 0;
  const auto freeBytes = [&geos](unsigned char* bytes) { GEOSFree_r(geos.context(), bytes); };
  const std::unique_ptr<unsigned char, decltype(freeBytes)> bytes(
      geos.check(GEOSWKBWriter_write_r(geos.context(), writer.get(), &geometry, &size),
                 "well-known binary"),
      freeBytes);
  record.clear();
  gfReadWkb(std::span<const unsigned char>(bytes.get(), size), record);
}
