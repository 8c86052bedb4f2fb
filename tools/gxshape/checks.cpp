// check: what is to be said against a shape.
#include "command.h"

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

}  // namespace

std::unique_ptr<Command> makeChecks(const Options& options) {
  if (options.command == "check") return std::make_unique<Check>(options);
  return nullptr;
}
