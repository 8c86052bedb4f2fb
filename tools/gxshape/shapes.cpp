// hull, repair, union, clip, offset, simplify, convert: shapes made of shapes.
#include "command.h"

#include <gauge/simplify.h>
#include <overlay/boolean.h>
#include <overlay/offset.h>
#include <overlay/repair.h>
#include <velstd/convex_hull.h>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace {

using Kind = gxRecord::Kind;

bool isArea(const gxRecord& record) {
  return record.kind == Kind::eRegion || record.kind == Kind::eSet;
}

// The regions of a record, whatever its kind; of lines and points none.
gxRegionSet setOf(const gxRecord& record) {
  if (!isArea(record)) return gxRegionSet();
  if (record.kind == Kind::eSet) return record.toSet();
  gxRecord copy = record;
  copy.kind = Kind::eSet;
  return copy.toSet();
}

// A result as a record: a single region as a region.
void take(const gxRegionSet& set, const gxRecord& of, gxRecord& result) {
  result.assign(set);
  if (result.partCount() <= 1) result.kind = Kind::eRegion;
  result.dropEmptyRing();
  result.id = of.id;
  result.number = of.number;
}

gxRecord& addShape(Answer& answer) {
  return answer.shapes.emplace_back();
}

class Convert final : public Command {
 public:
  void answer(const gxRecord& record, Answer& answer) const override { addShape(answer) = record; }
};

class Hull final : public Command {
 public:
  void answer(const gxRecord& record, Answer& answer) const override {
    gxRecord& result = addShape(answer);
    result.clear();
    result.kind = Kind::eRegion;
    result.id = record.id;
    gfConvexHull(record.points, result.points);
    result.endRing(true);
    result.endPart();
    result.dropEmptyRing();
  }
};

class Repair final : public Command {
 public:
  explicit Repair(const Options& options) : rule_(fillRuleOf(options.rule)), report_(options.report) {
    if (!report_) return;
    columns_ = {{"area_before", Type::eNumber},    {"area_after", Type::eNumber},
                {"regions", Type::eInteger},       {"holes", Type::eInteger},
                {"rings_dropped", Type::eInteger}, {"rings_snapped", Type::eInteger},
                {"largest_move", Type::eNumber}};
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    if (!isArea(record)) return lineOrPoints(record, answer);
    const gxRepaired repaired = gfRepair(setOf(record), rule_);
    if (!report_) return take(repaired.regions, record, addShape(answer));
    const gxRepairReport& r = repaired.report;
    Row& row = answer.addRow(columns_.size());
    std::size_t i = 0;
    for (const double number : {r.areaBefore, r.areaAfter, asNumber(r.regions), asNumber(r.holes),
                                asNumber(r.ringsDropped), asNumber(r.ringsSnapped), r.largestMove}) {
      row.values[i++].set(number);
    }
  }

 private:
  static double asNumber(std::size_t count) { return static_cast<double>(count); }

  // There is nothing to repair in a line.
  void lineOrPoints(const gxRecord& record, Answer& answer) const {
    if (!report_) {
      addShape(answer) = record;
      return;
    }
    Row& row = answer.addRow(columns_.size());
    for (Value& value : row.values) value.set(0.0);
    row.status = gxStatus::eNotClosed;
  }

  gxFillRule rule_;
  bool report_;
};

// Without a second file the records are joined with each other, with one each is joined with that.
class Union final : public Command {
 public:
  explicit Union(const Options& options) : joinsAll_(options.withFile.empty()) {
    how_.rule = fillRuleOf(options.rule);
    if (!joinsAll_) others_ = regionsOf(options);
  }

  static std::vector<gxRegionSet> regionsOf(const Options& options) {
    std::vector<gxRegionSet> sets;
    for (const auto& record : recordsOf(options.withFile, options)) sets.push_back(setOf(record));
    return sets;
  }

  bool joinsAll() const override { return joinsAll_; }

  void answer(const gxRecord& record, Answer& answer) const override {
    if (joinsAll_) {
      const std::scoped_lock lock(mutex_);
      taken_.emplace_back(record.number, setOf(record));
      return;
    }
    take(gfUnion(setOf(record), others_, how_), record, addShape(answer));
  }

