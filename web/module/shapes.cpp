// Shapes by address: made of coordinates, of a file's records or by an operation; read, changed point by
// point, written, given back.
#include "binding.h"

#include <cntr/contourdefs.h>
#include <io/json.h>
#include <io/writer.h>

#include <algorithm>
#include <stdexcept>

const gxRegion& gxwebShape::region() {
  if (!region_) region_.emplace(record.toRegion());
  return *region_;
}

const gxLocator& gxwebShape::locator() {
  if (!locator_) {
    if (isSet()) {
      locator_ = std::make_unique<gxLocator>(record.toSet());
    } else if (record.kind == gxRecord::Kind::eRegion) {
      locator_ = std::make_unique<gxLocator>(region());
    } else {
      locator_ = std::make_unique<gxLocator>(record.toContour());
    }
  }
  return *locator_;
}

void gxwebShape::changed() {
  region_.reset();
  locator_.reset();
}

namespace {

// Ends must begin above nothing, never fall, and end at the size.
std::vector<std::size_t> checkedEnds(const std::uint32_t* ends, std::size_t count, std::size_t size,
                                     const char* what) {
  std::vector<std::size_t> checked(ends, ends + count);
  if (!std::is_sorted(checked.begin(), checked.end()))
    throw std::invalid_argument(std::string(what) + ": ends must not fall");
  if (checked.empty() ? size != 0 : checked.back() != size)
    throw std::invalid_argument(std::string(what) + ": the last end is not the number of them");
  return checked;
}

}  // namespace

/// Makes a shape of `pointCount` points (x, y after each other), of rings that end before these points and
/// parts that end before these rings.
GXWEB_API gxwebShape* gxweb_shape(int kind, const double* coordinates, std::size_t pointCount,
                                  const std::uint32_t* ringEnds, std::size_t ringCount,
                                  const std::uint32_t* partEnds, std::size_t partCount) {
  return gfMade([&](gxwebShape& shape) {
    gxRecord& record = shape.record;
    record.kind = static_cast<gxRecord::Kind>(kind);
    record.points.reserve(pointCount);
    for (std::size_t i = 0; i < pointCount; ++i)
      record.points.emplace_back(coordinates[2 * i], coordinates[2 * i + 1]);
    record.ringEnds = checkedEnds(ringEnds, ringCount, pointCount, "rings");
    record.partEnds = checkedEnds(partEnds, partCount, ringCount, "parts");
  });
}

GXWEB_API void gxweb_free(gxwebShape* shape) {
  delete shape;
}

/// Moves one point.
GXWEB_API int gxweb_move_point(gxwebShape* shape, std::size_t index, double x, double y) {
  return gfAnswered([&](gxwebAnswer&) {
    if (index >= shape->record.points.size())
      throw std::invalid_argument("point " + std::to_string(index) + " of " +
                                  std::to_string(shape->record.points.size()));
    shape->record.points[index] = {x, y};
    shape->changed();
  });
}

/// Answers kind, number of points, of rings, of parts, and then where rings and parts end; the text is the id.
GXWEB_API int gxweb_layout(const gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) {
    const gxRecord& record = shape->record;
    answer.add(static_cast<double>(record.kind));
    answer.add(static_cast<double>(record.points.size()));
    answer.add(static_cast<double>(record.ringEnds.size()));
    answer.add(static_cast<double>(record.partEnds.size()));
    for (const std::size_t end : record.ringEnds) answer.add(static_cast<double>(end));
    for (const std::size_t end : record.partEnds) answer.add(static_cast<double>(end));
    answer.text = record.id.isGiven ? record.id.text : "";
  });
}

/// Returns where the coordinates lie, x and y after each other, until the shape changes.
GXWEB_API const double* gxweb_points(const gxwebShape* shape) {
  static_assert(sizeof(gxVector<2>) == 2 * sizeof(double));
  return shape->record.points.empty() ? nullptr
                                      : reinterpret_cast<const double*>(shape->record.points.data());
}

/// Answers the numbers that came with the shape.
GXWEB_API int gxweb_report(const gxwebShape* shape) {
  return gfAnswered([&](gxwebAnswer& answer) { answer.numbers = shape->numbers; });
}

/// Answers the shape's text in a format of lines, by the number of the format, without the line's end.
GXWEB_API int gxweb_write(const gxwebShape* shape, int format) {
  return gfAnswered([&](gxwebAnswer& answer) {
    gxRecordWriter::append(static_cast<gxFormat>(format), shape->record, answer.text);
    while (!answer.text.empty() && answer.text.back() == '\n') answer.text.pop_back();
  });
}
