/// The definitions that contours, regions and region sets share: modes and exceptions.
#pragma once

#include <cntr/export.h>
#include <velstd/exception.h>
#include <velstd/registry.h>

#include <string>

/// The scope of the library's modes and exceptions.  It has no data.
class GXSHAPE_API gxContourDefs {
 public:
  /// What a constructor or setter does with an outline that crosses itself, or with a set whose
  /// regions overlap.  Any other value leaves everything as given, as `eNone` does.
  enum IntersectionMode : int {
    eNone = 0,        ///< keep it as given
    eOuterHull = 1,   ///< replace it by its outer hull
    eRegularize = 2,  ///< replace it by its regularized form
  };

  /// How the circle around a contour is formed; any other value is refused.
  enum DiameterMode : int {
    eAllPairs = 0,    ///< the farthest pair of vertices is the circle's diameter
    eFirstPoint = 1,  ///< the first vertex is the centre, the vertex farthest from it lies on the circle
  };

  /// How a contour is drawn.  Every value draws the same: the edges, as segments.
  enum DrawMode : int {
    eDrawEdges = 0,
  };

  /// Any error of this library; never thrown itself.
  class GXSHAPE_API Errors : public gxExceptionWithString {
   public:
    Errors(const Errors&) noexcept;
    Errors& operator=(const Errors&) noexcept;
    ~Errors() override;
    long errorNumber() const override = 0;
    void suicideAndRethrow() override = 0;

   protected:
    /// Makes the exception with this message.
    explicit Errors(const std::basic_string<wchar_t>& message = std::basic_string<wchar_t>());
    void dispatchSerialize(gxArchive& archive) override;
    /// Stores or loads the message.
    void serialize_(gxArchive& archive, unsigned char version);
  };

  /// A contour (fewer than 2 points) or a region (fewer than 3) has too few points for the question.
  class GXSHAPE_API EmptyContour final : public gx_ConcreteException<EmptyContour, Errors, 0x10004680> {
   public:
    /// Makes the exception with this message.
    explicit EmptyContour(const std::basic_string<wchar_t>& message = std::basic_string<wchar_t>());
    EmptyContour(const EmptyContour&) noexcept;
    EmptyContour& operator=(const EmptyContour&) noexcept;
    ~EmptyContour() override;

   protected:
    /// Stores or loads the exception with its version.
    void dispatchSerialize(gxArchive& archive) override;

   private:
    void serialize_(gxArchive& archive, unsigned char version);
    static gxPersistent* make();
    static gx_Instantiator sExemplar;
  };

  // The number 0x10004681 belongs to no class, and none may take it.

  /// A region set holds no region.
  class GXSHAPE_API EmptyRegionSet final
      : public gx_ConcreteException<EmptyRegionSet, Errors, 0x10004682> {
   public:
    /// Makes the exception with this message.
    explicit EmptyRegionSet(const std::basic_string<wchar_t>& message = std::basic_string<wchar_t>());
    EmptyRegionSet(const EmptyRegionSet&) noexcept;
    EmptyRegionSet& operator=(const EmptyRegionSet&) noexcept;
    ~EmptyRegionSet() override;

   protected:
    /// Stores or loads the exception with its version.
    void dispatchSerialize(gxArchive& archive) override;

   private:
    void serialize_(gxArchive& archive, unsigned char version);
    static gxPersistent* make();
    static gx_Instantiator sExemplar;
  };

  /// An argument is out of range, or the shapes given do not fit together.
  class GXSHAPE_API BadParams final : public gx_ConcreteException<BadParams, Errors, 0x10004683> {
   public:
    /// Makes the exception with this message.
    explicit BadParams(const std::basic_string<wchar_t>& message = std::basic_string<wchar_t>());
    BadParams(const BadParams&) noexcept;
    BadParams& operator=(const BadParams&) noexcept;
    ~BadParams() override;

   protected:
    /// Stores or loads the exception with its version.
    void dispatchSerialize(gxArchive& archive) override;

   private:
    void serialize_(gxArchive& archive, unsigned char version);
    static gxPersistent* make();
    static gx_Instantiator sExemplar;
  };

  /// A region was asked to become open.
  class GXSHAPE_API RegionCannotBeSetOpen final
      : public gx_ConcreteException<RegionCannotBeSetOpen, Errors, 0x10004684> {
   public:
    /// Makes the exception with this message.
    explicit RegionCannotBeSetOpen(
        const std::basic_string<wchar_t>& message = std::basic_string<wchar_t>());
    RegionCannotBeSetOpen(const RegionCannotBeSetOpen&) noexcept;
    RegionCannotBeSetOpen& operator=(const RegionCannotBeSetOpen&) noexcept;
    ~RegionCannotBeSetOpen() override;

   protected:
    /// Stores or loads the exception with its version.
    void dispatchSerialize(gxArchive& archive) override;

   private:
    void serialize_(gxArchive& archive, unsigned char version);
    static gxPersistent* make();
    static gx_Instantiator sExemplar;
  };
};
