// measure and describe: numbers of one shape.
#include "command.h"

#include <gauge/defects.h>
#include <gauge/descriptors.h>
#include <gauge/enclosing.h>
#include <gauge/feret.h>
#include <gauge/inscribed.h>
#include <gauge/measure.h>
#include <gauge/moments.h>
#include <gauge/wall.h>
#include <io/number_writer.h>

namespace {

using Kind = gxRecord::Kind;

double asNumber(std::size_t count) {
  return static_cast<double>(count);
}

gxMeasure measureOf(const gxRecord& record, bool outlineOnly) {
  thread_local std::vector<gxMeasuredRing> rings;
  rings.clear();
  for (std::size_t p = 0; p < record.partCount(); ++p) {
    for (std::size_t r = record.firstRing(p); r < record.partEnds[p]; ++r) {
      const bool isHole = r > record.firstRing(p);
      if (!isHole || !outlineOnly) rings.push_back({record.ring(r), isHole});
    }
  }
  return gfMeasure(rings, record.kind != Kind::eOpen);
}

// Bare points have neither area nor border: their centre is the mean.
gxMeasure measureOfPoints(const gxRecord& record) {
  const bool none = record.points.empty();
  gxMeasure m = gfMeasure(std::span<const gxVector<2>>(record.points));
  m.area = 0.0;
  if (m.status == gxStatus::eOk) m.status = gxStatus::eFlat;
  if (none || m.status == gxStatus::eNotFinite) return m;
  m.length = 0.0;
  gxVector<2> sum;
  const double share = 1.0 / asNumber(record.points.size());
  for (const auto& p : record.points) sum += p * share;
  m.centre = sum;
  return m;
}

class Measure final : public Command {
 public:
  explicit Measure(bool outlineOnly) : outlineOnly_(outlineOnly) { columns_ = measureColumns(); }
  void answer(const gxRecord& record, Answer& answer) const override {
    Row& row = answer.addRow(columns_.size());
    if (wants(2, 5)) return measureInto(record, outlineOnly_, row);
    row.values[0].set(asNumber(record.points.size()));
    row.values[1].set(asNumber(record.holeCount()));
  }

