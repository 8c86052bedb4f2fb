/// What an overlay has to be, said plainly: which points it holds, and when a result is valid.
///
/// A question is a list of closed rings and a condition on the winding numbers of a point in them.  Three
/// judges answer it, and share no code with the library but `gx_Orientation`: the winding number of a
/// single point here, exact areas by slabs on whole numbers in slab_judge.h, exact areas for any doubles
/// by CGAL in the tests of the overlay.
#pragma once

#include <support/random_shapes.h>
#include <support/slow_truth_set.h>
#include <velstd/vector.h>

#include <functional>
#include <string>
#include <vector>

namespace judge {

using Ring = std::vector<gxVector<2>>;
using Rings = std::vector<Ring>;

/// The rule by which an outline holds a point.
enum class Rule : int { eEvenOdd, eNonZero, ePositive, eOuter };

/// Tells from the winding numbers in the rings, in their order, whether the answer holds the point.
using Holds = std::function<bool(const std::vector<int>& windings)>;

struct Question {
  Rings rings;
  Holds holds;
  bool outer = false;  ///< instead of `holds`: every point that cannot be reached from infinity
};

/// Tells from who of the operands holds a point whether the answer does.
using Combination = std::function<bool(const std::vector<bool>& held)>;

/// What the operands, each a set of regions with holes and islands, hold by a combination.  A region
/// holds where its outline does by rule and none of its holes does; a set where one of its regions does.
Question combined(const std::vector<slow::Set>& operands, Rule rule, const Combination& combination);
/// What one set holds; by `eOuter`, all that its rings keep from infinity.
Question repaired(const slow::Set& shape, Rule rule);
/// What many closed walks hold together: one sum of winding numbers.
Question walked(const Rings& walks, const std::function<bool(int winding)>& holds);

/// The exact answer.
struct Answer {
  double area = 0.0;
  Ring samples;  ///< points that lie in, or next to, every face of the drawing
};

// ---- Single points ------------------------------------------------------------------------------

/// Returns how often the ring winds counter-clockwise around the point, 0 on the border itself.
int windingOf(const Ring& ring, const gxVector<2>& point, bool& onBorder);
/// Tells whether the question's answer holds the point, for one off all borders; not for `outer`.
bool holdsPoint(const Question& question, const gxVector<2>& point, bool& onBorder);
/// Tells whether a set of regions with holes (no islands) holds the point.
bool setHolds(const slow::Set& set, const gxVector<2>& point, bool& onBorder);
/// Returns a lower bound, good to rounding, of the distance of the point from all rings.
double clearance(const Rings& rings, const gxVector<2>& point);

// ---- Results ------------------------------------------------------------------------------------

/// Returns what is wrong with a result, by exact tests of all pairs; empty when nothing is:
///  - rings of three points and more, none twice in its ring, all finite
///  - edges, of all rings, meet only at ends of both, and no two are the same
///  - outlines run counter-clockwise, holes clockwise
///  - holes lie in their outlines, not in each other; a region in another's outline lies in its hole
///  - the interior of each region is connected
std::string faultOf(const slow::Set& result);
/// Returns what is wrong with the order: first vertices, holes, regions; empty when nothing is.
std::string disorderOf(const slow::Set& result);
/// Returns the area of a valid result, summed in 113 bits.
double areaOf(const slow::Set& result);
/// Returns the total length of the rings' edges.
double lengthOf(const Rings& rings);
/// Returns all rings of a set, outlines before their holes.
Rings ringsOf(const slow::Set& set);
/// Returns the spacing of doubles at the largest coordinate.
double ulpOf(const Rings& rings);

}  // namespace judge
