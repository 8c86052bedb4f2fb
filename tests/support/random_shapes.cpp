// Random numbers are those of SplitMix64, begun anew for each round from seed and round number, so
// that a failing round repeats without those before it, on every machine.
#include <support/random_shapes.h>
#include <velstd/angle.h>
#include <velstd/matrix.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <limits>

namespace {

using Points = std::vector<gxVector<2>>;

constexpr double kPi = 3.141592653589793;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::uint64_t kSoakFactor = 50;

// The rounds that a soak goes on to for so many seconds, in all tests but those of a handful of costly rounds.
constexpr std::uint64_t kSoakRounds = 100'000;
constexpr int kHandful = 50;
constexpr std::uint64_t kSoakSeconds = 600;

double processorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

std::uint64_t mixed(std::uint64_t z) {
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31);
}

std::uint64_t hashed(const std::string& text) {  // FNV-1a
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  return hash % 1'000'000'000U;  // short enough to be typed
}

// The value of an environment variable as a number; `otherwise` where it is missing or not one.
std::uint64_t environment(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  if (text == nullptr) return otherwise;
  char* end = nullptr;
  const unsigned long long value = std::strtoull(text, &end, 10);
  return end == text ? otherwise : value;
}

// Sanitizers look for faults of memory, at ten to thirty times the time; rare differences are the affair of the
// plain builds.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#  if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kSanitized = true;
#  else
constexpr bool kSanitized = false;
#  endif
#else
constexpr bool kSanitized = false;
#endif

std::uint64_t fewerWhereSanitized(std::uint64_t rounds) {
  constexpr std::uint64_t kKept = 100;
  return kSanitized && rounds > kKept ? kKept + (rounds - kKept) / 10 : rounds;
}

gxVector<2> polar(const gxVector<2>& center, double radius, double angle) {
  return {center.x() + radius * std::cos(angle), center.y() + radius * std::sin(angle)};
}

}  // namespace

RandomShapes::RandomShapes(const std::string& tag, int rounds)
    : tag_(tag), rounds_(static_cast<std::uint64_t>(rounds)) {
  const std::uint64_t soak = environment("GXSHAPE_SOAK", 0);
  const auto clock = std::chrono::system_clock::now().time_since_epoch().count();
  seed_ = soak > 0 ? hashed(tag + std::to_string(clock)) : hashed(tag);
  seed_ = environment("GXSHAPE_SEED", seed_);
  if (soak > 0) {
    leastRounds_ = soak * kSoakFactor * rounds_;
    rounds_ = std::max(leastRounds_, rounds < kHandful ? 0 : soak * kSoakRounds);
    until_ = processorSeconds() +
             static_cast<double>(soak * environment("GXSHAPE_SOAK_SECONDS", kSoakSeconds));
  } else {
    rounds_ = fewerWhereSanitized(rounds_);
    if (rounds > 0) share_ = static_cast<double>(rounds_) / rounds;
  }
  const std::uint64_t alone = environment("GXSHAPE_ROUND", std::numeric_limits<std::uint64_t>::max());
  if (alone != std::numeric_limits<std::uint64_t>::max()) {
    round_ = alone;
    rounds_ = alone + 1;
    leastRounds_ = rounds_;
  }
  std::cout << "[ random   ] " << tag_ << ": GXSHAPE_SEED=" << seed_ << ", " << rounds_ - round_
            << " rounds\n";
}

bool RandomShapes::next() {
  if (round_ >= rounds_) return false;
  if (leastRounds_ != 0 && round_ >= leastRounds_ && processorSeconds() > until_) {
    std::cout << "[ random   ] " << tag_ << ": its time is over after " << round_ << " rounds\n";
    rounds_ = round_;
    return false;
  }
  begin(round_++);
  return true;
}

void RandomShapes::begin(std::uint64_t round) {
  state_ = mixed(seed_ + 0x9e3779b97f4a7c15U) ^ mixed(round + 1);
}

std::string RandomShapes::trace() const {
  return tag_ + ": GXSHAPE_SEED=" + std::to_string(seed_) +
         " GXSHAPE_ROUND=" + std::to_string(round_ - 1);
}

// ---- Numbers ------------------------------------------------------------------------------------

std::uint64_t RandomShapes::bits() {
  state_ += 0x9e3779b97f4a7c15U;
  return mixed(state_);
}

double RandomShapes::uniform(double low, double high) {
  const double unit = static_cast<double>(bits() >> 11) * 0x1p-53;
  return std::min(low + (high - low) * unit, std::nextafter(high, low));
}

