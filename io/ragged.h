/// Shapes as ragged arrays: coordinates in one array, offsets in others.
#pragma once

#include <io/export.h>
#include <io/limits.h>
#include <io/read_error.h>
#include <io/record.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The first eight bytes of a plain ragged file.
inline constexpr std::string_view gnRaggedMark("GXRAGGED", 8);

/// Read and append the body of one record of a plain ragged file (docs/formats.md has its bytes).
/// Throws: gxReadError with the byte in the body; offsets that fall or lie beyond the end are "bad_syntax".
/// Cost: O(n).
GXSHAPE_IO_API void gfReadRagged(std::string_view body, gxRecord& record,
                                 const gxReadLimits& limits = {});
GXSHAPE_IO_API void gfAppendRagged(const gxRecord& record, std::string& out);

/// The arrays of numpy's .npz: `coords` float64 (n, 2), `ring_offsets` int64 into coords, `part_offsets`
/// into rings, `shape_offsets` into parts, each beginning with 0; `kind` int8 and `id` text, one a shape,
/// and where there are edge points `magnitude` uint16 and `angle` uint8, one a point.
/// Holds everything in memory.
class GXSHAPE_IO_API gxRaggedArrays {
 public:
  /// Reads a .npz file as `numpy.savez` writes it.  `part_offsets` may be missing (`shape_offsets` then
  /// counts rings), and so may `kind`, `id` and both arrays of edges; coordinates may be float32, offsets
  /// any integers.
  /// Throws: gxReadError; "compressed" for what `numpy.savez_compressed` writes.
  explicit gxRaggedArrays(std::string_view file);
  gxRaggedArrays() = default;

  std::size_t size() const { return shapes_.size() - 1; }
  /// Fills a record with the shape of this index.
  void get(std::size_t shape, gxRecord& record) const;
  void add(const gxRecord& record);
  /// Returns the .npz file of all that was added.
  std::string file() const;

 private:
  std::vector<gxVector<2>> coords_;
  std::vector<std::int64_t> rings_{0}, parts_{0}, shapes_{0};
  std::vector<std::int8_t> kinds_;
  std::vector<gxRecordId> ids_;
  std::vector<std::uint16_t> magnitudes_;
  std::vector<std::uint8_t> angles_;
  bool hasEdges_ = false;
};
