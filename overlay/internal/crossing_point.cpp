// A crossing, correctly rounded, in two steps.
//
//  1. In double-double arithmetic (Dekker, "A floating-point technique for extending the available
//     precision", 1971): with r = b − a and q = d − c the crossing is a + r · ((c − a) × q) / (r × q).  The
//     differences are exact; everything behind them has a relative error of a few 2^-104, and a bound on
//     it is carried along.  Where the result less the bound and the result plus the bound round to the
//     same double, that is the answer.
//  2. Else the exact sign of 2x − p − q tells whether the crossing lies before or behind the middle
//     between two neighbouring doubles p and q: of (2a.x − p − q) (r × q) + 2 ((c − a) × q) r.x, a sum of 36
//     products of three coordinates.  Beginning at the guess of step 1, steps of doubling width and then
//     halving bracket the answer.
//
// No fused multiply-add is used: without hardware it is a slow call, and with it nothing would be gained
// but a third of step 1.  Plain doubles will not do: near parallel edges they are off by the reciprocal of
// the angle, and the result would hang on the order of the arguments.
#include <overlay/internal/crossing_point.h>
#include <overlay/internal/long_sum.h>
#include <velstd/orientation.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

// ---- Double-double ------------------------------------------------------------------------------

struct Double2 {
  double hi;
  double lo;
};

Double2 fastSum(double a, double b) {  // |a| >= |b|, or a = 0
  const double s = a + b;
  return {s, b - (s - a)};
}

Double2 sum(double a, double b) {
  const double s = a + b;
  const double t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}

Double2 product(double a, double b) {
  constexpr double kSplit = 134217729.0;  // 2^27 + 1
  const double ca = kSplit * a;
  const double cb = kSplit * b;
  const double ah = ca - (ca - a);
  const double bh = cb - (cb - b);
  const double al = a - ah;
  const double bl = b - bh;
  const double p = a * b;
  return {p, al * bl - (((p - ah * bh) - al * bh) - ah * bl)};
}

Double2 operator*(const Double2& a, const Double2& b) {
  Double2 p = product(a.hi, b.hi);
  p.lo += a.hi * b.lo + a.lo * b.hi;
  return fastSum(p.hi, p.lo);
}

Double2 operator-(const Double2& a, const Double2& b) {
  Double2 s = sum(a.hi, -b.hi);
  const Double2 t = sum(a.lo, -b.lo);
  s.lo += t.hi;
  s = fastSum(s.hi, s.lo);
  s.lo += t.lo;
  return fastSum(s.hi, s.lo);
}

Double2 operator*(const Double2& a, double b) {
  Double2 p = product(a.hi, b);
  p.lo += a.lo * b;
  return fastSum(p.hi, p.lo);
}

Double2 operator/(const Double2& n, const Double2& d) {
  const double q1 = n.hi / d.hi;
  Double2 r = n - d * q1;
  const double q2 = r.hi / d.hi;
  r = r - d * q2;
  const double q3 = r.hi / d.hi;
  const Double2 q = fastSum(q1, q2);
  return fastSum(q.hi, q.lo + q3);
}

// A value and how far it may be from the true one.
struct Cross {
  Double2 value;
  double error;
};

// Of two vectors without error; the products are right within 2^-102, the difference adds less.
Cross cross(const Double2& ux, const Double2& uy, const Double2& vx, const Double2& vy) {
  const Double2 left = ux * vy;
  const Double2 right = uy * vx;
  constexpr double kError = 0x1p-100;
  return {left - right, kError * (std::fabs(left.hi) + std::fabs(right.hi))};
}

// ---- Step 1 -------------------------------------------------------------------------------------

struct Guess {
  double value;
  bool certain;
};

// The four ends, and the parts of the crossing that both coordinates share.
class Quotient {
 public:
  Quotient(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c, const gxVector<2>& d)
      : a_(a), rx_(sum(b.x(), -a.x())), ry_(sum(b.y(), -a.y())) {
    const Double2 qx = sum(d.x(), -c.x());
    const Double2 qy = sum(d.y(), -c.y());
    const Cross num = cross(sum(c.x(), -a.x()), sum(c.y(), -a.y()), qx, qy);
    const Cross den = cross(rx_, ry_, qx, qy);
    t_ = num.value / den.value;
    relative_ =
        2.0 * (num.error / std::fabs(num.value.hi) + den.error / std::fabs(den.value.hi)) + 0x1p-98;
  }

  Guess x() const { return at(a_.x(), rx_); }
  Guess y() const { return at(a_.y(), ry_); }

