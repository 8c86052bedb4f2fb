// Moments: the sums of internal/ring_moments, mapped back from the scale in which they were made.
//
// Moments of order k have the (k + 2)-th power of a length; η and φ have none and are taken in the scale,
// where nothing leaves the range.
#include <gauge/internal/border_length.h>
#include <gauge/internal/ring_moments.h>
#include <gauge/moments.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <ostream>

namespace {

constexpr double kNaN = gxMoments::kNaN;

// Principal moments that agree to this are equal.
constexpr double kIsotropic = 1e-13;

void fillWith(double value, gxMoments& m) {
  for (double* number : {&m.area, &m.raw10, &m.raw01, &m.raw20, &m.raw11, &m.raw02, &m.raw30, &m.raw21,
                         &m.raw12, &m.raw03, &m.moment20, &m.moment11, &m.moment02, &m.moment30,
                         &m.moment21, &m.moment12, &m.moment03, &m.principal1, &m.principal2}) {
    *number = value;
  }
}

gxMoments without(gxStatus status) {
  gxMoments m;
  m.status = status;
  if (status != gxStatus::eEmpty) fillWith(kNaN, m);
  return m;
}

void fillHu(gxMoments& m) {
  const double a = m.eta20 - m.eta02;
  const double b = m.eta30 - 3.0 * m.eta12;
  const double c = 3.0 * m.eta21 - m.eta03;
  const double p = m.eta30 + m.eta12;
  const double q = m.eta21 + m.eta03;
  const double pp = p * (p * p - 3.0 * q * q);
  const double qq = q * (3.0 * p * p - q * q);
  m.hu[0] = m.eta20 + m.eta02;
  m.hu[1] = a * a + 4.0 * m.eta11 * m.eta11;
  m.hu[2] = b * b + c * c;
  m.hu[3] = p * p + q * q;
  m.hu[4] = b * pp + c * qq;
  m.hu[5] = a * (p * p - q * q) + 4.0 * m.eta11 * p * q;
  m.hu[6] = c * pp - b * qq;
}

void fillNormalised(const gx_MomentSums& s, gxMoments& m) {
  const double second = s.area * s.area;
  const double third = second * std::sqrt(s.area);
  m.eta20 = s.m20 / second;
  m.eta11 = s.m11 / second;
  m.eta02 = s.m02 / second;
  m.eta30 = s.m30 / third;
  m.eta21 = s.m21 / third;
  m.eta12 = s.m12 / third;
  m.eta03 = s.m03 / third;
  fillHu(m);
}

void fillAxes(const gx_MomentSums& s, const gx_Frame& frame, gxMoments& m) {
  const double middle = 0.5 * (s.m20 + s.m02);
  const double half = std::hypot(0.5 * (s.m20 - s.m02), s.m11);
  const double large = middle + half;
  // Of a thin shape the smaller one is the determinant over the larger: no difference of large numbers.
  const double small = large > 0.0
                           ? std::min(gf_DifferenceOfProducts(s.m20, s.m02, s.m11, s.m11) / large, large)
                           : middle - half;
  const auto back = [&frame](double value) { return frame.areaFrom(frame.areaFrom(value)); };
  m.principal1 = back(large);
  m.principal2 = back(small);
  m.ellipseA = frame.lengthFrom(2.0 * std::sqrt(large / s.area));
  m.ellipseB = frame.lengthFrom(2.0 * std::sqrt(std::max(small, 0.0) / s.area));
  m.ellipseAngle = 0.0;
  if (half > kIsotropic * std::fabs(middle)) {
    m.ellipseAngle = 0.5 * std::atan2(2.0 * s.m11, s.m20 - s.m02);
    if (m.ellipseAngle <= -std::numbers::pi / 2.0) m.ellipseAngle = std::numbers::pi / 2.0;
  }
}

void fillRaw(gxMoments& m) {
  const double x = m.centre.x();
  const double y = m.centre.y();
  m.raw10 = m.area * x;
  m.raw01 = m.area * y;
  m.raw20 = m.moment20 + m.raw10 * x;
  m.raw11 = m.moment11 + m.raw10 * y;
  m.raw02 = m.moment02 + m.raw01 * y;
  m.raw30 = m.moment30 + 3.0 * x * m.moment20 + m.raw10 * x * x;
  m.raw21 = m.moment21 + 2.0 * x * m.moment11 + y * m.moment20 + m.raw10 * x * y;
  m.raw12 = m.moment12 + 2.0 * y * m.moment11 + x * m.moment02 + m.raw10 * y * y;
  m.raw03 = m.moment03 + 3.0 * y * m.moment02 + m.raw01 * y * y;
}

// Maps moments back from the scale of a frame, with one factor where the powers of the scale are far from the ends of
// the range, else step by step.
class Back {
 public:
  explicit Back(const gx_Frame& frame)
      : frame_(&frame),
        fourth_(frame.areaFrom(frame.areaFrom(1.0))),
        fifth_(frame.lengthFrom(fourth_)) {}