  void finish(Answer& answer) const override {
    std::sort(taken_.begin(), taken_.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<gxRegionSet> sets;
    for (auto& [number, set] : taken_) sets.push_back(std::move(set));
    take(gfUnion(sets, how_), gxRecord(), addShape(answer));
  }

 private:
  bool joinsAll_;
  gxOverlayOptions how_;
  std::vector<gxRegionSet> others_;
  mutable std::mutex mutex_;
  mutable std::vector<std::pair<std::uint64_t, gxRegionSet>> taken_;
};

class Clip final : public Command {
 public:
  explicit Clip(const Options& options) : operation_(options.operation) {
    how_.rule = fillRuleOf(options.rule);
    if (options.box.empty() == options.withFile.empty()) {
      throw UsageError{"clip: to what? --box X,Y,X,Y or --with FILE"};
    }
    if (!options.box.empty()) {
      const auto n = numbersOf("--box", options.box, 4);
      const std::vector<gxVector<2>> corners = {{n[0], n[1]}, {n[2], n[1]}, {n[2], n[3]}, {n[0], n[3]}};
      others_.push_back(gxRegionSet({gxPtrHandle_const<gxRegion>(new gxRegion(corners))}));
    } else {
      others_ = Union::regionsOf(options);
    }
    if (operation_ != "intersection" && operation_ != "difference" &&
        operation_ != "symmetric-difference") {
      throw UsageError{"clip: --operation is intersection, difference or symmetric-difference, not '" +
                       operation_ + "'"};
    }
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    const gxRegionSet shape = setOf(record);
    gxRecord& result = addShape(answer);
    if (operation_ == "intersection")
      take(gfIntersection(shape, others_, how_), record, result);
    else if (operation_ == "difference")
      take(gfDifference(shape, others_, how_), record, result);
    else
      take(gfSymmetricDifference(shape, others_, how_), record, result);
  }

 private:
  std::string operation_;
  gxOverlayOptions how_;
  std::vector<gxRegionSet> others_;
};

class Offset final : public Command {
 public:
  explicit Offset(const Options& options) : by_(options.by) {
    if (std::isnan(by_)) throw UsageError{"offset: by how much? --by D"};
    if (options.join == "mitre")
      form_.join = gxJoin::eMitre;
    else if (options.join == "bevel")
      form_.join = gxJoin::eBevel;
    else if (options.join != "round")
      throw UsageError{"--join: round, mitre or bevel, not '" + options.join + "'"};
    if (options.ends == "flat")
      form_.ends = gxEnds::eFlat;
    else if (options.ends == "square")
      form_.ends = gxEnds::eSquare;
    else if (options.ends != "round")
      throw UsageError{"--ends: round, flat or square, not '" + options.ends + "'"};
    if (!std::isnan(options.tolerance)) form_.arcTolerance = options.tolerance;
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    gxRecord& result = addShape(answer);
    if (isArea(record)) return take(gfOffset(setOf(record), by_, form_), record, result);
    if (record.kind == Kind::eOpen)
      return take(gfOffsetPath(record.toContour(), by_, form_), record, result);
    std::vector<gxRegionSet> discs;
    for (const auto& p : record.points) {
      discs.push_back(gfOffsetPath(gxContour(std::vector<gxVector<2>>{p}, false), by_, form_));
    }
    take(gfUnion(discs), record, result);
  }

 private:
  double by_;
  gxOffsetForm form_;
};

class Simplify final : public Command {
 public:
  explicit Simplify(const Options& options) : tolerance_(options.tolerance) {
    if (!(tolerance_ >= 0.0)) throw UsageError{"simplify: within which tolerance? --tolerance D"};
    how_.keepsCrossingsOut = options.keepApart;
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    gxRecord& result = addShape(answer);
    if (record.kind == Kind::ePoints) {
      result = record;
      return;
    }
    result.kind = record.kind;
    result.id = record.id;
    for (std::size_t p = 0; p < record.partCount(); ++p) {
      for (std::size_t r = record.firstRing(p); r < record.partEnds[p]; ++r) {
        const gxSimplified simple =
            gfSimplify(record.ring(r), record.kind != Kind::eOpen, tolerance_, how_);
        // A ring that the gauge does not answer, for a NaN in it, stays as it is.
        if (simple.status == gxStatus::eNotFinite) {
          result.points.insert(result.points.end(), record.ring(r).begin(), record.ring(r).end());
        }
        result.points.insert(result.points.end(), simple.points.begin(), simple.points.end());
        result.ringEnds.push_back(result.points.size());
      }
      result.endPart();
    }
  }

 private:
  double tolerance_;
  gxSimplifyOptions how_;
};

}  // namespace

std::unique_ptr<Command> makeShapes(const Options& options) {
  if (options.command == "convert") return std::make_unique<Convert>();
  if (options.command == "hull") return std::make_unique<Hull>();
  if (options.command == "repair") return std::make_unique<Repair>(options);
  if (options.command == "union") return std::make_unique<Union>(options);
  if (options.command == "clip") return std::make_unique<Clip>(options);
  if (options.command == "offset") return std::make_unique<Offset>(options);
  if (options.command == "simplify") return std::make_unique<Simplify>(options);
  return nullptr;
}