 private:
  Guess at(double from, const Double2& along) const {
    const Double2 u = t_ * along;
    const Double2 s = sum(from, u.hi);
    const Double2 whole = fastSum(s.hi, s.lo + u.lo);
    const double error = 2.0 * relative_ * std::fabs(u.hi) + 0x1p-50 * std::fabs(whole.lo) +
                         0x1p-51 * (std::fabs(s.lo) + std::fabs(u.lo));
    const bool certain = relative_ < 0x1p-10 && whole.hi + (whole.lo + error) == whole.hi &&
                         whole.hi + (whole.lo - error) == whole.hi;
    return {whole.hi, certain};
  }

  gxVector<2> a_;
  Double2 rx_;
  Double2 ry_;
  Double2 t_{};
  double relative_ = 0.0;
};

// ---- Step 2 -------------------------------------------------------------------------------------

// Numbers in a row: the doubles, or the multiples of a grid.
struct Doubles {
  static std::int64_t numberOf(double value) {
    const auto bits = std::bit_cast<std::int64_t>(value);
    return bits >= 0 ? bits : -(bits & std::numeric_limits<std::int64_t>::max());
  }
  static double at(std::int64_t number) {
    return number >= 0 ? std::bit_cast<double>(number) : -std::bit_cast<double>(-number);
  }
};

struct Multiples {
  double grid;
  std::int64_t numberOf(double value) const {
    return static_cast<std::int64_t>(std::nearbyint(value / grid));
  }
  double at(std::int64_t number) const { return static_cast<double>(number) * grid; }
};

// Numbers of a row may lie up to 2^64 apart.
std::uint64_t distance(std::int64_t low, std::int64_t high) {
  return static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
}

std::int64_t ahead(std::int64_t number, std::uint64_t step) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(number) + step);
}

// Finds the number of the row nearest to the crossing, between `low` and `high` and from `guess` on.
// `side(i)` is the sign of the crossing less the middle between numbers i and i + 1.
template <class Side>
std::int64_t nearestInRow(std::int64_t guess, std::int64_t low, std::int64_t high, const Side& side) {
  // The answer is the least number whose middle to the next is not before the crossing, but for a tie.
  std::int64_t below = guess;  // known in the end: side(below) > 0
  std::int64_t above = guess;  // and side(above) <= 0
  if (guess < high && side(guess) > 0) {
    for (std::uint64_t step = 1;; step *= 2) {
      above = distance(below, high) <= step ? high : ahead(below, step);
      if (above == high || side(above) <= 0) break;
      below = above;
    }
  } else {
    for (std::uint64_t step = 1;; step *= 2) {
      below = distance(low, above) < step ? low - 1 : ahead(above, 0 - step);
      if (below < low || side(below) > 0) break;
      above = below;
    }
  }
  while (distance(below, above) > 1) {
    const std::int64_t middle = ahead(below, distance(below, above) / 2);
    (side(middle) > 0 ? below : above) = middle;
  }
  const bool tie = above < high && side(above) == 0;
  return tie && above % 2 != 0 ? above + 1 : above;
}

struct Ends {
  const gxVector<2>& a;
  const gxVector<2>& b;
  const gxVector<2>& c;
  const gxVector<2>& d;
};

double along(const gxVector<2>& p, bool alongY) {
  return alongY ? p.y() : p.x();
}

// The range that both edges cover; the crossing lies within.
std::pair<double, double> rangeOf(const Ends& e, bool alongY) {
  const double a = along(e.a, alongY);
  const double b = along(e.b, alongY);
  const double c = along(e.c, alongY);
  const double d = along(e.d, alongY);
  return {std::max(std::min(a, b), std::min(c, d)), std::min(std::max(a, b), std::max(c, d))};
}

template <class Row>
double nearestOf(const Row& row, const Ends& e, bool alongY, double guess) {
  const std::pair<double, double> range = rangeOf(e, alongY);
  const double start = guess >= range.first && guess <= range.second ? guess : range.first;
  const auto side = [&](std::int64_t i) {
    return gx_sideOfCrossing(e.a, e.b, e.c, e.d, alongY, row.at(i), row.at(i + 1));
  };
  return row.at(nearestInRow(row.numberOf(start), row.numberOf(range.first), row.numberOf(range.second),
                             side)) +
         0.0;
}

// ---- Scale --------------------------------------------------------------------------------------

double largest(const Ends& e) {
  double size = 0.0;
  for (const gxVector<2>* p : {&e.a, &e.b, &e.c, &e.d}) {
    size = std::max({size, std::fabs(p->x()), std::fabs(p->y())});
  }
  return size;
}