  double fourth(double value) const {
    return ordinary(fourth_) ? value * fourth_ : frame_->areaFrom(frame_->areaFrom(value));
  }
  double fifth(double value) const {
    return ordinary(fifth_) ? value * fifth_ : frame_->lengthFrom(fourth(value));
  }

 private:
  static bool ordinary(double factor) { return factor > 1e-200 && factor < 1e200; }

  const gx_Frame* frame_;
  double fourth_;
  double fifth_;
};

void fillCentral(const gx_MomentSums& s, const gx_Frame& frame, gxMoments& m) {
  const Back back(frame);
  m.area = frame.areaFrom(s.area);
  m.moment20 = back.fourth(s.m20);
  m.moment11 = back.fourth(s.m11);
  m.moment02 = back.fourth(s.m02);
  m.moment30 = back.fifth(s.m30);
  m.moment21 = back.fifth(s.m21);
  m.moment12 = back.fifth(s.m12);
  m.moment03 = back.fifth(s.m03);
}

// The point that all centres are seen from: the first point there is.
const gxVector<2>* firstPoint(std::span<const gx_Ring> rings) {
  for (const gx_Ring& ring : rings) {
    if (!ring.points.empty()) return &ring.points[0];
  }
  return nullptr;
}

bool isFlat(std::span<const gx_Ring> rings) {
  return std::all_of(rings.begin(), rings.end(), [](const gx_Ring& ring) {
    return ring.depth % 2 != 0 || gx_onOneLine(ring.points);
  });
}

// Puts the box of all points into `box` and tells whether all of them are finite; not so, `box` holds anything.
bool finiteBoxOf(std::span<const gx_Ring> rings, gx_Box& box) {
  return std::all_of(rings.begin(), rings.end(), [&box](const gx_Ring& ring) {
    gx_Box own;
    const bool finite = gx_finiteBoxOf(ring.points, own);
    box.add(own);
    return finite;
  });
}

gxMoments momentsOf(std::span<const gx_Ring> rings) {
  const gxVector<2>* first = firstPoint(rings);
  if (first == nullptr) return without(gxStatus::eEmpty);
  gx_Box box;
  if (!finiteBoxOf(rings, box)) return without(gxStatus::eNotFinite);
  if (!rings[0].closed) return without(gxStatus::eNotClosed);
  const gx_Frame frame(box);
  const gx_MomentSums sums = gx_momentsOf(rings, frame, *first, true);
  gxMoments m;
  if (sums.area == 0.0 || isFlat(rings)) {
    m.status = gxStatus::eFlat;
    m.centre = gx_borderCentre(rings, frame);
    return m;
  }
  m.status = sums.area < 0.0 ? gxStatus::eNegative : gxStatus::eOk;
  m.centre = frame.unscaled(frame.scaled(*first) + sums.centre);
  fillCentral(sums, frame, m);
  fillRaw(m);
  fillNormalised(sums, m);
  fillAxes(sums, frame, m);
  return m;
}

}  // namespace

gxEllipse gxMoments::ellipse() const {
  gxEllipse::gxEllipseGeom geom;
  geom.center = centre;
  geom.radii = {ellipseA, ellipseB};
  geom.rotation = gxRadian(ellipseAngle);
  return gxEllipse(geom);
}

gxMoments gfMoments(std::span<const gxVector<2>> outline) {
  const gx_Ring ring{outline};
  return momentsOf({&ring, 1});
}
gxMoments gfMoments(const gxContour& contour) {
  const gx_Ring ring{contour.points(), contour.isClosed()};
  return momentsOf({&ring, 1});
}
gxMoments gfMoments(const gxRegion& region) {
  return momentsOf(gx_ringsOf(region));
}
gxMoments gfMoments(const gxRegionSet& set) {
  return momentsOf(gx_ringsOf(set));
}

std::ostream& operator<<(std::ostream& out, const gxMoments& m) {
  out << "area " << m.area << " centre (" << m.centre.x() << ", " << m.centre.y() << ") central "
      << m.moment20 << ' ' << m.moment11 << ' ' << m.moment02 << " ellipse " << m.ellipseA << " by "
      << m.ellipseB << " angle " << m.ellipseAngle << " hu";
  for (const double h : m.hu) out << ' ' << h;
  if (m.status != gxStatus::eOk) out << ' ' << m.status;
  return out;
}
