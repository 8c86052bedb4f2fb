/// Random shapes for tests: every kind of outline that has ever made an algorithm think.
#pragma once

#include <velstd/line_seg.h>
#include <velstd/vector.h>
#include <velstd/xform.h>

#include <cstdint>
#include <string>
#include <vector>

/// A kind of random outline.
enum class OutlineKind : int {
  eCloud,      ///< points anywhere in a square: crosses itself nearly always
  eStar,       ///< star-shaped around its centre: simple
  eRegular,    ///< regular polygon, any phase: many symmetric ties
  ePentagram,  ///< regular star polygon: every edge crossed, often twice; or wound twice
  eTolerance,  ///< integer points on a grid about as fine as the tolerance of crossings
  eWalk,       ///< random walk: crosses itself now and then
  eLattice,    ///< integer points: collinear, touching and repeated ones
  eRepeated,   ///< star with repeated and nearly repeated points
  eComb,       ///< comb with deep teeth: simple
  eSpiral,     ///< thick spiral: simple, winds often
  eLine,       ///< all on one line
  eEqual,      ///< all equal
  eOutlier,    ///< star with one huge outlier
  eFew,        ///< 0 to 4 points
  eLarge,      ///< coordinates up to 1e308
  eTiny,       ///< denormal and tiny coordinates
  eNotFinite,  ///< star with NaN or infinite coordinates
  eCount
};

/// An outline with the outlines of its holes, which lie inside it and apart from each other.
struct OutlineWithHoles {
  std::vector<gxVector<2>> outline;
  std::vector<std::vector<gxVector<2>>> holes;
};

/// A source of random shapes and queries for one test, in rounds:
///
///   RandomShapes random("contour length", 200);
///   while (random.next()) {
///     SCOPED_TRACE(random.trace());
///     const auto outline = random.outline();
///     …
///   }
///
/// The seed comes from the tag, so that runs repeat; the environment variable GXSHAPE_SEED gives
/// another one to all tests.  Every round begins a sequence of its own, and GXSHAPE_ROUND runs that
/// round alone.  GXSHAPE_SOAK = 1 makes 50 times as many rounds, and of every test that has 50 or more it goes
/// on to 100,000 for ten minutes of processor time (GXSHAPE_SOAK_SECONDS), so that one test of a costly slow
/// truth does not hold up all others; k makes k times those, for k times as long.  Without GXSHAPE_SEED the
/// seed then comes from the clock.
/// Under a sanitizer the rounds above 100 are a tenth.
class RandomShapes {
 public:
  /// Prints tag, seed and number of rounds.
  RandomShapes(const std::string& tag, int rounds);

  /// Begins the next round; false when there is none.
  bool next();
  /// Returns which part of the rounds asked for there are: 1, and less under a sanitizer.  For tests that
  /// count how often something came up.
  double share() const { return share_; }
  /// Tells how to repeat this round.
  std::string trace() const;

  // ---- Numbers ----------------------------------------------------------------------------------

  /// In [low, high).
  double uniform(double low, double high);
  /// low to high, both included.
  int integer(int low, int high);
  bool chance(double probability);

  // ---- Outlines ---------------------------------------------------------------------------------

  /// Of a random kind, few points or some hundred, somewhere, of some size.
  std::vector<gxVector<2>> outline();
  /// Of a random kind whose coordinates are finite and of ordinary size.
  std::vector<gxVector<2>> finiteOutline();
  /// Of that kind with about that many points (exactly, except for combs, spirals and few), within
  /// about 10 units of the origin, kinds of special coordinates aside.
  std::vector<gxVector<2>> outline(OutlineKind kind, int count);
  /// The points moved by a random translation, scaled and turned at random, often not at all.
  std::vector<gxVector<2>> placed(const std::vector<gxVector<2>>& points);

  std::vector<gxVector<2>> star(int count, const gxVector<2>& center, double least, double most);
  OutlineWithHoles outlineWithHoles();

  // ---- Queries ----------------------------------------------------------------------------------

  /// A point on a vertex or an edge, close to one, anywhere near the outline or far away; seldom
  /// with a NaN or an infinity.
  gxVector<2> pointNear(const std::vector<gxVector<2>>& outline);
  /// A segment between two such points, or along, across or parallel to an edge.
  gxLineSeg segmentNear(const std::vector<gxVector<2>>& outline);
  /// Identity, translation, rotation, mirror, shear, general or singular, seldom with a NaN.
  gxXform<2> transform();
  /// Rotation, mirror and uniform scale, then translation.
  gxXform<2> similarity();
  /// On an axis, next to one, anywhere, several turns away; seldom NaN.
  double angle();

 private:
  std::uint64_t bits();
  void begin(std::uint64_t round);
  int someCount();
  gxVector<2> inSquare(double half);
  std::vector<gxVector<2>> walk(int count);
  std::vector<gxVector<2>> comb(int teeth);
  std::vector<gxVector<2>> spiral(int count);
  void repeatSome(std::vector<gxVector<2>>& points);
  void spoilSome(std::vector<gxVector<2>>& points);

  std::string tag_;
  std::uint64_t seed_ = 0;
  std::uint64_t rounds_ = 0;
  std::uint64_t leastRounds_ = 0;  // of a soak: those that are made whatever time they take
  double until_ = 0.0;  // in processor seconds of this program: no more rounds than those after it
  double share_ = 1.0;
  std::uint64_t round_ = 0;  // the next one
  std::uint64_t state_ = 0;
};

/// The points in the other direction, beginning at the same one.
std::vector<gxVector<2>> reversed(const std::vector<gxVector<2>>& points);
/// The points beginning at number `start`.
std::vector<gxVector<2>> rotatedStart(const std::vector<gxVector<2>>& points, std::size_t start);
/// The points mapped.
std::vector<gxVector<2>> mapped(const gxXform<2>& xform, const std::vector<gxVector<2>>& points);
