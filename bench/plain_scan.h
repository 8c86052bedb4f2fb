// The plain scan that benchmarks compare with: every question looks at every edge or vertex.
//
// The judge of the tests (tests/support) remembers nothing from one question to the next and makes all
// edges anew for each.  A comparison with that would flatter every index, so here the edges, their
// boxes, the upright box and the radius around the first vertex are remembered, as a contour
// remembers them; the steps and the answers are the same.
#pragma once

#include <support/slow_truth_region.h>
#include <velstd/line.h>

#include <cstddef>
#include <vector>

// A closed outline that answers by looking at everything.
class gx_PlainScan {
 public:
  explicit gx_PlainScan(const std::vector<gxVector<2>>& points);

  gxVector<2> closestPoint(const gxVector<2>& point) const;
  slow::Hits intersections(const gxLineSeg& seg, bool countEndContacts) const;
  std::vector<gxVector<2>> intersections(const gx_PlainScan& other) const;
  bool isSelfIntersecting() const;
  bool inside(const gxVector<2>& point) const;

 private:
  gxVector<2> rayFrom_(const gxVector<2>& point) const;
  bool isOnVertex_(const gxVector<2>& point) const;

  std::vector<gxVector<2>> points_;
  gxRect box_;
  mutable double radius_ = -1.0;  // until it is asked for
  std::vector<gxLineSeg> segments_;
  std::vector<gxLine> lines_;
  std::vector<gxRect> bounds_;
  std::vector<bool> valid_;
};