 private:
  bool outlineOnly_;
};

// A shape of the library for the record, for one call.
template <class Use>
auto withShape(const gxRecord& record, const Use& use) {
  if (record.kind == Kind::eSet) return use(record.toSet());
  if (record.kind == Kind::eOpen) return use(record.toContour());
  return use(record.toRegion());
}

class Describe final : public Command {
 public:
  Describe() {
    columns_ = {{"points", Type::eInteger},
                {"holes", Type::eInteger},
                {"parts", Type::eInteger},
                {"area", Type::eNumber},
                {"filled_area", Type::eNumber},
                {"perimeter", Type::eNumber},
                {"length", Type::eNumber},
                {"centre", Type::ePoint},
                {"box", Type::eBox},
                {"equivalent_diameter", Type::eNumber},
                {"circularity", Type::eNumber},
                {"compactness", Type::eNumber},
                {"convexity", Type::eNumber},
                {"solidity", Type::eNumber},
                {"extent", Type::eNumber},
                {"rectangularity", Type::eNumber},
                {"aspect_ratio", Type::eNumber},
                {"elongation", Type::eNumber},
                {"eccentricity", Type::eNumber},
                {"orientation", Type::eAngle},
                {"euler_number", Type::eInteger},
                {"feret_max", Type::eNumber},
                {"feret_min", Type::eNumber},
                {"feret_mean", Type::eNumber},
                {"feret_across", Type::eNumber},
                {"feret_max_angle", Type::eAngle},
                {"feret_min_angle", Type::eAngle},
                {"enclosing_circle_radius", Type::eNumber},
                {"enclosing_circle_centre", Type::ePoint},
                {"rectangle_length", Type::eNumber},
                {"rectangle_width", Type::eNumber},
                {"rectangle_angle", Type::eAngle},
                {"rectangle_centre", Type::ePoint},
                {"moment_20", Type::eNumber},
                {"moment_11", Type::eNumber},
                {"moment_02", Type::eNumber},
                {"moment_30", Type::eNumber},
                {"moment_21", Type::eNumber},
                {"moment_12", Type::eNumber},
                {"moment_03", Type::eNumber},
                {"eta_20", Type::eNumber},
                {"eta_11", Type::eNumber},
                {"eta_02", Type::eNumber},
                {"eta_30", Type::eNumber},
                {"eta_21", Type::eNumber},
                {"eta_12", Type::eNumber},
                {"eta_03", Type::eNumber},
                {"hu_1", Type::eNumber},
                {"hu_2", Type::eNumber},
                {"hu_3", Type::eNumber},
                {"hu_4", Type::eNumber},
                {"hu_5", Type::eNumber},
                {"hu_6", Type::eNumber},
                {"hu_7", Type::eNumber},
                {"ellipse_a", Type::eNumber},
                {"ellipse_b", Type::eNumber},
                {"ellipse_angle", Type::eAngle},
                {"inscribed_circle_radius", Type::eNumber, true},
                {"inscribed_circle_centre", Type::ePoint, true},
                {"wall", Type::eNumber, true},
                {"wall_from", Type::ePlace, true},
                {"wall_to", Type::ePlace, true},
                {"defects", Type::eJson, true}};
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    Row& row = answer.addRow(columns_.size());
    row.values[0].set(asNumber(record.points.size()));
    row.values[1].set(asNumber(record.holeCount()));
    row.values[2].set(
        asNumber(record.kind == Kind::eSet ? record.partCount() : (record.points.empty() ? 0U : 1U)));
    if (wants(3, 24)) descriptors(record, row);
    if (wants(7, 7)) centre(record, row);
    if (wants(25, 26)) feret(record, row);
    if (wants(27, 28)) circle(record, row);
    if (wants(29, 32)) rectangle(record, row);
    if (wants(33, 56)) moments(record, row);
    if (wants(57, 58)) inscribed(record, row);
    if (wants(59, 61)) wall(record, row);
    if (wants(62, 62)) defects(record, row);
  }

 private:
  static void centre(const gxRecord& record, Row& row) {
    const gxMeasure m =
        record.kind == Kind::ePoints ? measureOfPoints(record) : measureOf(record, false);
    row.values[7].set(m.centre);
    row.status = m.status;
  }

  static void descriptors(const gxRecord& record, Row& row) {
    const gxDescriptors d = withShape(record, [](const auto& shape) { return gfDescribe(shape); });
    row.set(3, {d.area, d.filledArea, d.perimeter, d.length});
    row.values[8].setBox(d.box.origin(), d.box.corner());
    row.set(9, {d.equivalentDiameter, d.circularity, d.compactness, d.convexity, d.solidity, d.extent,
                d.rectangularity, d.aspectRatio, d.elongation, d.eccentricity, d.orientation,
                static_cast<double>(d.eulerNumber), d.feretMax, d.feretMin, d.feretMean, d.feretAcross});
    row.status = d.status;
  }

  static void feret(const gxRecord& record, Row& row) {
    const gxFeret f = record.kind == Kind::eSet ? gfFeret(record.toSet()) : gfFeret(outlineOf(record));
    row.values[25].set(f.feretMaxAngle);
    row.values[26].set(f.feretMinAngle);
    take(f.status, row);
  }

  static void circle(const gxRecord& record, Row& row) {
    const gxEnclosingCircle c = record.kind == Kind::eSet ? gfEnclosingCircle(record.toSet())
                                                          : gfEnclosingCircle(outlineOf(record));
    row.values[27].set(c.radius);
    row.values[28].set(c.centre);
    take(c.status, row);
  }

