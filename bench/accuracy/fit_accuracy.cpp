// How near the fits come to the truth, beside those of OpenCV, on the same generated arcs.
//
//   fit_accuracy                  prints the tables
//   fit_accuracy docs/accuracy.md puts them into the file, between the two marker lines
//
// Each row is one situation: so many points, equally spaced in the parameter angle, on an arc that
// starts anywhere on an ellipse of larger semi-axis 100, turned by any angle, its centre within
// 300 of the origin; each coordinate carries Gaussian noise. OpenCV computes on single-precision
// points, so the points are rounded to float first, for every method alike.
//
// Errors are given in percent of the larger semi-axis (centre: distance; radii: the larger of the two
// differences) and in degrees (direction of the longer axis). A fit fails when it throws, or its
// result is not finite, or its centre or a radius is off by more than two larger semi-axes. Failures
// count as infinite errors in the medians and percentiles.
#include <velstd/circle_fit.h>
#include <velstd/ellipse_fit.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <opencv2/imgproc.hpp>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kLarger = 100.0;
constexpr int kTrials = 1500;

struct Situation {
  double arc;    // degrees
  double ratio;  // larger to smaller semi-axis
  double noise;  // standard deviation, percent of the smaller semi-axis
  int count;
};

struct Answer {
  double x, y, a, b, angle;  // a >= b
};

using Points = std::vector<cv::Point2f>;
using Method = std::function<Answer(const Points&)>;

struct Column {
  std::string name;
  Method run;
};

std::vector<gxVector<2>> ours(const Points& points) {
  std::vector<gxVector<2>> result;
  for (const auto& p : points) result.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y));
  return result;
}

Answer ourEllipse(const Points& points) {
  gxEllipseFitResults results;
  gfEllipseFit({gxEllipseFitDefs::eFitAll, gxRadian(0.0), 0, HUGE_VAL}, ours(points), results);
  const auto& g = results.ellipse().geom();
  return {g.center.x(), g.center.y(), g.radii.x(), g.radii.y(), g.rotation.toDouble()};
}

Answer ourCircle(const Points& points) {
  gxCircleFitResults results;
  gfCircleFit({gxCircleFitDefs::eFitAll, 1.0, 0, HUGE_VAL}, ours(points), results);
  const auto& c = results.circle();
  return {c.center().x(), c.center().y(), c.radius(), c.radius(), 0.0};
}

Answer fromBox(const cv::RotatedRect& box) {
  Answer answer{static_cast<double>(box.center.x), static_cast<double>(box.center.y),
                static_cast<double>(box.size.width) / 2.0, static_cast<double>(box.size.height) / 2.0,
                static_cast<double>(box.angle) * kPi / 180.0};
  if (answer.a < answer.b) {
    std::swap(answer.a, answer.b);
    answer.angle += kPi / 2.0;
  }
  return answer;
}

Answer roundBox(const cv::RotatedRect& box) {
  Answer answer = fromBox(box);
  answer.a = answer.b = std::sqrt(answer.a * answer.b);
  return answer;
}

// The linear least squares circle, x² + y² = 2 u x + 2 v y + w, as users of OpenCV write it.
Answer linearCircle(const Points& points) {
  const int n = static_cast<int>(points.size());
  cv::Mat left(n, 3, CV_64F);
  cv::Mat right(n, 1, CV_64F);
  double mx = 0.0;
  double my = 0.0;
  for (const auto& p : points) {
    mx += static_cast<double>(p.x) / n;
    my += static_cast<double>(p.y) / n;
  }
  for (int i = 0; i < n; ++i) {
    const auto& p = points[static_cast<std::size_t>(i)];
    const double x = static_cast<double>(p.x) - mx;
    const double y = static_cast<double>(p.y) - my;
    left.at<double>(i, 0) = 2.0 * x;
    left.at<double>(i, 1) = 2.0 * y;
    left.at<double>(i, 2) = 1.0;
    right.at<double>(i, 0) = x * x + y * y;
  }
  cv::Mat solution;
  cv::solve(left, right, solution, cv::DECOMP_SVD);
  const double u = solution.at<double>(0);
  const double v = solution.at<double>(1);
  const double r = std::sqrt(solution.at<double>(2) + u * u + v * v);
  return {mx + u, my + v, r, r, 0.0};
}

Answer enclosingCircle(const Points& points) {
  cv::Point2f center;
  float radius = 0.0F;
  cv::minEnclosingCircle(points, center, radius);
  const auto r = static_cast<double>(radius);
  return {static_cast<double>(center.x), static_cast<double>(center.y), r, r, 0.0};
}

// ---- Errors ----------------------------------------------------------------------------------------

constexpr std::size_t kCenter = 0;
constexpr std::size_t kRadii = 1;
constexpr std::size_t kAngle = 2;
using Errors = std::array<double, 3>;

