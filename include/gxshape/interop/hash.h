/// Hashes of the library's values, for unordered maps and sets: what `==` takes for equal has one hash.
#pragma once

#include <ch_core/cntrtmpl.h>
#include <cntr/contour.h>
#include <cntr/region.h>
#include <cntr/regionst.h>
#include <veldispc/color.h>
#include <velip/angle8.h>
#include <velip/edgelet.h>
#include <velstd/angle.h>
#include <velstd/circle.h>
#include <velstd/ellipse.h>
#include <velstd/handle.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/matrix.h>
#include <velstd/pair.h>
#include <velstd/point.h>
#include <velstd/polygon.h>
#include <velstd/rect.h>
#include <velstd/thread_local.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <vector>

/// Gathers numbers and gives their hash, which depends on their order and is the same in every process.
/// It is for tables in memory; it does not withstand whoever chooses keys to collide.
class gx_Hash {
 public:
  /// Take one more number; 0 and −0, which are equal, count as one.
  gx_Hash& add(std::uint64_t value) {
    state_ = mixed_(state_ ^ mixed_(value + kStep));
    return *this;
  }
  gx_Hash& add(double value) { return add(std::bit_cast<std::uint64_t>(value == 0.0 ? 0.0 : value)); }
  gx_Hash& add(const gxVector<2>& vector) { return add(vector.x()).add(vector.y()); }
  gx_Hash& add(const std::vector<gxVector<2>>& points) {
    for (const gxVector<2>& point : points) add(point);
    return add(static_cast<std::uint64_t>(points.size()));
  }

  /// Returns the hash of what was added.
  std::size_t value() const { return static_cast<std::size_t>(state_); }

 private:
  static constexpr std::uint64_t kStep = 0x9e3779b97f4a7c15;

  // Every bit of the number reaches every bit of the result: shifts and odd factors, a bijection.
  static std::uint64_t mixed_(std::uint64_t x) {
    x = (x ^ (x >> 32)) * 0xd6e8feb86659fd93;
    x = (x ^ (x >> 32)) * 0xd6e8feb86659fd93;
    return x ^ (x >> 32);
  }

  std::uint64_t state_ = 0;
};