int RandomShapes::integer(int low, int high) {
  return low + static_cast<int>(bits() % static_cast<std::uint64_t>(high - low + 1));
}

bool RandomShapes::chance(double probability) {
  return uniform(0.0, 1.0) < probability;
}

// ---- Outlines -----------------------------------------------------------------------------------

gxVector<2> RandomShapes::inSquare(double half) {
  const double x = uniform(-half, half);
  return {x, uniform(-half, half)};
}

Points RandomShapes::star(int count, const gxVector<2>& center, double least, double most) {
  std::vector<double> angles;
  for (int i = 0; i < count; ++i) {
    angles.push_back((i + uniform(0.1, 0.9)) * 2.0 * kPi / std::max(count, 1));
  }
  Points points;
  for (const double angle : angles) points.push_back(polar(center, uniform(least, most), angle));
  return points;
}

Points RandomShapes::walk(int count) {
  Points points{inSquare(2.0)};
  double heading = uniform(-kPi, kPi);
  while (static_cast<int>(points.size()) < count) {
    heading += uniform(-1.2, 1.2);
    points.push_back(polar(points.back(), uniform(0.5, 3.0), heading));
  }
  points.resize(static_cast<std::size_t>(std::max(count, 0)));
  return points;
}

Points RandomShapes::comb(int teeth) {
  Points points;
  for (int i = 0; i < teeth; ++i) {
    const double depth = uniform(3.0, 8.0);
    points.emplace_back(i, 0.0);
    points.emplace_back(i + 0.25, depth);
    points.emplace_back(i + 0.75, depth);
  }
  points.emplace_back(teeth, 0.0);
  points.emplace_back(teeth, -1.0);
  points.emplace_back(0.0, -1.0);
  return points;
}

Points RandomShapes::spiral(int count) {
  const int half = std::max(count / 2, 3);
  const double turns = uniform(1.0, 3.0);
  Points points;
  for (int i = 0; i < half; ++i) {
    const double t = static_cast<double>(i) / half;
    points.push_back(polar({0.0, 0.0}, 1.0 + 3.0 * turns * t, 2.0 * kPi * turns * t));
  }
  for (int i = half - 1; i >= 0; --i) {
    const double t = static_cast<double>(i) / half;
    points.push_back(polar({0.0, 0.0}, 2.0 + 3.0 * turns * t, 2.0 * kPi * turns * t));
  }
  return points;
}

void RandomShapes::repeatSome(Points& points) {
  constexpr double kApart[] = {0.0, 5e-16, 1e-15, 1e-9, 9e-7, 1e-6, 2e-6};
  for (int times = integer(1, 3); times > 0 && points.size() > 1; --times) {
    const auto from = static_cast<std::size_t>(integer(0, static_cast<int>(points.size()) - 1));
    const auto to = chance(0.5) ? from : static_cast<std::size_t>(integer(0, static_cast<int>(from)));
    const double apart = kApart[integer(0, 6)];
    const gxVector<2> copy = points[from] + gxVector<2>(apart, chance(0.5) ? apart : 0.0);
    points.insert(points.begin() + static_cast<std::ptrdiff_t>(to), copy);
    points.pop_back();
  }
}

void RandomShapes::spoilSome(Points& points) {
  constexpr double kBad[] = {kNaN, kInfinity, -kInfinity, 1e308, -1e308};
  for (int times = integer(1, 3); times > 0 && !points.empty(); --times) {
    gxVector<2>& point =
        points[static_cast<std::size_t>(integer(0, static_cast<int>(points.size()) - 1))];
    const double bad = kBad[integer(0, 4)];
    point = chance(0.5) ? gxVector<2>(bad, point.y()) : gxVector<2>(point.x(), bad);
    if (chance(0.2)) point = {bad, bad};
  }
}