std::optional<Errors> errors(const Answer& truth, const Answer& answer) {
  const double center = std::hypot(answer.x - truth.x, answer.y - truth.y);
  const double radii = std::max(std::fabs(answer.a - truth.a), std::fabs(answer.b - truth.b));
  const double angle = std::fabs(std::remainder(answer.angle - truth.angle, kPi));
  if (!(center <= 2.0 * truth.a) || !(radii <= 2.0 * truth.a) || !std::isfinite(angle))
    return std::nullopt;
  return Errors{100.0 * center / truth.a, 100.0 * radii / truth.a, 180.0 / kPi * angle};
}

struct Cell {
  std::array<std::vector<double>, 3> errors;
  int failures = 0;

  double percentile(std::size_t kind, double share) {
    auto& list = errors[kind];
    std::sort(list.begin(), list.end());
    return list[std::min(list.size() - 1,
                         static_cast<std::size_t>(share * static_cast<double>(list.size())))];
  }
};

std::vector<Cell> measure(const Situation& s, const std::vector<Column>& columns, unsigned seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  std::normal_distribution<double> normal;
  std::vector<Cell> cells(columns.size());
  for (int trial = 0; trial < kTrials; ++trial) {
    const Answer truth{300.0 * uniform(engine), 300.0 * uniform(engine), kLarger, kLarger / s.ratio,
                       kPi / 2.0 * uniform(engine)};
    const double start = kPi * uniform(engine);
    const double step = s.arc * kPi / 180.0 / (s.arc >= 360.0 ? s.count : s.count - 1);
    Points points;
    for (int i = 0; i < s.count; ++i) {
      const double t = start + step * i;
      const double u = truth.a * std::cos(t);
      const double v = truth.b * std::sin(t);
      const double sigma = truth.b * s.noise / 100.0;
      const double x =
          truth.x + u * std::cos(truth.angle) - v * std::sin(truth.angle) + sigma * normal(engine);
      const double y =
          truth.y + u * std::sin(truth.angle) + v * std::cos(truth.angle) + sigma * normal(engine);
      points.emplace_back(static_cast<float>(x), static_cast<float>(y));
    }
    for (std::size_t k = 0; k < columns.size(); ++k) {
      std::optional<Errors> found;
      try {
        found = errors(truth, columns[k].run(points));
      } catch (const std::exception&) {}
      if (!found) ++cells[k].failures;
      for (std::size_t kind = 0; kind < 3; ++kind) {
        cells[k].errors[kind].push_back(found ? (*found)[kind] : HUGE_VAL);
      }
    }
  }
  return cells;
}

// ---- Tables ----------------------------------------------------------------------------------------

std::string number(double value) {
  if (!std::isfinite(value)) return "fails";
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), value < 0.0995 ? "%.1e" : "%.3g", value);
  return text.data();
}

std::string nameOf(const Situation& s, bool withRatio) {
  std::ostringstream out;
  out << s.arc << "° | ";
  if (withRatio) out << s.ratio << " | ";
  out << s.noise << " % | " << s.count;
  return out.str();
}

// Prints one table for each kind of error and counts where the first column is behind another by
// more than two percent, which is about what the trials can tell.
void tables(std::ostream& out, const std::string& title, const std::vector<Situation>& situations,
            const std::vector<Column>& columns, bool ellipses) {
  std::vector<std::vector<Cell>> rows;
  unsigned seed = 1;
  for (const Situation& s : situations) rows.push_back(measure(s, columns, seed++));

  const std::array<std::string, 3> kinds = {"centre, % of the larger semi-axis",
                                            "radii, % of the larger semi-axis", "angle, degrees"};
  int behind = 0;
  int compared = 0;
  std::ostringstream where;
  const std::string head = ellipses ? "| arc | ratio | noise | points |" : "| arc | noise | points |";
  const std::string rule = ellipses ? "|--:|--:|--:|--:|" : "|--:|--:|--:|";
  for (std::size_t kind = 0; kind < (ellipses ? 3U : 2U); ++kind) {
    out << "\n"
        << title << ", error of the " << kinds[kind] << " (median / 95th percentile):\n\n"
        << head;
    for (const Column& c : columns) out << ' ' << c.name << " |";
    out << "\n" << rule;
    for (std::size_t k = 0; k < columns.size(); ++k) out << "--:|";
    out << "\n";
    for (std::size_t r = 0; r < rows.size(); ++r) {
      if (kind == kAngle && situations[r].ratio == 1.0) continue;
      out << "| " << nameOf(situations[r], ellipses) << " |";
      for (Cell& cell : rows[r]) {
        out << ' ' << number(cell.percentile(kind, 0.5)) << " / " << number(cell.percentile(kind, 0.95))
            << " |";
      }
      out << "\n";
      for (const double share : {0.5, 0.95}) {
        ++compared;
        const double mine = rows[r][0].percentile(kind, share);
        double best = HUGE_VAL;
        for (std::size_t k = 1; k < columns.size(); ++k)
          best = std::min(best, rows[r][k].percentile(kind, share));
        if (mine > 1.02 * best) {
          ++behind;
          where << "- " << kinds[kind] << ", " << (share < 0.9 ? "median" : "95th percentile") << ", "
                << situations[r].arc << "°, ratio " << situations[r].ratio << ", noise "
                << situations[r].noise << " %, " << situations[r].count << " points: " << number(mine)
                << " beside " << number(best) << "\n";
        }
      }
    }
  }
  out << "\n" << title << ", failures of " << kTrials << ":\n\n" << head;
  for (const Column& c : columns) out << ' ' << c.name << " |";
  out << "\n" << rule;
  for (std::size_t k = 0; k < columns.size(); ++k) out << "--:|";
  out << "\n";
  for (std::size_t r = 0; r < rows.size(); ++r) {
    out << "| " << nameOf(situations[r], ellipses) << " |";
    for (const Cell& cell : rows[r]) out << ' ' << cell.failures << " |";
    out << "\n";
    ++compared;
    for (std::size_t k = 1; k < columns.size(); ++k) {
      if (rows[r][0].failures > rows[r][k].failures) {
        ++behind;
        where << "- failures, " << situations[r].arc << "°, ratio " << situations[r].ratio << ", noise "
              << situations[r].noise << " %, " << situations[r].count
              << " points: " << rows[r][0].failures << " beside " << rows[r][k].failures << " ("
              << columns[k].name << ")\n";
        break;
      }
    }
  }
  out << "\n"
      << title << ": behind the best of the others by more than 2 % in " << behind << " of " << compared
      << " figures" << (behind > 0 ? ":\n\n" : ".\n") << where.str();
}

