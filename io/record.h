/// A record of a file: a shape with its id, in flat arrays.
#pragma once

#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <io/export.h>
#include <velip/edgelet.h>
#include <velstd/vector.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// What a record is called in its file, kept letter by letter.
struct gxRecordId {
  std::string text;
  bool isGiven = false;   ///< false where the file has none
  bool isNumber = false;  ///< written without quotes: a whole number of at most 2^53
  bool operator==(const gxRecordId&) const = default;
};

/// One record: points in rings, rings in parts.  A region has one part, a set any number; the first ring of a
/// part is its outline, the others are holes.  An open contour and bare points are a single ring.  Ends are
/// counted from the beginning of the record and never fall.
///
/// Readers fill the same record again and again, so that a loop over a file allocates nothing once the
/// arrays have grown.
struct GXSHAPE_IO_API gxRecord {
  enum class Kind : std::uint8_t {
    eEmpty = 0,   ///< nothing: the geometry null of GeoJSON
    eRegion = 1,  ///< an outline with holes
    eSet = 2,     ///< regions
    eOpen = 3,    ///< a poly-line
    ePoints = 4,  ///< points without order
  };

  Kind kind = Kind::eEmpty;
  std::uint64_t number = 0;  ///< the record's own, from 1
  std::uint64_t byte = 0;    ///< where its text begins in the file
  gxRecordId id;
  std::vector<gxVector<2>> points;
  std::vector<std::size_t> ringEnds;  ///< into points
  std::vector<std::size_t> partEnds;  ///< into rings
  /// Of edge points, one a point; both empty for others.
  std::vector<std::uint16_t> magnitudes;
  std::vector<std::uint8_t> angles;  ///< 256 to the turn
  bool hadMore = false;              ///< coordinates beyond x and y were there, and were dropped

  /// Drops everything but the memory.
  void clear();
  /// Tells whether shapes, ids and edge points are equal, coordinates bit by bit; number and place aside.
  bool sameAs(const gxRecord& other) const;

  bool hasEdges() const { return !magnitudes.empty(); }
  std::size_t ringCount() const { return ringEnds.size(); }
  std::size_t partCount() const { return partEnds.size(); }
  /// Returns the points of a ring.
  std::span<const gxVector<2>> ring(std::size_t i) const;
  /// Returns the first ring of a part, which is its outline (or the end of the part before, if it has none).
  std::size_t firstRing(std::size_t part) const { return part == 0 ? 0 : partEnds[part - 1]; }
  /// Returns the number of holes of all parts.
  std::size_t holeCount() const;

  /// Ends the ring, or the part, that was being filled.  A ring whose last point equals its first loses it,
  /// once, where `closed`: formats that repeat the first point and formats that do not then agree.
  void endRing(bool closed);
  void endPart() { partEnds.push_back(ringEnds.size()); }
  /// Drops a single ring without points, so that a region or contour without points looks the same from
  /// every format; a set keeps its parts.
  void dropEmptyRing();

  /// Make the library's own objects.  Holes are taken as they are, also those that touch, cross or leave
  /// their outline; `gfCheck` tells what is wrong with them.
  ///  - a set as a region: its first part; an open contour or points as a region: their points
  gxRegion toRegion() const;
  gxRegion toRegion(std::size_t part) const;
  gxRegionSet toSet() const;
  gxContour toContour() const;  ///< of the first ring; closed unless the record is open

  /// Take a shape over; the id becomes the label where that is not 0.  Islands in holes become parts of
  /// their own, which is where files have them.
  void assign(const gxRegion& region);
  void assign(const gxRegionSet& set);
  void assign(const gxContour& contour);
};
