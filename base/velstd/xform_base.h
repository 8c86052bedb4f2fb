/// Transforms as shared, persistent objects.
#pragma once

#include <velstd/angle.h>
#include <velstd/export.h>
#include <velstd/handle.h>
#include <velstd/persistent.h>
#include <velstd/xform.h>

#include <cstddef>

/// A transform of the plane as an object: it is held by handle, cloned, inverted and archived
/// without its class being known.  Assigning one counts as a change where the target tracks changes.
///
/// Where no class of its own is needed, `gxXform<2>` is the same as a plain value, and is what contours
/// and regions are mapped by.  Classes of a program's own derive from this one; those that bend (a lens)
/// say false to `isLinear` and give the best affine transform around a point.
/// All questions are const and may be asked by any number of threads at once.
class VELSTD_API gx2XformBase : public gxPersistent, public gxRepBase {
 public:
  ~gx2XformBase() override;

  /// Maps a point.
  virtual gxVector<2> mapPoint(const gxVector<2>& point) const = 0;
  /// Tells whether the transform is affine, the same linear map at every point.
  virtual bool isLinear() const = 0;
  /// Returns the affine transform that agrees with this one around `point`; for an affine
  /// transform this is the transform itself, at every point.
  virtual gxXform<2> linearXform(const gxVector<2>& point) const = 0;
  /// Returns a new object of the same class and value; never a null handle.
  virtual gxPtrHandle<gx2XformBase> clone() const = 0;
  /// Returns a new transform that maps by `first` and then by this one.
  virtual gxPtrHandle<gx2XformBase> composeBase(const gx2XformBase& first) const = 0;
  /// Returns a new transform that undoes this one, never a null handle.
  /// Throws: gxMathError::Singular when there is none.
  virtual gxPtrHandle<gx2XformBase> inverseBase() const = 0;

 protected:
  gx2XformBase() = default;
  gx2XformBase(const gx2XformBase&) = default;
  gx2XformBase& operator=(const gx2XformBase& other) {
    gxPersistent::operator=(other);
    mutating_();
    return *this;
  }

  void dispatchSerialize(gxArchive& archive) override;
};

/// An affine transform as an object; the identity by default.
class VELSTD_API gx2XformLinear : public gx2XformBase {
 public:
  gx2XformLinear() = default;
  /// Makes the object of a linear transform.
  explicit gx2XformLinear(const gxXform<2>& xform) : xform_(xform) {}

  /// Takes and gives back memory inside this library, so that a transform made by one module can
  /// be destroyed by another with an allocator of its own.
  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, void* place) noexcept;
  static void operator delete(void* object) noexcept;
  static void operator delete(void* object, void* place) noexcept;

  /// Returns the transform.
  const gxXform<2>& xform() const { return xform_; }

  gxVector<2> mapPoint(const gxVector<2>& point) const override;
  bool isLinear() const override { return true; }
  gxXform<2> linearXform(const gxVector<2>& point) const override;
  gxPtrHandle<gx2XformBase> clone() const override;
  gxPtrHandle<gx2XformBase> composeBase(const gx2XformBase& first) const override;
  gxPtrHandle<gx2XformBase> inverseBase() const override;

  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  virtual void serialize_(gxArchive& archive, unsigned char version);

 private:
  gxXform<2> xform_;
};

/// A rotation followed by a translation, as an object; the identity by default.
///
/// It keeps lengths and areas, and no mirror image is among its values.  The angle is kept in degrees, so
/// that quarter turns are exact: without a translation, four of 90° give a point its old bits.
class VELSTD_API gx2Rigid : public gx2XformBase {
 public:
  gx2Rigid() = default;
  /// Rotates by `angle` from the x axis towards the y axis, then moves by `translation`.
  gx2Rigid(const gxDegree& angle, const gxVector<2>& translation);

  /// Return the two parts.
  const gxDegree& angle() const { return angle_; }
  const gxVector<2>& translation() const { return translation_; }
  /// Returns the same transform as a value; whole quarter turns are exact.
  gxXform<2> xform() const;

  gxVector<2> mapPoint(const gxVector<2>& point) const override;
  bool isLinear() const override { return true; }
  gxXform<2> linearXform(const gxVector<2>& point) const override;
  gxPtrHandle<gx2XformBase> clone() const override;
  /// Composes; two rigid transforms give a rigid one, anything else affine a `gx2XformLinear`.
  gxPtrHandle<gx2XformBase> composeBase(const gx2XformBase& first) const override;
  /// Returns the inverse, again rigid.  Throws: gxMathError::Singular when angle or translation is
  /// not finite, or the inverse's translation exceeds the double range.
  gxPtrHandle<gx2XformBase> inverseBase() const override;

  void reInit() override;

 protected:
  void dispatchSerialize(gxArchive& archive) override;
  /// Stores or loads the fields of that version.
  virtual void serialize_(gxArchive& archive, unsigned char version);

 private:
  gxDegree angle_;
  gxVector<2> translation_;
};
