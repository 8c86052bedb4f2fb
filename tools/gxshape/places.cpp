// inside, closest, distance, intersect: places on borders.
#include "command.h"

#include <gauge/distance.h>
#include <gauge/locate.h>
#include <overlay/relate.h>

#include <io/number_writer.h>

namespace {

using Kind = gxRecord::Kind;

// The locator of a record, which looks at the shapes that live here.
class Located {
 public:
  explicit Located(const gxRecord& record) {
    if (record.kind == Kind::eSet) {
      set_ = std::make_unique<gxRegionSet>(record.toSet());
      locator_ = std::make_unique<gxLocator>(*set_);
    } else if (record.kind == Kind::eRegion) {
      region_ = std::make_unique<gxRegion>(record.toRegion());
      locator_ = std::make_unique<gxLocator>(*region_);
    } else {
      contour_ = std::make_unique<gxContour>(record.toContour());
      locator_ = std::make_unique<gxLocator>(*contour_);
    }
  }
  const gxLocator& locator() const { return *locator_; }

 private:
  std::unique_ptr<gxRegion> region_;
  std::unique_ptr<gxRegionSet> set_;
  std::unique_ptr<gxContour> contour_;
  std::unique_ptr<gxLocator> locator_;
};

const char* stateName(const gxLocation& location) {
  switch (location.state) {
    case gxState::eInside: return "inside";
    case gxState::eBorder: return "border";
    case gxState::eOutside: return "outside";
  }
  return "";
}

std::vector<gxVector<2>> pointsOf(const Options& options) {
  std::vector<gxVector<2>> points;
  for (const auto& text : options.at) points.push_back(pointOf("--at", text));
  if (!options.pointsFile.empty()) {
    for (const auto& record : recordsOf(options.pointsFile, options)) {
      points.insert(points.end(), record.points.begin(), record.points.end());
    }
  }
  if (points.empty()) throw UsageError{options.command + ": which point? --at X,Y or --points FILE"};
  return points;
}

class Inside final : public Command {
 public:
  explicit Inside(const Options& options)
      : points_(pointsOf(options)), within_(options.within), withRegion_(!options.pointsFile.empty()) {
    columns_ = {{"at", Type::ePoint}, {"state", Type::eText}, {"signed_distance", Type::eNumber}};
    if (withRegion_) columns_.push_back({"region", Type::eInteger});
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    const Located shape(record);
    for (const auto& point : points_) {
      Row& row = answer.addRow(columns_.size());
      const gxLocation location = shape.locator().locate(point, within_);
      row.status = location.status;
      row.values[0].set(point);
      row.values[1].text = location.status == gxStatus::eOk ? stateName(location) : "";
      row.values[2].set(shape.locator().signedDistance(point));
      if (withRegion_) row.values[3].set(static_cast<double>(location.region));
    }
  }

 private:
  std::vector<gxVector<2>> points_;
  double within_;
  bool withRegion_;
};

class Closest final : public Command {
 public:
  explicit Closest(const Options& options) : points_(pointsOf(options)) {
    columns_ = {{"at", Type::ePoint}, {"distance", Type::eNumber}, {"nearest", Type::ePlace}};
  }
  void answer(const gxRecord& record, Answer& answer) const override {
    const Located shape(record);
    for (const auto& point : points_) {
      Row& row = answer.addRow(columns_.size());
      const gxNearest nearest = shape.locator().nearest(point);
      row.status = nearest.status;
      row.values[0].set(point);
      row.values[1].set(nearest.distance);
      row.values[2].place = nearest.place;
    }
  }

