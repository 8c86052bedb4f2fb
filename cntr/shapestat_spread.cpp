// The spread of a list of numbers.  The means are products with the reciprocal of the count, so no
// values at all give infinity times zero, not a number, without a case of its own.
#include <cntr/shapestat.h>

#include <cmath>

double gf_StdDev(const std::vector<double>& values) {
  const double share = 1.0 / static_cast<double>(values.size());
  double sum = 0.0;
  for (const double v : values) sum += v;
  const double mean = sum * share;
  double squares = 0.0;
  for (const double v : values) squares += (v - mean) * (v - mean);
  return std::sqrt(squares * share);
}
