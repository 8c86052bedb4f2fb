// Transforms as objects.  Composing with a transform that is not affine has no closed form here:
// it is taken as the affine transform that agrees with it around the origin, and every transform
// of this library is affine.
#include <velstd/exception.h>
#include <velstd/xform_base.h>

#include <cmath>
#include <new>

gx2XformBase::~gx2XformBase() = default;

void* gx2XformLinear::operator new(std::size_t size) {
  return ::operator new(size);
}
void* gx2XformLinear::operator new(std::size_t /*size*/, void* place) noexcept {
  return place;
}
void gx2XformLinear::operator delete(void* object) noexcept {
  ::operator delete(object);
}
void gx2XformLinear::operator delete(void* /*object*/, void* /*place*/) noexcept {}

gxVector<2> gx2XformLinear::mapPoint(const gxVector<2>& point) const {
  return xform_ * point;
}

gxXform<2> gx2XformLinear::linearXform(const gxVector<2>& /*point*/) const {
  return xform_;
}

gxPtrHandle<gx2XformBase> gx2XformLinear::clone() const {
  return gxPtrHandle<gx2XformBase>(new gx2XformLinear(*this));
}

gxPtrHandle<gx2XformBase> gx2XformLinear::composeBase(const gx2XformBase& first) const {
  return gxPtrHandle<gx2XformBase>(new gx2XformLinear(xform_ * first.linearXform(gxVector<2>())));
}

gxPtrHandle<gx2XformBase> gx2XformLinear::inverseBase() const {
  return gxPtrHandle<gx2XformBase>(new gx2XformLinear(xform_.inverse()));
}

void gx2XformLinear::reInit() {
  xform_ = gxXform<2>();
  mutating_();
}

gx2Rigid::gx2Rigid(const gxDegree& angle, const gxVector<2>& translation)
    : angle_(angle), translation_(translation) {}

gxXform<2> gx2Rigid::xform() const {
  const double turn = angle_.norm().toDouble();
  if (turn == 0.0) return {gxMatrix<2>(1, 0, 0, 1), translation_};
  if (turn == 90.0) return {gxMatrix<2>(0, -1, 1, 0), translation_};
  if (turn == 180.0) return {gxMatrix<2>(-1, 0, 0, -1), translation_};
  if (turn == 270.0) return {gxMatrix<2>(0, 1, -1, 0), translation_};
  // Far from one turn, the conversion to radians would cost digits that the reduced angle keeps.
  const gxRadian angle(std::abs(angle_.toDouble()) <= 360.0 ? angle_ : gxDegree(turn));
  return {gxMatrix<2>(angle, angle, 1.0, 1.0), translation_};
}

gxVector<2> gx2Rigid::mapPoint(const gxVector<2>& point) const {
  return xform() * point;
}

gxXform<2> gx2Rigid::linearXform(const gxVector<2>& /*point*/) const {
  return xform();
}

gxPtrHandle<gx2XformBase> gx2Rigid::clone() const {
  return gxPtrHandle<gx2XformBase>(new gx2Rigid(*this));
}

gxPtrHandle<gx2XformBase> gx2Rigid::composeBase(const gx2XformBase& first) const {
  if (const auto* rigid = dynamic_cast<const gx2Rigid*>(&first)) {
    return gxPtrHandle<gx2XformBase>(
        new gx2Rigid(angle_ + rigid->angle_, xform() * rigid->translation_));
  }
  return gxPtrHandle<gx2XformBase>(new gx2XformLinear(xform() * first.linearXform(gxVector<2>())));
}

gxPtrHandle<gx2XformBase> gx2Rigid::inverseBase() const {
  const bool finite = std::isfinite(angle_.toDouble()) && std::isfinite(translation_.x()) &&
                      std::isfinite(translation_.y());
  if (!finite) throw gxMathError::Singular();
  const gx2Rigid turnBack(-angle_, gxVector<2>());
  const gxVector<2> back = -turnBack.mapPoint(translation_);
  if (!std::isfinite(back.x()) || !std::isfinite(back.y())) throw gxMathError::Singular();
  return gxPtrHandle<gx2XformBase>(new gx2Rigid(-angle_, back));
}

void gx2Rigid::reInit() {
  angle_ = gxDegree();
  translation_ = gxVector<2>();
  mutating_();
}
