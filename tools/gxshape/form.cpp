// form: how far points are from round, straight, parallel, or a nominal outline.
#include "command.h"

#include <gauge/form.h>
#include <io/json.h>

#include <cmath>

namespace {

gxFormReference referenceOf(const Options& options, gxFormReference ownDefault) {
  const std::string& name = options.reference;
  if (name.empty()) return ownDefault;
  if (name == "least-squares") return gxFormReference::eLeastSquares;
  if (name == "minimum-zone") return gxFormReference::eMinimumZone;
  if (name == "circumscribed") return gxFormReference::eMinimumCircumscribed;
  if (name == "inscribed") return gxFormReference::eMaximumInscribed;
  throw UsageError{"--reference: least-squares, minimum-zone, circumscribed or inscribed, not '" + name +
                   "'"};
}

const char* nameOf(gxFormReference reference) {
  switch (reference) {
    case gxFormReference::eLeastSquares: return "least-squares";
    case gxFormReference::eMinimumZone: return "minimum-zone";
    case gxFormReference::eMinimumCircumscribed: return "circumscribed";
    case gxFormReference::eMaximumInscribed: return "inscribed";
  }
  return "";
}

std::string listOf(const std::vector<long>& numbers) {
  std::string out = "[";
  for (const long number : numbers) out += (out.size() > 1 ? "," : "") + std::to_string(number);
  return out + ']';
}

// What all kinds share: the limit, whose column comes last.
class Form : public Command {
 public:
  explicit Form(const Options& options) : max_(options.max) {}

 protected:
  void limitColumn() {
    if (!std::isnan(max_)) columns_.push_back({"within", Type::eBool});
  }
  // The first column is the error.
  Row& addRow(Answer& answer, gxStatus status, double error) const {
    Row& row = answer.addRow(columns_.size());
    row.status = status;
    row.values[0].set(error);
    return row;
  }
  void judge(Row& row, Answer& answer) const {
    if (std::isnan(max_)) return;
    answer.isGood = row.values[0].number[0] <= max_;
    row.values[columns_.size() - 1].set(answer.isGood ? 1.0 : 0.0);
  }

 private:
  double max_;
};

class Roundness final : public Form {
 public:
  explicit Roundness(const Options& options)
      : Form(options), reference_(referenceOf(options, gxFormReference::eMinimumZone)) {
    columns_ = {{"roundness", Type::eNumber},    {"centre", Type::ePoint},
                {"outer_radius", Type::eNumber}, {"inner_radius", Type::eNumber},
                {"radius", Type::eNumber},       {"peak", Type::eNumber},
                {"valley", Type::eNumber},       {"rms", Type::eNumber},
                {"reference", Type::eText},      {"supports", Type::eJson}};
    limitColumn();
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    const gxRoundness r = gfRoundness(record.points, reference_);
    Row& row = addRow(answer, r.status, r.roundness);
    row.values[1].set(r.centre);
    row.set(2, {r.outerRadius, r.innerRadius, r.radius, r.peak, r.valley, r.rms});
    row.values[8].text = nameOf(r.reference);
    row.values[9].text =
        "{\"outer\":" + listOf(r.outerSupports) + ",\"inner\":" + listOf(r.innerSupports) + '}';
    judge(row, answer);
  }

 private:
  gxFormReference reference_;
};

class Straightness final : public Form {
 public:
  explicit Straightness(const Options& options)
      : Form(options), reference_(referenceOf(options, gxFormReference::eMinimumZone)) {
    columns_ = {{"straightness", Type::eNumber}, {"point", Type::ePoint},   {"angle", Type::eAngle},
                {"peak", Type::eNumber},         {"valley", Type::eNumber}, {"rms", Type::eNumber},
                {"reference", Type::eText},      {"supports", Type::eJson}};
    limitColumn();
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    const gxStraightness s = gfStraightness(record.points, reference_);
    Row& row = addRow(answer, s.status, s.straightness);
    row.values[1].set(s.point);
    row.set(2, {s.angle, s.peak, s.valley, s.rms});
    row.values[6].text = nameOf(s.reference);
    row.values[7].text = listOf(s.supports);
    judge(row, answer);
  }

 private:
  gxFormReference reference_;
};

// Against a datum: parallelism, or the angle alone.
class Parallelism final : public Form {
 public:
  explicit Parallelism(const Options& options)
      : Form(options), anglesOnly_(options.kind == "flat-angle") {
    reference_ = referenceOf(
        options, anglesOnly_ ? gxFormReference::eLeastSquares : gxFormReference::eMinimumZone);
    if (options.datum.empty()) throw UsageError{"form: " + options.kind + " to what? --datum FILE"};
    datum_ = firstRecordOf(options.datum, options);
    if (!anglesOnly_) columns_.push_back({"parallelism", Type::eNumber});
    columns_.push_back({"flat_angle", Type::eAngle});
    limitColumn();
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    if (anglesOnly_) {
      const gxFlatAngle angle = gfFlatAngle(record.points, datum_.points, reference_);
      judge(addRow(answer, angle.status, angle.flatAngle), answer);
    } else {
      const gxParallelism p = gfParallelism(record.points, datum_.points, reference_);
      Row& row = addRow(answer, p.status, p.parallelism);
      row.values[1].set(p.flatAngle);
      judge(row, answer);
    }
  }

 private:
  bool anglesOnly_;
  gxFormReference reference_;
  gxRecord datum_;
};

class Profile final : public Form {
 public:
  explicit Profile(const Options& options) : Form(options), bestFit_(options.align == "rigid") {
    if (options.golden.empty()) throw UsageError{"form: profile of which outline? --golden FILE"};
    if (options.align != "none" && !bestFit_)
      throw UsageError{"--align: none or rigid for a profile, not '" + options.align + "'"};
    golden_ = firstRecordOf(options.golden, options);
    columns_ = {{"profile", Type::eNumber},
                {"peak", Type::eNumber},
                {"valley", Type::eNumber},
                {"worst", Type::ePlace}};
    limitColumn();
  }

  void answer(const gxRecord& record, Answer& answer) const override {
    const gxProfile p = gfProfile(bordersOf(record), bordersOf(golden_), bestFit_);
    Row& row = addRow(answer, p.status, p.profile);
    row.values[1].set(p.peak);
    row.values[2].set(p.valley);
    row.values[3].place = p.worst;
    judge(row, answer);
  }

 private:
  bool bestFit_;
  gxRecord golden_;
};

}  // namespace

std::unique_ptr<Command> makeForm(const Options& options) {
  if (options.command != "form") return nullptr;
  const std::string& kind = options.kind;
  if (kind == "roundness") return std::make_unique<Roundness>(options);
  if (kind == "straightness") return std::make_unique<Straightness>(options);
  if (kind == "parallelism" || kind == "flat-angle") return std::make_unique<Parallelism>(options);
  if (kind == "profile") return std::make_unique<Profile>(options);
  throw UsageError{
      kind.empty()
          ? "form: which error? --kind roundness, straightness, parallelism, flat-angle or profile"
          : "form: --kind is roundness, straightness, parallelism, flat-angle or profile, not '" + kind +
                "'"};
}