 private:
  std::vector<gxVector<2>> points_;
};

std::string wantedFile(const Options& options) {
  if (options.withFile.empty()) throw UsageError{options.command + ": with which shape? --with FILE"};
  return options.withFile;
}

class Distance final : public Command {
 public:
  explicit Distance(const Options& options) : other_(firstRecordOf(wantedFile(options), options)) {
    columns_ = {{"distance", Type::eNumber}, {"from", Type::ePlace}, {"to", Type::ePlace}};
  }
  void answer(const gxRecord& record, Answer& answer) const override {
    const Located shape(record);
    const gxShapeDistance found = gfDistance(shape.locator(), other_.locator());
    Row& row = answer.addRow(columns_.size());
    row.status = found.status;
    row.values[0].set(found.distance);
    row.values[1].place = found.from;
    row.values[2].place = found.to;
  }

 private:
  Located other_;
};

void appendPoints(const std::vector<gxVector<2>>& points, std::string& out) {
  out = "[";
  for (const auto& p : points) {
    if (out.size() > 1) out += ',';
    out += '[';
    gfAppendNumber(p.x(), out);
    out += ',';
    gfAppendNumber(p.y(), out);
    out += ']';
  }
  out += ']';
}

class Intersect final : public Command {
 public:
  explicit Intersect(const Options& options) {
    if (options.line.empty() == options.withFile.empty()) {
      throw UsageError{"intersect: with what? --line X,Y,X,Y or --with FILE"};
    }
    columns_ = {{"intersects", Type::eBool}, {"count", Type::eInteger}, {"crossings", Type::eJson}};
    if (!options.line.empty()) {
      const auto n = numbersOf("--line", options.line, 4);
      other_.kind = Kind::eOpen;
      other_.points = {{n[0], n[1]}, {n[2], n[3]}};
      other_.endRing(false);
      other_.endPart();
    } else {
      other_ = firstRecordOf(options.withFile, options);
    }
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    std::vector<gxVector<2>> all;
    bool meets = false;
    for (std::size_t r = 0; r < record.ringCount(); ++r) {
      const gxContour ring = contourOf(record, r);
      for (std::size_t k = 0; k < other_.ringCount(); ++k) {
        if (ring.points().size() < 2 || other_.ring(k).size() < 2) continue;
        const auto found = ring.intersections(contourOf(other_, k));
        all.insert(all.end(), found.begin(), found.end());
      }
    }
    meets = !all.empty() || shareArea(record);
    Row& row = answer.addRow(columns_.size());
    row.values[0].set(meets ? 1.0 : 0.0);
    row.values[1].set(static_cast<double>(all.size()));
    appendPoints(all, row.values[2].text);
  }

 private:
  static bool isArea(const gxRecord& record) {
    return record.kind == Kind::eRegion || record.kind == Kind::eSet;
  }

  static gxContour contourOf(const gxRecord& record, std::size_t ring) {
    return gxContour(record.ring(ring), record.kind != Kind::eOpen);
  }

  // One within the other has no crossing of borders.
  bool shareArea(const gxRecord& record) const {
    if (isArea(record) && isArea(other_)) {
      const gxRegionSet a = asSet(record);
      const gxRegionSet b = asSet(other_);
      return gfIntersects(a, b);
    }
    if (isArea(record)) return holds(record, other_);
    return isArea(other_) && holds(other_, record);
  }
  static gxRegionSet asSet(const gxRecord& record) {
    gxRecord copy = record;
    copy.kind = Kind::eSet;
    return copy.toSet();
  }
  static bool holds(const gxRecord& area, const gxRecord& line) {
    if (line.points.empty()) return false;
    const Located shape(area);
    const gxLocation location = shape.locator().locate(line.points[0]);
    return location.status == gxStatus::eOk && location.state != gxState::eOutside;
  }

  gxRecord other_;
};

}  // namespace

std::unique_ptr<Command> makePlaces(const Options& options) {
  if (options.command == "inside") return std::make_unique<Inside>(options);
  if (options.command == "closest") return std::make_unique<Closest>(options);
  if (options.command == "distance") return std::make_unique<Distance>(options);
  if (options.command == "intersect") return std::make_unique<Intersect>(options);
  return nullptr;
}