// Step 1 is for numbers whose products keep all their digits.
bool isOrdinary(const Ends& e) {
  constexpr double kLargest = 0x1p200;
  constexpr double kLeast = 0x1p-200;
  const auto fits = [](double x, double y) { return x == y || std::fabs(x - y) >= kLeast; };
  const auto apart = [&fits](const gxVector<2>& p, const gxVector<2>& q) {
    return fits(p.x(), q.x()) && fits(p.y(), q.y());
  };
  return largest(e) <= kLargest && apart(e.a, e.b) && apart(e.c, e.d) && apart(e.a, e.c);
}

// Returns the power of two that brings the largest coordinate near 1, where that loses no bit of any; else 1.
double scaleOf(const Ends& e) {
  int exponent = 0;
  (void)std::frexp(largest(e), &exponent);
  const double scale = std::ldexp(1.0, std::clamp(-exponent, -1000, 1000));
  for (const gxVector<2>* p : {&e.a, &e.b, &e.c, &e.d}) {
    if (p->x() * scale / scale != p->x() || p->y() * scale / scale != p->y()) return 1.0;
  }
  return scale;
}

struct Guesses {
  Guess x;
  Guess y;
};

Guesses guess(const Ends& e) {
  if (isOrdinary(e)) {
    const Quotient q(e.a, e.b, e.c, e.d);
    return {q.x(), q.y()};
  }
  const double scale = scaleOf(e);
  const gxVector<2> a = e.a * scale;
  const gxVector<2> b = e.b * scale;
  const gxVector<2> c = e.c * scale;
  const gxVector<2> d = e.d * scale;
  if (scale == 1.0 || !isOrdinary({a, b, c, d})) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    return {{none, false}, {none, false}};
  }
  const Quotient q(a, b, c, d);
  // What becomes subnormal is rounded twice, and then certain of nothing.
  const auto back = [scale](const Guess& g) {
    const double value = g.value / scale;
    return Guess{value, g.certain && value * scale == g.value};
  };
  return {back(q.x()), back(q.y())};
}

double coordinate(const Ends& e, bool alongY, const Guess& guess) {
  if (along(e.a, alongY) == along(e.b, alongY)) return along(e.a, alongY) + 0.0;
  if (along(e.c, alongY) == along(e.d, alongY)) return along(e.c, alongY) + 0.0;
  if (guess.certain) return guess.value + 0.0;
  return nearestOf(Doubles{}, e, alongY, guess.value);
}

}  // namespace

int gx_sideOfCrossing(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                      const gxVector<2>& d, bool alongY, double p, double q) {
  // With x and y exchanged both cross products change their signs, and the quotient stays.
  const auto x = [alongY](const gxVector<2>& v) { return alongY ? v.y() : v.x(); };
  const auto y = [alongY](const gxVector<2>& v) { return alongY ? v.x() : v.y(); };
  gx_LongSum total;
  const auto addCross = [&](const gxVector<2>& u, const gxVector<2>& v, double factor) {
    total.add(x(u), y(v), factor);
    total.add(y(u), x(v), -factor);
  };
  // (2a.x − p − q) (b − a) × (d − c)
  for (const double factor : {x(a), x(a), -p, -q}) {
    addCross(b, d, factor);
    addCross(b, c, -factor);
    addCross(a, d, -factor);
    addCross(a, c, factor);
  }
  // 2 (c − a) × (d − c) (b.x − a.x)
  for (const double factor : {x(b), x(b), -x(a), -x(a)}) {
    addCross(c, d, factor);
    addCross(a, d, -factor);
    addCross(a, c, factor);
  }
  // The edges cross, so (b − a) × (d − c) has the sign of the side on which d lies.
  const int side = gx_Orientation(a, b, d);
  return total.sign() * (alongY ? -side : side);
}

gxVector<2> gx_crossingPoint(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                             const gxVector<2>& d) {
  const Ends ends{a, b, c, d};
  const Guesses guesses = guess(ends);
  return {coordinate(ends, false, guesses.x), coordinate(ends, true, guesses.y)};
}

gxVector<2> gx_crossingOnGrid(const gxVector<2>& a, const gxVector<2>& b, const gxVector<2>& c,
                              const gxVector<2>& d, double grid) {
  const Ends ends{a, b, c, d};
  const Guesses guesses = guess(ends);
  const Multiples row{grid};
  return {nearestOf(row, ends, false, guesses.x.value), nearestOf(row, ends, true, guesses.y.value)};
}