void allTables(std::ostream& out) {
  const std::vector<Situation> ellipses = {
      {360, 1.5, 0, 100},   {360, 1.5, 0.1, 100}, {360, 1.5, 1, 100},  {360, 1.5, 5, 100},
      {180, 1.5, 0.1, 100}, {180, 1.5, 1, 100},   {180, 1.5, 5, 100},  {90, 1.5, 0.1, 100},
      {90, 1.5, 1, 100},    {90, 1.5, 5, 100},    {60, 1.5, 0.1, 100}, {30, 1.5, 0, 100},
      {30, 1.5, 0.1, 100},  {30, 1.5, 0.01, 100}, {360, 1, 1, 100},    {360, 1, 5, 1000},
      {360, 3, 1, 100},     {180, 3, 1, 100},     {360, 10, 1, 100},   {180, 10, 1, 100},
      {360, 100, 1, 100},   {360, 100, 5, 1000},  {360, 2, 1, 6},      {360, 2, 1, 10},
      {360, 2, 1, 1000},    {360, 2, 1, 10000},   {180, 2, 1, 1000},   {90, 2, 1, 10000}};
  const std::vector<Column> ellipseColumns = {
      {"gxshape", ourEllipse},
      {"fitEllipse", [](const Points& p) { return fromBox(cv::fitEllipse(p)); }},
      {"fitEllipseAMS", [](const Points& p) { return fromBox(cv::fitEllipseAMS(p)); }},
      {"fitEllipseDirect", [](const Points& p) { return fromBox(cv::fitEllipseDirect(p)); }}};
  const std::vector<Situation> circles = {
      {360, 1, 0, 100},   {360, 1, 0.1, 100}, {360, 1, 1, 100}, {360, 1, 5, 100}, {180, 1, 1, 100},
      {180, 1, 5, 100},   {90, 1, 1, 100},    {90, 1, 5, 100},  {60, 1, 1, 100},  {60, 1, 5, 100},
      {30, 1, 0.1, 100},  {30, 1, 1, 100},    {30, 1, 5, 1000}, {360, 1, 1, 5},   {360, 1, 1, 10000},
      {180, 1, 5, 10000}, {90, 1, 5, 10000}};
  const std::vector<Column> circleColumns = {
      {"gxshape", ourCircle},
      {"linear, cv::solve", linearCircle},
      {"fitEllipse, mean radius", [](const Points& p) { return roundBox(cv::fitEllipse(p)); }},
      {"minEnclosingCircle", enclosingCircle}};
  tables(out, "Ellipse", ellipses, ellipseColumns, true);
  tables(out, "Circle", circles, circleColumns, false);
}

// Replaces what stands between the marker lines of a file.
int replaceIn(const std::string& path, const std::string& text) {
  std::ifstream in(path);
  const std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const std::string first = "<!-- fit_accuracy: begin -->\n";
  const std::string last = "<!-- fit_accuracy: end -->";
  const auto from = content.find(first);
  const auto to = content.find(last);
  if (from == std::string::npos || to == std::string::npos || to < from) {
    std::cerr << path << ": no marker lines\n";
    return 1;
  }
  std::ofstream(path) << content.substr(0, from + first.size()) << text << "\n" << content.substr(to);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::ostringstream out;
  allTables(out);
  if (argc > 1) return replaceIn(argv[1], out.str());
  std::cout << out.str();
  return 0;
}