Points RandomShapes::outline(OutlineKind kind, int count) {
  const gxVector<2> center = inSquare(3.0);
  Points points;
  switch (kind) {
    case OutlineKind::eCloud:
      for (int i = 0; i < count; ++i) points.push_back(inSquare(10.0));
      break;
    case OutlineKind::eStar: points = star(count, center, 2.0, 7.0); break;
    case OutlineKind::eRegular: {
      const double phase = chance(0.5) ? 0.0 : uniform(0.0, kPi);
      for (int i = 0; i < count; ++i)
        points.push_back(polar(center, 5.0, phase + i * 2.0 * kPi / count));
      break;
    }
    case OutlineKind::ePentagram: {
      const int corners = std::max(count, 3);
      const int step = integer(2, 3);
      const double phase = chance(0.5) ? 0.0 : uniform(0.0, kPi);
      for (int i = 0; i < count; ++i) {
        points.push_back(polar(center, 5.0, phase + i * step * 2.0 * kPi / corners));
      }
      break;
    }
    case OutlineKind::eTolerance: {
      constexpr double kSpacing[] = {2.5e-7, 5e-7, 1e-6, 2e-6, 1e-5};
      points = outline(OutlineKind::eLattice, count);
      const double spacing = kSpacing[integer(0, 4)];
      for (gxVector<2>& p : points) p = p * spacing;
      break;
    }
    case OutlineKind::eWalk: points = walk(count); break;
    case OutlineKind::eLattice: {
      const int half = integer(2, 6);
      for (int i = 0; i < count; ++i) {
        const int x = integer(-half, half);
        points.emplace_back(x, integer(-half, half));
      }
      break;
    }
    case OutlineKind::eRepeated:
      points = star(count, center, 2.0, 7.0);
      repeatSome(points);
      break;
    case OutlineKind::eComb: points = comb(std::max(count / 3, 1)); break;
    case OutlineKind::eSpiral: points = spiral(count); break;
    case OutlineKind::eLine: {
      const gxVector<2> step = chance(0.4) ? gxVector<2>(1.0, 0.0) : inSquare(1.0);
      for (int i = 0; i < count; ++i) points.push_back(center + step * uniform(-9.0, 9.0));
      break;
    }
    case OutlineKind::eEqual: points.assign(static_cast<std::size_t>(count), center); break;
    case OutlineKind::eOutlier:
      points = star(count, center, 2.0, 7.0);
      if (!points.empty()) points[points.size() / 2] = inSquare(chance(0.5) ? 1e6 : 1e150);
      break;
    case OutlineKind::eFew:
      count = integer(0, 4);
      for (int i = 0; i < count; ++i) points.push_back(inSquare(5.0));
      break;
    case OutlineKind::eLarge: {
      const double size = chance(0.5) ? 1e308 : std::pow(10.0, uniform(100.0, 307.0));
      for (int i = 0; i < count; ++i) points.push_back(inSquare(1.0) * size);
      break;
    }
    case OutlineKind::eTiny: {
      const double size = chance(0.5) ? 5e-322 : std::pow(10.0, uniform(-300.0, -8.0));
      for (int i = 0; i < count; ++i) points.push_back(inSquare(1.0) * size);
      break;
    }
    case OutlineKind::eNotFinite:
      points = star(count, center, 2.0, 7.0);
      spoilSome(points);
      break;
    case OutlineKind::eCount: break;
  }
  return points;
}

int RandomShapes::someCount() {
  if (chance(0.25)) return integer(65, chance(0.1) ? 400 : 130);  // enough for the forms for many points
  return integer(2, chance(0.2) ? 70 : 12);
}

Points RandomShapes::outline() {
  const auto kind = static_cast<OutlineKind>(integer(0, static_cast<int>(OutlineKind::eCount) - 1));
  return placed(outline(kind, someCount()));
}

Points RandomShapes::finiteOutline() {
  const auto kind = static_cast<OutlineKind>(integer(0, static_cast<int>(OutlineKind::eEqual)));
  return placed(outline(kind, someCount()));
}

Points RandomShapes::placed(const Points& points) {
  if (chance(0.6)) return points;
  return mapped(similarity(), points);
}

OutlineWithHoles RandomShapes::outlineWithHoles() {
  OutlineWithHoles result;
  const gxVector<2> center = inSquare(20.0);
  result.outline = star(integer(3, 20), center, 8.0, 12.0);
  for (int i = integer(0, 4); i > 0; --i) {  // apart: each in a disc of its own
    result.holes.push_back(star(integer(3, 9), polar(center, 2.0, i * kPi / 2.0), 0.3, 1.3));
    if (chance(0.5)) result.holes.back() = reversed(result.holes.back());
  }
  if (result.outline.size() < 8) result.outline = star(16, center, 8.0, 12.0);
  if (chance(0.5)) result.outline = reversed(result.outline);
  return result;
}

// ---- Queries ------------------------------------------------------------------------------------