  static void rectangle(const gxRecord& record, Row& row) {
    const gxTurnedRectangle r = record.kind == Kind::eSet ? gfLeastAreaRectangle(record.toSet())
                                                          : gfLeastAreaRectangle(outlineOf(record));
    row.values[29].set(r.length);
    row.values[30].set(r.width);
    row.values[31].set(r.angle);
    row.values[32].set(r.centre);
    take(r.status, row);
  }

  static void moments(const gxRecord& record, Row& row) {
    const gxMoments m = withShape(record, [](const auto& shape) { return gfMoments(shape); });
    row.set(33, {m.moment20, m.moment11, m.moment02, m.moment30, m.moment21, m.moment12, m.moment03,
                 m.eta20, m.eta11, m.eta02, m.eta30, m.eta21, m.eta12, m.eta03});
    for (std::size_t k = 0; k < 7; ++k) row.values[47 + k].set(m.hu[k]);
    row.set(54, {m.ellipseA, m.ellipseB, m.ellipseAngle});
    take(m.status, row);
  }

  static void inscribed(const gxRecord& record, Row& row) {
    const gxInscribedCircle c = record.kind == Kind::eSet ? gfInscribedCircle(record.toSet())
                                                          : gfInscribedCircle(record.toRegion());
    row.values[57].set(c.radius);
    row.values[58].set(c.centre);
    take(c.status, row);
  }

  static void wall(const gxRecord& record, Row& row) {
    const gxWall w =
        record.kind == Kind::eSet ? gfSmallestWall(record.toSet()) : gfSmallestWall(record.toRegion());
    row.values[59].set(w.wall);
    row.values[60].place = w.from;
    row.values[61].place = w.to;
    take(w.status, row);
  }

  // Of a set, those of its first region.
  static void defects(const gxRecord& record, Row& row) {
    const gxConvexityDefects found = gfConvexityDefects(outlineOf(record));
    std::string out = "[";
    for (const auto& d : found.defects) {
      if (out.size() > 1) out += ',';
      out += "{\"start\":" + std::to_string(d.start) + ",\"end\":" + std::to_string(d.end) +
             ",\"deepest\":" + std::to_string(d.deepest) + ",\"depth\":";
      gfAppendNumber(d.depth, out);
      out += ",\"area\":";
      gfAppendNumber(d.area, out);
      out += '}';
    }
    row.values[62].text = out + ']';
    take(found.status, row);
  }

  static std::span<const gxVector<2>> outlineOf(const gxRecord& record) {
    return record.ringCount() == 0 ? std::span<const gxVector<2>>() : record.ring(0);
  }

  // The first thing that is to be said of a shape stands.
  static void take(gxStatus status, Row& row) {
    if (row.status == gxStatus::eOk) row.status = status;
  }
};

}  // namespace

const std::vector<Column>& measureColumns() {
  static const std::vector<Column> columns = {{"points", Type::eInteger}, {"holes", Type::eInteger},
                                              {"area", Type::eNumber},    {"length", Type::eNumber},
                                              {"centre", Type::ePoint},   {"box", Type::eBox}};
  return columns;
}

void measureInto(const gxRecord& record, bool outlineOnly, Row& row) {
  const gxMeasure m =
      record.kind == Kind::ePoints ? measureOfPoints(record) : measureOf(record, outlineOnly);
  row.values[0].set(asNumber(record.points.size()));
  row.values[1].set(asNumber(record.holeCount()));
  row.values[2].set(m.area);
  row.values[3].set(m.length);
  row.values[4].set(m.centre);
  row.values[5].setBox(m.low, m.high);
  row.status = m.status;
}

std::unique_ptr<Command> makeMeasure(const Options& options) {
  if (options.command != "measure") return nullptr;
  return std::make_unique<Measure>(options.outlineOnly);
}

std::unique_ptr<Command> makeDescribe(const Options& options) {
  if (options.command != "describe") return nullptr;
  return std::make_unique<Describe>();
}
