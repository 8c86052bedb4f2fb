// fit: circles and ellipses through points.
#include "command.h"

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

}  // namespace

std::unique_ptr<Command> makeFit(const Options& options) {
  if (options.command != "fit") return nullptr;
  if (options.kind.empty() || options.kind == "circle") return std::make_unique<FitCircle>();
  if (options.kind == "ellipse") return std::make_unique<FitEllipse>();
  throw UsageError{"fit: --kind is circle or ellipse, not '" + options.kind + "'"};
}