gxVector<2> RandomShapes::pointNear(const Points& outline) {
  constexpr double kApart[] = {0.0, 1e-15, 1e-9, 5e-7, 1e-6, 2e-6, 1e-3, 0.1};
  if (outline.empty() || chance(0.02)) return inSquare(10.0);
  if (chance(0.01)) return {chance(0.5) ? kNaN : kInfinity, uniform(-1.0, 1.0)};
  const auto at = static_cast<std::size_t>(integer(0, static_cast<int>(outline.size()) - 1));
  const gxVector<2> a = outline[at];
  const gxVector<2> b = outline[(at + 1) % outline.size()];
  const double apart = kApart[integer(0, 7)];
  const gxVector<2> aside = polar({0.0, 0.0}, apart, uniform(-kPi, kPi));
  switch (integer(0, 5)) {
    case 0: return a;
    case 1: return a + aside;
    case 2: return (a + b) * 0.5;
    case 3: return a + (b - a) * uniform(0.0, 1.0) + aside;
    case 4: {
      const auto other = static_cast<std::size_t>(integer(0, static_cast<int>(outline.size()) - 1));
      return a + (outline[other] - a) * uniform(-0.5, 1.5);
    }
    default: return a + inSquare(chance(0.8) ? 10.0 : 1e4);
  }
}

gxLineSeg RandomShapes::segmentNear(const Points& outline) {
  const gxVector<2> from = pointNear(outline);
  if (chance(0.6) || outline.size() < 2) return {from, pointNear(outline)};
  const auto at = static_cast<std::size_t>(integer(0, static_cast<int>(outline.size()) - 1));
  const gxVector<2> a = outline[at];
  const gxVector<2> b = outline[(at + 1) % outline.size()];
  switch (integer(0, 3)) {
    case 0: return {a, b};
    case 1:  // on the edge's line
      return {a + (b - a) * uniform(-1.0, 1.0), a + (b - a) * uniform(0.0, 2.0)};
    case 2:  // parallel
      return {from, from + (b - a)};
    default: return {from, from};
  }
}

gxXform<2> RandomShapes::similarity() {
  const double scale = chance(0.5) ? 1.0 : std::pow(10.0, uniform(-3.0, 4.0));
  const gxRadian turn(chance(0.4) ? 0.0 : uniform(-kPi, kPi));
  const gxMatrix<2> matrix(turn, turn, scale, chance(0.8) ? scale : -scale);
  const gxVector<2> move = chance(0.3) ? gxVector<2>() : inSquare(chance(0.8) ? 100.0 : 1e7);
  return {matrix, move};
}

gxXform<2> RandomShapes::transform() {
  switch (integer(0, 7)) {
    case 0: return {};
    case 1: return {{1.0, 0.0, 0.0, 1.0}, inSquare(10.0)};
    case 2:
    case 3: return similarity();
    case 4:  // along y: told from the identity by no key
      return {{1.0, 0.0, uniform(-1.0, 1.0), 1.0}, {}};
    case 5: {  // nearly the identity
      const double off = uniform(-2e-15, 2e-15);
      return {{1.0, off, -off, 1.0}, {}};
    }
    case 6: {
      const double x = uniform(-2.0, 2.0);
      const double y = uniform(-2.0, 2.0);
      return {{x, y, x, y}, inSquare(1.0)};
    }
    default: {
      const double bad = chance(0.2) ? kNaN : uniform(-2.0, 2.0);
      const double m01 = uniform(-2.0, 2.0);
      const double m10 = uniform(-2.0, 2.0);
      return {{uniform(-2.0, 2.0), m01, m10, uniform(-2.0, 2.0)}, {bad, uniform(-9.0, 9.0)}};
    }
  }
}

double RandomShapes::angle() {
  const double axis = integer(-8, 8) * kPi / 2.0;
  switch (integer(0, 3)) {
    case 0: return axis;
    case 1: return axis + uniform(-3e-15, 3e-15);
    case 2: return chance(0.05) ? kNaN : uniform(-10.0, 10.0);
    default: return integer(-6, 6) * kPi / 4.0;
  }
}

// ---- The same shape, told otherwise ---------------------------------------------------------------

Points reversed(const Points& points) {
  Points result = points;
  if (result.size() > 1) std::reverse(result.begin() + 1, result.end());
  return result;
}

Points rotatedStart(const Points& points, std::size_t start) {
  Points result = points;
  if (!result.empty()) {
    std::rotate(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(start % result.size()),
                result.end());
  }
  return result;
}

Points mapped(const gxXform<2>& xform, const Points& points) {
  Points result;
  result.reserve(points.size());
  for (const gxVector<2>& point : points) result.push_back(xform * point);
  return result;
}
