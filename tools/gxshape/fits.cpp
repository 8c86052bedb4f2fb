// fit: lines, circles and ellipses through points, all of them or those that agree.
#include "command.h"

#include <gauge/robust_fit.h>
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

namespace {

class FitCircle final : public Command {
 public:
  FitCircle() {
    columns_ = {{"centre", Type::ePoint}, {"radius", Type::eNumber}, {"residual", Type::eNumber}};
  }
  void answer(const gxRecord& record, Answer& answer) const override {
    gxCircleFitResults found;
    gfCircleFit(gxCircleFitParams(gxCircleFitDefs::eFitAll, 0.0, 0, 0.0), record.points, found);
    Row& row = answer.addRow(columns_.size());
    row.values[0].set(found.circle().center());
    row.values[1].set(found.circle().radius());
    row.values[2].set(found.residual());
  }
};

class FitEllipse final : public Command {
 public:
  FitEllipse() {
    columns_ = {{"centre", Type::ePoint},
                {"ellipse_a", Type::eNumber},
                {"ellipse_b", Type::eNumber},
                {"ellipse_angle", Type::eAngle},
                {"residual", Type::eNumber}};
  }
  void answer(const gxRecord& record, Answer& answer) const override {
    gxEllipseFitResults found;
    gfEllipseFit(gxEllipseFitParams(gxEllipseFitDefs::eFitAll, gxRadian(0.0), 0, 0.0), record.points,
                 found);
    const auto geometry = found.ellipse().geom();
    Row& row = answer.addRow(columns_.size());
    row.values[0].set(geometry.center);
    row.values[1].set(geometry.radii.x());
    row.values[2].set(geometry.radii.y());
    row.values[3].set(geometry.rotation.toDouble());
    row.values[4].set(found.residual());
  }
};

gxRobustOptions robustOf(const Options& options) {
  gxRobustOptions how;
  if (options.weights.empty() || options.weights == "least-squares")
    how.weights = gxFitWeights::eLeastSquares;
  else if (options.weights == "huber")
    how.weights = gxFitWeights::eHuber;
  else if (options.weights == "tukey")
    how.weights = gxFitWeights::eTukey;
  else if (options.weights == "consensus")
    how.weights = gxFitWeights::eConsensus;
  else
    throw UsageError{"--weights: least-squares, huber, tukey or consensus, not '" + options.weights +
                     "'"};
  return how;
}

// The shape's own columns first, then what every fit says of itself.
class FitRobust final : public Command {
 public:
  explicit FitRobust(const Options& options) : how_(robustOf(options)), kind_(options.kind) {
    if (kind_ == "line")
      columns_ = {{"point", Type::ePoint}, {"angle", Type::eAngle}};
    else if (kind_ == "ellipse")
      columns_ = {{"centre", Type::ePoint},
                  {"ellipse_a", Type::eNumber},
                  {"ellipse_b", Type::eNumber},
                  {"ellipse_angle", Type::eAngle}};
    else
      columns_ = {{"centre", Type::ePoint}, {"radius", Type::eNumber}};
    for (const Column& column :
         {Column{"residual", Type::eNumber}, {"deviation", Type::eNumber}, {"inliers", Type::eInteger}})
      columns_.push_back(column);
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    Row& row = answer.addRow(columns_.size());
    if (kind_ == "line") {
      const gxRobustLine line = gfRobustLine(record.points, how_);
      row.values[0].set(line.point);
      row.values[1].set(line.angle.toDouble());
      quality(line, row);
    } else if (kind_ == "ellipse") {
      const gxRobustEllipse ellipse = gfRobustEllipse(record.points, how_);
      row.values[0].set(ellipse.centre);
      row.values[1].set(ellipse.a);
      row.values[2].set(ellipse.b);
      row.values[3].set(ellipse.angle.toDouble());
      quality(ellipse, row);
    } else {
      const gxRobustCircle circle = gfRobustCircle(record.points, how_);
      row.values[0].set(circle.centre);
      row.values[1].set(circle.radius);
      quality(circle, row);
    }
  }

 private:
  void quality(const gxFitQuality& found, Row& row) const {
    const std::size_t first = columns_.size() - 3;
    row.values[first].set(found.residualRms);
    row.values[first + 1].set(found.deviation);
    row.values[first + 2].set(static_cast<double>(found.inliers.size()));
    row.status = found.status;
  }

  gxRobustOptions how_;
  std::string kind_;
};

}  // namespace

std::unique_ptr<Command> makeFit(const Options& options) {
  if (options.command != "fit") return nullptr;
  const std::string& kind = options.kind;
  if (!kind.empty() && kind != "line" && kind != "circle" && kind != "ellipse")
    throw UsageError{"fit: --kind is line, circle or ellipse, not '" + kind + "'"};
  if (kind == "line" || !options.weights.empty()) return std::make_unique<FitRobust>(options);
  if (kind == "ellipse") return std::make_unique<FitEllipse>();
  return std::make_unique<FitCircle>();
}
