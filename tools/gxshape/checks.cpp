// check and compare: what is to be said against a shape.
#include "command.h"

#include <gauge/deviation.h>
#include <gauge/hausdorff.h>
#include <overlay/check.h>

#include <io/json.h>
#include <io/number_writer.h>

#include <cmath>

namespace {

using Kind = gxRecord::Kind;

void appendPoint(const gxVector<2>& p, std::string& out) {
  if (!std::isfinite(p.x()) || !std::isfinite(p.y())) {
    out += "null";
    return;
  }
  out += '[';
  gfAppendNumber(p.x(), out);
  out += ',';
  gfAppendNumber(p.y(), out);
  out += ']';
}

void appendPair(const std::array<long, 2>& pair, std::string& out) {
  out += '[' + std::to_string(pair[0]) + ',' + std::to_string(pair[1]) + ']';
}

std::string jsonOf(const std::vector<gxProblem>& problems, bool isSet) {
  std::string out = "[";
  for (const auto& problem : problems) {
    if (out.size() > 1) out += ',';
    out += "{\"kind\":\"" + gfName(problem.kind) + "\",\"point\":";
    appendPoint(problem.point, out);
    out += ",\"edges\":";
    appendPair(problem.edges, out);
    out += ",\"rings\":";
    appendPair(problem.rings, out);
    if (isSet) {
      out += ",\"regions\":";
      appendPair(problem.regions, out);
    }
    out += ",\"sentence\":";
    gfAppendJsonString(problem.sentence, out);
    out += '}';
  }
  return out + ']';
}

class Check final : public Command {
 public:
  explicit Check(const Options& options) {
    columns_ = {{"valid", Type::eBool}, {"problems", Type::eJson}};
    // Files have no direction that counts, so none is wrong.
    how_.anyDirection = true;
    how_.atMost = std::isnan(options.max) ? 100 : static_cast<std::size_t>(options.max);
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    Row& row = answer.addRow(columns_.size());
    std::vector<gxProblem> problems;
    bool valid = true;
    if (record.kind == Kind::eSet)
      problems = gfCheck(record.toSet(), how_);
    else if (record.kind == Kind::eRegion)
      problems = gfCheck(record.toRegion(), how_);
    else
      valid = allFinite(record, row);
    valid = valid && problems.empty();
    row.values[0].set(valid ? 1.0 : 0.0);
    row.values[1].text = jsonOf(problems, record.kind == Kind::eSet);
    answer.isGood = valid;
  }

 private:
  // Lines and points have nothing else that could be wrong.
  static bool allFinite(const gxRecord& record, Row& row) {
    for (const auto& p : record.points) {
      if (std::isfinite(p.x()) && std::isfinite(p.y())) continue;
      row.status = gxStatus::eNotFinite;
      return false;
    }
    return true;
  }

  gxCheckOptions how_;
};

class Compare final : public Command {
 public:
  explicit Compare(const Options& options) : max_(options.max), step_(options.step) {
    if (options.golden.empty()) throw UsageError{"compare: with which outline? --golden FILE"};
    golden_ = firstRecordOf(options.golden, options);
    columns_ = {{"hausdorff", Type::eNumber},      {"hausdorff_forward", Type::eNumber},
                {"hausdorff_back", Type::eNumber}, {"deviation_max", Type::eNumber},
                {"deviation_min", Type::eNumber},  {"deviation_rms", Type::eNumber}};
    if (std::isnan(max_)) return;
    columns_.push_back({"out_of_tolerance", Type::eNumber});
    columns_.push_back({"within", Type::eBool});
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    Row& row = answer.addRow(columns_.size());
    const gxBorders shape = bordersOf(record);
    const gxBorders golden = bordersOf(golden_);
    const gxHausdorff h = gfHausdorff(shape, golden);
    row.values[0].set(h.hausdorff);
    row.values[1].set(h.hausdorffForward);
    row.values[2].set(h.hausdorffBack);
    row.status = h.status;
    if (wants(3, columns_.size() > 6 ? 6 : 5)) deviation(shape, golden, row);
    if (std::isnan(max_)) return;
    answer.isGood = h.hausdorff <= max_;
    row.values[7].set(answer.isGood ? 1.0 : 0.0);
  }

 private:
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
    if (columns_.size() > 6) row.values[6].set(d.outOfTolerance);
    if (row.status == gxStatus::eOk) row.status = d.status;
  }

  static gxBorders bordersOf(const gxRecord& record) {
    std::vector<gxBorders::Ring> rings;
    for (std::size_t r = 0; r < record.ringCount(); ++r)
      rings.push_back({record.ring(r), record.kind != Kind::eOpen});
    return gxBorders(std::move(rings));
  }

  gxRecord golden_;
  double max_;
  double step_;
};

}  // namespace

std::unique_ptr<Command> makeChecks(const Options& options) {
  if (options.command == "check") return std::make_unique<Check>(options);
  if (options.command == "compare") return std::make_unique<Compare>(options);
  return nullptr;
}