// NOLINTBEGIN(cert-dcl58-cpp): specializations of std::hash for types of this library
/// Hash values in keeping with their `==`.  A value that holds a NaN has a hash and equals nothing.
template <>
struct std::hash<gxVector<2>> {
  std::size_t operator()(const gxVector<2>& v) const noexcept { return gx_Hash().add(v).value(); }
};
template <>
struct std::hash<gxPoint> {
  std::size_t operator()(const gxPoint& p) const noexcept {
    return gx_Hash().add(p.x()).add(p.y()).value();
  }
};
template <class T>
struct std::hash<gxPair<T>> {
  std::size_t operator()(const gxPair<T>& p) const noexcept {
    return gx_Hash()
        .add(static_cast<std::uint64_t>(std::hash<T>()(p.x())))
        .add(static_cast<std::uint64_t>(std::hash<T>()(p.y())))
        .value();
  }
};
template <>
struct std::hash<gxRadian> {
  std::size_t operator()(const gxRadian& a) const noexcept {
    return gx_Hash().add(a.toDouble()).value();
  }
};
template <>
struct std::hash<gxDegree> {
  std::size_t operator()(const gxDegree& a) const noexcept {
    return gx_Hash().add(a.toDouble()).value();
  }
};
template <>
struct std::hash<gxMatrix<2>> {
  std::size_t operator()(const gxMatrix<2>& m) const noexcept {
    return gx_Hash().add(m.m00()).add(m.m01()).add(m.m10()).add(m.m11()).value();
  }
};
template <>
struct std::hash<gxXform<2>> {
  std::size_t operator()(const gxXform<2>& t) const noexcept {
    return gx_Hash().add(t.xx()).add(t.xy()).add(t.yx()).add(t.yy()).add(t.tx()).add(t.ty()).value();
  }
};
template <>
struct std::hash<gxRect> {
  std::size_t operator()(const gxRect& r) const noexcept {
    return gx_Hash().add(r.origin()).add(r.corner()).add(r.size()).value();
  }
};
template <>
struct std::hash<gxLine> {
  std::size_t operator()(const gxLine& l) const noexcept {
    return gx_Hash().add(l.point()).add(l.direction()).value();
  }
};
template <>
struct std::hash<gxLineSeg> {
  std::size_t operator()(const gxLineSeg& s) const noexcept {
    return gx_Hash().add(s.p1()).add(s.p2()).value();
  }
};
template <>
struct std::hash<gxCircle> {
  std::size_t operator()(const gxCircle& c) const noexcept {
    return gx_Hash().add(c.center()).add(c.radius()).value();
  }
};
template <>
struct std::hash<gxEllipse> {
  std::size_t operator()(const gxEllipse& e) const noexcept {
    const gxEllipse::gxEllipseGeom& g = e.geom();
    const std::uint64_t flags = (g.clockwise ? 1U : 0U) + (g.inverted ? 2U : 0U);
    return gx_Hash().add(g.center).add(g.radii).add(g.rotation.toDouble()).add(flags).value();
  }
};
template <>
struct std::hash<gxPolygon> {
  std::size_t operator()(const gxPolygon& p) const noexcept {
    return gx_Hash().add(p.vertices()).add(static_cast<std::uint64_t>(p.fillMode())).value();
  }
};
template <>
struct std::hash<gxAngle8> {
  std::size_t operator()(const gxAngle8& a) const noexcept {
    return gx_Hash().add(static_cast<std::uint64_t>(a.toByte())).value();
  }
};
template <>
struct std::hash<gxEdgelet> {
  std::size_t operator()(const gxEdgelet& e) const noexcept {
    const std::uint64_t rest = e.magnitude() * std::uint64_t{256} + e.angle().toByte();
    return gx_Hash().add(e.position()).add(rest).value();
  }
};
template <>
struct std::hash<gxColor> {
  std::size_t operator()(const gxColor& c) const noexcept {
    return gx_Hash().add((c.red() * std::uint64_t{256} + c.green()) * 256 + c.blue()).value();
  }
};
template <>
struct std::hash<gxThreadID> {
  std::size_t operator()(const gxThreadID& id) const noexcept {
    return gx_Hash().add(id.number()).value();
  }
};

/// Hash shapes by points, closedness and `cachedVectorSize`, a region by its outline alone, a set by its
/// regions in order, as their `==` compares them; the edge-point forms by what theirs compare, transform
/// objects aside.  A set with a null region throws gxBadPointer.
template <>
struct std::hash<gxContour> {
  std::size_t operator()(const gxContour& c) const {
    return gx_Hash()
        .add(c.points())
        .add(static_cast<std::uint64_t>(c.isClosed() ? 1 : 0))
        .add(static_cast<std::uint64_t>(c.cachedVectorSize()))
        .value();
  }
};
template <>
struct std::hash<gxRegion> : std::hash<gxContour> {};
template <>
struct std::hash<gxRegionSet> {
  std::size_t operator()(const gxRegionSet& set) const {
    gx_Hash all;
    for (const gxRegionSet::RegionHandle& region : set.regions()) {
      all.add(static_cast<std::uint64_t>(std::hash<gxRegion>()(*region)));
    }
    return all.value();
  }
};
template <class T>
struct std::hash<gxContourT<T>> {
  std::size_t operator()(const gxContourT<T>& c) const { return gx_Hash().add(c.points()).value(); }
};
template <class T>
struct std::hash<gxRegionT<T>> {
  std::size_t operator()(const gxRegionT<T>& r) const { return gx_Hash().add(r.points()).value(); }
};
template <class T>
struct std::hash<gxRegionSetT<T>> : std::hash<gxRegionSet> {};

/// Hash handles by the object that they refer to, as their `==` compares them.
template <class T>
struct std::hash<gxPtrHandle<T>> {
  std::size_t operator()(const gxPtrHandle<T>& h) const noexcept {
    return std::hash<const T*>()(h.get());
  }
};
template <class T>
struct std::hash<gxPtrHandle_const<T>> {
  std::size_t operator()(const gxPtrHandle_const<T>& h) const noexcept {
    return std::hash<const T*>()(h.get());
  }
};
// NOLINTEND(cert-dcl58-cpp)
