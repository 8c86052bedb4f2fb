// The records of velstd's own persistent classes: a version byte, 0, then the numbers that the class
// keeps.  A loaded object is put together by its class's constructor where that keeps a promise (a
// line's direction stays within its range); numbers are otherwise taken bit by bit, NaN included.
#include <velstd/archive.h>
#include <velstd/circle.h>
#include <velstd/internal/shape_records.h>
#include <velstd/line.h>
#include <velstd/line_seg.h>
#include <velstd/rect.h>
#include <velstd/xform_base.h>

namespace {

// The class levels of this library in the bookkeeping of visits.
enum Level : std::uint16_t { eLine = 1, eLineSeg, eRect, eCircle, eXformLinear, eRigid };

constexpr unsigned char kVersion = 0;

void checkVersion(unsigned char version, const char* source) {
  if (version != kVersion) throw gxArchive::UnknownVersion(source, 0);
}

template <class T>
gxPersistent* makeNew() {
  return new T;
}

template <class T>
gx_ShapeClass shapeClass() {
  return {&typeid(T), &makeNew<T>};
}

}  // namespace

std::vector<gx_ShapeClass> gf_ShapeClasses() {
  return {shapeClass<gxLine>(),   shapeClass<gxLineSeg>(),      shapeClass<gxRect>(),
          shapeClass<gxCircle>(), shapeClass<gx2XformLinear>(), shapeClass<gx2Rigid>()};
}

// ---- The records ------------------------------------------------------------------------------------

void gx2XformBase::dispatchSerialize(gxArchive& archive) {
  gxPersistent::dispatchSerialize(archive);
}

void gxLine::dispatchSerialize(gxArchive& archive) {
  const std::uint64_t key = archive.passAndLevel(eLine);
  if (haveVisited(this, key)) return;
  unsigned char version = kVersion;
  archive || version;
  gxLine::serialize_(archive, version);
  setVisited(this, key);
}

void gxLine::serialize_(gxArchive& archive, unsigned char version) {
  checkVersion(version, "velstd/gxLine");
  gxPersistent::dispatchSerialize(archive);
  gxVector<2> point = point_;
  gxVector<2> direction = direction_;
  archive || point || direction;
  if (archive.isLoading()) *this = gxLine(point, direction);
  if (archive.isLoading()) mutating_();
}

void gxLineSeg::dispatchSerialize(gxArchive& archive) {
  const std::uint64_t key = archive.passAndLevel(eLineSeg);
  if (haveVisited(this, key)) return;
  unsigned char version = kVersion;
  archive || version;
  gxLineSeg::serialize_(archive, version);
  setVisited(this, key);
}

void gxLineSeg::serialize_(gxArchive& archive, unsigned char version) {
  checkVersion(version, "velstd/gxLineSeg");
  gxPersistent::dispatchSerialize(archive);
  archive || p1_ || p2_;
  if (archive.isLoading()) mutating_();
}

void gxRect::dispatchSerialize(gxArchive& archive) {
  const std::uint64_t key = archive.passAndLevel(eRect);
  if (haveVisited(this, key)) return;
  unsigned char version = kVersion;
  archive || version;
  gxRect::serialize_(archive, version);
  setVisited(this, key);
}

void gxRect::serialize_(gxArchive& archive, unsigned char version) {
  checkVersion(version, "velstd/gxRect");
  gxPersistent::dispatchSerialize(archive);
  // All three: the corner is not always origin + size, rounded, and comparisons are made with it.
  archive || origin_ || corner_ || size_;
  if (archive.isLoading()) mutating_();
}

void gxCircle::dispatchSerialize(gxArchive& archive) {
  const std::uint64_t key = archive.passAndLevel(eCircle);
  if (haveVisited(this, key)) return;
  unsigned char version = kVersion;
  archive || version;
  gxCircle::serialize_(archive, version);
  setVisited(this, key);
}

void gxCircle::serialize_(gxArchive& archive, unsigned char version) {
  checkVersion(version, "velstd/gxCircle");
  gxPersistent::dispatchSerialize(archive);
  archive || center_ || radius_;
  if (archive.isLoading()) mutating_();
}

void gx2XformLinear::dispatchSerialize(gxArchive& archive) {
  const std::uint64_t key = archive.passAndLevel(eXformLinear);
  if (haveVisited(this, key)) return;
  unsigned char version = kVersion;
  archive || version;
  gx2XformLinear::serialize_(archive, version);
  setVisited(this, key);
}

void gx2XformLinear::serialize_(gxArchive& archive, unsigned char version) {
  checkVersion(version, "velstd/gx2XformLinear");
  gx2XformBase::dispatchSerialize(archive);
  const gxMatrix<2> matrix = xform_.matrix();
  double xx = matrix.m00();
  double xy = matrix.m01();
  double yx = matrix.m10();
  double yy = matrix.m11();
  gxVector<2> translation = xform_.translation();
  archive || xx || xy || yx || yy || translation;
  if (archive.isLoading()) xform_ = gxXform<2>(gxMatrix<2>(xx, xy, yx, yy), translation);
  if (archive.isLoading()) mutating_();
}

void gx2Rigid::dispatchSerialize(gxArchive& archive) {
  const std::uint64_t key = archive.passAndLevel(eRigid);
  if (haveVisited(this, key)) return;
  unsigned char version = kVersion;
  archive || version;
  gx2Rigid::serialize_(archive, version);
  setVisited(this, key);
}

void gx2Rigid::serialize_(gxArchive& archive, unsigned char version) {
  checkVersion(version, "velstd/gx2Rigid");
  gx2XformBase::dispatchSerialize(archive);
  double degrees = angle_.toDouble();
  archive || degrees || translation_;
  if (archive.isLoading()) angle_ = gxDegree(degrees);
  if (archive.isLoading()) mutating_();
}
