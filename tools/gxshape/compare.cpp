// compare: distances and deviations from a golden outline, where it lies or after it was laid upon it.
#include "command.h"

#include <gauge/align.h>
#include <gauge/deviation.h>
#include <gauge/frechet.h>
#include <gauge/hausdorff.h>
#include <io/number_writer.h>

#include <cmath>

namespace {

using Kind = gxRecord::Kind;

std::string numberOrNull(double number) {
  std::string out;
  if (!std::isfinite(number)) return "null";
  gfAppendNumber(number == 0.0 ? 0.0 : number, out);
  return out;
}

std::string jsonOf(const gxAlignment& a) {
  std::string free;
  for (const auto& [is, word] :
       {std::pair{a.freeAngle, "angle"}, {a.freeShift, "shift"}, {a.freeScale, "scale"}}) {
    if (is) free += (free.empty() ? "\"" : ",\"") + std::string(word) + '"';
  }
  return "{\"angle\":" + numberOrNull(a.angle.toDouble()) + ",\"scale\":" + numberOrNull(a.scale) +
         ",\"shift\":[" + numberOrNull(a.shift.x()) + ',' + numberOrNull(a.shift.y()) +
         "],\"rounds\":" + std::to_string(a.rounds) + ",\"residual\":" + numberOrNull(a.residual) +
         ",\"free\":[" + free + "]}";
}

gxContour outlineOf(const gxRecord& record) {
  return gxContour(record.ringCount() == 0
                       ? std::vector<gxVector<2>>()
                       : std::vector<gxVector<2>>(record.ring(0).begin(), record.ring(0).end()),
                   record.kind != Kind::eOpen);
}

class Compare final : public Command {
 public:
  explicit Compare(const Options& options)
      : max_(options.max), step_(options.step), aligns_(options.align != "none") {
    if (options.golden.empty()) throw UsageError{"compare: with which outline? --golden FILE"};
    if (aligns_ && options.align != "rigid" && options.align != "similarity")
      throw UsageError{"--align: none, rigid or similarity, not '" + options.align + "'"};
    how_.scales = options.align == "similarity";
    golden_ = firstRecordOf(options.golden, options);
    columns_ = {{"hausdorff", Type::eNumber},      {"hausdorff_forward", Type::eNumber},
                {"hausdorff_back", Type::eNumber}, {"deviation_max", Type::eNumber},
                {"deviation_min", Type::eNumber},  {"deviation_rms", Type::eNumber},
                {"frechet", Type::eNumber, true}};
    if (aligns_) columns_.push_back({"alignment", Type::eJson});
    if (std::isnan(max_)) return;
    columns_.push_back({"out_of_tolerance", Type::eNumber});
    columns_.push_back({"within", Type::eBool});
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    Row& row = answer.addRow(columns_.size());
    if (!aligns_) return measure(record, row, answer);
    const gxAlignment motion = gfAlign(bordersOf(record), bordersOf(golden_), how_);
    row.values[kAlignment].text = jsonOf(motion);
    gxRecord moved = record;
    // Where nothing was found, the numbers are those of the shape as it lies, with that status.
    const bool isMoved = !std::isnan(motion.scale);
    for (auto& p : moved.points) p = isMoved ? motion.map(p) : p;
    measure(moved, row, answer);
    if (row.status == gxStatus::eOk && !isMoved) row.status = motion.status;
  }

 private:
  static constexpr std::size_t kFrechet = 6;
  static constexpr std::size_t kAlignment = 7;

  void measure(const gxRecord& record, Row& row, Answer& answer) const {
    const gxBorders shape = bordersOf(record);
    const gxBorders golden = bordersOf(golden_);
    const gxHausdorff h = gfHausdorff(shape, golden);
    row.values[0].set(h.hausdorff);
    row.values[1].set(h.hausdorffForward);
    row.values[2].set(h.hausdorffBack);
    row.status = h.status;
    if (wants(3, 5) || (!std::isnan(max_) && wants(columns_.size() - 2, columns_.size() - 2)))
      deviation(shape, golden, row);
    if (wants(kFrechet, kFrechet)) frechet(record, row);
    if (std::isnan(max_)) return;
    answer.isGood = h.hausdorff <= max_;
    row.values[columns_.size() - 1].set(answer.isGood ? 1.0 : 0.0);
  }

  void frechet(const gxRecord& record, Row& row) const {
    const gxFrechet f = gfFrechet(outlineOf(record), outlineOf(golden_));
    row.values[kFrechet].set(f.frechet);
    if (row.status == gxStatus::eOk) row.status = f.status;
  }

  void deviation(const gxBorders& shape, const gxBorders& golden, Row& row) const {
    gxDeviationOptions how;
    how.spacing = step_;
    if (!std::isnan(max_)) {
      how.lower = -max_;
      how.upper = max_;
    }
    const gxDeviation d = gfDeviation(shape, golden, how);
    row.values[3].set(d.deviationMax);
    row.values[4].set(d.deviationMin);
    row.values[5].set(d.deviationRms);
    if (!std::isnan(max_)) row.values[columns_.size() - 2].set(d.outOfTolerance);
    if (row.status == gxStatus::eOk) row.status = d.status;
  }

  gxRecord golden_;
  double max_;
  double step_;
  bool aligns_;
  gxAlignOptions how_;
};

}  // namespace

std::unique_ptr<Command> makeCompare(const Options& options) {
  if (options.command != "compare") return nullptr;
  return std::make_unique<Compare>(options);
}
